/** A host that renames elements when it is told that something cannot be encoded: names do not stay where they were. */
#include <cstring>
#include <libxml/parser.h>
#include <string>
#include <utility>

#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

constexpr const char *kProto = R"(syntax = "proto3"; package m;
    message Top { string name = 1; bool flag = 2; string kind = 3; })";

/** Long enough for a compiler to learn that a name comes behind a kind. */
constexpr const char *kXml =
    "<top><name>a</name><kind>b</kind><name>c</name><kind>d</kind><nothing/><abcd>true</abcd></top>";

/** The document of the test that runs. */
const XmlDocument *g_document = nullptr;

/** The last element takes the place of the last name, with another text there: "flag". */
uint32_t renameElements(uint32_t /*printHandle*/, uint32_t /*printArg*/, const char * /*tag*/, const char * /*text*/)
{
    xmlNode *last = g_document->root()->last;
    xmlNode *name = last->prev->prev->prev;
    std::swap(name->name, last->name);
    std::memcpy(const_cast<xmlChar *>(last->name), "flag", sizeof("flag"));
    return 0;
}

class RenamingHostTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("m", kProto);
        g_document = &m_document;
        context()->astPrint[GPB_LOG_SKIP].pfnPrint = renameElements;
    }

    void TearDown() override
    {
        g_document = nullptr;
        JsonFixture::TearDown();
    }

    // Without the dictionary each element has its own copy of its name.
    const XmlDocument m_document{kXml, XML_PARSE_NODICT};
};

TEST_F(RenamingHostTest, GetsTheNewNamesEncoded)
{
    const auto compiler = open<GpbXmlCompiler>("m");
    const CompilerResult result = takeResult(*compiler, compiler->Encode(m_document.get()));
    EXPECT_EQ(0u, result.code);
    EXPECT_TRUE(judge().holds("m.Top", result.bytes, "name: 'c' flag: true kind: 'd'"));
}

TEST_F(RenamingHostTest, GetsTheNewNamesAsJson)
{
    const auto compiler = open<GpbXmlCompilerJson>("m", static_cast<unsigned char>(0));
    const CompilerResult result = takeResult(*compiler, compiler->Encode(m_document.get()));
    EXPECT_EQ(0u, result.code);
    EXPECT_EQ(R"({"top":{"name":"a","kind":"b","name":"c","kind":"d","flag":true}})", result.bytes);
}

} // namespace
} // namespace gpbtest
