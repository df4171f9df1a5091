// JSON to GPB in the lossless setting: parts of a document.
#include "compiler/exact_json_fixture.h"
#include "platform/zmp.h"

namespace gpbtest
{
namespace
{

class ExactJsonPartTest : public ExactJsonFixture
{
protected:
    void SetUp() override
    {
        ExactJsonFixture::SetUp();
        addModule("wood", kWoodProto);
        setLossless(true);
    }

    void part(const std::string &members, const std::string &path, const std::string &typeName, const Outcome &outcome)
    {
        SCOPED_TRACE(path + " of " + members);
        const JsonTree tree("{\"wood\":{" + members + "}}");
        expectOutcome("", outcome, tree, tree.at(path), "wood.Wood" + typeName);
    }

    /** The whole top message of a part's encode. */
    std::string topOf(const std::string &members, const std::string &path)
    {
        const JsonTree tree("{\"wood\":{" + members + "}}");
        const auto compiler = open<OpenJsonCompiler>("wood");
        EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at(path)));
        log().clear();
        std::string text = compiler->GetEncodeDebugString();
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text;
    }
};

TEST_F(ExactJsonPartTest, AContainerGivesItsOwnMessageWhateverFollows)
{
    part(R"("box":{"label":"a"},"boxes":[{"label":"b"}],"count":1)", "box", ".Box", "label:'a'");
    part(R"("box":{"box":{"label":"a"},"boxes":[{"label":"b"}]})", "box/box", ".Box", "label:'a'");
    EXPECT_EQ("box {   label: \"a\" } ", topOf(R"("count":2,"box":{"label":"a"},"count":1)", "box"));
}

TEST_F(ExactJsonPartTest, AContainerOrListEntryInACaseGivesItsOwnMessage)
{
    part(R"("bush":[{"stem":{"width":1}},{"stem":{"width":2}}])", "bush/1/stem", ".Bush.CaseRed.Stem", "width:2");
    part(R"("tree":[{"cone":[{"colour":"a"},{"colour":"b"}]}])", "tree/0/cone/1", ".Tree.CaseBare.Cone", "colour:'b'");
    EXPECT_EQ("bush {   hue_red {     stem {       width: 2     }   } } ",
              topOf(R"("bush":[{"stem":{"width":1}},{"stem":{"width":2}}])", "bush/1/stem"));
}

TEST_F(ExactJsonPartTest, AListEntryGivesItsOwnMessage)
{
    const std::string members = R"("bush":[{"name":"a"},{"name":"b","red-leaf":"x"},{"name":"c"}])";
    part(members, "bush/0", ".Bush", "name:'a'");
    part(members, "bush/1", ".Bush", "name:'b' hue_red{red_leaf:'x'}");
    part(members, "bush/2", ".Bush", "name:'c'");
    part(R"("boxes":[[{"label":"a"}],[{"label":"b"}]])", "boxes/1/0", ".Box", "label:'b'");
}

TEST_F(ExactJsonPartTest, AValueGivesTheMessageThatHoldsItWithItsLaterSiblings)
{
    part(R"("box":{"label":"a","box":{"label":"b"}})", "box/label", ".Box", "label:'a' box{label:'b'}");
    part(R"("bush":[{"name":"a"},{"name":"b","red-leaf":"x","red-count":2}])", "bush/1/red-leaf", ".Bush",
         "hue_red{red_leaf:'x' red_count:2}");
    part(R"("text":"x","count":1,"nothing":2)", "count", "",
         {"count:1", {"2: Gpb Compiler leaf node fail to find field [nothing] from [wood.Wood]."}});
}

TEST_F(ExactJsonPartTest, AnArrayGivesTheMessageThatHoldsAllItsMembers)
{
    part(R"("count":1,"bush":[{"name":"a"},{"name":"b"}],"text":"x")", "bush", "",
         "bush{name:'a'} bush{name:'b'} text:'x'");
    part(R"("box":{"boxes":[{"label":"a"},{"label":"b"}]})", "box/boxes", ".Box", "boxes{label:'a'} boxes{label:'b'}");
    part(R"("names":["a","b"],"count":1)", "names", "", "names:'a' names:'b' count:1");
    part(R"("boxes":[])", "boxes", "", "");
}

TEST_F(ExactJsonPartTest, AMemberOfALeafListGivesTheMessageThatHoldsItWithItsLaterSiblings)
{
    part(R"("names":["a","b","c"],"count":1)", "names/1", "", "names:'b' names:'c'");
    part(R"("tree":[{"tints":["a","b"]}])", "tree/0/tints/1", ".Tree", "kind_leafy{tints:'b'}");
}

TEST_F(ExactJsonPartTest, PrefixesAroundAPartCount)
{
    part(R"("oak:nest":[{"den":{"size":"o"}}])", "oak:nest/0/den", ".Den", "two:'o'");
    part(R"("oak:nest":[{"den":{"size":"o"}}])", "oak:nest/0/den/size", ".Den", "two:'o'");
    part(R"("oak:nest":[{"pine:den":{"size":"p"}}])", "oak:nest/0/pine:den/size", ".Den", "one:'p'");
    part(R"("wood:count":3)", "wood:count", "", "count:3");
}

TEST_F(ExactJsonPartTest, AnUnknownPartHasNoResult)
{
    const std::string noLayer = "2: Gpb layer compiler encode fail to encode.";
    const JsonTree tree(R"({"wood":{"nothing":{"a":1},"more":{"b":{}},"count":{"c":1},"text":"x"}})");
    const auto compiler = open<OpenJsonCompiler>("wood");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("nothing")));
    EXPECT_LOG(log(), "2: Gpb Compiler leaf node fail to find field [nothing] from [wood.Wood].", noLayer);
    EXPECT_TRUE(takeResult(*compiler, 0).isNull);
    log().clear();
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("nothing/a")));
    EXPECT_LOG(log(), "0: Fail to push ancestors layer [a]", prepareLine(1));
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("more/b")));
    EXPECT_LOG(log(), "0: Fail to push ancestors layer [b]", prepareLine(1));
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at("count/c")));
    EXPECT_LOG(log(), "0: Gpb Compiler fill layer message Field [count] type is not message, it is 5.",
               "0: Fail to push ancestors layer [c]", prepareLine(1));
}

TEST_F(ExactJsonPartTest, AnItemThatIsNotInTheTreeIsTakenAsChildOfTheRoot)
{
    const JsonTree tree(R"({"wood":{}})");
    const JsonTree other(R"({"x":{"box":{"label":"a"},"list":[{"label":"b"}]}})");
    expectOutcome("object", "label:'a'", tree, other.at("box"), "wood.Wood.Box");
    const auto compiler = open<OpenJsonCompiler>("wood");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), other.at("list/0")));
    EXPECT_LOG(log(), "2: Gpb Compiler leaf node fail to find field [wood] from [wood.Wood].",
               "2: Gpb layer compiler encode fail to encode.");
}

TEST_F(ExactJsonPartTest, TheResultStaysWhatALaterCaseCannotReplace)
{
    // The sibling would switch the choice that the container lies in.
    part(R"("bush":[{"stem":{"width":1},"blue-berry":2}])", "bush/0/stem", ".Bush.CaseRed.Stem", "width:1");
    // A value's siblings do switch it.
    part(R"("bush":[{"red-leaf":"x","blue-berry":2}])", "bush/0/red-leaf", ".Bush", "hue_blue{blue_berry:2}");
}

TEST_F(ExactJsonPartTest, HasTheDefaultsLastLayer)
{
    addModule("nest", kNodeProto);
    for (const char *kind : {"node", "kids"})
    {
        std::string text = "7";
        for (int i = 0; i < 30; ++i)
        {
            text = i == 0 ? "{\"leaf\":7}"
                          : std::string("{\"") + kind + "\":" + (*kind == 'k' ? "[" + text + "]" : text) + "}";
        }
        const JsonTree tree("{\"node\":" + text + "}");
        std::string path = kind;
        const std::string step = std::string(*kind == 'k' ? "/0/" : "/") + kind;
        for (int i = 0; i < 28; ++i)
        {
            path += step;
        }
        path += *kind == 'k' ? "/0" : "";
        const auto compiler = open<OpenJsonCompiler>("nest");
        EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at(path)));
        EXPECT_TRUE(judge().holds("nest.Node", takeResult(*compiler, 0).bytes, "leaf:7"));
        // One more layer has a place on the stack, but no result.
        const JsonTree deeper("{\"node\":{\"node\":" + text + "}}");
        EXPECT_EQ(1u, compiler->EncodeJson(deeper.root(), deeper.at("node/" + path)));
    }
}

TEST_F(ExactJsonPartTest, ModelAttributesStayAsTheyAre)
{
    const JsonTree tree(R"({"wood":{"bush":[{"stem":{"width":1}}],"v1.2":"x"}})");
    for (const bool isOn : {false, true})
    {
        setLossless(isOn);
        const auto compiler = open<OpenJsonCompiler>("wood");
        char *names[255] = {};
        uint32_t types[255] = {};
        GpbMdlAttr record = {names, types, 0, 0};
        EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.at("bush"), &record));
        ASSERT_EQ(1u, record.ucCount);
        EXPECT_STREQ("name", names[0]);
        ZMP_Free_F(names[0], "test", __LINE__);
        EXPECT_EQ(1u, compiler->GetMdlAttr(context(), tree.root(), tree.at("v1.2"), &record));
    }
}

TEST_F(ExactJsonPartTest, AnEarlierResultIsKeptByModelAttributes)
{
    const JsonTree tree(R"({"wood":{"bush":[{"stem":{"width":1}}],"box":{"label":"a"}}})");
    const auto compiler = open<OpenJsonCompiler>("wood");
    EXPECT_EQ(0u, compiler->EncodeJson(tree.root(), tree.at("bush/0/stem")));
    char *names[255] = {};
    uint32_t types[255] = {};
    GpbMdlAttr record = {names, types, 0, 0};
    EXPECT_EQ(0u, compiler->GetMdlAttr(context(), tree.root(), tree.at("box"), &record));
    ZMP_Free_F(names[0], "test", __LINE__);
    EXPECT_TRUE(judge().holds("wood.Wood.Bush.CaseRed.Stem", takeResult(*compiler, 0).bytes, "width:1"));
}

} // namespace
} // namespace gpbtest
