// The frame that all leaf value translators share: find the layer's reflection, then set or add.
#ifndef GPB_COMPILER_GPB_REFLECTION_STORE_H
#define GPB_COMPILER_GPB_REFLECTION_STORE_H

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "core/gpb_barrier.h"
#include "gpb_templatelib/gpb_compiler.h"

/// The reflection through which `field` of a layer can be stored as a value of C++ type `kind`; null when it cannot.
/// Reflection ends the process when it is used with a field of another message or of another type, so it is asked here.
inline const google::protobuf::Reflection *GpbReflectionOf(const GpbCompilerStackLayer &layer,
                                                           const google::protobuf::FieldDescriptor *field,
                                                           google::protobuf::FieldDescriptor::CppType kind)
{
    if (layer.pstMessage == nullptr || field == nullptr ||
        field->containing_type() != layer.pstMessage->GetDescriptor() || field->cpp_type() != kind)
    {
        return nullptr;
    }
    return layer.pstMessage->GetReflection();
}

/// A setter or an adder of protobuf's reflection.
template <typename Value>
using GpbStoreFunc = void (google::protobuf::Reflection::*)(google::protobuf::Message *,
                                                            const google::protobuf::FieldDescriptor *, Value) const;

/// Adds a value to a repeated field or sets a singular one; 0, or 1 when the layer cannot take it.
template <typename Value>
unsigned int GpbStore(const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field,
                      google::protobuf::FieldDescriptor::CppType kind, Value value, GpbStoreFunc<Value> add,
                      GpbStoreFunc<Value> set)
{
    return GpbNoThrow(GPB_COMPILER_ERR,
                      [&]
                      {
                          const google::protobuf::Reflection *reflection = GpbReflectionOf(layer, field, kind);
                          if (reflection == nullptr)
                          {
                              return GPB_COMPILER_ERR;
                          }
                          (reflection->*(field->is_repeated() ? add : set))(layer.pstMessage, field, std::move(value));
                          return GPB_COMPILER_OK;
                      });
}

#endif
