/** Choices: the layers of a case, and what the paths leave that do not take them back. */
#include "compiler/compiler_fixture.h"

namespace
{

class ChoiceTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("choice");
        open("choice");
    }

    void expectTop(const std::string &content, const std::string &textForm, const std::vector<std::string> &lines = {})
    {
        expectEncodes("<top>" + content + "</top>", "choice.Top", textForm, lines);
    }
};

TEST_F(ChoiceTest, LeavesAndContainersOfACase)
{
    expectTop("<a-leaf>1</a-leaf>", "case_a { a_leaf: '1' }");
    expectTop("<a-flag/>", "case_a { a_flag: true }");
    expectTop("<a-box><inside>1</inside></a-box>", "case_a { a_box { inside: '1' } }");
    expectTop("<a-box>\n</a-box>", "case_a { a_box {} }");
    expectTop(
        "<a-leaf>1</a-leaf><a-flag/><a-box><inside>2</inside></a-box><a-list><inside>3</inside></a-list><a-list>"
        "<inside>4</inside></a-list>",
        "case_a { a_leaf: '1' a_flag: true a_box { inside: '2' } a_list { inside: '3' } a_list { inside: '4' } }");
}

TEST_F(ChoiceTest, CaseInACase)
{
    expectTop("<deep>1</deep><deep-flag/><a-leaf>2</a-leaf>",
              "case_a { case_sub { deep: '1' deep_flag: true } a_leaf: '2' }");
}

TEST_F(ChoiceTest, MembersThatAreLeaves)
{
    expectTop("<text>t</text>", "text: 't'");
    expectTop("<o-flag/>", "o_flag: true");
    expectTop("<text>t</text><color>red</color>", "color: Color_RED");
}

TEST_F(ChoiceTest, CaseInAContainerAndInAListEntry)
{
    expectTop("<holder><a-leaf>1</a-leaf><name>n</name></holder><name>m</name>",
              "holder { held_a { a_leaf: '1' } name: 'n' } name: 'm'");
    expectTop("<entry><one>1</one><name>n</name></entry>", "entry { case_one { one: '1' } name: 'n' }");
}

TEST_F(ChoiceTest, LeafOfACaseWinsOverAContainerOfItsName)
{
    expectTop("<dual>1</dual>", "case_b { dual: '1' }");
    expectTop("<dual><x>1</x></dual>", "dual { x: '1' }");
}

// Leaves, empty leaves and containers take the case's layers back: the next sibling is a member of the message again.
TEST_F(ChoiceTest, NextSiblingIsOutsideTheCase)
{
    expectTop("<a-leaf>1</a-leaf><name>n</name>", "case_a { a_leaf: '1' } name: 'n'");
    expectTop("<a-flag/><name>n</name>", "case_a { a_flag: true } name: 'n'");
    expectTop("<a-box><inside>1</inside></a-box><name>n</name>", "case_a { a_box { inside: '1' } } name: 'n'");
    expectTop("<deep>1</deep><name>n</name>", "case_a { case_sub { deep: '1' } } name: 'n'");
}

using ChoiceOddities = ChoiceTest;

// The layer count is not restored here: the siblings that follow are looked up in the case.
TEST_F(ChoiceOddities, EmptyLeafOfAnotherTypeLeavesTheCaseOpen)
{
    expectTop("<name>before</name><a-leaf/><name>n</name><after>x</after><flag/>",
              "name: 'before' case_a { name: 'n' }",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9.",
               "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [after] from [choice.Top.case_a].",
               "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [choice.Top.case_a]."});
}

TEST_F(ChoiceOddities, PresenceContainerLeavesTheCaseOpen)
{
    expectTop("<a-box>\n</a-box><name>n</name><after>x</after><after><x>1</x></after>", "case_a { a_box {} name: 'n' }",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [after] from [choice.Top.case_a].",
               "0: Can't Find field [after]"});
}

TEST_F(ChoiceOddities, EveryLayerOfTheChainStaysOpen)
{
    expectTop("<deep/><deep-flag/><name>n</name>", "case_a { case_sub { deep_flag: true } }",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9.",
               "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [name] from "
               "[choice.Top.case_achoice.Top.case_a.case_sub]."});
}

TEST_F(ChoiceOddities, EnclosingContainerClosesTheCase)
{
    expectTop("<holder><a-leaf/><name>n</name></holder><name>m</name><holder><name>o</name></holder>",
              "holder { held_a { name: 'n' } name: 'o' } name: 'm'",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9."});
}

// The fields of a case's containers are searched as well, so a leaf without its container finds its way.
TEST_F(ChoiceOddities, LeafOfAContainerInACaseIsFoundWithoutTheContainer)
{
    expectTop("<inside>1</inside><name>n</name>", "case_a { a_box { inside: '1' } } name: 'n'");
}

// The slot above the top still knows the case of the entry before, whose message takes the value.
TEST_F(ChoiceOddities, CaseOfAnEarlierListEntryIsReused)
{
    expectTop("<entry><one>1</one></entry><entry><one>2</one></entry>", "entry { case_one { one: '2' } } entry {}");
    expectTop("<entry><one>1</one><name>a</name></entry><entry><name>b</name></entry><entry><one>3</one></entry>",
              "entry { case_one { one: '3' } name: 'a' } entry { name: 'b' } entry {}");
}

TEST_F(ChoiceTest, OtherCaseInTheNextListEntryIsItsOwn)
{
    expectTop("<entry><one>1</one></entry><entry><two>2</two></entry><entry><one>3</one></entry>",
              "entry { case_one { one: '1' } } entry { case_two { two: '2' } } entry { case_one { one: '3' } }");
}

// ---- a choice that switches frees the message of the old case, which slots above the top may still hold ----

using ChoiceSwitchTest = ChoiceTest;

TEST_F(ChoiceSwitchTest, ToAnotherCaseAndBack)
{
    expectTop("<a-leaf>1</a-leaf><b-leaf>2</b-leaf>", "case_b { b_leaf: '2' }");
    expectTop("<a-leaf>1</a-leaf><b-leaf>2</b-leaf><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
    expectTop("<a-leaf>1</a-leaf><b-leaf>2</b-leaf><a-flag/>", "case_a { a_flag: true }");
}

TEST_F(ChoiceSwitchTest, ByALeafMember)
{
    expectTop("<a-leaf>1</a-leaf><text>2</text>", "text: '2'");
    expectTop("<a-leaf>1</a-leaf><text>2</text><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
    expectTop("<deep>1</deep><text>2</text><deep>3</deep>", "case_a { case_sub { deep: '3' } }");
    expectTop("<a-leaf>1</a-leaf><color>red</color><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
}

TEST_F(ChoiceSwitchTest, ByAnEmptyLeafMember)
{
    expectTop("<a-leaf>1</a-leaf><o-flag/><a-flag/>", "case_a { a_flag: true }");
    expectTop("<deep>1</deep><o-flag/><deep-flag/>", "case_a { case_sub { deep_flag: true } }");
}

TEST_F(ChoiceSwitchTest, ByTheCaseAsAContainer)
{
    expectTop("<a-leaf>1</a-leaf><case-b><b-leaf>2</b-leaf></case-b><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
    expectTop("<deep>1</deep><case-b><b-leaf>2</b-leaf></case-b><deep>3</deep>", "case_a { case_sub { deep: '3' } }");
    expectTop("<a-leaf>1</a-leaf><case-b>\n</case-b><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
}

TEST_F(ChoiceSwitchTest, WithLayersBelowTheCase)
{
    expectTop("<deep>1</deep><b-leaf>2</b-leaf><deep>3</deep>", "case_a { case_sub { deep: '3' } }");
    expectTop("<a-box><inside>1</inside></a-box><text>2</text><inside>3</inside>", "case_a { a_box { inside: '3' } }");
    expectTop("<a-list><inside>1</inside></a-list><b-leaf>2</b-leaf><inside>3</inside>",
              "case_a { a_box { inside: '3' } }");
}

TEST_F(ChoiceSwitchTest, WithinAListEntry)
{
    expectTop("<entry><one>1</one><two>2</two><one>3</one></entry>", "entry { case_one { one: '3' } }");
    // The second entry reuses the case of the first; the switch happens in the entry that is filled.
    expectTop("<entry><one>1</one></entry><entry><one>2</one><two>3</two><one>4</one></entry>",
              "entry { case_one { one: '2' } } entry { case_one { one: '4' } }");
}

TEST_F(ChoiceSwitchTest, ThatFailsKeepsTheOldCase)
{
    expectTop(
        "<a-leaf>1</a-leaf><color>blue</color><a-flag/>", "case_a { a_leaf: '1' a_flag: true }",
        {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [color] value [blue] to layer [choice.Top]."});
    expectTop("<a-leaf>1</a-leaf><o-flag><x>1</x></o-flag><a-flag/>", "case_a { a_leaf: '1' a_flag: true }",
              {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path choice.Top.o_flag.",
               "0: Create layer failed [o-flag]"});
}

TEST_F(ChoiceSwitchTest, ManyTimes)
{
    std::string content;
    for (int i = 0; i < 200; ++i)
    {
        content += "<deep>1</deep><text>t</text><a-box><inside>i</inside></a-box><b-leaf>b</b-leaf><inside>j</inside>"
                   "<o-flag/><a-list><inside>k</inside></a-list><case-b><b-leaf>c</b-leaf></case-b>";
    }
    expectTop(content + "<deep>end</deep>", "case_a { case_sub { deep: 'end' } }");
}

} // namespace
