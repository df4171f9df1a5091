/** Documents of a parser that a host keeps, in the form that takes the fewest allocations. */
#include <string>
#include <vector>

#include <libxml/parser.h>

#include "compiler/compiler_fixture.h"
#include "gpb_templatelib/gpb_compiler_c.h"

namespace
{

using gpbtest::XmlDocument;

constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_NOERROR;

struct Free
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};
using Document = std::unique_ptr<xmlDoc, Free>;
using Parser = std::unique_ptr<xmlParserCtxt, Free>;
using Compiler = std::unique_ptr<GpbXmlCompilerBase, Free>;

Document parse(const Parser &parser, const std::string &text)
{
    return Document(
        xmlCtxtReadDoc(parser.get(), reinterpret_cast<const xmlChar *>(text.c_str()), nullptr, nullptr, kOptions));
}

class KeptParserTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
    }

    /** What the compilers make of a document, and what they log. */
    std::vector<std::string> compile(xmlDoc *document)
    {
        const Compiler compilers[] = {Compiler(GpbXmlCompiler_CreateCompiler(context(), "walk")),
                                      Compiler(GpbXmlCompiler_CreateJsonCompiler(context(), "walk", 0))};
        std::vector<std::string> results;
        for (const Compiler &compiler : compilers)
        {
            log().clear();
            unsigned int length = 0;
            unsigned int error = 0;
            const char *const bytes = GpbXmlCompiler_Encode(compiler.get(), document, &length, &error);
            results.push_back(std::to_string(error));
            results.push_back(bytes == nullptr ? "nothing" : std::string(bytes, length));
            results.push_back(log().take());
        }
        return results;
    }
};

const std::vector<std::string> kTexts = {
    "<top><name>n</name><count>1</count><flag/></top>",
    "<?xml version='1.0' encoding='UTF-8'?>\n<top>\n  <name>a text that no node has room for</name>\n</top>",
    "<top><name>\xc3\xa4</name><blob>&#65;&lt;</blob><number>1</number><number>2</number></top>",
    "<top><box>\n</box><list> <!-- c --> </list><list><entry><name>n</name></entry></list></top>",
    "<top><name><![CDATA[n]]></name><name/><kind>one</kind><kind>none</kind><nowhere>1</nowhere></top>",
    "<top><box __tlmtIgnored='1'><count>1</count></box><count>2</count></top>",
    "<!DOCTYPE top [<!ENTITY e 'v'>]><top><name>&e;</name><box>&e;</box><count>3</count></top>",
    "<top xmlns='urn:walk'><w:name xmlns:w='urn:walk'>n</w:name></top>",
    "<nowhere/>",
};

TEST_F(KeptParserTest, DocumentsGiveWhatThoseOfAFreshOneGive)
{
    const Parser parser(xmlNewParserCtxt());
    for (const std::string &text : kTexts)
    {
        SCOPED_TRACE(text);
        const XmlDocument fresh(text);
        const Document kept = parse(parser, text);
        ASSERT_NE(nullptr, kept);
        EXPECT_EQ(compile(fresh.get()), compile(kept.get()));
    }
}

// They share the parser's dictionary of names, which goes with the last of them.
TEST_F(KeptParserTest, DocumentsOutliveTheParser)
{
    Parser parser(xmlNewParserCtxt());
    std::vector<Document> documents;
    for (const std::string &text : kTexts)
    {
        documents.push_back(parse(parser, text));
    }
    parser.reset();
    for (size_t i = 0; i < kTexts.size(); ++i)
    {
        SCOPED_TRACE(kTexts[i]);
        EXPECT_EQ(compile(XmlDocument(kTexts[i]).get()), compile(documents[i].get()));
        documents[i].reset();
    }
}

TEST_F(KeptParserTest, ADocumentThatIsRefusedLeavesTheParserAsItWas)
{
    const Parser parser(xmlNewParserCtxt());
    const std::string text = kTexts[0];
    const auto expected = compile(XmlDocument(text).get());
    for (const char *broken : {"", "<top><name>n</name>", "<top>&nowhere;</top>", "<top><name>n</top></name>"})
    {
        EXPECT_EQ(nullptr, parse(parser, broken)) << broken;
        EXPECT_EQ(expected, compile(parse(parser, text).get()));
    }
}

TEST_F(KeptParserTest, ShortTextsLieInTheirNodes)
{
    const Parser parser(xmlNewParserCtxt());
    const Document document = parse(parser, kTexts[0]);
    const xmlNode *const text = xmlDocGetRootElement(document.get())->children->children;
    EXPECT_GE(text->content, reinterpret_cast<const xmlChar *>(text));
    EXPECT_LT(text->content, reinterpret_cast<const xmlChar *>(text + 1));
    EXPECT_EQ("{\"top\":{\"name\":\"n\",\"count\":1,\"flag\":true}}", compile(document.get())[4]);
}

// Without the blanks, what is left of such a container is a lone child that is no element, which is a leaf without
// text.
TEST_F(KeptParserTest, LeavingOutBlanksLosesAContainerOfComments)
{
    const std::string text = "<top><count>1</count><box>\n<!-- c -->\n</box></top>";
    EXPECT_EQ("{\"top\":{\"count\":1,\"box\":{}}}", compile(XmlDocument(text).get())[4]);
    EXPECT_EQ("{\"top\":{\"count\":1}}", compile(XmlDocument(text, XML_PARSE_NOBLANKS).get())[4]);
}

} // namespace
