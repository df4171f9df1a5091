// JSON to GPB: a part of a document, and results.
#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

class JsonPartTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    void part(const std::string &members, const std::string &path, const std::string &typeName,
              const std::string &textForm, std::vector<std::string> lines = {})
    {
        expectPart("plant", "{\"plant\":{" + members + "}}", path, typeName, textForm, std::move(lines));
    }

    void partFails(const std::string &members, const std::string &path, std::vector<std::string> lines = {})
    {
        expectFails("plant", "{\"plant\":{" + members + "}}", 1, std::move(lines), path);
    }
};

TEST_F(JsonPartTest, EncodesAContainer)
{
    part(R"("level":1,"box":{"label":"a","lid":{"colour":"red"}})", "box", "plant.Plant.Box",
         "label:'a' lid{colour:'red'}");
    part(R"("level":1,"box":{"label":"a","lid":{"colour":"red"}})", "box/lid", "plant.Plant.Box.Lid", "colour:'red'");
}

TEST_F(JsonPartTest, EncodesTheMessageThatHoldsALeaf)
{
    part(R"("box":{"label":"a","size":2})", "box/size", "plant.Plant.Box", "size:2");
    part(R"("on":true,"level":1)", "level", "plant.Plant", "level:1");
}

TEST_F(JsonPartTest, OpensOneListEntryForAnItemInside)
{
    const std::string members = R"("boxes":[{"label":"a"},{"label":"b","lid":{"colour":"red"},"size":2}])";
    part(members, "boxes/1/lid/colour", "plant.Plant.Box.Lid", "colour:'red'");
    part(members, "boxes/1/size", "plant.Plant.Box", "size:2");
    const JsonTree tree("{\"plant\":{" + members + "}}");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("boxes/1/size")));
    EXPECT_EQ("boxes {\n  size: 2\n}\n", compiler->GetEncodeDebugString());
}

TEST_F(JsonPartTest, EncodesTheLastMemberOfAnArray)
{
    part(R"("boxes":[{"label":"a"},{"label":"b"}])", "boxes", "plant.Plant.Box", "label:'b'");
    part(R"("box":{"lids":[{"colour":"x"},{"colour":"y"}]})", "box/lids", "plant.Plant.Box.Lid", "colour:'y'");
}

TEST_F(JsonPartTest, SaysWhenThereIsNoMessageForAnItem)
{
    const JsonTree tree(R"({"plant":{"boxes":[],"names":["a"]}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("boxes")));
    EXPECT_LOG(log(), "2: Gpb layer compiler encode fail to encode.");
    EXPECT_NE(nullptr, compiler->pstMessage);
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
    EXPECT_LOG(log(), "0: Gpb compiler top message is null.");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("names")));
    EXPECT_LOG(log(), "2: Gpb layer compiler encode fail to encode.");
}

TEST_F(JsonPartTest, GivesNoMessageThatTheLastCaseOfAChoiceHasReplaced)
{
    // The later sibling switches the choice, which frees the item's message.
    const JsonTree tree(R"({"plant":{"left":{"left-leaf":"x"},"plain":"p"}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("left")));
    EXPECT_EQ("plain: \"p\"\n", compiler->GetEncodeDebugString());
    EXPECT_LOG(log(), "2: Gpb layer compiler encode fail to encode.");
}

TEST_F(JsonPartTest, GivesTheCaseForAnItemInACase)
{
    // The slot that the item is read from is the one above its parent, and the case is there.
    part(R"("inner":{"depth":1})", "inner", "plant.Plant.Left", "inner{depth:1}");
}

TEST_F(JsonPartTest, DoesNotFindItemsWhoseAncestorsAreUnknown)
{
    const JsonTree tree(R"({"plant":{"nothing":{"level":1},"level":{"x":{}}}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("nothing/level")));
    EXPECT_LOG(log(), "0: Fail to push ancestors layer [level]", prepareLine(1));
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("level/x")));
    EXPECT_LOG(log(), "0: Gpb Compiler fill layer message Field [level] type is not message, it is 5.",
               "0: Fail to push ancestors layer [x]", prepareLine(1));
    EXPECT_EQ(nullptr, compiler->pstMessage);
}

TEST_F(JsonPartTest, NamesAKeylessItemEmptyInLogLines)
{
    const JsonTree tree(R"({"plant":{"nothing":[1]}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("nothing/0")));
    EXPECT_LOG(log(), "0: Fail to push ancestors layer []", prepareLine(1));
}

TEST_F(JsonPartTest, TakesAnItemThatIsNotInTheTreeAsChildOfTheRoot)
{
    const JsonTree tree(R"({"plant":{}})");
    const JsonTree other(R"({"x":{"box":{"label":"a"},"level":3}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), other.at("box")));
    EXPECT_EQ(0u, result.code);
    EXPECT_TRUE(judge().holds("plant.Plant.Box", result.bytes, "label:'a'"));
    EXPECT_EQ("level: 3\nbox {\n  label: \"a\"\n}\n", compiler->GetEncodeDebugString());
}

TEST_F(JsonPartTest, TakesAnItemWithoutKeyThatIsNotInTheTreeAsUnknown)
{
    const JsonTree tree(R"({"plant":{}})");
    const JsonTree other(R"({"x":[{"level":3}]})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), other.at("0")));
    EXPECT_LOG(log(), iterateLine(1));
}

using JsonPartOddityTest = JsonPartTest;

TEST_F(JsonPartOddityTest, TakesInLaterSiblings)
{
    const JsonTree tree(R"({"plant":{"level":1,"box":{"label":"a"},"count":2,"names":["x"]}})");
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("box")));
    EXPECT_EQ("count: 2\nbox {\n  label: \"a\"\n}\n", compiler->GetEncodeDebugString());
}

TEST_F(JsonPartOddityTest, ALaterSiblingContainerTakesTheItemsPlace)
{
    part(R"("box":{"label":"a"},"boxes":[{"label":"b"},{"label":"c"}])", "box", "plant.Plant.Box", "label:'c'");
    part(R"("boxes":[{"label":"b"}],"left":{"left-leaf":"x"})", "boxes", "plant.Plant.Left", "left_leaf:'x'");
}

TEST_F(JsonPartOddityTest, AMemberOfAnArrayIsSearchedBelowItsOwnArray)
{
    // The array's key opens the entry as an ancestor, and is then looked up once more inside the entry.
    partFails(R"("boxes":[{"label":"a"},{"label":"b"}])", "boxes/1");
    partFails(R"("numbers":[1,2])", "numbers/0",
              {"2: Gpb Compiler leaf node fail to find field [] from [plant.Plant]."});
    addModule("nest", kNodeProto);
    // Where the entry has a list of the same name, the member becomes an entry of that one, with its later siblings.
    expectPart("nest", R"({"node":{"kids":[{"leaf":1},{"leaf":2},{"leaf":3}]}})", "kids/1", "nest.Node", "leaf:3");
}

// ---- results ----

TEST_F(JsonPartTest, HasNoResultBeforeAnEncode)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
    EXPECT_LOG(log(), "0: Gpb compiler top message is null.");
    EXPECT_EQ("There is no valid encode message.", compiler->GetEncodeDebugString());
    EXPECT_EQ(nullptr, compiler->GetResult(nullptr));
    EXPECT_EQ(nullptr, compiler->GetGpbBuffer(nullptr));
    EXPECT_EQ("", log().take());
}

TEST_F(JsonPartTest, ReplacesTheResultWithEachEncode)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree first(R"({"plant":{"box":{"label":"a"}}})");
    const JsonTree second(R"({"plant":{"level":2}})");
    EXPECT_TRUE(judge().holds("plant.Plant.Box",
                              takeResult(*compiler, compiler->EncodeJson(first.root(), first.at("box"))).bytes,
                              "label:'a'"));
    EXPECT_TRUE(judge().holds(
        "plant.Plant", takeResult(*compiler, compiler->EncodeJson(second.root(), second.root())).bytes, "level:2"));
}

TEST_F(JsonPartTest, KeepsTheResultThroughAFailingEncode)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree good(R"({"plant":{"level":2}})");
    const JsonTree bad(R"({"plant":{"nothing":2}})");
    EXPECT_EQ(0u, compiler->EncodeJson(good.root(), good.root()));
    EXPECT_EQ(1u, compiler->EncodeJson(bad.root(), bad.root()));
    EXPECT_TRUE(judge().holds("plant.Plant", takeResult(*compiler, 0).bytes, "level:2"));
    EXPECT_EQ("level: 2\n", compiler->GetEncodeDebugString());
}

TEST_F(JsonPartTest, KeepsTheBytesUntilTheNextResult)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree first(R"({"plant":{"level":2}})");
    const JsonTree second(R"({"plant":{"count":3}})");
    EXPECT_EQ(0u, compiler->EncodeJson(first.root(), first.root()));
    unsigned int length = 0;
    const char *bytes = compiler->GetResult(&length);
    EXPECT_EQ(0u, compiler->EncodeJson(second.root(), second.root()));
    EXPECT_EQ(std::string("\x28\x02", 2), std::string(bytes, length));
}

TEST_F(JsonPartTest, HasNoResultWithoutRequiredFields)
{
    addModule("must", R"(syntax = "proto2"; package must;
        message Top { required int32 id = 1; message Sub { optional int32 x = 1; } optional Sub sub = 2; })");
    const auto compiler = open<OpenJsonCompiler>("must");
    const JsonTree tree(R"({"top":{"sub":{"x":1}}})");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
    EXPECT_LOG(log(), "0: Gpb compiler top message is not initialized.");
    // The part of it that is complete has a result.
    EXPECT_TRUE(judge().holds("must.Top.Sub",
                              takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.at("sub"))).bytes, "x:1"));
}

TEST_F(JsonPartTest, GivesAnEmptyMessageAsZeroBytes)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree tree(R"({"plant":{}})");
    const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_FALSE(result.isNull);
    EXPECT_EQ("", result.bytes);
    EXPECT_LOG(log(), serializedLine(0));
}

TEST_F(JsonPartTest, SurvivesEachFailingPlatformCall)
{
    const JsonTree tree(R"({"plant":{"ratio":1.5,"level":5,"first-name":"a","state":"up","states":["none","2g"],
                            "boxes":[{"label":"x"}],"left-leaf":"l","plain":null}})");
    const uint64_t calls = failEachCall(
        [&](const FaultRun &run)
        {
            const auto compiler = open<OpenJsonCompiler>("plant");
            const unsigned int code = compiler->EncodeJson(tree.root(), tree.root());
            EXPECT_TRUE(code == 0 || (run.fails() && code == 1)) << code;
            const CompilerResult result = takeResult(*compiler, code);
            EXPECT_EQ(code != 0, result.isNull);
            if (!run.fails())
            {
                EXPECT_TRUE(judge().holds("plant.Plant", result.bytes,
                                          "ratio:1.5 level:5 first_name:'a' state:State_UP states:State_NONE "
                                          "states:State_X_2G boxes{label:'x'} plain:''"));
            }
        });
    EXPECT_GT(calls, 10u);
}

TEST_F(JsonPartTest, FailsWhenANumberCannotBePrinted)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    for (const char *const number : {"5", "5.5", "5.00005", "1e30"})
    {
        const JsonTree tree(std::string("{\"plant\":{\"level\":") + number + "}}");
        GpbHost_FailCall(GPB_HOST_SPRINTF, 1);
        EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root())) << number;
        EXPECT_LOG(log(), iterateLine(1));
    }
}

GpbStrTransFunc *g_ownEntry;

unsigned int refuseFromNowOn(const GpbCompilerStackLayer &, const google::protobuf::FieldDescriptor *, const char *)
{
    *g_ownEntry = nullptr;
    return 1;
}

TEST_F(JsonPartTest, TellsATranslatorThatFailsAndGoesFromNone)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    g_ownEntry = &compiler->astStrTrans[google::protobuf::FieldDescriptor::TYPE_STRING];
    for (const char *const value : {"\"x\"", "5"})
    {
        SCOPED_TRACE(value);
        const JsonTree tree(std::string("{\"plant\":{\"first-name\":") + value + "}}");
        *g_ownEntry = refuseFromNowOn;
        EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.root()));
        EXPECT_NE(std::string::npos, log().take().find("fill leaf fail to translator layer [plant.Plant]."));
        EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
        EXPECT_NE(std::string::npos,
                  log().take().find("fill leaf fail to find translator for node [first-name] type 9."));
    }
}

TEST_F(JsonPartTest, IsSilentWhenNobodyListens)
{
    recreateContext({0, 1, 2, 3});
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "plant", 0));
    const auto compiler = open<OpenJsonCompiler>("plant");
    const JsonTree tree(R"({"plant":{"nothing":5}})");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_EQ("", log().take());
}

TEST_F(JsonPartTest, DoesNothingWithXml)
{
    const auto compiler = open<OpenJsonCompiler>("plant");
    const XmlDocument document("<plant><level>1</level></plant>");
    EXPECT_EQ(0u, compiler->Encode(document.get()));
    EXPECT_EQ(nullptr, compiler->pstMessage);
    EXPECT_EQ("", log().take());
}

} // namespace
} // namespace gpbtest
