#include "diagnostics.h"

namespace gpbtool
{

namespace
{

/** Verbosity from which each level is shown, by level. */
constexpr int kShownFrom[GPB_LOG_LEVELS] = {0, 2, 1, 3};

/** The callbacks carry two 32-bit numbers, which have no room for a pointer. */
Diagnostics *g_active = nullptr;

} // namespace

Diagnostics::Diagnostics(Console &console, int verbosity) : console_(console), verbosity_(verbosity) {}

Diagnostics::~Diagnostics()
{
    if (g_active == this)
    {
        g_active = nullptr;
    }
}

void Diagnostics::Connect(GpbLibInitParam &param)
{
    g_active = this;
    for (std::uint32_t level = 0; level < GPB_LOG_LEVELS; ++level)
    {
        // Problems are counted at every verbosity; the other levels stay closed while nobody listens, since the text
        // of a message is costly.
        const bool counted = level == GPB_LOG_ERROR || level == GPB_LOG_SKIP;
        param.astPrint[level].ulPrintArg = level;
        param.astPrint[level].pfnPrint = counted || Shown(level) ? &Diagnostics::Print : nullptr;
    }
}

void Diagnostics::Reset()
{
    problems_ = 0;
    lastFailure_.clear();
}

std::uint32_t Diagnostics::Print(std::uint32_t, std::uint32_t level, const char *, const char *text)
{
    if (g_active != nullptr)
    {
        g_active->Take(level, text);
    }
    return 0;
}

void Diagnostics::Take(std::uint32_t level, const char *text)
{
    if (level == GPB_LOG_ERROR || level == GPB_LOG_SKIP)
    {
        ++problems_;
    }
    if (level == GPB_LOG_ERROR)
    {
        lastFailure_ = text;
    }
    if (Shown(level))
    {
        console_.Print("library[" + std::to_string(level) + "]: " + text);
    }
}

bool Diagnostics::Shown(std::uint32_t level) const
{
    return level < GPB_LOG_LEVELS && verbosity_ >= kShownFrom[level] && !(quiet_ && verbosity_ == 0);
}

} // namespace gpbtool
