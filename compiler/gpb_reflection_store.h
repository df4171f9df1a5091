// The frame that all leaf value translators share: find the layer's reflection, then set or add.
#ifndef GPB_COMPILER_GPB_REFLECTION_STORE_H
#define GPB_COMPILER_GPB_REFLECTION_STORE_H

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "core/gpb_barrier.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Whether `field` can be stored in messages of a type as a value of C++ type `kind`. Reflection ends the process when
/// it is used with a field of another message or of another type, so it is asked here.
inline bool GpbTakesField(const google::protobuf::Descriptor *type, const google::protobuf::FieldDescriptor *field,
                          google::protobuf::FieldDescriptor::CppType kind)
{
    return field != nullptr && field->containing_type() == type && field->cpp_type() == kind;
}

/// A setter or an adder of protobuf's reflection.
template <typename Value>
using GpbStoreFunc = void (google::protobuf::Reflection::*)(google::protobuf::Message *,
                                                            const google::protobuf::FieldDescriptor *, Value) const;

/// Adds a value to a repeated field or sets a singular one; 0, or 1 when the layer cannot take it.
template <typename Value, typename Given>
unsigned int GpbStore(const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field,
                      google::protobuf::FieldDescriptor::CppType kind, const Given &value, GpbStoreFunc<Value> add,
                      GpbStoreFunc<Value> set)
{
    return GpbNoThrow(GPB_COMPILER_ERR,
                      [&]
                      {
                          google::protobuf::Message *message = layer.pstMessage;
                          const google::protobuf::Reflection *reflection =
                              message == nullptr ? nullptr : message->GetReflection();
                          if (reflection == nullptr || !GpbTakesField(message->GetDescriptor(), field, kind))
                          {
                              return GPB_COMPILER_ERR;
                          }
                          (reflection->*(field->is_repeated() ? add : set))(message, field, Value(value));
                          return GPB_COMPILER_OK;
                      });
}

#endif
