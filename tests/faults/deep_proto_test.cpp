/** Proto files that nest without end: they fail to load like any other bad file, and the host's stack is safe. */
#include "support/library_fixture.h"

namespace
{

std::string nested(const std::string &opening, int depth)
{
    std::string text = "syntax = 'proto2'; ";
    for (int i = 0; i < depth; ++i)
    {
        text += opening;
    }
    return text + std::string(static_cast<size_t>(depth), '}');
}

class DeepProto : public gpbtest::LibraryFixture
{
protected:
    uint32_t load(const std::string &module, const std::string &text)
    {
        writeProto(module, text);
        return GPBLIB_ProtobufLoad(context(), module.c_str(), 0);
    }
};

TEST_F(DeepProto, MessagesAndGroupsFail)
{
    EXPECT_EQ(0u, load("allowed", nested("message A {", 31)));
    for (const int depth : {32, 256, 257, 100000})
    {
        const std::string suffix = std::to_string(depth);
        EXPECT_EQ(1u, load("m" + suffix, nested("message A {", depth)));
        EXPECT_EQ(1u, load("g" + suffix, nested("message A { optional group G = 1 {", depth)));
    }
    log().clear();
    EXPECT_EQ(1u, load("deep", nested("message A {", 100000)));
    EXPECT_LOG(log(), "1: GPBLIB_LoadProtoFile begin ", "1: protofile name = deep.proto", "0: load protofile failed",
               "1: GPBLIB_LoadProtoFile end ");
    EXPECT_EQ(1u, load("importing", "import 'deep.proto'; message B {}"));
}

TEST_F(DeepProto, TextsAndCommentsDoNotNest)
{
    const std::string braces(1000, '{');
    EXPECT_EQ(0u, load("texts", "syntax = 'proto2'; // " + braces + "\n/* " + braces + " * / */ message A { optional " +
                                    "string a = 1 [default = \"\\\"" + braces + "\\\\\"]; optional string b = 2 " +
                                    "[default = '\"" + braces + "']; }"));
    log().clear();
}

} // namespace
