/** Fields that no YANG module gives: maps, groups, extensions, closed enums in a choice. None may end the process. */
#include "compiler/compiler_fixture.h"

namespace
{

constexpr const char *kProto = R"(
syntax = "proto2";
package odd;
message Top {
  enum Kind { Kind_A = 1; }
  enum Other { Kind_B = 2; }
  message Sub { optional string v = 1; }
  map<string, Sub> table = 1;
  map<string, string> texts = 2;
  optional group Grp = 3 { optional string inner = 1; }
  optional string name = 4;
  oneof ch { Sub case_sub = 5; Kind kind = 6; }
  extensions 100 to 200;
}
extend Top { optional string extra = 100; optional Top.Sub extra_box = 101; }
)";

class OddFieldTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addModule("odd", kProto);
        open("odd");
    }

    void expectTop(const std::string &content, const std::string &textForm, const std::vector<std::string> &lines = {})
    {
        expectEncodes("<top>" + content + "</top>", "odd.Top", textForm, lines);
    }
};

TEST_F(OddFieldTest, MapIsAListOfItsEntries)
{
    expectTop("<table><key>a</key><value><v>1</v></value></table><table><key>b</key></table><name>n</name>",
              "table { key: 'a' value { v: '1' } } table { key: 'b' value {} } name: 'n'");
    expectTop("<texts><key>a</key><value>1</value></texts><texts><key>b</key><value>2</value></texts>",
              "texts { key: 'a' value: '1' } texts { key: 'b' value: '2' }");
    expectTop("<texts>\n</texts>", "texts { key: '' value: '' }");
}

TEST_F(OddFieldTest, MapIsNoLeaf)
{
    expectTop("<texts>t</texts><name>n</name>", "name: 'n'",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [texts] from [odd.Top]."});
    expectTop("<texts/><name>n</name>", "name: 'n'",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 11."});
}

TEST_F(OddFieldTest, MapEntryAsTheRoot)
{
    expectFails("<texts-entry><key>a</key></texts-entry>", 3,
                {"2: Fail to find message type for path odd.TextsEntry."});
}

TEST_F(OddFieldTest, GroupIsNoContainerAndNoLeaf)
{
    expectTop("<grp><inner>1</inner></grp><name>n</name>", "name: 'n'",
              {"0: [GpbXmlCompiler][AddLayerToUpperLayer]Field [grp] type is not message, it is 10."});
    expectTop("<grp>\n</grp><name>n</name>", "name: 'n'",
              {"0: [GpbXmlCompiler][AddLayerToUpperLayer]Field [grp] type is not message, it is 10."});
    expectTop("<grp>t</grp><name>n</name>", "name: 'n'",
              {"0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [grp] type 10."});
    expectTop("<grp/><name>n</name>", "name: 'n'", {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 10."});
}

TEST_F(OddFieldTest, ExtensionIsNotFound)
{
    expectTop("<extra>t</extra><extra-box><v>1</v></extra-box><name>n</name>", "name: 'n'",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [extra] from [odd.Top].",
               "0: Can't Find field [extra-box]"});
}

using OddFieldOddities = OddFieldTest;

// A closed enum cannot hold a sibling's number: it becomes an unknown field, and the choice does not switch.
TEST_F(OddFieldOddities, ForeignNumberInAChoiceKeepsTheCase)
{
    const gpbtest::Encoded result = encode("<top><v>1</v><kind>b</kind><v>2</v></top>");
    EXPECT_EQ(0u, result.error);
    EXPECT_EQ(std::string("\x2a\x03\x0a\x01\x32\x30\x02", 7), result.bytes);
    expectTop("<v>1</v><kind>a</kind>", "kind: Kind_A");
    expectTop("<v>1</v><kind>a</kind><v>2</v>", "case_sub { v: '2' }");
}

} // namespace
