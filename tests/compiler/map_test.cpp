// Maps, which are lists of their entries to every compiler.
#include "compiler/json_fixture.h"
#include "platform/zmp.h"

namespace gpbtest
{
namespace
{

constexpr const char *kMapProto = R"(
syntax = "proto3";
package maps;
message Top {
  message Sub { string v = 1; map<string, string> deep = 2; }
  enum Kind { Kind_NONE = 0; Kind_UP = 1; }
  map<string, string> texts = 1;
  map<string, Sub> table = 2;
  map<int32, bool> flags = 3;
  map<string, Kind> kinds = 4;
  message CaseA { map<string, int64> counts = 1; }
  oneof way { CaseA case_a = 5; }
  string name = 6;
}
)";

class MapTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("maps", kMapProto);
    }

    void encodes(const std::string &members, const std::string &textForm, std::vector<std::string> lines = {})
    {
        expectEncodes("maps", "{\"top\":{" + members + "}}", "maps.Top", textForm, std::move(lines));
    }

    void fails(const std::string &members, std::vector<std::string> lines = {})
    {
        expectFails("maps", "{\"top\":{" + members + "}}", 1, std::move(lines));
    }

    /** Expects the JSON text of a document, and these lines. */
    void gives(const std::string &content, const std::string &json, const std::vector<std::string> &lines = {})
    {
        SCOPED_TRACE(content);
        const XmlDocument document("<top>" + content + "</top>");
        const auto compiler = open<OpenXmlToJsonCompiler>("maps", static_cast<unsigned char>(0));
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        EXPECT_EQ("{\"top\":{" + json + "}}", result.bytes);
        EXPECT_EQ(joinLines(lines), log().take());
    }
};

// ---- JSON to GPB ----

TEST_F(MapTest, JsonEntriesAreMembersOfAnArray)
{
    encodes(R"("texts":[{"key":"a","value":"1"},{"value":"2","key":"b"}],"name":"n")",
            "texts { key: 'a' value: '1' } texts { key: 'b' value: '2' } name: 'n'");
    encodes(R"("table":[{"key":"a","value":{"v":"1"}},{"key":"b","value":{"deep":[{"key":"c","value":"d"}]}}])",
            "table { key: 'a' value { v: '1' } } table { key: 'b' value { deep { key: 'c' value: 'd' } } }");
    encodes(R"("flags":[{"key":-5,"value":true},{"key":6,"value":null}])",
            "flags { key: -5 value: true } flags { key: 6 value: true }");
    encodes(R"("texts":[])", "");
}

TEST_F(MapTest, JsonEntryMayStandWithoutArray)
{
    encodes(R"("texts":{"key":"a","value":"1"},"texts":{"key":"b"})",
            "texts { key: 'a' value: '1' } texts { key: 'b' value: '' }");
    encodes(R"("texts":{},"name":"n")", "texts { key: '' value: '' } name: 'n'");
}

TEST_F(MapTest, JsonKeysAreNoMembers)
{
    fails(R"("texts":{"a":"1"})", {"2: Gpb Compiler leaf node fail to find field [a] from [maps.Top.texts]."});
    fails(R"("table":{"a":{"v":"1"}})");
}

TEST_F(MapTest, JsonMapIsNoLeaf)
{
    fails(R"("texts":"t")", {"0: Gpb Compiler fill leaf fail to find translator for node [texts] type 11."});
    fails(R"("texts":null)");
    // An array of values is a leaf-list, and one that is no enumeration is passed over.
    encodes(R"("texts":["t"],"name":"n")", "name: 'n'");
}

TEST_F(MapTest, JsonMapOfACaseOpensTheCase)
{
    encodes(R"("counts":[{"key":"a","value":"7"}],"name":"n")", "case_a { counts { key: 'a' value: 7 } } name: 'n'");
}

// The enumeration is not nested in the type of the entries, so none of its values is found.
TEST_F(MapTest, EnumValuesOfAMapAreNotFound)
{
    encodes(R"("kinds":[{"key":"a","value":"up"}])", "kinds { key: 'a' value: Kind_NONE }",
            {"0: Gpb Compiler  fill leaf fail to translator layer [maps.Top.kinds]."});
    const XmlDocument document("<top><kinds><key>a</key><value>up</value></kinds></top>");
    const auto compiler = open<GpbXmlCompiler>("maps");
    const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
    EXPECT_TRUE(judge().holds("maps.Top", result.bytes, "kinds { key: 'a' value: Kind_NONE }"));
    EXPECT_EQ("0: [GpbXmlCompiler][FillLeafField]Fail to translator node [value] value [up] to layer [maps.Top.kinds].",
              log().lines().front().str());
}

// What is written does not depend on whether somebody listens to the dump, which is the one that sorts maps.
TEST_F(MapTest, EntriesOfOneKeyStayInTheirOrder)
{
    const std::string entries("\x0a\x06\x0a\x01"
                              "b\x12\x01"
                              "1\x0a\x06\x0a\x01"
                              "a\x12\x01"
                              "2\x0a\x06\x0a\x01"
                              "b\x12\x01"
                              "3");
    const JsonTree tree(
        R"({"top":{"texts":[{"key":"b","value":"1"},{"key":"a","value":"2"},{"key":"b","value":"3"}]}})");
    const XmlDocument document("<top><texts><key>b</key><value>1</value></texts><texts><key>a</key><value>2</value>"
                               "</texts><texts><key>b</key><value>3</value></texts></top>");
    for (const bool isDumped : {true, false})
    {
        SCOPED_TRACE(isDumped);
        if (!isDumped)
        {
            recreateContext({3});
            ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "maps", 0));
        }
        const auto fromJson = open<OpenJsonCompiler>("maps");
        EXPECT_EQ(entries, takeResult(*fromJson, fromJson->EncodeJson(tree.root(), tree.root())).bytes);
        const auto fromXml = open<GpbXmlCompiler>("maps");
        EXPECT_EQ(entries, takeResult(*fromXml, fromXml->Encode(document.get())).bytes);
    }
}

TEST_F(MapTest, JsonEntryIsAPart)
{
    const std::string json = R"({"top":{"table":[{"key":"a","value":{"v":"1"}}],"name":"n"}})";
    expectPart("maps", json, "table", "maps.Top.TableEntry", "key: 'a' value { v: '1' }");
    expectPart("maps", json, "table/0/value", "maps.Top.Sub", "v: '1'");
    expectPart("maps", json, "table/0/key", "maps.Top.TableEntry", "key: 'a' value { v: '1' }");
}

TEST_F(MapTest, KeyAndValueAreTheLeavesOfAnEntry)
{
    const JsonTree tree(R"({"top":{"texts":[],"table":[]}})");
    const auto compiler = open<OpenJsonCompiler>("maps");
    char *names[4] = {};
    uint32_t types[4] = {};
    GpbMdlAttr record = {names, types, 0, 0};
    EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.at("texts"), &record));
    ASSERT_EQ(2, record.ucCount);
    EXPECT_STREQ("key", names[0]);
    EXPECT_STREQ("value", names[1]);
    EXPECT_EQ(GPB_MDL_TYPE_STRING, types[0]);
    EXPECT_EQ(GPB_MDL_TYPE_STRING, types[1]);
    GpbMdlAttr ofTable = {names + 2, types + 2, 0, 0};
    EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.at("table"), &ofTable));
    EXPECT_EQ(1, ofTable.ucCount) << "a message is no leaf";
    for (char *name : names)
    {
        if (name != nullptr)
        {
            ZMP_Free_F(name, "map_test", 0);
        }
    }
    EXPECT_EQ("", log().take());
}

// ---- XML to JSON ----

TEST_F(MapTest, XmlEntriesAreGathered)
{
    gives("<texts><key>a</key><value>1</value></texts><name>n</name><texts><key>b</key></texts>",
          R"("texts":[{"key":"a","value":"1"},{"key":"b"}],"name":"n")");
    gives("<table><key>a</key><value><v>1</v></value></table><flags><key>5</key><value/></flags>"
          "<kinds><key>k</key><value>up</value></kinds>",
          R"("table":[{"key":"a","value":{"v":"1"}}],"flags":[{"key":5,"value":true}],)"
          R"("kinds":[{"key":"k","value":"up"}])");
    gives("<texts>\n</texts><counts><key>a</key><value>7</value></counts>",
          R"("texts":[{}],"counts":[{"key":"a","value":"7"}])");
}

TEST_F(MapTest, XmlMapIsNoLeaf)
{
    gives("<texts>t</texts><texts/><name>n</name>", R"("name":"n")");
}

} // namespace
} // namespace gpbtest
