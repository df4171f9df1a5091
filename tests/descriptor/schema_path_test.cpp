/** Fields by schema path. */
#include <string>

#include "descriptor/descriptor_fixture.h"

namespace
{

constexpr size_t kMaxPath = 511;
constexpr char kAssertFile[] = "gpb_module_adapt";

class SchemaPath : public gpbtest::DescriptorFixture
{
protected:
    /** The field of a leaf in the file that holds the message Top. */
    std::string find(const std::string &path, const std::string &leaf) const
    {
        return gpbtest::nameOf(
            Gpb_ModuleAdapt_GetFieldHandle(nullptr, message("Top")->file(), path.c_str(), leaf.c_str()));
    }

    /** Expects exactly one assertion of the unit. */
    void expectAssert()
    {
        const std::vector<std::string> asserts = takeAsserts();
        ASSERT_EQ(1u, asserts.size());
        EXPECT_EQ(kAssertFile, asserts[0].substr(0, asserts[0].find(':')));
    }
};

TEST_F(SchemaPath, LeadsThroughTheFieldsToTheLeaf)
{
    addProto("message Top { string leaf = 1; Child child = 2; repeated Child children_list = 3;"
             "  message Child { string x_y = 1; Grand grand = 2; message Grand { int32 z = 1; } } }");
    EXPECT_EQ("Top.leaf", find("top", "leaf"));
    EXPECT_EQ("Top.Child.x_y", find("top/child", "x-y"));
    EXPECT_EQ("Top.Child.x_y", find("a:top/a:child", "x-y"));
    EXPECT_EQ("Top.Child.x_y", find("a:b:top/c:child", "x_y"));
    EXPECT_EQ("Top.Child.Grand.z", find("top/child/grand", "z"));
    EXPECT_EQ("Top.Child.Grand.z", find("top/children-list/grand", "z"));
    EXPECT_EQ("Top.child", find("top", "child")) << "what the leaf name names may be a container";
    EXPECT_EQ("", takeAssertText());
}

TEST_F(SchemaPath, StartsWithATopLevelContainerInCamelCase)
{
    addProto("package some.where; message Ipv4Address2 { string s = 1; } message MyTop_ { string s = 1; }"
             "message A1B { string s = 1; }");
    const google::protobuf::FileDescriptor *const file = message("some.where.A1B")->file();
    const auto find = [file](const char *path)
    { return gpbtest::nameOf(Gpb_ModuleAdapt_GetFieldHandle(nullptr, file, path, "s")); };
    EXPECT_EQ("some.where.Ipv4Address2.s", find("ipv4-address2"));
    EXPECT_EQ("some.where.Ipv4Address2.s", find("Ipv4_address-2"));
    EXPECT_EQ("some.where.MyTop_.s", find("mod:my-top-"));
    EXPECT_EQ("some.where.A1B.s", find("a1b"));
    EXPECT_EQ("(null)", find("ipv4Address2x"));
    EXPECT_EQ("(null)", find("some.where.A1B"));
}

TEST_F(SchemaPath, TakesMiddleSegmentsAndLeafExactly)
{
    addProto("message Top { Child child = 1; Child Upper = 2; Child name2 = 3; message Child { string Leaf = 1; } }");
    EXPECT_EQ("Top.Child.Leaf", find("top/child", "Leaf"));
    EXPECT_EQ("(null)", find("top/child", "leaf"));
    EXPECT_EQ("(null)", find("top/Child", "Leaf"));
    EXPECT_EQ("Top.Child.Leaf", find("top/Upper", "Leaf"));
    EXPECT_EQ("(null)", find("top/upper", "Leaf"));
    EXPECT_EQ("(null)", find("top/name", "Leaf")) << "no layer is added";
    EXPECT_EQ("Top.Child.Leaf", find("top/name2", "Leaf"));
    EXPECT_EQ("(null)", find("top/child", "a:Leaf")) << "only the path loses its prefixes";
}

TEST_F(SchemaPath, DoesNotEnterCases)
{
    addProto("message Top { message Case { string s = 1; } oneof choice { Case case_a = 1; } }");
    EXPECT_EQ("(null)", find("top", "s"));
    EXPECT_EQ("Top.Case.s", find("top/case-a", "s"));
}

TEST_F(SchemaPath, FindsNothingWhereASegmentIsNoMessage)
{
    addProto("message Top { string text = 1; E kind = 2; enum E { E_A = 0; } Child child = 3;"
             "  message Child { string s = 1; } }");
    EXPECT_EQ("(null)", find("top/text", "s"));
    EXPECT_EQ("(null)", find("top/kind", "s"));
    EXPECT_EQ("(null)", find("top/none", "s"));
    EXPECT_EQ("(null)", find("none/child", "s"));
    EXPECT_EQ("(null)", find("top/child", "none"));
    EXPECT_EQ("(null)", find("top/child", ""));
}

TEST_F(SchemaPath, FindsNothingWithSlashesInTheWrongPlace)
{
    addProto("message Top { Child child = 1; message Child { string s = 1; } }");
    EXPECT_EQ("(null)", find("/top/child", "s"));
    EXPECT_EQ("(null)", find("/", "s"));
    EXPECT_EQ("(null)", find("top/child/", "s"));
    EXPECT_EQ("(null)", find("top//child", "s"));
    EXPECT_EQ("Top.Child.s", find("top", "child/s")) << "a leaf name may go on with the path";
}

TEST_F(SchemaPath, OfPrefixesOnlyFindsNothing)
{
    addProto("message Top { string s = 1; }");
    EXPECT_EQ("(null)", find("top:", "s"));
    EXPECT_EQ("(null)", find(":", "s"));
    EXPECT_EQ("Top.s", find(":top", "s"));
}

TEST_F(SchemaPath, Of511CharactersWithItsLeafIsWhole)
{
    const std::string first(250, 'f');
    const std::string second(200, 's');
    const std::string path = "top/" + first + "/" + second;
    const std::string leaf(kMaxPath - path.size() - 1, 'l');
    addProto("message Top { First " + first + " = 1; } message First { Second " + second +
             " = 1; } message Second { string " + leaf + " = 1; string " + leaf + "l = 2; string x = 3; }");
    EXPECT_EQ("Second." + leaf, find(path, leaf));
    EXPECT_EQ("", takeAssertText());

    // One more is asserted, and the leaf's name is cut.
    EXPECT_EQ("Second." + leaf, find(path, leaf + "l"));
    expectAssert();
    EXPECT_EQ("(null)", find(path, std::string(kMaxPath, 'x')));
    expectAssert();
}

TEST_F(SchemaPath, IsCutAt511CharactersBeforeTheLeafIsAdded)
{
    addProto("message Top { string s = 1; }");
    EXPECT_EQ("(null)", find("top/" + std::string(kMaxPath, 'x'), "s"));
    expectAssert();
    EXPECT_EQ("Top.s", find(std::string(kMaxPath - 5, 'p') + ":top", "s")) << "the prefix fits and is dropped";
    EXPECT_EQ("(null)", find(std::string(kMaxPath, 'p') + ":top", "s")) << "the prefix fills the room";
    expectAssert();
}

TEST_F(SchemaPath, IsLeftEmptyWhenFormattingFails)
{
    addProto("message Top { string s = 1; }");
    GpbHost_FailCall(GPB_HOST_SNPRINTF, 1);
    EXPECT_EQ("(null)", find("top", "s"));
    expectAssert();
}

TEST_F(SchemaPath, NullOrEmptyArgumentsFindNothing)
{
    addProto("message Top { string s = 1; }");
    const google::protobuf::FileDescriptor *const file = message("Top")->file();
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFieldHandle(nullptr, nullptr, "top", "s"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFieldHandle(nullptr, file, nullptr, "s"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFieldHandle(nullptr, file, "", "s"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetFieldHandle(nullptr, file, "top", nullptr));
    EXPECT_EQ("", takeAssertText());
}

TEST_F(SchemaPath, MessageOfAFieldIsFoundByItsExactName)
{
    addProto2("message Top { optional Child child = 1; optional string text = 2; repeated Child list = 3;"
              "  optional E kind = 4; enum E { E_A = 0; } optional group Box = 5 { optional string s = 1; }"
              "  message Child { optional string s = 1; } }");
    const Message *const top = message("Top");
    EXPECT_EQ("Top.Child", gpbtest::nameOf(Gpb_ModuleAdapt_GetMessageDescOfField_(top, "child")));
    EXPECT_EQ("Top.Child", gpbtest::nameOf(Gpb_ModuleAdapt_GetMessageDescOfField_(top, "list")));
    EXPECT_EQ("Top.Box", gpbtest::nameOf(Gpb_ModuleAdapt_GetMessageDescOfField_(top, "box")));
    for (const char *const none : {"Child", "text", "kind", "none", ""})
    {
        EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetMessageDescOfField_(top, none)) << none;
    }
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetMessageDescOfField_(nullptr, "child"));
    EXPECT_EQ(nullptr, Gpb_ModuleAdapt_GetMessageDescOfField_(top, nullptr));
}

} // namespace
