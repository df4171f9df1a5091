// Leaf value translator for enumerations, and for bits, which are lists of values.
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "compiler/gpb_record_leaf.h"
#include "compiler/gpb_reflection_store.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

using google::protobuf::Descriptor;
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

// Finds the number of a value as hosts' tools spell the names: among all enums of a message, by the name of the leaf's
// enum type. So the value may be another enum's, and only its number is safe to store.
unsigned int FindNumber(const Descriptor *message, const EnumDescriptor *type, const Token &token, int &number)
{
    char name[VALUE_NAME_ROOM] = {};
    if (GpbXmlCompilerBase_EnumYang2Proto(token.text, GpbPbName(*type).c_str(), name, GPB_NAME_SIZE) == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const EnumValueDescriptor *value = message == nullptr ? nullptr : message->FindEnumValueByName(name);
    if (value == nullptr)
    {
        return GPB_COMPILER_NO_ENUM_VALUE;
    }
    number = value->number();
    return GPB_COMPILER_OK;
}

unsigned int StoreTokens(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, const char *text)
{
    if (layer.pstMessage == nullptr ||
        !GpbTakesField(layer.pstMessage->GetDescriptor(), field, FieldDescriptor::CPPTYPE_ENUM) ||
        field->enum_type() == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    unsigned int result = GPB_COMPILER_OK;
    while (*text != '\0' && result == GPB_COMPILER_OK)
    {
        Token token;
        text = TakeToken(text, token);
        int number = 0;
        result = FindNumber(layer.pstDescriptor, field->enum_type(), token, number);
        if (result == GPB_COMPILER_OK)
        {
            result = GpbStore<int>(layer, field, FieldDescriptor::CPPTYPE_ENUM, number, &Reflection::AddEnumValue,
                                   &Reflection::SetEnumValue);
        }
    }
    return result;
}

// Stores the value at the begin of a text in a record, and steps over it.
[[gnu::noinline]] unsigned int StoreSearched(GpbRecord &record, const GpbRecordField &field, const char *&text)
{
    Token token;
    text = TakeToken(text, token);
    int number = 0;
    const unsigned int result = FindNumber(record.Type().Descriptor(), field.field->enum_type(), token, number);
    if (result == GPB_COMPILER_OK)
    {
        record.Store(field, GpbRecordNumber(number));
    }
    return result;
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

unsigned int GpbStoreEnumInRecord(GpbRecord &record, const GpbRecordField &field, const char *text)
{
    const int *const number = field.enumNames->Find(text);
    if (number != nullptr)
    {
        record.Store(field, GpbRecordNumber(*number));
        return GPB_COMPILER_OK;
    }
    while (*text != '\0')
    {
        const GpbEnumNames::Taken known = field.enumNames->Take(text);
        if (known.number == nullptr)
        {
            const unsigned int result = StoreSearched(record, field, text);
            if (result != GPB_COMPILER_OK)
            {
                return result;
            }
            continue;
        }
        record.Store(field, GpbRecordNumber(*known.number));
        text = known.rest;
    }
    return GPB_COMPILER_OK;
}
