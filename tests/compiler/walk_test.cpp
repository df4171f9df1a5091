/** The walk over a document: containers, lists, leaves, ignored elements, and which failures end it. */
#include "compiler/compiler_fixture.h"

namespace
{

class WalkTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
        open("walk");
    }

    void expectTop(const std::string &content, const std::string &textForm, const std::vector<std::string> &lines = {},
                   int options = 0)
    {
        expectEncodes("<top>" + content + "</top>", "walk.Top", textForm, lines, options);
    }
};

TEST_F(WalkTest, ContainersListsAndLeaves)
{
    expectTop("<name>n</name><box><count>3</count><inner><name>i</name></inner></box><number>7</number>",
              "name: 'n' box { count: 3 inner { name: 'i' } } number: 7");
}

TEST_F(WalkTest, EachListEntryIsAppended)
{
    expectTop(
        "<list><name>a</name></list><name>n</name><list><name>b</name><entry><name>x</name></entry>"
        "<entry><flag/></entry></list><number>1</number><number>2</number>",
        "name: 'n' list { name: 'a' } list { name: 'b' entry { name: 'x' } entry { flag: true } } number: [1, 2]");
}

TEST_F(WalkTest, ContainersOfTheSameNameAreMerged)
{
    expectTop("<box><name>a</name><count>1</count></box><name>n</name><box><count>2</count><flag/></box>",
              "name: 'n' box { name: 'a' count: 2 flag: true }");
}

TEST_F(WalkTest, LaterLeafOfTheSameNameWins)
{
    expectTop("<name>a</name><name>b</name>", "name: 'b'");
}

TEST_F(WalkTest, NamesAreConverted)
{
    expectTop("<NAME>n</NAME><Depth2>d</Depth2>", "name: 'n' depth2: 'd'");
}

// A name that clashes carries its depth: the layer number that is asked for is that of the members of the top layer.
TEST_F(WalkTest, LayerNumberIsOneMoreThanTheOpenLayers)
{
    expectTop("<depth>d</depth>", "depth2: 'd'");
}

TEST_F(WalkTest, NamespacesAndPrefixesDoNotMatter)
{
    expectEncodes("<a:top xmlns:a='urn:a' xmlns='urn:b'><a:name>n</a:name><box xmlns='urn:c'><b:count xmlns:b='urn:d'>4"
                  "</b:count></box></a:top>",
                  "walk.Top", "name: 'n' box { count: 4 }");
}

TEST_F(WalkTest, FormattedDocument)
{
    expectEncodes("<?xml version='1.0'?>\n<!-- before -->\n<top>\n  <name>n</name>\n  <box>\n    <count>3</count>\n"
                  "  </box>\n  <list>\n  </list>\n</top>\n<!-- after -->\n<?pi after?>\n",
                  "walk.Top", "name: 'n' box { count: 3 } list {}");
}

// ---- ignored elements ----

TEST_F(WalkTest, IgnoredElementIsSkippedWithItsSubtree)
{
    expectTop("<box __tlmtIgnored='1'><count>3</count><unknown><x>1</x></unknown></box><name __tlmtIgnored='1'>n</name>"
              "<count>4</count>",
              "count: 4");
}

TEST_F(WalkTest, ValueHasToBeginWithOne)
{
    for (const char *value : {"1", "10", "1x", "1 "})
    {
        expectTop(std::string("<name __tlmtIgnored='") + value + "'>n</name><count>4</count>", "count: 4");
    }
    for (const char *value : {"", "0", "01", " 1", "true", "2", "x1"})
    {
        expectTop(std::string("<name __tlmtIgnored='") + value + "'>n</name><count>4</count>", "name: 'n' count: 4");
    }
    expectTop("<name tlmtIgnored='1' __tlmtignored='1'>n</name>", "name: 'n'");
    expectTop("<name x:__tlmtIgnored='1' xmlns:x='urn:x'>n</name>", ""); // by local name, whatever the namespace
}

TEST_F(WalkTest, IgnoredRootGivesNoMessage)
{
    expectNothing("<top __tlmtIgnored='1'><name>n</name></top>", {});
}

using WalkOddities = WalkTest;

// The attribute is looked at on elements with children only.
TEST_F(WalkOddities, ChildlessElementIsNotIgnored)
{
    expectTop("<flag __tlmtIgnored='1'/>", "flag: true");
    expectTop("<box><flag __tlmtIgnored='1'></flag></box>", "box { flag: true }");
}

// ---- presence containers ----

TEST_F(WalkTest, TextThatBeginsWithALineFeedMakesAContainerPresent)
{
    expectTop("<box>\n</box>", "box {}");
    expectTop("<box>\n    </box><box>\n</box>", "box {}");
    expectTop("<list>\n</list><list>\nany text</list>", "list {} list {}");
    expectTop("<box><inner>\n</inner><count>1</count></box>", "box { inner {} count: 1 }");
}

TEST_F(WalkTest, LineFeedLaterInTheTextIsText)
{
    expectTop("<name>a\n</name>", "name: 'a\\n'");
    expectTop("<name> \n</name>", "name: ' \\n'");
}

TEST_F(WalkTest, PresenceContainerThatIsUnknownFailsSilently)
{
    expectTop("<nowhere>\n</nowhere><count>1</count>", "count: 1");
    compiler().ucStopOnError = 1;
    expectFails("<top><nowhere>\n</nowhere><count>1</count></top>", 6, {});
}

// A leaf whose text begins with a line feed is taken for a container and loses its text.
TEST_F(WalkOddities, LeafThatBeginsWithALineFeedIsNotStored)
{
    const std::string line = "2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.";
    expectTop("<name>\ntext</name><count>1</count>", "count: 1", {line});
    compiler().ucStopOnError = 1;
    expectFails("<top><name>\ntext</name><count>1</count></top>", 3, {line});
}

// ---- empty leaves ----

TEST_F(WalkTest, EmptyLeafIsTrue)
{
    expectTop("<flag/>", "flag: true");
    expectTop("<flag></flag><flags/><flags/>", "flag: true flags: [true, true]");
}

TEST_F(WalkTest, EmptyLeafOfAnotherTypeIsSkipped)
{
    // The name is left out of these lines.
    const auto line = [](int type)
    { return "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type " + std::to_string(type) + "."; };
    expectTop("<name/><count>1</count>", "count: 1", {line(9)});
    expectTop("<count/><kind/><box/><number/><blob/><flag/>", "flag: true",
              {line(5), line(14), line(11), line(5), line(12)});
}

TEST_F(WalkTest, EmptyLeafThatIsUnknownIsSkipped)
{
    expectTop("<nowhere/><box><elsewhere/></box><flag/>", "box {} flag: true",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [walk.Top].",
               "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [walk.Top.box]."});
    compiler().ucStopOnError = 1;
    expectTop("<nowhere/><name/><flag/>", "flag: true",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [walk.Top].",
               "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9."});
}

// ---- failures that the walk passes over, and that end it on demand ----

struct Failing
{
    std::string content;
    unsigned int code;
    std::vector<std::string> lines;
    std::string left; // what it leaves in the message
};

TEST_F(WalkTest, FailingContainersAndLeavesArePassedOver)
{
    const std::vector<Failing> failings = {
        {"<nowhere><x>1</x></nowhere>", 6, {"0: Can't Find field [nowhere]"}, ""},
        {"<box><nowhere><x>1</x></nowhere></box>", 6, {"0: Can't Find field [nowhere]"}, "box {}"},
        {"<name><x>1</x></name>",
         3,
         {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
          "0: Create layer failed [name]"},
         ""},
        {"<nowhere>1</nowhere>",
         6,
         {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [nowhere] from [walk.Top]."},
         ""},
        {"<box><inner><count>1</count></inner></box>",
         6,
         {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [count] from [walk.Top.box.inner]."},
         "box { inner {} }"},
        {"<box>text</box>", 6, {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [box] from [walk.Top]."}, ""},
        {"<kind>two</kind>",
         9,
         {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [two] to layer [walk.Top]."},
         ""},
        // The enumeration is not nested in the message of the leaf.
        {"<list><kind>one</kind></list>",
         9,
         {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [one] to layer [walk.Top.list]."},
         "list {}"},
    };
    for (const Failing &failing : failings)
    {
        const std::string content = failing.content + "<count>5</count>";
        compiler().ucStopOnError = 0;
        expectTop(content, failing.left + " count: 5", failing.lines);
        for (const uint8_t stop : std::vector<uint8_t>{1, 2, 255})
        {
            compiler().ucStopOnError = stop;
            expectFails("<top>" + content + "</top>", failing.code, failing.lines);
        }
    }
}

TEST_F(WalkTest, StopFlagStartsAtZero)
{
    EXPECT_EQ(0, compiler().ucStopOnError);
    expectTop("<kind>two</kind>", "",
              {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [two] to layer [walk.Top]."});
    EXPECT_EQ(0, compiler().ucStopOnError);
}

TEST_F(WalkTest, LongValueIsCutInItsLine)
{
    leaveOutTwin();
    const std::string value(2000, 'v');
    const std::string line = "[GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [" + value;
    expectTop("<kind>" + value + "</kind>", "", {"0: " + line.substr(0, 1023)});
    EXPECT_EQ("gpb_reflection.cpp:170\n", takeAssertText());
}

TEST_F(WalkTest, NameOf128CharactersFindsNothing)
{
    const std::string name(128, 'n');
    expectTop("<" + name + ">1</" + name + "><count>1</count>", "count: 1",
              {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [" + name + "] from [walk.Top]."});
}

} // namespace
