// Leaf value translators for numbers, booleans and texts.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "compiler/gpb_number_text.h"
#include "compiler/gpb_reflection_store.h"
#include "platform/yos.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Reflection;

// The number translators read as far as the C library does and check nothing: a document is validated against its YANG
// module before it gets here. Out-of-range texts are clamped by the C library, then cut to the field's width.

unsigned int GpbCompiler_StrTrans_ToDouble(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pstField == nullptr || pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const double value = GpbReadDouble(pcValue);
    // Float fields come here as well, and protobuf ends the process when a double setter meets one.
    if (pstField->cpp_type() == FieldDescriptor::CPPTYPE_FLOAT)
    {
        return GpbStore<float>(stLayer, pstField, FieldDescriptor::CPPTYPE_FLOAT, static_cast<float>(value),
                               &Reflection::AddFloat, &Reflection::SetFloat);
    }
    return GpbStore<double>(stLayer, pstField, FieldDescriptor::CPPTYPE_DOUBLE, value, &Reflection::AddDouble,
                            &Reflection::SetDouble);
}

unsigned int GpbCompiler_StrTrans_ToInt64(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                          const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<int64_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_INT64,
                             static_cast<int64_t>(GpbReadInteger(pcValue, std::strtoll)), &Reflection::AddInt64,
                             &Reflection::SetInt64);
}

unsigned int GpbCompiler_StrTrans_ToUInt64(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<uint64_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_UINT64,
                              static_cast<uint64_t>(GpbReadInteger(pcValue, std::strtoull)), &Reflection::AddUInt64,
                              &Reflection::SetUInt64);
}

unsigned int GpbCompiler_StrTrans_ToInt32(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                          const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<int32_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_INT32,
                             static_cast<int32_t>(GpbReadInteger(pcValue, std::strtol)), &Reflection::AddInt32,
                             &Reflection::SetInt32);
}

unsigned int GpbCompiler_StrTrans_ToUInt32(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<uint32_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_UINT32,
                              static_cast<uint32_t>(GpbReadInteger(pcValue, std::strtoul)), &Reflection::AddUInt32,
                              &Reflection::SetUInt32);
}

unsigned int GpbCompiler_StrTrans_ToBool(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                         const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    // Exactly "false" is false; anything else, the empty text and "FALSE" included, deliberately is true.
    return GpbStore<bool>(stLayer, pstField, FieldDescriptor::CPPTYPE_BOOL, YOS_StrCmp("false", pcValue) != 0,
                          &Reflection::AddBool, &Reflection::SetBool);
}

unsigned int GpbCompiler_StrTrans_ToString(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<std::string>(stLayer, pstField, FieldDescriptor::CPPTYPE_STRING, std::string_view(pcValue),
                                 &Reflection::AddString, &Reflection::SetString);
}
