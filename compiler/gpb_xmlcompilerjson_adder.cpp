// XML to JSON: how the text of a leaf becomes an item, by the type of its field.
#include <cjson/cJSON.h>
#include <google/protobuf/descriptor.h>

#include "compiler/gpb_json_leaf.h"
#include "compiler/gpb_number_text.h"
#include "compiler/gpb_xml_node.h"
#include "compiler/gpb_xmlcompilerjson_tag.h"
#include "core/gpb_memory.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/yos.h"

using google::protobuf::FieldDescriptor;

namespace
{

constexpr uint32_t LINE_ZERO_TABLE_FAILED = 68;

constexpr unsigned char NUMBERS_OF_64_BITS = 1;
constexpr char TRUE_TEXT[] = "true";
constexpr char DECIMAL_TYPE[] = "Decimal";

// Any case of "true", and nothing else, is true here; the translators of GPB values deliberately differ.
bool IsTrue(const char *text)
{
    return YOS_StrICmp(text, TRUE_TEXT) == 0;
}

} // namespace

cJSON *GpbXmlCompilerJson_AddNumber(const FieldDescriptor * /*pstField*/, const char *pcText, uint32_t uiModuleId)
{
    // Deliberately a double for every type: that is what a JSON number is to most readers.
    return pcText == nullptr ? nullptr : GpbLib_Json_AllocNumber(uiModuleId, GpbReadDouble(pcText));
}

cJSON *GpbXmlCompilerJson_AddString(const FieldDescriptor * /*pstField*/, const char *pcText, uint32_t uiModuleId)
{
    return pcText == nullptr ? nullptr : GpbLib_Json_AllocString(uiModuleId, pcText);
}

cJSON *GpbXmlCompilerJson_AddEnum(const FieldDescriptor *pstField, const char *pcText, uint32_t uiModuleId)
{
    return GpbXmlCompilerJson_AddString(pstField, pcText, uiModuleId);
}

cJSON *GpbXmlCompilerJson_AddBool(const FieldDescriptor * /*pstField*/, const char *pcText, uint32_t uiModuleId)
{
    if (pcText == nullptr)
    {
        return nullptr;
    }
    return IsTrue(pcText) ? GpbLib_Json_AllocTrue(uiModuleId) : GpbLib_Json_AllocFalse(uiModuleId);
}

cJSON *GpbXmlCompilerJson_AddMessage(const FieldDescriptor *pstField, const char *pcText, uint32_t uiModuleId)
{
    // A message field's kind is called "message", so this is never equal and a leaf that meets a message field gives no
    // item. The comparison deliberately stays: it marks the place where a decimal message would become a number.
    if (pstField == nullptr || YOS_StrCmp(GpbPbTypeName(*pstField), DECIMAL_TYPE) != 0)
    {
        return nullptr;
    }
    return GpbXmlCompilerJson_AddNumber(pstField, pcText, uiModuleId);
}

cJSON *GpbJsonNewLeaf(GpbJsonDocument &document, GpbJsonAddFunc add, const char *text)
{
    if (text == nullptr)
    {
        return nullptr;
    }
    if (add == GpbXmlCompilerJson_AddNumber)
    {
        return document.NewNumber(GpbReadDouble(text));
    }
    if (add == GpbXmlCompilerJson_AddString || add == GpbXmlCompilerJson_AddEnum)
    {
        return document.NewString(text);
    }
    if (add == GpbXmlCompilerJson_AddBool)
    {
        return document.NewItem(IsTrue(text) ? cJSON_True : cJSON_False);
    }
    return nullptr; // GpbXmlCompilerJson_AddMessage
}

const char *GpbXmlCompilerJson_GetFieldName(const FieldDescriptor * /*pstField*/, xmlNode *pstNode)
{
    return pstNode == nullptr ? "" : GpbXmlNodeName(pstNode);
}

void GpbXmlCompilerJson::InitTransTbl(unsigned char ucFlag)
{
    GpbZero(apfnTrans, sizeof(apfnTrans), GPB_XML_TO_JSON_TAG, LINE_ZERO_TABLE_FAILED);
    apfnTrans[FieldDescriptor::TYPE_DOUBLE] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_FLOAT] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_INT32] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_FIXED32] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_BOOL] = GpbXmlCompilerJson_AddBool;
    apfnTrans[FieldDescriptor::TYPE_STRING] = GpbXmlCompilerJson_AddString;
    apfnTrans[FieldDescriptor::TYPE_MESSAGE] = GpbXmlCompilerJson_AddMessage;
    apfnTrans[FieldDescriptor::TYPE_BYTES] = GpbXmlCompilerJson_AddString;
    apfnTrans[FieldDescriptor::TYPE_UINT32] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_ENUM] = GpbXmlCompilerJson_AddEnum;
    apfnTrans[FieldDescriptor::TYPE_SFIXED32] = GpbXmlCompilerJson_AddNumber;
    apfnTrans[FieldDescriptor::TYPE_SINT32] = GpbXmlCompilerJson_AddNumber;
    const GpbJsonAddFunc wide =
        ucFlag == NUMBERS_OF_64_BITS ? GpbXmlCompilerJson_AddNumber : GpbXmlCompilerJson_AddString;
    apfnTrans[FieldDescriptor::TYPE_INT64] = wide;
    apfnTrans[FieldDescriptor::TYPE_UINT64] = wide;
    apfnTrans[FieldDescriptor::TYPE_FIXED64] = wide;
    apfnTrans[FieldDescriptor::TYPE_SFIXED64] = wide;
    apfnTrans[FieldDescriptor::TYPE_SINT64] = wide;
}
