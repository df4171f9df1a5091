/** --item encodes one item of a document, alone, into the message that it stands for. */
#include <gmock/gmock.h>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;

constexpr const char *kDocument = R"({"top": {
 "name": "n", "i32": 5,
 "box": [{"name": "a", "size": 1, "lid": {"shape": "round"}}, {"name": "b", "size": 2}],
 "presence": {"name": "p", "size": 9, "lid": {}},
 "cable": "c", "plug": {"pins": 3},
 "colors": ["red"], "tags/x~y": 1
}})";

class JsonItem : public gpbtest::JsonToolTest
{
protected:
    /** What encoding this item gives; its document has one member that is unknown, beside every item. */
    ProcessResult item(const std::string &pointer) const { return encodeJson(kDocument, {"--item", pointer}); }

    void expectFailure(const std::string &pointer, const std::string &what, const std::string &hint) const
    {
        const ProcessResult result = item(pointer);
        EXPECT_EQ(result.exitCode, 4) << pointer;
        EXPECT_EQ(result.out, "") << pointer;
        EXPECT_EQ(result.err, "error: " + path("doc.json") + ": " + what + "\n  hint: " + hint + "\n") << pointer;
    }
};

TEST_F(JsonItem, AContainerIsItsMessage)
{
    const ProcessResult result = item("/top/presence");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "name: \"p\"\nsize: 9\nlid {\n}\n");
    EXPECT_EQ(item("/top/box/0/lid").out, "shape: \"round\"\n") << "without its siblings";
}

TEST_F(JsonItem, AnEntryOfAListIsItsMessage)
{
    EXPECT_EQ(item("/top/box/0").out, "name: \"a\"\nsize: 1\nlid {\n  shape: \"round\"\n}\n");
    EXPECT_EQ(item("/top/box/1").out, "name: \"b\"\nsize: 2\n");
    EXPECT_EQ(encodeJson(R"({"top":{"box":[{"size":4}]}})", {"--item", "/top/box"}).out, "size: 4\n");
}

TEST_F(JsonItem, ALeafIsTheMessageThatHoldsIt)
{
    EXPECT_EQ(item("/top/name").out, "name: \"n\"\n");
    EXPECT_EQ(item("/top/box/1/size").out, "size: 2\n");
}

TEST_F(JsonItem, AnItemOfACaseIsTheMessageOfTheCaseOrOfItsHolder)
{
    EXPECT_EQ(item("/top/plug").out, "plug {\n  pins: 3\n}\n");
    EXPECT_EQ(item("/top/cable").out, "wired {\n  cable: \"c\"\n}\n");
    EXPECT_EQ(item("/top/plug/pins").out, "pins: 3\n");
}

TEST_F(JsonItem, TheBytesAreThoseOfTheMessage)
{
    const ProcessResult result = run("encode", write("doc.json", kDocument), {"--item", "/top/box/1"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "\x0A\x01"
                          "b\x10\x02");
}

TEST_F(JsonItem, TheTopLevelContainerIsTheWholeDocument)
{
    const std::string document = R"({"top":{"name":"n","i32":5}})";
    EXPECT_EQ(encodeJson(document, {"--item", "/top"}).out, encodeJson(document).out);
    EXPECT_EQ(item("/top").exitCode, 6) << "the unknown member counts there";
}

TEST_F(JsonItem, ItemsThatAreNotInTheTree)
{
    const std::string hint = "name members by their key and entries of a list by their number, the first is 0";
    expectFailure("/other", "no item /other: nothing is at \"other\"", hint);
    expectFailure("/top/none/x", "no item /top/none/x: nothing is at \"none\"", hint);
    expectFailure("/top/box/2", "no item /top/box/2: nothing is at \"2\"", hint);
    expectFailure("/top/box/01", "no item /top/box/01: nothing is at \"01\"", hint);
    expectFailure("/top/box/-1", "no item /top/box/-1: nothing is at \"-1\"", hint);
    expectFailure("/top/name/x", "no item /top/name/x: nothing is at \"x\"", hint);
    expectFailure("/top/", "no item /top/: nothing is at \"\"", hint);
    expectFailure("/", "no item /: nothing is at \"\"", hint);
}

TEST_F(JsonItem, ItemsWithoutOneMessage)
{
    expectFailure("/top/box", "item /top/box is a list of 2 entries, and a message holds one",
                  "name an entry by its number, as in /top/box/0");
    expectFailure("/top/colors", "item /top/colors has no message of its own",
                  "name the container that holds it, or an entry of a list");
    expectFailure("/top/colors/0", "item /top/colors/0 has no message of its own",
                  "name the container that holds it, or an entry of a list");
}

TEST_F(JsonItem, ItemsThatTheModuleDoesNotHave)
{
    const ProcessResult strict = item("/top/tags~1x~0y");
    EXPECT_EQ(strict.exitCode, 6);
    EXPECT_THAT(strict.err, HasSubstr(":6:21: \"tags/x~y\": unknown in message j.Top\n"));
    const ProcessResult lenient = encodeJson(kDocument, {"--item", "/top/tags~1x~0y", "--lenient"});
    EXPECT_EQ(lenient.exitCode, 4);
    EXPECT_EQ(lenient.out, "");
    EXPECT_THAT(lenient.err, HasSubstr("item /top/tags~1x~0y cannot be encoded: \"tags/x~y\": unknown in message"));
}

TEST_F(JsonItem, LenientLeavesOutWhatIsBelowTheItem)
{
    const ProcessResult result =
        encodeJson(R"({"top":{"presence":{"zz":1,"size":2}}})", {"--item", "/top/presence", "--lenient"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "size: 2\n");
    EXPECT_THAT(result.err, HasSubstr(": 1 value skipped"));
}

TEST_F(JsonItem, PointersThatAreNone)
{
    for (const char *pointer : {"top", "top/box/0", "/top/~", "/top/~2"})
    {
        const ProcessResult result = item(pointer);
        EXPECT_EQ(result.exitCode, 1) << pointer;
        EXPECT_THAT(result.err, HasSubstr("error: --item: " + std::string(pointer))) << pointer;
    }
}

TEST_F(JsonItem, PrefixesAreStrippedBeforeTheItemIsLookedUp)
{
    const std::string document = R"({"j:top":{"j:presence":{"j:size":2}}})";
    EXPECT_EQ(encodeJson(document, {"--strip-prefixes", "--item", "/top/presence"}).out, "size: 2\n");
    EXPECT_EQ(encodeJson(document, {"--strip-prefixes", "--item", "/j:top"}).exitCode, 4);
}

TEST_F(JsonItem, XmlDocumentsHaveNoItems)
{
    const std::string document = write("doc.xml", "<top><name>a</name></top>");
    for (const std::vector<std::string> &options :
         {std::vector<std::string>{"--item", "/top"}, std::vector<std::string>{"--strip-prefixes"}})
    {
        const ProcessResult result = run("encode", document, options);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr(document + ": --item and --strip-prefixes are for JSON documents"));
    }
    EXPECT_EQ(run("encode", document, {"--text"}).out, "name: \"a\"\n");
    EXPECT_EQ(run("encode", document, {"--format", "json"}).exitCode, 3);
    EXPECT_EQ(run("encode", document, {"--format", "yaml"}).exitCode, 1);
    EXPECT_EQ(run("encode", write("doc.json", R"({"top":{}})"), {"--format", "xml"}).exitCode, 3);
}

TEST_F(JsonItem, DepthAtTheLimitsAndBeyond)
{
    // Each level of the list is two steps of the search, which goes 32 steps deep.
    const auto nested = [](int levels)
    {
        std::string text = "{\"name\":\"x\"}";
        for (int i = 0; i < levels; ++i)
        {
            text = "{\"levels\":[" + text + "]}";
        }
        return "{\"top\":{\"level\":" + text + "}}";
    };
    const auto pointer = [](int levels)
    {
        std::string text = "/top/level";
        for (int i = 0; i < levels; ++i)
        {
            text += "/levels/0";
        }
        return text;
    };
    EXPECT_EQ(encodeJson(nested(16), {"--item", pointer(16)}).out, "name: \"x\"\n");
    EXPECT_EQ(encodeJson(nested(15), {"--item", pointer(15) + "/name"}).out, "name: \"x\"\n");
    const ProcessResult deeper = encodeJson(nested(16), {"--item", pointer(16) + "/name"});
    EXPECT_EQ(deeper.exitCode, 4);
    EXPECT_THAT(deeper.err, HasSubstr("/name lies deeper than the 32 levels that the library searches\n"));
}

TEST_F(JsonItem, TheInnermostLayersGiveNoResult)
{
    const auto nested = [](int levels)
    {
        std::string document = "\"name\":\"x\"";
        std::string pointer = "/top";
        for (int i = 0; i < levels; ++i)
        {
            document = "\"level\":{" + document + "}";
            pointer += "/level";
        }
        return std::pair("{\"top\":{" + document + "}}", pointer);
    };
    const auto [good, goodItem] = nested(29);
    EXPECT_EQ(encodeJson(good, {"--item", goodItem}).out, "name: \"x\"\n");
    const auto [deep, deepItem] = nested(30);
    const ProcessResult result = encodeJson(deep, {"--item", deepItem});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr(": nothing encoded: Fail to encode, error code is 1.\n"));
}

} // namespace
