/** Compilers from their making to their end, of modules that are loaded: what comes of each failing call. */
#include "faults/fault_outcomes.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::FaultResult;
using gpbtest::kFaultModule;
using gpbtest::kIdentityModule;

class CompilerOutcomes : public gpbtest::FaultOutcomes
{
protected:
    void SetUp() override
    {
        FaultOutcomes::SetUp();
        writeProto(kFaultModule, gpbtest::kFaultProto);
        writeProto(kIdentityModule, gpbtest::kIdentityProto);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), kFaultModule, 0));
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), kIdentityModule, 0));
        m_json = cJSON_Parse(gpbtest::kFaultJson);
        ASSERT_NE(nullptr, m_json);
    }

    void TearDown() override
    {
        cJSON_Delete(m_json);
        FaultOutcomes::TearDown();
    }

    cJSON *root() const { return m_json->child; }

    FaultResult encodeItem(cJSON *item)
    {
        return gpbtest::encodeJson(GpbJsonCompiler_CreateJsonCompiler(context(), kFaultModule), root(), item);
    }

    cJSON *m_json = nullptr;
};

TEST_F(CompilerOutcomes, XmlToGpb)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    expectOutcomes(
        [&] { return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), kFaultModule), document.get()); },
        {"MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_xmlcompiler.cpp asserted",
         "STRCPY 1: none, code 11; 2 lines gone; +0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.; +0: "
         "[14GpbXmlCompiler]Fail to encode, error code is 11.",
         "STRCPY 2: same; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 5 lines gone; +1: File (life-of-a-host.proto) not "
         "exists!; +0: [GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 5 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:52 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler]Fail to get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-5: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 5 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompiler]Fail to load "
         "proto file life-of-a-host.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 5 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host."});
}

TEST_F(CompilerOutcomes, XmlToGpbWithIdentities)
{
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    expectOutcomes(
        [&] { return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), kIdentityModule), document.get()); },
        {"MALLOC 1: other bytes; -1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 38.; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 30.",
         "MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_xmlcompiler.cpp asserted",
         "STRCPY 1: none, code 11; 2 lines gone; +0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.; +0: "
         "[14GpbXmlCompiler]Fail to encode, error code is 11.",
         "STRCPY 2: same; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 5 lines gone; +1: File (identity.proto) not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file identity.",
         "SPRINTF 1-6: other bytes; -1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 38.; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 30.",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 5 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file identity.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:52 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler]Fail to get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-5: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 5 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompiler]Fail to load "
         "proto file identity.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 5 lines gone; +1: File (identity.proto) not exists!; +0: [GpbXmlCompiler]Fail to "
         "load proto file identity."});
}

// Compilers load their module when it is not loaded.
TEST_F(CompilerOutcomes, LoadingXmlToGpb)
{
    const gpbtest::XmlDocument document("<top><flag/></top>");
    expectOutcomes(
        [&]
        {
            GPBLIB_UnloadProtoFileAll(context(), 0);
            const FaultResult result =
                gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(context(), kFaultModule), document.get());
            GPBLIB_UnloadProtoFileAll(context(), 0);
            return result;
        },
        {"MALLOC 1: none, code 0; 3 lines gone; +1: failed to malloc memory for save protofile; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "VEC_SET 1: none, code 0; 3 lines gone; +0: failed to save protofile fd to local; +0: [GpbXmlCompiler]Fail to "
         "load proto file life-of-a-host.",
         "MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_template:448 asserted",
         "MEMSET 2: same; gpb_xmlcompiler.cpp asserted",
         "STRCPY 1: none, code 11; 2 lines gone; +0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.; +0: "
         "[14GpbXmlCompiler]Fail to encode, error code is 11.",
         "STRCPY 2: same; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 5 lines gone; +1: File (life-of-a-host.proto) not "
         "exists!; +0: [GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "STRNCPY 2: none, code 0; gpb_template:340 asserted; 3 lines gone; +0: load protofile failed; +1: "
         "GPBLIB_LoadProtoFile end ; +0: [GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "STRNCPY 3: same; gpb_template:394 asserted",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 5 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:52 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler]Fail to get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-5: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 5 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompiler]Fail to load "
         "proto file life-of-a-host.",
         "WORK_PATH 2: none, code 0; 3 lines gone; +0: load protofile failed; +1: GPBLIB_LoadProtoFile end ; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 5 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life-of-a-host."});
}

TEST_F(CompilerOutcomes, XmlToJson)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    expectOutcomes(
        [&]
        { return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), kFaultModule, 1), document.get()); },
        {"MALLOC 1: none, code 0", "MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_xmlcompilerjson:68 asserted", "STRCPY 1: other bytes",
         "STRCPY 2: same; gpb_util asserted", "STRCPY 3: other bytes; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 3 lines gone; +1: File (life-of-a-host.proto) not "
         "exists!; +0: [GpbXmlCompilerJson]Fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 3 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:90 asserted; +0: [GpbXmlCompilerJson]Fail to "
         "get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-3: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 3 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompilerJson]Fail to "
         "load proto file life-of-a-host.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 3 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file life-of-a-host."});
}

TEST_F(CompilerOutcomes, XmlToJsonWithIdentities)
{
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    expectOutcomes(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), kIdentityModule, 0), document.get());
        },
        {"MALLOC 1: other bytes", "MALLOC 2: none, code 0", "MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_xmlcompilerjson:68 asserted", "STRCPY 1: other bytes",
         "STRCPY 2: same; gpb_util asserted", "STRCPY 3: other bytes; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 3 lines gone; +1: File (identity.proto) not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file identity.",
         "SPRINTF 1-6: other bytes",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 3 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file identity.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:90 asserted; +0: [GpbXmlCompilerJson]Fail to "
         "get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-3: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 3 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompilerJson]Fail to "
         "load proto file identity.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 3 lines gone; +1: File (identity.proto) not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file identity."});
}

/** What comes of an item with five numbers, whose bytes are this many. */
std::vector<std::string> outcomesOfNumbers(const std::string &length)
{
    return {"MEMCPY 1: same; gpb_template:284 asserted",
            "MEMSET 1: same; gpb_jsoncompiler asserted",
            std::string("STRCPY 1: none, code 0; -1: Gpb compiler Success to serialize, length is ") + length +
                ".; +0: Gpb compiler "
                "prepare fail 1.; +0: Fail to encode, error code is 1.",
            "STRCPY 2: same; gpb_util asserted",
            "STRNCPY 1: none, code 0; gpb_template:272 asserted; 4 lines gone; +1: File (life-of-a-host.proto) "
            "not exists!; +0: Gpb json compiler fail to load proto file life-of-a-host.",
            std::string("SPRINTF 1-5: none, code 0; -1: Gpb compiler Success to serialize, length is ") + length +
                ".; +0: Gpb compiler "
                "encode fail to iterate json, return 1.; +0: Fail to encode, error code is 1.",
            "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 4 lines gone; +1: File () not "
            "exists!; +0: Gpb json compiler fail to load proto file life-of-a-host.",
            std::string("SNPRINTF_TRUNCATED 2: none, code 0; -1: Gpb compiler Success to serialize, length is ") +
                length + ".",
            "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
            "WORK_PATH 1: none, code 0; 4 lines gone; +1: Get current work path fail!; +0: Gpb json compiler "
            "fail to load proto file life-of-a-host.",
            "FILE_EXIST 1: same",
            "FILE_EXIST 2: none, code 0; 4 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: Gpb "
            "json compiler fail to load proto file life-of-a-host."};
}

TEST_F(CompilerOutcomes, JsonToGpb)
{
    expectOutcomes([&] { return encodeItem(root()); }, outcomesOfNumbers("136"));
}

TEST_F(CompilerOutcomes, JsonListToGpb)
{
    expectOutcomes([&] { return encodeItem(gpbtest::findItem(root(), "list")); }, outcomesOfNumbers("2"));
}

TEST_F(CompilerOutcomes, JsonLeafToGpb)
{
    expectOutcomes([&] { return encodeItem(gpbtest::findItem(root(), "a-leaf")); },
                   {"MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_jsoncompiler asserted",
                    "STRCPY 1: none, code 0; -1: Gpb compiler Success to serialize, length is 49.; +0: Gpb compiler "
                    "prepare fail 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 2: same; gpb_util asserted",
                    "STRNCPY 1: none, code 0; gpb_template:272 asserted; 4 lines gone; +1: File (life-of-a-host.proto) "
                    "not exists!; +0: Gpb json compiler fail to load proto file life-of-a-host.",
                    "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 4 lines gone; +1: File () not "
                    "exists!; +0: Gpb json compiler fail to load proto file life-of-a-host.",
                    "SNPRINTF_TRUNCATED 2: none, code 0; -1: Gpb compiler Success to serialize, length is 49.",
                    "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
                    "WORK_PATH 1: none, code 0; 4 lines gone; +1: Get current work path fail!; +0: Gpb json compiler "
                    "fail to load proto file life-of-a-host.",
                    "FILE_EXIST 1: same",
                    "FILE_EXIST 2: none, code 0; 4 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: Gpb "
                    "json compiler fail to load proto file life-of-a-host."});
}

TEST_F(CompilerOutcomes, ModelAttributes)
{
    expectOutcomes(
        [&]
        {
            return gpbtest::listAttributes(context(), GpbJsonCompiler_CreateJsonCompiler(context(), kFaultModule),
                                           root(), gpbtest::findItem(root(), "list"));
        },
        {"MALLOC 1-2: none, code 1; +0: Fail to encode, error code is 1.", "MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_jsoncompiler asserted",
         "STRCPY 1: none, code 1; +0: Gpb compiler prepare fail 1.; +0: Fail to encode, error code is 1.",
         "STRCPY 2: same; gpb_util asserted", "STRCPY 3-4: none, code 1; +0: Fail to encode, error code is 1.",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 3 lines gone; +1: File (life-of-a-host.proto) not "
         "exists!; +0: Gpb json compiler fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 3 lines gone; +1: File () not exists!; +0: "
         "Gpb json compiler fail to load proto file life-of-a-host.",
         "SNPRINTF_TRUNCATED 2: none, code 0",
         "VSNPRINTF_TRUNCATED 1-3: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 3 lines gone; +1: Get current work path fail!; +0: Gpb json compiler fail to load "
         "proto file life-of-a-host.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 3 lines gone; +1: File (life-of-a-host.proto) not exists!; +0: Gpb json compiler "
         "fail to load proto file life-of-a-host."});
}

} // namespace
