/** Nodes of a document that are neither elements nor plain text. */
#include <libxml/parser.h>

#include "compiler/compiler_fixture.h"

namespace
{

class WalkNodeKindTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
        open("walk");
    }

    void expectTop(const std::string &content, const std::string &textForm, const std::vector<std::string> &lines = {})
    {
        expectEncodes(m_doctype + "<top>" + content + "</top>", "walk.Top", textForm, lines);
    }

    std::string m_doctype;
};

TEST_F(WalkNodeKindTest, CommentsInstructionsAndTextBetweenElementsArePassedOver)
{
    expectTop("<!-- c --><?pi x?>stray<![CDATA[stray]]><name>n</name><!-- c --><box><!-- c --><count>1</count>"
              "<?pi?></box>",
              "name: 'n' box { count: 1 }");
    compiler().ucStopOnError = 1;
    expectTop("<!-- c --><?pi x?>stray<![CDATA[stray]]><name>n</name>", "name: 'n'");
}

TEST_F(WalkNodeKindTest, LoneChildThatIsNoTextStoresNothing)
{
    compiler().ucStopOnError = 1; // none of these is a failure
    expectTop("<name><!-- c --></name>", "");
    expectTop("<name><?pi x?></name>", "");
    expectTop("<name><![CDATA[n]]></name>", "");
    expectTop("<box><!-- c --></box><nowhere><![CDATA[n]]></nowhere><count>1</count>", "count: 1");
}

TEST_F(WalkNodeKindTest, TextBesideAnotherNodeMakesAContainerOfALeaf)
{
    const std::vector<std::string> lines = {
        "2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
        "0: Create layer failed [name]"};
    expectTop("<name>n<!-- c --></name><count>1</count>", "count: 1", lines);
    expectTop("<name><!-- c -->n</name><count>1</count>", "count: 1", lines);
    expectTop("<name>a<![CDATA[b]]></name><count>1</count>", "count: 1", lines);
}

TEST_F(WalkNodeKindTest, ContainerWithStrayNodesOnlyIsPresent)
{
    expectTop("<box>\n<!-- c -->\n</box><list> <?pi?> </list>", "box {} list {}");
}

TEST_F(WalkNodeKindTest, CharacterReferencesAreText)
{
    expectTop("<name>&#97;&amp;&lt;</name>", "name: 'a&<'");
    expectTop("<box>&#10;</box>", "box {}");
}

TEST_F(WalkNodeKindTest, EntityReferenceIsNotFollowed)
{
    m_doctype = "<!DOCTYPE top [<!ENTITY name 'value'><!ENTITY tree '<count>9</count>'>]>";
    const std::vector<std::string> lines = {
        "2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
        "0: Create layer failed [name]"};
    expectTop("<name>&name;</name><count>1</count>", "count: 1", lines);
    expectTop("<box>&tree;<flag/></box>", "box { flag: true }");
    expectTop("&name;&tree;<count>1</count>", "count: 1");
}

TEST_F(WalkNodeKindTest, EntityExpandedByTheParserIsText)
{
    expectEncodes("<!DOCTYPE top [<!ENTITY name 'value'>]><top><name>&name;</name></top>", "walk.Top", "name: 'value'",
                  {}, XML_PARSE_NOENT);
}

TEST_F(WalkNodeKindTest, ReferenceToAnUndeclaredEntityStoresNothing)
{
    expectEncodes("<!DOCTYPE top SYSTEM 'nowhere.dtd'><top><name>&missing;</name><count>1</count></top>", "walk.Top",
                  "count: 1", {}, XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
}

} // namespace
