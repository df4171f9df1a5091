/** A test with a library context, under the checking platform. */
#ifndef GPB_TESTS_SUPPORT_LIBRARY_FIXTURE_H
#define GPB_TESTS_SUPPORT_LIBRARY_FIXTURE_H

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>

#include "gpb_templatelib/gpb_lib.h"
#include "support/log_recorder.h"
#include "support/platform_fixture.h"

namespace gpbtest
{

/** Closes the print slots of a context for as long as it lives: nobody listens meanwhile. */
class ClosedSlots
{
public:
    explicit ClosedSlots(GpbLibContext *context) : m_context(context), m_open(*context)
    {
        for (GpbLibPrintEntry &slot : context->astPrint)
        {
            slot.pfnPrint = nullptr;
        }
    }

    ~ClosedSlots()
    {
        std::copy(std::begin(m_open.astPrint), std::end(m_open.astPrint), std::begin(m_context->astPrint));
    }

    ClosedSlots(const ClosedSlots &) = delete;
    ClosedSlots &operator=(const ClosedSlots &) = delete;

private:
    GpbLibContext *m_context;
    GpbLibContext m_open;
};

/**
 * The context is there when the test begins, with all four levels open and the log empty. The directory
 * "reslink/protobuf" exists below the work path.
 */
class LibraryFixture : public PlatformFixture
{
protected:
    /** Where proto files lie below the work path. */
    static constexpr const char *kProtoDirectory = "reslink/protobuf/";

    void SetUp() override;
    void TearDown() override;

    GpbLibContext *context() const { return m_context; }
    LogRecorder &log() { return m_log; }

    /** Destroys the context and creates another one with some levels closed; the log is empty afterwards. */
    void recreateContext(std::initializer_list<uint32_t> closedLevels = {});

    /** Destroys the context ahead of the end of the test. */
    void destroyContext();

    /** Writes MODULE.proto into "reslink/protobuf", or into another directory below the work path; returns its path. */
    std::string writeProto(const std::string &module, const std::string &text,
                           const std::string &directory = kProtoDirectory) const;

private:
    LogRecorder m_log;
    GpbLibContext *m_context = nullptr;
};

} // namespace gpbtest

#endif
