// JSON to GPB: depth of the stack and of the tree.
#include <cjson/cJSON.h>

#include "compiler/json_fixture.h"
#include "support/stack_use.h"

namespace gpbtest
{
namespace
{

/** The code of a stack that is full. */
constexpr unsigned int kStackFull = 0xFFFFFFFFu;

/** How much larger a build's frames may be than the parser's, which is always as Debian ships it. */
#if defined(__OPTIMIZE__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr size_t kOverhead = 2;
#else
constexpr size_t kOverhead = 20;
#endif

class JsonLimitTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("nest", kNodeProto);
    }

    /** A root with `depth` containers in it, the innermost of which holds `content`. */
    static std::string nested(int depth, const std::string &content = "")
    {
        std::string text = content;
        for (int i = 0; i < depth; ++i)
        {
            text = "\"node\":{" + text + "}";
        }
        return "{\"node\":{" + text + "}}";
    }

    /** Objects under leaf-lists. These open no layer, so the parser's nesting limit is the only one. */
    static std::string underLeafLists(int depth)
    {
        std::string text = "\"leaf\":5";
        for (int i = 0; i < depth; ++i)
        {
            text = "\"words\":{" + text + "}";
        }
        return "{\"node\":{" + text + "}}";
    }

    static std::string nestedText(int depth, const std::string &content)
    {
        std::string text = content;
        for (int i = 0; i < depth; ++i)
        {
            text = "node{" + text + "}";
        }
        return text;
    }

    static std::string pathOf(int depth)
    {
        std::string path = "node";
        for (int i = 1; i < depth; ++i)
        {
            path += "/node";
        }
        return path;
    }

    static std::string fullLine(int depth)
    {
        std::string path = "nest.Node";
        for (int i = 0; i < depth; ++i)
        {
            path += ".node";
        }
        return "0: Gpb Compiler[ProcXmlContainerNode]Fail to push layer [" + path + "]. depth is 31.";
    }
};

TEST_F(JsonLimitTest, HoldsThirtyOneLayers)
{
    expectEncodes("nest", nested(30, "\"leaf\":1"), "nest.Node", nestedText(30, "leaf:1"));
    expectFails("nest", nested(31), kStackFull, {fullLine(31)});
    expectFails("nest", nested(900), kStackFull, {fullLine(31)});
}

TEST_F(JsonLimitTest, LeavesTheMessageThatFoundNoRoomInItsParent)
{
    const auto compiler = open<OpenJsonCompiler>("nest");
    google::protobuf::DynamicMessageFactory factory;
    const google::protobuf::Descriptor *node = type("nest.Node");
    const std::unique_ptr<google::protobuf::Message> message(factory.GetPrototype(node)->New());
    GpbCompilerStack stack;
    stack.uiLayerNum = GPB_COMPILER_MAX_LAYERS;
    stack.astLayer[stack.uiLayerNum - 1].pstDescriptor = node;
    stack.astLayer[stack.uiLayerNum - 1].pstMessage = message.get();
    stack.astLayer[stack.uiLayerNum - 1].strXPath = "p";
    EXPECT_EQ(kStackFull, compiler->GPB_PushItemDescriptor("node", stack));
    EXPECT_EQ(kStackFull, compiler->GPB_PushItemDescriptor("kids", stack));
    EXPECT_EQ(GPB_COMPILER_MAX_LAYERS, stack.uiLayerNum);
    EXPECT_EQ("node {\n}\nkids {\n}\n", message->DebugString());
    EXPECT_LOG(log(), "0: Gpb Compiler[ProcXmlContainerNode]Fail to push layer [p.node]. depth is 31.",
               "0: Gpb Compiler[ProcXmlContainerNode]Fail to push layer [p.kids]. depth is 31.");
}

TEST_F(JsonLimitTest, HasNoRoomForARootOnAFullStack)
{
    const auto compiler = open<OpenJsonCompiler>("nest");
    const JsonTree tree(R"({"node":{}})");
    GpbCompilerStack stack;
    stack.uiLayerNum = GPB_COMPILER_MAX_LAYERS;
    EXPECT_EQ(kStackFull, compiler->GPB_CompilerStackPrepare(tree.root(), tree.root(), stack));
    EXPECT_LOG(log(), "0: Fail to push root layer [nest.Node]");
}

TEST_F(JsonLimitTest, GivesNoResultFromLayerThirtyOn)
{
    // An item of depth n is encoded into layer n.
    expectPart("nest", nested(29, "\"leaf\":7"), pathOf(29), "nest.Node", "leaf:7");
    const JsonTree tree(nested(30, "\"leaf\":7"));
    const auto compiler = open<OpenJsonCompiler>("nest");
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at(pathOf(30))));
    EXPECT_EQ(nullptr, compiler->pstMessage);
    EXPECT_EQ("", log().take());
    // The leaf of that item lies in layer 30, too.
    EXPECT_EQ(1u, compiler->EncodeJson(tree.root(), tree.at(pathOf(30) + "/leaf")));
    EXPECT_EQ("", log().take());
}

TEST_F(JsonLimitTest, ReportsAncestorsThatFindNoRoom)
{
    const JsonTree tree(nested(31, "\"leaf\":7"));
    const auto compiler = open<OpenJsonCompiler>("nest");
    EXPECT_EQ(kStackFull, compiler->EncodeJson(tree.root(), tree.at(pathOf(31) + "/leaf")));
    EXPECT_LOG(log(), fullLine(31), "0: Fail to push ancestors layer [leaf]", prepareLine(kStackFull));
}

TEST_F(JsonLimitTest, FindsItemsThirtyTwoLevelsDown)
{
    const JsonTree tree(nested(33));
    const auto level = [&](int depth) { return tree.at(pathOf(depth)); };
    cJSON *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
    const auto find = [&](int depth)
    { return OpenJsonCompiler::GPB_GetItemAncestors(tree.root(), level(depth), ancestors, GPB_MAX_ANCESTOR_NUM, 0); };
    EXPECT_EQ(level(32), find(32));
    EXPECT_EQ(level(1), ancestors[0]);
    EXPECT_EQ(level(31), ancestors[30]);
    EXPECT_EQ(nullptr, ancestors[31]);
    std::fill(std::begin(ancestors), std::end(ancestors), nullptr);
    EXPECT_EQ(nullptr, find(33));
    EXPECT_EQ(std::vector<cJSON *>(GPB_MAX_ANCESTOR_NUM, nullptr),
              std::vector<cJSON *>(std::begin(ancestors), std::end(ancestors)));
    EXPECT_EQ(nullptr, OpenJsonCompiler::GPB_GetItemAncestors(nullptr, level(1), ancestors, GPB_MAX_ANCESTOR_NUM, 0));
    EXPECT_EQ(nullptr, OpenJsonCompiler::GPB_GetItemAncestors(tree.root(), level(1), ancestors, 0, 0));
}

TEST_F(JsonLimitTest, TakesAnItemTooFarDownAsOneThatIsNotInTheTree)
{
    const JsonTree tree(nested(33, "\"leaf\":7"));
    const auto compiler = open<OpenJsonCompiler>("nest");
    const CompilerResult result =
        takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.at(pathOf(33) + "/leaf")));
    EXPECT_EQ(0u, result.code);
    EXPECT_TRUE(judge().holds("nest.Node", result.bytes, "leaf:7"));
}

TEST_F(JsonLimitTest, FollowsObjectsUnderLeafListsAsDeepAsTheParserDoes)
{
    expectEncodes("nest", underLeafLists(CJSON_NESTING_LIMIT - 2), "nest.Node", "leaf:5");
}

/**
 * Whoever can parse a document must be able to encode it: a level of the walk must not need a multiple of the stack
 * that one of the parser needs, which is some hundred bytes.
 */
TEST_F(JsonLimitTest, NeedsLittleMoreStackThanTheParser)
{
    constexpr int kShallow = 400;
    constexpr int kDeep = 900;
    const auto stackOf = [this](int depth)
    {
        const JsonTree tree(underLeafLists(depth));
        const auto compiler = open<OpenJsonCompiler>("nest");
        unsigned int code = ~0U;
        const size_t bytes = stackUse([&] { code = compiler->EncodeJson(tree.root(), tree.root()); });
        EXPECT_EQ(0u, code) << depth;
        return bytes;
    };
    const auto stackOfParser = [](int depth)
    {
        const std::string text = underLeafLists(depth);
        return stackUse([&] { cJSON_Delete(cJSON_Parse(text.c_str())); });
    };
    const size_t perLevel = (stackOf(kDeep) - stackOf(kShallow)) / (kDeep - kShallow);
    const size_t ofParser = (stackOfParser(kDeep) - stackOfParser(kShallow)) / (kDeep - kShallow);
    EXPECT_LT(0u, ofParser);
    EXPECT_LT(perLevel, ofParser * kOverhead);
}

TEST_F(JsonLimitTest, StepsOnAnEmptyStackFindNothing)
{
    const auto compiler = open<OpenJsonCompiler>("nest");
    const JsonTree tree(R"({"node":{"words":["a"],"leaf":1}})");
    GpbCompilerStack stack;
    EXPECT_EQ(1u, compiler->GPB_PushItemDescriptor("node", stack));
    EXPECT_EQ(1u, compiler->ProcLeafListNode(tree.at("words"), tree.at("words/0"), stack));
    EXPECT_EQ(0u, compiler->ProcLeafListNode(tree.at("words"), nullptr, stack));
    EXPECT_EQ(0u, OpenJsonCompiler::GPB_GetItemSerializeLayer(stack, tree.root(), tree.at("leaf")));
    EXPECT_EQ("", log().take());
    EXPECT_EQ(1u, compiler->ProcJsonLeafNode(tree.at("leaf"), stack));
    EXPECT_LOG(log(), "2: Gpb Compiler leaf node fail to find field [leaf] from [].");
    EXPECT_EQ(0u, stack.uiLayerNum);
}

TEST_F(JsonLimitTest, AMessageOfAnotherTypeNeverReachesProtobuf)
{
    const auto compiler = open<OpenJsonCompiler>("nest");
    addModule("plant", kPlantProto);
    google::protobuf::DynamicMessageFactory factory;
    const std::unique_ptr<google::protobuf::Message> plant(factory.GetPrototype(type("plant.Plant"))->New());
    GpbCompilerStackLayer upper;
    upper.pstDescriptor = type("nest.Node");
    upper.pstMessage = plant.get();
    GpbCompilerStackLayer layer;
    EXPECT_EQ(1u, compiler->GPB_FillLayerMessage(upper, layer, type("nest.Node")->FindFieldByName("node")));
    upper.pstMessage = nullptr;
    EXPECT_EQ(1u, compiler->GPB_FillLayerMessage(upper, layer, type("nest.Node")->FindFieldByName("node")));
    EXPECT_EQ(nullptr, layer.pstMessage);
    const JsonTree tree(R"({"node":{"leaf":1}})");
    upper.pstMessage = plant.get();
    EXPECT_EQ(0u, compiler->FillLeafField(upper, type("nest.Node")->FindFieldByName("leaf"), tree.at("leaf")));
    EXPECT_LOG(log(), "0: Gpb Compiler  fill leaf fail to translator layer [].");
}

} // namespace
} // namespace gpbtest
