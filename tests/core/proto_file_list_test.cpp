/** The list of all proto files, as the host gets it. */
#include <cstring>
#include <string>
#include <vector>

#include "platform/zmp.h"
#include "support/library_fixture.h"

namespace
{

using gpbtest::joinLines;

constexpr char kProto[] = "syntax = 'proto3'; message Top { string name = 1; }";
constexpr size_t kNameSize = 256;
constexpr uint32_t kUntouched = 0xAAAAAAAA;
constexpr uint32_t kTestLine = 1;

class ProtoFileList : public gpbtest::LibraryFixture
{
protected:
    /** One file that loads and one that does not. */
    void loadTwo()
    {
        writeProto("good", kProto);
        writeProto("bad", "syntax = 'proto3'; nonsense");
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "good", 0));
        ASSERT_EQ(1u, GPBLIB_ProtobufLoad(context(), "bad", 0));
        log().clear();
        events().clear();
    }

    uint32_t list() { return GPBLIB_GetAllProtoFileInfo(context(), &array, &count); }

    GpbProtoFileInfo marker = {};
    GpbProtoFileInfo *array = &marker;
    uint32_t count = kUntouched;
};

// The record is handed to hosts: a name of 256 bytes, the descriptor, the state, and padding up to the next pointer.
static_assert(offsetof(GpbProtoFileInfo, acFileName) == 0, "the name comes first");
static_assert(sizeof(GpbProtoFileInfo::acFileName) == kNameSize, "the name has 256 bytes");
static_assert(offsetof(GpbProtoFileInfo, pstFileDesc) == kNameSize, "the descriptor follows the name");
static_assert(offsetof(GpbProtoFileInfo, ucLoadState) == kNameSize + sizeof(void *),
              "the state follows the descriptor");
static_assert(sizeof(GpbProtoFileInfo) == kNameSize + 2 * sizeof(void *), "padding fills one word");

TEST_F(ProtoFileList, CopiesEveryRecordByteForByteWithoutGaps)
{
    loadTwo();
    ASSERT_EQ(0u, list());
    ASSERT_EQ(2u, count);
    for (uint32_t i = 0; i < count; ++i)
    {
        const void *const record = context()->pstProtoFileVec->ppvSlot[i];
        EXPECT_EQ(0, std::memcmp(record, &array[i], sizeof(GpbProtoFileInfo))) << i;
        EXPECT_NE(record, &array[i]);
    }
    EXPECT_STREQ("good.proto", array[0].acFileName);
    EXPECT_EQ(GPB_PROTO_LOADED, array[0].ucLoadState);
    EXPECT_NE(nullptr, array[0].pstFileDesc);
    EXPECT_STREQ("bad.proto", array[1].acFileName);
    EXPECT_EQ(GPB_PROTO_LOAD_FAILED, array[1].ucLoadState);
    EXPECT_EQ(nullptr, array[1].pstFileDesc);
    EXPECT_NO_LOG(log());
    ZMP_Free_F(array, "proto_file_list", kTestLine);
}

TEST_F(ProtoFileList, HasZeroPadding)
{
    loadTwo();
    ASSERT_EQ(0u, list());
    for (uint32_t i = 0; i < count; ++i)
    {
        const auto *const bytes = reinterpret_cast<const unsigned char *>(&array[i]);
        for (size_t k = offsetof(GpbProtoFileInfo, ucLoadState) + 1; k < sizeof(GpbProtoFileInfo); ++k)
        {
            EXPECT_EQ(0, bytes[k]) << i << ", byte " << k;
        }
        for (size_t k = std::strlen(array[i].acFileName); k < kNameSize; ++k)
        {
            EXPECT_EQ(0, bytes[k]) << i << ", byte " << k;
        }
    }
    ZMP_Free_F(array, "proto_file_list", kTestLine);
}

TEST_F(ProtoFileList, IsOneAllocationThatTheHostOwns)
{
    loadTwo();
    ASSERT_EQ(0u, list());
    const std::vector<gpbtest::PlatformEvent> &made = events().events();
    ASSERT_EQ(1u, made.size());
    EXPECT_EQ("MALLOC gpb_template:1541", made[0].str());
    EXPECT_EQ(array, made[0].memory);
    EXPECT_EQ(2 * sizeof(GpbProtoFileInfo), made[0].size);
    EXPECT_EQ(kModuleId, made[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], made[0].partition);
    GPBLIB_UnloadProtoFileAll(context(), 0);
    EXPECT_STREQ("good.proto", array[0].acFileName) << "outlives the registry";
    ZMP_Free_F(array, "proto_file_list", kTestLine);
}

TEST_F(ProtoFileList, IsLeftUntouchedWithoutFiles)
{
    events().clear();
    EXPECT_EQ(0u, list());
    EXPECT_EQ(0u, count);
    EXPECT_EQ(&marker, array);
    EXPECT_EQ("", joinLines(events().texts()));
    EXPECT_NO_LOG(log());
}

TEST_F(ProtoFileList, FailsWithoutRegistry)
{
    VecVector *const files = context()->pstProtoFileVec;
    context()->pstProtoFileVec = nullptr;
    EXPECT_EQ(1u, list());
    context()->pstProtoFileVec = files;
    EXPECT_EQ(kUntouched, count);
    EXPECT_EQ(&marker, array);
    EXPECT_LOG(log(), "1: the vec protofile is empty");
}

TEST_F(ProtoFileList, FailsWithoutMemory)
{
    loadTwo();
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ(1u, list());
    EXPECT_EQ(2u, count);
    EXPECT_EQ(nullptr, array);
    EXPECT_EQ("MALLOC_FAILED gpb_template:1541\n", joinLines(events().texts()));
    EXPECT_LOG(log(), "1: failed to malloc memory for get protofile info");
}

TEST_F(ProtoFileList, IsGivenUpWhenARecordCannotBeCopied)
{
    loadTwo();
    for (const uint64_t record : {1u, 2u})
    {
        GpbHost_FailCall(GPB_HOST_MEMCPY, record);
        events().clear();
        array = &marker;
        EXPECT_EQ(1u, list());
        EXPECT_EQ(nullptr, array);
        EXPECT_EQ(joinLines({"MALLOC gpb_template:1541", "FREE gpb_template:1552"}), joinLines(events().texts()));
        EXPECT_NO_LOG(log());
    }
}

TEST_F(ProtoFileList, NeedsAllArguments)
{
    EXPECT_EQ(1u, GPBLIB_GetAllProtoFileInfo(nullptr, &array, &count));
    EXPECT_EQ(1u, GPBLIB_GetAllProtoFileInfo(context(), nullptr, &count));
    EXPECT_EQ(1u, GPBLIB_GetAllProtoFileInfo(context(), &array, nullptr));
    EXPECT_EQ(&marker, array);
    EXPECT_EQ(kUntouched, count);
}

} // namespace
