/** Compilers of one context, whose module is loaded: they share its descriptors, which nobody changes any more. */
#include "gpb_templatelib/gpb_extension.h"
#include "support/run_together.h"
#include "support/xml_document.h"
#include "thread_life.h"

namespace gpbtest
{
namespace
{

constexpr int kUses = 20;

class CompilerThreadsTest : public ThreadFixture
{
protected:
    void SetUp() override
    {
        ThreadFixture::SetUp();
        m_context = newSilentContext();
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, kFaultModule, 0));
    }

    void TearDown() override
    {
        GPBLIB_Uninitial(m_context);
        ThreadFixture::TearDown();
    }

    /** The kind of a thread: each kind is on two threads. */
    static const CompilerKind &kindOf(size_t thread) { return compilerKinds()[thread % compilerKinds().size()]; }

    GpbLibContext *context() const { return m_context; }

    /** `good` are the uses of each thread that gave what the same use gives on one thread alone. */
    void expectAllGood(const int (&good)[kThreads])
    {
        for (size_t i = 0; i < kThreads; ++i)
        {
            EXPECT_EQ(kUses, good[i]) << "thread " << i << ", " << kindOf(i).name;
        }
        expectWholeMessage(alone(compilerKinds()[0]));
    }

private:
    GpbLibContext *m_context = nullptr;
};

TEST_F(CompilerThreadsTest, EachEncodesOnAThreadOfItsOwn)
{
    GpbXmlCompilerBase *compilers[kThreads] = {};
    std::string expected[kThreads];
    int good[kThreads] = {};
    for (size_t i = 0; i < kThreads; ++i)
    {
        compilers[i] = kindOf(i).create(context(), kFaultModule);
        ASSERT_NE(nullptr, compilers[i]);
        expected[i] = alone(kindOf(i));
    }
    runTogether(kThreads,
                [&](size_t i)
                {
                    for (int use = 0; use < kUses; ++use)
                    {
                        good[i] += kindOf(i).use(context(), compilers[i]) == expected[i] ? 1 : 0;
                    }
                });
    for (GpbXmlCompilerBase *compiler : compilers)
    {
        GpbXmlCompiler_Destory(compiler);
    }
    expectAllGood(good);
}

TEST_F(CompilerThreadsTest, MadeAndDestroyedOnThreadsAfterLoading)
{
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
                        good[i] += useOnce(kindOf(i), context()) == expected[i] ? 1 : 0;
                    }
                });
    expectAllGood(good);
}

// What a message type's names are looked up by is made at the first search, whichever compiler searches first.
TEST_F(CompilerThreadsTest, FirstSearchesAtTheSameMoment)
{
    std::string results[kThreads];
    runTogether(kThreads, [&](size_t i) { results[i] = useOnce(kindOf(i), context()); });
    for (size_t i = 0; i < kThreads; ++i)
    {
        EXPECT_EQ(alone(kindOf(i)), results[i]) << "thread " << i << ", " << kindOf(i).name;
    }
}

// ---- the lossless setting ----

constexpr const char *kTwoEntries = "<top><list><a-leaf>1</a-leaf></list><list><a-leaf>2</a-leaf></list></top>";

/** What an encode of kTwoEntries gives in a context. */
std::string encodeEntries(GpbLibContext *context)
{
    const XmlDocument document(kTwoEntries);
    GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(context, kFaultModule);
    unsigned int length = 0;
    unsigned int error = 0;
    const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
    std::string result = bytes == nullptr ? "nothing" : std::string(bytes, length);
    GpbXmlCompiler_Destory(compiler);
    return result;
}

class LosslessThreadsTest : public CompilerThreadsTest
{
protected:
    void SetUp() override
    {
        CompilerThreadsTest::SetUp();
        m_judge.addFile(std::string(kFaultModule) + ".proto", kFaultProto);
    }

    void expectEntries(const std::string &bytes, bool isLossless)
    {
        EXPECT_TRUE(m_judge.holds("life.Top", bytes,
                                  isLossless ? "list { kind_a { a_leaf: '1' } } list { kind_a { a_leaf: '2' } }"
                                             : "list { kind_a { a_leaf: '2' } } list {}"));
    }

private:
    ProtoJudge m_judge;
};

TEST_F(LosslessThreadsTest, EachContextHasItsOwnSetting)
{
    GpbLibContext *contexts[kThreads] = {};
    std::string results[kThreads];
    for (GpbLibContext *&one : contexts)
    {
        one = newSilentContext();
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(one, kFaultModule, 0));
    }
    runTogether(kThreads,
                [&](size_t i)
                {
                    const bool isLossless = i % 2 == 1;
                    for (int use = 0; use < kUses; ++use)
                    {
                        GPBEXT_SetLossless(contexts[i], isLossless ? 1 : 0);
                        results[i] = encodeEntries(contexts[i]);
                        GPBEXT_SetLossless(contexts[i], isLossless ? 0 : 1);
                    }
                });
    for (size_t i = 0; i < kThreads; ++i)
    {
        expectEntries(results[i], i % 2 == 1);
        GPBLIB_Uninitial(contexts[i]);
    }
}

TEST_F(LosslessThreadsTest, FirstLosslessSearchesAtTheSameMoment)
{
    ASSERT_EQ(0u, GPBEXT_SetLossless(context(), 1));
    std::string results[kThreads];
    runTogether(kThreads, [&](size_t i) { results[i] = encodeEntries(context()); });
    for (const std::string &result : results)
    {
        expectEntries(result, true);
    }
}

} // namespace
} // namespace gpbtest
