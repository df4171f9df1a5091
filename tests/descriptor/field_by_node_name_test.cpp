/** Fields by YANG node name: spelling, layer suffix, and the order of the searches. */
#include <string>

#include "descriptor/descriptor_fixture.h"

namespace
{

constexpr size_t kMaxName = 127;

class FieldByNodeName : public gpbtest::DescriptorFixture
{
protected:
    /** The field whose lower-case name is the name with the layer behind it. */
    std::string findRepeated(const std::string &in, const std::string &name, int32_t layer) const
    {
        return gpbtest::nameOf(GPB_GetDescFieldByRepeateName(message(in), name.c_str(), layer));
    }
};

TEST_F(FieldByNodeName, IgnoresCaseAndTakesDashForUnderline)
{
    addProto("message Top { string foo_bar = 1; string FooBaz = 2; }");
    EXPECT_EQ("Top.foo_bar", findNode("Top", "foo-bar"));
    EXPECT_EQ("Top.foo_bar", findNode("Top", "Foo-Bar"));
    EXPECT_EQ("Top.foo_bar", findNode("Top", "FOO_BAR"));
    EXPECT_EQ("Top.FooBaz", findNode("Top", "foobaz")) << "the field's name is taken in lower case";
    EXPECT_EQ("(null)", findNode("Top", "foo.bar"));
    EXPECT_EQ("(null)", findNode("Top", "foobar"));
    EXPECT_EQ("(null)", findNode("Top", ""));
}

TEST_F(FieldByNodeName, TriesTheNameWithTheLayerBehindIt)
{
    addProto("message Top { string name2 = 1; string name12 = 2; string both = 3; string both2 = 4; }");
    EXPECT_EQ("Top.name2", findNode("Top", "name", 2));
    EXPECT_EQ("Top.name12", findNode("Top", "name", 12));
    EXPECT_EQ("Top.name2", findNode("Top", "Name", 2));
    EXPECT_EQ("(null)", findNode("Top", "name", 1));
    EXPECT_EQ("(null)", findNode("Top", "name", -2)) << "the sign is part of the suffix";
    EXPECT_EQ("Top.both", findNode("Top", "both", 2)) << "the bare name comes first";
}

TEST_F(FieldByNodeName, PrefersTheMessageItselfToItsCases)
{
    addProto("message Top {"
             "  string here = 1;"
             "  string suffixed1 = 2;"
             "  message Case { string here = 1; string suffixed = 2; string there = 3; }"
             "  oneof choice { Case case_a = 3; }"
             "}");
    EXPECT_EQ("Top.here", findNode("Top", "here"));
    EXPECT_EQ("Top.suffixed1", findNode("Top", "suffixed"));
    EXPECT_EQ("Top.Case.there by Top.case_a", findNode("Top", "there"));
    EXPECT_EQ("Top.Case.suffixed by Top.case_a", findNode("Top", "suffixed", 3)) << "another layer, no such suffix";
}

TEST_F(FieldByNodeName, LeavesTheCaseFieldAloneUnlessACaseHoldsTheField)
{
    addProto("message Top { string here = 1; message Case { string there = 1; } oneof choice { Case case_a = 2; } }");
    const Field *const before = message("Top")->FindFieldByName("here");
    const Field *caseField = before;
    EXPECT_NE(nullptr, GPB_FindFieldDescByNodeName(message("Top"), "here", 1, &caseField));
    EXPECT_EQ(before, caseField);
    EXPECT_EQ(nullptr, GPB_FindFieldDescByNodeName(message("Top"), "nowhere", 1, &caseField));
    EXPECT_EQ(before, caseField);
    EXPECT_NE(nullptr, GPB_FindFieldDescByNodeName(message("Top"), "there", 1, &caseField));
    EXPECT_EQ("Top.case_a", gpbtest::nameOf(caseField));
    EXPECT_EQ("Top.Case.there", gpbtest::nameOf(GPB_FindFieldDescByNodeName(message("Top"), "there", 1, nullptr)));
}

TEST_F(FieldByNodeName, FindsTheCaseFieldsThemselves)
{
    addProto("message Top { message Case { string there = 1; } oneof choice { Case case_a = 1; string plain = 2; } }");
    EXPECT_EQ("Top.case_a", findNode("Top", "case-a"));
    EXPECT_EQ("Top.plain", findNode("Top", "plain")) << "a case that is a single leaf";
}

TEST_F(FieldByNodeName, Of127CharactersIsFoundAndOneOf128IsNot)
{
    const std::string longest(kMaxName, 'n');
    addProto("message Top { string " + longest + " = 1; string " + longest + "n = 2; string a = 3; }");
    EXPECT_EQ("Top." + longest, findNode("Top", longest));
    EXPECT_EQ("(null)", findNode("Top", longest + "n"));
    EXPECT_EQ("(null)", findNode("Top", longest + "nn"));
    EXPECT_EQ("(null)", findNode("Top", std::string(100000, 'a')));
}

TEST_F(FieldByNodeName, SuffixedNameHas127CharactersAtMost)
{
    const std::string name(kMaxName - 2, 'n');
    addProto("message Top { string " + name + "10 = 1; string " + name + "100 = 2; }");
    EXPECT_EQ("Top." + name + "10", findNode("Top", name, 10));
    EXPECT_EQ("(null)", findNode("Top", name, 100));
    EXPECT_EQ("Top." + name + "10", findRepeated("Top", name, 10));
    EXPECT_EQ("(null)", findRepeated("Top", name, 100));
}

TEST_F(FieldByNodeName, WithSuffixTakesTheNameAsGiven)
{
    addProto("message Top { string foo_bar2 = 1; string plain = 2; }");
    EXPECT_EQ("Top.foo_bar2", findRepeated("Top", "foo_bar", 2));
    EXPECT_EQ("(null)", findRepeated("Top", "foo-bar", 2));
    EXPECT_EQ("(null)", findRepeated("Top", "Foo_Bar", 2));
    EXPECT_EQ("(null)", findRepeated("Top", "plain", 2));
    EXPECT_EQ("(null)", findRepeated("Top", std::string(kMaxName + 1, 'n'), 2));
}

TEST_F(FieldByNodeName, WithSuffixFindsNothingWhenTheCopyOrTheNumberFails)
{
    addProto("message Top { string name2 = 1; }");
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ("(null)", findRepeated("Top", "name", 2));
    GpbHost_FailCall(GPB_HOST_SPRINTF, 1);
    EXPECT_EQ("(null)", findRepeated("Top", "name", 2));
    EXPECT_EQ("Top.name2", findRepeated("Top", "name", 2));
}

TEST_F(FieldByNodeName, IsEmptyWhenItsConversionFails)
{
    addProto("message Top { string name = 1; }");
    GpbHost_FailCall(GPB_HOST_STRCPY, 1);
    EXPECT_EQ("(null)", findNode("Top", "name"));
    EXPECT_EQ("Top.name", findNode("Top", "name"));
}

TEST_F(FieldByNodeName, AllocatesAndAssertsNothing)
{
    addProto("message Top { string name = 1; message C { string x = 1; } oneof o { C c = 2; } }");
    findNode("Top", "name");
    findNode("Top", "x");
    findLeaf("Top", "none");
    EXPECT_EQ("", gpbtest::joinLines(events().texts()));
}

TEST_F(FieldByNodeName, NullArgumentsFindNothing)
{
    addProto("message Top { string name1 = 1; }");
    const Message *const top = message("Top");
    const Field *caseField = nullptr;
    EXPECT_EQ(nullptr, GPB_FindFieldDescByNodeName(nullptr, "name", 1, &caseField));
    EXPECT_EQ(nullptr, GPB_FindFieldDescByNodeName(top, nullptr, 1, &caseField));
    EXPECT_EQ(nullptr, GPB_GetLeafFieldDescByNodeName(nullptr, top, 1, &caseField));
    EXPECT_EQ(nullptr, GPB_GetLeafFieldDescByNodeName("name", nullptr, 1, &caseField));
    EXPECT_EQ(nullptr, GPB_GetDescFieldByRepeateName(nullptr, "name", 1));
    EXPECT_EQ(nullptr, GPB_GetDescFieldByRepeateName(top, nullptr, 1));
    EXPECT_EQ(nullptr, GPB_GetFieldDescByOneof(nullptr, top, 1, &caseField));
    EXPECT_EQ(nullptr, GPB_GetFieldDescByOneof("name", nullptr, 1, &caseField));
    EXPECT_EQ(nullptr, caseField);
    EXPECT_NE(nullptr, GPB_FindFieldDescByNodeName(top, "name", 1, nullptr));
    EXPECT_NE(nullptr, GPB_GetLeafFieldDescByNodeName("name", top, 1, nullptr));
}

} // namespace
