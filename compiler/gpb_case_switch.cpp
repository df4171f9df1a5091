#include "compiler/gpb_case_switch.h"

#include <algorithm>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <utility>

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::OneofDescriptor;

namespace
{

static_assert(GPB_COMPILER_STACK_DEPTH <= 32, "slots are kept as bits of 32-bit words");

uint32_t SlotBit(uint32_t slot)
{
    return UINT32_C(1) << slot;
}

// Whether the slot holds the layer that was pushed there, and not one that somebody wrote into it.
bool KnowsLineage(const GpbCompilerStack &stack, uint32_t slot)
{
    return stack.apstLineage[slot][slot] == stack.astLayer[slot].pstMessage;
}

// Whether the message of a slot is `message`, which lies as deep as slot `depth`, or a part of it. A slot of which that
// is not known might be.
bool MayLieIn(const GpbCompilerStack &stack, uint32_t slot, const Message &message, uint32_t depth)
{
    if (slot == depth)
    {
        return stack.astLayer[slot].pstMessage == &message;
    }
    const Message *ancestor = KnowsLineage(stack, slot) ? stack.apstLineage[slot][depth] : nullptr;
    return ancestor == nullptr || ancestor == &message;
}

// Popped slots that still know a message, and whose message is `message` or a part of it.
uint32_t LeftBehindSlots(const GpbCompilerStack &stack, const Message &message)
{
    // A slot's message lies as deep in the top message as the slot on the stack, also when a slot above it was reused.
    const uint32_t depth = std::max(stack.uiLayerNum, UINT32_C(1));
    uint32_t slots = 0;
    for (uint32_t i = depth; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if (stack.astLayer[i].pstMessage != nullptr && MayLieIn(stack, i, message, depth))
        {
            slots |= SlotBit(i);
        }
    }
    return slots;
}

const FieldDescriptor *CurrentCase(const Message &message, const OneofDescriptor *choice)
{
    return message.GetReflection()->GetOneofFieldDescriptor(message, choice);
}

} // namespace

void GpbPushLayer(GpbCompilerStack &stack, GpbCompilerStackLayer &&layer)
{
    const uint32_t slot = stack.uiLayerNum;
    const Message **lineage = stack.apstLineage[slot];
    std::fill_n(lineage, GPB_COMPILER_STACK_DEPTH, nullptr);
    if (slot > 0)
    {
        if (KnowsLineage(stack, slot - 1))
        {
            std::copy_n(stack.apstLineage[slot - 1], slot, lineage);
        }
        lineage[slot - 1] = stack.astLayer[slot - 1].pstMessage;
    }
    lineage[slot] = layer.pstMessage;
    stack.astLayer[slot] = std::move(layer);
    ++stack.uiLayerNum;
}

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
    oldCase_ = current;
    endangered_ = LeftBehindSlots(stack, message->GetReflection()->GetMessage(*message, current));
}

GpbCaseSwitch::~GpbCaseSwitch()
{
    if (endangered_ == 0 || CurrentCase(*message_, oldCase_->containing_oneof()) == oldCase_)
    {
        return;
    }
    for (uint32_t i = 0; i < GPB_COMPILER_STACK_DEPTH; ++i)
    {
        if ((endangered_ & SlotBit(i)) != 0)
        {
            stack_.astLayer[i].pstDescriptor = nullptr;
            stack_.astLayer[i].pstMessage = nullptr;
        }
    }
}
