/**
 * What becomes of memory that cannot be had: a program of its own, since it replaces the process's operator new.
 *
 * The module is loaded before: the parser of proto files allocates in destructors, where no one can catch a failure.
 * What the context logs is kept in place and nothing observes the platform: the recorders of the tests allocate
 * themselves.
 */
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <set>
#include <sstream>

#include <google/protobuf/compiler/importer.h>

#include "compiler/compiler_fixture.h"
#include "compiler/json_fixture.h"
#include "gpb_templatelib/gpb_extension.h"

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

/** The lines "LEVEL: TEXT" since the last clearing, cut to their room. */
constexpr size_t kMaxLines = 8;
char g_lines[kMaxLines][200];
size_t g_lineNum = 0;

uint32_t keepLine(uint32_t, uint32_t level, const char *, const char *text)
{
    if (g_lineNum < kMaxLines)
    {
        std::snprintf(g_lines[g_lineNum], sizeof(g_lines[0]), "%u: %s", level, text);
        ++g_lineNum;
    }
    return 0;
}

constexpr const char *kDumpStart = "3: [GpbXmlCompiler][Encode]Success encode, message structure is:";

/** The lines that were kept, without that of the dump, whose presence is told apart. */
std::vector<std::string> takeLines(bool &hasDump)
{
    std::vector<std::string> lines(g_lines, g_lines + g_lineNum);
    g_lineNum = 0;
    const auto isDump = [](const std::string &line) { return line.rfind(kDumpStart, 0) == 0; };
    const auto end = std::remove_if(lines.begin(), lines.end(), isDump);
    hasDump = end != lines.end();
    lines.erase(end, lines.end());
    return lines;
}

/** A leaf of kDocument, the line of its translator's failure, and the message without it. */
struct LostLeaf
{
    const char *line;
    const char *message;
};

constexpr LostLeaf kLostLeaves[] = {
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [name] value [n] to layer [choice.Top].",
     "case_a { case_sub { deep: '2' } } entry { case_one { one: '1' } } entry { case_two { two: '2' } } "
     "holder { name: 'a name that is too long for a text to keep in place' }"},
    // What replaces these two comes later in the document.
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [a-leaf] value [1] to layer [choice.Top.case_a].",
     kExpected},
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [text] value [t] to layer [choice.Top].", kExpected},
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [deep] value [2] to layer "
     "[choice.Top.case_achoice.Top.case_a.case_sub].",
     "name: 'n' case_a { case_sub {} } entry { case_one { one: '1' } } entry { case_two { two: '2' } } "
     "holder { name: 'a name that is too long for a text to keep in place' }"},
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [one] value [1] to layer [choice.Top.entry.case_one].",
     "name: 'n' case_a { case_sub { deep: '2' } } entry { case_one {} } entry { case_two { two: '2' } } "
     "holder { name: 'a name that is too long for a text to keep in place' }"},
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [two] value [2] to layer [choice.Top.entry.case_two].",
     "name: 'n' case_a { case_sub { deep: '2' } } entry { case_one { one: '1' } } entry { case_two {} } "
     "holder { name: 'a name that is too long for a text to keep in place' }"},
    {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [name] value [a name that is too long for a text to "
     "keep in place] to layer [choice.Top.holder].",
     "name: 'n' case_a { case_sub { deep: '2' } } entry { case_one { one: '1' } } entry { case_two { two: '2' } } "
     "holder {}"},
};

const std::vector<std::string> kRefusedLines = {
    "0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 5.",
    "0: [N7gpbtest12OpenCompilerE]Fail to encode, error code is 5.",
};

/** Has protobuf make what it makes once per file: it loses it when its memory cannot be had. */
void makeIndexes(const google::protobuf::Descriptor *type)
{
    (void)type->FindFieldByLowercaseName("no_such_name");
    (void)type->FindEnumValueByName("no_such_name");
    for (int i = 0; i < type->nested_type_count(); ++i)
    {
        makeIndexes(type->nested_type(i));
    }
}

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
        const GpbLibInitParam param = {1, 2, {{0, keepLine}, {0, nullptr}, {0, nullptr}, {3, keepLine}}};
        m_context = GPBLIB_Initial(&param);
        // The indexes of names that protobuf makes once per file: it loses them when their memory cannot be had.
        const gpbtest::XmlDocument document(kDocument);
        (void)allocationsOf(document);
        g_lineNum = 0;
    }

    void TearDown() override
    {
        GPBLIB_Uninitial(m_context);
        EXPECT_EQ(m_live, GpbHost_LiveCount());
        GpbHost_SetWorkPath(nullptr);
    }

    /**
     * A compiler of a class of a host, which fills messages and makes their types by its own factory. Compilers of the
     * library's own classes do without both, where no host can look.
     */
    template <typename Compiler>
    Compiler *newSubclass()
    {
        EXPECT_EQ(0u, GPBLIB_ProtobufLoad(m_context, "choice", 0));
        const google::protobuf::compiler::Importer *const importer = GPBLIB_GetImporter(m_context);
        return new Compiler(importer->pool()->FindFileByName("choice.proto"), importer, m_context);
    }

    /** Begins anew with a context in which nothing has been worked out yet. */
    void recreateContext()
    {
        GPBLIB_Uninitial(m_context);
        const GpbLibInitParam param = {1, 2, {{0, keepLine}}};
        m_context = GPBLIB_Initial(&param);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(m_context, "choice", 0));
        makeIndexes(GPBLIB_GetImporter(m_context)->pool()->FindMessageTypeByName("choice.Top"));
    }

    /** How many allocations a fresh compiler needs for a document. */
    uint64_t allocationsOf(const gpbtest::XmlDocument &document)
    {
        GpbXmlCompilerBase *const compiler = newSubclass<gpbtest::OpenCompiler>();
        unsigned int length = 0;
        unsigned int error = 1;
        uint64_t count = 0;
        {
            const Arm arm(0);
            (void)GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        EXPECT_EQ(0u, error);
        GpbXmlCompiler_Destory(compiler);
        return count;
    }

    /** The line of a lost leaf: the lossless setting has the plain path of a case in a case. */
    std::string lineOf(const LostLeaf &leaf) const
    {
        static const std::string kCaseInACase = "case_achoice.Top.case_a.case_sub";
        std::string line = leaf.line;
        const size_t at = line.find(kCaseInACase);
        if (GPBEXT_IsLossless(m_context) != 0 && at != std::string::npos)
        {
            line.replace(at, kCaseInACase.size(), "case_a.case_sub");
        }
        return line;
    }

    /**
     * Encodes kDocument with each allocation failing in turn, each time by a fresh compiler, whose first encode makes
     * the types as well. One failed allocation ends the walk, or costs the one leaf whose translator needed it, or the
     * dump, or the result.
     */
    void expectOneLossEach();

    /** Whether bytes are the message that is left when this line is all that was logged; none: the whole one. */
    ::testing::AssertionResult holdsWhatIsLeft(const std::string &bytes, const std::vector<std::string> &lines)
    {
        if (lines.empty())
        {
            return m_judge.holds("choice.Top", bytes, kExpected);
        }
        for (const LostLeaf &leaf : kLostLeaves)
        {
            if (lines == std::vector<std::string>{lineOf(leaf)})
            {
                return m_judge.holds("choice.Top", bytes, leaf.message);
            }
        }
        return ::testing::AssertionFailure() << gpbtest::joinLines(lines);
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

TEST_F(ThrowingNewTest, EncodeIsRefusedOrLosesOneLeafOrItsDumpOrItsResult)
{
    expectOneLossEach();
}

TEST_F(ThrowingNewTest, LosslessEncodeIsRefusedOrLosesOneLeafOrItsDumpOrItsResult)
{
    ASSERT_EQ(0u, GPBEXT_SetLossless(m_context, 1));
    (void)allocationsOf(gpbtest::XmlDocument(kDocument)); // the tables of names are made once
    expectOneLossEach();
}

void ThrowingNewTest::expectOneLossEach()
{
    const gpbtest::XmlDocument document(kDocument);
    std::set<std::string> lost;
    uint64_t refused = 0;
    uint64_t withoutDump = 0;
    uint64_t withoutResult = 0;
    uint64_t count = 0;
    uint64_t failing = 0;
    do
    {
        ++failing;
        SCOPED_TRACE("allocation " + std::to_string(failing));
        GpbXmlCompilerBase *const compiler = newSubclass<gpbtest::OpenCompiler>();
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 7;
        unsigned int error = 8;
        const char *bytes = nullptr;
        g_lineNum = 0;
        {
            const Arm arm(failing);
            bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        bool hasDump = false;
        const std::vector<std::string> lines = takeLines(hasDump);
        if (bytes != nullptr)
        {
            EXPECT_EQ(0u, error);
            EXPECT_TRUE(holdsWhatIsLeft(std::string(bytes, length), lines));
            EXPECT_TRUE(hasDump || lines.empty());
            lost.insert(lines.begin(), lines.end());
            withoutDump += hasDump ? 0 : 1;
        }
        else if (error == 0)
        {
            EXPECT_EQ(0u, length);
            EXPECT_EQ("0: [GpbXmlCompiler][GetGpbBuffer]Fail to serialize.\n", gpbtest::joinLines(lines));
            ++withoutResult;
        }
        else
        {
            EXPECT_EQ(5u, error);
            EXPECT_EQ(7u, length);
            EXPECT_EQ(kRefusedLines, lines);
            ++refused;
        }
        GpbXmlCompiler_Destory(compiler);
    } while (count >= failing);
    EXPECT_EQ(std::size(kLostLeaves), lost.size());
    EXPECT_GT(refused, 20u);
    EXPECT_GT(withoutDump, 0u);
    EXPECT_GT(withoutResult, 0u);
}

// The compilers share the guard of the factory; here its lines in the JSON compiler.
TEST_F(ThrowingNewTest, JsonRefusalsAreLogged)
{
    const std::vector<std::string> kEncodeLines = {"0: Gpb compiler encode fail to iterate json, return 1.",
                                                   "0: Fail to encode, error code is 1."};
    const std::vector<std::string> kAttrLines = {"0: Gpb compiler prepare fail 1.",
                                                 "0: Fail to encode, error code is 1."};
    const std::vector<std::string> kSerializeLines = {"0: Gpb compiler Fail to serialize."};
    const gpbtest::JsonTree tree(R"({"top":{"name":"n","entry":[{"one":"1"}],"holder":{"name":"m"}}})");
    uint64_t refused = 0;
    uint64_t count = 0;
    uint64_t failing = 0;
    do
    {
        ++failing;
        SCOPED_TRACE("allocation " + std::to_string(failing));
        GpbXmlCompilerBase *const compiler = newSubclass<gpbtest::OpenJsonCompiler>();
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 7;
        const char *bytes = nullptr;
        g_lineNum = 0;
        {
            const Arm arm(failing);
            bytes = GpbXmlCompiler_EncodeJson(compiler, tree.root(), tree.root(), &length);
            count = g_count;
        }
        bool hasDump = false;
        const std::vector<std::string> lines = takeLines(hasDump);
        EXPECT_TRUE(bytes != nullptr || lines == kEncodeLines || lines == kSerializeLines);
        if (bytes == nullptr && lines == kEncodeLines)
        {
            ++refused;
            EXPECT_EQ(nullptr, GpbXmlCompiler_EncodeJson(compiler, tree.root(), tree.root(), &length));
            EXPECT_EQ(kEncodeLines, takeLines(hasDump));
            GpbMdlAttr attr = {};
            EXPECT_EQ(1u, GpbXmlCompiler_GetMdlAttr(m_context, compiler, tree.root(), tree.at("holder"), &attr));
            EXPECT_EQ(kAttrLines, takeLines(hasDump));
        }
        GpbXmlCompiler_Destory(compiler);
    } while (count >= failing);
    EXPECT_GT(refused, 20u);
}

// A failed allocation ends the walk of an XML to JSON compiler, or costs the result, which is memory of the platform.
// It has no factory to lose, so the next encode is whole whatever failed.
TEST_F(ThrowingNewTest, XmlToJsonIsRefusedOrLosesItsResult)
{
    const std::vector<std::string> kRefused = {"0: [GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return 11.",
                                               "0: [18GpbXmlCompilerJson]Fail to encode, error code is 11."};
    const std::string kJson = R"({"top":{"name":"n","a-leaf":"1","text":"t","deep":"2",)"
                              R"("entry":[{"one":"1"},{"two":"2"}],)"
                              R"("holder":{"name":"a name that is too long for a text to keep in place"}}})";
    const gpbtest::XmlDocument document(kDocument);
    uint64_t refused = 0;
    uint64_t withoutResult = 0;
    const auto encode = [&](uint64_t failing, uint64_t failingCall)
    {
        SCOPED_TRACE("allocation " + std::to_string(failing) + ", of the platform " + std::to_string(failingCall));
        recreateContext();
        GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateJsonCompiler(m_context, "choice", 0);
        EXPECT_NE(nullptr, compiler);
        unsigned int length = 7;
        unsigned int error = 8;
        const char *text = nullptr;
        uint64_t count = 0;
        g_lineNum = 0;
        GpbHost_FailCall(GPB_HOST_MALLOC, failingCall);
        {
            const Arm arm(failing);
            text = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        GpbHost_FailCall(GPB_HOST_MALLOC, 0);
        bool hasDump = false;
        const std::vector<std::string> lines = takeLines(hasDump);
        if (error != 0)
        {
            EXPECT_EQ(11u, error);
            EXPECT_EQ(7u, length);
            EXPECT_EQ(nullptr, text);
            EXPECT_EQ(kRefused, lines);
            ++refused;
        }
        else
        {
            EXPECT_TRUE(lines.empty());
            EXPECT_EQ(text == nullptr ? "" : kJson, std::string(text == nullptr ? "" : text, length));
            withoutResult += text == nullptr ? 1 : 0;
        }
        text = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
        EXPECT_EQ(0u, error);
        EXPECT_EQ(kJson, text == nullptr ? "" : std::string(text, length));
        GpbXmlCompiler_Destory(compiler);
        return count;
    };
    uint64_t failing = 0;
    do
    {
        ++failing;
    } while (encode(failing, 0) >= failing);
    EXPECT_GT(refused, 10u);

    refused = 0;
    withoutResult = 0;
    encode(0, 1);
    EXPECT_EQ(0u, refused);
    EXPECT_EQ(1u, withoutResult);
}

// A switch of a choice looks at the layers and not into the old case, however much there is in it.
TEST_F(ThrowingNewTest, FailedSwitchCostsTheSameHoweverLargeTheCase)
{
    const auto allocations = [&](int entries, int switches)
    {
        std::string content;
        for (int i = 0; i < entries; ++i)
        {
            content += "<a-list><inside>1</inside></a-list>";
        }
        for (int i = 0; i < switches; ++i)
        {
            content += "<color>blue</color>";
        }
        const gpbtest::XmlDocument document("<top>" + content + "</top>");
        // The dump is left out: it needs the more memory the larger the message is.
        m_context->astPrint[3].pfnPrint = nullptr;
        return allocationsOf(document);
    };
    (void)allocations(1, 100); // the names of a list entry are looked up here for the first time
    const uint64_t small = allocations(1, 100) - allocations(1, 0);
    EXPECT_EQ(small, allocations(500, 100) - allocations(500, 0));
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
        GpbXmlCompilerBase *const compiler = newSubclass<gpbtest::OpenCompiler>();
        ASSERT_NE(nullptr, compiler);
        unsigned int length = 7;
        unsigned int error = 8;
        {
            const Arm arm(failing);
            GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
        }
        g_lineNum = 0;
        const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
        bool hasDump = false;
        const std::vector<std::string> lines = takeLines(hasDump);
        EXPECT_EQ(error == 0, bytes != nullptr);
        if (bytes != nullptr)
        {
            EXPECT_TRUE(m_judge.holds("choice.Top", std::string(bytes, length), kExpected));
        }
        else
        {
            EXPECT_EQ(5u, error);
            EXPECT_EQ(kRefusedLines, lines);
            ++refused;
        }
        GpbXmlCompiler_Destory(compiler);
    } while (count >= failing);
    EXPECT_GT(refused, 20u);
}

// The first compiler of a context has the plan made that all of them share: whatever of it cannot be made is made
// later, and no later compiler suffers.
TEST_F(ThrowingNewTest, PlanIsMadeOrMadeLater)
{
    const gpbtest::XmlDocument document(kDocument);
    uint64_t failures = 0;
    uint64_t count = 0;
    uint64_t failing = 0;
    do
    {
        ++failing;
        SCOPED_TRACE("allocation " + std::to_string(failing));
        recreateContext();
        unsigned int length = 7;
        unsigned int error = 0;
        g_lineNum = 0;
        std::string bytes;
        GpbXmlCompilerBase *compiler = nullptr;
        {
            const Arm arm(failing);
            compiler = GpbXmlCompiler_CreateCompiler(m_context, "choice");
            const char *const result =
                compiler == nullptr ? nullptr : GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
            count = g_count;
            g_isArmed = false;
            bytes = result == nullptr ? "" : std::string(result, length);
        }
        bool hasDump = false;
        const std::vector<std::string> lines = takeLines(hasDump);
        if (!bytes.empty())
        {
            EXPECT_TRUE(holdsWhatIsLeft(bytes, lines));
        }
        else
        {
            EXPECT_TRUE(compiler == nullptr || error == 5 ||
                        lines == std::vector<std::string>{"0: [GpbXmlCompiler][GetGpbBuffer]Fail to serialize."})
                << gpbtest::joinLines(lines);
            ++failures;
        }
        GpbXmlCompiler_Destory(compiler);
        compiler = GpbXmlCompiler_CreateCompiler(m_context, "choice");
        const char *const later = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
        ASSERT_NE(nullptr, later);
        EXPECT_TRUE(m_judge.holds("choice.Top", std::string(later, length), kExpected));
        GpbXmlCompiler_Destory(compiler);
    } while (count >= failing);
    EXPECT_GT(failures, 50u);
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
