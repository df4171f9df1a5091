/** Why a module does not load, in the words of protobuf's own parser: the library keeps no reasons. */
#ifndef GPBTOOL_PROTO_PROBLEMS_H
#define GPBTOOL_PROTO_PROBLEMS_H

#include <string>
#include <vector>

#include "search_options.h"

namespace gpbtool
{

/** Reads MODULE.proto from the search path and returns "file:line:column: message" for each problem. */
std::vector<std::string> FindProtoProblems(const std::vector<SearchPlace> &places, const std::string &module);

} // namespace gpbtool

#endif
