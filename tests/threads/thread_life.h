/** What one thread does with the library, and what it gets: the same on each, and the same as on one thread alone. */
#ifndef GPB_TESTS_THREADS_THREAD_LIFE_H
#define GPB_TESTS_THREADS_THREAD_LIFE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "faults/fault_life.h"
#include "support/platform_fixture.h"
#include "support/proto_judge.h"

struct _xmlDoc;

namespace gpbtest
{

constexpr size_t kThreads = 8;

/** One kind of compiler: how it is made, and one use of it on a document of the thread's own; the result's bytes. */
struct CompilerKind
{
    const char *name;
    GpbXmlCompilerBase *(*create)(void *context, const char *module);
    std::string (*use)(GpbLibContext *context, GpbXmlCompilerBase *compiler);
};

/** XML to GPB, XML to JSON, JSON to GPB, and model attributes. */
const std::vector<CompilerKind> &compilerKinds();

/** Makes a compiler of a kind, uses it and destroys it. */
std::string useOnce(const CompilerKind &kind, GpbLibContext *context);

/** The work path holds the module of fault_life.h, and nothing may be held when a test ends. */
class ThreadFixture : public PlatformFixture
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** A context whose messages of all levels go to `log`; the slot is the thread's number, kThreads for no thread. */
    static GpbLibContext *newContext(size_t slot, std::string *log);

    /** A context that nobody listens to. */
    static GpbLibContext *newSilentContext();

    /** What a kind of compiler gives on one thread alone, from a context of its own. */
    static std::string alone(const CompilerKind &kind);

    /** What the first kind gives must be what protobuf itself makes of the document. */
    void expectWholeMessage(const std::string &bytes);
};

} // namespace gpbtest

#endif
