// What a choice that switches to another case does to the layers that earlier pops left behind.
#ifndef GPB_COMPILER_GPB_CASE_SWITCH_H
#define GPB_COMPILER_GPB_CASE_SWITCH_H

#include <cstdint>

#include "gpb_templatelib/gpb_compiler.h"

/// Stands around an operation that may store `field` in `message`. If that makes a oneof switch to another case,
/// protobuf frees the message of the old case; slots above the top of the stack that hold a part of it are then made
/// unused, so that nobody reuses a message that is gone.
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
    uint32_t endangered_ = 0; ///< bit per slot that holds a part of the old case
};

#endif
