/** Paths of XML elements. */
#include <string>

#include "descriptor/xml_nesting.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "support/platform_fixture.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::XmlNesting;

constexpr uint32_t kRoom = 256;
constexpr size_t kMaxElements = 32;

class XmlNodePath : public gpbtest::PlatformFixture
{
protected:
    /** The path; "(failed)" for the result 1. */
    static std::string pathOf(xmlNode *node, uint32_t room = kRoom)
    {
        std::string buffer(room + 1, '\0');
        buffer.back() = '#';
        const uint32_t result = GPB_BuildXmlNodePath(node, buffer.data(), room);
        EXPECT_EQ('#', buffer.back()) << "written behind the room";
        EXPECT_LE(result, 1u);
        return result == 0 ? buffer.c_str() : "(failed)";
    }
};

TEST_F(XmlNodePath, NamesEveryElementOutermostFirst)
{
    const gpbtest::XmlDocument document("<root><list><a/></list><list><b>text</b></list></root>");
    EXPECT_EQ("/root", pathOf(document.root()));
    EXPECT_EQ("/root/list", pathOf(document.find("list")));
    EXPECT_EQ("/root/list/b", pathOf(document.find("b")));
}

TEST_F(XmlNodePath, LeavesNamespacePrefixesOut)
{
    const gpbtest::XmlDocument document("<p:root xmlns:p='urn:p'><p:leaf/></p:root>");
    EXPECT_EQ("/root/leaf", pathOf(document.find("leaf")));
}

TEST_F(XmlNodePath, OfNullOrTheDocumentWritesNothing)
{
    const XmlNesting nesting("root");
    char buffer[] = "untouched";
    EXPECT_EQ(0u, GPB_BuildXmlNodePath(nullptr, buffer, sizeof(buffer)));
    EXPECT_EQ(0u, GPB_BuildXmlNodePath(nesting.document(), buffer, sizeof(buffer)));
    EXPECT_STREQ("untouched", buffer);
    EXPECT_EQ(0u, GPB_BuildXmlNodePath(nullptr, nullptr, 0));
    EXPECT_EQ(0u, GPB_BuildXmlNodePath(nesting.document(), nullptr, 0));
}

TEST_F(XmlNodePath, FailsForAnElementWithoutDestination)
{
    EXPECT_EQ(1u, GPB_BuildXmlNodePath(XmlNesting("root").leaf(), nullptr, kRoom));
}

TEST_F(XmlNodePath, EndsAtAnElementWithoutParent)
{
    xmlNode *const outer = xmlNewNode(nullptr, reinterpret_cast<const xmlChar *>("outer"));
    xmlNode *const inner = xmlNewChild(outer, nullptr, reinterpret_cast<const xmlChar *>("inner"), nullptr);
    EXPECT_EQ("/outer/inner", pathOf(inner));
    EXPECT_EQ("/outer", pathOf(outer));
    xmlFreeNode(outer);
}

TEST_F(XmlNodePath, Has32ElementsAtMost)
{
    std::string expected;
    for (size_t i = 1; i < kMaxElements; ++i)
    {
        expected += "/e";
    }
    EXPECT_EQ(expected + "/leaf", pathOf(XmlNesting(XmlNesting::levels(kMaxElements - 1) + "leaf").leaf()));
    EXPECT_EQ("(failed)", pathOf(XmlNesting(XmlNesting::levels(kMaxElements) + "leaf").leaf()));
    EXPECT_EQ("(failed)", pathOf(XmlNesting(XmlNesting::levels(10 * kMaxElements) + "leaf").leaf()));
}

TEST_F(XmlNodePath, Has255CharactersAtMost)
{
    const std::string longest(kRoom - 2, 'n');
    EXPECT_EQ("/" + longest, pathOf(XmlNesting(longest).leaf()));
    EXPECT_EQ("(failed)", pathOf(XmlNesting(longest + "n").leaf()));
    const std::string tail(100, 't');
    const std::string head(kRoom - 3 - tail.size(), 'h');
    EXPECT_EQ("/" + head + "/" + tail, pathOf(XmlNesting(head + "/" + tail).leaf()));
    EXPECT_EQ("(failed)", pathOf(XmlNesting(head + "/" + tail + "t").leaf()));
}

TEST_F(XmlNodePath, IsBoundedByTheRoomThatIsGiven)
{
    const XmlNesting nesting("ab/cd");
    EXPECT_EQ("/ab/cd", pathOf(nesting.leaf(), 7));
    for (uint32_t room = 0; room < 7; ++room)
    {
        EXPECT_EQ("(failed)", pathOf(nesting.leaf(), room)) << room;
    }
}

TEST_F(XmlNodePath, FailsWhenAnElementCannotBeWritten)
{
    const XmlNesting nesting("a/b/c");
    for (const uint64_t element : {1u, 2u, 3u})
    {
        GpbHost_FailCall(GPB_HOST_SPRINTF, element);
        EXPECT_EQ("(failed)", pathOf(nesting.leaf())) << element;
    }
    EXPECT_EQ("/a/b/c", pathOf(nesting.leaf()));
}

} // namespace
