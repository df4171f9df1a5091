/** The two ways in which a document can be encoded, side by side. */
#ifndef GPB_FUZZ_SUPPORT_TWIN_H
#define GPB_FUZZ_SUPPORT_TWIN_H

#include <cjson/cJSON.h>
#include <libxml/tree.h>

#include "gpb_templatelib/gpb_lib.h"

namespace gpbfuzz
{

/**
 * Encodes with a compiler of the library's own class and with a subclass, as hosts have them, which fills messages of
 * protobuf and has protobuf serialize them. Ends the process unless code, bytes and debug text are the same.
 */
void requireSameXml(GpbLibContext *context, const char *module, xmlDoc *document);
void requireSameJson(GpbLibContext *context, const char *module, cJSON *root, cJSON *item);

} // namespace gpbfuzz

#endif
