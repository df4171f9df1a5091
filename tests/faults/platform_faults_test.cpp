/** Each call of the platform and each call of the host's callbacks failing in turn, over whole lives. */
#include <functional>

#include "faults/fault_life.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_objtree.h"
#include "platform/zmp.h"
#include "support/library_fixture.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::FaultResult;

class PlatformFaults : public gpbtest::LibraryFixture
{
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        writeProto(gpbtest::kFaultModule, gpbtest::kFaultProto);
        writeProto(gpbtest::kIdentityModule, gpbtest::kIdentityProto);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), gpbtest::kFaultModule, 0));
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), gpbtest::kIdentityModule, 0));
        // What a map from a first run keeps for good is made before the runs are compared.
        GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(context(), gpbtest::kFaultModule));
    }

    /** Fails each call in turn; after each failure the same context must give the good result again. */
    uint64_t failEach(const std::function<FaultResult()> &life)
    {
        const FaultResult good = life();
        EXPECT_TRUE(good.isDone);
        const uint64_t count = failEachCall(
            [&](const gpbtest::FaultRun &run)
            {
                const uint64_t before = GpbHost_TotalCallCount();
                const FaultResult result = life();
                EXPECT_TRUE(run.fails() || result == good);
                EXPECT_GE(GpbHost_TotalCallCount() - before, run.failingCall);
                if (run.fails())
                {
                    GpbHost_FailAnyCall(0);
                    EXPECT_EQ(good, life()) << "the context is not what it was";
                }
            });
        log().clear();
        return count;
    }
};

TEST_F(PlatformFaults, XmlToGpb)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    EXPECT_GT(failEach(
                  [&] {
                      return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), gpbtest::kFaultModule),
                                                document.get());
                  }),
              20u);
}

TEST_F(PlatformFaults, XmlWithIdentities)
{
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    failEach(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), gpbtest::kIdentityModule),
                                      document.get());
        });
    failEach(
        [&]
        {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), gpbtest::kIdentityModule, 0),
                                      document.get());
        });
}

TEST_F(PlatformFaults, XmlToJson)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    failEach(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), gpbtest::kFaultModule, 1),
                                      document.get());
        });
}

TEST_F(PlatformFaults, JsonToGpbAndAttributes)
{
    cJSON *const document = cJSON_Parse(gpbtest::kFaultJson);
    ASSERT_NE(nullptr, document);
    cJSON *const root = document->child;
    const auto create = [&] { return GpbJsonCompiler_CreateJsonCompiler(context(), gpbtest::kFaultModule); };
    for (cJSON *item : {root, gpbtest::findItem(root, "list"), gpbtest::findItem(root, "a-leaf")})
    {
        ASSERT_NE(nullptr, item);
        failEach([&] { return gpbtest::encodeJson(create(), root, item); });
    }
    failEach([&] { return gpbtest::listAttributes(context(), create(), root, gpbtest::findItem(root, "box")); });
    cJSON_Delete(document);
}

TEST_F(PlatformFaults, Template)
{
    const gpbtest::FaultRecords records;
    EXPECT_GT(failEach([&] { return gpbtest::generateTemplate(context(), records); }), 50u);
}

/** Which question to the callbacks is answered with a failure. */
uint32_t g_failingQuestion = 0;
uint32_t g_questions = 0;

uint32_t answer(uint32_t classId, uint8_t fieldId, GpbCidFid *out)
{
    *out = {classId, fieldId, 1, {}};
    return ++g_questions == g_failingQuestion ? 0x77 : 0;
}

uint32_t mapClass(uint32_t, const GpbCidFid *index, const GpbCidFid *dom, GpbCidFid *out)
{
    const GpbCidFid &key = index != nullptr ? *index : *dom;
    return answer(key.uiClassId + 0x100, key.ucFieldId, out);
}

uint32_t mapName(uint32_t, const char *, GpbCidFid *out)
{
    return answer(0x500, 5, out);
}

TEST_F(PlatformFaults, TemplateWithCallbacks)
{
    // Without the printouts of the trees, which the test before has.
    recreateContext({GPB_LOG_PROGRESS});
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), gpbtest::kFaultModule, 0));
    const gpbtest::FaultRecords records;
    const auto life = [&] { return gpbtest::generateTemplate(context(), records); };
    for (const bool byClass : {true, false})
    {
        if (byClass)
        {
            GPBLIB_RegisterClassMapFunc(context(), 1, mapClass);
        }
        else
        {
            GPBLIB_RegisterFieldNameMapFunc(context(), 1, mapName);
        }
        g_failingQuestion = 0;
        failEach(life);
        g_questions = 0;
        const FaultResult good = life();
        const uint32_t questions = g_questions;
        EXPECT_GT(questions, 3u);
        for (uint32_t failing = 1; failing <= questions; ++failing)
        {
            g_questions = 0;
            g_failingQuestion = failing;
            EXPECT_FALSE(life() == good) << "question " << failing << " makes no difference";
            g_failingQuestion = 0;
            EXPECT_EQ(good, life());
        }
    }
    log().clear();
}

TEST_F(PlatformFaults, LoadingAndEverythingBehindIt)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    failEach(
        [&]
        {
            // A place that could not be mapped is mapped when all files are unloaded and the next one loads.
            GPBLIB_UnloadProtoFileAll(context(), 0);
            FaultResult result =
                gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), gpbtest::kFaultModule), document.get());
            GPBLIB_UnloadProtoFileAll(context(), 0);
            return result;
        });
}

TEST_F(PlatformFaults, Helpers)
{
    failEach(
        [&]
        {
            FaultResult result;
            char *const copy = Gpb_util_StrDup(kModuleId, "text", nullptr);
            GpbYangEnumItem *items = nullptr;
            uint32_t count = 0;
            const uint32_t listed =
                Gpb_ModuleAdapt_GetEnumList(context(), Gpb_ModuleAdapt_GetFileHandle(context(), gpbtest::kFaultModule),
                                            "top", "colors", &items, &count);
            EXPECT_TRUE((listed == 0) == (items != nullptr));
            GpbProtoFileInfo *files = nullptr;
            const uint32_t listedFiles = GPBLIB_GetAllProtoFileInfo(context(), &files, &count);
            EXPECT_TRUE((listedFiles == 0) == (files != nullptr));
            cJSON *const item = GpbLib_Json_AllocString(kModuleId, "x");
            char *const text = GpbLib_Json_EncodeUnformatted(kModuleId, item);
            GpbLib_Json_NodeFree(item);
            result.isDone = copy != nullptr && listed == 0 && listedFiles == 0 && text != nullptr;
            result.add(copy == nullptr ? "" : copy);
            result.add(text == nullptr ? "" : text);
            for (void *memory : {static_cast<void *>(copy), static_cast<void *>(items), static_cast<void *>(files),
                                 static_cast<void *>(text)})
            {
                ZMP_Free_F(memory, "faults", 1);
            }
            return result;
        });
}

TEST_F(PlatformFaults, TreeBuilders)
{
    failEach(
        [&]
        {
            FaultResult result;
            ObjTree tree = GPBLIB_RDMI_CreateRoot(kModuleId, "root");
            const RdmiNodeAttr node = {1, "box", 3, 0};
            const RdmiFieldAttr field = {1, 2, "leaf", 4, 5, 6};
            ObjNode *const box = GPBLIB_RDMI_CreateNode(tree, nullptr, 1, &node);
            const bool isBuilt = GPBLIB_RDMI_AddFieldAttribute(tree, box, &field) != nullptr &&
                                 GPBLIB_RDMI_CreateString(tree, box, 2, 2, "ab") != nullptr &&
                                 GPBLIB_RDMI_CreateInteger(tree, box, 3, 7) != nullptr;
            std::string bytes(GPBLIB_ObjTree_GetWriteLen(tree), '\0');
            const uint32_t written =
                GPBLIB_ObjTree_Write(tree, reinterpret_cast<uint8_t *>(bytes.data()),
                                     static_cast<uint32_t>(bytes.size()), GPB_OBJTREE_MODE_TEMPLATE, context());
            GPBLIB_ObjTree_Delete(&tree);
            result.isDone = isBuilt && written == bytes.size();
            result.add(bytes.data(), bytes.size());
            return result;
        });
}

} // namespace
