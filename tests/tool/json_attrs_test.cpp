/** gpbtool attrs: names and type codes of the leaves of an item's message. */
#include <gmock/gmock.h>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

class JsonAttrs : public gpbtest::JsonToolTest
{
protected:
    ProcessResult attrs(const std::string &json, const std::string &item) const
    {
        return run("attrs", write("doc.json", json), {"--item", item});
    }

    void expectFailure(const std::string &json, const std::string &item, const std::string &what) const
    {
        const ProcessResult result = attrs(json, item);
        EXPECT_EQ(result.exitCode, 4) << item;
        EXPECT_EQ(result.out, "") << item;
        EXPECT_THAT(result.err, HasSubstr("error: " + path("doc.json") + ": item " + item + " " + what + "\n"));
    }
};

constexpr const char *kBox = "NAME  CODE  MEANING\n"
                             "name  25    text, bytes or enumeration\n"
                             "size  7     signed integer\n";

TEST_F(JsonAttrs, ContainersListsAndEntries)
{
    for (const char *item : {"/top/presence", "/top/box", "/top/box/0", "/top/box/1"})
    {
        const ProcessResult result = attrs(R"({"top":{"presence":{},"box":[{},{}]}})", item);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.err, "") << item;
        EXPECT_EQ(result.out, kBox) << item;
    }
    EXPECT_EQ(attrs(R"({"top":{"box":[{"lid":{}}]}})", "/top/box/0/lid").out,
              "NAME   CODE  MEANING\nshape  25    text, bytes or enumeration\n");
}

TEST_F(JsonAttrs, ALeafListIsTheMessageThatHoldsIt)
{
    const ProcessResult result = attrs(R"({"top":{"colors":["red"]}})", "/top/colors");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "NAME        CODE  MEANING\n"
                          "name        25    text, bytes or enumeration\n"
                          "i32         7     signed integer\n"
                          "u32         8     unsigned integer\n"
                          "i64         7     signed integer\n"
                          "u64         8     unsigned integer\n"
                          "small-real  54    float\n"
                          "flag        13    boolean\n"
                          "color       25    text, bytes or enumeration\n"
                          "colors      25    text, bytes or enumeration\n"
                          "raw         25    text, bytes or enumeration\n"
                          "tags        25    text, bytes or enumeration\n"
                          "numbers     8     unsigned integer\n"
                          "OwnName     7     signed integer\n");
}

TEST_F(JsonAttrs, ItemsWithoutAttributes)
{
    const std::string document = R"({"top":{"name":"a","zz":{}}})";
    expectFailure(document, "/top", "is the top-level container, of which the library tells no attributes");
    expectFailure(document, "/top/name", "has no attributes in module j: Fail to encode, error code is 1.");
    expectFailure(document, "/top/zz", "has no attributes in module j: Fail to encode, error code is 1.");
    const ProcessResult absent = attrs(document, "/top/none");
    EXPECT_EQ(absent.exitCode, 4);
    EXPECT_THAT(absent.err, HasSubstr(": no item /top/none: nothing is at \"none\"\n"));
    EXPECT_EQ(attrs(document, "top").exitCode, 1);
}

TEST_F(JsonAttrs, MessagesAtTheLimitOfTheRecordAndBeyond)
{
    for (const int leaves : {0, 1, 255, 256, 257, 600})
    {
        std::string module = "syntax = \"proto3\"; package w; message Top { message Wide {\n";
        for (int i = 1; i <= leaves; ++i)
        {
            module += "int32 leaf_" + std::to_string(i) + " = " + std::to_string(i) + ";\n";
        }
        writeModule("w", module + "} Wide wide = 1; }");
        const ProcessResult result =
            tool("attrs", {"--module", "w", write("w.json", R"({"top":{"wide":{}}})"), "--item", "/top/wide"});
        if (leaves <= 255)
        {
            EXPECT_EQ(result.exitCode, 0) << result.err;
            EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1 + leaves);
            EXPECT_THAT(result.out, HasSubstr(leaves > 0 ? "\nleaf-" + std::to_string(leaves) + " " : "MEANING"));
        }
        else
        {
            EXPECT_EQ(result.exitCode, 4) << leaves;
            EXPECT_EQ(result.out, "");
            EXPECT_THAT(result.err,
                        HasSubstr("item /top/wide has more than 255 leaves, which the library cannot count"));
        }
    }
}

TEST_F(JsonAttrs, Options)
{
    const std::string document = write("doc.json", R"({"j:top":{"j:presence":{}}})");
    EXPECT_EQ(run("attrs", document, {"--item", "/top/presence"}).exitCode, 4);
    const std::vector<std::string> options = {"--item", "/top/presence", "--strip-prefixes", "-o", path("out.txt")};
    const ProcessResult result = run("attrs", document, options);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(gpbtest::readFile(path("out.txt")), kBox);

    EXPECT_EQ(run("attrs", document).exitCode, 1);
    EXPECT_EQ(run("attrs", write("bad.json", "{"), {"--item", "/top"}).exitCode, 3);
    EXPECT_EQ(tool("attrs", {"--module", "none", document, "--item", "/top"}).exitCode, 2);
    gpbtest::ProcessSetup process = setup("attrs", {"--module", "j", "-", "--item", "/top/presence"});
    process.input = R"({"top":{"presence":{}}})";
    EXPECT_EQ(runProcess(process).out, kBox);
}

} // namespace
