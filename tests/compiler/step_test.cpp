/** The compiler's steps one by one, for what no document or only an odd one reaches. White box: subclasses see these.
 */
#include <cstring>

#include "compiler/compiler_fixture.h"

namespace
{

namespace pb = google::protobuf;

using pb::FieldDescriptor;

class StepTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
        addDataModule("choice");
    }

    const FieldDescriptor *field(const std::string &typeName, const std::string &name)
    {
        return type(typeName)->FindFieldByName(name);
    }

    GpbCompilerStackLayer layerOf(const std::string &typeName, const std::string &path)
    {
        GpbCompilerStackLayer layer;
        layer.pstDescriptor = type(typeName);
        layer.pstMessage = newMessage(typeName);
        layer.strXPath = path;
        return layer;
    }

    unsigned int fill(const GpbCompilerStackLayer &layer, const FieldDescriptor *leaf, std::string value,
                      std::string name = "node")
    {
        return compiler().FillLeafField(layer, leaf, value.data(), name.data());
    }

    /** The first element of a name in a document that lives to the end of the test. */
    xmlNode *node(const std::string &xml, const std::string &name)
    {
        m_documents.push_back(std::make_unique<gpbtest::XmlDocument>(xml));
        return m_documents.back()->find(name);
    }

    std::vector<std::unique_ptr<gpbtest::XmlDocument>> m_documents;
};

// ---- FillLeafField ----

TEST_F(StepTest, FillLeafFieldWithoutTranslatorGivesEight)
{
    open("walk");
    const GpbCompilerStackLayer layer = layerOf("walk.Top", "p");
    EXPECT_EQ(8u, fill(layer, field("walk.Top", "box"), "x"));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [node] type 11.");
    compiler().astStrTrans[FieldDescriptor::TYPE_STRING] = nullptr;
    EXPECT_EQ(8u, fill(layer, field("walk.Top", "name"), "x"));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [node] type 9.");
    EXPECT_EQ(0u, fill(layer, field("walk.Top", "count"), "4"));
    EXPECT_LOG(log(), );
    EXPECT_TRUE(judge().holds("walk.Top", layer.pstMessage->SerializeAsString(), "count: 4"));
}

GpbStrTransFunc *g_ownEntry;

unsigned int refuseFromNowOn(const GpbCompilerStackLayer &, const FieldDescriptor *, const char *)
{
    *g_ownEntry = nullptr;
    return 8;
}

TEST_F(StepTest, FillLeafFieldTellsATranslatorThatFailsAndGoesFromNone)
{
    open("walk");
    const GpbCompilerStackLayer layer = layerOf("walk.Top", "p");
    g_ownEntry = &compiler().astStrTrans[FieldDescriptor::TYPE_STRING];
    *g_ownEntry = refuseFromNowOn;
    EXPECT_EQ(8u, fill(layer, field("walk.Top", "name"), "x"));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to translator node [node] value [x] to layer [p].");
    EXPECT_EQ(8u, fill(layer, field("walk.Top", "name"), "x"));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [node] type 9.");
}

TEST_F(StepTest, FillLeafFieldReturnsTheTranslatorsCode)
{
    open("walk");
    const GpbCompilerStackLayer layer = layerOf("walk.Top", "the.path");
    EXPECT_EQ(1u, fill(layer, field("walk.Top.Box", "name"), "v", "n"));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to translator node [n] value [v] to layer [the.path].");
    const GpbStrTransFunc refuse = [](const GpbCompilerStackLayer &, const FieldDescriptor *, const char *)
    { return 1234u; };
    compiler().astStrTrans[FieldDescriptor::TYPE_STRING] = refuse;
    EXPECT_EQ(1234u, fill(layer, field("walk.Top", "name"), "", ""));
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][FillLeafField]Fail to translator node [] value [] to layer [the.path].");
}

// ---- layers ----

TEST_F(StepTest, GenerateXPathAppends)
{
    open("walk");
    GpbCompilerStackLayer upper = layerOf("walk.Top", "up.per");
    GpbCompilerStackLayer layer;
    compiler().GenerateXPath(layer, &upper, field("walk.Top", "box"));
    EXPECT_EQ("up.per.box", layer.strXPath);
    compiler().GenerateXPath(layer, nullptr, field("walk.Top", "list"));
    EXPECT_EQ("up.per.boxwalk.list", layer.strXPath);
}

TEST_F(StepTest, GenerateLayerMakesAMessageOnlyWithoutUpperLayer)
{
    open("walk");
    GpbCompilerStackLayer upper = layerOf("walk.Top", "walk.Top");
    GpbCompilerStackLayer below;
    EXPECT_EQ(0u, compiler().GenerateLayer(below, &upper, field("walk.Top", "box")));
    EXPECT_EQ(type("walk.Top.Box"), below.pstDescriptor);
    EXPECT_EQ(nullptr, below.pstMessage);
    EXPECT_EQ("walk.Top.box", below.strXPath);

    GpbCompilerStackLayer alone;
    EXPECT_EQ(0u, compiler().GenerateLayer(alone, nullptr, field("walk.Top", "box")));
    const std::unique_ptr<pb::Message> message(alone.pstMessage);
    ASSERT_NE(nullptr, message);
    EXPECT_EQ(type("walk.Top.Box"), message->GetDescriptor());
    EXPECT_EQ("walk.box", alone.strXPath);
    EXPECT_LOG(log(), );
}

TEST_F(StepTest, GenerateLayerForAScalarGivesThree)
{
    open("walk");
    GpbCompilerStackLayer layer;
    EXPECT_EQ(3u, compiler().GenerateLayer(layer, nullptr, field("walk.Top", "name")));
    EXPECT_EQ(nullptr, layer.pstMessage);
    EXPECT_LOG(log(), "2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path walk.name.");
}

TEST_F(StepTest, AddLayerToUpperLayerOpensOrAppends)
{
    open("walk");
    const GpbCompilerStackLayer upper = layerOf("walk.Top", "walk.Top");
    GpbCompilerStackLayer layer;
    EXPECT_EQ(0u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "box")));
    const pb::Message *const box = layer.pstMessage;
    EXPECT_EQ(0u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "box")));
    EXPECT_EQ(box, layer.pstMessage);
    EXPECT_EQ(0u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "list")));
    const pb::Message *const entry = layer.pstMessage;
    EXPECT_EQ(0u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "list")));
    EXPECT_NE(entry, layer.pstMessage);
    EXPECT_TRUE(judge().holds("walk.Top", upper.pstMessage->SerializeAsString(), "box {} list {} list {}"));
}

TEST_F(StepTest, AddLayerToUpperLayerForAScalarGivesSeven)
{
    open("walk");
    const GpbCompilerStackLayer upper = layerOf("walk.Top", "walk.Top");
    GpbCompilerStackLayer layer;
    EXPECT_EQ(7u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "kind")));
    EXPECT_EQ(nullptr, layer.pstMessage);
    EXPECT_LOG(log(), "0: [GpbXmlCompiler][AddLayerToUpperLayer]Field [kind] type is not message, it is 14.");
}

TEST_F(StepTest, AddLayerToUpperLayerWithoutAFittingMessageGivesOne)
{
    open("walk");
    GpbCompilerStackLayer upper;
    GpbCompilerStackLayer layer;
    EXPECT_EQ(1u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "box")));
    upper = layerOf("walk.Top.Box", "p");
    EXPECT_EQ(1u, compiler().AddLayerToUpperLayer(upper, layer, field("walk.Top", "box")));
    EXPECT_EQ("", upper.pstMessage->SerializeAsString());
    EXPECT_LOG(log(), );
}

// A group is a message by its type, but not a field of message type: a container gives 7, a leaf 8.
TEST_F(StepTest, GroupIsNeitherContainerNorLeaf)
{
    addModule("grouped", "syntax='proto2'; package grouped; message Top { optional group Grp = 1 { optional string x = "
                         "1; } optional string v = 2; }");
    open("grouped");
    const std::string container = "0: [GpbXmlCompiler][AddLayerToUpperLayer]Field [grp] type is not message, it is 10.";
    const std::string leaf = "0: [GpbXmlCompiler][FillLeafField]Fail to find translator for node [grp] type 10.";
    const std::string empty = "2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 10.";
    expectEncodes("<top><grp><x>1</x></grp><grp>t</grp><grp>\n</grp><grp/><v>2</v></top>", "grouped.Top", "v: '2'",
                  {container, leaf, container, empty});
    compiler().ucStopOnError = 1;
    expectFails("<top><grp><x>1</x></grp></top>", 7, {container});
    expectFails("<top><grp>t</grp></top>", 8, {leaf});
    expectFails("<top><grp>\n</grp></top>", 7, {container});
}

// ---- the top layer ----

TEST_F(StepTest, InitCompilerTopLayerAppendsToThePath)
{
    open("walk");
    GpbCompilerStackLayer layer;
    EXPECT_EQ(0u, compiler().InitCompilerTopLayer(node("<top/>", "top"), layer));
    const std::unique_ptr<pb::Message> message(layer.pstMessage);
    EXPECT_EQ("walk.Top", layer.strXPath);
    EXPECT_EQ(type("walk.Top"), layer.pstDescriptor);
    ASSERT_NE(nullptr, message);
    EXPECT_EQ(type("walk.Top"), message->GetDescriptor());
    layer.pstMessage = nullptr;
    EXPECT_EQ(3u, compiler().InitCompilerTopLayer(node("<top/>", "top"), layer));
    EXPECT_LOG(log(), "2: Fail to find message type for path walk.Topwalk.Top.");
}

TEST_F(StepTest, ProcCompilerTopLayerOnAFullStackGivesTen)
{
    open("walk");
    GpbCompilerStack stack;
    stack.uiLayerNum = 31;
    EXPECT_EQ(10u, compiler().ProcCompilerTopLayer(node("<top><name>n</name></top>", "top"), stack));
    EXPECT_EQ(31u, stack.uiLayerNum);
    EXPECT_EQ(nullptr, stack.astLayer[31].pstMessage);
    EXPECT_LOG(log(), "0: Fail to push upper layer [walk.Top]");
}

TEST_F(StepTest, ProcCompilerTopLayerLeavesTheTopOnTheStack)
{
    open("choice");
    GpbCompilerStack stack;
    // The case that stays open is the last child, so nobody but the top layer could close it.
    EXPECT_EQ(0u, compiler().ProcCompilerTopLayer(node("<top><name>n</name><a-box>\n</a-box></top>", "top"), stack));
    const std::unique_ptr<pb::Message> message(stack.astLayer[0].pstMessage);
    EXPECT_EQ(1u, stack.uiLayerNum);
    EXPECT_EQ(type("choice.Top"), stack.astLayer[0].pstDescriptor);
    EXPECT_EQ("choice.Top", stack.astLayer[0].strXPath);
    EXPECT_TRUE(judge().holds("choice.Top", message->SerializeAsString(), "name: 'n' case_a { a_box {} }"));
}

TEST_F(StepTest, ContainerOnAnEmptyStackIsTheRoot)
{
    open("walk");
    GpbCompilerStack stack;
    EXPECT_EQ(0u, compiler().ProcXmlContainerNode(node("<top><name>n</name></top>", "top"), stack));
    const std::unique_ptr<pb::Message> message(stack.astLayer[0].pstMessage);
    EXPECT_EQ(1u, stack.uiLayerNum);
    EXPECT_EQ(type("walk.Top"), stack.astLayer[0].pstDescriptor);
}

// ---- steps on a stack ----

TEST_F(StepTest, NoNodeEndsTheWalk)
{
    open("walk");
    GpbCompilerStack stack;
    EXPECT_EQ(0u, compiler().IterXmlDoc(nullptr, stack));
    EXPECT_EQ(0u, stack.uiLayerNum);
}

TEST_F(StepTest, WalkGoesOnWithTheFollowingSiblingsOnly)
{
    open("walk");
    GpbCompilerStack stack;
    stack.astLayer[0] = layerOf("walk.Top", "walk.Top");
    stack.uiLayerNum = 1;
    EXPECT_EQ(0u, compiler().IterXmlDoc(node("<top><name>n</name><count>1</count><flag/></top>", "count"), stack));
    EXPECT_TRUE(judge().holds("walk.Top", stack.astLayer[0].pstMessage->SerializeAsString(), "count: 1 flag: true"));
    EXPECT_EQ(1u, stack.uiLayerNum);
}

TEST_F(StepTest, PresenceContainerOnAnEmptyStackGivesOne)
{
    open("walk");
    GpbCompilerStack stack;
    stack.astLayer[0] = layerOf("walk.Top", "walk.Top");
    EXPECT_EQ(1u, compiler().ProcXmlPresenceContainerNode(node("<top><box>\n</box></top>", "box"), stack));
    EXPECT_EQ("", stack.astLayer[0].pstMessage->SerializeAsString());
    EXPECT_LOG(log(), );
}

TEST_F(StepTest, EmptyLeafOnAnEmptyStackLooksAtTheFirstSlot)
{
    open("walk");
    GpbCompilerStack stack;
    stack.astLayer[0] = layerOf("walk.Top", "walk.Top");
    EXPECT_EQ(0u, compiler().ProcXmlEmptyLeafNode(node("<top><flag/></top>", "flag"), stack));
    EXPECT_TRUE(judge().holds("walk.Top", stack.astLayer[0].pstMessage->SerializeAsString(), "flag: true"));
    EXPECT_EQ(0u, stack.uiLayerNum);
}

TEST_F(StepTest, EmptyLeafThatIsNoElementIsNothing)
{
    open("walk");
    GpbCompilerStack stack;
    EXPECT_EQ(0u, compiler().ProcXmlEmptyLeafNode(node("<top>text</top>", "top")->children, stack));
    EXPECT_EQ(0u, compiler().ProcXmlEmptyLeafNode(node("<top><!-- c --></top>", "top")->children, stack));
    EXPECT_LOG(log(), );
}

TEST_F(StepTest, LayerCountAfterEachKindOfNodeInACase)
{
    open("choice");
    struct Step
    {
        const char *content;
        const char *name;
        uint32_t layers;
    };
    for (const Step &step :
         {Step{"<a-leaf>1</a-leaf>", "a-leaf", 1}, Step{"<deep>1</deep>", "deep", 1}, Step{"<a-flag/>", "a-flag", 1},
          Step{"<a-box><inside>1</inside></a-box>", "a-box", 1},
          // deliberately not restored
          Step{"<a-leaf/>", "a-leaf", 2}, Step{"<deep/>", "deep", 3}, Step{"<a-box>\n</a-box>", "a-box", 2}})
    {
        SCOPED_TRACE(step.content);
        GpbCompilerStack stack;
        stack.astLayer[0] = layerOf("choice.Top", "choice.Top");
        stack.uiLayerNum = 1;
        EXPECT_EQ(0u, compiler().IterXmlDoc(node(std::string("<top>") + step.content + "</top>", step.name), stack));
        EXPECT_EQ(step.layers, stack.uiLayerNum);
        // Popped slots keep what they held.
        EXPECT_EQ(type("choice.Top.CaseA"), stack.astLayer[1].pstDescriptor);
        EXPECT_EQ("choice.Top.case_a", stack.astLayer[1].strXPath);
        EXPECT_NE(nullptr, stack.astLayer[1].pstMessage);
    }
}

// ---- names that move ----

xmlChar *g_nameToChange;

unsigned int storeAndRename(const GpbCompilerStackLayer &layer, const FieldDescriptor *field, const char *value)
{
    const unsigned int result = GpbCompiler_StrTrans_ToString(layer, field, value);
    std::memcpy(g_nameToChange, "blob", std::strlen("blob"));
    return result;
}

TEST_F(StepTest, ReadsNamesAnewThatATranslatorHasChanged)
{
    recreateContext({0, 1, 2, 3}); // with a slot open, names are always read anew
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), "walk", 0));
    open("walk");
    compiler().astStrTrans[FieldDescriptor::TYPE_STRING] = storeAndRename;
    gpbtest::XmlDocument document("<top><name>a</name><name>b</name><name>c</name></top>");
    // The three elements have one name together, which is "blob" from the first leaf on.
    g_nameToChange = const_cast<xmlChar *>(document.find("name")->name);
    ASSERT_EQ(0u, compiler().Encode(document.get()));
    unsigned int length = 0;
    const char *const bytes = compiler().GetResult(&length);
    EXPECT_TRUE(judge().holds("walk.Top", std::string(bytes, length), "name: 'a' blob: 'c'"));
}

} // namespace
