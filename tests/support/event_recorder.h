/**
 * Records what the reference platform tells its observer: allocations, releases, vectors, assertions, and errors.
 *
 * There is one observer per process, so there is one recorder at a time.
 */
#ifndef GPB_TESTS_SUPPORT_EVENT_RECORDER_H
#define GPB_TESTS_SUPPORT_EVENT_RECORDER_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_host.h"

namespace gpbtest
{

/** An event, with a copy of its file text. */
struct PlatformEvent
{
    GpbHostEventKind kind;
    uint32_t moduleId;
    uint8_t partition;
    const void *memory;
    size_t size;
    std::string file;
    uint32_t line;

    /** "FILE:LINE" */
    std::string site() const { return file + ":" + std::to_string(line); }

    /** "KIND FILE:LINE", with the kind's name as in gpb_host.h after GPB_HOST_EVENT_ */
    std::string str() const;
};

class EventRecorder
{
public:
    EventRecorder();
    ~EventRecorder();
    EventRecorder(const EventRecorder &) = delete;
    EventRecorder &operator=(const EventRecorder &) = delete;

    /** All events since the last clearing, in order. */
    const std::vector<PlatformEvent> &events() const { return m_events; }

    /** The events of one kind. */
    std::vector<PlatformEvent> ofKind(GpbHostEventKind kind) const;

    /** "FILE:LINE" of the events of one kind. */
    std::vector<std::string> sites(GpbHostEventKind kind) const;

    /** "KIND FILE:LINE" of the events of the given kinds, in order; of all events when no kind is given. */
    std::vector<std::string> texts(std::initializer_list<GpbHostEventKind> kinds = {}) const;

    /** "FILE:LINE" of the assertions since the last taking; those that a clearing forgot are not among them. */
    std::vector<std::string> takeAsserts();

    void clear()
    {
        m_events.clear();
        m_takenAsserts = 0;
    }

private:
    static void observe(void *recorder, const GpbHostEvent *event);

    std::vector<PlatformEvent> m_events;
    size_t m_takenAsserts = 0; // of the assertions in m_events
};

} // namespace gpbtest

#endif
