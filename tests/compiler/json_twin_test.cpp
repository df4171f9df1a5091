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
