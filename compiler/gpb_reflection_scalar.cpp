// Leaf value translators for numbers, booleans and texts.
#include <cstdint>
#include <string>
#include <string_view>

#include "compiler/gpb_leaf_value.h"
#include "compiler/gpb_reflection_store.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Reflection;

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
    return GpbStore<int64_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_INT64, GpbToInt64(pcValue),
                             &Reflection::AddInt64, &Reflection::SetInt64);
}

unsigned int GpbCompiler_StrTrans_ToUInt64(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<uint64_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_UINT64, GpbToUInt64(pcValue),
                              &Reflection::AddUInt64, &Reflection::SetUInt64);
}

unsigned int GpbCompiler_StrTrans_ToInt32(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                          const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<int32_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_INT32, GpbToInt32(pcValue),
                             &Reflection::AddInt32, &Reflection::SetInt32);
}

unsigned int GpbCompiler_StrTrans_ToUInt32(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                           const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<uint32_t>(stLayer, pstField, FieldDescriptor::CPPTYPE_UINT32, GpbToUInt32(pcValue),
                              &Reflection::AddUInt32, &Reflection::SetUInt32);
}

unsigned int GpbCompiler_StrTrans_ToBool(const GpbCompilerStackLayer &stLayer, const FieldDescriptor *pstField,
                                         const char *pcValue)
{
    if (pcValue == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    return GpbStore<bool>(stLayer, pstField, FieldDescriptor::CPPTYPE_BOOL, GpbToBool(pcValue), &Reflection::AddBool,
                          &Reflection::SetBool);
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
