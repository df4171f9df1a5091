/** Layout of the records that hosts share with the library: where each field lies on machines of 32 and of 64 bits,
 * with no other padding than the fields' own. */
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include <gtest/gtest.h>

#include "core/record_layouts.h"

namespace
{

using namespace gpbtest;

// A host is built apart from the library: a record that moves breaks it. It breaks the tests' build first.
#define RECORD(record, size32, size64)                                                                                 \
    static_assert(sizeof(record) == (kHas64Bits ? (size64) : (size32)), "size of " #record);
#define FIELD(record, field, offset32, size32, offset64, size64)                                                       \
    static_assert(offsetof(record, field) == (kHas64Bits ? (offset64) : (offset32)), "offset of " #record "." #field); \
    static_assert(sizeof(record::field) == (kHas64Bits ? (size64) : (size32)), "size of " #record "." #field);
#include "packaging/record-layouts.txt"
#undef RECORD
#undef FIELD

// The same, apart from the list, for what hosts rely on most.
static_assert(sizeof(GpbProtoFileInfo) == (kHas64Bits ? 272 : 264), "256 bytes of name, a pointer, a state");
static_assert(sizeof(GpbCidFid) == 8, "the mapping callbacks' record is the same on all machines");
static_assert(offsetof(ObjNode, value) == offsetof(ObjNode, pucString), "a node has either a value or a content");

constexpr const char *kSourceDirectory = GPB_TEST_SOURCE_DIR;

std::string readText(const std::filesystem::path &path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

size_t alignedUp(size_t offset, size_t alignment)
{
    return (offset + alignment - 1) / alignment * alignment;
}

TEST(Layout, IsThatOfTheList)
{
    EXPECT_EQ(readText(std::filesystem::path(kSourceDirectory) / "packaging/record-layouts.txt"), listRecordLayouts());
}

TEST(Layout, FieldsFollowEachOther)
{
    const std::vector<RecordLayout> records = recordLayouts();
    ASSERT_FALSE(records.empty());
    for (const RecordLayout &record : records)
    {
        SCOPED_TRACE(record.name);
        ASSERT_FALSE(record.fields.empty());
        size_t end = 0;
        for (const FieldLayout &field : record.fields)
        {
            EXPECT_EQ(alignedUp(end, field.alignment), field.offset) << field.name;
            end = field.offset + field.size;
        }
        EXPECT_EQ(alignedUp(end, record.alignment), record.size) << "fields behind " << record.fields.back().name;
    }
}

TEST(Layout, EveryRecordIsListed)
{
    std::set<std::string> listed;
    for (const RecordLayout &record : recordLayouts())
    {
        listed.insert(record.name);
    }
    const std::regex definition(R"((?:^|\n)(?:typedef )?struct (\w+)\n)");
    std::set<std::string> defined;
    for (const char *directory : {"include/gpb_templatelib", "platform"})
    {
        for (const auto &entry :
             std::filesystem::directory_iterator(std::filesystem::path(kSourceDirectory) / directory))
        {
            const std::string text = readText(entry.path());
            for (std::sregex_iterator match(text.begin(), text.end(), definition), end; match != end; ++match)
            {
                defined.insert((*match)[1]);
            }
        }
    }
    EXPECT_EQ(defined, listed);
}

} // namespace
