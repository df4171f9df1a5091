// A message type named Decimal: a leaf that meets a field of it becomes no number.
#include <google/protobuf/descriptor.h>

#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

constexpr const char *kDecimalProto = R"(
syntax = "proto3";
package dec;
message Decimal { int64 digits = 1; uint32 precision = 2; }
message Top {
  Decimal plain = 1;
  repeated Decimal list = 2;
  message CaseA { Decimal chosen = 1; repeated Decimal several = 2; }
  oneof way { CaseA case_a = 3; }
  int32 number = 4;
  Nested.Decimal inner = 5;
  message Nested { message Decimal { int64 digits = 1; } }
}
)";

class DecimalTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("dec", kDecimalProto);
    }

    const google::protobuf::FieldDescriptor *field(const char *typeName, const char *name)
    {
        return type(typeName)->FindFieldByName(name);
    }

    CompilerResult toJson(const std::string &content, unsigned char stop = 0)
    {
        const XmlDocument document("<top>" + content + "</top>");
        const auto compiler = open<OpenXmlToJsonCompiler>("dec", static_cast<unsigned char>(0));
        compiler->ucStopOnError = stop;
        return takeResult(*compiler, compiler->Encode(document.get()));
    }
};

using DecimalOddities = DecimalTest;

// It is the kind of the field that is compared with the name, and that is "message" whatever the type is called.
TEST_F(DecimalOddities, AdderMakesNoItem)
{
    for (const char *name : {"plain", "list", "inner"})
    {
        EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddMessage(field("dec.Top", name), "1.5", kModuleId)) << name;
    }
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddMessage(field("dec.Top.CaseA", "chosen"), "1.5", kModuleId));
    EXPECT_EQ(nullptr, GpbXmlCompilerJson_AddMessage(field("dec.Top", "number"), "1.5", kModuleId));
}

TEST_F(DecimalOddities, LeafOfACaseFailsWithEleven)
{
    for (const std::string name : {"chosen", "several"})
    {
        const std::string line = "0: Fail to translator node [" + name + "] value [1.5].";
        const std::string content = "<" + name + ">1.5</" + name + "><number>1</number>";
        const CompilerResult passedOver = toJson(content);
        EXPECT_EQ(0u, passedOver.code);
        EXPECT_EQ(R"({"top":{"number":1}})", passedOver.bytes);
        EXPECT_LOG(log(), line);
        const CompilerResult stopped = toJson(content, 1);
        EXPECT_EQ(11u, stopped.code);
        EXPECT_EQ(R"({"top":{}})", stopped.bytes);
        EXPECT_LOG(log(), line, "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.");
    }
}

TEST_F(DecimalTest, LeafOutsideACaseIsNotFound)
{
    const std::string content = "<plain>1.5</plain><inner>1.5</inner><list>1.5</list><number>1</number>";
    EXPECT_EQ(R"({"top":{"number":1}})", toJson(content).bytes);
    EXPECT_EQ("", log().take());
    EXPECT_EQ(6u, toJson(content, 1).code);
    EXPECT_LOG(log(), "0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 6.");
}

TEST_F(DecimalTest, ContainerIsAnObject)
{
    EXPECT_EQ(
        R"({"top":{"plain":{"digits":"15","precision":1},"chosen":{"digits":"25"}}})",
        toJson("<plain><digits>15</digits><precision>1</precision></plain><chosen><digits>25</digits></chosen>").bytes);
    EXPECT_EQ("", log().take());
}

TEST_F(DecimalTest, BytesNeedTheMembersOfTheMessage)
{
    const XmlDocument document("<top><plain>1.5</plain><chosen>2.5</chosen><number>1</number></top>");
    const auto compiler = open<GpbXmlCompiler>("dec");
    const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
    EXPECT_TRUE(judge().holds("dec.Top", result.bytes, "case_a {} number: 1"));
    EXPECT_EQ(std::vector<std::string>{"[GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [plain] from [dec.Top]."},
              log().textsOfLevel(2));
    EXPECT_EQ(
        std::vector<std::string>{"[GpbXmlCompiler][FillLeafField]Fail to find translator for node [chosen] type 11."},
        log().textsOfLevel(0));
    log().clear();
    for (const std::string key : {"plain", "chosen"})
    {
        expectFails("dec", "{\"top\":{\"" + key + "\":1.5}}", 1,
                    {"0: Gpb Compiler fill leaf fail to find translator for node [" + key + "] type 11."});
    }
}

} // namespace
} // namespace gpbtest
