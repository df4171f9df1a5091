// XML to JSON in the lossless setting, beside what the default does with the same document.
#include "compiler/exact_json_fixture.h"
#include "support/fail_each_call.h"

namespace gpbtest
{
namespace
{

constexpr unsigned char kTexts = 0;
constexpr unsigned char kNumbers = 1;

class ExactXmlToJsonTest : public ExactJsonFixture
{
protected:
    void SetUp() override
    {
        ExactJsonFixture::SetUp();
        addModule("wood", kWoodProto);
    }

    /** The text of a document's tree, and what was logged behind it. */
    std::string converted(const std::string &module, const std::string &xml, bool isOn, unsigned char flag = kTexts,
                          int options = 0)
    {
        setLossless(isOn);
        const XmlDocument document(xml, options);
        const auto compiler = open<OpenXmlToJsonCompiler>(module, flag);
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        EXPECT_TRUE(compiler->mapListNode.empty() || !isOn);
        return result.bytes + log().take();
    }

    /** The members of <wood>, or of what stands for it, in both settings. */
    void both(const std::string &content, const std::string &byDefault, const std::string &byLossless,
              const std::string &doctype = "", int options = 0)
    {
        SCOPED_TRACE(content);
        const std::string xml = doctype + "<wood>" + content + "</wood>";
        EXPECT_EQ("{\"wood\":{" + byDefault, converted("wood", xml, false, kTexts, options));
        EXPECT_EQ("{\"wood\":{" + byLossless, converted("wood", xml, true, kTexts, options));
    }

    void same(const std::string &content, const std::string &members) { both(content, members, members); }

    void lossless(const std::string &content, const std::string &members)
    {
        SCOPED_TRACE(content);
        EXPECT_EQ("{\"wood\":{" + members, converted("wood", "<wood>" + content + "</wood>", true));
    }

    static std::string noField(const std::string &name)
    {
        return "2: Fail to find field descriptore for name " + name + ".\n";
    }
};

TEST_F(ExactXmlToJsonTest, MakesAnArrayForEachListOfEachObject)
{
    both("<box><boxes><label>a</label></boxes><boxes><label>b</label></boxes></box>"
         "<boxes><boxes><label>c</label></boxes><box><boxes><label>d</label></boxes></box></boxes>"
         "<boxes><boxes><label>e</label></boxes></boxes>",
         R"("box":{"boxes":[{"label":"a"},{"label":"b"},{"label":"c"},{"label":"d"},{"label":"e"}]},)"
         R"("boxes":[{"box":{}},{}]}})",
         R"("box":{"boxes":[{"label":"a"},{"label":"b"}]},)"
         R"("boxes":[{"boxes":[{"label":"c"}],"box":{"boxes":[{"label":"d"}]}},{"boxes":[{"label":"e"}]}]}})");
    // Entries that others stand between are one list.
    same("<names>a</names><count>1</count><names>b</names><boxes>\n</boxes><names>c</names><boxes>\n</boxes>",
         R"("names":["a","b","c"],"count":1,"boxes":[{},{}]}})");
}

TEST_F(ExactXmlToJsonTest, MakesAnArrayForEachLeafListOfEachEntry)
{
    both("<tree><tints>a</tints><tints>b</tints></tree><tree><tints>c</tints></tree>",
         R"("tree":[{"tints":["a","b","c"]},{}]}})", R"("tree":[{"tints":["a","b"]},{"tints":["c"]}]}})");
}

TEST_F(ExactXmlToJsonTest, FindsNoNamesakesInListsAndContainersOfOtherCases)
{
    // The default takes the one of a list for it, whose number is a text.
    addModule("maze", R"(syntax = "proto3"; package maze; message Maze {
        message CaseA { message Row { string cell = 1; int32 size = 2; } repeated Row row = 1; }
        message CaseB { string size = 1; repeated int32 cell = 2; bool mark = 3; }
        oneof way { CaseA way_a = 1; CaseB way_b = 2; } })");
    const std::string xml = "<maze><size>12</size><cell>1</cell><cell>2</cell></maze>";
    EXPECT_EQ(R"({"maze":{"size":12,"cell":"1","cell":"2"}})", converted("maze", xml, false));
    EXPECT_EQ(R"({"maze":{"size":"12","cell":[1,2]}})", converted("maze", xml, true));
}

TEST_F(ExactXmlToJsonTest, FindsNamesWithDotsAndLongNames)
{
    both("<v1.2>x</v1.2>", "}}", R"("v1.2":"x"}})");
    const std::string name(140, 'n');
    addModule("long", "syntax = \"proto3\"; package long; message Top { int32 " + name + " = 1; }");
    const std::string xml = "<top><" + name + ">1</" + name + "></top>";
    EXPECT_EQ(R"({"top":{}})", converted("long", xml, false));
    EXPECT_EQ("{\"top\":{\"" + name + "\":1}}", converted("long", xml, true));
}

TEST_F(ExactXmlToJsonTest, WritesElementsWithoutContent)
{
    both("<open/><text/><blob/><names/><names>a</names><box/><boxes/><boxes><label/></boxes>",
         R"("open":true,"names":["a"],"boxes":[{}]}})",
         R"("open":true,"text":"","blob":"","names":["","a"],"box":{},"boxes":[{},{"label":""}]}})");
    same("<marks/><marks>false</marks>", R"("marks":[true,false]}})");
    // Nothing stands for nothing of a number.
    same("<count/><state/><big></big>", "}}");
    same("<nothing/>", "}}" + noField("nothing"));
    // What follows an empty element of a case is not the case's.
    lossless("<tree><evergreen/><name>a</name><crown/><after>x</after></tree>",
             R"("tree":[{"evergreen":true,"name":"a","crown":{},"after":"x"}]}})");
}

TEST_F(ExactXmlToJsonTest, TakesAnyTextOfALeaf)
{
    both("<text>\n a</text><names>\n</names><box>\n</box><boxes>\n  </boxes><box>  </box>",
         R"("text":{},"names":[{}],"box":{},"boxes":[{}]}})",
         R"("text":"\n a","names":["\n"],"box":{},"boxes":[{}],"box":{}}})");
    // To the default these are containers, or nothing.
    both("<text><![CDATA[<a>&]]></text><names>a<!-- b -->c</names><names><?pi?>d</names><count><!-- -->12</count>",
         R"("names":[{},{}],"count":{}}})", R"("text":"<a>&","names":["ac","d"],"count":12}})");
    both("<text>x<![CDATA[y]]>z</text><open><!-- empty --></open><box><!-- empty --></box>", R"("text":{}}})",
         R"("text":"xyz","open":true,"box":{}}})");
    // Entities are no text here, and a leaf without a part of its text would be another one.
    both("<text>a&e;b</text><names>&e;</names><count>1</count>", R"("text":{},"names":[{}],"count":1}})",
         R"("count":1}})" + noField("text") + noField("names"), "<!DOCTYPE wood [<!ENTITY e 'x'>]>");
}

TEST_F(ExactXmlToJsonTest, TakesBlanksForWhatFitsBest)
{
    addModule("modes", "syntax = 'proto3'; package modes; message Top { message Box { string x = 1; }"
                       "Box mode = 1; int32 mode2 = 2; Box name2 = 3; string name = 4; }");
    EXPECT_EQ(R"({"top":{"mode":{},"name":"\n"}})",
              converted("modes", "<top><mode>\n</mode><name>\n</name></top>", true));
    EXPECT_EQ(R"({"top":{"mode":2}})", converted("modes", "<top><mode>\n2</mode></top>", true));
}

TEST_F(ExactXmlToJsonTest, PassesOverWhatIsMarkedOrUnknown)
{
    same("<box __tlmtIgnored='1'><label>a</label></box><text __tlmtIgnored='1'>x</text><count "
         "__tlmtIgnored='0'>1</count>",
         R"("count":1}})");
    same("<nothing>1</nothing><count>1</count>", R"("count":1}})");
    same("<nothing><a>1</a></nothing><count>1</count>", R"("count":1}})" + noField("nothing"));
    same("<nothing>\n</nothing><box>x</box>", "}}" + noField("nothing"));
    both("<count><a>1</a></count><box><label>a</label></box>", R"("count":{},"box":{"label":"a"}}})",
         R"("box":{"label":"a"}}})" + noField("count"));
}

TEST_F(ExactXmlToJsonTest, HasNumbersOfSixtyFourBitsAsTheDefault)
{
    const std::string xml = "<wood><big>-9223372036854775808</big><ubig>7</ubig><exact>0.5</exact></wood>";
    for (const bool isOn : {false, true})
    {
        EXPECT_EQ(R"({"wood":{"big":"-9223372036854775808","ubig":"7","exact":0.5}})", converted("wood", xml, isOn));
        EXPECT_EQ(R"({"wood":{"big":-9.2233720368547758e+18,"ubig":7,"exact":0.5}})",
                  converted("wood", xml, isOn, kNumbers));
    }
}

TEST_F(ExactXmlToJsonTest, WritesBitsAndIdentitiesAsTheDefault)
{
    addModule("telemetry", R"(syntax = "proto3"; package t;
        message TelemetrySystem { message Subscriptions { message Persistent { message Subscription {
          string encoding = 1; } repeated Subscription subscription = 1; } Persistent persistent = 1; }
          Subscriptions subscriptions = 1; })");
    const std::string xml = "<telemetry-system><subscriptions><persistent><subscription>"
                            "<encoding xmlns:o='urn:o'>oc-telemetry-types:GPB</encoding>"
                            "</subscription></persistent></subscriptions></telemetry-system>";
    for (const bool isOn : {false, true})
    {
        EXPECT_EQ(R"({"telemetry-system":{"subscriptions":{"persistent":{"subscription":[)"
                  R"({"encoding":"openconfig-telemetry-types:GPB"}]}}}})",
                  converted("telemetry", xml, isOn));
    }
    same("<states>up 2g</states>", R"("states":["up 2g"]}})");
}

TEST_F(ExactXmlToJsonTest, PutsAPrefixWhereReadersWouldTakeAnotherField)
{
    // Nobody knows the module of an element without namespace: the first of the two is taken, and named.
    lossless("<size xmlns='urn:x:pine'>p</size><size xmlns='http://x/oak'>o</size>", R"("size":"p","oak:size":"o"}})");
    lossless("<size xmlns='urn:oak'>o</size><size xmlns='urn:x/pine'>p</size>", R"("oak:size":"o","size":"p"}})");
    lossless("<den xmlns='urn:oak'><size>o</size></den>", R"("den":{"oak:size":"o"}}})");
    lossless("<nest><den xmlns='urn:oak'><size>o</size><size xmlns='urn:pine'>p</size></den></nest>",
             R"("nest":[{"den":{"oak:size":"o","size":"p"}}]}})");
    lossless("<count xmlns='urn:other'>1</count>", R"("count":1}})");
    addModule("oak", R"(syntax = "proto3"; package oak; message Top {
        message Box { string size = 1; string other = 2 [json_name = "oak:size"]; message Row { int32 x = 1; } 
          repeated Row row = 3; repeated Row mine = 4 [json_name = "oak:row"]; repeated string rows = 5;
          Row deep = 6; Row deeper = 7 [json_name = "oak:deep"]; }
        Box box = 1; })");
    // A prefix holds for what lies in the member.
    EXPECT_EQ(
        R"({"top":{"box":{"a:size":"1","size":"2","a:row":[{"x":1},{"x":2}],"row":[{"x":3}],"a:deep":{"x":4}}}})",
        converted(
            "oak",
            "<top xmlns='urn:oak'><box><size xmlns='urn:a'>1</size><size>2</size><row xmlns='urn:a'><x>1</x></row>"
            "<row xmlns='urn:a'><x>2</x></row><row><x>3</x></row><deep xmlns='urn:a'><x>4</x></deep></box></top>",
            true));
}

TEST_F(ExactXmlToJsonTest, HasTheDefaultsRoots)
{
    for (const bool isOn : {false, true})
    {
        EXPECT_EQ(R"({"nothing":{"box":{}}})",
                  converted("wood", "<nothing><a>1</a><box><label>x</label></box></nothing>", isOn));
        EXPECT_EQ("{}" + noField("wood"), converted("wood", "<wood/>", isOn));
        EXPECT_EQ("{}", converted("wood", "<wood>x</wood>", isOn));
        EXPECT_EQ("{}" + noField("wood"), converted("wood", "<wood>\n</wood>", isOn));
        EXPECT_EQ("{}", converted("wood", "<wood><!-- x --></wood>", isOn));
        EXPECT_EQ("{}", converted("wood", "<wood><![CDATA[x]]></wood>", isOn));
        EXPECT_EQ(R"({"wood":{"count":1}})",
                  converted("wood", "<!-- a --><wood><count>1</count></wood><!-- b -->", isOn));
        const auto compiler = open<OpenXmlToJsonCompiler>("wood", kTexts);
        EXPECT_EQ(1u, compiler->Encode(nullptr));
        const XmlDocument rootless("<x/>");
        xmlNode *root = rootless.root();
        xmlUnlinkNode(root);
        xmlFreeNode(root);
        EXPECT_EQ(2u, compiler->Encode(rootless.get()));
    }
}

TEST_F(ExactXmlToJsonTest, StopsOnErrorWhenAsked)
{
    setLossless(true);
    const auto compiler = open<OpenXmlToJsonCompiler>("wood", kTexts);
    compiler->ucStopOnError = 1;
    const XmlDocument document("<wood><text>a</text><nothing>1</nothing><count>2</count></wood>");
    EXPECT_EQ(6u, compiler->Encode(document.get()));
    EXPECT_LOG(log(), "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 6.");
    EXPECT_EQ(R"({"wood":{"text":"a"}})", takeResult(*compiler, 0).bytes);
}

TEST_F(ExactXmlToJsonTest, ReplacesTheEarlierResult)
{
    setLossless(true);
    const auto compiler = open<OpenXmlToJsonCompiler>("wood", kTexts);
    for (const char *label : {"a", "b"})
    {
        const XmlDocument document("<wood><boxes><boxes><label>" + std::string(label) +
                                   "</label></boxes></boxes></wood>");
        EXPECT_EQ(0u, compiler->Encode(document.get()));
        EXPECT_EQ("{\"wood\":{\"boxes\":[{\"boxes\":[{\"label\":\"" + std::string(label) + "\"}]}]}}",
                  takeResult(*compiler, 0).bytes);
    }
}

TEST_F(ExactXmlToJsonTest, ReportsALeafThatTakesNoText)
{
    addModule("old", R"(syntax = "proto2"; package old; message Top { optional group Part = 1 { optional int32 a = 2; }
        optional int32 x = 3; })");
    for (const bool isOn : {false, true})
    {
        EXPECT_EQ(
            "{\"top\":{\"x\":1}}0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [part] type 10.\n",
            converted("old", "<top><part>1</part><x>1</x></top>", isOn));
    }
}

TEST_F(ExactXmlToJsonTest, SurvivesEachFailingPlatformCall)
{
    setLossless(true);
    const XmlDocument document("<wood><count>1</count><names>a</names><boxes><boxes><label>l</label></boxes></boxes>"
                               "<bush><red-leaf>x</red-leaf></bush><nothing>1</nothing><none><a/></none>"
                               "<size xmlns='urn:oak'>o</size></wood>");
    const uint64_t calls = failEachCall(
        [&](const FaultRun &run)
        {
            const auto compiler = open<OpenXmlToJsonCompiler>("wood", kTexts);
            const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
            EXPECT_EQ(0u, result.code);
            if (!run.fails())
            {
                EXPECT_EQ(R"({"wood":{"count":1,"names":["a"],"boxes":[{"boxes":[{"label":"l"}]}],)"
                          R"("bush":[{"red-leaf":"x"}],"oak:size":"o"}})",
                          result.bytes);
            }
        });
    EXPECT_GT(calls, 5u);
}

TEST_F(ExactXmlToJsonTest, GoesAsDeepAsTheDefault)
{
    addModule("nest", kNodeProto);
    const auto nested = [](const std::string &name, unsigned depth)
    {
        std::string xml = "<node>";
        for (unsigned i = 1; i < depth; ++i)
        {
            xml += "<" + name + ">";
        }
        xml += "<leaf>1</leaf>";
        for (unsigned i = 1; i < depth; ++i)
        {
            xml += "</" + name + ">";
        }
        return xml + "</node>";
    };
    const std::string refused =
        "0: [GpbXmlCompilerJson][ProcXmlContainerNode]Fail to make container [node]. depth is 1000.\n";
    for (const bool isOn : {false, true})
    {
        const std::string last = converted("nest", nested("node", GPB_JSON_MAX_DEPTH), isOn, kTexts, XML_PARSE_HUGE);
        EXPECT_NE(std::string::npos, last.find("\"leaf\":1"));
        EXPECT_EQ(last.size() - 8 + refused.size(),
                  converted("nest", nested("node", 2000), isOn, kTexts, XML_PARSE_HUGE).size());
    }
    // An entry counts for its array, too. What is refused is left out, and what is not can be read again.
    const std::string lists = converted("nest", nested("kids", 499), true, kTexts, XML_PARSE_HUGE);
    const JsonTree tree(lists);
    EXPECT_NE(std::string::npos, lists.find("\"leaf\":1"));
    const std::string tooDeep = converted("nest", nested("kids", 600), true, kTexts, XML_PARSE_HUGE);
    EXPECT_EQ(std::string::npos, tooDeep.find("\"leaf\":1"));
    EXPECT_NE(std::string::npos, tooDeep.find("Fail to make container [kids]"));
}

} // namespace
} // namespace gpbtest
