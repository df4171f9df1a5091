#include "thread_life.h"

#include <cjson/cJSON.h>
#include <libxml/parser.h>
#include <memory>

#include "lockless_memory.h"
#include "platform/zmp.h"
#include "support/xml_document.h"

namespace gpbtest
{

namespace
{

constexpr const char *kExpected = R"(
    name: 'a name that does not fit into a string itself' colors: Color_RED colors: Color_GREEN
    list { key: 'k' kind_a { a_leaf: 'a leaf that does not fit into a string itself' } }
    list { number: 2 kind_b { item { n: -1 } item { n: 1 } } }
    box { box { label: 'label' } } mode_b { mb_leaf: 7 }
    words: 'one' words: 'two words that do not fit into a string itself' flag: true)";

// One text per thread, and one more for a thread alone: written without a lock, as a host's own logs may be.
std::string *g_logs[kThreads + 1];

template <uint32_t level>
uint32_t print(uint32_t slot, uint32_t, const char *, const char *text)
{
    g_logs[slot]->append(std::to_string(level) + ": " + text + "\n");
    return 0;
}

struct FreeJson
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
};

using JsonPtr = std::unique_ptr<cJSON, FreeJson>;

std::string text(const char *bytes, unsigned int length)
{
    return bytes == nullptr ? "nothing" : std::string(bytes, length);
}

std::string useXml(GpbLibContext *, GpbXmlCompilerBase *compiler)
{
    const XmlDocument document(kFaultXml);
    unsigned int length = 0;
    unsigned int error = 0;
    const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
    return text(bytes, length);
}

std::string useJson(GpbLibContext *, GpbXmlCompilerBase *compiler)
{
    const JsonPtr tree(cJSON_Parse(kFaultJson));
    unsigned int length = 0;
    const char *const bytes = GpbXmlCompiler_EncodeJson(compiler, tree->child, tree->child, &length);
    return text(bytes, length);
}

std::string useAttributes(GpbLibContext *context, GpbXmlCompilerBase *compiler)
{
    const JsonPtr tree(cJSON_Parse(kFaultJson));
    char *names[UINT8_MAX] = {};
    uint32_t types[UINT8_MAX] = {};
    GpbMdlAttr attributes = {names, types, 0, 0};
    std::string told;
    const unsigned int code =
        GpbXmlCompiler_GetMdlAttr(context, compiler, tree->child, findItem(tree.get(), "box"), &attributes);
    for (uint8_t i = 0; code == 0 && i < attributes.ucCount; ++i)
    {
        told += names[i] + ("=" + std::to_string(types[i])) + " ";
        ZMP_Free_F(names[i], "threads", 1);
    }
    return told.empty() ? "nothing" : told;
}

GpbXmlCompilerBase *createXmlToJson(void *context, const char *module)
{
    return GpbXmlCompiler_CreateJsonCompiler(context, module, 0);
}

} // namespace

const std::vector<CompilerKind> &compilerKinds()
{
    static const std::vector<CompilerKind> kinds = {
        {"XML to GPB", GpbXmlCompiler_CreateCompiler, useXml},
        {"XML to JSON", createXmlToJson, useXml},
        {"JSON to GPB", GpbJsonCompiler_CreateJsonCompiler, useJson},
        {"model attributes", GpbJsonCompiler_CreateJsonCompiler, useAttributes},
    };
    return kinds;
}

std::string useOnce(const CompilerKind &kind, GpbLibContext *context)
{
    GpbXmlCompilerBase *const compiler = kind.create(context, kFaultModule);
    std::string result = compiler == nullptr ? "no compiler" : kind.use(context, compiler);
    GpbXmlCompiler_Destory(compiler);
    return result;
}

void ThreadFixture::SetUp()
{
    PlatformFixture::SetUp();
    workDirectory().writeFile("reslink/protobuf/" + std::string(kFaultModule) + ".proto", kFaultProto);
    xmlInitParser(); // libxml2 wants the main thread to do this
    ASSERT_EQ(0, heldAllocations());
}

void ThreadFixture::TearDown()
{
    EXPECT_EQ(0, heldAllocations());
    PlatformFixture::TearDown();
}

GpbLibContext *ThreadFixture::newContext(size_t slot, std::string *log)
{
    g_logs[slot] = log;
    const GpbLibInitParam param = {
        kModuleId, static_cast<uint32_t>(slot), {{0, print<0>}, {0, print<1>}, {0, print<2>}, {0, print<3>}}};
    return GPBLIB_Initial(&param);
}

GpbLibContext *ThreadFixture::newSilentContext()
{
    const GpbLibInitParam param = {kModuleId, 0, {}};
    return GPBLIB_Initial(&param);
}

std::string ThreadFixture::alone(const CompilerKind &kind)
{
    GpbLibContext *const context = newSilentContext();
    std::string result = useOnce(kind, context);
    GPBLIB_Uninitial(context);
    return result;
}

void ThreadFixture::expectWholeMessage(const std::string &bytes)
{
    ProtoJudge judge;
    judge.addFile(std::string(kFaultModule) + ".proto", kFaultProto);
    EXPECT_TRUE(judge.holds("life.Top", bytes, kExpected));
}

} // namespace gpbtest
