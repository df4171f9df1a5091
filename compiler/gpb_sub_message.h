// Opening sub-messages so that a failed allocation leaves the parent as it was.
#ifndef GPB_COMPILER_GPB_SUB_MESSAGE_H
#define GPB_COMPILER_GPB_SUB_MESSAGE_H

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <memory>

/// The message of a singular field, made when it is not there yet. `field` belongs to `parent`.
///
/// Reflection's MutableMessage switches a oneof before it allocates: without memory the parent would be left with a
/// case whose message is a stale pointer. Here the message is made first.
inline google::protobuf::Message *GpbMutableSubMessage(google::protobuf::Message *parent,
                                                       const google::protobuf::FieldDescriptor *field)
{
    const google::protobuf::Reflection *reflection = parent->GetReflection();
    if (field->real_containing_oneof() == nullptr || reflection->HasField(*parent, field))
    {
        return reflection->MutableMessage(parent, field, nullptr);
    }
    google::protobuf::Message *made = reflection->GetMessage(*parent, field).New();
    reflection->SetAllocatedMessage(parent, made, field);
    return made;
}

/// A new entry of a list of `parent`, to which `field` belongs.
///
/// Reflection's AddMessage makes the entry and loses it when the list has no memory to grow; here it is ours until
/// then.
inline google::protobuf::Message *GpbAddSubMessage(google::protobuf::Message *parent,
                                                   const google::protobuf::FieldDescriptor *field)
{
    const google::protobuf::Reflection *reflection = parent->GetReflection();
    const google::protobuf::Message *prototype = reflection->GetMessageFactory()->GetPrototype(field->message_type());
    std::unique_ptr<google::protobuf::Message> entry(prototype->New());
    reflection->AddAllocatedMessage(parent, field, entry.get());
    return entry.release();
}

#endif
