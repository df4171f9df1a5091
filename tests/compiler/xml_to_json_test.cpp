// XML to JSON: the documents.
#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

/** Where a text begins with a line feed, the element is a container that is only present. */
constexpr const char *kFormatting = "\n  ";

class XmlToJsonTest : public JsonFixture
{
protected:
    static constexpr unsigned char kTexts = 0;
    static constexpr unsigned char kNumbers = 1;

    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    /**
     * The JSON text of a document, and its code; the log has what was logged meanwhile. A compiler that is no subclass,
     * which need not keep a tree that anybody can look at, has to give the same and to log the same. Once more, where
     * nobody listens, the same comes out.
     */
    CompilerResult encode(const std::string &module, const std::string &xml, unsigned char flag = kTexts,
                          int options = 0)
    {
        const XmlDocument document(xml, options);
        const auto twin = open<GpbXmlCompilerJson>(module, flag);
        log().clear();
        const CompilerResult twinResult = takeResult(*twin, twin->Encode(document.get()));
        const std::string twinLines = log().take();
        const auto compiler = open<OpenXmlToJsonCompiler>(module, flag);
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(result.code, twinResult.code);
        EXPECT_EQ(result.isNull, twinResult.isNull);
        EXPECT_EQ(result.bytes, twinResult.bytes);
        std::vector<std::string> lines;
        for (const LogLine &line : log().lines())
        {
            lines.push_back(line.str());
        }
        EXPECT_EQ(joinLines(lines), twinLines);
        const ClosedSlots closed(context());
        const auto silent = open<GpbXmlCompilerJson>(module, flag);
        const CompilerResult silentResult = takeResult(*silent, silent->Encode(document.get()));
        EXPECT_EQ(result.code, silentResult.code);
        EXPECT_EQ(result.isNull, silentResult.isNull);
        EXPECT_EQ(result.bytes, silentResult.bytes);
        return result;
    }

    /** Expects the JSON text of a plant, and these lines. */
    void gives(const std::string &content, const std::string &json, const std::vector<std::string> &lines = {},
               unsigned char flag = kTexts)
    {
        SCOPED_TRACE(content);
        const CompilerResult result = encode("plant", "<plant>" + content + "</plant>", flag);
        EXPECT_EQ(0u, result.code);
        EXPECT_FALSE(result.isNull);
        EXPECT_EQ("{\"plant\":{" + json + "}}", result.bytes);
        EXPECT_EQ(joinLines(lines), log().take());
    }

    static std::string notFound(const std::string &name)
    {
        return "2: Fail to find field descriptore for name " + name + ".";
    }
};

constexpr const char *kAllXml = "<ratio>1.5</ratio><load>0.25</load><big>9007199254740993</big>"
                                "<ubig>18446744073709551615</ubig><level>-7</level><fix64>64</fix64><fix32>32</fix32>"
                                "<on>true</on><first-name>Ann</first-name><blob>raw</blob><count>4294967295</count>"
                                "<state>up</state><sfix32>-32</sfix32><sfix64>-64</sfix64><zig32>-1</zig32>"
                                "<zig64>-2</zig64>";

TEST_F(XmlToJsonTest, WritesSixtyFourBitIntegersAsTexts)
{
    gives(kAllXml, R"("ratio":1.5,"load":0.25,"big":"9007199254740993","ubig":"18446744073709551615","level":-7,)"
                   R"("fix64":"64","fix32":32,"on":true,"first-name":"Ann","blob":"raw","count":4294967295,)"
                   R"("state":"up","sfix32":-32,"sfix64":"-64","zig32":-1,"zig64":"-2")");
    // Only the flag 1 asks for numbers.
    gives("<big>123</big>", R"("big":"123")", {}, 2);
}

TEST_F(XmlToJsonTest, WritesSixtyFourBitIntegersAsNumbersWhenAsked)
{
    gives("<big>-123</big><ubig>123456789012345</ubig><fix64>64</fix64><sfix64>-64</sfix64><zig64>-2</zig64>"
          "<level>5</level><first-name>7</first-name>",
          R"("big":-123,"ubig":123456789012345,"fix64":64,"sfix64":-64,"zig64":-2,"level":5,"first-name":"7")", {},
          kNumbers);
}

TEST_F(XmlToJsonTest, PassesNumbersThroughADouble)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kNumbers);
    const XmlDocument document("<plant><big>9007199254740993</big></plant>");
    EXPECT_EQ(0u, compiler->Encode(document.get()));
    EXPECT_EQ(9007199254740992.0, compiler->pstJsonRoot->child->child->valuedouble);
}

TEST_F(XmlToJsonTest, ReadsNumbersWithoutAnyCheck)
{
    gives("<level>12abc</level><count>abc</count><ratio> 2.5 </ratio><zig32>0x10</zig32>",
          R"("level":12,"count":0,"ratio":2.5,"zig32":16)");
    gives("<ratio>nan</ratio><load>inf</load>", R"("ratio":null,"load":null)");
    gives("<big>12abc</big>", R"("big":"12abc")");
}

TEST_F(XmlToJsonTest, ReadsBooleansInAnyCase)
{
    gives("<on>TRUE</on>", R"("on":true)");
    gives("<on>True</on>", R"("on":true)");
    gives("<on>yes</on>", R"("on":false)");
    gives("<on>1</on>", R"("on":false)");
    gives("<on> true</on>", R"("on":false)");
    gives("<on>false</on>", R"("on":false)");
}

TEST_F(XmlToJsonTest, NamesMembersAfterTheirElements)
{
    gives("<First-Name>a</First-Name><first_name>b</first_name><LEVEL>1</LEVEL>",
          R"("First-Name":"a","first_name":"b","LEVEL":1)");
    gives("<x:level xmlns:x='urn:x'>1</x:level>", R"("level":1)");
}

TEST_F(XmlToJsonTest, EscapesTexts)
{
    gives("<first-name>a\"b\\c&lt;\xc3\xa4</first-name>", "\"first-name\":\"a\\\"b\\\\c<\xc3\xa4\"");
}

TEST_F(XmlToJsonTest, NestsContainersAndGathersLists)
{
    gives("<box><label>a</label><lid><colour>red</colour></lid></box>",
          R"("box":{"label":"a","lid":{"colour":"red"}})");
    gives("<boxes><label>a</label></boxes><level>1</level><boxes><size>2</size></boxes>",
          R"("boxes":[{"label":"a"},{"size":2}],"level":1)");
    gives(
        "<names>a</names><level>1</level><names>b</names><numbers>1</numbers><states>up</states><states>none</states>",
        R"("names":["a","b"],"level":1,"numbers":[1],"states":["up","none"])");
}

TEST_F(XmlToJsonTest, WritesWhatIsOnlyPresent)
{
    gives("<on/><flags/><flags/>", R"("on":true,"flags":[true,true])");
    gives(std::string("<box>") + kFormatting + "</box><boxes>" + kFormatting + "</boxes>", R"("box":{},"boxes":[{}])");
    gives("<box/><level/><first-name/>", "");
    gives("<box><!-- nothing --></box><boxes><label/></boxes>", R"("boxes":[{}])");
}

TEST_F(XmlToJsonTest, PassesOverWhatItDoesNotFind)
{
    gives("<nothing>1</nothing><level>1</level>", R"("level":1)");
    gives("<nothing/><level>1</level>", R"("level":1)", {notFound("nothing")});
    gives("<nothing><x>1</x></nothing><level>1</level>", R"("level":1)", {notFound("nothing")});
    gives(std::string("<nothing>") + kFormatting + "</nothing><level>1</level>", R"("level":1)", {notFound("nothing")});
    gives("<nothing/><box><nothing/><size>1</size></box>", R"("box":{"size":1})",
          {notFound("nothing"), notFound("nothing")});
    const std::string longName(128, 'n');
    gives("<" + longName + "/>", "", {notFound(longName)});
}

TEST_F(XmlToJsonTest, PassesOverIgnoredElements)
{
    gives("<box __tlmtIgnored='1'><label>a</label></box><level __tlmtIgnored='1x'>1</level><count>2</count>",
          R"("count":2)");
    gives("<box __tlmtIgnored='0'><label>a</label></box><level __tlmtIgnored=''>1</level>",
          R"("box":{"label":"a"},"level":1)");
    gives("<on __tlmtIgnored='1'/>", R"("on":true)");
}

TEST_F(XmlToJsonTest, PassesOverWhatIsNoElement)
{
    gives("<!-- c --><?pi x?>\n <level>1</level> text <!-- d -->", R"("level":1)");
    gives("<level><!-- c --></level>", "");
    gives("<first-name><![CDATA[x<y]]></first-name>", "");
    const CompilerResult result = encode("plant", "<!DOCTYPE plant [<!ENTITY e '<level>1</level>'>]>"
                                                  "<plant>&e;<count>2</count></plant><!-- after --><?pi?>");
    EXPECT_EQ(R"({"plant":{"count":2}})", result.bytes);
}

TEST_F(XmlToJsonTest, TakesALeafBeforeAContainerOfItsName)
{
    // A leaf looks into the cases of the choice when its name is a container's.
    addModule("twin", R"(syntax = "proto3"; package twin;
        message Top { message Name { int32 x = 1; } Name name = 1;
                      message CaseA { string name = 1; } oneof way { CaseA case_a = 2; } })");
    EXPECT_EQ(R"({"top":{"name":"leaf"}})", encode("twin", "<top><name>leaf</name></top>").bytes);
    EXPECT_EQ(R"({"top":{"name":{"x":1}}})", encode("twin", "<top><name><x>1</x></name></top>").bytes);
}

TEST_F(XmlToJsonTest, PutsTheNodesOfACaseIntoTheParent)
{
    gives("<left-leaf>x</left-leaf><inner><depth>1</depth></inner><sides>b</sides><right-leaf>y</right-leaf>",
          R"("left-leaf":"x","inner":{"depth":1},"sides":["b"],"right-leaf":"y")");
    gives("<cell>x</cell><sub><x>1</x></sub>", R"("cell":"x","sub":{"x":1})");
    gives("<left><left-leaf>x</left-leaf></left>", R"("left":{"left-leaf":"x"})");
}

TEST_F(XmlToJsonTest, FindsFieldsWithALayerNumber)
{
    addModule("suffix", R"(syntax = "proto3"; package suffix;
        message Top { int32 name2 = 1; message Sub { int32 name3 = 1; } Sub sub = 2; repeated Sub list2 = 3; })");
    EXPECT_EQ(R"({"top":{"name":1,"sub":{"name":2},"list":[{"name":3}]}})",
              encode("suffix", "<top><name>1</name><sub><name>2</name></sub><list><name>3</name></list></top>").bytes);
}

TEST_F(XmlToJsonTest, ReportsALeafThatMeetsAMessageOrGroup)
{
    addModule("grouped", R"(syntax = "proto2"; package grouped;
        message Top { optional group One = 1 { optional int32 x = 1; } optional int32 z = 3; })");
    EXPECT_EQ(R"({"top":{"z":1}})", encode("grouped", "<top><one>1</one><z>1</z></top>").bytes);
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [one] type 10.");
    // A message field is no leaf's, unless it is the leaf that a case offers.
    gives("<box>5</box>", "");
    addModule("inside", R"(syntax = "proto3"; package inside;
        message Top { message CaseA { message M { int32 x = 1; } M m = 1; } oneof way { CaseA case_a = 1; } })");
    EXPECT_EQ(R"({"top":{}})", encode("inside", "<top><m>5</m></top>").bytes);
    EXPECT_LOG(log(), "0: Fail to translator node [m] value [5].");
}

TEST_F(XmlToJsonTest, WritesIdentitiesWithTheirModule)
{
    addModule("openconfig-telemetry", R"(syntax = "proto3"; package t;
        message TelemetrySystem { message Subscriptions { message Persistent { message Subscription {
          string encoding = 1; } repeated Subscription subscription = 1; } Persistent persistent = 1; }
          Subscriptions subscriptions = 1; })");
    const auto document = [](const std::string &leaf)
    {
        return "<telemetry-system><subscriptions><persistent><subscription>" + leaf +
               "</subscription></persistent></subscriptions></telemetry-system>";
    };
    const auto expected = [](const std::string &value)
    {
        return "{\"telemetry-system\":{\"subscriptions\":{\"persistent\":{\"subscription\":[{\"encoding\":\"" + value +
               "\"}]}}}}";
    };
    events().clear();
    EXPECT_EQ(
        expected("openconfig-telemetry-types:GPB"),
        encode("openconfig-telemetry", document("<encoding xmlns:o='urn:o'>oc-telemetry-types:GPB</encoding>")).bytes);
    // By the compiler and by its twins, which live until all are done.
    EXPECT_EQ(joinLines({"gpb_xmlcompilerjson:408", "gpb_xmlcompilerjson:408", "gpb_xmlcompilerjson:408",
                         "gpb_xmlcompilerjson:138", "gpb_xmlcompilerjson:138", "gpb_xmlcompilerjson:138"}),
              joinLines(events().sites(GPB_HOST_EVENT_FREE)));
    EXPECT_EQ(expected("oc-telemetry-types:GPB"),
              encode("openconfig-telemetry", document("<encoding>oc-telemetry-types:GPB</encoding>")).bytes);
}

TEST_F(XmlToJsonTest, WritesBitsAsOneMember)
{
    addModule("system", R"(syntax = "proto3"; package s;
        message System { message SystemInfo { enum Bits { Bits_FTP = 0; Bits_SSH = 1; }
          repeated Bits sys_service = 1; repeated Bits other = 2; repeated string facility_mask = 3; }
          SystemInfo system_info = 1; })");
    EXPECT_EQ(R"({"system":{"system-info":{"sys-service":"ftp ssh","other":["ftp ssh"]}}})",
              encode("system", "<system><system-info><sys-service>ftp ssh</sys-service><other>ftp ssh</other>"
                               "</system-info></system>")
                  .bytes);
}

// ---- the root ----

TEST_F(XmlToJsonTest, FailsWithoutDocumentOrRoot)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    EXPECT_EQ(1u, compiler->Encode(nullptr));
    xmlDoc *empty = xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0"));
    EXPECT_EQ(2u, compiler->Encode(empty));
    xmlFreeDoc(empty);
    EXPECT_EQ("", log().take());
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
}

TEST_F(XmlToJsonTest, TakesARootWithoutContainer)
{
    EXPECT_EQ("{}", encode("plant", "<plant/>").bytes);
    EXPECT_LOG(log(), notFound("plant"));
    EXPECT_EQ("{}", encode("plant", "<plant>text</plant>").bytes);
    EXPECT_EQ("", log().take());
    EXPECT_EQ("{}", encode("plant", std::string("<plant>") + kFormatting + "</plant>").bytes);
    EXPECT_LOG(log(), notFound("plant"));
    EXPECT_EQ("{}", encode("plant", "<plant __tlmtIgnored='1'><level>1</level></plant>").bytes);
    EXPECT_EQ("", log().take());
}

TEST_F(XmlToJsonTest, LimitsTheRootsNameTo127Characters)
{
    const auto document = [](size_t length)
    {
        const std::string name(length, 'x');
        return "<" + name + "><level>1</level></" + name + ">";
    };
    EXPECT_EQ("{\"" + std::string(127, 'x') + "\":{}}", encode("plant", document(127)).bytes);
    // The object is made ahead of the name, and the failure is dropped as that of any container.
    const CompilerResult result = encode("plant", document(128));
    EXPECT_EQ(0u, result.code);
    EXPECT_EQ("{\"" + std::string(128, 'x') + "\":{}}", result.bytes);
    EXPECT_EQ("", log().take());
}

TEST_F(XmlToJsonTest, StopsAtFailuresOnlyWhenAsked)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    compiler->ucStopOnError = 1;
    const XmlDocument leaf("<plant><level>1</level><nothing>1</nothing><count>2</count></plant>");
    EXPECT_EQ(6u, compiler->Encode(leaf.get()));
    EXPECT_LOG(log(), "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 6.");
    EXPECT_EQ(R"({"plant":{"level":1}})", takeResult(*compiler, 0).bytes) << "what was made so far is there";
    const XmlDocument container("<plant><nothing><x>1</x></nothing><count>2</count></plant>");
    EXPECT_EQ(11u, compiler->Encode(container.get()));
    EXPECT_LOG(log(), notFound("nothing"), "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.");
    const std::string name(128, 'x');
    const XmlDocument root("<" + name + "><a>1</a></" + name + ">");
    EXPECT_EQ(11u, compiler->Encode(root.get()));
    EXPECT_LOG(log(), "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.");
    const XmlDocument harmless("<plant><nothing/><box/><level/><count>2</count></plant>");
    EXPECT_EQ(0u, compiler->Encode(harmless.get()));
    EXPECT_LOG(log(), notFound("nothing"));
}

// ---- results ----

TEST_F(XmlToJsonTest, PrintsTheResultOnce)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    const XmlDocument document("<plant><level>1</level></plant>");
    EXPECT_EQ(nullptr, compiler->GetResult(nullptr));
    EXPECT_EQ(0u, compiler->Encode(document.get()));
    unsigned int length = 0;
    const char *text = compiler->GetResult(&length);
    EXPECT_STREQ(R"({"plant":{"level":1}})", text);
    EXPECT_EQ(21u, length);
    events().clear();
    length = 0;
    EXPECT_EQ(text, compiler->GetResult(&length));
    EXPECT_EQ(21u, length);
    EXPECT_TRUE(events().events().empty());
    EXPECT_EQ(nullptr, compiler->GetResult(nullptr));
}

TEST_F(XmlToJsonTest, ClearsTheResultAheadOfTheNextOne)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    const XmlDocument first("<plant><names>a</names></plant>");
    const XmlDocument second("<plant><names>b</names></plant>");
    EXPECT_EQ(R"({"plant":{"names":["a"]}})", takeResult(*compiler, compiler->Encode(first.get())).bytes);
    events().clear();
    EXPECT_EQ(0u, compiler->Encode(second.get()));
    EXPECT_EQ(joinLines({"gpb_xmlcompilerjson:153"}), joinLines(events().sites(GPB_HOST_EVENT_FREE)));
    EXPECT_EQ(R"({"plant":{"names":["b"]}})", takeResult(*compiler, 0).bytes);
    // Documents that are none leave the result.
    EXPECT_EQ(1u, compiler->Encode(nullptr));
    EXPECT_EQ(R"({"plant":{"names":["b"]}})", takeResult(*compiler, 0).bytes);
    compiler->ClearResult();
    EXPECT_TRUE(compiler->mapListNode.empty());
    EXPECT_EQ(nullptr, compiler->pstJsonRoot);
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
}

TEST_F(XmlToJsonTest, DoesNothingWithJson)
{
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    const JsonTree tree(R"({"plant":{}})");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.root(), nullptr));
    EXPECT_EQ("", log().take());
}

TEST_F(XmlToJsonTest, WalksIntoAThousandContainers)
{
    addModule("nest", kNodeProto);
    const auto nested = [](unsigned int depth)
    {
        std::string text = "<leaf>1</leaf>";
        for (unsigned int i = 0; i < depth; ++i)
        {
            text = "<node>" + text + "</node>";
        }
        return text;
    };
    const CompilerResult deepest = encode("nest", nested(GPB_JSON_MAX_DEPTH - 1), kTexts, XML_PARSE_HUGE);
    cJSON *tree = cJSON_Parse(deepest.bytes.c_str());
    EXPECT_NE(nullptr, tree) << "a document as deep as that can be read back";
    cJSON_Delete(tree);
    EXPECT_NE(std::string::npos, deepest.bytes.find("leaf"));
    EXPECT_EQ("", log().take());
    const CompilerResult last = encode("nest", nested(GPB_JSON_MAX_DEPTH), kTexts, XML_PARSE_HUGE);
    EXPECT_NE(std::string::npos, last.bytes.find("leaf"));
    EXPECT_EQ("", log().take());
    for (const unsigned int depth : {GPB_JSON_MAX_DEPTH + 1, 5 * GPB_JSON_MAX_DEPTH})
    {
        const CompilerResult below = encode("nest", nested(depth), kTexts, XML_PARSE_HUGE);
        EXPECT_EQ(0u, below.code);
        EXPECT_EQ(std::string::npos, below.bytes.find("leaf"));
        EXPECT_LOG(log(), "0: [GpbXmlCompilerJson][ProcXmlContainerNode]Fail to make container [node]. depth is 1000.");
    }
}

TEST_F(XmlToJsonTest, AddersTakeNull)
{
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddNumber(nullptr, nullptr, kModuleId));
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddString(nullptr, nullptr, kModuleId));
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddEnum(nullptr, nullptr, kModuleId));
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddBool(nullptr, nullptr, kModuleId));
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddMessage(nullptr, "1", kModuleId));
    EXPECT_STREQ("", GpbXmlCompilerJson_GetFieldName(nullptr, nullptr));
    const auto compiler = open<OpenXmlToJsonCompiler>("plant", kTexts);
    EXPECT_EQ(1u, compiler->CreateJsField(nullptr, nullptr, nullptr, "1", GpbXmlCompilerJson_AddNumber));
}

using XmlToJsonOddityTest = XmlToJsonTest;

TEST_F(XmlToJsonOddityTest, AllEntriesOfAListInAListGoToTheFirstArray)
{
    gives("<boxes><lids><colour>a</colour></lids><tags>t</tags></boxes><boxes><lids><colour>b</colour></lids>"
          "<tags>u</tags></boxes>",
          R"("boxes":[{"lids":[{"colour":"a"},{"colour":"b"}],"tags":["t","u"]},{}])");
}

TEST_F(XmlToJsonOddityTest, ContainersAndLeavesThatStandTwiceAreTwoMembers)
{
    gives("<box><size>1</size></box><box><size>2</size></box><level>1</level><level>2</level>",
          R"("box":{"size":1},"box":{"size":2},"level":1,"level":2)");
}

TEST_F(XmlToJsonOddityTest, AnElementWithChildrenMakesAnObjectOfALeafsField)
{
    gives("<level><x>1</x></level><names><x>1</x></names>", R"("level":{},"names":[{}])");
    gives(std::string("<level>") + kFormatting + "</level>", R"("level":{})");
}

TEST_F(XmlToJsonOddityTest, BelowAnUnknownTypeContainersStandForThemselves)
{
    EXPECT_EQ(R"({"garden":{"bed":{},"plant":{"level":1}}})",
              encode("plant", "<garden><x>1</x><bed><y>1</y></bed><plant><level>1</level></plant></garden>").bytes);
    EXPECT_EQ("", log().take());
}

} // namespace
} // namespace gpbtest
