/** Descriptor, name and JSON helpers that a host calls itself: what comes of each failing call. */
#include <cstring>

#include <google/protobuf/descriptor.h>

#include "faults/fault_outcomes.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::FaultResult;

constexpr const char *kModule = "helper";
constexpr const char *kProto = R"(
syntax = "proto3";
package helper;
message Top {
  enum Color { Color_RED = 0; Color_LIGHT_GREEN = 1; }
  string name = 1;
  Color color = 2;
  Box box = 3;
  message Box { string box2 = 1; }
}
)";

class HelperOutcomes : public gpbtest::FaultOutcomes
{
protected:
    void SetUp() override
    {
        FaultOutcomes::SetUp();
        writeProto(kModule, kProto);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), kModule, 0));
        m_file = Gpb_ModuleAdapt_GetFileHandle(context(), kModule);
        ASSERT_NE(nullptr, m_file);
        m_top = m_file->FindMessageTypeByName("Top");
        ASSERT_NE(nullptr, m_top);
    }

    /** A result that is a text of the platform's memory, which is released here. */
    static FaultResult taking(char *text)
    {
        FaultResult result;
        result.isDone = text != nullptr;
        result.add(text == nullptr ? "" : text);
        ZMP_Free_F(text, "faults", 1);
        return result;
    }

    /** A result that is a code with a text. */
    static FaultResult of(uint32_t code, const char *text)
    {
        FaultResult result;
        result.isDone = code == 0;
        result.code = code;
        result.add(text);
        return result;
    }

    /** A result that is a pointer to something that stays. */
    static FaultResult found(const void *pointer)
    {
        FaultResult result;
        result.isDone = pointer != nullptr;
        result.add(&pointer, sizeof(pointer));
        return result;
    }

    const google::protobuf::FileDescriptor *m_file = nullptr;
    const google::protobuf::Descriptor *m_top = nullptr;
};

TEST_F(HelperOutcomes, Texts)
{
    expectOutcomes([&] { return taking(Gpb_util_StrDup(kModuleId, "text", nullptr)); },
                   {"MALLOC 1: none, code 0", "STRCPY 1: other bytes; gpb_util asserted"});
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    expectOutcomes(
        [&]
        { return taking(GPB_IdentityNodeValueUpdate(kModuleId, document.find("encoding"), "oc-telemetry-types:GPB")); },
        {"MALLOC 1: none, code 0", "SPRINTF 1-6: none, code 0"});
}

TEST_F(HelperOutcomes, Names)
{
    char text[GPB_NAME_SIZE] = {};
    expectOutcomes(
        [&]
        {
            const uint32_t code = Gpb_Util_ConvertProtoEnumToYangEnum("Color_LIGHT_GREEN", text, sizeof(text));
            return of(code, code == 0 ? text : "");
        },
        {"STRCPY 1: none, code 1"});
    expectOutcomes(
        [&]
        {
            const uint32_t code = GPB_ConvertXmlNodeName("Some-Name", text, sizeof(text));
            return of(code, text);
        },
        {"STRCPY 1: none, code 1"});
    expectOutcomes(
        [&]
        {
            std::strcpy(text, "A-B");
            FaultResult result;
            result.isDone = true;
            result.code = Gpb_util_ConverContainerName(text, 0) == 0 ? 0 : 1;
            result.add(text);
            return result;
        },
        {"STRCPY 1: other bytes; gpb_util asserted"});
    expectOutcomes(
        [&]
        {
            const char *const token = GpbXmlCompilerBase_EnumYang2Proto("light green", "Color", text, sizeof(text));
            return of(token == nullptr ? 1 : 0, text);
        },
        {"SNPRINTF_TRUNCATED 1: none, code 1; gpb_xmlcompilerbase.cpp:80 asserted"});
}

TEST_F(HelperOutcomes, XmlNodes)
{
    const gpbtest::XmlDocument document(gpbtest::kIdentityXml);
    char path[GPB_SCHEMA_PATH_SIZE];
    expectOutcomes(
        [&]
        {
            std::memset(path, 0, sizeof(path));
            const uint32_t code = GPB_BuildXmlNodePath(document.find("encoding"), path, sizeof(path));
            return of(code, code == 0 ? path : "");
        },
        {"SPRINTF 1-5: none, code 1"});
    expectOutcomes(
        [&]
        {
            const char *module = "";
            const uint32_t code =
                GPB_GetXmlNodeLeafIdtType(document.find("encoding"), "oc-telemetry-types:GPB", &module);
            return of(code, module);
        },
        {"SPRINTF 1-5: none, code 1"});
}

TEST_F(HelperOutcomes, Fields)
{
    const google::protobuf::Descriptor *const box = m_top->FindNestedTypeByName("Box");
    const google::protobuf::FieldDescriptor *way = nullptr;
    expectOutcomes([&] { return found(GPB_FindFieldDescByNodeName(m_top, "name", 1, &way)); },
                   {"STRCPY 1: none, code 0"});
    expectOutcomes([&] { return found(GPB_FindFieldDescByNodeName(box, "box", 2, &way)); },
                   {"STRCPY 1-2: none, code 0", "SPRINTF 1: none, code 0"});
    expectOutcomes([&] { return found(GPB_GetDescFieldByRepeateName(box, "box", 2)); },
                   {"STRCPY 1: none, code 0", "SPRINTF 1: none, code 0"});
    expectOutcomes([&] { return found(GPB_GetLeafFieldDescByNodeName("name", m_top, 1, &way)); },
                   {"STRCPY 1: none, code 0"});
    expectOutcomes([&] { return found(Gpb_ModuleAdapt_GetFieldHandle(context(), m_file, "top", "color")); },
                   {"SNPRINTF 1: none, code 0; gpb_module_adapt asserted"});
}

TEST_F(HelperOutcomes, EnumList)
{
    expectOutcomes(
        [&]
        {
            GpbYangEnumItem *items = nullptr;
            uint32_t count = 0;
            FaultResult result = of(Gpb_ModuleAdapt_GetEnumList(context(), m_file, "top", "color", &items, &count), "");
            EXPECT_EQ(result.isDone, items != nullptr);
            for (uint32_t i = 0; i < count; ++i)
            {
                result.add(items[i].acName);
            }
            ZMP_Free_F(items, "faults", 1);
            return result;
        },
        {"MALLOC 1: none, code 1", "STRCPY 1-2: none, code 1", "SNPRINTF 1: none, code 3; gpb_module_adapt asserted"});
}

TEST_F(HelperOutcomes, JsonText)
{
    cJSON *const item = GpbLib_Json_AllocString(kModuleId, "x");
    expectOutcomes([&] { return taking(GpbLib_Json_EncodeUnformatted(kModuleId, item)); },
                   {"MALLOC 1: none, code 0", "STRCPY 1: other bytes; gpb_util asserted"});
    GpbLib_Json_NodeFree(item);
}

} // namespace
