// JSON to GPB in the lossless setting, beside what the default does with the same document.
#include "compiler/exact_json_fixture.h"
#include "gpb_templatelib/gpb_host.h"
#include "support/fail_each_call.h"

namespace gpbtest
{
namespace
{

class ExactJsonTest : public ExactJsonFixture
{
protected:
    void SetUp() override
    {
        ExactJsonFixture::SetUp();
        addModule("wood", kWoodProto);
    }

    /** A whole document of these members: what the default makes of it, and what the lossless setting does. */
    void both(const std::string &members, const Outcome &byDefault, const Outcome &byLossless)
    {
        SCOPED_TRACE(members);
        const JsonTree tree("{\"wood\":{" + members + "}}");
        setLossless(false);
        expectOutcome("default", byDefault, tree, tree.root(), "wood.Wood");
        setLossless(true);
        expectOutcome("lossless", byLossless, tree, tree.root(), "wood.Wood");
    }

    /** The same where both do the same. */
    void same(const std::string &members, const Outcome &outcome) { both(members, outcome, outcome); }

    void lossless(const std::string &members, const Outcome &outcome)
    {
        SCOPED_TRACE(members);
        const JsonTree tree("{\"wood\":{" + members + "}}");
        setLossless(true);
        expectOutcome("lossless", outcome, tree, tree.root(), "wood.Wood");
    }

    static std::string noField(const std::string &key, const std::string &path = "wood.Wood")
    {
        return "2: Gpb Compiler leaf node fail to find field [" + key + "] from [" + path + "].";
    }

    static std::string noMessage(const std::string &field, int type)
    {
        return "0: Gpb Compiler fill layer message Field [" + field + "] type is not message, it is " +
               std::to_string(type) + ".";
    }
};

TEST_F(ExactJsonTest, PutsTheLeavesOfACaseIntoTheirOwnEntry)
{
    both(R"("bush":[{"name":"a","red-leaf":"x","red-count":1},{"name":"b","red-leaf":"y"}])",
         "bush{name:'a' hue_red{red_leaf:'y' red_count:1}} bush{name:'b'}",
         "bush{name:'a' hue_red{red_leaf:'x' red_count:1}} bush{name:'b' hue_red{red_leaf:'y'}}");
    lossless(R"("bush":[{"red-leaf":"x","name":"a","red-count":1},{"blue-berry":2},{"red-leaf":"z","red-count":3}])",
             "bush{name:'a' hue_red{red_leaf:'x' red_count:1}} bush{hue_blue{blue_berry:2}} "
             "bush{hue_red{red_leaf:'z' red_count:3}}");
}

TEST_F(ExactJsonTest, PutsTheContainersAndListsOfACaseIntoTheirOwnEntry)
{
    both(R"("bush":[{"stem":{"width":1}},{"stem":{"width":2}}])", "bush{hue_red{stem{width:2}}} bush{}",
         "bush{hue_red{stem{width:1}}} bush{hue_red{stem{width:2}}}");
    lossless(R"("tree":[{"cone":[{"colour":"a"},{"colour":"b"}]},{"cone":[{"colour":"c"}],"thorns":4}])",
             "tree{kind_bare{cone{colour:'a'} cone{colour:'b'}}} tree{kind_bare{cone{colour:'c'} thorns:4}}");
}

TEST_F(ExactJsonTest, OpensCasesInCases)
{
    lossless(R"("tree":[{"depth-note":"a","thorns":1},{"depth-note":"b","notes":["c","d"]}])",
             "tree{kind_bare{thorns:1 soil_deep{depth_note:'a'}}} tree{kind_bare{soil_deep{depth_note:'b' notes:'c' "
             "notes:'d'}}}");
}

TEST_F(ExactJsonTest, FindsNoNamesakesInListsAndContainersOfOtherCases)
{
    // A case's list has leaves of the same names, and a case's container, too.
    const std::string bareFails =
        "0: Json compiler choice case leaf node fail to find field [leaf-shape] from [wood.Wood.tree.kind_bare].";
    both(R"("tree":[{"leaf-shape":"x"}])", {1, {bareFails}}, "tree{kind_leafy{leaf_shape:'x'}}");
    both(R"("tree":[{"weight":3}])", "tree{kind_bare{root{weight:3}}}", "tree{kind_tall{weight:3}}");
    lossless(R"("tree":[{"height":3}])", "tree{kind_tall{height:3}}");
    // What lies in them only is no node of the entry.
    lossless(R"("tree":[{"colour":"red","after":"x"}])", {"tree{after:'x'}", {noField("colour", "wood.Wood.tree")}});
}

TEST_F(ExactJsonTest, FindsNamesWithDotsAndLongNames)
{
    both(R"("v1.2":"x")", {1, {noField("v1.2")}}, "v1_2:'x'");
    const std::string node(140, 'n');
    addModule("long", "syntax = \"proto3\"; package long; message Top { string " + node + " = 1; }");
    setLossless(true);
    const JsonTree tree("{\"top\":{\"" + node + "\":\"x\"}}");
    const auto compiler = open<OpenJsonCompiler>("long");
    const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_TRUE(judge().holds("long.Top", result.bytes, node + ":'x'"));
}

TEST_F(ExactJsonTest, TakesArraysOfAnyType)
{
    both(R"("names":["a","","b"],"numbers":[1,-2],"ratios":[0.5],"count":7)", "count:7",
         "names:'a' names:'' names:'b' numbers:1 numbers:-2 ratios:0.5 count:7");
    both(R"("marks":[true,false,null])", "", "marks:true marks:false marks:true");
    both(R"("open":[null])", "", "open:true");
    same(R"("states":["up","2g"])", "states:State_UP states:State_X_2G");
    lossless(R"("tree":[{"tints":["a","b"]},{"tints":["c"]}])",
             "tree{kind_leafy{tints:'a' tints:'b'}} tree{kind_leafy{tints:'c'}}");
}

TEST_F(ExactJsonTest, TakesArraysWithoutMembersAndSingularOnes)
{
    same(R"("names":[],"boxes":[],"box":[],"nothing":[],"count":1)", "count:1");
    // Of a leaf the last one stays, and a container is filled by all.
    lossless(R"("count":[1,2,3])", "count:3");
    same(R"("box":[{"label":"a"},{"box":{"label":"b"}}])", "box{label:'a' box{label:'b'}}");
    same(R"("boxes":{"label":"a"},"names":"x")", "boxes{label:'a'} names:'x'");
}

TEST_F(ExactJsonTest, TakesArraysInArraysForOne)
{
    lossless(R"("boxes":[[{"label":"a"}],[],[[{"label":"b"}],{"label":"c"}]],"names":[["a"],"b",[["c"]]])",
             "boxes{label:'a'} boxes{label:'b'} boxes{label:'c'} names:'a' names:'b' names:'c'");
}

TEST_F(ExactJsonTest, TakesEachMemberOfAMixedArrayForItself)
{
    both(R"("boxes":[1,{"label":"a"},"x",{"label":"b"}])", "",
         {"boxes{label:'a'} boxes{label:'b'}", {noField("boxes"), noField("boxes")}});
    both(R"("box":[null],"count":1)", "count:1", {"count:1", {noField("box")}});
}

TEST_F(ExactJsonTest, WritesNumbersWithAllTheirDigits)
{
    both(R"("big":1000000000000000,"ubig":18446744073709549568)", "big:1 ubig:1",
         "big:1000000000000000 ubig:18446744073709549568");
    both(R"("big":-9223372036854775808)", "big:-9", "big:-9223372036854775808");
    both(R"("big":9223372036854775807,"ubig":18446744073709551615)", "big:9 ubig:1",
         "big:9223372036854775807 ubig:18446744073709551615");
    both(R"("exact":0.30000000000000004,"text":0.30000000000000004)", "exact:0.3 text:'0.3'",
         "exact:0.30000000000000004 text:'0.30000000000000004'");
    both(R"("exact":1.7976931348623157e308,"text":9007199254740991)",
         "exact:1.7976931348623e+308 text:'9.007199254741e+15'",
         "exact:1.7976931348623157e+308 text:'9007199254740991'");
    same(R"("exact":-0.0,"text":0.1,"count":-5,"ratios":2.5)", "exact:-0 text:'0.1' count:-5 ratios:2.5");
    // Beyond 64 bits no field takes it whole.
    same(R"("text":1e20,"exact":1e300)", "text:'1e+20' exact:1e300");
}

TEST_F(ExactJsonTest, ConvertsOtherValuesAsTheDefault)
{
    same(R"("text":true,"count":"12","big":"9223372036854775807","open":false,"exact":"0.25")",
         "text:'true' count:12 big:9223372036854775807 exact:0.25");
    same(R"("text":null,"open":null,"state":"up")", "text:'' open:true state:State_UP");
    same(R"("count":null,"blob":null,"text":"x")",
         {"text:'x'",
          {"0: Gpb compiler empty leaf count, expect type 5.", "0: Gpb compiler empty leaf blob, expect type 12."}});
    same(R"("state":"sideways","count":1)",
         {"count:1", {"0: Gpb Compiler  fill leaf fail to translator layer [wood.Wood]."}});
    lossless(R"("states":["up",null,"2g"],"numbers":[null])", {"states:State_UP states:State_X_2G",
                                                               {"0: Gpb compiler empty leaf states, expect type 14.",
                                                                "0: Gpb compiler empty leaf numbers, expect type 5."}});
}

TEST_F(ExactJsonTest, PassesOverWhatTheMessageDoesNotHave)
{
    both(R"("box":{"nothing":1,"label":"x"},"count":1)", {1, {noField("nothing", "wood.Wood.box")}},
         {"box{label:'x'} count:1", {noField("nothing", "wood.Wood.box")}});
    both(R"("nothing":{"label":"x"},"count":1)", {1, {}}, {"count:1", {noField("nothing")}});
    // One line for all members of an array.
    both(R"("nothing":[1,2],"none":[{"a":1},{"a":2}],"count":1)", {1, {}},
         {"count:1", {noField("nothing"), noField("none")}});
    lossless(R"("other:nothing":1,"":2)", {"", {noField("other:nothing"), noField("")}});
}

TEST_F(ExactJsonTest, FailsWhereAValueStandsForAContainerOrTheReverse)
{
    same(R"("box":5)", {1, {"0: Gpb Compiler fill leaf fail to find translator for node [box] type 11."}});
    same(R"("box":null)", {1, {}});
    same(R"("count":{"label":"x"})", {1, {noMessage("count", 5)}});
    same(R"("count":[{"label":"x"}])", {1, {noMessage("count", 5)}});
    // What stands in a leaf-list's object is none of the parent's.
    both(R"("names":{"count":1})", "count:1", {1, {noMessage("names", 9)}});
    both(R"("names":[{"count":1}])", "count:1", {1, {noMessage("names", 9)}});
}

TEST_F(ExactJsonTest, TakesRepeatedKeysOneAfterTheOther)
{
    same(R"("count":1,"count":2,"box":{"label":"a"},"boxes":[{"label":"b"}],"box":{"box":{}},"boxes":[{}])",
         "count:2 box{label:'a' box{}} boxes{label:'b'} boxes{}");
}

TEST_F(ExactJsonTest, FindsKeysWithTheirModulesPrefix)
{
    both(R"("wood:count":1,"other:text":"x")", {1, {noField("wood:count")}}, "count:1 text:'x'");
    lossless(R"("wood:tree":[{"wood:leaf-shape":"x"}])", "tree{kind_leafy{leaf_shape:'x'}}");
    lossless(R"("pine:size":"p","oak:size":"o")", "one:'p' two:'o'");
    // Without a prefix the module around counts, with none around that of the document.
    lossless(R"("pine:den":{"size":"p","oak:size":"o"})", "den{one:'p' two:'o'}");
    lossless(R"("oak:den":{"size":"o"})", "den{two:'o'}");
    lossless(R"("oak:nest":[{"den":{"size":"o"}},{"pine:den":{"size":"p"}}])", "nest{den{two:'o'}} nest{den{one:'p'}}");
    lossless(R"("den":{"size":"x"})", "den{one:'x'}");
}

TEST_F(ExactJsonTest, TakesTheModuleOfTheDocumentWhereNoPrefixIsAround)
{
    addModule("oak", R"(syntax = "proto3"; package oak; message Top {
        string one = 1 [json_name = "pine:size"]; string two = 2 [json_name = "oak:size"]; })");
    setLossless(true);
    for (const auto &[json, textForm] :
         {std::pair(R"({"top":{"size":"x"}})", "two:'x'"), std::pair(R"({"oak:top":{"size":"x"}})", "two:'x'"),
          std::pair(R"({"pine:top":{"size":"x"}})", "one:'x'")})
    {
        SCOPED_TRACE(json);
        const JsonTree tree(json);
        const auto compiler = open<OpenJsonCompiler>("oak");
        const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
        EXPECT_EQ(0u, result.code);
        EXPECT_TRUE(judge().holds("oak.Top", result.bytes, textForm));
    }
}

TEST_F(ExactJsonTest, HasTheDefaultsRootFailures)
{
    for (const bool isOn : {false, true})
    {
        setLossless(isOn);
        const auto compiler = open<OpenJsonCompiler>("wood");
        const JsonTree nothing(R"({"nothing":{}})");
        log().clear();
        EXPECT_EQ(1u, compiler->EncodeJson(nothing.root(), nothing.root()));
        EXPECT_LOG(log(), "2: Fail to find message type for path wood.Nothing.", prepareLine(1));
        EXPECT_EQ(1u, compiler->EncodeJson(nothing.root(), nullptr));
        EXPECT_EQ("", log().take());
        EXPECT_EQ(1u, compiler->EncodeJson(nullptr, nothing.root()));
        EXPECT_LOG(log(), prepareLine(1));
        cJSON noKey = *nothing.root();
        noKey.string = nullptr;
        EXPECT_EQ(1u, compiler->EncodeJson(&noKey, &noKey));
        EXPECT_LOG(log(), prepareLine(1));
        const JsonTree longName("{\"" + std::string(128, 'w') + "\":{}}");
        EXPECT_EQ(1u, compiler->EncodeJson(longName.root(), longName.root()));
        EXPECT_LOG(log(), prepareLine(1));
        EXPECT_EQ(nullptr, compiler->pstMessage);
        EXPECT_TRUE(takeResult(*compiler, 1).isNull);
    }
}

TEST_F(ExactJsonTest, TakesARootThatIsNoObject)
{
    for (const char *json : {R"({"wood":5})", R"({"wood":null})", R"({"wood":[]})"})
    {
        SCOPED_TRACE(json);
        const JsonTree tree(json);
        for (const bool isOn : {false, true})
        {
            setLossless(isOn);
            expectOutcome("", "", tree, tree.root(), "wood.Wood");
        }
    }
    const JsonTree tree(R"({"wood":[{"count":1},2]})");
    expectOutcome("", {"", {noField("wood"), noField("wood")}}, tree, tree.root(), "wood.Wood");
}

TEST_F(ExactJsonTest, TakesItemsWithoutKeysByWhatIsAround)
{
    // Nobody parses this, but a host may build it.
    const JsonTree tree(R"({"wood":{"box":{"x":{"label":"a"}},"y":7}})");
    cJSON_free(tree.at("box/x")->string);
    tree.at("box")->child->string = nullptr;
    cJSON *keyless = tree.at("y");
    cJSON_free(keyless->string);
    keyless->string = nullptr;
    setLossless(true);
    expectOutcome("lossless", {"box{box{label:'a'}}", {noField("wood")}}, tree, tree.root(), "wood.Wood");
}

TEST_F(ExactJsonTest, FailsWithAnItemOfNoKnownType)
{
    // Made by a host only.
    const JsonTree tree(R"({"wood":{"count":1,"text":"x"}})");
    tree.at("count")->type = cJSON_Invalid;
    for (const bool isOn : {false, true})
    {
        setLossless(isOn);
        expectOutcome("", {1, {}}, tree, tree.root(), "wood.Wood");
    }
}

TEST_F(ExactJsonTest, ChangesWithTheSettingAndLeavesTheEarlierResultOnFailure)
{
    const JsonTree tree(R"({"wood":{"v1.2":"x","count":1}})");
    const auto compiler = open<OpenJsonCompiler>("wood");
    setLossless(true);
    const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_TRUE(judge().holds("wood.Wood", result.bytes, "v1_2:'x' count:1"));
    setLossless(false);
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
    EXPECT_EQ(result.bytes, takeResult(*compiler, 0).bytes);
}

TEST_F(ExactJsonTest, SurvivesEachFailingPlatformCall)
{
    const JsonTree tree(R"({"wood":{"count":1,"exact":0.1,"ratios":[0.30000000000000004],"bush":[{"red-leaf":"x"}],)"
                        R"("states":["up","sideways"],"nothing":1,"box":{"label":"a"}}})");
    setLossless(true);
    for (cJSON *item : {tree.root(), tree.at("ratios"), tree.at("box")})
    {
        const uint64_t calls = failEachCall(
            [&](const FaultRun &run)
            {
                const auto compiler = open<OpenJsonCompiler>("wood");
                const unsigned int code = compiler->EncodeJson(tree.root(), item);
                EXPECT_TRUE(code <= 1) << code;
                EXPECT_TRUE(run.fails() || code == 0);
                EXPECT_EQ(code != 0, takeResult(*compiler, code).isNull);
            });
        EXPECT_GT(calls, 3u);
    }
}

TEST_F(ExactJsonTest, FailsWithANumberThatThePlatformDoesNotWrite)
{
    setLossless(true);
    const JsonTree tree(R"({"wood":{"exact":0.30000000000000004}})");
    for (const uint64_t failing : {1u, 2u})
    {
        const auto compiler = open<OpenJsonCompiler>("wood");
        log().clear();
        GpbHost_FailCall(GPB_HOST_SPRINTF, failing);
        EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
        EXPECT_LOG(log(), iterateLine(1));
    }
}

class ExactJsonDepthTest : public ExactJsonFixture
{
protected:
    void SetUp() override
    {
        ExactJsonFixture::SetUp();
        addModule("nest", kNodeProto);
        setLossless(true);
    }

    std::string module() const override { return "nest"; }

    /** Containers in each other below the root, with something in the last one. */
    static std::string nested(const std::string &open, const std::string &close, unsigned count,
                              const std::string &inner)
    {
        std::string text = "{\"node\":{";
        for (unsigned i = 0; i < count; ++i)
        {
            text += open;
        }
        text += inner;
        for (unsigned i = 0; i < count; ++i)
        {
            text += close;
        }
        return text + "}}";
    }
};

TEST_F(ExactJsonDepthTest, OpensThirtyOneLayers)
{
    for (const auto &[open, close, path] :
         {std::tuple("\"node\":{", "}", "node"), std::tuple("\"kids\":[{", "}]", "kids")})
    {
        const JsonTree deepest(nested(open, close, 30, "\"leaf\":7"));
        std::string form;
        for (unsigned i = 0; i < 30; ++i)
        {
            form += std::string(path) + "{";
        }
        expectOutcome("deepest", (form + "leaf:7" + std::string(30, '}')).c_str(), deepest, deepest.root(),
                      "nest.Node");
        std::string layer = "nest.Node";
        for (unsigned i = 0; i < 31; ++i)
        {
            layer += std::string(".") + path;
        }
        const JsonTree tooDeep(nested(open, close, 31, "\"leaf\":7"));
        expectOutcome(
            "too deep",
            {0xFFFFFFFFu, {"0: Gpb Compiler[ProcXmlContainerNode]Fail to push layer [" + layer + "]. depth is 31."}},
            tooDeep, tooDeep.root(), "nest.Node");
    }
}

TEST_F(ExactJsonDepthTest, FailsWhenACaseHasNoLayerLeft)
{
    addModule("deep", R"(syntax = "proto3"; package deep; message Node { Node node = 1;
        message Case { int32 leaf = 1; repeated string words = 2; Node box = 3; } oneof way { Case in_case = 2; } })");
    std::string layer = "deep.Node";
    for (unsigned i = 0; i < 30; ++i)
    {
        layer += ".node";
    }
    for (const auto &[inner, line] :
         {std::pair(R"("leaf":1)",
                    "0: Json compiler choice case leaf node fail to find field [leaf] from [" + layer + "]."),
          std::pair(R"("words":["a"])",
                    std::string("0: Gpb compiler choice case leaflist node fail to find field [].")),
          std::pair(R"("box":{})", std::string("0: Json compiler push choice case node [box] fail."))})
    {
        const JsonTree tree(nested("\"node\":{", "}", 30, inner));
        log().clear();
        for (int i = 0; i < 2; ++i)
        {
            const auto compiler = open<GpbJsonCompiler>("deep");
            EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.root()));
            EXPECT_LOG(log(), line, iterateLine(1));
        }
        const auto host = open<OpenJsonCompiler>("deep");
        EXPECT_EQ(1u, host->EncodeJson(tree.root(), tree.root()));
        EXPECT_LOG(log(), line, iterateLine(1));
    }
    const JsonTree last(nested("\"node\":{", "}", 29, R"("leaf":1,"words":["a"])"));
    const auto compiler = open<OpenJsonCompiler>("deep");
    EXPECT_EQ(0u, compiler->EncodeJson(last.root(), last.root()));
}

TEST_F(ExactJsonDepthTest, TakesAsManyArraysInEachOtherAsTextsHave)
{
    // The document and its root are two of the thousand that can be read.
    const std::string array(997, '[');
    const JsonTree deepest("{\"node\":{\"words\":" + array + "\"w\"" + std::string(997, ']') + "}}");
    expectOutcome("deepest", "words:'w'", deepest, deepest.root(), "nest.Node");
    // A host can build what cannot be read.
    const JsonTree tree(R"({"node":{"words":["w"]}})");
    cJSON *words = tree.at("words");
    for (unsigned i = 1; i < GPB_JSON_MAX_DEPTH; ++i)
    {
        cJSON *inner = words->child;
        words->child = cJSON_CreateArray();
        words->child->prev = words->child;
        words->child->child = inner;
    }
    expectOutcome("last", "words:'w'", tree, tree.root(), "nest.Node");
    cJSON *inner = words->child;
    words->child = cJSON_CreateArray();
    words->child->prev = words->child;
    words->child->child = inner;
    expectOutcome("too deep", {0xFFFFFFFFu, {}}, tree, tree.root(), "nest.Node");
}

} // namespace
} // namespace gpbtest
