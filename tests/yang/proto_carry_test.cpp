/** From a module and a document to the message: every value arrives, as libyang sees it. */
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "proto_fixture.h"

namespace
{

using gpbtest::Carried;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ProtoCarrying : public gpbtest::ProtoTest
{
protected:
    /** Carries a document both ways; returns the message, which has to be one. */
    std::string both(const std::string &content, std::size_t leaves)
    {
        const std::string xml = "<t xmlns=\"urn:m\">" + content + "</t>";
        const Carried xmlWay = fromXml(xml);
        EXPECT_THAT(xmlWay.differences, IsEmpty()) << xmlWay.text;
        EXPECT_EQ(xmlWay.leaves, leaves);
        const Carried jsonWay = fromJson(xml);
        EXPECT_THAT(jsonWay.differences, IsEmpty()) << jsonWay.text;
        EXPECT_EQ(jsonWay.text, xmlWay.text);
        return xmlWay.text;
    }
};

TEST_F(ProtoCarrying, LeavesOfAllTypes)
{
    proto(R"(container t {
          leaf i8 { type int8; } leaf i64 { type int64; } leaf u32 { type uint32; } leaf u64 { type uint64; }
          leaf d { type decimal64 { fraction-digits 2; } } leaf b { type boolean; } leaf e { type empty; }
          leaf bin { type binary; } leaf s { type string; } leaf ref { type leafref { path "../u32"; } }
          leaf any { type union { type uint8; type string; } }
        })");
    EXPECT_EQ(both("<i8>-128</i8><i64>-9223372036854775808</i64><u32>4294967295</u32><u64>18446744073709551615</u64>"
                   "<d>-1.25</d><b>false</b><e/><bin>AQID</bin><s>a &lt; b</s><ref>4294967295</ref><any>x</any>",
                   11),
              "i8: -128 i64: -9223372036854775808 u32: 4294967295 u64: 18446744073709551615 d: -1.25 b: false e: true "
              "bin: \"AQID\" s: \"a < b\" ref: 4294967295 any: \"x\"");
}

TEST_F(ProtoCarrying, ZeroValuesArePresent)
{
    proto("container t { leaf n { type uint8; } leaf b { type boolean; } leaf s { type enumeration { enum a; } } }");
    EXPECT_EQ(both("<n>0</n><b>false</b><s>a</s>", 3), "n: 0 b: false s: S_A");
}

TEST_F(ProtoCarrying, DecimalsKeepAllTheirDigitsAsTexts)
{
    proto("container t { leaf d { type decimal64 { fraction-digits 2; } } }", gpbyang::Decimals::String);
    EXPECT_EQ(both("<d>92233720368547758.07</d>", 1), "d: \"92233720368547758.07\"");
}

TEST_F(ProtoCarrying, EnumerationsAndBits)
{
    proto(R"Y(container t {
          leaf s { type enumeration { enum up-2 { value 7; } enum 10g { value -4; } enum "test/(x)" { value 0; } } }
          leaf-list many { type enumeration { enum a; enum b; } }
          leaf f { type bits { bit x.y; bit z { position 9; } bit last { position 12; } } }
        })Y");
    EXPECT_EQ(both("<s>10g</s><many>b</many><many>a</many><f>x.y last</f>", 5),
              "s: S_X_10G many: Many_B many: Many_A f: F_XX_Y f: F_LAST");
    EXPECT_EQ(both("<s>test/(x)</s><f>z</f>", 2), "s: S_TESTX_X_XX_ f: F_Z");
}

TEST_F(ProtoCarrying, EnumerationsThatAreTexts)
{
    proto(
        "container t { leaf a { type enumeration { enum up; enum UP; } } leaf b { type enumeration { enum \"1 g\"; } } "
        "leaf c { type bits { bit x; bit X; } } }");
    EXPECT_EQ(both("<a>UP</a><b>1 g</b><c>x X</c>", 3), "a: \"UP\" b: \"1 g\" c: \"x X\"");
}

TEST_F(ProtoCarrying, ContainersListsAndChoices)
{
    proto(R"(container t {
          container in-ner { leaf a { type string; } container ABC { leaf b { type string; } } }
          list l { key k; leaf k { type string; } list deep { key k; leaf k { type string; } } }
          choice c {
            case first { leaf x { type string; } container co { leaf y { type string; } } }
            case second { choice d { leaf z { type string; } list li { key k; leaf k { type string; } } } }
          }
        })");
    EXPECT_EQ(
        both("<in-ner><a>1</a><ABC><b>2</b></ABC></in-ner><l><k>3</k><deep><k>4</k></deep><deep><k>5</k></deep></l>"
             "<l><k>6</k><deep><k>7</k></deep></l><x>8</x><co><y>9</y></co>",
             9),
        "in_ner { a: \"1\" abc { b: \"2\" } } l { k: \"3\" deep { k: \"4\" } deep { k: \"5\" } } "
        "l { k: \"6\" deep { k: \"7\" } } c_first { x: \"8\" co { y: \"9\" } }");
    EXPECT_EQ(both("<li><k>1</k></li><li><k>2</k></li>", 2), "c_second { d_li { li { k: \"1\" } li { k: \"2\" } } }");
}

TEST_F(ProtoCarrying, ClashingNamesAreFoundByTheirDepth)
{
    proto(R"(container t {
          leaf Mode { type string; }
          choice mode { case on { leaf Duplex { type string; } choice duplex { leaf half { type empty; } } } }
          leaf c-a { type string; }
          choice c { case a { leaf foobar { type string; } leaf foo-bar { type string; } leaf c-b { type string; } } }
        })");
    EXPECT_EQ(
        both("<Mode>1</Mode><Duplex>2</Duplex><half/><c-a>4</c-a><foobar>5</foobar><foo-bar>6</foo-bar><c-b>7</c-b>",
             7),
        "mode2: \"1\" mode_on { duplex3: \"2\" duplex_half { half: true } } c_a: \"4\" "
        "c_a2 { foobar: \"5\" foo_bar3: \"6\" c_b: \"7\" }");
}

TEST_F(ProtoCarrying, LeafListsOfAnyTypeInXml)
{
    proto("container t { leaf-list s { type string; } leaf-list n { type int64; } leaf-list b { type bits { bit x; bit "
          "y; } } }");
    const Carried carried = fromXml("<t xmlns=\"urn:m\"><s>b</s><s>a</s><n>3</n><n>-1</n><b>x y</b><b>y</b></t>");
    EXPECT_THAT(carried.differences, IsEmpty());
    EXPECT_EQ(carried.leaves, 6u);
    EXPECT_EQ(carried.text, "s: \"b\" s: \"a\" n: 3 n: -1 b: \"x y\" b: \"y\"");
}

TEST_F(ProtoCarrying, NodesOfAugments)
{
    writeModule("z",
                "import m { prefix m; } identity it { base m:kind; } augment /m:t { leaf added { type m:kind-ref; } "
                "container more { leaf x { type string; } } }");
    m_augmenting = {"z"};
    proto("identity kind; typedef kind-ref { type identityref { base kind; } } container t { leaf own { type string; } "
          "}");
    const Carried carried =
        fromXml("<t xmlns=\"urn:m\"><own>1</own><added xmlns=\"urn:z\" xmlns:p=\"urn:z\">p:it</added>"
                "<more xmlns=\"urn:z\"><x>2</x></more></t>");
    EXPECT_THAT(carried.differences, IsEmpty());
    EXPECT_EQ(carried.text, "own: \"1\" added: \"p:it\" more { x: \"2\" }");
}

TEST_F(ProtoCarrying, ThirtyOneLayers)
{
    std::string body = "container t { ";
    std::string xml;
    for (int i = 2; i <= 31; ++i)
    {
        body += "container c" + std::to_string(i) + " { ";
        xml += "<c" + std::to_string(i) + ">";
    }
    proto(body + "leaf a { type string; } " + std::string(31, '}'));
    xml += "<a>deep</a>";
    for (int i = 31; i >= 2; --i)
    {
        xml += "</c" + std::to_string(i) + ">";
    }
    both(xml, 1);
}

TEST_F(ProtoCarrying, TheComparisonSeesWhatIsLost)
{
    proto("container t { leaf a.b { type string; } leaf-list s { type string; } leaf x { type string; } }");
    const std::string xml = "<t xmlns=\"urn:m\"><a.b>1</a.b><x>2</x></t>";
    EXPECT_THAT(fromXml(xml).differences, ElementsAre("a.b is not in the message"));
    EXPECT_THAT(fromJson("<t xmlns=\"urn:m\"><s>1</s></t>").differences, ElementsAre("s is not in the message"));
}

} // namespace
