#include "compiler/gpb_case_switch.h"

#include <cstdint>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <vector>

#include "compiler/gpb_record.h"
#include "core/gpb_barrier.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::OneofDescriptor;
using google::protobuf::Reflection;

namespace
{

static_assert(GPB_COMPILER_STACK_DEPTH <= 32, "slots are kept as bits of 32-bit words");

uint32_t SlotBit(uint32_t slot)
{
    return UINT32_C(1) << slot;
}

// Slots that were popped but still know their message.
uint32_t LeftBehindSlots(const GpbCompilerStack &stack)
{
    uint32_t slots = 0;
    for (uint32_t i = stack.uiLayerNum; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if (stack.astLayer[i].pstMessage != nullptr)
        {
            slots |= SlotBit(i);
        }
    }
    return slots;
}

// Those of `slots` whose message is `message` or a part of it. Messages nest no deeper than the stack is high.
uint32_t SlotsWithin(const GpbCompilerStack &stack, uint32_t slots, const Message &message)
{
    uint32_t found = 0;
    for (uint32_t i = 0; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if ((slots & SlotBit(i)) != 0 && stack.astLayer[i].pstMessage == &message)
        {
            found |= SlotBit(i);
        }
    }
    const Reflection *reflection = message.GetReflection();
    std::vector<const FieldDescriptor *> fields;
    reflection->ListFields(message, &fields);
    for (const FieldDescriptor *field : fields)
    {
        if (field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE)
        {
            continue;
        }
        if (!field->is_repeated())
        {
            found |= SlotsWithin(stack, slots, reflection->GetMessage(message, field));
            continue;
        }
        for (int i = 0; i < reflection->FieldSize(message, field); ++i)
        {
            found |= SlotsWithin(stack, slots, reflection->GetRepeatedMessage(message, field, i));
        }
    }
    return found;
}

uint32_t SlotsWithin(const GpbCompilerStack &stack, uint32_t slots, const GpbRecord &old)
{
    uint32_t found = 0;
    for (uint32_t i = 0; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        const GpbRecord *record = (slots & SlotBit(i)) == 0 ? nullptr : GpbRecordOf(stack.astLayer[i].pstMessage);
        found |= record != nullptr && record->IsWithin(old) ? SlotBit(i) : 0;
    }
    return found;
}

const FieldDescriptor *CurrentCase(const Message &message, const OneofDescriptor *choice)
{
    return message.GetReflection()->GetOneofFieldDescriptor(message, choice);
}

} // namespace

void GpbCaseSwitch::RememberCase(const FieldDescriptor *field)
{
    const OneofDescriptor *choice = field->real_containing_oneof();
    if (choice == nullptr || message_ == nullptr || field->containing_type() != message_->GetDescriptor() ||
        LeftBehindSlots(stack_) == 0)
    {
        return;
    }
    if (const GpbRecord *record = GpbRecordOf(message_))
    {
        oldCase_ = field;
        oldRecord_ = record->CaseOf(choice);
        return;
    }
    const FieldDescriptor *current = CurrentCase(*message_, choice);
    if (current == nullptr || current == field || current->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE)
    {
        return;
    }
    oldCase_ = current;
    oldMessage_.reset(message_->GetReflection()->ReleaseMessage(message_, current));
}

void GpbCaseSwitch::ForgetCase()
{
    const OneofDescriptor *choice = oldCase_->containing_oneof();
    if (oldRecord_ != nullptr)
    {
        if (GpbRecordOf(message_)->CaseOf(choice) != oldRecord_)
        {
            ForgetSlots(SlotsWithin(stack_, LeftBehindSlots(stack_), *oldRecord_));
        }
        return;
    }
    if (CurrentCase(*message_, choice) == nullptr)
    {
        message_->GetReflection()->SetAllocatedMessage(message_, oldMessage_.release(), oldCase_);
        return;
    }
    // Without memory to search with, no slot is reused.
    const uint32_t slots = LeftBehindSlots(stack_);
    ForgetSlots(GpbNoThrow(slots, [&] { return SlotsWithin(stack_, slots, *oldMessage_); }));
}

void GpbCaseSwitch::ForgetSlots(uint32_t slots)
{
    for (uint32_t i = 0; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if ((slots & SlotBit(i)) != 0)
        {
            stack_.astLayer[i].pstDescriptor = nullptr;
            stack_.astLayer[i].pstMessage = nullptr;
        }
    }
}
