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

void WriteMessage(const GpbRecord &record, GpbBackwardWriter &writer)
{
    const size_t before = writer.Size();
    GpbWriteRecord(record, writer);
    writer.Varint(writer.Size() - before);
}

[[gnu::always_inline]] inline void WriteValue(const GpbRecordField &field, GpbRecordValue value,
                                              GpbBackwardWriter &writer)
{
    switch (field.form)
    {
    case GpbWireForm::VARINT:
        writer.Varint(value.number);
        break;
    case GpbWireForm::ZIGZAG:
        writer.Varint(ZigZag(value.number));
        break;
    case GpbWireForm::FIXED32:
        writer.Fixed(value.number, sizeof(uint32_t));
        break;
    case GpbWireForm::FIXED64:
        writer.Fixed(value.number, sizeof(uint64_t));
        break;
    case GpbWireForm::TEXT:
        writer.Text(value.text->View());
        writer.Varint(value.text->length);
        break;
    case GpbWireForm::MESSAGE:
        WriteMessage(*value.record, writer);
        break;
    }
}

void WriteRepeated(const GpbRecordField &field, const GpbRecordCell *last, GpbBackwardWriter &writer)
{
    const size_t before = writer.Size();
    for (const GpbRecordCell *cell = last; cell != nullptr; cell = cell->previous)
    {
        WriteValue(field, cell->value, writer);
        if (!field.isPacked)
        {
            writer.Varint(field.tag);
        }
    }
    if (field.isPacked)
    {
        writer.Varint(writer.Size() - before);
        writer.Varint(field.tag);
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
                return;
            }
            WriteValue(field, value, writer);
            writer.Varint(field.tag);
        });
}
