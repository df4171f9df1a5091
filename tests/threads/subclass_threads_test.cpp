/** Compilers of a host's own classes, which look at their messages, beside the library's own. */
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/message.h>
#include <thread>

#include "gpb_templatelib/gpb_compiler.h"
#include "support/run_together.h"
#include "thread_life.h"

namespace gpbtest
{
namespace
{

constexpr int kUses = 20;

/** What a subclass finds in its message after an encode: what it would serialize to. */
std::string seenIn(const google::protobuf::Message *message)
{
    return message == nullptr ? "nothing" : message->SerializeAsString();
}

class LookingXmlCompiler : public GpbXmlCompiler
{
public:
    using GpbXmlCompiler::GpbXmlCompiler;

    unsigned int Encode(_xmlDoc *document) override
    {
        const unsigned int code = GpbXmlCompiler::Encode(document);
        m_seen = seenIn(pstMessage);
        return code;
    }

    const std::string &seen() const { return m_seen; }

private:
    std::string m_seen;
};

class LookingJsonCompiler : public GpbJsonCompiler
{
public:
    using GpbJsonCompiler::GpbJsonCompiler;

    unsigned int EncodeJson(cJSON *root, cJSON *item) override
    {
        const unsigned int code = GpbJsonCompiler::EncodeJson(root, item);
        m_seen = seenIn(pstMessage);
        return code;
    }

    const std::string &seen() const { return m_seen; }

private:
    std::string m_seen;
};

const CompilerKind &libraryXml()
{
    return compilerKinds()[0];
}

const CompilerKind &libraryJson()
{
    return compilerKinds()[2];
}

template <typename Compiler>
GpbXmlCompilerBase *create(void *handle, const char *module)
{
    auto *const context = static_cast<GpbLibContext *>(handle);
    if (GPBLIB_ProtobufLoad(context, module, 0) != 0)
    {
        return nullptr;
    }
    const google::protobuf::compiler::Importer *const importer = GPBLIB_GetImporter(context);
    return new Compiler(importer->pool()->FindFileByName(std::string(module) + ".proto"), importer, context);
}

/** The result, which has to be what the subclass saw. */
template <typename Compiler, const CompilerKind &(*libraryKind)()>
std::string use(GpbLibContext *context, GpbXmlCompilerBase *compiler)
{
    const std::string result = libraryKind().use(context, compiler);
    return static_cast<Compiler *>(compiler)->seen() == result ? result : "another message than the result";
}

const std::vector<CompilerKind> &mixedKinds()
{
    static const std::vector<CompilerKind> kinds = {
        {"a host's XML to GPB", create<LookingXmlCompiler>, use<LookingXmlCompiler, libraryXml>},
        libraryXml(),
        {"a host's JSON to GPB", create<LookingJsonCompiler>, use<LookingJsonCompiler, libraryJson>},
        libraryJson(),
    };
    return kinds;
}

class SubclassThreadsTest : public ThreadFixture
{
protected:
    static const CompilerKind &kindOf(size_t number) { return mixedKinds()[number % mixedKinds().size()]; }

    /** A context whose module is loaded. */
    static GpbLibContext *newLoadedContext()
    {
        GpbLibContext *const context = newSilentContext();
        EXPECT_EQ(0u, GPBLIB_ProtobufLoad(context, kFaultModule, 0));
        return context;
    }
};

TEST_F(SubclassThreadsTest, BesideTheLibrarysOwnInOneContext)
{
    GpbLibContext *const context = newLoadedContext();
    std::string expected[kThreads];
    int good[kThreads] = {};
    for (size_t i = 0; i < kThreads; ++i)
    {
        expected[i] = alone(kindOf(i));
    }
    runTogether(kThreads,
                [&](size_t i)
                {
                    for (int use = 0; use < kUses; ++use)
                    {
                        good[i] += useOnce(kindOf(i), context) == expected[i] ? 1 : 0;
                    }
                });
    for (size_t i = 0; i < kThreads; ++i)
    {
        EXPECT_EQ(kUses, good[i]) << "thread " << i << ", " << kindOf(i).name;
    }
    expectWholeMessage(expected[0]);
    EXPECT_EQ(expected[0], expected[1]) << "XML of host and library";
    EXPECT_NE("", expected[2]);
    EXPECT_EQ(expected[2], expected[3]) << "JSON of host and library";
    GPBLIB_Uninitial(context);
}

TEST_F(SubclassThreadsTest, TwoContextsOnTwoThreads)
{
    constexpr size_t kContexts = 2;
    std::vector<std::string> expected;
    for (const CompilerKind &kind : mixedKinds())
    {
        expected.push_back(alone(kind));
    }
    size_t good[kContexts] = {};
    runTogether(kContexts,
                [&](size_t i)
                {
                    GpbLibContext *const context = newLoadedContext();
                    for (int use = 0; use < kUses; ++use)
                    {
                        for (size_t kind = 0; kind < expected.size(); ++kind)
                        {
                            good[i] += useOnce(kindOf(kind), context) == expected[kind] ? 1 : 0;
                        }
                    }
                    GPBLIB_Uninitial(context);
                });
    EXPECT_EQ(kUses * expected.size(), good[0]);
    EXPECT_EQ(kUses * expected.size(), good[1]);
}

// A context may go from thread to thread, as in a pool of workers that serve one request after the other.
TEST_F(SubclassThreadsTest, ManyCompilersOfOneContextOneAfterTheOther)
{
    GpbLibContext *const context = newLoadedContext();
    for (size_t request = 0; request < kUses * mixedKinds().size(); ++request)
    {
        std::string result;
        std::thread([&] { result = useOnce(kindOf(request), context); }).join();
        ASSERT_EQ(alone(kindOf(request)), result) << "request " << request << ", " << kindOf(request).name;
    }
    GPBLIB_Uninitial(context);
}

} // namespace
} // namespace gpbtest
