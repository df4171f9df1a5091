/**
 * Every field type, singular, repeated and in a choice, in both syntaxes, with the values at its boundaries, from XML
 * and from JSON: the bytes are those that the wire format prescribes, worked out here.
 */
#include <cstdio>
#include <cstring>

#include "compiler/json_fixture.h"
#include "gpb_templatelib/gpb_compiler_c.h"

namespace gpbtest
{
namespace
{

enum class Label
{
    SINGULAR,
    REPEATED,
    CHOICE
};

constexpr Label kLabels[] = {Label::SINGULAR, Label::REPEATED, Label::CHOICE};

/** A value as a document has it, and its bytes behind the tag. */
struct Value
{
    std::string text;
    std::string bytes;
    bool isDefault = false; ///< which a singular field of proto3 does not carry
    std::string json = {};  ///< as a JSON value; empty: the text in quotation marks
    bool isRefused = false; ///< the leaf is left out
};

struct FieldType
{
    std::string name; ///< as a proto file has it
    unsigned int wireType;
    std::vector<Value> values;
};

std::string varint(uint64_t value)
{
    std::string bytes;
    for (; value >= 0x80; value >>= 7)
    {
        bytes.push_back(static_cast<char>(value | 0x80));
    }
    bytes.push_back(static_cast<char>(value));
    return bytes;
}

std::string zigZag(int64_t value)
{
    return varint((static_cast<uint64_t>(value) << 1) ^ (value < 0 ? ~uint64_t{0} : 0));
}

std::string fixed(uint64_t value, size_t size)
{
    std::string bytes;
    for (size_t i = 0; i < size; ++i)
    {
        bytes.push_back(static_cast<char>(value >> (8 * i)));
    }
    return bytes;
}

std::string delimited(const std::string &content)
{
    return varint(content.size()) + content;
}

template <typename Encode>
std::vector<Value> signedValues(int64_t min, int64_t max, const Encode &encode)
{
    std::vector<Value> values;
    for (const int64_t value : {int64_t{1}, int64_t{0}, int64_t{-1}, min, min + 1, max, max - 1})
    {
        values.push_back({std::to_string(value), encode(value), value == 0});
    }
    values.push_back({"x", encode(0), true});
    return values;
}

template <typename Encode>
std::vector<Value> unsignedValues(uint64_t max, const Encode &encode)
{
    std::vector<Value> values;
    for (const uint64_t value : {uint64_t{1}, uint64_t{0}, uint64_t{127}, uint64_t{128}, max, max - 1})
    {
        values.push_back({std::to_string(value), encode(value), value == 0});
    }
    values.push_back({"x", encode(0), true});
    return values;
}

/** Numbers that fit are also JSON numbers, which have 14 digits. */
std::vector<Value> alsoAsNumbers(std::vector<Value> values)
{
    const std::vector<Value> texts = values;
    for (Value value : texts)
    {
        if (value.text != "x")
        {
            value.json = value.text;
            values.push_back(value);
        }
    }
    return values;
}

const std::vector<FieldType> &fieldTypes()
{
    const auto asVarint = [](auto value) { return varint(static_cast<uint64_t>(value)); };
    const auto as32 = [](auto value) { return fixed(static_cast<uint64_t>(value), 4); };
    const auto as64 = [](auto value) { return fixed(static_cast<uint64_t>(value), 8); };
    const std::string umlauts = "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
    std::vector<Value> texts;
    for (const std::string &text :
         {std::string("a"), umlauts, std::string(127, 'n'), std::string(128, 'n'), std::string(16384, 'n')})
    {
        texts.push_back({text, delimited(text)});
    }
    static const std::vector<FieldType> types = {
        {"double",
         1,
         {{"1", as64(0x3FF0000000000000), false, "1"},
          {"0", as64(0), true, "0"},
          {"-1.5", as64(0xBFF8000000000000), false, "-1.5"},
          {"1.7976931348623157e308", as64(0x7FEFFFFFFFFFFFFF)},
          {"4.9406564584124654e-324", as64(1)},
          {"1e309", as64(0x7FF0000000000000)},
          {"x", as64(0), true}}},
        {"float",
         5,
         {{"1", as32(0x3F800000), false, "1"},
          {"0", as32(0), true, "0"},
          {"-1.5", as32(0xBFC00000), false, "-1.5"},
          {"3.4028234663852886e38", as32(0x7F7FFFFF)},
          {"1.401298464324817e-45", as32(1)},
          {"x", as32(0), true}}},
        {"int32", 0, alsoAsNumbers(signedValues(INT32_MIN, INT32_MAX, asVarint))},
        {"int64", 0, signedValues(INT64_MIN, INT64_MAX, asVarint)},
        {"uint32", 0, alsoAsNumbers(unsignedValues(UINT32_MAX, asVarint))},
        {"uint64", 0, unsignedValues(UINT64_MAX, asVarint)},
        {"sint32", 0, alsoAsNumbers(signedValues(INT32_MIN, INT32_MAX, zigZag))},
        {"sint64", 0, signedValues(INT64_MIN, INT64_MAX, zigZag)},
        {"fixed32", 5, alsoAsNumbers(unsignedValues(UINT32_MAX, as32))},
        {"fixed64", 1, unsignedValues(UINT64_MAX, as64)},
        {"sfixed32", 5, alsoAsNumbers(signedValues(INT32_MIN, INT32_MAX, as32))},
        {"sfixed64", 1, signedValues(INT64_MIN, INT64_MAX, as64)},
        {"bool",
         0,
         {{"true", varint(1), false, "true"},
          {"false", varint(0), true, "false"},
          {"true", varint(1)},
          {"false", varint(0), true},
          {"0", varint(1)},
          {"x", varint(1)}}},
        {"string", 2, texts},
        {"bytes", 2, texts},
        {"E",
         0,
         {{"zero", varint(0), true},
          {"one", varint(1)},
          {"least", asVarint(int64_t{INT32_MIN})},
          {"most", varint(INT32_MAX)},
          {"none", "", false, "", true}}},
    };
    return types;
}

class FieldTypeTest : public JsonFixture
{
protected:
    /** The module of one of the syntaxes, with all fields in the message Top. */
    void load(bool isProto3)
    {
        std::string text = std::string("syntax = \"") + (isProto3 ? "proto3" : "proto2") + "\"; package " +
                           (isProto3 ? "three" : "two") + "; message Top { message M { int32 x = 1; } " +
                           "enum E { E_ZERO = 0; E_ONE = 1; E_LEAST = -2147483648; E_MOST = 2147483647; } ";
        const std::string optional = isProto3 ? "" : "optional ";
        text.replace(text.find("int32 x"), 0, optional);
        std::string choice = "oneof choice { ";
        for (size_t i = 0; i < fieldTypes().size(); ++i)
        {
            const std::string &type = fieldTypes()[i].name;
            text += optional + type + " " + name(i, Label::SINGULAR) + ";" + "repeated " + type + " " +
                    name(i, Label::REPEATED) + ";";
            choice += type + " " + name(i, Label::CHOICE) + ";";
        }
        text += optional + "M mes = 1001; repeated M rmes = 1002;";
        choice += "M cmes = 1003;";
        if (!isProto3)
        {
            text += "optional group G = 1004 { optional int32 x = 1; } repeated group Rg = 1005 { optional int32 x = "
                    "1; }";
            choice += "group Cg = 1006 { optional int32 x = 1; }";
        }
        m_module = isProto3 ? "three" : "two";
        addModule(m_module, text + choice + "} }");
    }

    static uint32_t number(size_t type, Label label)
    {
        return static_cast<uint32_t>(type * 3 + static_cast<size_t>(label) + 1);
    }

    /** The field's name and number as the proto file has them. */
    static std::string name(size_t type, Label label)
    {
        return node(type, label) + " = " + std::to_string(number(type, label));
    }

    static std::string node(size_t type, Label label)
    {
        return "f" + std::string(1, static_cast<char>('a' + type)) + "src"[static_cast<size_t>(label)];
    }

    /** The bytes of a field that was given a value, and the value `count` times when it is repeated. */
    static std::string expected(size_t type, Label label, const Value &value, bool isProto3, size_t count)
    {
        const unsigned int wireType = fieldTypes()[type].wireType;
        if (value.isRefused || (isProto3 && label == Label::SINGULAR && value.isDefault))
        {
            return "";
        }
        const uint32_t field = number(type, label) << 3;
        std::string payloads;
        std::string fields;
        for (size_t i = 0; i < (label == Label::REPEATED ? count : 1); ++i)
        {
            payloads += value.bytes;
            fields += varint(field | wireType) + value.bytes;
        }
        const bool isPacked = isProto3 && label == Label::REPEATED && wireType != 2;
        return isPacked ? varint(field | 2) + delimited(payloads) : fields;
    }

    std::string encodeXml(const std::string &content)
    {
        const XmlDocument document("<top>" + content + "</top>");
        GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(context(), m_module.c_str());
        unsigned int length = 0;
        unsigned int code = 0;
        const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &code);
        const std::string result = bytes == nullptr ? "code " + std::to_string(code) : std::string(bytes, length);
        GpbXmlCompiler_Destory(compiler);
        log().clear();
        return result;
    }

    std::string encodeJson(const std::string &content)
    {
        const JsonTree tree("{\"top\":{" + content + "}}");
        GpbXmlCompilerBase *const compiler = GpbJsonCompiler_CreateJsonCompiler(context(), m_module.c_str());
        unsigned int length = 0;
        const char *const bytes = GpbXmlCompiler_EncodeJson(compiler, tree.root(), tree.root(), &length);
        const std::string result = bytes == nullptr ? "null" : std::string(bytes, length);
        GpbXmlCompiler_Destory(compiler);
        log().clear();
        return result;
    }

    /** Encodes a field twice in both formats; returns the number of cases. */
    size_t checkField(size_t type, Label label, bool isProto3)
    {
        constexpr size_t kCount = 2;
        const std::string field = node(type, label);
        size_t cases = 0;
        for (const Value &value : fieldTypes()[type].values)
        {
            SCOPED_TRACE(fieldTypes()[type].name + " " + field + " = " + value.text.substr(0, 40));
            const std::string element = "<" + field + ">" + value.text + "</" + field + ">";
            const std::string member =
                "\"" + field + "\":" + (value.json.empty() ? "\"" + value.text + "\"" : value.json);
            const std::string bytes = expected(type, label, value, isProto3, kCount);
            EXPECT_EQ(bytes, encodeXml(element + element));
            EXPECT_EQ(bytes, encodeJson(member + "," + member));
            cases += 2;
        }
        return cases;
    }

private:
    std::string m_module;
};

TEST_F(FieldTypeTest, EveryScalarHasTheBytesOfTheWireFormat)
{
    size_t cases = 0;
    for (const bool isProto3 : {false, true})
    {
        load(isProto3);
        for (size_t type = 0; type < fieldTypes().size(); ++type)
        {
            for (const Label label : kLabels)
            {
                cases += checkField(type, label, isProto3);
            }
        }
    }
    std::printf("field types: %zu cases\n", cases);
}

TEST_F(FieldTypeTest, MessagesAndGroupsAreNoLeaves)
{
    for (const bool isProto3 : {false, true})
    {
        load(isProto3);
        const std::vector<std::string> names = isProto3
                                                   ? std::vector<std::string>{"mes", "rmes", "cmes"}
                                                   : std::vector<std::string>{"mes", "rmes", "cmes", "g", "rg", "cg"};
        for (const std::string &name : names)
        {
            SCOPED_TRACE(name);
            EXPECT_EQ("", encodeXml("<" + name + ">1</" + name + ">"));
            EXPECT_EQ("null", encodeJson("\"" + name + "\":1"));
        }
    }
}

} // namespace
} // namespace gpbtest
