/** Standard error: messages and, on a terminal, one line below them that tells how far the work is. */
#ifndef GPBTOOL_CONSOLE_H
#define GPBTOOL_CONSOLE_H

#include <string>

#include "tool_error.h"

namespace gpbtool
{

class Console
{
public:
    Console() = default;
    Console(const Console &) = delete;
    Console &operator=(const Console &) = delete;
    virtual ~Console() = default;

    /** Writes one message. Control characters that a document may have brought along never reach the terminal. */
    virtual void Print(const std::string &text);

    void Error(const ToolError &error);
    void Warning(const std::string &text) { Print("warning: " + text); }

    /** Shows a line below the messages, cut to the terminal's width; does nothing unless on a terminal. */
    void ShowStatus(const std::string &line);

    /** Takes that line away. */
    void ClearStatus();

private:
    bool statusShown_ = false;
};

/** A text with its control characters, other than line break and tab, replaced by "?". */
std::string Printable(const std::string &text);

} // namespace gpbtool

#endif
