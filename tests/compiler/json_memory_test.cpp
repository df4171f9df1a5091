/** JSON trees in memory that a host keeps from one document to the next. */
#include <cstdlib>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "compiler/compiler_fixture.h"
#include "gpb_templatelib/gpb_compiler_c.h"

namespace
{

/** One block that documents are parsed into, one after the other; cJSON's hooks are the process's, and so is this. */
class Block
{
public:
    Block()
    {
        s_next = nullptr;
        s_strangers = 0;
        cJSON_Hooks hooks = {&take, &giveBack};
        cJSON_InitHooks(&hooks);
    }

    ~Block() { cJSON_InitHooks(nullptr); }

    Block(const Block &) = delete;
    Block &operator=(const Block &) = delete;

    /** The tree goes with the next one; null when the text is no JSON or the block has no room for it. */
    static cJSON *parse(const std::string &text)
    {
        s_next = s_bytes;
        cJSON *const tree = cJSON_Parse(text.c_str());
        s_next = nullptr;
        return tree;
    }

    static std::string content() { return {std::begin(s_bytes), std::end(s_bytes)}; }

    /** How often a piece of the block was to be released by somebody who does not know of it. */
    static int strangers() { return s_strangers; }

private:
    static constexpr size_t kSize = 16384;

    static void *take(size_t size)
    {
        if (s_next == nullptr)
        {
            return std::malloc(size);
        }
        const size_t rounded = (size + alignof(cJSON) - 1) / alignof(cJSON) * alignof(cJSON);
        if (rounded > static_cast<size_t>(std::end(s_bytes) - s_next))
        {
            return nullptr;
        }
        s_next += rounded;
        return s_next - rounded;
    }

    static void giveBack(void *memory)
    {
        if (std::less_equal<>()(std::begin(s_bytes), memory) && std::less<>()(memory, std::end(s_bytes)))
        {
            s_strangers += s_next == nullptr ? 1 : 0;
            return;
        }
        std::free(memory);
    }

    alignas(cJSON) static char s_bytes[kSize];
    static char *s_next; ///< null while nothing is parsed
    static int s_strangers;
};

alignas(cJSON) char Block::s_bytes[Block::kSize];
char *Block::s_next;
int Block::s_strangers;

struct Free
{
    void operator()(cJSON *tree) const { cJSON_Delete(tree); }
    void operator()(GpbXmlCompilerBase *compiler) const { GpbXmlCompiler_Destory(compiler); }
};

class JsonMemoryTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("walk");
    }

    /** What the compiler makes of the first member of a tree, and what it logs. */
    std::vector<std::string> compile(cJSON *tree)
    {
        const std::unique_ptr<GpbXmlCompilerBase, Free> compiler(GpbJsonCompiler_CreateJsonCompiler(context(), "walk"));
        log().clear();
        unsigned int length = 0;
        const char *const bytes = GpbXmlCompiler_EncodeJson(compiler.get(), tree->child, tree->child, &length);
        return {bytes == nullptr ? "nothing" : std::string(bytes, length), log().take()};
    }
};

const std::vector<std::string> kTexts = {
    R"({"top":{"name":"n","count":1,"flag":null,"kind":"one","flags":[true,false]}})",
    R"({"top":{"list":[{"name":"a","entry":[{"name":"b"},{"flag":true}]},{"kind":"zero"}],"depth2":"\u00e4\n"}})",
    R"({"top":{"count":"x","nowhere":1}})",
    R"({"nowhere":{}})",
};

TEST_F(JsonMemoryTest, TreesInABlockOfTheHostGiveWhatOthersGive)
{
    const Block block;
    for (const std::string &text : kTexts)
    {
        SCOPED_TRACE(text);
        const std::unique_ptr<cJSON, Free> usual(cJSON_Parse(text.c_str()));
        const auto expected = compile(usual.get());
        cJSON *const tree = Block::parse(text);
        ASSERT_NE(nullptr, tree);
        const std::string before = Block::content();
        EXPECT_EQ(expected, compile(tree));
        EXPECT_EQ(before, Block::content());
    }
    EXPECT_EQ(0, Block::strangers());
}

TEST_F(JsonMemoryTest, ADocumentThatIsRefusedLeavesTheBlockAsItWas)
{
    const Block block;
    const auto expected = compile(Block::parse(kTexts[0]));
    for (const std::string &broken : {std::string(), std::string(R"({"top":{"name":"n")"), std::string(100000, '[')})
    {
        EXPECT_EQ(nullptr, Block::parse(broken));
        EXPECT_EQ(expected, compile(Block::parse(kTexts[0])));
    }
    EXPECT_EQ(0, Block::strangers());
}

} // namespace
