#include "support/event_recorder.h"

#include <algorithm>

namespace gpbtest
{

namespace
{

const char *nameOf(GpbHostEventKind kind)
{
    switch (kind)
    {
    case GPB_HOST_EVENT_MALLOC:
        return "MALLOC";
    case GPB_HOST_EVENT_MALLOC_FAILED:
        return "MALLOC_FAILED";
    case GPB_HOST_EVENT_FREE:
        return "FREE";
    case GPB_HOST_EVENT_BAD_FREE:
        return "BAD_FREE";
    case GPB_HOST_EVENT_OVERRUN:
        return "OVERRUN";
    case GPB_HOST_EVENT_ASSERT:
        return "ASSERT";
    case GPB_HOST_EVENT_VEC_INIT:
        return "VEC_INIT";
    case GPB_HOST_EVENT_VEC_FREE:
        return "VEC_FREE";
    }
    return "UNKNOWN";
}

} // namespace

std::string PlatformEvent::str() const
{
    return std::string(nameOf(kind)) + " " + site();
}

EventRecorder::EventRecorder()
{
    GpbHost_SetObserver(observe, this);
}

EventRecorder::~EventRecorder()
{
    GpbHost_SetObserver(nullptr, nullptr);
}

void EventRecorder::observe(void *recorder, const GpbHostEvent *event)
{
    static_cast<EventRecorder *>(recorder)->m_events.push_back(
        {event->eKind, event->uiModuleId, event->ucPartition, event->pvMem, event->uiSize,
         event->pcFile != nullptr ? event->pcFile : "(null)", event->uiLine});
}

std::vector<PlatformEvent> EventRecorder::ofKind(GpbHostEventKind kind) const
{
    std::vector<PlatformEvent> found;
    std::copy_if(m_events.begin(), m_events.end(), std::back_inserter(found),
                 [kind](const PlatformEvent &event) { return event.kind == kind; });
    return found;
}

std::vector<std::string> EventRecorder::sites(GpbHostEventKind kind) const
{
    std::vector<std::string> sites;
    for (const PlatformEvent &event : ofKind(kind))
    {
        sites.push_back(event.site());
    }
    return sites;
}

std::vector<std::string> EventRecorder::takeAsserts()
{
    std::vector<std::string> taken = sites(GPB_HOST_EVENT_ASSERT);
    taken.erase(taken.begin(), taken.begin() + static_cast<std::ptrdiff_t>(m_takenAsserts));
    m_takenAsserts += taken.size();
    return taken;
}

std::vector<std::string> EventRecorder::texts(std::initializer_list<GpbHostEventKind> kinds) const
{
    std::vector<std::string> texts;
    for (const PlatformEvent &event : m_events)
    {
        if (kinds.size() == 0 || std::find(kinds.begin(), kinds.end(), event.kind) != kinds.end())
        {
            texts.push_back(event.str());
        }
    }
    return texts;
}

} // namespace gpbtest
