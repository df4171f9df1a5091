/** The options of subcommands that read a YANG module, and the module. */
#ifndef GPBTOOL_YANG_REQUEST_H
#define GPBTOOL_YANG_REQUEST_H

#include <string>
#include <vector>

#include "tool_error.h"
#include "yang/proto_types.h"
#include "yang/schema.h"
#include "yang/yang_error.h"

namespace CLI
{
class App;
}

namespace gpbtool
{

struct YangRequest
{
    std::string module; /**< a name, NAME@REVISION, or the path of a .yang or .yin file */
    std::vector<std::string> yangPaths;
    std::vector<std::string> augmenting;
    gpbyang::Decimals decimals = gpbyang::Decimals::Double;

    void Declare(CLI::App &app);

    /** Loads the module; a file's directory is searched first, and without any directory the current one. */
    gpbyang::Schema Load() const;
};

/** The error with its exit code and what to do about it. */
ToolError AsToolError(const gpbyang::YangError &error);

} // namespace gpbtool

#endif
