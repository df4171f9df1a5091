/** JSON text is read strictly: what is wrong is told with its line and column, and nothing is encoded. */
#include <gmock/gmock.h>

#include "json_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class JsonText : public gpbtest::JsonToolTest
{
protected:
    /** "LINE:COLUMN: what is wrong" of a document that is refused; an empty text for one that is encoded. */
    std::string refusal(const std::string &json) const
    {
        const ProcessResult result = encodeJson(json);
        if (result.exitCode == 0)
        {
            EXPECT_EQ(result.err, "");
            return "";
        }
        EXPECT_EQ(result.exitCode, 3) << result.err;
        EXPECT_EQ(result.out, "");
        const std::string begin = "error: " + path("doc.json") + ":";
        EXPECT_THAT(result.err, StartsWith(begin));
        EXPECT_THAT(result.err, HasSubstr("\n  hint: "));
        return result.err.substr(begin.size(), result.err.find('\n') - begin.size());
    }

    /** The refusal of a document with this as the value of the leaf "name", which begins at 1:16. */
    std::string refusalOfValue(const std::string &value) const { return refusal("{\"top\":{\"name\":" + value + "}}"); }
};

TEST_F(JsonText, GoodDocuments)
{
    EXPECT_EQ(refusal(R"({"top":{}})"), "");
    EXPECT_EQ(refusal("\xEF\xBB\xBF \t\r\n{ \"top\" : { \"name\" : \"a\" , \"i32\" : -0 } } \r\n\t"), "");
    EXPECT_EQ(refusalOfValue(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\uD834\uDD1E")"), "");
    EXPECT_EQ(refusalOfValue("\"\xC3\xA9 \xE2\x82\xAC \xF0\x9D\x84\x9E \xF4\x8F\xBF\xBF \x7F\""), "");
    EXPECT_EQ(refusal(R"({"top":{"real":-1.5e+3,"small-real":0.25E0,"u32":10,"flag":true,"colors":[]}})"), "");
}

TEST_F(JsonText, TheValuesArrive)
{
    EXPECT_EQ(encodeJson(R"({"top":{"name":"\"\\\/\n\u0041","real":-1.5e+3,"flag":false}})").out,
              "name: \"\\\"\\\\/\\nA\"\nreal: -1500\nflag: false\n");
}

TEST_F(JsonText, Structure)
{
    const std::string text = "no well-formed JSON: ";
    EXPECT_EQ(refusal(""), "1:1: " + text + "the document ends early");
    EXPECT_EQ(refusal("{"), "1:2: " + text + "a name in double quotes is expected here");
    EXPECT_EQ(refusal("{\"top\""), "1:7: " + text + "\":\" is expected here");
    EXPECT_EQ(refusal("{\"top\":"), "1:8: " + text + "the document ends early");
    EXPECT_EQ(refusal("{\"top\":{}"), "1:10: " + text + "\",\" or \"}\" is expected here");
    EXPECT_EQ(refusal("{\"top\":\n{} \"b\":1}"), "2:4: " + text + "\",\" or \"}\" is expected here");
    EXPECT_EQ(refusal("{\"top\":{\"a\":1,}}"), "1:15: " + text + "a name in double quotes is expected here");
    EXPECT_EQ(refusal("{\"top\":{\"a\":[1,]}}"), "1:16: " + text + "a value is expected here");
    EXPECT_EQ(refusal("{\"top\":{\"a\":[1 2]}}"), "1:16: " + text + "\",\" or \"]\" is expected here");
    EXPECT_EQ(refusal("{top:{}}"), "1:2: " + text + "a name in double quotes is expected here");
    EXPECT_EQ(refusal("{'top':{}}"), "1:2: " + text + "a name in double quotes is expected here");
    EXPECT_EQ(refusal("{\"top\":{}} x"), "1:12: " + text + "text after the end of the document");
    EXPECT_EQ(refusal("{\"top\":{}}{}"), "1:11: " + text + "text after the end of the document");
    EXPECT_EQ(refusal("{\"top\":{}} // end"), "1:12: " + text + "text after the end of the document");
    EXPECT_EQ(refusal(std::string("{\"top\":{}}\0", 11)), "1:11: " + text + "text after the end of the document");
    EXPECT_EQ(refusal("{\v\"top\":{}}"), "1:2: " + text + "a name in double quotes is expected here");
    EXPECT_EQ(refusal("<top/>"), "1:1: " + text + "a value is expected here");
}

TEST_F(JsonText, Words)
{
    for (const char *word : {"True", "nul", "NULL", "NaN", "Infinity", "undefined", "tru"})
    {
        EXPECT_EQ(refusalOfValue(word), "1:16: no well-formed JSON: a value is expected here") << word;
    }
    EXPECT_EQ(refusalOfValue("nullx"), "1:20: no well-formed JSON: \",\" or \"}\" is expected here");
}

TEST_F(JsonText, Numbers)
{
    const std::string text = "no well-formed JSON: ";
    EXPECT_EQ(refusalOfValue("01"), "1:17: " + text + "a number does not begin with 0");
    EXPECT_EQ(refusalOfValue("-"), "1:17: " + text + "a digit is expected here");
    EXPECT_EQ(refusalOfValue("1."), "1:18: " + text + "a digit is expected here");
    EXPECT_EQ(refusalOfValue("1.e5"), "1:18: " + text + "a digit is expected here");
    EXPECT_EQ(refusalOfValue("1e"), "1:18: " + text + "a digit is expected here");
    EXPECT_EQ(refusalOfValue("1e+-2"), "1:19: " + text + "a digit is expected here");
    EXPECT_EQ(refusalOfValue(".5"), "1:16: " + text + "a value is expected here");
    EXPECT_EQ(refusalOfValue("+1"), "1:16: " + text + "a value is expected here");
    EXPECT_EQ(refusalOfValue("0x1F"), "1:17: " + text + "\",\" or \"}\" is expected here");
    EXPECT_EQ(refusalOfValue("1-2"), "1:17: " + text + "\",\" or \"}\" is expected here");
    EXPECT_EQ(refusalOfValue("1" + std::string(63, '0')), "1:16: " + text + "a number of more than 63 characters");
    EXPECT_EQ(refusal("{\"top\":{\"real\":0.5" + std::string(60, '0') + "}}"), "");
}

TEST_F(JsonText, Texts)
{
    const std::string text = "no well-formed JSON: ";
    EXPECT_EQ(refusalOfValue("\"a"), "1:20: " + text + "the document ends within a text");
    EXPECT_EQ(refusalOfValue("\"a\nb\""),
              "1:18: " + text + "a control character in a text; write it as \\n, \\t or \\u00XX");
    EXPECT_EQ(refusalOfValue(std::string("\"a\0b\"", 5)),
              "1:18: " + text + "a control character in a text; write it as \\n, \\t or \\u00XX");
    EXPECT_EQ(refusalOfValue("\"\\x41\""), "1:17: " + text + "no escape sequence of JSON");
    EXPECT_EQ(refusalOfValue("\"\\u00g0\""), "1:17: " + text + "\\u is followed by four hexadecimal digits");
    EXPECT_EQ(refusalOfValue("\"\\u12"), "1:17: " + text + "\\u is followed by four hexadecimal digits");
    EXPECT_EQ(refusalOfValue("\"a\\u0000b\""), "1:18: " + text + "\\u0000 would end the text");
    EXPECT_EQ(refusal("{\"top\":{\"na\\u0000me\":1}}"), "1:12: " + text + "\\u0000 would end the text");
    EXPECT_EQ(refusalOfValue("\"\\uDC00\""), "1:17: " + text + "the second half of a surrogate pair without the first");
    EXPECT_EQ(refusalOfValue("\"\\uD800x\""),
              "1:17: " + text + "the first half of a surrogate pair without the second");
    EXPECT_EQ(refusalOfValue("\"\\uD800\\u0041\""),
              "1:17: " + text + "the first half of a surrogate pair without the second");
}

TEST_F(JsonText, BytesThatAreNoUtf8)
{
    for (const char *bytes : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                              "\xF8\x88\x80\x80\x80", "\xFF"})
    {
        EXPECT_EQ(refusalOfValue("\"" + std::string(bytes) + "\""), "1:17: no well-formed JSON: no UTF-8");
    }
    EXPECT_EQ(refusalOfValue("\"\xC3\xA9\xE9\""), "1:18: no well-formed JSON: no UTF-8") << "columns are characters";
}

TEST_F(JsonText, TheShapeOfADocument)
{
    const std::string one = "the document is no object with exactly one member";
    EXPECT_EQ(refusal("[]"), "1:1: " + one);
    EXPECT_EQ(refusal(" 5"), "1:2: " + one);
    EXPECT_EQ(refusal("{}"), "1:1: " + one);
    EXPECT_EQ(refusal("{\"top\":{},\"name\":1}"), "1:1: " + one);
    for (const char *value : {"[]", "null", "1", "\"a\"", "true"})
    {
        EXPECT_EQ(refusal("{\n \"top\":" + std::string(value) + "}"), "2:2: the top-level container is no object");
    }
}

TEST_F(JsonText, DuplicateNames)
{
    EXPECT_EQ(refusal("{\"top\":{\"name\":\"a\",\n \"i32\":1, \"n\\u0061me\":\"b\"}}"),
              "2:11: \"name\": the name stands twice in its object");
    EXPECT_EQ(refusal("{\"top\":{},\"top\":{}}"), "1:11: \"top\": the name stands twice in its object");
    EXPECT_EQ(refusal("{\"top\":{\"box\":[{\"name\":\"a\"},{\"name\":\"a\"}]}}"), "");
}

TEST_F(JsonText, NestingAtTheLimitAndBeyond)
{
    const auto nested = [](int levels)
    { return "{\"top\":{\"name\":" + std::string(levels - 2, '[') + std::string(levels - 2, ']') + "}}"; };
    EXPECT_EQ(encodeJson(nested(63)).exitCode, 6);
    EXPECT_EQ(refusal(nested(64)), "1:77: no well-formed JSON: nested deeper than 63 levels");
    EXPECT_EQ(refusal(std::string(1000000, '[')), "1:64: no well-formed JSON: nested deeper than 63 levels");
}

TEST_F(JsonText, EveryCutOfADocumentIsRefused)
{
    const std::string whole = R"({"top":{"name":"\u00e9","colors":["red"],"real":1.5e1}})";
    ASSERT_EQ(refusal(whole), "");
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        EXPECT_NE(refusal(whole.substr(0, length)), "") << length;
    }
}

TEST_F(JsonText, StandardInput)
{
    gpbtest::ProcessSetup process = setup("encode", {"--module", "j", "--text", "--format", "json", "-"});
    process.input = R"({"top":{"name":"a"}})";
    EXPECT_EQ(runProcess(process).out, "name: \"a\"\n");
    process.input = "{";
    const ProcessResult result = runProcess(process);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, StartsWith("error: -:1:2: no well-formed JSON: "));
}

TEST_F(JsonText, AFileThatIsNotThere)
{
    const ProcessResult result = run("encode", path("none.json"), {"--text"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, StartsWith("error: " + path("none.json") + ": cannot be read: "));
}

} // namespace
