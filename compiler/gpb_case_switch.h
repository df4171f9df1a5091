// What a choice that switches to another case does to the layers that earlier pops left behind.
#ifndef GPB_COMPILER_GPB_CASE_SWITCH_H
#define GPB_COMPILER_GPB_CASE_SWITCH_H

#include <memory>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "gpb_templatelib/gpb_compiler.h"

class GpbRecord;

/// Stands around an operation that may store `field` in `message`. If that makes a oneof switch to another case, the
/// message of the old case goes; slots above the top of the stack that hold a part of it are then made unused, so that
/// nobody reuses a message that is gone.
///
/// The old case is taken out of the message for the time of the operation, and put back when nothing was stored. So it
/// is searched for slots only when it goes, which costs no more than it took to fill it: a document that fails to
/// switch again and again does not search it every time. A record stays where it is, since its memory does, too.
class GpbCaseSwitch
{
public:
    GpbCaseSwitch(GpbCompilerStack &stack, google::protobuf::Message *message,
                  const google::protobuf::FieldDescriptor *field)
        : stack_(stack), message_(message)
    {
        // Few fields are members of a oneof.
        if (field->containing_oneof() != nullptr)
        {
            RememberCase(field);
        }
    }

    ~GpbCaseSwitch()
    {
        if (oldMessage_ != nullptr || oldRecord_ != nullptr)
        {
            ForgetCase();
        }
    }

    GpbCaseSwitch(const GpbCaseSwitch &) = delete;
    GpbCaseSwitch &operator=(const GpbCaseSwitch &) = delete;

private:
    void RememberCase(const google::protobuf::FieldDescriptor *field);
    void ForgetCase();
    void ForgetSlots(uint32_t slots);

    GpbCompilerStack &stack_;
    google::protobuf::Message *message_;
    const google::protobuf::FieldDescriptor *oldCase_ = nullptr;
    std::unique_ptr<google::protobuf::Message> oldMessage_; ///< null: no case of a message can be left
    const GpbRecord *oldRecord_ = nullptr;                  ///< null: no case of a record can be left
};

#endif
