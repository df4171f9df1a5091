#include "diagnostics.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace gpbtool
{

namespace
{

/** Verbosity from which each level is shown, by level. */
constexpr int kShownFrom[GPB_LOG_LEVELS] = {0, 2, 1, 3};

/**
 * The callbacks carry two 32-bit numbers, which have no room for a pointer: the print handle of a context is the number
 * of its object here. Contexts come and go on several threads.
 */
class Connections
{
public:
    std::uint32_t Add(Diagnostics *diagnostics)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        connected_.push_back(diagnostics);
        return static_cast<std::uint32_t>(connected_.size() - 1);
    }

    void Remove(Diagnostics *diagnostics)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        Diagnostics *const gone = nullptr;
        std::replace(connected_.begin(), connected_.end(), diagnostics, gone);
    }

    Diagnostics *Find(std::uint32_t handle)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return handle < connected_.size() ? connected_[handle] : nullptr;
    }

private:
    std::mutex mutex_;
    std::vector<Diagnostics *> connected_; /**< null: gone */
};

Connections g_connections;

} // namespace

Diagnostics::Diagnostics(Console &console, int verbosity) : console_(console), verbosity_(verbosity) {}

Diagnostics::~Diagnostics()
{
    g_connections.Remove(this);
}

void Diagnostics::Connect(GpbLibInitParam &param)
{
    param.ulPrintHandle = g_connections.Add(this);
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

std::uint32_t Diagnostics::Print(std::uint32_t handle, std::uint32_t level, const char *, const char *text)
{
    if (Diagnostics *diagnostics = g_connections.Find(handle))
    {
        diagnostics->Take(level, text);
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
