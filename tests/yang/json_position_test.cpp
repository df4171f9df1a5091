/** Places of errors in a map of ids, whatever surrounds them. */
#include "yang/json_text.h"

#include "yang_fixture.h"

namespace
{

using gpbtest::errorOf;
using gpbyang::JsonText;

std::string parseError(const std::string &text)
{
    return errorOf([&] { JsonText(text, "map"); }).second;
}

/** The place of the value that is reached by child indexes. */
std::string place(const std::string &text, const std::vector<int> &indexes)
{
    const JsonText json(text, "map");
    const cJSON *value = &json.Root();
    for (const int index : indexes)
    {
        value = cJSON_GetArrayItem(value, index);
    }
    return json.ErrorAt(*value, "").what();
}

TEST(JsonPosition, ValuesAreAtTheirNames)
{
    EXPECT_EQ(place("7", {}), "map:1:1: ");
    EXPECT_EQ(place("\n  {\n\"a\" : 1,\t\"b\":\n2 }\n", {}), "map:2:3: ");
    EXPECT_EQ(place("\n  {\n\"a\" : 1,\t\"b\":\n2 }\n", {0}), "map:3:1: ");
    EXPECT_EQ(place("\n  {\n\"a\" : 1,\t\"b\":\n2 }\n", {1}), "map:3:10: ");
}

TEST(JsonPosition, NestedAndEmptyValues)
{
    const std::string text = R"({"a":[{},[],{"x":[1,"s",null]}],"b":{"c":true}})";
    EXPECT_EQ(place(text, {0}), "map:1:2: ");
    EXPECT_EQ(place(text, {0, 0}), "map:1:7: ");
    EXPECT_EQ(place(text, {0, 1}), "map:1:10: ");
    EXPECT_EQ(place(text, {0, 2}), "map:1:13: ");
    EXPECT_EQ(place(text, {0, 2, 0}), "map:1:14: ");
    EXPECT_EQ(place(text, {0, 2, 0, 1}), "map:1:21: ");
    EXPECT_EQ(place(text, {0, 2, 0, 2}), "map:1:25: ");
    EXPECT_EQ(place(text, {1}), "map:1:33: ");
    EXPECT_EQ(place(text, {1, 0}), "map:1:38: ");
}

TEST(JsonPosition, TextsMayHoldAnyMark)
{
    EXPECT_EQ(place(R"({"a\"{[,:\\":"}]\"\\,","b":1})", {0}), "map:1:2: ");
    EXPECT_EQ(place(R"({"a\"{[,:\\":"}]\"\\,","b":1})", {1}), "map:1:24: ");
}

TEST(JsonPosition, AByteOrderMarkIsPassedOver)
{
    EXPECT_EQ(place("\xEF\xBB\xBF{\"a\":1}", {0}), "map:1:5: ");
}

TEST(JsonPosition, WhatIsNoJson)
{
    EXPECT_EQ(parseError(""), "map:1:1: this is no JSON");
    EXPECT_EQ(parseError("{\"a\":\n oops}"), "map:2:2: this is no JSON");
    EXPECT_EQ(parseError("{} {}"), "map:1:4: this is no JSON");
    for (const char *text :
         {"{", "[1,", "\"open", "{\"a\"}", "{\"a\":1,}", "nul", "{'a':1}", "[1 2]", "\"\\u12\"", "// c\n1"})
    {
        EXPECT_NE(parseError(text).find(": this is no JSON"), std::string::npos) << text;
    }
}

TEST(JsonPosition, ControlCharactersAreRefused)
{
    EXPECT_EQ(parseError(std::string("{\n\0}", 4)), "map:2:1: a control character is no JSON");
    EXPECT_EQ(parseError("{}\x01"), "map:1:3: a control character is no JSON");
    EXPECT_EQ(parseError("\"a\x1f\""), "map:1:3: a control character is no JSON");
}

TEST(JsonPosition, DeepNestingIsBounded)
{
    const std::string deep = std::string(900, '[') + std::string(900, ']');
    EXPECT_EQ(place(deep, {0, 0}), "map:1:3: ");
    EXPECT_NE(parseError(std::string(100000, '[')).find("this is no JSON"), std::string::npos);
}

TEST(JsonPosition, EachPrefixOfATextIsRefused)
{
    const std::string text = R"({"module":"m","classes":{"/top":{"class":1,"fields":{"a":{"id":2}}}}})";
    for (std::size_t size = 0; size < text.size(); ++size)
    {
        EXPECT_NE(parseError(text.substr(0, size)).find("this is no JSON"), std::string::npos) << size;
    }
}

} // namespace
