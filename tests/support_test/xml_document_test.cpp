#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include "support/xml_document.h"

namespace
{

std::string nameOf(const xmlNode *node)
{
    return node == nullptr ? "" : reinterpret_cast<const char *>(node->name);
}

TEST(XmlDocumentTest, FindsElementsInDocumentOrder)
{
    const gpbtest::XmlDocument document("<top><a><b id='1'/></a><b id='2'/><c>text</c></top>");
    EXPECT_EQ("top", nameOf(document.root()));
    EXPECT_EQ(document.root(), document.find("top"));
    ASSERT_NE(nullptr, document.find("b"));
    EXPECT_EQ("a", nameOf(document.find("b")->parent));
    EXPECT_EQ(document.root(), document.find("c")->parent);
    EXPECT_EQ(nullptr, document.find("d"));
    EXPECT_EQ(nullptr, document.find("text"));
}

void ignoreError(void *, xmlErrorPtr) {}

TEST(XmlDocumentTest, FaultyTextFailsTheTest)
{
    xmlSetStructuredErrorFunc(nullptr, ignoreError); // keeps the parser's own message off the screen
    EXPECT_NONFATAL_FAILURE(
        {
            const gpbtest::XmlDocument document("<top>");
            EXPECT_EQ(nullptr, document.get());
            EXPECT_EQ(nullptr, document.root());
            EXPECT_EQ(nullptr, document.find("top"));
        },
        "not well-formed");
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

} // namespace
