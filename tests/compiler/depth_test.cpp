/** How deep a document may nest: 31 layers. */
#include "compiler/compiler_fixture.h"

namespace
{

constexpr const char *kProto = "syntax='proto3'; package depth; message Node { message Case { string leaf_in = 1; bool "
                               "flag_in = 2; Node box_in = 3; } string leaf = 1; Node n = 2; repeated Node list = 3; "
                               "oneof ch { Case case_one = 4; } }";

class DepthTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addModule("depth", kProto);
        open("depth");
    }

    /** A text wrapped in `levels` elements, or in as many messages of the text form. */
    static std::string xml(int levels, const std::string &content, const std::string &name = "n")
    {
        std::string text = content;
        for (int i = 0; i < levels; ++i)
        {
            text = "<" + name + ">" + text + "</" + name + ">";
        }
        return "<node>" + text + "</node>";
    }

    static std::string form(int levels, const std::string &content, const std::string &name = "n")
    {
        std::string text = content;
        for (int i = 0; i < levels; ++i)
        {
            text = name + " { " + text + " }";
        }
        return text;
    }

    static std::string path(int levels, const std::string &name = "n")
    {
        std::string text = "depth.Node";
        for (int i = 0; i < levels; ++i)
        {
            text += "." + name;
        }
        return text;
    }

    void expectNode(const std::string &document, const std::string &textForm,
                    const std::vector<std::string> &lines = {})
    {
        expectEncodes(document, "depth.Node", textForm, lines);
    }
};

// The root is the first layer.
TEST_F(DepthTest, ThirtyOneLayersFit)
{
    expectNode(xml(30, "<leaf>x</leaf>"), form(30, "leaf: 'x'"));
    expectNode(xml(30, "<leaf>x</leaf>", "list"), form(30, "leaf: 'x'", "list"));
}

TEST_F(DepthTest, PresenceContainerNeedsNoLayer)
{
    expectNode(xml(30, "<n>\n</n>"), form(30, "n {}"));
}

using DepthOddities = DepthTest;

// The message is added to its parent before the room is looked at, so it stays there, empty.
TEST_F(DepthOddities, ThirtySecondLayerIsDroppedAndLeavesAnEmptyMessage)
{
    for (const std::string name : {"n", "list"})
    {
        const std::string line =
            "0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(31, name) + "]. depth is 31.";
        const std::string document = xml(31, "<leaf>x</leaf>", name);
        compiler().ucStopOnError = 0;
        expectNode(document, form(31, "", name), {line});
        compiler().ucStopOnError = 1;
        expectFails(document, 10, {line});
    }
}

TEST_F(DepthTest, SiblingsOfATooDeepContainerGoOn)
{
    const std::string line =
        "0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(31) + "]. depth is 31.";
    expectNode(xml(30, "<n><leaf>deep</leaf></n><leaf>x</leaf>"), form(30, "n {} leaf: 'x'"), {line});
}

TEST_F(DepthTest, HundredsOfLevelsAreNoDanger)
{
    const std::string line =
        "0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(31) + "]. depth is 31.";
    expectNode(xml(200, "<leaf>x</leaf>"), form(31, ""), {line});
}

TEST_F(DepthTest, CaseNeedsALayer)
{
    expectNode(xml(29, "<leaf-in>x</leaf-in>"), form(29, "case_one { leaf_in: 'x' }"));
    expectNode(xml(29, "<box-in>\n</box-in>"), form(29, "case_one { box_in {} }"));
}

// As for containers, the case's message is there before the room is looked at.
TEST_F(DepthOddities, CaseAboveTheLastLayerFailsAndLeavesAnEmptyMessage)
{
    const std::string left = form(30, "case_one {}");
    const std::string leaf = "0: Gpb compiler leaf choice case node [leaf-in] fail.";
    const std::string container = "0: Gpb compiler container choice case node [box-in] fail.";
    const std::string presence = "0: Gpb compiler presence container choice case node [box-in] fail.";
    const std::string empty = "0: Gpb compiler empty leaf choice case node [flag-in] fail.";
    expectNode(xml(30, "<leaf-in>x</leaf-in>"), left, {leaf});
    expectNode(xml(30, "<box-in><leaf>x</leaf></box-in>"), left, {container});
    expectNode(xml(30, "<box-in>\n</box-in>"), left, {presence});
    expectNode(xml(30, "<flag-in/>"), left, {empty});
    compiler().ucStopOnError = 1;
    expectFails(xml(30, "<leaf-in>x</leaf-in>"), 1, {leaf});
    expectFails(xml(30, "<box-in><leaf>x</leaf></box-in>"), 1, {container});
    expectFails(xml(30, "<box-in>\n</box-in>"), 1, {presence});
    expectFails(xml(30, "<flag-in/>"), 1, {empty});
}

TEST_F(DepthTest, ContainerInACaseNeedsTwo)
{
    expectNode(xml(28, "<box-in><leaf>x</leaf></box-in>"), form(28, "case_one { box_in { leaf: 'x' } }"));
    expectNode(xml(29, "<box-in><leaf>x</leaf></box-in>"), form(29, "case_one { box_in {} }"),
               {"0: [GpbXmlCompiler][ProcXmlContainerNode]Fail to push layer [" + path(29) +
                ".case_one.box_in]. depth is 31."});
}

// Names with a depth suffix are found at the last layer as at the first.
TEST_F(DepthTest, LayerNumberGrowsWithTheDepth)
{
    addModule("suffix", "syntax='proto3'; package suffix; message Node { Node n = 1; string leaf2 = 2; string leaf32 = "
                        "3; }");
    open("suffix");
    std::string document = "<leaf>deep</leaf>";
    std::string textForm = "leaf32: 'deep'";
    for (int i = 0; i < 30; ++i)
    {
        document = "<n>" + document + "</n>";
        textForm = "n { " + textForm + " }";
    }
    expectEncodes("<node><leaf>top</leaf>" + document + "</node>", "suffix.Node", "leaf2: 'top' " + textForm);
}

} // namespace
