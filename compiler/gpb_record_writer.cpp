// Records as bytes of the wire format.
#include "compiler/gpb_record_writer.h"

namespace
{

constexpr unsigned SIGN_OF_64 = 63;

uint64_t ZigZag(uint64_t value)
{
    const uint64_t sign = value >> SIGN_OF_64;
    return (value << 1U) ^ (UINT64_C(0) - sign);
}

void WriteNumber(GpbWireForm form, uint64_t number, GpbBackwardWriter &writer)
{
    switch (form)
    {
    case GpbWireForm::ZIGZAG:
        writer.Varint(ZigZag(number));
        break;
    case GpbWireForm::FIXED32:
        writer.Fixed32(static_cast<uint32_t>(number));
        break;
    case GpbWireForm::FIXED64:
        writer.Fixed64(number);
        break;
    default:
        writer.Varint(number);
        break;
    }
}

[[gnu::always_inline]] inline void WriteValue(const GpbRecordField &field, GpbRecordValue value,
                                              GpbBackwardWriter &writer)
{
    // Most values are such numbers.
    if (field.form == GpbWireForm::VARINT)
    {
        writer.Varint(value.number, field.tag);
        return;
    }
    switch (field.form)
    {
    case GpbWireForm::TEXT:
        writer.Text(value.text->View());
        writer.Varint(value.text->length, field.tag);
        break;
    case GpbWireForm::MESSAGE:
    {
        const size_t before = writer.Size();
        GpbWriteRecord(*value.record, writer);
        writer.Varint(writer.Size() - before, field.tag);
        break;
    }
    default:
        WriteNumber(field.form, value.number, writer);
        writer.Varint(field.tag);
        break;
    }
}

void WritePacked(const GpbRecordField &field, const GpbRecordCell *last, GpbBackwardWriter &writer)
{
    const size_t before = writer.Size();
    for (const GpbRecordCell *cell = last; cell != nullptr; cell = cell->previous)
    {
        WriteNumber(field.form, cell->value.number, writer);
    }
    writer.Varint(writer.Size() - before, field.tag);
}

// Not a part of GpbWriteRecord, which has enough at hand without the cells of a list.
[[gnu::noinline]] void WriteRepeated(const GpbRecordField &field, const GpbRecordCell *last, GpbBackwardWriter &writer)
{
    if (field.isPacked)
    {
        WritePacked(field, last, writer);
        return;
    }
    for (const GpbRecordCell *cell = last; cell != nullptr; cell = cell->previous)
    {
        WriteValue(field, cell->value, writer);
    }
}

} // namespace

// Records lie in each other no deeper than a stack has layers.
void GpbWriteRecord(const GpbRecord &record, GpbBackwardWriter &writer)
{
    record.ForEachFromLast(
        [&](const GpbRecordField &field, GpbRecordValue value)
        {
            if (field.isRepeated)
            {
                WriteRepeated(field, value.last, writer);
            }
            else
            {
                WriteValue(field, value, writer);
            }
        });
}
