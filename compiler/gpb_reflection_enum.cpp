// Leaf value translator for enumerations, and for bits, which are lists of values.
#include <cstring>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <string_view>

#include "compiler/gpb_reflection_store.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

using google::protobuf::EnumDescriptor;
using google::protobuf::EnumValueDescriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Reflection;

namespace
{

constexpr char REFLECTION_TAG[] = "gpb_reflection.cpp";
constexpr uint32_t LINE_TOKEN_TOO_LONG = 165;
constexpr uint32_t LINE_LAST_TOKEN_TOO_LONG = 170;

// Room for the longest name that a token can give: the prefix, "X_" for a leading digit, and "X_" for each character.
constexpr size_t VALUE_NAME_ROOM = GPB_NAME_SIZE + 2 + size_t{2} * (GPB_NAME_SIZE - 1) + 1;

// One value of a list, as the document spells it.
struct Token
{
    char text[GPB_NAME_SIZE] = {};
};

// Takes the next token, which ends at a single blank or at the end of the text; returns what is left.
const char *TakeToken(const char *text, Token &token)
{
    const char *blank = YOS_StrStr(text, " ");
    const char *end = blank == nullptr ? text + YOS_StrLen(text) : blank;
    if (strncpy_s(token.text, sizeof(token.text), text, static_cast<size_t>(end - text)) != 0)
    {
        ZMP_Assert(REFLECTION_TAG, blank == nullptr ? LINE_LAST_TOKEN_TOO_LONG : LINE_TOKEN_TOO_LONG, 0);
    }
    return blank == nullptr ? end : blank + 1;
}

unsigned int StoreNumber(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, int number)
{
    return GpbStore<int>(layer, field, FieldDescriptor::CPPTYPE_ENUM, number, &Reflection::AddEnumValue,
                         &Reflection::SetEnumValue);
}

unsigned int StoreToken(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, const EnumDescriptor *type,
                        const Token &token)
{
    char name[VALUE_NAME_ROOM] = {};
    if (GpbXmlCompilerBase_EnumYang2Proto(token.text, GpbPbName(*type).c_str(), name, GPB_NAME_SIZE) == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const EnumValueDescriptor *value =
        layer.pstDescriptor == nullptr ? nullptr : layer.pstDescriptor->FindEnumValueByName(name);
    if (value == nullptr)
    {
        return GPB_COMPILER_NO_ENUM_VALUE;
    }
    // The name was searched among all enums of the message, so the value may be another enum's: only its number is safe
    // to store.
    return StoreNumber(layer, field, value->number());
}

// Stores the next value of a list when it is one that the plan knows, and steps over it; else does nothing.
bool StoreKnownToken(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, const GpbEnumNames &names,
                     const char *&text)
{
    const char *blank = std::strchr(text, ' ');
    const size_t length = blank == nullptr ? std::strlen(text) : static_cast<size_t>(blank - text);
    const int *number = names.Find(std::string_view(text, length));
    if (number == nullptr || StoreNumber(layer, field, *number) != GPB_COMPILER_OK)
    {
        return false;
    }
    text = blank == nullptr ? text + length : blank + 1;
    return true;
}

unsigned int StoreTokens(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, const char *text)
{
    if (layer.pstMessage == nullptr ||
        !GpbTakesField(layer.pstMessage->GetDescriptor(), field, FieldDescriptor::CPPTYPE_ENUM) ||
        field->enum_type() == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const GpbRecord *record = GpbRecordOf(layer.pstMessage);
    const GpbEnumNames *names = record == nullptr ? nullptr : record->Type().FieldOf(field).enumNames;
    while (*text != '\0')
    {
        if (names != nullptr && StoreKnownToken(layer, field, *names, text))
        {
            continue;
        }
        Token token;
        text = TakeToken(text, token);
        const unsigned int result = StoreToken(layer, field, field->enum_type(), token);
        if (result != GPB_COMPILER_OK)
        {
            return result;
        }
    }
    return GPB_COMPILER_OK;
}

} // namespace

unsigned int GpbCompiler_StrTrans_ToEnum(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                         const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbNoThrow(GPB_COMPILER_ERR, [&] { return StoreTokens(stLayer, pstField, pcValue); });
}
