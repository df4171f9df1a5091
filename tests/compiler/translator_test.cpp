/** The leaf value translators: which text becomes which value, at every place where a leaf can stand. */
#include <map>

#include "compiler/compiler_fixture.h"

namespace
{

namespace pb = google::protobuf;

using pb::FieldDescriptor;
using Translators = std::map<std::string, GpbStrTransFunc>;

/** Translator by name of the scalar type. */
const Translators kTranslators = {
    {"double", GpbCompiler_StrTrans_ToDouble},  {"float", GpbCompiler_StrTrans_ToDouble},
    {"int64", GpbCompiler_StrTrans_ToInt64},    {"uint64", GpbCompiler_StrTrans_ToUInt64},
    {"int32", GpbCompiler_StrTrans_ToInt32},    {"fixed64", GpbCompiler_StrTrans_ToUInt64},
    {"fixed32", GpbCompiler_StrTrans_ToUInt32}, {"bool", GpbCompiler_StrTrans_ToBool},
    {"string", GpbCompiler_StrTrans_ToString},  {"bytes", GpbCompiler_StrTrans_ToString},
    {"uint32", GpbCompiler_StrTrans_ToUInt32},  {"enum", GpbCompiler_StrTrans_ToEnum},
    {"sfixed32", GpbCompiler_StrTrans_ToInt32}, {"sfixed64", GpbCompiler_StrTrans_ToInt64},
    {"sint32", GpbCompiler_StrTrans_ToInt32},   {"sint64", GpbCompiler_StrTrans_ToInt64},
};

/** Where a long has 32 bits, texts for 32-bit fields are clamped to them. */
constexpr bool kLongIsNarrow = sizeof(long) == 4;

class TranslatorTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        ASSERT_NO_FATAL_FAILURE(addDataModule("scalars"));
    }

    GpbCompilerStackLayer newLayer()
    {
        GpbCompilerStackLayer layer;
        layer.pstDescriptor = type("scalars.Scalars");
        layer.pstMessage = newMessage("scalars.Scalars");
        return layer;
    }

    /** Expects that a text becomes a value (in protobuf's text form) of that type, wherever the leaf stands. */
    void expectValue(const std::string &typeName, const std::string &text, const std::string &value)
    {
        for (const char *place : {"f_", "r_", "o_"})
        {
            const std::string field = place + typeName;
            SCOPED_TRACE(field + " <- '" + text + "'");
            const GpbCompilerStackLayer layer = newLayer();
            EXPECT_EQ(0u, kTranslators.at(typeName)(layer, layer.pstDescriptor->FindFieldByName(field), text.c_str()));
            EXPECT_EQ(judge().encode("scalars.Scalars", field + ": " + value), layer.pstMessage->SerializeAsString())
                << layer.pstMessage->ShortDebugString();
        }
    }

    void expectValues(const std::vector<std::string> &typeNames,
                      const std::vector<std::pair<std::string, std::string>> &values)
    {
        for (const std::string &typeName : typeNames)
        {
            for (const auto &[text, value] : values)
            {
                expectValue(typeName, text, value);
            }
        }
    }
};

TEST_F(TranslatorTest, Int32IsClampedToLongAndThenNarrowed)
{
    expectValues({"int32", "sint32", "sfixed32"},
                 {{"0", "0"}, {"2147483647", "2147483647"}, {"-2147483648", "-2147483648"}});
    if (kLongIsNarrow)
    {
        expectValues({"int32", "sint32", "sfixed32"}, {{"2147483648", "2147483647"},
                                                       {"-2147483649", "-2147483648"},
                                                       {"4294967297", "2147483647"},
                                                       {"9223372036854775807", "2147483647"},
                                                       {"9223372036854775808", "2147483647"},
                                                       {"-9223372036854775809", "-2147483648"},
                                                       {"99999999999999999999999999", "2147483647"}});
        return;
    }
    expectValues({"int32", "sint32", "sfixed32"}, {{"2147483648", "-2147483648"},
                                                   {"-2147483649", "2147483647"},
                                                   {"4294967297", "1"},
                                                   {"9223372036854775807", "-1"},
                                                   {"9223372036854775808", "-1"},
                                                   {"-9223372036854775809", "0"},
                                                   {"99999999999999999999999999", "-1"}});
}

TEST_F(TranslatorTest, UInt32IsClampedToLongAndThenNarrowed)
{
    expectValues({"uint32", "fixed32"}, {{"0", "0"}, {"4294967295", "4294967295"}, {"-1", "4294967295"}});
    if (kLongIsNarrow)
    {
        expectValues({"uint32", "fixed32"}, {{"4294967296", "4294967295"},
                                             {"4294967297", "4294967295"},
                                             {"18446744073709551615", "4294967295"},
                                             {"18446744073709551616", "4294967295"}});
        return;
    }
    expectValues({"uint32", "fixed32"}, {{"4294967296", "0"},
                                         {"4294967297", "1"},
                                         {"18446744073709551615", "4294967295"},
                                         {"18446744073709551616", "4294967295"}});
}

TEST_F(TranslatorTest, Int64IsClamped)
{
    expectValues({"int64", "sint64", "sfixed64"}, {{"0", "0"},
                                                   {"9223372036854775807", "9223372036854775807"},
                                                   {"-9223372036854775808", "-9223372036854775808"},
                                                   {"99999999999999999", "99999999999999999"},
                                                   {"-999999999999999999", "-999999999999999999"},
                                                   {"-1000000000000000000x", "-1000000000000000000"},
                                                   {"9223372036854775808", "9223372036854775807"},
                                                   {"-9223372036854775809", "-9223372036854775808"}});
}

TEST_F(TranslatorTest, UInt64IsClamped)
{
    expectValues({"uint64", "fixed64"}, {{"0", "0"},
                                         {"18446744073709551615", "18446744073709551615"},
                                         {"9999999999999999999", "9999999999999999999"},
                                         {"10000000000000000000 ", "10000000000000000000"},
                                         {"18446744073709551616", "18446744073709551615"},
                                         {"-1", "18446744073709551615"}});
}

TEST_F(TranslatorTest, IntegersAreDecimalAndIgnoreWhatFollows)
{
    expectValues(
        {"int32", "sint32", "sfixed32", "uint32", "fixed32", "int64", "sint64", "sfixed64", "uint64", "fixed64"},
        {{"12abc", "12"},
         {"abc", "0"},
         {"", "0"},
         {" ", "0"},
         {" 7", "7"},
         {"\n\t8 ", "8"},
         {"+5", "5"},
         {"010", "10"},
         {"0x10", "0"},
         {"1.9", "1"},
         {"1 2", "1"},
         {"-", "0"},
         {"-0", "0"},
         {"--1", "0"},
         {"+-1", "0"},
         {"00000000000000000000000007", "7"}});
}

TEST_F(TranslatorTest, FloatingPointReadsAsFarAsItCan)
{
    expectValues({"double", "float"}, {{"0", "0"},
                                       {"1.5", "1.5"},
                                       {"-0", "-0.0"},
                                       {"1e2x", "100"},
                                       {"1,5", "1"},
                                       {"x", "0"},
                                       {"", "0"},
                                       {" 2.5", "2.5"},
                                       {"0x1p4", "16"},
                                       {"nan", "nan"},
                                       {"inf", "inf"},
                                       {"-INFINITY", "-inf"},
                                       {"1e999", "inf"},
                                       {"-1e999", "-inf"}});
    expectValues({"double"}, {{"0.1", "0.1"},
                              {"1.7976931348623157e308", "1.7976931348623157e308"},
                              {"5e-324", "5e-324"},
                              {"16777217", "16777217"}});
}

// A float leaf is read as a double and narrowed when it is stored.
TEST_F(TranslatorTest, FloatIsANarrowedDouble)
{
    expectValues({"float"}, {{"0.1", "0.1"},
                             {"16777217", "16777216"},
                             {"3.4028234663852886e38", "3.4028234663852886e38"},
                             {"1e39", "inf"},
                             {"-1e39", "-inf"},
                             {"1e-60", "0"}});
}

TEST_F(TranslatorTest, OnlyTheExactTextFalseIsFalse)
{
    expectValues({"bool"}, {{"false", "false"},
                            {"true", "true"},
                            {"FALSE", "true"},
                            {"False", "true"},
                            {"0", "true"},
                            {"1", "true"},
                            {"no", "true"},
                            {"", "true"},
                            {"false ", "true"},
                            {" false", "true"},
                            {"fals", "true"}});
}

TEST_F(TranslatorTest, TextIsTakenAsItStands)
{
    expectValues({"string", "bytes"},
                 {{"", "''"}, {" a b\n", "' a b\\n'"}, {"false", "'false'"}, {"h\xc3\xa4", "'h\\303\\244'"}});
    expectValues({"string"}, {{std::string(100000, 'x'), "'" + std::string(100000, 'x') + "'"}});
}

TEST_F(TranslatorTest, EnumValueIsFoundUnderItsTypeName)
{
    expectValues({"enum"}, {{"none", "Color_NONE"}, {"red", "Color_RED"}, {"Blue", "Color_BLUE"}});
}

TEST_F(TranslatorTest, LaterValueReplacesASingularOneAndIsAppendedToARepeatedOne)
{
    const std::map<std::string, std::pair<std::string, std::string>> texts = {
        {"string", {"'1'", "'2'"}}, {"bytes", {"'1'", "'2'"}}, {"bool", {"true", "false"}}, {"enum", {"1", "2"}}};
    for (const auto &[typeName, translate] : kTranslators)
    {
        SCOPED_TRACE(typeName);
        const auto known = texts.find(typeName);
        const std::string first = known == texts.end() ? "1" : known->second.first;
        const std::string second = known == texts.end() ? "2" : known->second.second;
        const char *const firstText = typeName == "enum" ? "red" : "1";
        const char *const secondText = typeName == "enum" ? "blue" : typeName == "bool" ? "false" : "2";
        const GpbCompilerStackLayer layer = newLayer();
        for (const char *place : {"f_", "r_", "o_"})
        {
            const FieldDescriptor *const field = layer.pstDescriptor->FindFieldByName(place + typeName);
            EXPECT_EQ(0u, translate(layer, field, firstText));
            EXPECT_EQ(0u, translate(layer, field, secondText));
        }
        EXPECT_TRUE(judge().holds("scalars.Scalars", layer.pstMessage->SerializeAsString(),
                                  "f_" + typeName + ": " + second + " r_" + typeName + ": [" + first + ", " + second +
                                      "] o_" + typeName + ": " + second));
    }
}

TEST_F(TranslatorTest, MemberOfAChoiceReplacesTheOther)
{
    const GpbCompilerStackLayer layer = newLayer();
    EXPECT_EQ(0u, GpbCompiler_StrTrans_ToInt32(layer, layer.pstDescriptor->FindFieldByName("o_int32"), "4"));
    EXPECT_EQ(0u, GpbCompiler_StrTrans_ToString(layer, layer.pstDescriptor->FindFieldByName("o_string"), "x"));
    EXPECT_TRUE(judge().holds("scalars.Scalars", layer.pstMessage->SerializeAsString(), "o_string: 'x'"));
}

// protobuf ends the process when a setter meets a field of another kind, so none may get that far.
TEST_F(TranslatorTest, FieldOfAnotherKindGivesOneAndStoresNothing)
{
    const std::map<GpbStrTransFunc, std::vector<FieldDescriptor::CppType>> kinds = {
        {GpbCompiler_StrTrans_ToDouble, {FieldDescriptor::CPPTYPE_DOUBLE, FieldDescriptor::CPPTYPE_FLOAT}},
        {GpbCompiler_StrTrans_ToInt64, {FieldDescriptor::CPPTYPE_INT64}},
        {GpbCompiler_StrTrans_ToUInt64, {FieldDescriptor::CPPTYPE_UINT64}},
        {GpbCompiler_StrTrans_ToInt32, {FieldDescriptor::CPPTYPE_INT32}},
        {GpbCompiler_StrTrans_ToUInt32, {FieldDescriptor::CPPTYPE_UINT32}},
        {GpbCompiler_StrTrans_ToBool, {FieldDescriptor::CPPTYPE_BOOL}},
        {GpbCompiler_StrTrans_ToString, {FieldDescriptor::CPPTYPE_STRING}},
        {GpbCompiler_StrTrans_ToEnum, {FieldDescriptor::CPPTYPE_ENUM}}};
    size_t refused = 0;
    for (const auto &[translate, accepted] : kinds)
    {
        const GpbCompilerStackLayer layer = newLayer();
        for (int i = 0; i < layer.pstDescriptor->field_count(); ++i)
        {
            const FieldDescriptor *const field = layer.pstDescriptor->field(i);
            if (std::find(accepted.begin(), accepted.end(), field->cpp_type()) == accepted.end())
            {
                EXPECT_EQ(1u, translate(layer, field, "red")) << field->name();
                ++refused;
            }
        }
        EXPECT_EQ("", layer.pstMessage->SerializeAsString());
    }
    EXPECT_EQ(8u * 51 - 3 * 16, refused); // one translator takes each scalar, none a message
}

TEST_F(TranslatorTest, FieldOfAnotherMessageGivesOne)
{
    const GpbCompilerStackLayer layer = newLayer();
    const FieldDescriptor *const foreign = type("scalars.Other")->FindFieldByName("f_int32");
    const FieldDescriptor *const nested = type("scalars.Scalars.Box")->FindFieldByName("f_int32");
    EXPECT_EQ(1u, GpbCompiler_StrTrans_ToInt32(layer, foreign, "1"));
    EXPECT_EQ(1u, GpbCompiler_StrTrans_ToInt32(layer, nested, "1"));
    EXPECT_EQ("", layer.pstMessage->SerializeAsString());
}

TEST_F(TranslatorTest, LayerWithoutMessageOrNullArgumentGivesOne)
{
    GpbCompilerStackLayer empty;
    empty.pstDescriptor = type("scalars.Scalars");
    const GpbCompilerStackLayer layer = newLayer();
    for (const auto &[typeName, translate] : kTranslators)
    {
        SCOPED_TRACE(typeName);
        const FieldDescriptor *const field = layer.pstDescriptor->FindFieldByName("f_" + typeName);
        EXPECT_EQ(1u, translate(empty, field, "red"));
        EXPECT_EQ(1u, translate(layer, nullptr, "red"));
        EXPECT_EQ(1u, translate(layer, field, nullptr));
    }
    EXPECT_EQ("", layer.pstMessage->SerializeAsString());
    EXPECT_LOG(log(), ); // translators log nothing
}

TEST_F(TranslatorTest, TableNamesTheTranslatorOfEveryFieldType)
{
    const gpbtest::OpenCompiler &compiler = open("scalars");
    const GpbStrTransFunc expected[] = {nullptr,
                                        GpbCompiler_StrTrans_ToDouble,
                                        GpbCompiler_StrTrans_ToDouble,
                                        GpbCompiler_StrTrans_ToInt64,
                                        GpbCompiler_StrTrans_ToUInt64,
                                        GpbCompiler_StrTrans_ToInt32,
                                        GpbCompiler_StrTrans_ToUInt64,
                                        GpbCompiler_StrTrans_ToUInt32,
                                        GpbCompiler_StrTrans_ToBool,
                                        GpbCompiler_StrTrans_ToString,
                                        nullptr,
                                        nullptr,
                                        GpbCompiler_StrTrans_ToString,
                                        GpbCompiler_StrTrans_ToUInt32,
                                        GpbCompiler_StrTrans_ToEnum,
                                        GpbCompiler_StrTrans_ToInt32,
                                        GpbCompiler_StrTrans_ToInt64,
                                        GpbCompiler_StrTrans_ToInt32,
                                        GpbCompiler_StrTrans_ToInt64};
    static_assert(sizeof(expected) == sizeof(compiler.astStrTrans), "one entry per field type");
    for (size_t i = 0; i < std::size(expected); ++i)
    {
        EXPECT_EQ(expected[i], compiler.astStrTrans[i]) << "field type " << i;
    }
}

// A document takes the same way through the table.
TEST_F(TranslatorTest, EveryScalarOfADocumentReachesItsField)
{
    open("scalars");
    expectEncodes("<scalars><f-double>-2.5</f-double><f-float>1.1</f-float><f-int64>-3</f-int64><f-uint64>4</f-uint64>"
                  "<f-int32>-5</f-int32><f-fixed64>6</f-fixed64><f-fixed32>7</f-fixed32><f-bool>true</f-bool>"
                  "<f-string>nine</f-string><f-bytes>twelve</f-bytes><f-uint32>13</f-uint32><f-enum>blue</f-enum>"
                  "<f-sfixed32>-15</f-sfixed32><f-sfixed64>-16</f-sfixed64><f-sint32>-17</f-sint32>"
                  "<f-sint64>-18</f-sint64><r-int32>1</r-int32><r-int32>2</r-int32><r-enum>red blue</r-enum>"
                  "<o-float>0.5</o-float></scalars>",
                  "scalars.Scalars",
                  "f_double: -2.5 f_float: 1.1 f_int64: -3 f_uint64: 4 f_int32: -5 f_fixed64: 6 f_fixed32: 7 "
                  "f_bool: true f_string: 'nine' f_bytes: 'twelve' f_uint32: 13 f_enum: Color_BLUE f_sfixed32: -15 "
                  "f_sfixed64: -16 f_sint32: -17 f_sint64: -18 r_int32: [1, 2] r_enum: [Color_RED, Color_BLUE] "
                  "o_float: 0.5");
}

} // namespace
