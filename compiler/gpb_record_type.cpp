#include "compiler/gpb_record_type.h"

#include <algorithm>
#include <google/protobuf/descriptor.pb.h>

using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

namespace
{

constexpr uint32_t WIRE_VARINT = 0;
constexpr uint32_t WIRE_FIXED64 = 1;
constexpr uint32_t WIRE_LENGTH = 2;
constexpr uint32_t WIRE_FIXED32 = 5;
constexpr uint32_t WIRE_TYPE_BITS = 3;

GpbWireForm FormOf(const FieldDescriptor *field)
{
    switch (field->type())
    {
    case FieldDescriptor::TYPE_DOUBLE:
    case FieldDescriptor::TYPE_FIXED64:
    case FieldDescriptor::TYPE_SFIXED64:
        return GpbWireForm::FIXED64;
    case FieldDescriptor::TYPE_FLOAT:
    case FieldDescriptor::TYPE_FIXED32:
    case FieldDescriptor::TYPE_SFIXED32:
        return GpbWireForm::FIXED32;
    case FieldDescriptor::TYPE_SINT32:
    case FieldDescriptor::TYPE_SINT64:
        return GpbWireForm::ZIGZAG;
    case FieldDescriptor::TYPE_STRING:
    case FieldDescriptor::TYPE_BYTES:
        return GpbWireForm::TEXT;
    case FieldDescriptor::TYPE_MESSAGE:
    case FieldDescriptor::TYPE_GROUP:
        return GpbWireForm::MESSAGE;
    default:
        return GpbWireForm::VARINT;
    }
}

uint32_t WireTypeOf(GpbWireForm form)
{
    switch (form)
    {
    case GpbWireForm::FIXED32:
        return WIRE_FIXED32;
    case GpbWireForm::FIXED64:
        return WIRE_FIXED64;
    case GpbWireForm::TEXT:
    case GpbWireForm::MESSAGE:
        return WIRE_LENGTH;
    default:
        return WIRE_VARINT;
    }
}

GpbRecordField Describe(const FieldDescriptor *field)
{
    GpbRecordField described;
    described.field = field;
    described.form = FormOf(field);
    described.kind = field->cpp_type();
    described.isRepeated = field->is_repeated();
    described.isPacked = field->is_packed();
    described.isRequired = field->is_required();
    described.hasPresence = field->has_presence();
    const uint32_t wireType = described.isPacked ? WIRE_LENGTH : WireTypeOf(described.form);
    described.tag = (static_cast<uint32_t>(field->number()) << WIRE_TYPE_BITS) | wireType;
    const auto *choice = field->real_containing_oneof();
    described.choice = choice == nullptr ? 0 : static_cast<uint32_t>(choice->index()) + 1;
    described.isPlain = !described.isRepeated && described.choice == 0;
    return described;
}

} // namespace

GpbRecordType::GpbRecordType(const google::protobuf::Descriptor *descriptor) : descriptor_(descriptor)
{
    const auto count = static_cast<size_t>(descriptor->field_count());
    fields_.reserve(count);
    for (int i = 0; i < descriptor->field_count(); ++i)
    {
        fields_.push_back(Describe(descriptor->field(i)));
        fields_.back().enumNames = EnumNamesOf(descriptor->field(i)->enum_type());
    }
    std::sort(fields_.begin(), fields_.end(),
              [](const GpbRecordField &left, const GpbRecordField &right)
              { return left.field->number() < right.field->number(); });
    LayOut();
}

// The bits, then the words of the choices, of the other fields, and the cases.
void GpbRecordType::LayOut()
{
    bitWords_ = fields_.size() / WORD_BITS + 1;
    caseWord_ = bitWords_ + ChoiceCount();
    byIndex_.resize(fields_.size());
    for (size_t place = 0; place < fields_.size(); ++place)
    {
        GpbRecordField &field = fields_[place];
        field.place = static_cast<uint32_t>(place);
        field.bitWord = static_cast<uint32_t>(place / WORD_BITS);
        field.bit = UINT64_C(1) << (place % WORD_BITS);
        field.word = static_cast<uint32_t>(field.choice == 0 ? caseWord_++ : bitWords_ + field.choice - 1);
        byIndex_[static_cast<size_t>(field.field->index())] = &field;
    }
    const size_t caseWords = (ChoiceCount() * sizeof(uint32_t) + sizeof(uint64_t) - 1) / sizeof(uint64_t);
    wordBytes_ = (caseWord_ + caseWords) * sizeof(uint64_t);
}

const GpbEnumNames *GpbRecordType::EnumNamesOf(const google::protobuf::EnumDescriptor *type)
{
    return type == nullptr ? nullptr : &enums_.try_emplace(type, descriptor_, type).first->second;
}

bool GpbRecordType::CanHold() const
{
    const auto &options = descriptor_->options();
    const bool hasClosedEnums = descriptor_->file()->syntax() != FileDescriptor::SYNTAX_PROTO3;
    return !options.map_entry() && !options.message_set_wire_format() &&
           std::all_of(fields_.begin(), fields_.end(),
                       [&](const GpbRecordField &field)
                       {
                           return field.field->type() != FieldDescriptor::TYPE_GROUP &&
                                  (!hasClosedEnums || field.enumNames == nullptr ||
                                   field.enumNames->AreAllOf(*field.field->enum_type()));
                       });
}
