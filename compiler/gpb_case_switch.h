// What a choice that switches to another case does to the layers that earlier pops left behind.
#ifndef GPB_COMPILER_GPB_CASE_SWITCH_H
#define GPB_COMPILER_GPB_CASE_SWITCH_H

#include <memory>

#include "gpb_templatelib/gpb_compiler.h"

/// Stands around an operation that may store `field` in `message`. If that makes a oneof switch to another case, the
/// message of the old case goes; slots above the top of the stack that hold a part of it are then made unused, so that
/// nobody reuses a message that is gone.
///
/// The old case is taken out of the message for the time of the operation, and put back when nothing was stored. So it
/// is searched for slots only when it goes, which costs no more than it took to fill it: a document that fails to
/// switch again and again does not search it every time.
class GpbCaseSwitch
{
public:
    GpbCaseSwitch(GpbCompilerStack &stack, google::protobuf::Message *message,
                  const google::protobuf::FieldDescriptor *field);
    ~GpbCaseSwitch();

    GpbCaseSwitch(const GpbCaseSwitch &) = delete;
    GpbCaseSwitch &operator=(const GpbCaseSwitch &) = delete;

private:
    GpbCompilerStack &stack_;
    google::protobuf::Message *message_;
    const google::protobuf::FieldDescriptor *oldCase_ = nullptr;
    std::unique_ptr<google::protobuf::Message> oldMessage_; ///< null: no case can be left
};

#endif
