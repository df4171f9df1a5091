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
        {"MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_xmlcompiler.cpp asserted",
         "STRCPY 1: none, code 11; 2 lines gone; +0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.; +0: "
         "[14GpbXmlCompiler]Fail to encode, error code is 11.",
         "STRCPY 2: same; gpb_util asserted",
         "STRCPY 3: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [name] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 142.",
         "STRCPY 4: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [colors] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 185.",
         "STRCPY 5: other bytes; 2 lines gone; +0: Can't Find field [list]; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 135.",
         "STRCPY 6: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [key] from "
         "[life.Top.list].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 186.",
         "STRCPY 7: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [a-leaf] from "
         "[life.Top.list].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 140.",
         "STRCPY 8,11,17-18,20: same",
         "STRCPY 9: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [number] from "
         "[life.Top.list].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 187.",
         "STRCPY 10: other bytes; 2 lines gone; +0: Can't Find field [item]; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 185.",
         "STRCPY 12: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [n] from "
         "[life.Top.list.kind_b.item].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 187.",
         "STRCPY 13: other bytes; 2 lines gone; +0: Can't Find field [box]; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 178.",
         "STRCPY 14: other bytes; 2 lines gone; +0: Can't Find field [box]; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 180.",
         "STRCPY 15: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [label] from "
         "[life.Top.box.box].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 182.",
         "STRCPY 16: same; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [deep-leaf] from [life.Top].",
         "STRCPY 19: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [mb-leaf] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 198.",
         "STRCPY 21: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [words] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 184.",
         "STRCPY 22: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 187.",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 5 lines gone; +1: File (life.proto) not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life.",
         "STRNCPY 2: other bytes; gpb_reflection.cpp:165 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler][FillLeafField]Fail to translator node [colors] value [red green] to layer [life.Top].; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 185.",
         "STRNCPY 3: other bytes; gpb_reflection.cpp:170 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler][FillLeafField]Fail to translator node [colors] value [red green] to layer [life.Top].; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 188.",
         "SPRINTF 1-5: same",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 5 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:52 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler]Fail to get file descriptor .",
         "SNPRINTF_TRUNCATED 3: other bytes; gpb_xmlcompilerbase.cpp:80 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler][FillLeafField]Fail to translator node [colors] value [red green] to layer [life.Top].; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 185.",
         "SNPRINTF_TRUNCATED 4: other bytes; gpb_xmlcompilerbase.cpp:80 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler][FillLeafField]Fail to translator node [colors] value [red green] to layer [life.Top].; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 188.",
         "VSNPRINTF_TRUNCATED 1-5: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 5 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompiler]Fail to load "
         "proto file life.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 5 lines gone; +1: File (life.proto) not exists!; +0: [GpbXmlCompiler]Fail to "
         "load proto file life."});
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
         "STRCPY 3: other bytes; 2 lines gone; +0: Can't Find field [subscriptions]; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 0.",
         "STRCPY 4: other bytes; 2 lines gone; +0: Can't Find field [persistent]; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 2.",
         "STRCPY 5: other bytes; 2 lines gone; +0: Can't Find field [subscription]; +3: "
         "[GpbXmlCompiler][Encode]Success encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to "
         "serialize, length is 4.",
         "STRCPY 6: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [encoding] from "
         "[identity.TelemetrySystem.subscriptions.persistent.subscription].; +3: [GpbXmlCompiler][Encode]Success "
         "encode, message structure is:; +1: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 6.",
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
         "[GpbXmlCompiler]Fail to load proto file life.",
         "VEC_SET 1: none, code 0; 3 lines gone; +0: failed to save protofile fd to local; +0: [GpbXmlCompiler]Fail to "
         "load proto file life.",
         "MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_template:448 asserted",
         "MEMSET 2: same; gpb_xmlcompiler.cpp asserted",
         "STRCPY 1: none, code 11; 2 lines gone; +0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 11.; +0: "
         "[14GpbXmlCompiler]Fail to encode, error code is 11.",
         "STRCPY 2: same; gpb_util asserted",
         "STRCPY 3: other bytes; 2 lines gone; +2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from "
         "[life.Top].; +3: [GpbXmlCompiler][Encode]Success encode, message structure is:; +1: "
         "[GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 0.",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 5 lines gone; +1: File (life.proto) not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life.",
         "STRNCPY 2: none, code 0; gpb_template:340 asserted; 3 lines gone; +0: load protofile failed; +1: "
         "GPBLIB_LoadProtoFile end ; +0: [GpbXmlCompiler]Fail to load proto file life.",
         "STRNCPY 3: same; gpb_template:394 asserted",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 5 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompiler]Fail to load proto file life.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:52 asserted; 2 lines gone; +0: "
         "[GpbXmlCompiler]Fail to get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-5: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 5 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompiler]Fail to load "
         "proto file life.",
         "WORK_PATH 2: none, code 0; 3 lines gone; +0: load protofile failed; +1: GPBLIB_LoadProtoFile end ; +0: "
         "[GpbXmlCompiler]Fail to load proto file life.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 5 lines gone; +1: File (life.proto) not exists!; +0: [GpbXmlCompiler]Fail to "
         "load proto file life."});
}

TEST_F(CompilerOutcomes, XmlToJson)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    expectOutcomes(
        [&]
        { return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), kFaultModule, 1), document.get()); },
        {"MALLOC 1: none, code 0", "MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_xmlcompilerjson:67 asserted", "STRCPY 1,3-4,6-7,9,12,15-16,19,21: other bytes",
         "STRCPY 2: same; gpb_util asserted",
         "STRCPY 5: other bytes; +2: Fail to find field descriptore for name list.", "STRCPY 8,11,17-18,20: same",
         "STRCPY 10: other bytes; +2: Fail to find field descriptore for name item.",
         "STRCPY 13-14: other bytes; +2: Fail to find field descriptore for name box.",
         "STRCPY 22: other bytes; +2: Fail to find field descriptore for name flag.",
         "STRCPY 23: other bytes; gpb_util asserted",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 3 lines gone; +1: File (life.proto) not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file life.",
         "SPRINTF 1-5: same",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 3 lines gone; +1: File () not exists!; +0: "
         "[GpbXmlCompilerJson]Fail to load proto file life.",
         "SNPRINTF_TRUNCATED 2: none, code 0; gpb_xmlcompiler_wrapper.cpp:90 asserted; +0: [GpbXmlCompilerJson]Fail to "
         "get file descriptor .",
         "VSNPRINTF_TRUNCATED 1-3: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 3 lines gone; +1: Get current work path fail!; +0: [GpbXmlCompilerJson]Fail to "
         "load proto file life.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 3 lines gone; +1: File (life.proto) not exists!; +0: [GpbXmlCompilerJson]Fail to "
         "load proto file life."});
}

TEST_F(CompilerOutcomes, XmlToJsonWithIdentities)
{
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    expectOutcomes(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(context(), kIdentityModule, 0), document.get());
        },
        {"MALLOC 1: other bytes", "MALLOC 2: none, code 0", "MEMCPY 1: same; gpb_template:284 asserted",
         "MEMSET 1: same; gpb_xmlcompilerjson:67 asserted", "STRCPY 1,6: other bytes",
         "STRCPY 2: same; gpb_util asserted",
         "STRCPY 3: other bytes; +2: Fail to find field descriptore for name subscriptions.",
         "STRCPY 4: other bytes; +2: Fail to find field descriptore for name persistent.",
         "STRCPY 5: other bytes; +2: Fail to find field descriptore for name subscription.",
         "STRCPY 7: other bytes; gpb_util asserted",
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

TEST_F(CompilerOutcomes, JsonToGpb)
{
    expectOutcomes([&] { return encodeItem(root()); },
                   {"MEMCPY 1: same; gpb_template:284 asserted",
                    "MEMSET 1: same; gpb_jsoncompiler asserted",
                    "STRCPY 1: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +0: Gpb compiler "
                    "prepare fail 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 2: same; gpb_util asserted",
                    "STRCPY 3: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [name] from [life.Top].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 4-5,10,13-14: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +0: Gpb "
                    "compiler encode fail to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 6: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [key] from [life.Top.list].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 7: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [a-leaf] from [life.Top.list].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 8,11,17-18,20: same",
                    "STRCPY 9: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [number] from [life.Top.list].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 12: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [n] from [life.Top.list.kind_b.item].; +0: Gpb compiler encode fail "
                    "to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 15: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [label] from [life.Top.box.box].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 16: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [deep-leaf] from [life.Top].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 19: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [mb-leaf] from [life.Top].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 21: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +2: Gpb Compiler "
                    "leaf node fail to find field [flag] from [life.Top].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRNCPY 1: none, code 0; gpb_template:272 asserted; 4 lines gone; +1: File (life.proto) not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "STRNCPY 2-3: other bytes; gpb_reflection.cpp:170 asserted; -1: Gpb compiler Success to serialize, "
                    "length is 136.; +0: Gpb Compiler  fill leaf fail to translator layer [life.Top].; +1: Gpb "
                    "compiler Success to serialize, length is 135.",
                    "SPRINTF 1,3,6-7,9: same",
                    "SPRINTF 2,4-5,8,10: none, code 0; -1: Gpb compiler Success to serialize, length is 136.; +0: Gpb "
                    "compiler encode fail to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 4 lines gone; +1: File () not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "SNPRINTF_TRUNCATED 2: none, code 0; -1: Gpb compiler Success to serialize, length is 136.",
                    "SNPRINTF_TRUNCATED 3-4: other bytes; gpb_xmlcompilerbase.cpp:80 asserted; -1: Gpb compiler "
                    "Success to serialize, length is 136.; +0: Gpb Compiler  fill leaf fail to translator layer "
                    "[life.Top].; +1: Gpb compiler Success to serialize, length is 135.",
                    "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
                    "WORK_PATH 1: none, code 0; 4 lines gone; +1: Get current work path fail!; +0: Gpb json compiler "
                    "fail to load proto file life.",
                    "FILE_EXIST 1: same",
                    "FILE_EXIST 2: none, code 0; 4 lines gone; +1: File (life.proto) not exists!; +0: Gpb json "
                    "compiler fail to load proto file life."});
}

TEST_F(CompilerOutcomes, JsonListToGpb)
{
    expectOutcomes([&] { return encodeItem(gpbtest::findItem(root(), "list")); },
                   {"MEMCPY 1: same; gpb_template:284 asserted",
                    "MEMSET 1: same; gpb_jsoncompiler asserted",
                    "STRCPY 1: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +0: Gpb compiler "
                    "prepare fail 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 2: same; gpb_util asserted",
                    "STRCPY 3,8,11-12: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +0: Gpb "
                    "compiler encode fail to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 4: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [key] from [life.Top.list].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 5: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [a-leaf] from [life.Top.list].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 6,9,15-16,18: same",
                    "STRCPY 7: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [number] from [life.Top.list].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 10: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [n] from [life.Top.list.kind_b.item].; +0: Gpb compiler encode fail "
                    "to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 13: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [label] from [life.Top.box.box].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 14: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [deep-leaf] from [life.Top].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 17: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [mb-leaf] from [life.Top].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 19: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +2: Gpb Compiler "
                    "leaf node fail to find field [flag] from [life.Top].; +0: Gpb compiler encode fail to iterate "
                    "json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRNCPY 1: none, code 0; gpb_template:272 asserted; 4 lines gone; +1: File (life.proto) not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "SPRINTF 1,3,6-7,9: same",
                    "SPRINTF 2,4-5,8,10: none, code 0; -1: Gpb compiler Success to serialize, length is 2.; +0: Gpb "
                    "compiler encode fail to iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 4 lines gone; +1: File () not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "SNPRINTF_TRUNCATED 2: none, code 0; -1: Gpb compiler Success to serialize, length is 2.",
                    "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
                    "WORK_PATH 1: none, code 0; 4 lines gone; +1: Get current work path fail!; +0: Gpb json compiler "
                    "fail to load proto file life.",
                    "FILE_EXIST 1: same",
                    "FILE_EXIST 2: none, code 0; 4 lines gone; +1: File (life.proto) not exists!; +0: Gpb json "
                    "compiler fail to load proto file life."});
}

TEST_F(CompilerOutcomes, JsonLeafToGpb)
{
    expectOutcomes([&] { return encodeItem(gpbtest::findItem(root(), "a-leaf")); },
                   {"MEMCPY 1: same; gpb_template:284 asserted", "MEMSET 1: same; gpb_jsoncompiler asserted",
                    "STRCPY 1: none, code 0; -1: Gpb compiler Success to serialize, length is 49.; +0: Gpb compiler "
                    "prepare fail 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 2: same; gpb_util asserted",
                    "STRCPY 3: none, code 0; -1: Gpb compiler Success to serialize, length is 49.; +0: Fail to push "
                    "ancestors layer [a-leaf]; +0: Gpb compiler prepare fail 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 4: none, code 0; -1: Gpb compiler Success to serialize, length is 49.; +2: Gpb Compiler "
                    "leaf node fail to find field [a-leaf] from [life.Top.list].; +0: Gpb compiler encode fail to "
                    "iterate json, return 1.; +0: Fail to encode, error code is 1.",
                    "STRCPY 5: same",
                    "STRNCPY 1: none, code 0; gpb_template:272 asserted; 4 lines gone; +1: File (life.proto) not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "SPRINTF 1: same",
                    "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 4 lines gone; +1: File () not "
                    "exists!; +0: Gpb json compiler fail to load proto file life.",
                    "SNPRINTF_TRUNCATED 2: none, code 0; -1: Gpb compiler Success to serialize, length is 49.",
                    "VSNPRINTF_TRUNCATED 1-4: same; gpb_template:112 asserted; a line is empty",
                    "WORK_PATH 1: none, code 0; 4 lines gone; +1: Get current work path fail!; +0: Gpb json compiler "
                    "fail to load proto file life.",
                    "FILE_EXIST 1: same",
                    "FILE_EXIST 2: none, code 0; 4 lines gone; +1: File (life.proto) not exists!; +0: Gpb json "
                    "compiler fail to load proto file life."});
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
         "STRCPY 2: same; gpb_util asserted", "STRCPY 3-5: none, code 1; +0: Fail to encode, error code is 1.",
         "STRNCPY 1: none, code 0; gpb_template:272 asserted; 3 lines gone; +1: File (life.proto) not exists!; +0: Gpb "
         "json compiler fail to load proto file life.",
         "SNPRINTF_TRUNCATED 1: none, code 0; gpb_template:275 asserted; 3 lines gone; +1: File () not exists!; +0: "
         "Gpb json compiler fail to load proto file life.",
         "SNPRINTF_TRUNCATED 2: none, code 0",
         "VSNPRINTF_TRUNCATED 1-3: same; gpb_template:112 asserted; a line is empty",
         "WORK_PATH 1: none, code 0; 3 lines gone; +1: Get current work path fail!; +0: Gpb json compiler fail to load "
         "proto file life.",
         "FILE_EXIST 1: same",
         "FILE_EXIST 2: none, code 0; 3 lines gone; +1: File (life.proto) not exists!; +0: Gpb json compiler fail to "
         "load proto file life."});
}

} // namespace
