#include "compiler/gpb_case_switch.h"

#include <cstdint>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <vector>

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

const FieldDescriptor *CurrentCase(const Message &message, const OneofDescriptor *choice)
{
    return message.GetReflection()->GetOneofFieldDescriptor(message, choice);
}

} // namespace

GpbCaseSwitch::GpbCaseSwitch(GpbCompilerStack &stack, Message *message, const FieldDescriptor *field)
    : stack_(stack), message_(message)
{
    const OneofDescriptor *choice = field->containing_oneof();
    if (choice == nullptr || message == nullptr || field->containing_type() != message->GetDescriptor())
    {
        return;
    }
    const FieldDescriptor *current = CurrentCase(*message, choice);
    if (current == nullptr || current == field || current->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE)
    {
        return;
    }
    if (LeftBehindSlots(stack) == 0)
    {
        return;
    }
    oldCase_ = current;
    oldMessage_.reset(message->GetReflection()->ReleaseMessage(message, current));
}

GpbCaseSwitch::~GpbCaseSwitch()
{
    if (oldMessage_ == nullptr)
    {
        return;
    }
    if (CurrentCase(*message_, oldCase_->containing_oneof()) == nullptr)
    {
        message_->GetReflection()->SetAllocatedMessage(message_, oldMessage_.release(), oldCase_);
        return;
    }
    // Without memory to search with, no slot is reused.
    const uint32_t slots = LeftBehindSlots(stack_);
    const uint32_t gone = GpbNoThrow(slots, [&] { return SlotsWithin(stack_, slots, *oldMessage_); });
    for (uint32_t i = 0; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if ((gone & SlotBit(i)) != 0)
        {
            stack_.astLayer[i].pstDescriptor = nullptr;
            stack_.astLayer[i].pstMessage = nullptr;
        }
    }
}
