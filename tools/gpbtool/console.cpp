#include "console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

namespace gpbtool
{

namespace
{

constexpr std::size_t kUsualWidth = 80; // of a terminal that does not tell its own
constexpr const char *kClearLine = "\r\033[K";

/** Columns of the terminal. */
std::size_t Width()
{
    winsize size = {};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsualWidth;
}

} // namespace

std::string Printable(const std::string &text)
{
    std::string out = text;
    unsigned char previous = 0;
    for (char &c : out)
    {
        const auto byte = static_cast<unsigned char>(c);
        const bool ascii = (byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7f;
        // The other control characters, U+0080 to U+009F, as UTF-8; terminals obey them too.
        const bool upper = previous == 0xc2 && byte >= 0x80 && byte <= 0x9f;
        if (ascii || upper)
        {
            c = '?';
        }
        previous = byte;
    }
    return out;
}

void Console::Print(const std::string &text)
{
    ClearStatus();
    std::fprintf(stderr, "%s\n", Printable(text).c_str());
}

void Console::Error(const ToolError &error)
{
    Print(std::string("error: ") + error.what());
    if (!error.Hint().empty())
    {
        Print("  hint: " + error.Hint());
    }
}

void Console::ShowStatus(const std::string &line)
{
    if (isatty(STDERR_FILENO) == 0)
    {
        return;
    }
    // A line that fills the last column would go on to the next one, where it cannot be taken back.
    std::fprintf(stderr, "%s%s", kClearLine, line.substr(0, Width() - 1).c_str());
    std::fflush(stderr);
    statusShown_ = true;
}

void Console::ClearStatus()
{
    if (statusShown_)
    {
        std::fputs(kClearLine, stderr);
        statusShown_ = false;
    }
}

} // namespace gpbtool
