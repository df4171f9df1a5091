/**
 * Each allocation of the process, of libxml2 and of cJSON failing in turn, over the lives of the compilers and of
 * templates: a program of its own, since it replaces them.
 *
 * Modules are loaded before: the parser of proto files allocates in destructors, where no one can catch a failure.
 * Nobody listens to the context and nothing observes the platform: the recorders of the tests allocate themselves.
 */
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include "faults/fault_life.h"
#include "faults/process_memory.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_extension.h"
#include "gpb_templatelib/gpb_host.h"
#include "platform/zmp.h"
#include "support/temp_directory.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::FailingMemory;
using gpbtest::FaultResult;

/** libxml2 tells standard error of each failed allocation. */
void ignoreXmlError(void *, const char *, ...) {}

uint64_t g_scenarios = 0;
uint64_t g_runs = 0;

/** Prints how much was failed when the program ends. */
class Summary : public ::testing::Environment
{
public:
    void TearDown() override
    {
        std::printf("failing memory: %llu scenarios, %llu runs with a failing allocation\n",
                    static_cast<unsigned long long>(g_scenarios), static_cast<unsigned long long>(g_runs));
    }
};

const ::testing::Environment *const kSummary = ::testing::AddGlobalTestEnvironment(new Summary);

class MemoryFaults : public ::testing::Test
{
protected:
    void SetUp() override
    {
        gpbtest::takeProcessMemory();
        xmlSetGenericErrorFunc(nullptr, ignoreXmlError);
        GpbHost_SetWorkPath(m_work.path().c_str());
        m_work.writeFile(std::string("reslink/protobuf/") + gpbtest::kFaultModule + ".proto", gpbtest::kFaultProto);
        m_held = GpbHost_LiveCount();
        const GpbLibInitParam param = {1, 2, {}};
        m_context = GPBLIB_Initial(&param);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, gpbtest::kFaultModule, 0));
        // What protobuf makes once is made.
        GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(m_context, gpbtest::kFaultModule));
        m_json.reset(cJSON_Parse(gpbtest::kFaultJson));
        ASSERT_NE(nullptr, m_json);
    }

    void TearDown() override
    {
        m_json.reset();
        GPBLIB_Uninitial(m_context);
        EXPECT_EQ(m_held, GpbHost_LiveCount());
        GpbHost_SetWorkPath(nullptr);
    }

    /**
     * Fails each allocation in turn. Nothing may be held and nothing thrown, and afterwards the same context must give
     * the good result again.
     */
    void failEach(const std::function<FaultResult()> &life)
    {
        const FaultResult good = life();
        EXPECT_TRUE(good.isDone);
        const size_t held = GpbHost_LiveCount();
        uint64_t count = 0;
        uint64_t failing = 0;
        uint64_t refused = 0;
        do
        {
            ++failing;
            SCOPED_TRACE("allocation " + std::to_string(failing));
            FaultResult outcome;
            {
                const FailingMemory memory(failing);
                outcome = life();
                count = memory.count();
            }
            refused += outcome.isDone ? 0 : 1;
            EXPECT_EQ(held, GpbHost_LiveCount()) << "memory is held";
            EXPECT_TRUE(life() == good) << "the context is not what it was";
        } while (count >= failing);
        EXPECT_GT(refused, 0u);
        RecordProperty("allocations", static_cast<int>(failing - 1));
        ++g_scenarios;
        g_runs += failing - 1;
    }

    cJSON *root() const { return m_json->child; }

    struct JsonFree
    {
        void operator()(cJSON *item) const { cJSON_Delete(item); }
    };

    gpbtest::TempDirectory m_work;
    std::unique_ptr<cJSON, JsonFree> m_json;
    GpbLibContext *m_context = nullptr;
    size_t m_held = 0;
};

TEST_F(MemoryFaults, XmlToGpb)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    failEach(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateCompiler(m_context, gpbtest::kFaultModule), document.get());
        });
}

// With texts in several pieces, which have to be joined.
constexpr const char *kLosslessXml =
    "<top><name>a name that does not<!-- --> fit into a string itself</name><colors>red green</colors>"
    "<list><a-leaf>1</a-leaf></list><list><a-leaf><![CDATA[a leaf that does not fit into a string itself]]></a-leaf>"
    "</list><deep-leaf>1.5</deep-leaf><box/><words/><flag/></top>";

/** Compilers of classes of a host, which fill messages of protobuf. */
class HostCompiler : public GpbXmlCompiler
{
public:
    using GpbXmlCompiler::GpbXmlCompiler;
};

class HostJsonCompiler : public GpbJsonCompiler
{
public:
    using GpbJsonCompiler::GpbJsonCompiler;
};

/** Compilers with the lossless setting. Their context has another importer, and so they begin without a plan: each run
 * makes the tables of names anew. */
class LosslessMemoryFaults : public MemoryFaults
{
protected:
    void SetUp() override
    {
        MemoryFaults::SetUp();
        const GpbLibInitParam param = {1, 2, {}};
        m_other = GPBLIB_Initial(&param);
        ASSERT_EQ(0u, GPBEXT_SetLossless(m_other, 1));
    }

    void TearDown() override
    {
        GPBLIB_Uninitial(m_other);
        MemoryFaults::TearDown();
    }

    /** failEach over the life of a compiler of a class, from its making to `encode(compiler)`, which destroys it. */
    template <typename Compiler, typename Encode, typename... Argument>
    void failEachEncode(const Encode &encode, Argument... argument)
    {
        const auto *const importer = GPBLIB_GetImporter(m_context);
        const auto *const file = Gpb_ModuleAdapt_GetFileHandle(m_context, gpbtest::kFaultModule);
        failEach(
            [&]
            {
                std::unique_ptr<GpbXmlCompilerBase> compiler;
                try
                {
                    compiler = std::make_unique<Compiler>(file, importer, m_other, argument...);
                }
                catch (const std::bad_alloc &)
                {
                    return FaultResult();
                }
                return encode(compiler.release());
            });
    }

    GpbLibContext *m_other = nullptr;
};

TEST_F(LosslessMemoryFaults, XmlToGpb)
{
    const gpbtest::XmlDocument document(kLosslessXml);
    const auto encode = [&](GpbXmlCompilerBase *compiler) { return gpbtest::encodeXml(compiler, document.get()); };
    failEachEncode<GpbXmlCompiler>(encode);
    failEachEncode<HostCompiler>(encode);
}

TEST_F(LosslessMemoryFaults, XmlToJson)
{
    const gpbtest::XmlDocument document(kLosslessXml);
    failEachEncode<GpbXmlCompilerJson>([&](GpbXmlCompilerBase *compiler)
                                       { return gpbtest::encodeXml(compiler, document.get()); },
                                       static_cast<unsigned char>(0));
}

TEST_F(LosslessMemoryFaults, XmlToJsonWithPrefixes)
{
    // Names that readers would take for others, of a value, a container and a list.
    const gpbtest::XmlDocument document(
        "<top><name xmlns='urn:first'>a name that does not fit into a string itself</name>"
        "<box xmlns='urn:first'><label>l</label></box><list xmlns='urn:first'><key>k</key></list></top>");
    m_work.writeFile(std::string("reslink/protobuf/prefixes.proto"), R"(syntax = "proto3"; package prefixes;
        message Top { string name = 1 [json_name = "first:name"]; string own_name = 2 [json_name = "prefixes:name"];
          message Box { string label = 1; string key = 2; }
          Box box = 3; Box own_box = 4 [json_name = "prefixes:box"];
          repeated Box list = 5; repeated Box own_list = 6 [json_name = "prefixes:list"]; })");
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, "prefixes", 0));
    ASSERT_EQ(0u, GPBEXT_SetLossless(m_context, 1));
    failEach(
        [&]
        { return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(m_context, "prefixes", 0), document.get()); });
}

TEST_F(LosslessMemoryFaults, JsonToGpb)
{
    const std::unique_ptr<cJSON, JsonFree> tree(cJSON_Parse(
        R"({"life:top":{"name":"a name that does not fit into a string itself","colors":["red","green"],)"
        R"("list":[{"a-leaf":"a leaf that does not fit into a string itself"},{"item":[{"n":-1},{"n":0.5}]}],)"
        R"("deep-leaf":0.30000000000000004,"words":["one that does not fit into a string itself",""],"flag":[null]}})"));
    ASSERT_NE(nullptr, tree);
    cJSON *const top = tree->child;
    for (cJSON *item : {top, gpbtest::findItem(top, "list"), gpbtest::findItem(top, "list")->child,
                        gpbtest::findItem(top, "a-leaf"), gpbtest::findItem(top, "item")->child->next})
    {
        const auto encode = [&](GpbXmlCompilerBase *compiler) { return gpbtest::encodeJson(compiler, top, item); };
        failEachEncode<GpbJsonCompiler>(encode);
        failEachEncode<HostJsonCompiler>(encode);
    }
}

TEST_F(MemoryFaults, XmlToJson)
{
    const gpbtest::XmlDocument document(gpbtest::kFaultXml);
    failEach(
        [&] {
            return gpbtest::encodeXml(GpbXmlCompiler_CreateJsonCompiler(m_context, gpbtest::kFaultModule, 0),
                                      document.get());
        });
}

TEST_F(MemoryFaults, JsonToGpb)
{
    for (cJSON *item : {root(), gpbtest::findItem(root(), "list"), gpbtest::findItem(root(), "a-leaf")})
    {
        ASSERT_NE(nullptr, item);
        failEach(
            [&] {
                return gpbtest::encodeJson(GpbJsonCompiler_CreateJsonCompiler(m_context, gpbtest::kFaultModule), root(),
                                           item);
            });
    }
}

/** One item of each kind, made on its own and added, or made as a member. */
FaultResult jsonItems()
{
    FaultResult result;
    cJSON *const object = GpbLib_Json_AllocObject(1);
    cJSON *const array = GpbLib_Json_AllocArray(1);
    cJSON *const items[] = {GpbLib_Json_AllocTrue(1), GpbLib_Json_AllocFalse(1), GpbLib_Json_AllocNumber(1, 1.5),
                            GpbLib_Json_AllocString(1, "text")};
    void *const memory = GpbLib_Json_Malloc(8);
    bool isDone = object != nullptr && array != nullptr && memory != nullptr;
    GpbLib_Json_Free(memory);
    for (cJSON *const item : items)
    {
        const bool isAdded = item != nullptr && GpbLib_Json_AddItemToArray(1, array, item) != 0;
        if (!isAdded)
        {
            GpbLib_Json_NodeFree(item);
        }
        isDone = isDone && isAdded;
    }
    if (array != nullptr && GpbLib_Json_AddItemToObject(1, object, "list", array) == 0)
    {
        GpbLib_Json_NodeFree(array);
        isDone = false;
    }
    const cJSON *const members[] = {
        GpbLib_Json_ObjectAddTrue(1, object, "a"),      GpbLib_Json_ObjectAddFalse(1, object, "b"),
        GpbLib_Json_ObjectAddNumber(1, object, "c", 2), GpbLib_Json_ObjectAddString(1, object, "d", "text"),
        GpbLib_Json_ObjectAddRaw(1, object, "e", "[]"), GpbLib_Json_ObjectAddObject(1, object, "f"),
        GpbLib_Json_ObjectAddArray(1, object, "g")};
    for (const cJSON *const member : members)
    {
        isDone = isDone && member != nullptr;
    }
    char *const text = GpbLib_Json_EncodeUnformatted(1, object);
    result.isDone = isDone && text != nullptr;
    if (result.isDone)
    {
        result.add(text);
    }
    ZMP_Free_F(text, "faults", 1);
    GpbLib_Json_NodeFree(object);
    return result;
}

TEST_F(MemoryFaults, JsonItems)
{
    failEach(jsonItems);
}

// With memory again the compiler either encodes, or says that it cannot any more: types may have been made half.
TEST_F(MemoryFaults, JsonToGpbTwiceWithOneCompiler)
{
    {
        // protobuf makes its index of lower-case names at the first look-up, and loses it when memory runs out then.
        unsigned int ignored = 0;
        GpbXmlCompilerBase *const first = GpbJsonCompiler_CreateJsonCompiler(m_context, gpbtest::kFaultModule);
        ASSERT_NE(nullptr, first);
        EXPECT_NE(nullptr, GpbXmlCompiler_EncodeJson(first, root(), root(), &ignored));
        GpbXmlCompiler_Destory(first);
    }
    uint64_t count = 0;
    uint64_t refused = 0;
    for (uint64_t failing = 1; count + 1 >= failing; ++failing)
    {
        SCOPED_TRACE("allocation " + std::to_string(failing));
        GpbXmlCompilerBase *const compiler = GpbJsonCompiler_CreateJsonCompiler(m_context, gpbtest::kFaultModule);
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 0;
        {
            const FailingMemory memory(failing);
            GpbXmlCompiler_EncodeJson(compiler, root(), root(), &length);
            count = memory.count();
        }
        refused += GpbXmlCompiler_EncodeJson(compiler, root(), root(), &length) == nullptr ? 1 : 0;
        GpbXmlCompiler_Destory(compiler);
    }
    EXPECT_GT(refused, 0u);
    ++g_scenarios;
    g_runs += count;
}

TEST_F(MemoryFaults, ModelAttributes)
{
    cJSON *const item = gpbtest::findItem(root(), "box");
    failEach(
        [&]
        {
            return gpbtest::listAttributes(
                m_context, GpbJsonCompiler_CreateJsonCompiler(m_context, gpbtest::kFaultModule), root(), item);
        });
}

TEST_F(MemoryFaults, Template)
{
    // The name of a file needs memory only when it is longer than those that compilers know.
    const std::string module(GPB_PROTO_FILE_NAME_SIZE, 'm');
    m_work.writeFile("reslink/protobuf/" + module + ".proto", gpbtest::kFaultProto);
    GPBLIB_UnloadProtoFileAll(m_context, 0);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, module.c_str(), 0));
    const gpbtest::FaultRecords records;
    failEach([&] { return gpbtest::generateTemplate(m_context, module.c_str(), records); });
}

// Short names need no memory of their own.
constexpr const char *kLongProto = R"(
syntax = "proto3";
message AContainerWithALongName {
  enum AnEnumWithALongName { AnEnumWithALongName_FIRST_OF_ALL = 0; }
  AnEnumWithALongName a_leaf_with_a_long_name = 1;
  string a_suffixed_leaf_with_a_long_name1 = 2;
  oneof choice { ACaseWithALongName a_case_with_a_long_name = 3; }
  message ACaseWithALongName { string a_case_leaf_with_a_long_name = 1; }
}
)";

TEST_F(MemoryFaults, DescriptorHelpers)
{
    const std::string module(GPB_PROTO_FILE_NAME_SIZE, 'm');
    m_work.writeFile("reslink/protobuf/" + module + ".proto", kLongProto);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, module.c_str(), 0));
    failEach(
        [&]
        {
            const char *const path = "a-container-with-a-long-name";
            const char *const leaf = "a-leaf-with-a-long-name";
            const auto *const file = Gpb_ModuleAdapt_GetFileHandle(m_context, module.c_str());
            const auto *const field = Gpb_ModuleAdapt_GetFieldHandle(m_context, file, path, leaf);
            GpbYangEnumItem *items = nullptr;
            uint32_t count = 0;
            FaultResult result;
            result.code = Gpb_ModuleAdapt_GetEnumList(m_context, file, path, leaf, &items, &count);
            ZMP_Free_F(items, "faults", 1);
            const auto *const top = field == nullptr ? nullptr : field->containing_type();
            const google::protobuf::FieldDescriptor *way = nullptr;
            result.isDone = result.code == 0 && GPB_FindFieldDescByNodeName(top, leaf, 1, &way) != nullptr &&
                            GPB_GetLeafFieldDescByNodeName(leaf, top, 1, &way) != nullptr &&
                            GPB_GetDescFieldByRepeateName(top, "a_suffixed_leaf_with_a_long_name", 1) != nullptr &&
                            GPB_GetFieldDescByOneof("a_case_leaf_with_a_long_name", top, 1, &way) != nullptr &&
                            Gpb_ModuleAdapt_GetMessageDescOfField_(top, "a_case_with_a_long_name") != nullptr;
            return result;
        });
}

TEST_F(MemoryFaults, SourceTree)
{
    const std::string path = m_work.makeDirectory("a-directory-with-a-long-name");
    failEach(
        [&]
        {
            const GpbLibInitParam param = {1, 2, {}};
            GpbLibContext *const own = GPBLIB_Initial(&param);
            GPBLIB_PkgAddInstallPath(own, path.c_str());
            GPBLIB_SetPatchDir(own, "a-patch-directory-with-a-long-name/");
            FaultResult result;
            result.code = GPBLIB_ProtoTreeInitial_(own);
            result.isDone = result.code == 0;
            EXPECT_EQ(result.isDone, GPBLIB_GetImporter(own) != nullptr);
            GPBLIB_Uninitial(own);
            return result;
        });
}

} // namespace
