#include "compiler/gpb_record.h"

#include <cstddef>
#include <new>

using google::protobuf::OneofDescriptor;

std::unique_ptr<GpbRecord> GpbRecord::NewTop(const GpbRecordType &type)
{
    // The arena lies behind the top record, which ends it.
    const size_t size = sizeof(GpbRecord) + type.WordBytes();
    auto *const memory = static_cast<char *>(::operator new(size + sizeof(GpbRecordArena)));
    auto *const arena = new (memory + size) GpbRecordArena();
    return std::unique_ptr<GpbRecord>(new (memory) GpbRecord(type, arena, nullptr));
}

[[gnu::always_inline]] inline GpbRecord::GpbRecord(const GpbRecordType &type, GpbRecordArena *arena,
                                                   const GpbRecord *parent)
    : type_(type), arena_(arena), parent_(parent)
{
    // Most types have one word of bits and no choice.
    GpbRecordValue *const bits = Words();
    bits[0].number = 0;
    for (size_t word = 1; word < type.BitWords(); ++word)
    {
        bits[word].number = 0;
    }
    for (size_t choice = 0; choice < type.ChoiceCount(); ++choice)
    {
        Cases()[choice] = 0;
    }
}

GpbRecord::~GpbRecord()
{
    // Only a top record is ever destroyed; the others end with the arena.
    arena_->~GpbRecordArena();
}

void GpbRecord::Store(const GpbRecordField &field, std::string_view text)
{
    auto *copy = new (arena_->Take(sizeof(GpbRecordText) + text.size())) GpbRecordText{text.size()};
    std::memcpy(copy + 1, text.data(), text.size());
    GpbRecordValue value = {};
    value.text = copy;
    Put(field, value, !text.empty());
    arena_->Expect(text.size() + LENGTH_BYTES);
}

GpbRecord *GpbRecord::Open(const GpbRecordField &field)
{
    if (!field.isRepeated && IsPresent(field))
    {
        return Words()[field.word].record;
    }
    GpbRecordValue value = {};
    void *const memory = arena_->Take(sizeof(GpbRecord) + field.type->WordBytes());
    value.record = new (memory) GpbRecord(*field.type, arena_, this);
    Put(field, value, true);
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
    return Words()[type_.FieldAt(entered - 1).word].record;
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
        if (type_.FieldAt(place).isRequired && !IsPresent(type_.FieldAt(place)))
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

void GpbRecord::Append(const GpbRecordField &field, GpbRecordValue value)
{
    GpbRecordValue &values = Words()[field.word];
    GpbRecordCell *previous = IsPresent(field) ? values.last : nullptr;
    values.last = new (arena_->Take(sizeof(GpbRecordCell))) GpbRecordCell{previous, value};
    SetPresent(field);
}

// The member of a choice that was set last is the only one that is there.
void GpbRecord::EnterCase(const GpbRecordField &field)
{
    uint32_t &entered = Cases()[field.choice - 1];
    if (entered != 0)
    {
        SetAbsent(type_.FieldAt(entered - 1));
    }
    entered = field.place + 1;
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
