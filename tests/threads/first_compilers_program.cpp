/** The first compilers of the process, made at the same moment: a program of its own. */
#include "gpb_templatelib/gpb_compiler.h"
#include "support/run_together.h"
#include "thread_life.h"

namespace gpbtest
{
namespace
{

class FirstCompilersTest : public ThreadFixture
{
};

// Each thread has a context of its own; the table of special characters is the process's.
TEST_F(FirstCompilersTest, EveryKindAtTheSameMoment)
{
    ASSERT_EQ(0, GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>('!')]);
    const auto &kinds = compilerKinds();
    GpbLibContext *contexts[kThreads] = {};
    std::string results[kThreads];
    for (GpbLibContext *&context : contexts)
    {
        context = newSilentContext();
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context, kFaultModule, 0));
    }
    runTogether(kThreads, [&](size_t i) { results[i] = useOnce(kinds[i % kinds.size()], contexts[i]); });
    for (GpbLibContext *context : contexts)
    {
        GPBLIB_Uninitial(context);
    }
    EXPECT_EQ(1, GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>('!')]);
    expectWholeMessage(results[0]);
    for (size_t i = 0; i < kThreads; ++i)
    {
        EXPECT_EQ(alone(kinds[i % kinds.size()]), results[i]) << "thread " << i;
    }
}

} // namespace
} // namespace gpbtest
