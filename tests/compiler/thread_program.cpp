/** Compilers on several threads: a program of its own, since the first compilers of the process are made here. */
#include <atomic>
#include <google/protobuf/compiler/importer.h>
#include <thread>

#include "compiler/compiler_fixture.h"

namespace
{

constexpr size_t kThreads = 4;
constexpr int kEncodes = 50;
constexpr const char *kDocument = "<top><name>n</name><a-leaf>1</a-leaf><b-leaf>2</b-leaf><color>red</color>"
                                  "<entry><one>1</one></entry><entry><two>2</two></entry></top>";
constexpr const char *kExpected =
    "name: 'n' color: Color_RED entry { case_one { one: '1' } } entry { case_two { two: '2' } }";

/** Recorders belong to one thread, so nobody listens to the contexts. */
class ThreadTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        recreateContext({0, 1, 2, 3});
        addDataModule("choice");
    }

    /** Runs a body on each thread, with its number; all of them are let go at the same moment. */
    template <typename Body>
    static void runTogether(const Body &body)
    {
        std::atomic<size_t> waiting{kThreads};
        std::vector<std::thread> threads;
        for (size_t i = 0; i < kThreads; ++i)
        {
            threads.emplace_back(
                [&, i]
                {
                    --waiting;
                    while (waiting != 0)
                    {
                        std::this_thread::yield();
                    }
                    body(i);
                });
        }
        for (std::thread &thread : threads)
        {
            thread.join();
        }
    }

    static std::string encodeOnce(GpbXmlCompilerBase *compiler)
    {
        const gpbtest::XmlDocument document(kDocument);
        unsigned int length = 0;
        unsigned int error = 0;
        const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
        return bytes == nullptr ? "error " + std::to_string(error) : std::string(bytes, length);
    }
};

// Each thread has a context of its own; the table of special characters is the process's.
TEST_F(ThreadTest, FirstCompilersAtTheSameMoment)
{
    GpbLibContext *contexts[kThreads] = {};
    std::string results[kThreads];
    for (GpbLibContext *&own : contexts)
    {
        const GpbLibInitParam param = {1, 2, {}};
        own = GPBLIB_Initial(&param);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(own, "choice", 0));
    }
    runTogether(
        [&](size_t i)
        {
            GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(contexts[i], "choice");
            results[i] = encodeOnce(compiler);
            GpbXmlCompiler_Destory(compiler);
        });
    for (const std::string &bytes : results)
    {
        EXPECT_TRUE(judge().holds("choice.Top", bytes, kExpected));
    }
    for (GpbLibContext *own : contexts)
    {
        GPBLIB_Uninitial(own);
    }
    EXPECT_EQ(1, GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>('!')]);
}

// The plan of a context is made by whichever compiler comes first, and so is what each of them asks it first.
TEST_F(ThreadTest, FirstCompilersOfOneContextAtTheSameMoment)
{
    const google::protobuf::compiler::Importer *const importer = GPBLIB_GetImporter(context());
    const google::protobuf::FileDescriptor *const file = importer->pool()->FindFileByName("choice.proto");
    std::string results[kThreads];
    runTogether(
        [&](size_t i)
        {
            // Constructed directly: the calls on a context are made by one thread at a time.
            GpbXmlCompiler compiler(file, importer, context());
            results[i] = encodeOnce(&compiler);
        });
    for (const std::string &bytes : results)
    {
        EXPECT_TRUE(judge().holds("choice.Top", bytes, kExpected));
    }
}

TEST_F(ThreadTest, CompilersOfOneContext)
{
    GpbXmlCompilerBase *compilers[kThreads] = {};
    int good[kThreads] = {};
    for (GpbXmlCompilerBase *&compiler : compilers)
    {
        compiler = GpbXmlCompiler_CreateCompiler(context(), "choice");
        ASSERT_NE(nullptr, compiler);
    }
    const std::string expected = encodeOnce(compilers[0]);
    EXPECT_TRUE(judge().holds("choice.Top", expected, kExpected));
    runTogether(
        [&](size_t i)
        {
            for (int run = 0; run < kEncodes; ++run)
            {
                good[i] += encodeOnce(compilers[i]) == expected ? 1 : 0;
            }
        });
    for (size_t i = 0; i < kThreads; ++i)
    {
        EXPECT_EQ(kEncodes, good[i]) << "thread " << i;
        GpbXmlCompiler_Destory(compilers[i]);
    }
}

} // namespace
