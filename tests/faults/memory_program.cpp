/**
 * Each allocation of the process, of libxml2 and of cJSON failing in turn, over the lives of the compilers and of
 * templates: a program of its own, since it replaces them.
 *
 * Modules are loaded before: the parser of proto files allocates in destructors, where no one can catch a failure.
 * Nobody listens to the context and nothing observes the platform: the recorders of the tests allocate themselves.
 */
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include "faults/fault_life.h"
#include "faults/process_memory.h"
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
    const gpbtest::FaultRecords records;
    failEach([&] { return gpbtest::generateTemplate(m_context, records); });
}

} // namespace
