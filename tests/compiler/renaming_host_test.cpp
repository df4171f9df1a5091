/** Hosts that rename nodes in the middle of an encode: names do not stay where they were. */
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
void renameElements()
{
    xmlNode *last = g_document->root()->last;
    xmlNode *name = last->prev->prev->prev;
    std::swap(name->name, last->name);
    std::memcpy(const_cast<xmlChar *>(last->name), "flag", sizeof("flag"));
}

uint32_t printAndRename(uint32_t /*printHandle*/, uint32_t /*printArg*/, const char * /*tag*/, const char * /*text*/)
{
    renameElements();
    return 0;
}

/** The value of the last kind. */
bool isLastKind(const char *text)
{
    return std::strcmp(text, "d") == 0;
}

/** Compilers that rename nodes when they store the last kind. */
class RenamingCompiler : public GpbXmlCompiler
{
public:
    RenamingCompiler(const google::protobuf::FileDescriptor *file, const google::protobuf::compiler::Importer *importer,
                     void *handle)
        : GpbXmlCompiler(file, importer, handle)
    {
        astStrTrans[google::protobuf::FieldDescriptor::TYPE_STRING] =
            [](const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field, const char *value)
        {
            if (isLastKind(value))
            {
                renameElements();
            }
            return GpbCompiler_StrTrans_ToString(layer, field, value);
        };
    }
};

class RenamingXmlToJson : public GpbXmlCompilerJson
{
public:
    RenamingXmlToJson(const google::protobuf::FileDescriptor *file,
                      const google::protobuf::compiler::Importer *importer, void *handle)
        : GpbXmlCompilerJson(file, importer, handle, 0)
    {
        apfnTrans[google::protobuf::FieldDescriptor::TYPE_STRING] =
            [](const google::protobuf::FieldDescriptor *field, const char *text, uint32_t moduleId)
        {
            if (isLastKind(text))
            {
                renameElements();
            }
            return GpbXmlCompilerJson_AddString(field, text, moduleId);
        };
    }
};

/** The tree of the test that runs. */
const JsonTree *g_tree = nullptr;

class RenamingJsonCompiler : public GpbJsonCompiler
{
public:
    RenamingJsonCompiler(const google::protobuf::FileDescriptor *file,
                         const google::protobuf::compiler::Importer *importer, void *handle)
        : GpbJsonCompiler(file, importer, handle)
    {
        astStrTrans[google::protobuf::FieldDescriptor::TYPE_STRING] =
            [](const GpbCompilerStackLayer &layer, const google::protobuf::FieldDescriptor *field, const char *value)
        {
            if (isLastKind(value))
            {
                cJSON *last = g_tree->root()->child->prev;
                std::swap(last->prev->prev->string, last->string);
                std::memcpy(last->string, "flag", sizeof("flag"));
            }
            return GpbCompiler_StrTrans_ToString(layer, field, value);
        };
    }
};

class RenamingHostTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("m", kProto);
        g_document = &m_document;
        context()->astPrint[GPB_LOG_SKIP].pfnPrint = printAndRename;
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

// Where nobody listens, a subclass may still be asked to store a value.
TEST_F(RenamingHostTest, IsASubclassThatEncodesTheNewNames)
{
    const ClosedSlots closed(context());
    const auto compiler = open<RenamingCompiler>("m");
    const CompilerResult result = takeResult(*compiler, compiler->Encode(m_document.get()));
    EXPECT_EQ(0u, result.code);
    EXPECT_TRUE(judge().holds("m.Top", result.bytes, "name: 'c' flag: true kind: 'd'"));
}

TEST_F(RenamingHostTest, IsASubclassThatWritesTheNewNamesAsJson)
{
    const ClosedSlots closed(context());
    const auto compiler = open<RenamingXmlToJson>("m");
    const CompilerResult result = takeResult(*compiler, compiler->Encode(m_document.get()));
    EXPECT_EQ(0u, result.code);
    EXPECT_EQ(R"({"top":{"name":"a","kind":"b","name":"c","kind":"d","flag":true}})", result.bytes);
}

TEST_F(RenamingHostTest, IsASubclassThatEncodesTheNewNamesOfATree)
{
    const ClosedSlots closed(context());
    const JsonTree tree(R"({"top":{"name":"a","kind":"b","name":"c","kind":"d","abcd":true}})");
    g_tree = &tree;
    const auto compiler = open<RenamingJsonCompiler>("m");
    const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
    g_tree = nullptr;
    EXPECT_EQ(0u, result.code);
    EXPECT_TRUE(judge().holds("m.Top", result.bytes, "name: 'c' flag: true kind: 'd'"));
}

} // namespace
} // namespace gpbtest
