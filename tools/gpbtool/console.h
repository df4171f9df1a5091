/** Standard error: messages and, on a terminal, one progress bar below them. */
#ifndef GPBTOOL_CONSOLE_H
#define GPBTOOL_CONSOLE_H

#include <cstddef>
#include <string>

#include "tool_error.h"

namespace gpbtool
{

class Console
{
public:
    /** Writes one message. Control characters that a document may have brought along never reach the terminal. */
    void Print(const std::string &text);

    void Error(const ToolError &error);
    void Warning(const std::string &text) { Print("warning: " + text); }

    /** Shows that `done` of `total` are finished and `name` is next; does nothing unless on a terminal. */
    void Progress(std::size_t done, std::size_t total, const std::string &name);

    /** Takes the progress bar away. */
    void EndProgress();

private:
    bool barShown_ = false;
};

/** A text with its control characters, other than line break and tab, replaced by "?". */
std::string Printable(const std::string &text);

} // namespace gpbtool

#endif
