#include "console.h"

#include <unistd.h>

#include <cstdio>

namespace gpbtool
{

namespace
{

constexpr std::size_t kBarWidth = 24;
constexpr std::size_t kNameWidth = 40;
constexpr const char *kClearLine = "\r\033[K";

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
    EndProgress();
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

void Console::Progress(std::size_t done, std::size_t total, const std::string &name)
{
    if (total < 2 || isatty(STDERR_FILENO) == 0)
    {
        return;
    }
    const std::size_t filled = kBarWidth * done / total;
    const std::string bar = std::string(filled, '#') + std::string(kBarWidth - filled, '.');
    const std::string shown = name.size() <= kNameWidth ? name : "..." + name.substr(name.size() - kNameWidth);
    std::fprintf(stderr, "%s[%s] %zu/%zu %s", kClearLine, bar.c_str(), done, total, Printable(shown).c_str());
    std::fflush(stderr);
    barShown_ = true;
}

void Console::EndProgress()
{
    if (barShown_)
    {
        std::fputs(kClearLine, stderr);
        barShown_ = false;
    }
}

} // namespace gpbtool
