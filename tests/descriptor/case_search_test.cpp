/** Search of the oneof cases for a field, and the leaf search that prefers a case's leaf to a container. */
#include <string>

#include "descriptor/descriptor_fixture.h"

namespace
{

constexpr uint32_t kUsable = 255;
constexpr size_t kMaxName = 127;

class CaseSearch : public gpbtest::DescriptorFixture
{
protected:
    /** A message Top with that many case fields in all, of which the last one leads to a field "wanted". */
    static std::string manyCases(uint32_t count)
    {
        std::string text = "message Top { message C { string other = 1; } message Last { string wanted = 1; } "
                           "oneof choice { ";
        for (uint32_t i = 1; i < count; ++i)
        {
            text += "C c" + std::to_string(i) + " = " + std::to_string(i) + "; ";
        }
        return text + "Last last = " + std::to_string(count) + "; } }";
    }
};

class CaseSearchDeliberateOddities : public CaseSearch
{
};

class LeafByNodeName : public gpbtest::DescriptorFixture
{
};

class LeafByNodeNameDeliberateOddities : public gpbtest::DescriptorFixture
{
};

TEST_F(CaseSearch, TakesTheFirstCaseInCollectionOrder)
{
    addProto("message Top {"
             "  message A { oneof inner { Deep deep = 1; } }"
             "  message Deep { string both = 1; }"
             "  message B { string both = 1; string only = 2; }"
             "  oneof choice { string plain = 1; A a = 2; B b = 3; }"
             "}");
    EXPECT_EQ("Top.Deep.both by Top.A.deep", findInCases("Top", "both")) << "depth first; the nearest case field";
    EXPECT_EQ("Top.B.only by Top.b", findInCases("Top", "only"));
    EXPECT_EQ("(null)", findInCases("Top", "none"));
    EXPECT_EQ("(null)", findInCases("Top", "plain")) << "the cases' own names are not searched";
}

TEST_F(CaseSearch, SearchesContainersOfACaseToo)
{
    addProto("message Top {"
             "  message Case { message Box { string inside = 1; } Box box = 1; }"
             "  oneof choice { Case a = 1; }"
             "}");
    EXPECT_EQ("Top.Case.box by Top.a", findInCases("Top", "box"));
    EXPECT_EQ("Top.Case.Box.inside by Top.Case.box", findInCases("Top", "inside"));
}

TEST_F(CaseSearch, TakesTheNameAsGivenAgainstLowerCase)
{
    addProto("message Top { message C { string Some_Name = 1; } oneof choice { C a = 1; } }");
    EXPECT_EQ("Top.C.Some_Name by Top.a", findInCases("Top", "some_name"));
    EXPECT_EQ("(null)", findInCases("Top", "Some_Name"));
    EXPECT_EQ("(null)", findInCases("Top", "some-name"));
    EXPECT_EQ("Top.C.Some_Name by Top.a", findNode("Top", "Some-Name"));
}

TEST_F(CaseSearch, AddsTheLayerPlusTheNestingStepsAsSuffix)
{
    addProto("message Top {"
             "  message A { string name2 = 1; oneof inner { B b = 2; }"
             "    message B { string deep3 = 1; } }"
             "  oneof choice { A a = 1; }"
             "}");
    EXPECT_EQ("Top.A.name2 by Top.a", findInCases("Top", "name", 1));
    EXPECT_EQ("Top.A.B.deep3 by Top.A.b", findInCases("Top", "deep", 1));
    EXPECT_EQ("(null)", findInCases("Top", "deep", 2)) << "deep4 would be the name";
    EXPECT_EQ("(null)", findInCases("Top", "name", 3));
    EXPECT_EQ("Top.A.name2 by Top.a", findNode("Top", "Name"));
}

TEST_F(CaseSearch, TriesBothNamesInACaseBeforeTheNextCase)
{
    addProto("message Top {"
             "  message A { string name2 = 1; }"
             "  message B { string name = 1; }"
             "  oneof choice { A a = 1; B b = 2; }"
             "}");
    EXPECT_EQ("Top.A.name2 by Top.a", findInCases("Top", "name", 1));
    EXPECT_EQ("Top.B.name by Top.b", findInCases("Top", "name", 2));
}

TEST_F(CaseSearch, WritesTheCaseFieldOnlyWhenItFinds)
{
    addProto("message Top { message C { string there = 1; } oneof choice { C a = 1; } }");
    const Field *const before = message("Top.C")->field(0);
    const Field *caseField = before;
    EXPECT_EQ(nullptr, GPB_GetFieldDescByOneof("none", message("Top"), 1, &caseField));
    EXPECT_EQ(before, caseField);
    EXPECT_NE(nullptr, GPB_GetFieldDescByOneof("there", message("Top"), 1, nullptr));
}

TEST_F(CaseSearch, Uses255CaseFields)
{
    addProto(manyCases(kUsable));
    EXPECT_EQ("Top.Last.wanted by Top.last", findInCases("Top", "wanted"));
    EXPECT_EQ("Top.Last.wanted by Top.last", findNode("Top", "wanted"));
}

TEST_F(CaseSearch, FailsAltogetherAt256CaseFields)
{
    addProto(manyCases(kUsable + 1));
    EXPECT_EQ("(null)", findInCases("Top", "wanted"));
    EXPECT_EQ("(null)", findInCases("Top", "other")) << "even for a field of the first case";
    EXPECT_EQ("(null)", findNode("Top", "other"));
    EXPECT_EQ("Top.c1", findNode("Top", "c1"));
}

TEST_F(CaseSearch, CountsContainersOfCasesAmongThe256)
{
    std::string boxes;
    for (uint32_t i = 1; i < kUsable; ++i)
    {
        boxes += "Box box" + std::to_string(i) + " = " + std::to_string(i) + "; ";
    }
    addProto("message Box { string b = 1; }"
             "message Fits { message Case { " +
             boxes +
             "string wanted = 1000; } oneof choice { Case a = 1; } }"
             "message Full { message Case { " +
             boxes + "Box last = 999; string wanted = 1000; } oneof choice { Case a = 1; } }");
    EXPECT_EQ("Fits.Case.wanted by Fits.a", findInCases("Fits", "wanted"));
    EXPECT_EQ("(null)", findInCases("Full", "wanted"));
}

TEST_F(CaseSearch, SuffixedNameInACaseHas127CharactersAtMost)
{
    const std::string name(kMaxName - 1, 'n');
    addProto("message Top { message C { string " + name + "2 = 1; string " + name +
             "10 = 2; } oneof choice { C a = 1; } }");
    EXPECT_EQ("Top.C." + name + "2 by Top.a", findInCases("Top", name, 1));
    EXPECT_EQ("(null)", findInCases("Top", name, 9));
}

TEST_F(CaseSearchDeliberateOddities, CaseMessageFromElsewhereEndsTheSearchAfterItsOwnNames)
{
    addProto("message Foreign { string far = 1; string suffixed2 = 2; string suffixed1 = 3; }"
             "message Top {"
             "  message Early { string early = 1; }"
             "  message Late { string late = 1; string far = 2; }"
             "  oneof choice { Early e = 1; Foreign f = 2; Late l = 3; }"
             "}");
    EXPECT_EQ("Top.Early.early by Top.e", findInCases("Top", "early"));
    EXPECT_EQ("Foreign.far by Top.f", findInCases("Top", "far")) << "its exact names are tried first";
    EXPECT_EQ("(null)", findInCases("Top", "late")) << "the cases behind it are not";
    EXPECT_EQ("(null)", findInCases("Top", "suffixed")) << "nor its names with a suffix";
}

TEST_F(CaseSearchDeliberateOddities, ContainerFromElsewhereInACaseEndsTheSearchToo)
{
    addProto("message Foreign { string far = 1; }"
             "message Top {"
             "  message A { string a = 1; Foreign foreign = 2; }"
             "  message B { string b = 1; }"
             "  oneof choice { A case_a = 1; B case_b = 2; }"
             "}");
    EXPECT_EQ("Top.A.a by Top.case_a", findInCases("Top", "a"));
    EXPECT_EQ("Foreign.far by Top.A.foreign", findInCases("Top", "far"));
    EXPECT_EQ("(null)", findInCases("Top", "b"));
}

TEST_F(CaseSearchDeliberateOddities, LayerBelowOneEndsTheSearchToo)
{
    addProto("message Top {"
             "  message A { string a = 1; string name1 = 2; }"
             "  message B { string b = 1; }"
             "  oneof choice { A case_a = 1; B case_b = 2; }"
             "}");
    EXPECT_EQ("Top.B.b by Top.case_b", findInCases("Top", "b", 0));
    EXPECT_EQ("Top.A.name1 by Top.case_a", findInCases("Top", "name", 0));
    EXPECT_EQ("(null)", findInCases("Top", "b", -1));
    EXPECT_EQ("Top.A.a by Top.case_a", findInCases("Top", "a", -1));
}

TEST_F(CaseSearchDeliberateOddities, MessageThatIsItsOwnCaseFillsTheCollection)
{
    addProto("message Top { string leaf = 1; oneof choice { Top again = 2; Other other = 3; }"
             "  message Other { string there = 1; } }");
    EXPECT_EQ("Top.leaf", findNode("Top", "leaf"));
    EXPECT_EQ("(null)", findNode("Top", "there"));
}

TEST_F(LeafByNodeName, IsFoundWhereTheNodeIs)
{
    addProto("message Top {"
             "  string leaf = 1; repeated int32 list = 2; string name1 = 3; E kind = 4; enum E { E_A = 0; }"
             "  message C { string there = 1; } oneof choice { C a = 5; }"
             "}");
    EXPECT_EQ("Top.leaf", findLeaf("Top", "leaf"));
    EXPECT_EQ("Top.list", findLeaf("Top", "List"));
    EXPECT_EQ("Top.kind", findLeaf("Top", "kind"));
    EXPECT_EQ("Top.name1", findLeaf("Top", "name"));
    EXPECT_EQ("Top.C.there by Top.a", findLeaf("Top", "there"));
    EXPECT_EQ("(null)", findLeaf("Top", "none"));
}

TEST_F(LeafByNodeName, InACaseWinsOverAContainer)
{
    addProto("message Top {"
             "  message Box { string s = 1; } Box both_names = 1; Box only_box = 2;"
             "  message C { string both_names = 1; string suffixed2 = 2; } Box suffixed = 4;"
             "  oneof choice { C a = 3; }"
             "}");
    EXPECT_EQ("Top.C.both_names by Top.a", findLeaf("Top", "Both-Names"));
    EXPECT_EQ("Top.C.suffixed2 by Top.a", findLeaf("Top", "suffixed"));
    EXPECT_EQ("(null)", findLeaf("Top", "only-box")) << "a container of that name is no leaf";
    EXPECT_EQ("(null)", findLeaf("Top", "a"));
    EXPECT_EQ("Top.both_names", findNode("Top", "both-names"));
}

TEST_F(LeafByNodeNameDeliberateOddities, MayBeAContainerThatTheCaseSearchFinds)
{
    addProto("message Top {"
             "  message Box { string s = 1; } Box both = 1;"
             "  message C { Box both = 1; Box only = 2; }"
             "  oneof choice { C a = 2; }"
             "}");
    EXPECT_EQ("Top.C.both by Top.a", findLeaf("Top", "both"));
    EXPECT_EQ("Top.C.only by Top.a", findLeaf("Top", "only"));
}

TEST_F(LeafByNodeNameDeliberateOddities, GroupCountsAsALeaf)
{
    addProto2("message Top { optional group Box = 1 { optional string s = 2; } }");
    EXPECT_EQ("Top.box", findLeaf("Top", "box"));
}

TEST_F(LeafByNodeNameDeliberateOddities, NameThatCannotBeConvertedTheSecondTimeFindsNothing)
{
    addProto("message Top { message Box { string s = 1; } Box both = 1; message C { string both = 1; }"
             "  oneof choice { C a = 2; } }");
    EXPECT_EQ("Top.C.both by Top.a", findLeaf("Top", "both"));
    GpbHost_FailCall(GPB_HOST_STRCPY, 2);
    EXPECT_EQ("(null)", findLeaf("Top", "both"));
}

} // namespace
