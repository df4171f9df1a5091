/** A console that keeps its messages until they are asked for. */
#ifndef GPBTOOL_RECORDING_CONSOLE_H
#define GPBTOOL_RECORDING_CONSOLE_H

#include <string>
#include <utility>

#include "console.h"

namespace gpbtool
{

class RecordingConsole : public Console
{
public:
    void Print(const std::string &text) override
    {
        messages_ += messages_.empty() ? "" : "\n";
        messages_ += text;
    }

    /** What was printed since the last call, as one text for another console; empty for nothing. */
    std::string Take() { return std::exchange(messages_, {}); }

private:
    std::string messages_;
};

} // namespace gpbtool

#endif
