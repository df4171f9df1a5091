#include "support/guard.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_host.h"

namespace gpbfuzz
{

namespace
{

[[noreturn]] void fail(const char *what)
{
    (void)std::fprintf(stderr, "finding: %s\n", what);
    std::abort();
}

/** The library's barrier would turn a fatal error of protobuf into a failure; here it counts as what it is. */
void onProtobufFatal(const std::string &message)
{
    fail(("protobuf: " + message).c_str());
}

void onEvent(void *mayAssert, const GpbHostEvent *event)
{
    const bool assertIsFinding = mayAssert == nullptr;
    if (event->eKind == GPB_HOST_EVENT_BAD_FREE || event->eKind == GPB_HOST_EVENT_OVERRUN ||
        (event->eKind == GPB_HOST_EVENT_ASSERT && assertIsFinding))
    {
        const std::string where = std::string(event->pcFile) + ":" + std::to_string(event->uiLine);
        fail((event->eKind == GPB_HOST_EVENT_BAD_FREE  ? "bad release at " + where
              : event->eKind == GPB_HOST_EVENT_OVERRUN ? "overrun found at " + where
                                                       : "assertion at " + where)
                 .c_str());
    }
}

} // namespace

void require(bool holds, const char *what)
{
    if (!holds)
    {
        fail(what);
    }
}

InputGuard::InputGuard(bool mayAssert) : m_held(GpbHost_LiveCount())
{
    GpbPbWatchFatal<onProtobufFatal>();
    static char yes;
    GpbHost_SetObserver(onEvent, mayAssert ? &yes : nullptr);
}

InputGuard::~InputGuard()
{
    if (GpbHost_LiveCount() != m_held)
    {
        GpbHost_PrintLive();
        fail("memory is held after the input");
    }
    GpbHost_SetObserver(nullptr, nullptr);
}

} // namespace gpbfuzz
