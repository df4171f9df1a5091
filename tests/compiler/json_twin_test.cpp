// A document in XML and in JSON: where both give the same message, and where they do not.
#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

class JsonTwinTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    std::string fromXml(const std::string &content)
    {
        const XmlDocument document("<plant>" + content + "</plant>");
        const auto compiler = open<GpbXmlCompiler>("plant");
        return takeResult(*compiler, compiler->Encode(document.get())).bytes;
    }

    std::string fromJson(const std::string &members)
    {
        const JsonTree tree("{\"plant\":{" + members + "}}");
        const auto compiler = open<OpenJsonCompiler>("plant");
        return takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root())).bytes;
    }

    void same(const std::string &xml, const std::string &json, const std::string &textForm)
    {
        SCOPED_TRACE(xml + " and " + json);
        EXPECT_TRUE(judge().holds("plant.Plant", fromXml(xml), textForm));
        EXPECT_TRUE(judge().holds("plant.Plant", fromJson(json), textForm));
    }

    void differ(const std::string &xml, const std::string &xmlForm, const std::string &json,
                const std::string &jsonForm)
    {
        SCOPED_TRACE(xml + " and " + json);
        EXPECT_TRUE(judge().holds("plant.Plant", fromXml(xml), xmlForm));
        EXPECT_TRUE(judge().holds("plant.Plant", fromJson(json), jsonForm));
    }
};

TEST_F(JsonTwinTest, SameForContainersListsAndLeaves)
{
    same("<level>3</level><first-name>a</first-name><on>true</on><ratio>0.5</ratio>",
         R"("level":3,"first-name":"a","on":true,"ratio":0.5)", "level:3 first_name:'a' on:true ratio:0.5");
    same("<box><label>a</label><lid><colour>c</colour></lid></box><boxes><size>1</size></boxes><boxes><size>2</size></"
         "boxes>",
         R"("box":{"label":"a","lid":{"colour":"c"}},"boxes":[{"size":1},{"size":2}])",
         "box{label:'a' lid{colour:'c'}} boxes{size:1} boxes{size:2}");
    same("<left-leaf>x</left-leaf><level>1</level>", R"("left-leaf":"x","level":1)", "left{left_leaf:'x'} level:1");
}

TEST_F(JsonTwinTest, SameForEnumsAndTheirLists)
{
    same("<state>up</state><states>up</states><states>2g</states>", R"("state":"up","states":["up","2g"])",
         "state:State_UP states:State_UP states:State_X_2G");
}

TEST_F(JsonTwinTest, SameForEmptyLeavesAndEmptyContainers)
{
    same("<on/>", R"("on":null)", "on:true");
    same("<box>\n</box>", R"("box":{})", "box{}");
}

TEST_F(JsonTwinTest, SameForSixtyFourBitsAsTexts)
{
    same("<big>9223372036854775807</big><ubig>18446744073709551615</ubig>",
         R"("big":"9223372036854775807","ubig":"18446744073709551615")",
         "big:9223372036854775807 ubig:18446744073709551615");
}

TEST_F(JsonTwinTest, DifferForSixtyFourBitsAsNumbers)
{
    differ("<big>123456789012345678</big>", "big:123456789012345678", R"("big":123456789012345678)", "big:1");
}

TEST_F(JsonTwinTest, DifferForLeafListsThatAreNoEnumeration)
{
    differ("<names>a</names><names>b</names><numbers>1</numbers>", "names:'a' names:'b' numbers:1",
           R"("names":["a","b"],"numbers":[1])", "");
    same("<names>a</names>", R"("names":"a")", "names:'a'");
}

TEST_F(JsonTwinTest, DifferForEmptyTexts)
{
    differ("<first-name/>", "", R"("first-name":"")", "first_name:''");
}

TEST_F(JsonTwinTest, DifferForUnknownNodes)
{
    differ("<nothing>1</nothing><level>1</level>", "level:1", R"("nothing":1,"level":1)", "");
}

TEST_F(JsonTwinTest, DifferForEnumValuesThatDoNotConvert)
{
    // Both go on, and both drop the value.
    same("<state>sideways</state><level>1</level>", R"("state":"sideways","level":1)", "level:1");
    // A leaf-list in JSON ends at a member that is no value; XML has no such member.
    differ("<states>up</states><states/><level>1</level>", "states:State_UP level:1",
           R"("states":["up",null],"level":1)", "");
}

TEST_F(JsonTwinTest, TheExampleOfTheDocumentsPage)
{
    addModule("garden", R"(syntax = "proto3";
        package garden;
        message Garden {
          string owner_name = 1;
          bool open = 2;
          repeated string tags = 3;
          message Bed {
            string name = 1;
            uint64 visits = 2;
            enum State { State_DRY = 0; State_WET = 1; State_X_2ND = 2; }
            State state = 3;
            repeated State history = 4;
            message CaseRoses { int32 thorns = 1; }
            message CaseHerbs { string smell = 1; }
            oneof plants { CaseRoses roses = 5; CaseHerbs herbs = 6; }
          }
          repeated Bed bed = 4;
          message Pond { int32 depth = 1; }
          Pond pond = 5;
        })");
    const char *message = "owner_name:'Ann' open:true tags:'old' bed{name:'south' visits:9007199254740993 "
                          "state:State_X_2ND history:State_DRY history:State_WET roses{thorns:7}} pond{depth:2}";
    const XmlDocument document("<garden><owner-name>Ann</owner-name><open/><tags>old</tags><bed><name>south</name>"
                               "<visits>9007199254740993</visits><state>2nd</state><history>dry</history>"
                               "<history>wet</history><thorns>7</thorns></bed><pond><depth>2</depth></pond></garden>");
    const auto xmlToGpb = open<GpbXmlCompiler>("garden");
    EXPECT_TRUE(judge().holds("garden.Garden", takeResult(*xmlToGpb, xmlToGpb->Encode(document.get())).bytes, message));
    log().clear();
    const std::string bed = R"([{"name":"south","visits":"9007199254740993","state":"2nd","history":["dry","wet"],)"
                            R"("thorns":7}],"pond":{"depth":2}}})";
    expectEncodes("garden", R"({"garden":{"owner-name":"Ann","open":null,"tags":"old","bed":)" + bed, "garden.Garden",
                  message);
    const auto xmlToJson = open<OpenXmlToJsonCompiler>("garden", static_cast<unsigned char>(0));
    EXPECT_EQ(R"({"garden":{"owner-name":"Ann","open":true,"tags":["old"],"bed":)" + bed,
              takeResult(*xmlToJson, xmlToJson->Encode(document.get())).bytes);
}

TEST_F(JsonTwinTest, AnXmlDocumentTurnedIntoJsonEncodesTheSame)
{
    const XmlDocument document(
        "<plant><level>3</level><big>9223372036854775807</big><state>up</state><states>2g</states>"
        "<boxes><label>a</label></boxes><boxes><label>b</label></boxes><on/></plant>");
    const auto toJson = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
    const JsonTree tree(takeResult(*toJson, toJson->Encode(document.get())).bytes);
    const auto fromTree = open<OpenJsonCompiler>("plant");
    EXPECT_TRUE(judge().holds("plant.Plant",
                              takeResult(*fromTree, fromTree->EncodeJson(tree.root(), tree.root())).bytes,
                              "level:3 big:9223372036854775807 state:State_UP states:State_X_2G boxes{label:'a'} "
                              "boxes{label:'b'} on:true"));
}

} // namespace
} // namespace gpbtest
