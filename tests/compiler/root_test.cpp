/** The root element: which message it names, and what becomes of a root that is none. */
#include "compiler/compiler_fixture.h"

namespace
{

class RootTest : public gpbtest::CompilerFixture
{
};

TEST_F(RootTest, NameBecomesTheMessageName)
{
    addModule("roots",
              "syntax='proto3'; package a.b; message Ipv4AddressX { string v = 1; } message My_nameX { string v "
              "= 1; } message A1b { string v = 1; } message UPPER { string v = 1; }");
    open("roots");
    expectEncodes("<ipv4-address-x><v>1</v></ipv4-address-x>", "a.b.Ipv4AddressX", "v: '1'");
    expectEncodes("<my_name-x><v>1</v></my_name-x>", "a.b.My_nameX", "v: '1'");
    expectEncodes("<a-1b><v>1</v></a-1b>", "a.b.A1b", "v: '1'");
    expectEncodes("<UPPER><v>1</v></UPPER>", "a.b.UPPER", "v: '1'"); // no "_1" at the top
}

TEST_F(RootTest, UnknownMessageGivesThree)
{
    addDataModule("walk");
    open("walk");
    for (const bool stop : {false, true})
    {
        compiler().ucStopOnError = stop ? 1 : 0;
        expectFails("<no-such-thing><name>n</name></no-such-thing>", 3,
                    {"2: Fail to find message type for path walk.NoSuchThing."});
        expectFails("<top.box><name>n</name></top.box>", 3, {"2: Fail to find message type for path walk.Top.box."});
    }
}

TEST_F(RootTest, NameOf128CharactersGivesEleven)
{
    addDataModule("walk");
    open("walk");
    const std::string fits(127, 'a');
    expectFails("<" + fits + "><name>n</name></" + fits + ">", 3,
                {"2: Fail to find message type for path walk.A" + fits.substr(1) + "."});
    const std::string tooLong(128, 'a');
    for (const bool stop : {false, true})
    {
        compiler().ucStopOnError = stop ? 1 : 0;
        expectFails("<" + tooLong + "><name>n</name></" + tooLong + ">", 11, {});
    }
    const std::string huge(40000, 'a');
    expectFails("<" + huge + "><name>n</name></" + huge + ">", 11, {});
}

TEST_F(RootTest, LongestNameEncodes)
{
    const std::string name = "R" + std::string(126, 'r');
    addModule("longroot", "syntax='proto3'; package longroot; message " + name + " { string v = 1; }");
    open("longroot");
    expectEncodes("<r" + name.substr(1) + "><v>1</v></r" + name.substr(1) + ">", "longroot." + name, "v: '1'");
}

using RootOddities = RootTest;

// The package and a dot always come first, so a file without package has no root.
TEST_F(RootOddities, FileWithoutPackageFindsNoMessage)
{
    addModule("bare", "syntax='proto3'; message Top { string v = 1; }");
    open("bare");
    expectFails("<top><v>1</v></top>", 3, {"2: Fail to find message type for path .Top."});
}

// The message is looked up in the whole pool: another file of the same package gives it as well.
TEST_F(RootOddities, MessageOfAnotherFileOfThePackageIsFound)
{
    addModule("first", "syntax='proto3'; package shared; message One { string v = 1; }");
    addModule("second", "syntax='proto3'; package shared; message Two { string v = 1; }");
    open("first");
    expectEncodes("<two><v>1</v></two>", "shared.Two", "v: '1'");
}

TEST_F(RootTest, RootWithoutChildrenGivesNoMessage)
{
    addDataModule("walk");
    open("walk");
    const std::vector<std::string> lines = {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from []."};
    for (const bool stop : {false, true})
    {
        compiler().ucStopOnError = stop ? 1 : 0;
        expectNothing("<top/>", lines);
        expectNothing("<nowhere></nowhere>", lines);
    }
}

TEST_F(RootTest, RootWithTextOnlyGivesNoMessage)
{
    addDataModule("walk");
    open("walk");
    const std::vector<std::string> lines = {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [top] from []."};
    expectNothing("<top>text</top>", lines);
    compiler().ucStopOnError = 1;
    expectFails("<top>text</top>", 6, lines);
}

TEST_F(RootTest, RootWithALineFeedOnlyGivesNoMessage)
{
    addDataModule("walk");
    open("walk");
    expectNothing("<top>\n</top>", {});
    compiler().ucStopOnError = 1;
    expectFails("<top>\n</top>", 1, {});
}

TEST_F(RootTest, RootWithALoneCommentGivesNoMessage)
{
    addDataModule("walk");
    open("walk");
    compiler().ucStopOnError = 1;
    expectNothing("<top><!-- nothing --></top>", {});
    expectNothing("<top><![CDATA[text]]></top>", {});
}

TEST_F(RootTest, RootWithFormattingAroundACommentIsAnEmptyMessage)
{
    addDataModule("walk");
    open("walk");
    expectEncodes("<top>\n<!-- nothing -->\n</top>", "walk.Top", "");
}

} // namespace
