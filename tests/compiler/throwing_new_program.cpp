/**
 * What becomes of memory that cannot be had: a program of its own, since it replaces the process's operator new.
 *
 * The module is loaded before: the parser of proto files allocates in destructors, where no one can catch a failure.
 * Nobody listens to the context and nothing observes the platform: the recorders of the tests allocate themselves.
 */
#include <cstdlib>
#include <fstream>
#include <new>
#include <sstream>

#include <google/protobuf/compiler/importer.h>

#include "compiler/compiler_fixture.h"

namespace
{

/** The allocation that fails, counted from the moment it is armed; 0: none. */
uint64_t g_failing = 0;
uint64_t g_count = 0;
bool g_isArmed = false;

void *allocate(std::size_t size)
{
    if (g_isArmed && ++g_count == g_failing)
    {
        throw std::bad_alloc();
    }
    void *const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

void *operator new(std::size_t size)
{
    return allocate(size);
}

void *operator new[](std::size_t size)
{
    return allocate(size);
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{

/** Counts the allocations of its life, and fails one of them. */
class Arm
{
public:
    explicit Arm(uint64_t failing)
    {
        g_failing = failing;
        g_count = 0;
        g_isArmed = true;
    }
    ~Arm() { g_isArmed = false; }
    Arm(const Arm &) = delete;
    Arm &operator=(const Arm &) = delete;
};

constexpr const char *kDocument =
    "<top><name>n</name><a-leaf>1</a-leaf><text>t</text><deep>2</deep><entry><one>1</one></entry><entry><two>2</two>"
    "</entry><holder><name>a name that is too long for a text to keep in place</name></holder></top>";
constexpr const char *kExpected =
    "name: 'n' case_a { case_sub { deep: '2' } } entry { case_one { one: '1' } } entry { case_two { two: '2' } } "
    "holder { name: 'a name that is too long for a text to keep in place' }";

class ThrowingNewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        GpbHost_SetWorkPath(m_work.path().c_str());
        std::ifstream stream(GPB_TEST_DATA_DIR "choice.proto", std::ios::binary);
        std::ostringstream text;
        text << stream.rdbuf();
        m_work.writeFile("reslink/protobuf/choice.proto", text.str());
        m_judge.addFile("choice.proto", text.str());
        m_live = GpbHost_LiveCount();
        const GpbLibInitParam param = {1, 2, {}};
        m_context = GPBLIB_Initial(&param);
    }

    void TearDown() override
    {
        GPBLIB_Uninitial(m_context);
        EXPECT_EQ(m_live, GpbHost_LiveCount());
        GpbHost_SetWorkPath(nullptr);
    }

    gpbtest::TempDirectory m_work;
    gpbtest::ProtoJudge m_judge;
    GpbLibContext *m_context = nullptr;
    size_t m_live = 0;
};

TEST_F(ThrowingNewTest, CreateGivesNull)
{
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, "choice", 0));
    GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(m_context, "choice")); // what is made once is made
    uint64_t failures = 0;
    for (uint64_t failing = 1;; ++failing)
    {
        GpbXmlCompilerBase *compiler = nullptr;
        uint64_t count = 0;
        {
            const Arm arm(failing);
            compiler = GpbXmlCompiler_CreateCompiler(m_context, "choice");
            count = g_count;
        }
        GpbXmlCompiler_Destory(compiler);
        if (count < failing)
        {
            EXPECT_NE(nullptr, compiler);
            break;
        }
        EXPECT_EQ(nullptr, compiler) << "allocation " << failing;
        ++failures;
    }
    EXPECT_GT(failures, 2u);
}

// The first encode of a compiler makes the types as well; each run takes a fresh one.
TEST_F(ThrowingNewTest, EncodeGivesNullOrTheWholeMessage)
{
    const gpbtest::XmlDocument document(kDocument);
    uint64_t failures = 0;
    for (uint64_t failing = 1;; ++failing)
    {
        SCOPED_TRACE("allocation " + std::to_string(failing));
        GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(m_context, "choice");
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 7;
        unsigned int error = 8;
        const char *bytes = nullptr;
        uint64_t count = 0;
        {
            const Arm arm(failing);
            bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        EXPECT_NE(8u, error);
        const bool isDone = count < failing;
        if (isDone)
        {
            EXPECT_EQ(0u, error);
            EXPECT_TRUE(m_judge.holds("choice.Top", std::string(bytes, length), kExpected));
        }
        else
        {
            failures += bytes == nullptr ? 1 : 0;
            // A result without bytes and without a code is one that could not be serialized.
            EXPECT_TRUE(bytes != nullptr || error != 0 || length == 0);
        }
        GpbXmlCompiler_Destory(compiler);
        if (isDone)
        {
            break;
        }
    }
    EXPECT_GT(failures, 20u);
}

// With memory again the compiler either encodes, or says that it cannot any more: types may have been made half.
TEST_F(ThrowingNewTest, EncodeAfterAFailureIsWholeOrRefused)
{
    const gpbtest::XmlDocument document(kDocument);
    uint64_t refused = 0;
    uint64_t count = 0;
    uint64_t failing = 0;
    do
    {
        ++failing;
        SCOPED_TRACE("allocation " + std::to_string(failing));
        GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(m_context, "choice");
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 7;
        unsigned int error = 8;
        {
            const Arm arm(failing);
            GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
        EXPECT_EQ(error == 0, bytes != nullptr);
        if (bytes != nullptr)
        {
            EXPECT_TRUE(m_judge.holds("choice.Top", std::string(bytes, length), kExpected));
        }
        else
        {
            EXPECT_EQ(5u, error);
            ++refused;
        }
        GpbXmlCompiler_Destory(compiler);
    } while (count >= failing);
    EXPECT_GT(refused, 20u);
}

TEST_F(ThrowingNewTest, TranslatorsGiveOne)
{
    GpbXmlCompiler_Destory(GpbXmlCompiler_CreateCompiler(m_context, "choice"));
    const google::protobuf::DescriptorPool *const pool = GPBLIB_GetImporter(m_context)->pool();
    google::protobuf::DynamicMessageFactory factory(pool);
    GpbCompilerStack stack;
    GpbCompilerStackLayer &layer = stack.astLayer[0];
    layer.pstDescriptor = pool->FindMessageTypeByName("choice.Top");
    const std::unique_ptr<google::protobuf::Message> message(factory.GetPrototype(layer.pstDescriptor)->New());
    layer.pstMessage = message.get();
    stack.uiLayerNum = 1;
    const auto *const name = layer.pstDescriptor->FindFieldByName("name");
    const auto *const caseA = layer.pstDescriptor->FindFieldByName("case_a");
    unsigned int result = 0;
    {
        const Arm arm(1);
        result = GpbCompiler_StrTrans_ToString(layer, name, "a text that is too long to be kept in place");
    }
    EXPECT_EQ(1u, result);
    EXPECT_EQ("", message->SerializeAsString());
    {
        const Arm arm(1);
        result = GPB_PushAncesDescriptor(caseA, stack);
    }
    EXPECT_EQ(1u, result);
    EXPECT_EQ(0u, GPB_PushAncesDescriptor(caseA, stack));
}

} // namespace
