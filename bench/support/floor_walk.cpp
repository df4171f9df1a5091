#include "support/floor_walk.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>

using google::protobuf::Descriptor;
using google::protobuf::EnumDescriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;
using google::protobuf::Reflection;

namespace gpbbench
{

namespace
{

constexpr int DECIMAL = 10;

const char *TextOf(const xmlNode *leaf)
{
    return leaf->children == nullptr ? "" : reinterpret_cast<const char *>(leaf->children->content);
}

} // namespace

FloorWalk::FloorWalk(const Descriptor *type, xmlDoc *document) : type_(type), root_(xmlDocGetRootElement(document))
{
    if (type_ == nullptr || root_ == nullptr)
    {
        throw std::runtime_error("no message type or no document to walk");
    }
    Resolve(type_, root_);
}

void FloorWalk::Resolve(const Descriptor *type, const xmlNode *parent)
{
    for (const xmlNode *node = parent->children; node != nullptr; node = node->next)
    {
        if (node->type != XML_ELEMENT_NODE)
        {
            continue;
        }
        const Step step = FindStep(type, node);
        steps_.push_back(step);
        if (step.field->message_type() != nullptr)
        {
            Resolve(step.field->message_type(), node);
        }
    }
}

FloorWalk::Step FloorWalk::FindStep(const Descriptor *type, const xmlNode *element)
{
    std::string name = reinterpret_cast<const char *>(element->name);
    std::replace(name.begin(), name.end(), '-', '_');
    Step step;
    step.field = type->FindFieldByName(name);
    for (int i = 0; step.field == nullptr && i < type->field_count(); ++i)
    {
        const FieldDescriptor *member = type->field(i);
        if (member->real_containing_oneof() != nullptr && member->message_type() != nullptr)
        {
            step.field = member->message_type()->FindFieldByName(name);
            step.caseField = step.field == nullptr ? nullptr : member;
        }
    }
    if (step.field == nullptr)
    {
        throw std::runtime_error("no field for element " + name);
    }
    if (step.field->enum_type() != nullptr)
    {
        step.enumNumbers = NumbersOf(step.field->enum_type());
    }
    return step;
}

const FloorWalk::EnumNumbers *FloorWalk::NumbersOf(const EnumDescriptor *type)
{
    EnumNumbers &numbers = enums_[type];
    for (int i = 0; i < type->value_count(); ++i)
    {
        // A value is named TYPE_VALUE.
        numbers.emplace(type->value(i)->name().substr(type->name().size() + 1), type->value(i)->number());
    }
    return &numbers;
}

void FloorWalk::Encode(const Message &prototype, std::string &bytes) const
{
    const std::unique_ptr<Message> message(prototype.New());
    Fill(steps_.data(), root_, message.get());
    if (!message->SerializeToString(&bytes))
    {
        throw std::runtime_error("the message cannot be serialized");
    }
}

const FloorWalk::Step *FloorWalk::Fill(const Step *step, const xmlNode *parent, Message *message)
{
    const Reflection *reflection = message->GetReflection();
    for (const xmlNode *node = parent->children; node != nullptr; node = node->next)
    {
        if (node->type != XML_ELEMENT_NODE)
        {
            continue;
        }
        const Step &here = *step++;
        Message *target = here.caseField == nullptr ? message : reflection->MutableMessage(message, here.caseField);
        if (here.field->cpp_type() != FieldDescriptor::CPPTYPE_MESSAGE)
        {
            Store(here, node, target);
            continue;
        }
        const Reflection *targetReflection = target->GetReflection();
        step = Fill(step, node,
                    here.field->is_repeated() ? targetReflection->AddMessage(target, here.field)
                                              : targetReflection->MutableMessage(target, here.field));
    }
    return step;
}

void FloorWalk::Store(const Step &step, const xmlNode *leaf, Message *message)
{
    const Reflection *reflection = message->GetReflection();
    const char *text = TextOf(leaf);
    switch (step.field->cpp_type())
    {
    case FieldDescriptor::CPPTYPE_STRING:
        reflection->SetString(message, step.field, text);
        break;
    case FieldDescriptor::CPPTYPE_UINT32:
        reflection->SetUInt32(message, step.field, static_cast<uint32_t>(std::strtoul(text, nullptr, DECIMAL)));
        break;
    case FieldDescriptor::CPPTYPE_UINT64:
        reflection->SetUInt64(message, step.field, std::strtoull(text, nullptr, DECIMAL));
        break;
    case FieldDescriptor::CPPTYPE_INT64:
        reflection->SetInt64(message, step.field, std::strtoll(text, nullptr, DECIMAL));
        break;
    case FieldDescriptor::CPPTYPE_DOUBLE:
        reflection->SetDouble(message, step.field, std::strtod(text, nullptr));
        break;
    case FieldDescriptor::CPPTYPE_BOOL:
        reflection->SetBool(message, step.field, std::string_view(text) != "false");
        break;
    case FieldDescriptor::CPPTYPE_ENUM:
        reflection->SetEnumValue(message, step.field, step.enumNumbers->find(std::string_view(text))->second);
        break;
    default:
        throw std::runtime_error("the floor does not know the type of " + step.field->full_name());
    }
}

} // namespace gpbbench
