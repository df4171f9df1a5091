/** Values that the lossless setting keeps, and what it does with documents that it cannot keep. */
#include <libxml/parser.h>

#include "compiler/exact_fixture.h"

namespace
{

class ExactWalkTest : public gpbtest::ExactFixture
{
protected:
    void SetUp() override
    {
        ExactFixture::SetUp();
        useDataModule("walk");
    }
};

// ---- texts ----

TEST_F(ExactWalkTest, CharacterDataIsText)
{
    expectDefault("<name><![CDATA[a<b]]></name>", "");
    expectLossless("<name><![CDATA[a<b]]></name>", "name: 'a<b'");
    expectLossless("<name>a<![CDATA[b]]>c<![CDATA[]]></name>", "name: 'abc'");
    expectLossless("<count><![CDATA[7]]></count><kind><![CDATA[o]]>ne</kind>", "count: 7 kind: Kind_ONE");
    expectLossless("<name><![CDATA[]]></name><flag><![CDATA[]]></flag>", "flag: true");
}

TEST_F(ExactWalkTest, CommentsAndInstructionsSplitNoText)
{
    expectDefault("<name>n<!-- c --></name>", "",
                  {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
                   "0: Create layer failed [name]"});
    expectLossless("<name>n<!-- c --></name><count>1<?pi x?>2</count><flag>f<!-- -->alse</flag>",
                   "name: 'n' count: 12");
    expectLossless("<number><!-- a -->1</number><number>2<!-- b --></number>", "number: 1 number: 2");
    expectLossless("<name><!-- c --></name><flag><?pi?></flag><box><!-- c --></box>", "flag: true box {}");
}

TEST_F(ExactWalkTest, ElementsBesideTextMakeAContainer)
{
    expectBoth("<box>stray<name>n</name><![CDATA[stray]]></box>stray", "box { name: 'n' }");
    expectBoth("<name>n<count>1</count></name>", "",
               {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
                "0: Create layer failed [name]"});
    expectLossless("<box>stray</box>", "",
                   {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [box] from [walk.Top]."});
}

TEST_F(ExactWalkTest, ATextThatBeginsWithALineBreakIsTheValueOfALeaf)
{
    expectDefault("<name>\nn</name>", "",
                  {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name."});
    expectLossless("<name>\nn</name><blob>\n</blob><count>\n 5\n</count>", "name: '\\nn' blob: '\\n' count: 5");
    expectLossless("<name> </name>", "name: ' '");
}

TEST_F(ExactWalkTest, BlanksAreNoContentOfAContainer)
{
    expectBoth("<box>\n</box>", "box {}");
    expectBoth("<list>\n  </list><list>\n</list>", "list {} list {}");
    expectLossless("<box> </box><list>\t</list><list> <!-- c --> </list>", "box {} list {} list {}");
    expectBoth("<nowhere>\n</nowhere>", "");
    expectBoth("<nowhere> </nowhere>", "",
               {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [nowhere] from [walk.Top]."});
}

TEST_F(ExactWalkTest, EntityReferencesStayOut)
{
    m_doctype = "<!DOCTYPE top [<!ENTITY name 'value'><!ENTITY tree '<count>9</count>'>]>";
    expectBoth("<name>&name;</name><count>1</count>", "count: 1",
               {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
                "0: Create layer failed [name]"});
    expectBoth("<name>a&name;b</name>", "",
               {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.Top.name.",
                "0: Create layer failed [name]"});
    expectBoth("<box>&tree;<flag/></box>&tree;", "box { flag: true }");
    expectBoth("<box>&tree;</box>", "box {}");
    m_doctype = "<!DOCTYPE top SYSTEM 'nowhere.dtd'>";
    setLossless(true);
    expectEncodes(document("<name>&missing;</name><count>1</count>"), "walk.Top", "count: 1", {},
                  XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    m_doctype = "<!DOCTYPE top [<!ENTITY name 'value'>]>";
    expectEncodes(document("<name>a &name;</name>"), "walk.Top", "name: 'a value'", {}, XML_PARSE_NOENT);
}

// ---- elements without content ----

TEST_F(ExactWalkTest, EmptyElements)
{
    expectDefault("<name/><box/><flag/>", "flag: true",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9.",
                   "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 11."});
    expectLossless("<name/><box/><flag/><list/><flags/><list></list><flags/>",
                   "box {} flag: true list {} list {} flags: true flags: true");
    expectBoth("<count/><kind/><number/>", "",
               {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 5.",
                "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 14.",
                "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 5."});
    expectBoth("<nowhere/>", "", {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [walk.Top]."});
}

TEST_F(ExactWalkTest, EmptyElementsOfEveryType)
{
    useDataModule("scalars");
    const std::vector<std::pair<std::string, int>> types = {
        {"double", 1},    {"float", 2},   {"int64", 3},   {"uint64", 4}, {"int32", 5},
        {"fixed64", 6},   {"fixed32", 7}, {"uint32", 13}, {"enum", 14},  {"sfixed32", 15},
        {"sfixed64", 16}, {"sint32", 17}, {"sint64", 18}};
    setLossless(true);
    for (const std::string place : {"f", "r", "o"})
    {
        for (const auto &[type, number] : types)
        {
            expectEncodes(
                "<scalars><" + place + "-" + type + "/></scalars>", "scalars.Scalars", "",
                {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type " + std::to_string(number) + "."});
        }
    }
    expectEncodes("<scalars><f-bool/><f-string/><f-bytes/><f-message/></scalars>", "scalars.Scalars",
                  "f_bool: true f_message {}");
    expectEncodes("<scalars><r-bool/><r-string/><r-bytes/><r-message/><r-string>x</r-string></scalars>",
                  "scalars.Scalars", "r_bool: true r_string: '' r_string: 'x' r_bytes: '' r_message {}");
    expectEncodes("<scalars><o-string/></scalars>", "scalars.Scalars", "o_string: ''");
    expectEncodes("<scalars><o-bytes/></scalars>", "scalars.Scalars", "o_bytes: ''");
    expectEncodes("<scalars><o-bool/></scalars>", "scalars.Scalars", "o_bool: true");
    expectEncodes("<scalars><o-bool/><o-message/></scalars>", "scalars.Scalars", "o_message {}");
}

TEST_F(ExactWalkTest, OptionalFieldsAndRequiredOnes)
{
    useModule("maybe", "optional string a = 1; optional bool b = 2; optional Box c = 3;",
              "message Box { optional string x = 1; }");
    expectLossless("<a/><b>false</b><c><x/></c>", "a: '' b: false c { x: '' }");
    addModule("must", "syntax = 'proto2'; package must; message Top { required string a = 1; optional string b = 2; }");
    open("must");
    expectEncodes("<top><a/></top>", "must.Top", "a: ''");
}

// ---- maps and groups, as the default has them ----

TEST_F(ExactWalkTest, Maps)
{
    useModule("maps", "map<string, string> texts = 1; map<int32, Box> boxes = 2; oneof pick { Case c = 3; }",
              "message Box { string x = 1; } message Case { map<string, bool> flags = 1; }");
    expectBoth("<texts><key>a</key><value>1</value></texts><texts><key>b</key></texts>"
               "<boxes><key>7</key><value><x>2</x></value></boxes>",
               "texts { key: 'a' value: '1' } texts { key: 'b' value: '' } boxes { key: 7 value { x: '2' } }");
    expectLossless("<flags><key>a</key><value/></flags><flags/>",
                   "c { flags { key: 'a' value: true } flags { key: '' value: false } }");
}

TEST_F(ExactWalkTest, GroupsTakeNothing)
{
    addModule("groups", "syntax = 'proto2'; package groups; message Top { optional group Odd = 1 { optional string x = "
                        "2; } optional string name = 3; }");
    open("groups");
    for (const bool isLossless : {false, true})
    {
        setLossless(isLossless);
        expectEncodes("<top><odd><x>1</x></odd><name>n</name></top>", "groups.Top", "name: 'n'",
                      {"0: [GpbXmlCompiler][AddLayerToUpperLayer]Field [odd] type is not message, it is 10."});
        expectEncodes("<top><odd>1</odd></top>", "groups.Top", "",
                      {"0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [odd] type 10."});
        expectEncodes("<top><odd/></top>", "groups.Top", "",
                      {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 10."});
    }
}

// ---- bad documents, which end as in the default ----

TEST_F(ExactWalkTest, UnknownNodesAndBadValues)
{
    expectBoth("<nowhere>1</nowhere><name>n</name>", "name: 'n'",
               {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [nowhere] from [walk.Top]."});
    expectBoth("<nowhere><x>1</x></nowhere><name>n</name>", "name: 'n'", {"0: Can't Find field [nowhere]"});
    expectBoth("<box><nowhere>1</nowhere><name>n</name></box>", "box { name: 'n' }",
               {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [nowhere] from [walk.Top.box]."});
    expectBoth("<kind>two</kind><count>abc</count>", "",
               {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [two] to layer [walk.Top]."});
}

TEST_F(ExactWalkTest, IgnoredElements)
{
    expectBoth("<name __tlmtIgnored='1'>n</name><box __tlmtIgnored='1'><name>n</name></box>"
               "<count __tlmtIgnored='0'>1</count>",
               "count: 1");
    expectBoth("<flag __tlmtIgnored='1'/>", "flag: true");
}

TEST_F(ExactWalkTest, Roots)
{
    for (const bool isLossless : {false, true})
    {
        setLossless(isLossless);
        const std::string line = "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [";
        expectNothing("<top/>", {line + "] from []."});
        expectNothing("<top>text</top>", {line + "top] from []."});
        expectNothing("<top>\n</top>", {});
        expectNothing("<top><!-- c --></top>", {});
        expectNothing("<top __tlmtIgnored='1'><name>n</name></top>", {});
        expectEncodes("<top>a<!-- c -->b</top>", "walk.Top", "");
        expectEncodes("<!-- a --><top><name>n</name></top><!-- b --><?pi?>", "walk.Top", "name: 'n'");
        expectFails("<nothing><name>n</name></nothing>", 3, {"2: Fail to find message type for path walk.Nothing."});
        const std::string name(128, 'a');
        expectFails("<" + name + "><name>n</name></" + name + ">", 11, {});
    }
}

TEST_F(ExactWalkTest, NoDocumentAndNoRoot)
{
    setLossless(true);
    EXPECT_EQ(1u, compiler().Encode(nullptr));
    xmlDoc *const empty = xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0"));
    EXPECT_EQ(2u, compiler().Encode(empty));
    xmlFreeDoc(empty);
    EXPECT_NO_LOG(log());
}

// A document that a host has put together may have several roots, and nodes without a name.
TEST_F(ExactWalkTest, SeveralRoots)
{
    const gpbtest::XmlDocument xml("<top><name>n</name></top>");
    xmlNode *const second = xmlNewDocNode(xml.get(), nullptr, reinterpret_cast<const xmlChar *>("box"), nullptr);
    xmlNewTextChild(second, nullptr, reinterpret_cast<const xmlChar *>("name"), reinterpret_cast<const xmlChar *>("m"));
    xmlAddSibling(xmlDocGetRootElement(xml.get()), second);
    for (const bool isLossless : {false, true})
    {
        setLossless(isLossless);
        unsigned int length = 0;
        unsigned int error = 1;
        const char *const bytes = GpbXmlCompiler_Encode(&compiler(), xml.get(), &length, &error);
        ASSERT_NE(nullptr, bytes);
        EXPECT_TRUE(judge().holds("walk.Top", std::string(bytes, length), "name: 'n' box { name: 'm' }"));
    }
}

TEST_F(ExactWalkTest, StopOnError)
{
    compiler().ucStopOnError = 1;
    for (const bool isLossless : {false, true})
    {
        setLossless(isLossless);
        expectFails(document("<nowhere>1</nowhere><name>n</name>"), 6,
                    {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [nowhere] from [walk.Top]."});
        expectFails(document("<nowhere><x/></nowhere>"), 6, {"0: Can't Find field [nowhere]"});
        expectFails(document("<kind>two</kind>"), 9,
                    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [kind] value [two] to layer "
                     "[walk.Top]."});
        expectFails(document("<box><name>n</name><nowhere>\n</nowhere></box>"), 6, {});
        expectFails("<top>\n</top>", 1, {});
    }
}

// ---- depth ----

class ExactDepthTest : public gpbtest::ExactFixture
{
protected:
    static std::string nested(int levels, const std::string &before, const std::string &content,
                              const std::string &after)
    {
        std::string text;
        for (int i = 0; i < levels; ++i)
        {
            text += before;
        }
        text += content;
        for (int i = 0; i < levels; ++i)
        {
            text += after;
        }
        return text;
    }

    static std::string xml(int levels, const std::string &content) { return nested(levels, "<n>", content, "</n>"); }

    static std::string form(int levels, const std::string &content) { return nested(levels, "n { ", content, " }"); }

    static std::string path(int levels) { return "deep.Top" + nested(levels, ".n", "", ""); }
};

constexpr const char *kDeep = "message Case { string leaf_in = 1; bool flag_in = 2; Top box_in = 3; Inner some_in = 6; "
                              "message Inner { string x = 1; } oneof in { Case2 case_two = 4; } message Case2 { string "
                              "leaf_two = 1; Top box_two = 2; } } string leaf = 1; Top n = 2; oneof ch { Case case_one "
                              "= 4; }";

TEST_F(ExactDepthTest, ThirtyOneLayersFit)
{
    useModule("deep", kDeep);
    expectBoth(xml(30, "<leaf>x</leaf>"), form(30, "leaf: 'x'"));
    expectBoth(xml(30, "<n>\n</n>"), form(30, "n {}"));
    expectLossless(xml(30, "<n/>"), form(30, "n {}"));
    expectBoth(xml(31, "<leaf>x</leaf>"), form(31, ""),
               {"0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(31) + "]. depth is 31."});
    expectBoth(xml(240, "<leaf>x</leaf>"), form(31, ""),
               {"0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(31) + "]. depth is 31."});
}

// Cases are layers, too; a case that has no layer left stays behind, empty.
TEST_F(ExactDepthTest, CasesCountAsLayers)
{
    useModule("deep", kDeep);
    expectBoth(xml(29, "<leaf-in>x</leaf-in><flag-in/>"), form(29, "case_one { leaf_in: 'x' flag_in: true }"));
    expectBoth(xml(30, "<leaf-in>x</leaf-in><leaf>y</leaf>"), form(30, "case_one {} leaf: 'y'"),
               {"0: Gpb compiler leaf choice case node [leaf-in] fail."});
    expectBoth(xml(30, "<flag-in/>"), form(30, "case_one {}"),
               {"0: Gpb compiler empty leaf choice case node [flag-in] fail."});
    expectBoth(xml(30, "<box-in><leaf>x</leaf></box-in>"), form(30, "case_one {}"),
               {"0: Gpb compiler container choice case node [box-in] fail."});
    expectBoth(xml(30, "<some-in>\n</some-in>"), form(30, "case_one {}"),
               {"0: Gpb compiler presence container choice case node [some-in] fail."});
    expectBoth(xml(29, "<leaf-two>x</leaf-two>"), form(29, "case_one { case_two {} }"),
               {"0: Gpb compiler leaf choice case node [leaf-two] fail."});
    expectBoth(xml(29, "<box-in><leaf>x</leaf></box-in>"), form(29, "case_one { box_in {} }"),
               {"0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(29) +
                ".case_one.box_in]. depth is 31."});
}

// What comes behind a node that was too deep is placed as ever.
TEST_F(ExactDepthTest, GoesOnBehindWhatIsTooDeep)
{
    useModule("deep", kDeep);
    setLossless(true);
    for (int levels = 25; levels < 40; ++levels)
    {
        const gpbtest::XmlDocument document("<top>" + xml(levels, "<leaf-two>x</leaf-two>") + "<leaf>y</leaf></top>");
        unsigned int length = 0;
        unsigned int error = 1;
        const char *const bytes = GpbXmlCompiler_Encode(&compiler(), document.get(), &length, &error);
        ASSERT_NE(nullptr, bytes);
        EXPECT_NE(std::string::npos, judge().toText("deep.Top", std::string(bytes, length)).find("leaf: \"y\""));
    }
}

} // namespace
