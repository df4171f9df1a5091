#include "compiler/gpb_record.h"

#include <new>

using google::protobuf::FieldDescriptor;
using google::protobuf::OneofDescriptor;

std::unique_ptr<GpbRecord> GpbRecord::NewTop(const GpbRecordType &type)
{
    auto arena = std::make_unique<GpbRecordArena>();
    void *const memory = ::operator new(SizeOf(type));
    // The top record frees the arena.
    return std::unique_ptr<GpbRecord>(new (memory) GpbRecord(type, arena.release(), nullptr));
}

GpbRecord::GpbRecord(const GpbRecordType &type, GpbRecordArena *arena, const GpbRecord *parent)
    : type_(type), arena_(arena), parent_(parent)
{
    // Most types have one word and no choice.
    uint64_t *const present = Present();
    present[0] = 0;
    for (size_t word = 1; word < WordCount(type); ++word)
    {
        present[word] = 0;
    }
    for (size_t choice = 0; choice < type.ChoiceCount(); ++choice)
    {
        Cases()[choice] = 0;
    }
}

size_t GpbRecord::SizeOf(const GpbRecordType &type)
{
    return sizeof(GpbRecord) + WordCount(type) * sizeof(uint64_t) + type.ValueCount() * sizeof(GpbRecordValue) +
           type.ChoiceCount() * sizeof(uint32_t);
}

GpbRecord::~GpbRecord()
{
    // Only a top record is ever destroyed; the others end with the arena.
    delete arena_;
}

void GpbRecord::Store(const FieldDescriptor *field, std::string_view text)
{
    auto *copy = new (arena_->Take(sizeof(GpbRecordText) + text.size())) GpbRecordText{text.size()};
    std::memcpy(copy + 1, text.data(), text.size());
    GpbRecordValue value = {};
    value.text = copy;
    Put(type_.PlaceOf(field), value, !text.empty());
    arena_->Expect(text.size() + LENGTH_BYTES);
}

GpbRecord *GpbRecord::Open(const FieldDescriptor *field)
{
    const uint32_t place = type_.PlaceOf(field);
    const GpbRecordField &described = type_.FieldAt(place);
    if (!described.isRepeated && IsPresent(place))
    {
        return Values()[described.valueIndex].record;
    }
    GpbRecordValue value = {};
    value.record = new (arena_->Take(SizeOf(*described.type))) GpbRecord(*described.type, arena_, this);
    Put(place, value, true);
    arena_->Expect(LENGTH_BYTES);
    return value.record;
}

const GpbRecord *GpbRecord::CaseOf(const OneofDescriptor *choice) const
{
    const uint32_t entered = Cases()[choice->index()];
    if (entered == 0 || type_.FieldAt(entered - 1).form != GpbWireForm::MESSAGE)
    {
        return nullptr;
    }
    return Values()[type_.FieldAt(entered - 1).valueIndex].record;
}

bool GpbRecord::IsWithin(const GpbRecord &other) const
{
    const GpbRecord *record = this;
    while (record != nullptr && record != &other)
    {
        record = record->parent_;
    }
    return record != nullptr;
}

bool GpbRecord::IsWhole() const
{
    if (!type_.MayReachRequired())
    {
        return true;
    }
    for (uint32_t place = 0; place < type_.FieldCount(); ++place)
    {
        if (type_.FieldAt(place).isRequired && !IsPresent(place))
        {
            return false;
        }
    }
    bool isWhole = true;
    ForEachFromLast(
        [&](const GpbRecordField &field, GpbRecordValue value)
        {
            if (field.form != GpbWireForm::MESSAGE)
            {
                return;
            }
            if (!field.isRepeated)
            {
                isWhole = isWhole && value.record->IsWhole();
                return;
            }
            for (const GpbRecordCell *cell = value.last; cell != nullptr && isWhole; cell = cell->previous)
            {
                isWhole = cell->value.record->IsWhole();
            }
        });
    return isWhole;
}

void GpbRecord::Append(const GpbRecordField &field, uint32_t place, GpbRecordValue value)
{
    GpbRecordValue &values = Values()[field.valueIndex];
    GpbRecordCell *previous = IsPresent(place) ? values.last : nullptr;
    values.last = new (arena_->Take(sizeof(GpbRecordCell))) GpbRecordCell{previous, value};
    SetPresent(place, true);
}

// The member of a choice that was set last is the only one that is there.
void GpbRecord::EnterCase(uint32_t choice, uint32_t place)
{
    uint32_t &entered = Cases()[choice - 1];
    if (entered != 0)
    {
        SetPresent(entered - 1, false);
    }
    entered = place + 1;
}

google::protobuf::Message *GpbRecord::New(google::protobuf::Arena * /*arena*/) const
{
    return nullptr;
}

int GpbRecord::GetCachedSize() const
{
    return 0;
}

google::protobuf::Metadata GpbRecord::GetMetadata() const
{
    return {type_.Descriptor(), nullptr};
}
