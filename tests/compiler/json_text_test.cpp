// The text of XML to JSON, against cJSON's own printing.
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "compiler/json_fixture.h"

namespace gpbtest
{
namespace
{

constexpr unsigned kSeed = 20261121;

class JsonTextTest : public JsonFixture
{
protected:
    void SetUp() override
    {
        JsonFixture::SetUp();
        addModule("plant", kPlantProto);
    }

    /** Prints a tree as the compiler prints that of an encode, and frees it. */
    CompilerResult printed(cJSON *tree)
    {
        const auto compiler = open<OpenXmlToJsonCompiler>("plant", static_cast<unsigned char>(0));
        compiler->pstJsonRoot = tree;
        return takeResult(*compiler, 0);
    }

    /** Expects the text that cJSON prints; frees the tree. */
    void expectAsCjson(cJSON *tree)
    {
        char *expected = cJSON_PrintUnformatted(tree);
        ASSERT_NE(nullptr, expected);
        EXPECT_EQ(expected, printed(tree).bytes);
        cJSON_free(expected);
    }

    void expectNumbersAsCjson(const std::vector<double> &numbers)
    {
        cJSON *array = cJSON_CreateArray();
        for (const double number : numbers)
        {
            cJSON_AddItemToArray(array, cJSON_CreateNumber(number));
        }
        expectAsCjson(array);
    }

    std::mt19937_64 m_random{kSeed};
};

TEST_F(JsonTextTest, WritesNumbersOfAllSizesAsCjsonDoes)
{
    std::vector<double> numbers = {0.0, -0.0, 0.1, -0.1, 1.0 / 3, 100, 1e5, 123456789012345, 1e300, 5e-324};
    for (const double edge : {1e14, 1e15, 1e16, 1e17, 1e21, 1e-4, 1e-5, 4294967296.0, 9007199254740992.0, DBL_MAX,
                              DBL_MIN, DBL_EPSILON, 0.5, 1.5})
    {
        for (const double near : {edge, std::nextafter(edge, 0.0), std::nextafter(edge, DBL_MAX), edge - 1, edge + 1})
        {
            numbers.push_back(near);
            numbers.push_back(-near);
        }
    }
    numbers.push_back(std::numeric_limits<double>::infinity());
    numbers.push_back(-std::numeric_limits<double>::infinity());
    numbers.push_back(std::numeric_limits<double>::quiet_NaN());
    expectNumbersAsCjson(numbers);
}

TEST_F(JsonTextTest, WritesRandomNumbersAsCjsonDoes)
{
    std::vector<double> numbers;
    for (int i = 0; i < 20000; ++i)
    {
        const uint64_t bits = m_random();
        double any = 0;
        std::memcpy(&any, &bits, sizeof(any));
        numbers.push_back(any);
        const unsigned cut = static_cast<unsigned>(m_random() % 64);
        numbers.push_back(static_cast<double>(static_cast<int64_t>(bits) >> cut));
        numbers.push_back(static_cast<double>(static_cast<int64_t>(bits) >> cut) / 100);
        numbers.push_back(static_cast<double>(bits >> cut) * 1e-9);
    }
    expectNumbersAsCjson(numbers);
}

TEST_F(JsonTextTest, WritesEachCharacterAsCjsonDoes)
{
    cJSON *object = cJSON_CreateObject();
    for (int code = 1; code < 256; ++code)
    {
        const std::string one(1, static_cast<char>(code));
        cJSON_AddStringToObject(object, ("k" + one + "k").c_str(), (one + "between" + one + one).c_str());
    }
    expectAsCjson(object);
}

TEST_F(JsonTextTest, WritesStringsOfAllLengthsAsCjsonDoes)
{
    cJSON *array = cJSON_CreateArray();
    for (const size_t length : {0U, 1U, 255U, 256U, 257U, 511U, 512U, 513U, 5000U, 200000U})
    {
        std::string text(length, 'x');
        cJSON_AddItemToArray(array, cJSON_CreateString(text.c_str()));
        for (char &c : text)
        {
            c = static_cast<char>(1 + m_random() % 255);
        }
        cJSON_AddItemToArray(array, cJSON_CreateString(text.c_str()));
        cJSON_AddItemToArray(array, cJSON_CreateString(std::string(length, '\x01').c_str()));
    }
    expectAsCjson(array);
}

TEST_F(JsonTextTest, WritesItemsOfAllKindsAsCjsonDoes)
{
    cJSON *object = cJSON_CreateObject();
    cJSON_AddNullToObject(object, "null");
    cJSON_AddTrueToObject(object, "true");
    cJSON_AddFalseToObject(object, "false");
    cJSON_AddRawToObject(object, "raw", R"({ "as": ["it", "stands"] })");
    cJSON_AddArrayToObject(object, "empty array");
    cJSON_AddObjectToObject(object, "empty object");
    cJSON_AddItemToObjectCS(object, "constant name", cJSON_CreateNumber(1));
    cJSON_AddItemToObject(object, "reference", cJSON_CreateStringReference("text"));
    cJSON_AddNumberToObject(object, "twice", 1);
    cJSON_AddNumberToObject(object, "twice", 2);
    cJSON *array = cJSON_AddArrayToObject(object, "array");
    cJSON_AddItemToArray(array, cJSON_CreateNull());
    cJSON_AddItemToArray(array, cJSON_CreateObject());
    cJSON_AddItemToArray(array, cJSON_CreateArray());
    expectAsCjson(object);
    expectAsCjson(cJSON_CreateString("no container"));
}

TEST_F(JsonTextTest, WritesMembersWithoutNameAsCjsonDoes)
{
    cJSON *object = cJSON_CreateObject();
    cJSON_AddItemToArray(object, cJSON_CreateTrue());
    cJSON *string = cJSON_CreateString("");
    cJSON_free(string->valuestring);
    string->valuestring = nullptr;
    cJSON_AddItemToArray(object, string);
    expectAsCjson(object);
}

TEST_F(JsonTextTest, WritesTheDeepestTreeAsCjsonDoes)
{
    cJSON *root = cJSON_CreateObject();
    cJSON *inner = root;
    for (unsigned depth = 0; depth < GPB_JSON_MAX_DEPTH; ++depth)
    {
        inner = depth % 2 == 0 ? cJSON_AddArrayToObject(inner, "list") : inner;
        cJSON *object = cJSON_CreateObject();
        cJSON_AddItemToArray(inner, object);
        inner = object;
    }
    expectAsCjson(root);
}

TEST_F(JsonTextTest, HasNoTextOfWhatCannotBePrinted)
{
    for (const int type : {static_cast<int>(cJSON_Invalid), static_cast<int>(cJSON_Raw), 3})
    {
        SCOPED_TRACE(type);
        cJSON *object = cJSON_CreateObject();
        cJSON *member = cJSON_CreateTrue();
        cJSON_AddItemToObject(object, "member", member);
        cJSON_AddItemToObject(object, "array", cJSON_CreateArray());
        member->type = type;
        EXPECT_TRUE(printed(object).isNull);
    }
}

TEST_F(JsonTextTest, ReadsNumbersAsStrtodDoes)
{
    for (const char *text : {"0",
                             "-0",
                             "+0",
                             "7",
                             "007",
                             "-7",
                             "+7",
                             "--7",
                             "-",
                             "",
                             " 7",
                             "7 ",
                             "7x",
                             "1.5",
                             "-1.5",
                             ".5",
                             "5.",
                             "1e3",
                             "0x10",
                             "inf",
                             "nan",
                             "999999999999999",
                             "-999999999999999",
                             "1000000000000000",
                             "9007199254740993",
                             "18446744073709551615",
                             "-18446744073709551616",
                             "000000000000000000001",
                             "0000000000000007"})
    {
        SCOPED_TRACE(text);
        cJSON *item = GpbXmlCompilerJson_AddNumber(nullptr, text, kModuleId);
        ASSERT_NE(nullptr, item);
        const double expected = std::strtod(text, nullptr);
        EXPECT_EQ(0, std::memcmp(&expected, &item->valuedouble, sizeof(expected)));
        cJSON_Delete(item);
    }
}

} // namespace
} // namespace gpbtest
