// Random documents in XML and in JSON: without losses both become one message, by all ways.
#include "compiler/exact_json_fixture.h"
#include "compiler/exact_random.h"

namespace gpbtest
{
namespace
{

constexpr uint32_t kSeeds = 60;
constexpr int kDocuments = 5;

class ExactTwinTest : public ExactJsonFixture
{
protected:
    /** Calls `check(xml, textForm)` for random documents of random modules; m_module is the name of theirs. */
    template <typename Check>
    void forEachDocument(bool isFull, const Check &check)
    {
        for (uint32_t seed = 0; seed < kSeeds; ++seed)
        {
            SCOPED_TRACE("seed " + std::to_string(seed));
            RandomModel model(seed);
            m_module = "r" + std::to_string(seed);
            addModule(m_module,
                      "syntax = 'proto3'; package " + m_module + "; message Top {" + model.protoContent() + "}");
            for (int i = 0; i < kDocuments && !HasFailure(); ++i)
            {
                const RandomDocument random = model.makeDocument(isFull);
                SCOPED_TRACE(random.content);
                check("<top>" + random.content + "</top>", random.textForm);
            }
            ASSERT_FALSE(HasFailure()) << model.protoContent();
        }
    }

    std::string toJson(const std::string &xml)
    {
        const XmlDocument document(xml);
        const auto compiler = open<GpbXmlCompilerJson>(m_module, static_cast<unsigned char>(0));
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        EXPECT_TRUE(log().take().empty() || GPBEXT_IsLossless(context()) == 0);
        return result.bytes;
    }

    template <typename Compiler>
    std::string fromXml(const std::string &xml)
    {
        const XmlDocument document(xml);
        const auto compiler = open<Compiler>(m_module);
        const CompilerResult result = takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        log().clear();
        return result.bytes;
    }

    template <typename Compiler>
    std::string fromTree(const JsonTree &tree, cJSON *item)
    {
        const auto compiler = open<Compiler>(m_module);
        const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), item));
        EXPECT_EQ(0u, result.code);
        EXPECT_EQ(joinLines({serializedLine(result.bytes.size())}), log().take());
        return result.bytes;
    }

    std::string m_module;
};

/** Takes the arrays of values out of a tree. */
void dropLeafLists(cJSON *item)
{
    for (cJSON *child = item->child; child != nullptr;)
    {
        cJSON *next = child->next;
        if (cJSON_IsArray(child) != 0 && cJSON_IsObject(child->child) == 0)
        {
            cJSON_Delete(cJSON_DetachItemViaPointer(item, child));
        }
        else
        {
            dropLeafLists(child);
        }
        child = next;
    }
}

TEST_F(ExactTwinTest, AllWaysLeadToTheSameMessage)
{
    size_t arraysInArrays = 0;
    forEachDocument(true,
                    [&](const std::string &xml, const std::string &textForm)
                    {
                        setLossless(true);
                        const std::string json = toJson(xml);
                        const JsonTree tree(json);
                        const std::string bytes = fromTree<GpbJsonCompiler>(tree, tree.root());
                        EXPECT_TRUE(judge().holds(m_module + ".Top", bytes, textForm)) << json;
                        EXPECT_EQ(bytes, fromXml<GpbXmlCompiler>(xml)) << json;
                        EXPECT_EQ(bytes, fromTree<OpenJsonCompiler>(tree, tree.root())) << json;
                        // What lies in the first node after the root's own text is the same from there.
                        EXPECT_EQ(bytes, fromTree<GpbJsonCompiler>(tree, tree.root()->child)) << json;
                        setLossless(false);
                        arraysInArrays += toJson(xml) == json ? 0 : 1;
                    });
    EXPECT_GT(arraysInArrays, 50u) << "documents that the default writes otherwise";
}

TEST_F(ExactTwinTest, TheDefaultsBytesWhereThatLosesNothing)
{
    size_t characters = 0;
    forEachDocument(false,
                    [&](const std::string &xml, const std::string &)
                    {
                        setLossless(true);
                        const JsonTree tree(toJson(xml));
                        dropLeafLists(tree.root());
                        const std::string lossless = fromTree<GpbJsonCompiler>(tree, tree.root());
                        setLossless(false);
                        EXPECT_EQ(lossless, fromTree<GpbJsonCompiler>(tree, tree.root()));
                        characters += lossless.size();
                    });
    EXPECT_GT(characters, 2000u);
}

TEST_F(ExactTwinTest, TheDefaultsTextWhereNoArrayCollectsTheEntriesOfSeveralLists)
{
    const auto arrays = [](const std::string &json) { return std::count(json.begin(), json.end(), '['); };
    size_t equal = 0;
    forEachDocument(false,
                    [&](const std::string &xml, const std::string &)
                    {
                        setLossless(true);
                        const std::string lossless = toJson(xml);
                        setLossless(false);
                        const std::string usual = toJson(xml);
                        if (arrays(usual) == arrays(lossless))
                        {
                            EXPECT_EQ(usual, lossless);
                            ++equal;
                        }
                    });
    EXPECT_GT(equal, 100u);
}

} // namespace
} // namespace gpbtest
