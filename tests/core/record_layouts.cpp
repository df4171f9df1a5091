#include "core/record_layouts.h"

#include <sstream>

namespace gpbtest
{

namespace
{

constexpr const char *kHead =
    "// The public records in bytes, as machines of 32 bits and of 64 bits have them: RECORD(record, size, size) and\n"
    "// FIELD(record, field, offset, size, offset, size). The tests include this list and compare it with the "
    "compiler's "
    "view;\n"
    "// the program record_layouts prints it as its machine has it.\n";

/** The number of this machine and the listed one of the other kind, in the list's order. */
std::string bothKinds(size_t here, size_t listed32, size_t listed64)
{
    std::ostringstream text;
    text << (kHas64Bits ? listed32 : here) << ", " << (kHas64Bits ? here : listed64);
    return text.str();
}

/** The same for a place: an offset and a size. */
std::string bothPlaces(size_t offset, size_t size, const std::string &listed32, const std::string &listed64)
{
    const std::string here = std::to_string(offset) + ", " + std::to_string(size);
    return (kHas64Bits ? listed32 : here) + ", " + (kHas64Bits ? here : listed64);
}

} // namespace

std::vector<RecordLayout> recordLayouts()
{
    std::vector<RecordLayout> records;
#define RECORD(record, size32, size64) records.push_back({#record, sizeof(record), alignof(record), {}});
#define FIELD(record, field, offset32, size32, offset64, size64)                                                       \
    records.back().fields.push_back(                                                                                   \
        {#field, offsetof(record, field), sizeof(record::field), alignof(decltype(record::field))});
#include "packaging/record-layouts.txt"
#undef RECORD
#undef FIELD
    return records;
}

std::string listRecordLayouts()
{
    std::string text = kHead;
#define RECORD(record, size32, size64)                                                                                 \
    text += "\nRECORD(" #record ", " + bothKinds(sizeof(record), size32, size64) + ")\n";
#define FIELD(record, field, offset32, size32, offset64, size64)                                                       \
    text +=                                                                                                            \
        "FIELD(" #record ", " #field ", " +                                                                            \
        bothPlaces(offsetof(record, field), sizeof(record::field), #offset32 ", " #size32, #offset64 ", " #size64) +   \
        ")\n";
#include "packaging/record-layouts.txt"
#undef RECORD
#undef FIELD
    return text;
}

} // namespace gpbtest
