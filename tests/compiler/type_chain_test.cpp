/** Schemas whose message types lie in each other: protobuf makes a type by calling itself for those of its fields. */
#include "compiler/json_fixture.h"

namespace
{

constexpr size_t kMaxChain = GPB_COMPILER_MAX_TYPE_CHAIN;

class TypeChainTest : public gpbtest::JsonFixture
{
protected:
    /** Types M0, M1, ... of which each has a field of the next; `last` is the content of the last one. */
    static std::string chain(size_t types, const std::string &label = "", const std::string &last = "string v = 1;")
    {
        std::string text = "syntax='proto3'; package chain;";
        for (size_t i = 0; i < types; ++i)
        {
            const std::string next = label + " M" + std::to_string(i + 1) + " m = 1;";
            text += "message M" + std::to_string(i) + " {" + (i + 1 == types ? last : next) + "}\n";
        }
        return text;
    }

    void expectXmlEncodes(const std::string &textForm)
    {
        const gpbtest::XmlDocument document("<m0><m>\n</m></m0>");
        const auto compiler = open<GpbXmlCompiler>("chain");
        const gpbtest::CompilerResult result = gpbtest::takeResult(*compiler, compiler->Encode(document.get()));
        EXPECT_EQ(0u, result.code);
        EXPECT_TRUE(judge().holds("chain.M0", result.bytes, textForm));
        log().clear();
    }

    /** Twice, since a compiler remembers the types that it has measured. */
    void expectRefused()
    {
        const gpbtest::XmlDocument document("<m0><m>\n</m></m0>");
        const gpbtest::JsonTree tree(R"({"m0":{"m":{}}})");
        const auto xml = open<GpbXmlCompiler>("chain");
        const auto json = open<gpbtest::OpenJsonCompiler>("chain");
        for (int i = 0; i < 2; ++i)
        {
            EXPECT_EQ(4u, xml->Encode(document.get()));
            EXPECT_LOG(log(), "0: Fail to get proto type for path chain.M0.",
                       "0: [GpbXmlCompiler][Encode]Fail to iterate xml doc, return 4.");
            EXPECT_EQ(1u, json->EncodeJson(tree.root(), tree.root()));
            EXPECT_LOG(log(), "0: Fail to get proto type for path chain.M0.", prepareLine(1));
        }
    }
};

TEST_F(TypeChainTest, LongestChain)
{
    addModule("chain", chain(kMaxChain));
    expectXmlEncodes("m {}");
    expectEncodes("chain", R"({"m0":{"m":{}}})", "chain.M0", "m {}");
}

TEST_F(TypeChainTest, OneTypeMoreIsRefused)
{
    addModule("chain", chain(kMaxChain + 1));
    expectRefused();
}

TEST_F(TypeChainTest, ManyTypesMoreAreRefused)
{
    addModule("chain", chain(20 * kMaxChain));
    expectRefused();
}

// A list's type is not made with the top, but a document can reach it.
TEST_F(TypeChainTest, BelowAListCountsAsWell)
{
    addModule("chain", chain(kMaxChain + 1, "repeated"));
    expectRefused();
}

TEST_F(TypeChainTest, TypeThatIsNotTheTopCanBeUsed)
{
    addModule("chain", chain(kMaxChain + 1));
    const gpbtest::XmlDocument document("<m1><m>\n</m></m1>");
    const auto compiler = open<GpbXmlCompiler>("chain");
    EXPECT_EQ(0u, compiler->Encode(document.get()));
}

TEST_F(TypeChainTest, CircleOfTheLongestChain)
{
    addModule("chain", chain(kMaxChain, "", "M0 m = 1;"));
    expectXmlEncodes("m {}");
}

// In a circle every way around is possible, so all of its types count, with what lies below any of them.
TEST_F(TypeChainTest, LongerCircleIsRefused)
{
    addModule("chain", chain(kMaxChain + 1, "", "M0 m = 1;"));
    expectRefused();
}

TEST_F(TypeChainTest, TypesBelowACircleCount)
{
    const std::string tail = "M1 back = 2; M3 m = 1;";
    std::string text = chain(kMaxChain);
    text.replace(text.find("M3 m = 1;"), 9, tail);
    addModule("chain", text);
    expectXmlEncodes("m {}");
}

TEST_F(TypeChainTest, TypesBelowACircleCountOneTooMany)
{
    std::string text = chain(kMaxChain + 1);
    text.replace(text.find("M3 m = 1;"), 9, "M1 back = 2; M3 m = 1;");
    addModule("chain", text);
    expectRefused();
}

// Two fields per type: the number of ways doubles with every type, the length of the chain does not.
TEST_F(TypeChainTest, ManyWaysToTheSameTypes)
{
    std::string text = "syntax='proto3'; package chain;";
    for (int i = 0; i < 100; ++i)
    {
        const std::string next = "M" + std::to_string(i + 1);
        text += "message M" + std::to_string(i) + " {" + next + " m = 1; repeated " + next + " n = 2; }\n";
    }
    addModule("chain", text + "message M100 { string v = 1; }");
    expectXmlEncodes("m {}");
}

TEST_F(TypeChainTest, ThousandsOfTypesSideBySide)
{
    std::string types;
    std::string fields;
    for (int i = 1; i <= 3000; ++i)
    {
        const std::string name = "Box" + std::to_string(i);
        types += "message " + name + " { string v = 1; }\n";
        fields += name + " box" + std::to_string(i) + " = " + std::to_string(i) + ";\n";
    }
    addModule("chain", "syntax='proto3'; package chain; message M0 {" + types + fields + "message M { } M m = 5000; }");
    expectXmlEncodes("m {}");
}

} // namespace
