/** Members that do not fit are errors with their place; --lenient encodes the rest. */
#include <gmock/gmock.h>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class JsonValue : public gpbtest::JsonToolTest
{
protected:
    /** The one finding of a document with these members in line 2, without its place; an empty text for none. */
    std::string findingFor(const std::string &members, const std::string &column = "1") const
    {
        const ProcessResult result = encodeMembers(members);
        if (result.exitCode == 0)
        {
            EXPECT_EQ(result.err, "");
            return "";
        }
        EXPECT_EQ(result.exitCode, 6) << result.err;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err,
                    HasSubstr("error: " + path("doc.json") + ": 1 value of the document cannot be encoded as given\n"));
        EXPECT_THAT(result.err, Not(HasSubstr("library[")));
        const std::string place = "  " + path("doc.json") + ":2:" + column + ": ";
        const std::size_t begin = result.err.find(place);
        if (begin == std::string::npos)
        {
            ADD_FAILURE() << result.err;
            return "";
        }
        const std::size_t textBegin = begin + place.size();
        return result.err.substr(textBegin, result.err.find('\n', textBegin) - textBegin);
    }

    /** What --lenient makes of these members, on top of `findings` in its warning. */
    std::string lenient(const std::string &members, int findings = 1) const
    {
        const ProcessResult result = encodeMembers(members, {"--lenient"});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_THAT(result.err, EndsWith("warning: " + path("doc.json") + ": " + std::to_string(findings) +
                                         (findings == 1 ? " value" : " values") +
                                         " skipped or with a value that does not fit, run with -v to see them\n"));
        return result.out;
    }
};

TEST_F(JsonValue, NumbersAtTheirLimits)
{
    for (const char *member :
         {"\"i32\":-2147483648", "\"i32\":2147483647", "\"u32\":4294967295", "\"u32\":0", "\"i64\":-99999999999999",
          "\"i64\":\"-9223372036854775808\"", "\"i64\":\"9223372036854775807\"", "\"u64\":99999999999999",
          "\"u64\":\"18446744073709551615\"", "\"real\":-1.5e3", "\"real\":1e300", "\"real\":0.12345678901234",
          "\"real\":\"0.12345678901234567\"", "\"small-real\":0.25", "\"flag\":true", "\"flag\":false",
          "\"flag\":\"false\"", "\"i32\":\"7\"", "\"numbers\":5"})
    {
        EXPECT_EQ(findingFor(member), "") << member;
    }
}

TEST_F(JsonValue, NumbersBeyondTheirLimits)
{
    EXPECT_EQ(findingFor("\"i32\":2147483648"), "\"i32\": \"2147483648\" is no value of type int32");
    EXPECT_EQ(findingFor("\"i32\":-2147483649"), "\"i32\": \"-2147483649\" is no value of type int32");
    EXPECT_EQ(findingFor("\"u32\":4294967296"), "\"u32\": \"4294967296\" is no value of type uint32");
    EXPECT_EQ(findingFor("\"u32\":-1"), "\"u32\": \"-1\" is no value of type uint32");
    EXPECT_EQ(findingFor("\"i32\":1.5"), "\"i32\": \"1.5\" is no value of type int32");
    EXPECT_EQ(findingFor("\"i64\":\"9223372036854775808\""),
              "\"i64\": \"9223372036854775808\" is no value of type int64");
    EXPECT_EQ(findingFor("\"u64\":\"18446744073709551616\""),
              "\"u64\": \"18446744073709551616\" is no value of type uint64");
    EXPECT_EQ(findingFor("\"real\":1e400"),
              "\"real\": a number beyond the range of JSON numbers: write it in double quotes");
}

TEST_F(JsonValue, NumbersOfMoreThan14Digits)
{
    const std::string quote = ": write it in double quotes";
    EXPECT_EQ(findingFor("\"u64\":100000000000000"), "\"u64\": \"1e+14\" is no value of type uint64" + quote);
    EXPECT_EQ(findingFor("\"u64\":9007199254740993"),
              "\"u64\": the library reads 14 digits of a number, \"9.007199254741e+15\" here" + quote);
    EXPECT_EQ(findingFor("\"i64\":-123456789012345"),
              "\"i64\": the library reads 14 digits of a number, \"-1.2345678901234e+14\" here" + quote);
    EXPECT_EQ(findingFor("\"real\":0.123456789012345"),
              "\"real\": the library reads 14 digits of a number, \"0.12345678901234\" here" + quote);
    EXPECT_EQ(findingFor("\"i64\":12345678901234.5"),
              "\"i64\": the library reads 14 digits of a number, \"12345678901234\" here" + quote);
    EXPECT_EQ(lenient("\"u64\":9007199254740993"), "u64: 9\n");
    EXPECT_EQ(lenient("\"u64\":100000000000000"), "u64: 1\n");
}

TEST_F(JsonValue, ValuesOfTheWrongType)
{
    EXPECT_EQ(findingFor("\"i32\":\"abc\""), "\"i32\": \"abc\" is no value of type int32");
    EXPECT_EQ(findingFor("\"i32\":\"\""), "\"i32\": \"\" is no value of type int32");
    EXPECT_EQ(findingFor("\"i32\":true"), "\"i32\": \"true\" is no value of type int32");
    EXPECT_EQ(findingFor("\"real\":false"), "\"real\": \"false\" is no value of type double");
    EXPECT_EQ(findingFor("\"flag\":0"), "\"flag\": \"0\" is no value of type bool");
    EXPECT_EQ(findingFor("\"flag\":\"no\""), "\"flag\": \"no\" is no value of type bool");
    EXPECT_EQ(findingFor("\"name\":5"), "\"name\": a number, but the module wants a text: write it in double quotes");
    EXPECT_EQ(findingFor("\"raw\":5"), "\"raw\": a number, but the module wants a text: write it in double quotes");
    EXPECT_EQ(findingFor("\"name\":true"),
              "\"name\": true or false, but the module wants a text: write it in double quotes");
}

TEST_F(JsonValue, Enumerations)
{
    EXPECT_EQ(findingFor("\"color\":\"up-2\",\"colors\":[\"10g\",\"red\"]"), "");
    EXPECT_EQ(findingFor("\"colors\":\"up-2 10g\""), "");
    EXPECT_EQ(encodeMembers("\"colors\":[\"10g\",\"red\",\"up-2 red\"]").out,
              "colors: Color_X_10G\ncolors: Color_RED\ncolors: Color_UPX_2\ncolors: Color_RED\n");
    EXPECT_EQ(findingFor("\"color\":\"blue\""), "\"color\": \"blue\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("\"color\":1"), "\"color\": \"1\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("\"color\":\"red up-2\""), "\"color\": \"red up-2\" are several values, the leaf takes one");
    EXPECT_EQ(findingFor("\"colors\":[\"red\",\"blue\"]", "17"),
              "\"colors\": \"blue\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("\"colors\":[\"red\",null]", "17"), "\"colors\": null where a value belongs");
    EXPECT_EQ(findingFor("\"colors\":[\"red\",{}]", "17"), "\"colors\": an object where a value belongs");
    EXPECT_EQ(findingFor("\"colors\":[\"red\",[]]", "17"), "\"colors\": an array where a value belongs");
    EXPECT_EQ(findingFor("\"color\":[\"red\"]"), "\"color\": an array, but a leaf of type enum in the module");
    EXPECT_EQ(lenient("\"colors\":[\"red\",\"blue\",null,[\"red\"],\"10g\"]", 3),
              "colors: Color_RED\ncolors: Color_X_10G\n");
    EXPECT_EQ(lenient("\"colors\":[[\"red\"]]"), "");
}

TEST_F(JsonValue, LeafListsOtherThanOfEnumerationsAreNotEncoded)
{
    const std::string rest = ": of leaf-lists only those of enumerations are encoded from JSON";
    EXPECT_EQ(findingFor("\"tags\":[\"a\",\"b\"]"), "\"tags\": a leaf-list of type string" + rest);
    EXPECT_EQ(findingFor("\"numbers\":[1]"), "\"numbers\": a leaf-list of type uint32" + rest);
    EXPECT_EQ(findingFor("\"tags\":[null]"), "\"tags\": a leaf-list of type string" + rest);
    EXPECT_EQ(findingFor("\"tags\":[]"), "");
    EXPECT_EQ(lenient("\"tags\":[\"a\"],\"numbers\":[1],\"i32\":7", 2), "i32: 7\n");
    EXPECT_EQ(encodeMembers("\"tags\":\"a\"").out, "tags: \"a\"\n") << "a leaf-list of one value may stand alone";
}

TEST_F(JsonValue, Null)
{
    EXPECT_EQ(encodeMembers("\"flag\":null,\"name\":null").out, "name: \"\"\nflag: true\n");
    EXPECT_EQ(findingFor("\"i32\":null"), "\"i32\": null, but a leaf of type int32 in the module");
    EXPECT_EQ(findingFor("\"raw\":null"), "\"raw\": null, but a leaf of type bytes in the module");
    EXPECT_EQ(findingFor("\"color\":null"), "\"color\": null, but a leaf of type enum in the module");
    EXPECT_EQ(findingFor("\"numbers\":null"), "\"numbers\": null, but a leaf-list of type uint32 in the module");
    EXPECT_EQ(findingFor("\"presence\":null"), "\"presence\": null, but a container in the module");
    EXPECT_EQ(findingFor("\"box\":null"), "\"box\": null, but a list in the module");
    EXPECT_EQ(findingFor("\"box\":[null]", "8"), "\"box\": null where an entry, an object, belongs");
    EXPECT_EQ(findingFor("\"flag\":[null]"),
              "\"flag\": an array, but a leaf of type bool in the module; an empty leaf is null or true");
    EXPECT_EQ(lenient("\"i32\":null,\"presence\":null,\"box\":[null,{\"size\":1}],\"name\":\"a\"", 3),
              "name: \"a\"\nbox {\n  size: 1\n}\n");
}

TEST_F(JsonValue, ObjectsAndArraysInEachOthersPlaces)
{
    EXPECT_EQ(findingFor("\"presence\":[{\"name\":\"a\"}]"), "\"presence\": an array, but a container in the module");
    EXPECT_EQ(findingFor("\"box\":{\"name\":\"a\"}"), "\"box\": an object, but a list in the module");
    EXPECT_EQ(findingFor("\"name\":{\"a\":1}"), "\"name\": an object, but a leaf of type string in the module");
    EXPECT_EQ(findingFor("\"tags\":{\"name\":\"a\"}"),
              "\"tags\": an object, but a leaf-list of type string in the module");
    EXPECT_EQ(findingFor("\"name\":[]"), "\"name\": an array, but a leaf of type string in the module");
    EXPECT_EQ(findingFor("\"box\":5"), "\"box\": a number, but a list in the module");
    EXPECT_EQ(findingFor("\"presence\":\"a\""), "\"presence\": a text, but a container in the module");
    EXPECT_EQ(findingFor("\"presence\":false"), "\"presence\": true or false, but a container in the module");
    EXPECT_EQ(findingFor("\"box\":[5]", "8"), "\"box\": a number where an entry, an object, belongs");
    EXPECT_EQ(findingFor("\"box\":[{},5]", "11"), "\"box\": a number where an entry, an object, belongs");
}

TEST_F(JsonValue, ArraysInArrays)
{
    EXPECT_EQ(findingFor("\"box\":[[{\"name\":\"a\"}]]", "8"), "\"box\": an array where an entry, an object, belongs");
    EXPECT_EQ(encodeMembers("\"tags\":[[\"a\"]]").exitCode, 6);
    EXPECT_EQ(lenient("\"box\":[[{\"name\":\"a\"}],{\"name\":\"b\"}]"), "box {\n  name: \"b\"\n}\n");
    EXPECT_EQ(lenient("\"tags\":[[[\"a\"]]],\"i32\":1", 2), "i32: 1\n");
    EXPECT_EQ(lenient("\"tags\":{\"name\":\"a\"},\"i32\":1"), "i32: 1\n") << "members of an object in a leaf-list's "
                                                                             "place are not the container's";
}

TEST_F(JsonValue, UnknownNames)
{
    for (const char *value : {"1", "null", "[1]", "[]", "{}", "[{}]"})
    {
        EXPECT_EQ(findingFor("\"zz\":" + std::string(value)), "\"zz\": unknown in message j.Top") << value;
        EXPECT_EQ(lenient("\"zz\":" + std::string(value) + ",\"i32\":1"), "i32: 1\n") << value;
    }
    EXPECT_EQ(findingFor("\"\":1"), "\"\": unknown in message j.Top");
    EXPECT_EQ(findingFor("\"box\":[{\"zz\":1}]", "9"), "\"zz\": unknown in message j.Top.Box");
    for (const std::size_t length : {127U, 128U, 100000U})
    {
        const std::string name(length, 'n');
        EXPECT_EQ(findingFor("\"" + name + "\":1"), "\"" + name + "\": unknown in message j.Top");
    }
}

TEST_F(JsonValue, LeavesOfCases)
{
    EXPECT_EQ(encodeMembers("\"cable\":\"c\",\"plug\":{\"pins\":2}").out,
              "wired {\n  cable: \"c\"\n  plug {\n    pins: 2\n  }\n}\n");
    EXPECT_EQ(findingFor("\"cable\":[\"c\"]"), "\"cable\": an array, but a leaf of type string in the module");
}

TEST_F(JsonValue, LevelsAtTheLimitAndBeyond)
{
    const auto nested = [](int levels)
    {
        std::string text = "\"name\":\"x\"";
        for (int i = 0; i < levels; ++i)
        {
            text = "\"level\":{" + text + "}";
        }
        return text;
    };
    EXPECT_EQ(findingFor(nested(30)), "");
    EXPECT_EQ(findingFor(nested(31), "271"), "\"level\": nested deeper than 31 levels");
    EXPECT_EQ(encodeMembers(nested(61)).exitCode, 6);
    EXPECT_EQ(encodeMembers(nested(31), {"--lenient"}).exitCode, 0);

    std::string lists = "\"name\":\"x\"";
    for (int i = 0; i < 30; ++i)
    {
        lists = (i == 29 ? "\"level\":{" : "\"levels\":[{") + lists + (i == 29 ? "}" : "}]");
    }
    EXPECT_EQ(findingFor(lists), "");
}

TEST_F(JsonValue, TheTopLevelContainer)
{
    const ProcessResult unknown = encodeJson(R"({"other":{"name":"a"}})");
    EXPECT_EQ(unknown.exitCode, 4);
    EXPECT_EQ(unknown.err, "error: " + path("doc.json") +
                               ": top-level container \"other\" has no message in module j\n"
                               "  hint: is this the right module? Its messages: j.Top\n");
    for (const std::size_t length : {128U, 300U})
    {
        const ProcessResult result = encodeJson("{\"" + std::string(length, 'n') + "\":{}}");
        EXPECT_EQ(result.exitCode, 4);
        EXPECT_THAT(result.err, HasSubstr(": top-level container \"" + std::string(128, 'n') + "\" has no message"));
        EXPECT_THAT(result.err, Not(HasSubstr("assert")));
    }
    EXPECT_EQ(encodeJson(R"({"top":{}})").out, "");
}

TEST_F(JsonValue, PrefixedNames)
{
    const std::string document = R"({"j:top":{"j:name":"x:y","other:box":[{"j:size":1}]}})";
    const ProcessResult refused = encodeJson(document);
    EXPECT_EQ(refused.exitCode, 4);
    EXPECT_THAT(refused.err, HasSubstr("  hint: --strip-prefixes takes \"MODULE:\" off the names\n"));
    const ProcessResult stripped = encodeJson(document, {"--strip-prefixes"});
    EXPECT_EQ(stripped.exitCode, 0) << stripped.err;
    EXPECT_EQ(stripped.out, "name: \"x:y\"\nbox {\n  size: 1\n}\n");

    const ProcessResult twice = encodeJson(R"({"top":{"a:name":"x","b:name":"y"}})", {"--strip-prefixes"});
    EXPECT_EQ(twice.exitCode, 3);
    EXPECT_THAT(twice.err, HasSubstr(":1:22: \"name\": the name stands twice in its object, with different prefixes"));
}

TEST_F(JsonValue, NothingIsWritten)
{
    const std::string document = write("bad.json", R"({"top":{"name":"a","zz":1}})");
    write("out/kept.gpb", "earlier");
    EXPECT_EQ(run("encode", document, {"-o", path("out/kept.gpb")}).exitCode, 6);
    EXPECT_EQ(run("encode", document, {"-o", path("out/new.gpb")}).exitCode, 6);
    EXPECT_EQ(list("out"), std::vector<std::string>{"kept.gpb"});
    EXPECT_EQ(gpbtest::readFile(path("out/kept.gpb")), "earlier");
}

TEST_F(JsonValue, FindingsAreListedInTheOrderOfTheDocument)
{
    const std::string members = "\"zz\":1,\n \"i32\":\"a\", \"yy\":2";
    const ProcessResult result = encodeMembers(members);
    EXPECT_EQ(result.exitCode, 6);
    const std::string place = "  " + path("doc.json");
    EXPECT_EQ(result.err, "error: " + path("doc.json") + ": 3 values of the document cannot be encoded as given\n" +
                              place + ":2:1: \"zz\": unknown in message j.Top\n" + place +
                              ":3:2: \"i32\": \"a\" is no value of type int32\n" + place +
                              ":3:13: \"yy\": unknown in message j.Top\n" +
                              "  hint: correct them, or give --lenient to encode the rest; -v shows all\n");
    const ProcessResult verbose = encodeMembers(members, {"--lenient", "-v"});
    EXPECT_EQ(verbose.out, "i32: 0\n");
    EXPECT_THAT(verbose.err, HasSubstr(":3:13: \"yy\": unknown in message j.Top\n"));
}

TEST_F(JsonValue, RequiredFieldsThatAreMissing)
{
    writeModule("r", "syntax = \"proto2\"; package r; message Top { required string name = 1; optional int32 n = 2; }");
    const std::string document = write("r.json", R"({"top":{"n":1}})");
    const ProcessResult result = tool("encode", {"--module", "r", "--text", document});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err,
                HasSubstr("error: " + document + ": nothing encoded: Gpb compiler top message is not initialized.\n"));
}

} // namespace
