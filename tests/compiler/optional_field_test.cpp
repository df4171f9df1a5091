// Fields that are declared optional in proto3. Protobuf puts each into a oneof that it makes up; that is no choice.
#include "compiler/json_fixture.h"
#include "platform/zmp.h"

namespace gpbtest
{
namespace
{

constexpr const char *kOptionalProto = R"(
syntax = "proto3";
package opt;
message Top {
  optional int32 count = 1;
  optional bool on = 2;
  optional string name = 3;
  message Sub { optional string inside = 1; optional int32 size = 2; }
  optional Sub sub = 4;
  optional Sub other = 5;
  enum Kind { Kind_NONE = 0; Kind_UP = 1; }
  optional Kind kind = 6;
  message Case {
    optional string in_case = 1;
    message InSub { optional string lower = 1; optional int32 height = 2; }
    optional InSub in_sub = 2;
  }
  oneof way { Case one = 7; string text = 8; }
  optional double real = 9;
}
)";

class OptionalFieldTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("opt", kOptionalProto);
    }

    /** Both compilers of messages give this message for documents that say the same, without a failing line. */
    void bothGive(const std::string &xml, const std::string &json, const std::string &textForm)
    {
        SCOPED_TRACE(xml + " and " + json);
        log().clear();
        const XmlDocument document("<top>" + xml + "</top>");
        const auto fromXml = open<GpbXmlCompiler>("opt");
        EXPECT_TRUE(judge().holds("opt.Top", takeResult(*fromXml, fromXml->Encode(document.get())).bytes, textForm));
        EXPECT_EQ(std::vector<std::string>(), log().textsOfLevel(0));
        EXPECT_EQ(std::vector<std::string>(), log().textsOfLevel(2));
        log().clear();
        expectEncodes("opt", "{\"top\":{" + json + "}}", "opt.Top", textForm);
    }

    /** Expects the JSON text of a document, and these lines. */
    void gives(const std::string &content, const std::string &json, const std::vector<std::string> &lines = {})
    {
        SCOPED_TRACE(content);
        const XmlDocument document("<top>" + content + "</top>");
        const auto compiler = open<OpenXmlToJsonCompiler>("opt", static_cast<unsigned char>(0));
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        EXPECT_EQ("{\"top\":{" + json + "}}", result.bytes);
        EXPECT_EQ(joinLines(lines), log().take());
    }
};

TEST_F(OptionalFieldTest, ValuesOfZeroArePresent)
{
    bothGive("<count>0</count><on>false</on><kind>none</kind><real>0</real>",
             R"("count":0,"on":false,"kind":"none","real":0)", "count: 0 on: false kind: Kind_NONE real: 0");
    bothGive("<on/>", R"("on":null)", "on: true");
    expectEncodes("opt", R"({"top":{"name":""}})", "opt.Top", "name: ''");
}

TEST_F(OptionalFieldTest, OneDoesNotReplaceAnother)
{
    bothGive("<count>1</count><on>true</on><name>n</name><sub><inside>a</inside><size>0</size></sub>"
             "<other><size>2</size></other><kind>up</kind>",
             R"("count":1,"on":true,"name":"n","sub":{"inside":"a","size":0},"other":{"size":2},"kind":"up")",
             "count: 1 on: true name: 'n' sub { inside: 'a' size: 0 } other { size: 2 } kind: Kind_UP");
}

TEST_F(OptionalFieldTest, LaterValueReplacesAndContainersAreMerged)
{
    bothGive("<count>1</count><sub><inside>a</inside></sub><count>2</count><sub><size>3</size></sub>",
             R"("count":1,"sub":{"inside":"a"},"count":2,"sub":{"size":3})", "count: 2 sub { inside: 'a' size: 3 }");
    bothGive("<sub>\n</sub>", R"("sub":{})", "sub {}");
}

TEST_F(OptionalFieldTest, NodesOfAContainerAreNotFoundOutsideIt)
{
    const XmlDocument document("<top><inside>a</inside><size/><count>1</count></top>");
    const auto fromXml = open<GpbXmlCompiler>("opt");
    EXPECT_TRUE(judge().holds("opt.Top", takeResult(*fromXml, fromXml->Encode(document.get())).bytes, "count: 1"));
    EXPECT_EQ((std::vector<std::string>{"[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [inside] from [opt.Top].",
                                        "[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [opt.Top]."}),
              log().textsOfLevel(2));
    log().clear();
    expectFails("opt", R"({"top":{"inside":"a"}})", 1,
                {"2: Gpb Compiler leaf node fail to find field [inside] from [opt.Top]."});
    gives("<inside>a</inside><size/><count>1</count>", R"("count":1)",
          {"2: Fail to find field descriptore for name size."});
}

// A real choice still is one, and those that are made up leave it alone.
TEST_F(OptionalFieldTest, BesideAChoice)
{
    bothGive("<in-case>a</in-case><count>1</count><in-sub><height>2</height></in-sub><sub><size>3</size></sub>"
             "<in-case>b</in-case>",
             R"("in-case":"a","count":1,"in-sub":{"height":2},"sub":{"size":3},"in-case":"b")",
             "one { in_case: 'b' in_sub { height: 2 } } count: 1 sub { size: 3 }");
    bothGive("<in-case>a</in-case><count>1</count><text>t</text>", R"("in-case":"a","count":1,"text":"t")",
             "text: 't' count: 1");
    bothGive("<in-sub><height>2</height></in-sub><text>t</text><in-sub><lower>i</lower></in-sub>",
             R"("in-sub":{"height":2},"text":"t","in-sub":{"lower":"i"})", "one { in_sub { lower: 'i' } }");
}

TEST_F(OptionalFieldTest, IsAPartAndALeafOfOne)
{
    const std::string json = R"({"top":{"sub":{"inside":"a"},"count":0}})";
    expectPart("opt", json, "sub", "opt.Top.Sub", "inside: 'a'");
    expectPart("opt", json, "count", "opt.Top", "count: 0");
    const JsonTree tree(json);
    const auto compiler = open<OpenJsonCompiler>("opt");
    char *names[2] = {};
    uint32_t types[2] = {};
    GpbMdlAttr record = {names, types, 0, 0};
    EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.at("sub"), &record));
    ASSERT_EQ(2, record.ucCount);
    EXPECT_STREQ("inside", names[0]);
    EXPECT_STREQ("size", names[1]);
    EXPECT_EQ(GPB_MDL_TYPE_STRING, types[0]);
    EXPECT_EQ(GPB_MDL_TYPE_INT, types[1]);
    for (char *name : names)
    {
        ZMP_Free_F(name, "optional_field_test", 0);
    }
}

TEST_F(OptionalFieldTest, BecomesJson)
{
    gives("<count>0</count><on>false</on><name>n</name><sub><inside>a</inside></sub><other>\n</other><kind>up</kind>",
          R"("count":0,"on":false,"name":"n","sub":{"inside":"a"},"other":{},"kind":"up")");
    gives("<on/><in-case>a</in-case><text>t</text>", R"("on":true,"in-case":"a","text":"t")");
}

} // namespace
} // namespace gpbtest
