// JSON to GPB: model attributes.
#include <array>

#include "compiler/json_fixture.h"
#include "platform/zmp.h"

namespace gpbtest
{
namespace
{

/** A record with room for as many leaves as its count can reach, one more than it can tell. */
class AttrRecord
{
public:
    static constexpr size_t kRoom = 256;

    AttrRecord()
    {
        m_names.fill(nullptr);
        m_types.fill(kUntouched);
        m_record.ppcName = m_names.data();
        m_record.puiType = m_types.data();
        m_record.ucReserved = 0x5A;
        m_record.ucCount = 0xEE;
    }

    ~AttrRecord()
    {
        for (char *name : m_names)
        {
            if (name != nullptr)
            {
                ZMP_Free_F(name, "json_attr_test", 0);
            }
        }
    }

    AttrRecord(const AttrRecord &) = delete;
    AttrRecord &operator=(const AttrRecord &) = delete;

    static constexpr uint32_t kUntouched = 0xDEADBEEF;
    static constexpr uint8_t kCountBefore = 0xEE;

    GpbMdlAttr &record() { return m_record; }
    void *get() { return &m_record; }
    const char *name(size_t index) const { return m_names[index]; }
    uint32_t type(size_t index) const { return m_types[index]; }

    size_t namesHeld() const
    {
        size_t held = 0;
        for (const char *name : m_names)
        {
            held += name == nullptr ? 0 : 1;
        }
        return held;
    }

    /** "NAME TYPE" for each counted entry. */
    std::vector<std::string> entries() const
    {
        std::vector<std::string> lines;
        for (size_t i = 0; i < m_record.ucCount; ++i)
        {
            lines.push_back(std::string(m_names[i]) + " " + std::to_string(m_types[i]));
        }
        return lines;
    }

private:
    GpbMdlAttr m_record{};
    std::array<char *, kRoom> m_names{};
    std::array<uint32_t, kRoom> m_types{};
};

class JsonAttrTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("attr", R"(syntax = "proto3"; package attr;
            message Top {
              message All {
                double ratio = 1; float load_factor = 2; int64 i64 = 3; uint64 u64 = 4; int32 i32 = 5;
                fixed64 f64 = 6; fixed32 f32 = 7; bool is_on = 8; string first_name = 9; bytes blob = 12;
                uint32 u32 = 13; sfixed32 sf32 = 15; sfixed64 sf64 = 16; sint32 s32 = 17; sint64 s64 = 18;
                enum State { State_NONE = 0; } State state_of = 14;
                message Sub { string deep = 1; } Sub sub_box = 19; repeated Sub sub_list = 20;
                repeated string name_list = 21;
                string own_name = 22 [json_name = "my_own_Name"];
              }
              All all = 1;
              message None { } None none = 2;
              message OnlyMessages { None none = 1; double d = 2; } OnlyMessages only = 3;
              repeated All list = 4;
              int32 leaf = 5;
              repeated int32 leaves = 6;
              message CaseA { message In { int32 in_case = 1; } In in_a = 1; } oneof way { CaseA case_a = 7; }
            })");
        m_compiler = open<OpenJsonCompiler>("attr");
    }

    void TearDown() override
    {
        m_compiler.reset();
        JsonFixture::TearDown();
    }

    OpenJsonCompiler &compiler() { return *m_compiler; }

    unsigned int ask(const JsonTree &tree, const std::string &path, AttrRecord &record)
    {
        return compiler().GetMdlAttr(context(), tree.root(), tree.at(path), record.get());
    }

private:
    std::unique_ptr<OpenJsonCompiler> m_compiler;
};

TEST_F(JsonAttrTest, TellsEachLeafWithItsCode)
{
    const JsonTree tree(R"({"top":{"all":{}}})");
    AttrRecord record;
    EXPECT_EQ(0u, ask(tree, "all", record));
    EXPECT_EQ(joinLines({"load-factor 54", "i64 7", "u64 8", "i32 7", "f64 8", "f32 8", "is-on 13", "first-name 25",
                         "blob 25", "u32 8", "sf32 7", "sf64 7", "s32 7", "s64 7", "state-of 25", "name-list 25",
                         "my_own_Name 25"}),
              joinLines(record.entries()));
    EXPECT_EQ(0x5A, record.record().ucReserved);
    EXPECT_EQ(17u, record.namesHeld());
    EXPECT_EQ("", log().take());
    EXPECT_EQ("all {\n}\n", compiler().GetEncodeDebugString());
}

TEST_F(JsonAttrTest, ConvertsTypesByTheTable)
{
    const std::vector<uint32_t> codes = {0, 0, 54, 7, 8, 7, 8, 8, 13, 25, 0, 0, 25, 8, 25, 7, 7, 7, 7, 0};
    for (unsigned int fieldType = 0; fieldType < codes.size(); ++fieldType)
    {
        uint32_t code = 0;
        EXPECT_EQ(codes[fieldType] == 0 ? 1u : 0u, OpenJsonCompiler::GPB_ConvertDataType(fieldType, code));
        EXPECT_EQ(codes[fieldType], code) << fieldType;
    }
}

TEST_F(JsonAttrTest, CountsNoneForAMessageWithoutLeaves)
{
    const JsonTree tree(R"({"top":{"none":{},"only":{}}})");
    for (const char *path : {"none", "only"})
    {
        AttrRecord record;
        EXPECT_EQ(0u, ask(tree, path, record));
        EXPECT_EQ(0, record.record().ucCount);
        EXPECT_EQ(AttrRecord::kUntouched, record.type(0));
    }
}

TEST_F(JsonAttrTest, TakesAListByItsArrayOrByAContainerInside)
{
    const JsonTree tree(R"({"top":{"list":[{"i32":1,"sub-box":{}},{"sub-list":[{"deep":"x"}]}]}})");
    AttrRecord list;
    EXPECT_EQ(0u, ask(tree, "list", list));
    EXPECT_EQ(17, list.record().ucCount);
    AttrRecord box;
    EXPECT_EQ(0u, ask(tree, "list/0/sub-box", box));
    EXPECT_EQ(joinLines({"deep 25"}), joinLines(box.entries()));
    AttrRecord inner;
    EXPECT_EQ(0u, ask(tree, "list/1/sub-list", inner));
    EXPECT_EQ(joinLines({"deep 25"}), joinLines(inner.entries()));
    EXPECT_EQ("", log().take());
}

TEST_F(JsonAttrTest, OpensTheCaseOfAContainer)
{
    const JsonTree tree(R"({"top":{"in-a":{}}})");
    AttrRecord record;
    EXPECT_EQ(0u, ask(tree, "in-a", record));
    EXPECT_EQ(joinLines({"in-case 7"}), joinLines(record.entries()));
}

TEST_F(JsonAttrTest, FailsItemsThatOpenNoMessage)
{
    const JsonTree tree(R"({"top":{"leaf":1,"nothing":{"x":1},"list":[{"i32":1}]}})");
    AttrRecord record;
    EXPECT_EQ(1u, ask(tree, "leaf", record));
    EXPECT_LOG(log(), "0: Gpb Compiler fill layer message Field [leaf] type is not message, it is 5.");
    EXPECT_EQ(1u, ask(tree, "nothing", record));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(1u, ask(tree, "nothing/x", record));
    EXPECT_LOG(log(), "0: Fail to push ancestors layer [x]", prepareLine(1));
    EXPECT_EQ(1u, ask(tree, "list/0", record)) << "a member of an array has no key";
    EXPECT_EQ("", log().take());
    EXPECT_EQ(AttrRecord::kCountBefore, record.record().ucCount);
    EXPECT_EQ(nullptr, compiler().pstMessage);
}

TEST_F(JsonAttrTest, FailsWithoutArguments)
{
    const JsonTree tree(R"({"top":{"all":{}}})");
    AttrRecord record;
    EXPECT_EQ(1u, compiler().GetMdlAttr(context(), nullptr, tree.at("all"), record.get()));
    EXPECT_EQ(1u, compiler().GetMdlAttr(context(), tree.root(), nullptr, record.get()));
    EXPECT_EQ(1u, compiler().GetMdlAttr(context(), tree.root(), tree.at("all"), nullptr));
    EXPECT_EQ("", log().take());
    record.record().puiType = nullptr;
    EXPECT_EQ(1u, ask(tree, "all", record));
    GpbMdlAttr withoutNames = {nullptr, nullptr, 0, 0};
    EXPECT_EQ(1u, compiler().GetMdlAttr(context(), tree.root(), tree.at("all"), &withoutNames));
}

TEST_F(JsonAttrTest, FailsAnUnknownRoot)
{
    const JsonTree tree(R"({"other":{"all":{}}})");
    AttrRecord record;
    EXPECT_EQ(1u, ask(tree, "all", record));
    EXPECT_LOG(log(), "2: Fail to find message type for path attr.Other.", prepareLine(1));
}

TEST_F(JsonAttrTest, AllocatesUnderTheHandleOfTheArgument)
{
    constexpr uint32_t kOtherModule = 0x77;
    LogRecorder otherLog;
    const GpbLibInitParam param = otherLog.initParam(kOtherModule);
    GpbLibContext *other = GPBLIB_Initial(&param);
    ASSERT_NE(nullptr, other);
    otherLog.clear();
    const JsonTree tree(R"({"top":{"list":[{"sub-box":{}}],"leaf":1}})");
    AttrRecord record;
    events().clear();
    EXPECT_EQ(0u, compiler().GetMdlAttr(other, tree.root(), tree.at("list/0/sub-box"), record.get()));
    const std::vector<PlatformEvent> allocations = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(1u, allocations.size());
    EXPECT_EQ(kOtherModule, allocations[0].moduleId);
    EXPECT_EQ("gpb_jsoncompiler:389", allocations[0].site());
    EXPECT_EQ(std::string("deep").size() + 1, allocations[0].size);
    EXPECT_EQ(1u, compiler().GetMdlAttr(other, tree.root(), tree.at("leaf"), record.get()));
    EXPECT_EQ("", otherLog.take()) << "log lines go to the compiler's own context";
    EXPECT_LOG(log(), "0: Gpb Compiler fill layer message Field [leaf] type is not message, it is 5.");
    GPBLIB_Uninitial(other);
}

TEST_F(JsonAttrTest, FreesAllNamesWhenOneCannotBeAllocated)
{
    const JsonTree tree(R"({"top":{"all":{}}})");
    for (size_t entry = 1; entry <= 17; ++entry)
    {
        SCOPED_TRACE(entry);
        AttrRecord record;
        events().clear();
        GpbHost_FailCall(GPB_HOST_MALLOC, entry);
        EXPECT_EQ(1u, ask(tree, "all", record));
        EXPECT_EQ(0u, record.namesHeld());
        EXPECT_EQ(AttrRecord::kCountBefore, record.record().ucCount);
        EXPECT_EQ(std::vector<std::string>(entry - 1, "gpb_jsoncompiler:407"), events().sites(GPB_HOST_EVENT_FREE));
        EXPECT_EQ("", log().take());
    }
}

TEST_F(JsonAttrTest, FreesAllNamesWhenOneCannotBeCopied)
{
    const JsonTree tree(R"({"top":{"all":{}}})");
    // Warms the lookups, so that all further copies are those of names and of the top container.
    AttrRecord first;
    ASSERT_EQ(0u, ask(tree, "all", first));
    const uint64_t copiesBefore = GpbHost_CallCount(GPB_HOST_STRCPY);
    AttrRecord second;
    ASSERT_EQ(0u, ask(tree, "all", second));
    const uint64_t ahead = GpbHost_CallCount(GPB_HOST_STRCPY) - copiesBefore - 17;
    for (size_t entry = 1; entry <= 17; ++entry)
    {
        SCOPED_TRACE(entry);
        AttrRecord record;
        events().clear();
        GpbHost_FailCall(GPB_HOST_STRCPY, ahead + entry);
        EXPECT_EQ(1u, ask(tree, "all", record));
        EXPECT_EQ(0u, record.namesHeld());
        std::vector<std::string> sites(entry, "gpb_jsoncompiler:407");
        sites.front() = "gpb_jsoncompiler:395";
        EXPECT_EQ(joinLines(sites), joinLines(events().sites(GPB_HOST_EVENT_FREE)));
    }
}

TEST_F(JsonAttrTest, KeepsTheResultOfTheEncodeBefore)
{
    const JsonTree tree(R"({"top":{"leaf":3,"all":{"i32":4}}})");
    EXPECT_EQ(0u, compiler().EncodeJson(tree.root(), tree.at("all")));
    for (int round = 0; round < 2; ++round)
    {
        AttrRecord record;
        EXPECT_EQ(0u, ask(tree, "all", record));
        EXPECT_EQ("all {\n}\n", compiler().GetEncodeDebugString());
        EXPECT_TRUE(judge().holds("attr.Top.All", takeResult(compiler(), 0).bytes, "i32:4"));
    }
    EXPECT_EQ(0u, compiler().EncodeJson(tree.root(), tree.root()));
    EXPECT_TRUE(judge().holds("attr.Top", takeResult(compiler(), 0).bytes, "leaf:3 all{i32:4}"));
}

using JsonAttrOddityTest = JsonAttrTest;

TEST_F(JsonAttrOddityTest, TheRootIsSearchedInsideItself)
{
    const JsonTree tree(R"({"top":{"all":{}}})");
    AttrRecord record;
    EXPECT_EQ(1u, compiler().GetMdlAttr(context(), tree.root(), tree.root(), record.get()));
    EXPECT_EQ("", log().take());
    addModule("nest", kNodeProto);
    const auto nested = open<OpenJsonCompiler>("nest");
    const JsonTree node(R"({"node":{}})");
    EXPECT_EQ(0u, nested->GetMdlAttr(context(), node.root(), node.root(), record.get()));
    EXPECT_EQ(joinLines({"leaf 7", "words 25"}), joinLines(record.entries()));
}

TEST_F(JsonAttrOddityTest, ALeafListStandsForTheMessageThatHoldsIt)
{
    const JsonTree tree(R"({"top":{"leaves":[1]}})");
    AttrRecord record;
    EXPECT_EQ(0u, ask(tree, "leaves", record));
    EXPECT_EQ(joinLines({"leaf 7", "leaves 7"}), joinLines(record.entries()));
}

/** A module whose message has that many leaves. */
std::string wideProto(int leaves)
{
    std::string fields;
    for (int i = 1; i <= leaves; ++i)
    {
        fields += " int32 leaf_" + std::to_string(i) + " = " + std::to_string(i) + ";";
    }
    return "syntax = \"proto3\"; package wide; message Top { message Sub {" + fields + " } Sub sub = 1; }";
}

TEST_F(JsonAttrTest, CountsUpTo255Leaves)
{
    addModule("wide", wideProto(255));
    const auto wide = open<OpenJsonCompiler>("wide");
    const JsonTree tree(R"({"top":{"sub":{}}})");
    AttrRecord record;
    EXPECT_EQ(0u, wide->GetMdlAttr(context(), tree.root(), tree.at("sub"), record.get()));
    EXPECT_EQ(255, record.record().ucCount);
    EXPECT_EQ(255u, record.namesHeld());
    EXPECT_STREQ("leaf-255", record.name(254));
    EXPECT_EQ(AttrRecord::kUntouched, record.type(255));
}

TEST_F(JsonAttrOddityTest, TheCountStartsOverAt256Leaves)
{
    addModule("wide", wideProto(256));
    const auto wide = open<OpenJsonCompiler>("wide");
    const JsonTree tree(R"({"top":{"sub":{}}})");
    AttrRecord record;
    EXPECT_EQ(0u, wide->GetMdlAttr(context(), tree.root(), tree.at("sub"), record.get()));
    EXPECT_EQ(0, record.record().ucCount);
    EXPECT_EQ(0u, record.namesHeld()) << "names that the count does not reach would never be freed";
}

TEST_F(JsonAttrOddityTest, TheRecordStartsOverAt257Leaves)
{
    addModule("wide", wideProto(258));
    const auto wide = open<OpenJsonCompiler>("wide");
    const JsonTree tree(R"({"top":{"sub":{}}})");
    AttrRecord record;
    EXPECT_EQ(0u, wide->GetMdlAttr(context(), tree.root(), tree.at("sub"), record.get()));
    EXPECT_EQ(joinLines({"leaf-257 7", "leaf-258 7"}), joinLines(record.entries()));
    EXPECT_EQ(2u, record.namesHeld());
    AttrRecord failing;
    GpbHost_FailCall(GPB_HOST_MALLOC, 258);
    EXPECT_EQ(1u, wide->GetMdlAttr(context(), tree.root(), tree.at("sub"), failing.get()));
    EXPECT_EQ(0u, failing.namesHeld());
}

} // namespace
} // namespace gpbtest
