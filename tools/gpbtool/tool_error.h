/** The one exception of the tool: what went wrong, where, what to do about it, and the exit code. */
#ifndef GPBTOOL_TOOL_ERROR_H
#define GPBTOOL_TOOL_ERROR_H

#include <stdexcept>
#include <string>
#include <utility>

#include "exit_codes.h"

namespace gpbtool
{

class ToolError : public std::runtime_error
{
public:
    /**
     * @param what  "place: what is wrong", may have several lines
     * @param hint  what the user can do; may be empty
     */
    ToolError(ExitCode code, const std::string &what, std::string hint = {})
        : std::runtime_error(what), code_(code), hint_(std::move(hint))
    {
    }

    ExitCode Code() const { return code_; }
    const std::string &Hint() const { return hint_; }

private:
    ExitCode code_;
    std::string hint_;
};

} // namespace gpbtool

#endif
