/** Hosts that rename nodes in the middle of an encode: names do not stay where they were. */
#include <cstring>
#include <libxml/parser.h>
#include <string>
#include <utility>
#include <vector>

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

/** The document of the test that runs, and one of its elements that are called "name". */
const XmlDocument *g_document = nullptr;
xmlNode *g_named = nullptr;

/** The last element's name takes the place of another name, with another text there: "flag". */
void renameElements()
{
    xmlNode *last = g_document->root()->last;
    std::swap(g_named->name, last->name);
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
        context()->astPrint[GPB_LOG_SKIP].pfnPrint = printAndRename;
    }

    /** What compilers of a class make of the document, whichever name is taken. */
    template <typename Compiler, typename... Argument>
    std::vector<CompilerResult> encode(Argument... argument)
    {
        std::vector<CompilerResult> results;
        for (const bool isFirst : {true, false})
        {
            // Without the dictionary each element has its own copy of its name.
            const XmlDocument document(kXml, XML_PARSE_NODICT);
            g_document = &document;
            xmlNode *first = document.root()->children;
            g_named = isFirst ? first : first->next->next;
            const auto compiler = open<Compiler>("m", argument...);
            results.push_back(takeResult(*compiler, compiler->Encode(document.get())));
            g_document = nullptr;
            g_named = nullptr;
        }
        return results;
    }

    void expectMessages(const std::vector<CompilerResult> &results)
    {
        for (const CompilerResult &result : results)
        {
            EXPECT_EQ(0u, result.code);
            EXPECT_TRUE(judge().holds("m.Top", result.bytes, "name: 'c' flag: true kind: 'd'"));
        }
    }

    static void expectTexts(const std::vector<CompilerResult> &results)
    {
        for (const CompilerResult &result : results)
        {
            EXPECT_EQ(0u, result.code);
            EXPECT_EQ(R"({"top":{"name":"a","kind":"b","name":"c","kind":"d","flag":true}})", result.bytes);
        }
    }
};

TEST_F(RenamingHostTest, GetsTheNewNamesEncoded)
{
    expectMessages(encode<GpbXmlCompiler>());
}

TEST_F(RenamingHostTest, GetsTheNewNamesAsJson)
{
    expectTexts(encode<GpbXmlCompilerJson>(static_cast<unsigned char>(0)));
}

// Where nobody listens, a subclass may still be asked to store a value.
TEST_F(RenamingHostTest, IsASubclassThatEncodesTheNewNames)
{
    const ClosedSlots closed(context());
    expectMessages(encode<RenamingCompiler>());
}

TEST_F(RenamingHostTest, IsASubclassThatWritesTheNewNamesAsJson)
{
    const ClosedSlots closed(context());
    expectTexts(encode<RenamingXmlToJson>());
}

TEST_F(RenamingHostTest, IsASubclassThatEncodesTheNewNamesOfATree)
{
    const ClosedSlots closed(context());
    const JsonTree tree(R"({"top":{"name":"a","kind":"b","name":"c","kind":"d","abcd":true}})");
    g_tree = &tree;
    const auto compiler = open<RenamingJsonCompiler>("m");
    expectMessages({takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()))});
    g_tree = nullptr;
}

} // namespace
} // namespace gpbtest
