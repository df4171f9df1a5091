/** Contexts are independent of each other: each thread lives its own library life. */
#include "gpb_templatelib/gpb_template.h"
#include "platform/zmp.h"
#include "support/run_together.h"
#include "thread_life.h"

namespace gpbtest
{
namespace
{

constexpr int kLives = 3;
constexpr int kTemplates = 10;

class ContextThreadsTest : public ThreadFixture
{
protected:
    /** From the creation of a context to its end: all kinds of compilers, loading anew between two rounds. */
    static std::string wholeLife(size_t slot)
    {
        std::string told;
        GpbLibContext *const context = newContext(slot, &told);
        for (int round = 0; round < 2; ++round)
        {
            told += "load " + std::to_string(GPBLIB_ProtobufLoad(context, kFaultModule, 0)) + "\n";
            told += "load " + std::to_string(GPBLIB_ProtobufLoad(context, "no-such-module", 0)) + "\n";
            for (const CompilerKind &kind : compilerKinds())
            {
                const std::string result = useOnce(kind, context);
                told += kind.name + (": " + result) + "\n";
            }
            GPBLIB_UnloadProtoFileAll(context, 0);
        }
        GPBLIB_Uninitial(context);
        return told;
    }

    /** Makes, dumps, reads, prints and deletes templates. */
    static std::string templateLife(size_t slot)
    {
        std::string told;
        GpbLibContext *const context = newContext(slot, &told);
        GPBLIB_ProtobufLoad(context, kFaultModule, 0);
        {
            const FaultRecords records;
            for (int i = 0; i < kTemplates; ++i)
            {
                uint8_t *bytes = nullptr;
                uint16_t length = 0;
                uint32_t classId = 0;
                GPBLIB_GetClassIdFromYangNode(context, records.target(), &classId);
                GPBLIB_UpdateProtoFileClassInfo(context, kFaultModule, 0, "/top/list", records.target());
                GPBLIB_DumpProtoFileData(context, "/top/list", classId, &bytes, &length);
                told += bytes == nullptr ? "nothing" : std::string(reinterpret_cast<const char *>(bytes), length);
                ObjTree tree = GPBLIB_ObjTree_Read(bytes, length, nullptr, kModuleId, context);
                GPBLIB_ObjTree_Print(tree, context);
                GPBLIB_ObjTree_Delete(&tree);
                ZMP_Free_F(bytes, "threads", 1);
                forgetTemplates(context);
            }
        }
        GPBLIB_Uninitial(context);
        return told;
    }

    /** Every thread gets what one thread gets that runs alone afterwards. */
    static void expectAlike(std::string (*life)(size_t), int rounds)
    {
        std::string told[kThreads];
        runTogether(kThreads,
                    [&](size_t i)
                    {
                        for (int round = 0; round < rounds; ++round)
                        {
                            told[i] += life(i);
                        }
                    });
        std::string expected;
        for (int round = 0; round < rounds; ++round)
        {
            expected += life(kThreads);
        }
        EXPECT_EQ(std::string::npos, expected.find("nothing"));
        for (size_t i = 0; i < kThreads; ++i)
        {
            EXPECT_EQ(expected, told[i]) << "thread " << i;
        }
    }
};

TEST_F(ContextThreadsTest, WholeLivesSideBySide)
{
    expectAlike(wholeLife, kLives);
}

TEST_F(ContextThreadsTest, TemplatesSideBySide)
{
    expectAlike(templateLife, kLives);
}

} // namespace
} // namespace gpbtest
