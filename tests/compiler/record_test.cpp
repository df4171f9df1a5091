/**
 * What compilers of the library's own classes encode, beside protobuf: the bytes have to be those of SerializeToString
 * for each type of field. The fixture encodes every document with a subclass, too, which fills protobuf's messages.
 */
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include <google/protobuf/compiler/importer.h>

#include "compiler/compiler_fixture.h"
#include "support/temp_directory.h"

namespace
{

using gpbtest::XmlDocument;

struct Leaf
{
    const char *type;
    const char *values[4]; ///< in YANG and in protobuf's text form alike
};

constexpr Leaf kNumbers[] = {
    {"double", {"0", "-0.0", "1.5", "-1e300"}},          {"float", {"0", "-0.0", "0.25", "-1e30"}},
    {"int64", {"0", "1", "-1", "-9223372036854775808"}}, {"uint64", {"0", "127", "128", "18446744073709551615"}},
    {"int32", {"0", "300", "-1", "-2147483648"}},        {"fixed64", {"0", "1", "255", "18446744073709551615"}},
    {"fixed32", {"0", "1", "255", "4294967295"}},        {"uint32", {"0", "127", "128", "4294967295"}},
    {"sfixed32", {"0", "1", "-1", "-2147483648"}},       {"sfixed64", {"0", "1", "-1", "-9223372036854775808"}},
    {"sint32", {"0", "1", "-1", "-2147483648"}},         {"sint64", {"0", "1", "-1", "-9223372036854775808"}},
    {"bool", {"false", "true", "false", "true"}},
};

class RecordTest : public gpbtest::CompilerFixture
{
protected:
    /** Encodes with a compiler of the library's own and with the fixture's; both have to give protobuf's bytes. */
    void expectBytes(const std::string &content, const std::string &textForm) { expectBytesOf("m", content, textForm); }

    void expectBytesOf(const std::string &module, const std::string &content, const std::string &textForm)
    {
        SCOPED_TRACE(content);
        const std::string xml = "<top>" + content + "</top>";
        const std::string expected = judge().encode(module + ".Top", textForm);
        GpbXmlCompilerBase *const plain = GpbXmlCompiler_CreateCompiler(context(), module.c_str());
        ASSERT_NE(nullptr, plain);
        const XmlDocument document(xml);
        unsigned int length = 0;
        unsigned int error = 1;
        const char *const bytes = GpbXmlCompiler_Encode(plain, document.get(), &length, &error);
        EXPECT_EQ(0u, error);
        EXPECT_EQ(expected, bytes == nullptr ? "none" : std::string(bytes, length));
        GpbXmlCompiler_Destory(plain);
        log().clear();
        expectEncodes(xml, module + ".Top", textForm);
    }
};

TEST_F(RecordTest, NumbersOfEachType)
{
    int number = 0;
    std::string single;
    std::string packed;
    std::string unpacked;
    std::string present;
    for (const Leaf &leaf : kNumbers)
    {
        const std::string type = leaf.type;
        single += type + " s_" + type + " = " + std::to_string(++number) + ";\n";
        packed += "repeated " + type + " p_" + type + " = " + std::to_string(100 + number) + ";\n";
        unpacked += "repeated " + type + " u_" + type + " = " + std::to_string(3000 + number) + " [packed = false];\n";
        present += "optional " + type + " o_" + type + " = " + std::to_string(400000 + number) + ";\n";
    }
    addModule("m", "syntax = 'proto3'; package m; message Top {\n" + present + unpacked + packed + single + "}");
    open("m");
    for (const Leaf &leaf : kNumbers)
    {
        const std::string type = leaf.type;
        std::string allXml;
        std::string allText;
        for (const char *const value : leaf.values)
        {
            for (const char *const kind : {"s_", "o_", "p_", "u_"})
            {
                const std::string field = kind + type;
                expectBytes("<" + field + ">" + value + "</" + field + ">", field + ": " + value);
            }
            for (const char *const kind : {"p_", "u_"})
            {
                const std::string field = kind + type;
                allXml += "<" + field + ">" + value + "</" + field + ">";
                allText += field + ": " + value + " ";
            }
        }
        expectBytes(allXml, allText);
        // A later value replaces an earlier one, even by nothing.
        expectBytes("<s_" + type + ">" + leaf.values[3] + "</s_" + type + "><s_" + type + ">" + leaf.values[0] +
                        "</s_" + type + ">",
                    "s_" + type + ": " + leaf.values[0]);
    }
}

TEST_F(RecordTest, TextsAndEnums)
{
    addModule("m", R"(syntax = 'proto3'; package m; message Top {
        enum Kind { Kind_NONE = 0; Kind_A_B = 1; Kind_X_2G = -1; Kind_BIG = 2147483647; KindX_UP = 5; KindX_X_ = 6; }
        string s = 1; bytes b = 2; repeated string rs = 3; repeated bytes rb = 4; optional string os = 5;
        Kind k = 6; repeated Kind rk = 7; repeated Kind uk = 8 [packed = false]; optional Kind ok = 9; })");
    open("m");
    expectBytes("<s>a text</s><b>bytes</b><rs>1</rs><rs>22</rs><rb>3</rb>",
                "s: 'a text' b: 'bytes' rs: '1' rs: '22' rb: '3'");
    expectBytes("<s>" + std::string(100000, 's') + "</s>", "s: '" + std::string(100000, 's') + "'");
    expectBytes("<k>a_b</k>", "k: Kind_A_B");
    expectBytes("<k>2g</k><rk>none 2g big</rk><uk>BIG NONE</uk>",
                "k: Kind_X_2G rk: Kind_NONE rk: Kind_X_2G rk: Kind_BIG uk: Kind_BIG uk: Kind_NONE");
    expectBytes("<k>2g</k><k>none</k><ok>none</ok>", "k: Kind_NONE ok: Kind_NONE");
    expectEncodes("<top><k>2g nothing big</k><rk>big  none</rk></top>", "m.Top", "k: Kind_X_2G rk: Kind_BIG",
                  {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [k] value [2g nothing big] to layer "
                   "[m.Top].",
                   "0: [GpbXmlCompiler][FillLeafField]Fail to translator node [rk] value [big  none] to layer "
                   "[m.Top]."});
}

TEST_F(RecordTest, EnumValuesInEverySpelling)
{
    // Names that no value is converted to are there, too: of a digit, and in lower case.
    addModule("m", R"(syntax = 'proto2'; package m; message Top {
        enum K { K_NONE = 0; K_ADMINX_DOWN = 1; K_MAX_SPEED = 2; K_X_10GX_FULL = 3; K_X_7 = 4; K_8 = 5; K_low = 6;
                 K_X_ = 7; K__ = 8; K_X_X_ = 9; K_ = 10; }
        optional K k = 1; })");
    open("m");
    const std::pair<std::string, int> stored[] = {
        {"none", 0},        {"admin-down", 1}, {"ADMIN-DOWN", 1},   {"Admin-Down", 1}, {"admin.down", 1},
        {"adminx_down", 1}, {"max_speed", 2},  {"MAX_SPEED", 2},    {"ma-speed", 2},   {"10g-full", 3},
        {"10G-FULL", 3},    {"-10g-full", 3},  {"X_10gX_full", 3},  {"7", 4},          {"-7", 4},
        {"x_7", 4},         {"-", 7},          {"X_", 7},           {"_", 8},          {"--", 9},
        {"-x_", 9},         {"none  ", 10},    {"-- admin-down", 1}};
    for (const auto &[text, number] : stored)
    {
        expectBytes("<k>" + text + "</k>", "k: " + std::to_string(number));
    }
    for (const std::string text : {"8", "-8", "low", "LOW", "admin down", "admin-down-", "10g", "10gx"})
    {
        expectEncodes(
            "<top><k>" + text + "</k></top>", "m.Top", "",
            {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [k] value [" + text + "] to layer [m.Top]."});
    }
}

// Hosts can reach the table of special characters, and the conversion asks it for each value.
TEST_F(RecordTest, EnumValuesWithAnotherTableOfSpecialCharacters)
{
    struct Mark
    {
        unsigned char &ofU = GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>('u')];
        ~Mark() { ofU = 0; }
    } mark;
    for (const char *const name : {"m", "n"})
    {
        addModule(name, std::string("syntax = 'proto2'; package ") + name +
                            "; message Top { enum K { K_NONE = 0; K_UP = 1; K_X_P = 2; } optional K k = 1; }");
    }
    open("m");
    expectBytes("<k>up</k>", "k: 1");
    mark.ofU = 1;
    expectBytes("<k>up</k>", "k: 2");
    expectBytes("<k>none</k>", "k: 0");
    open("n");
    expectBytes("<k>up</k>", "k: 2");
    mark.ofU = 0;
    expectBytes("<k>up</k>", "k: 1");
    open("m");
    expectBytes("<k>up</k>", "k: 1");
}

TEST_F(RecordTest, EnumValuesOfEveryLength)
{
    // In twos where each character takes two places, in ones where it takes one.
    for (const int length : {1, 7, 8, 9, 56, 57, 58, 59, 60, 61, 62, 63, 64, 100, 120, 121, 122})
    {
        const std::string plain(static_cast<size_t>(length), 'A');
        std::string odd;
        std::string spelt;
        for (int i = 0; i + 1 < length; i += 2)
        {
            odd += "X_";
            spelt += "-";
        }
        spelt += length % 2 == 0 ? "" : "b";
        odd += length % 2 == 0 ? "" : "B";
        const std::string module = "m" + std::to_string(length);
        addModule(module, "syntax = 'proto3'; package " + module + "; message Top { enum K { K_Z = 0; K_" + plain +
                              " = 3; K_" + odd + " = 4; } K k = 1; repeated K r = 2; }");
        open(module);
        expectBytesOf(module, "<k>" + plain + "</k>", "k: 3");
        expectBytesOf(module, "<k>" + std::string(plain.size(), 'a') + " </k>", "k: 3");
        expectBytesOf(module, "<r>z " + plain + " " + spelt + " Z</r>", "r: 0 r: 3 r: 4 r: 0");
    }
}

TEST_F(RecordTest, FieldsAreWrittenByNumberWhateverTheirOrder)
{
    addModule("m", R"(syntax = 'proto3'; package m; message Top {
        message Box { string z = 1; repeated Box in = 2; int32 a = 900; }
        Box last = 70000; string first = 2; repeated Box many = 130; int32 middle = 65; Box empty = 1; })");
    open("m");
    expectBytes("<last><a>1</a><z>z</z></last><many><z>1</z></many><middle>7</middle><many><in><a>5</a><a>6</a></in>"
                "<in><z>q</z><in>\n</in></in></many><first>f</first><last><in><z>more</z></in></last><empty>\n</empty>",
                "empty {} first: 'f' middle: 7 many { z: '1' } many { in { a: 6 } in { z: 'q' in {} } } "
                "last { z: 'z' a: 1 in { z: 'more' } }");
}

TEST_F(RecordTest, AThousandFields)
{
    std::string fields;
    for (int i = 1; i <= 1000; ++i)
    {
        fields += "int32 f" + std::to_string(i) + " = " + std::to_string(i) + ";\n";
    }
    addModule("m", "syntax = 'proto3'; package m; message Top {\n" + fields + "}");
    open("m");
    expectBytes("<f1000>3</f1000><f64>2</f64><f65>4</f65><f1>1</f1>", "f1: 1 f64: 2 f65: 4 f1000: 3");
}

TEST_F(RecordTest, ChoicesKeepTheLastCase)
{
    addModule("m", R"(syntax = 'proto3'; package m; message Top {
        message A { string a = 1; } message B { string b = 1; }
        oneof c { A case_a = 1; B case_b = 2; string text = 3; int32 number = 4; }
        oneof d { A other = 5; bool flag = 6; } })");
    open("m");
    expectBytes("<a>1</a><b>2</b>", "case_b { b: '2' }");
    expectBytes("<a>1</a><number>0</number>", "number: 0");
    expectBytes("<text>t</text><a>1</a><flag>false</flag>", "case_a { a: '1' } flag: false");
    expectBytes("<a>1</a><number>0</number><a>2</a>", "case_a { a: '2' }");
    expectBytes("<other>\n</other><a>1</a>", "other {} case_a { a: '1' }");
}

TEST_F(RecordTest, OlderModulesKeepPresenceAndRequiredFields)
{
    addModule("m", R"(syntax = 'proto2'; package m; message Top {
        message Box { required int32 must = 1; optional Box inner = 2; }
        enum Kind { Kind_A = 0; Kind_B = 7; }
        optional int32 i = 1 [default = 5]; optional string s = 2 [default = 'x']; repeated int32 r = 3;
        repeated int32 p = 4 [packed = true]; optional Kind k = 5; optional Box box = 6; repeated Box boxes = 7;
        repeated Kind ks = 8 [packed = true]; extensions 100 to 200; })");
    open("m");
    expectBytes("<i>0</i><r>1</r><r>2</r><p>1</p><p>2</p><k>a</k><ks>b a</ks>",
                "i: 0 r: 1 r: 2 p: 1 p: 2 k: Kind_A ks: Kind_B ks: Kind_A");
    expectBytes("<box><must>0</must><inner><must>1</must></inner></box><boxes><must>2</must></boxes>",
                "box { must: 0 inner { must: 1 } } boxes { must: 2 }");
    for (const char *const content : {"<box>\n</box>", "<box><must>1</must><inner>\n</inner></box>",
                                      "<boxes><must>1</must></boxes><boxes>\n</boxes>"})
    {
        GpbXmlCompilerBase *const plain = GpbXmlCompiler_CreateCompiler(context(), "m");
        const XmlDocument document("<top>" + std::string(content) + "</top>");
        unsigned int length = 7;
        unsigned int error = 1;
        log().clear();
        EXPECT_EQ(nullptr, GpbXmlCompiler_Encode(plain, document.get(), &length, &error));
        EXPECT_EQ(0u, error);
        EXPECT_EQ(0u, length);
        EXPECT_EQ("0: [GpbXmlCompiler][GetGpbBuffer]top message is not initialized.", log().texts().back());
        GpbXmlCompiler_Destory(plain);
    }
}

// A number that a closed enum does not have is no value of its field: protobuf writes it behind everything else.
TEST_F(RecordTest, AValueOfAnotherClosedEnumIsNoValue)
{
    addModule("m", R"(syntax = 'proto2'; package m; message Top {
        enum Kind { Kind_A = 0; } enum Other { Kind_ALIEN = 9; }
        optional Kind k = 1; optional string s = 2; })");
    open("m");
    const XmlDocument document("<top><k>alien</k><s>s</s></top>");
    GpbXmlCompilerBase *const plain = GpbXmlCompiler_CreateCompiler(context(), "m");
    unsigned int length = 0;
    unsigned int error = 1;
    const char *const bytes = GpbXmlCompiler_Encode(plain, document.get(), &length, &error);
    EXPECT_EQ(std::string("\x12\x01s\x08\x09", 5), bytes == nullptr ? "none" : std::string(bytes, length));
    GpbXmlCompiler_Destory(plain);
}

// Types that protobuf alone can write are encoded all the same.
TEST_F(RecordTest, MapsAndGroupsAreProtobufs)
{
    addModule("m", R"(syntax = 'proto2'; package m; message Top {
        optional group Pair = 1 { optional int32 x = 1; } map<string, int32> numbers = 2; optional string s = 3; })");
    open("m");
    expectBytes("<s>s</s><numbers><key>k</key><value>1</value></numbers>", "s: 's' numbers { key: 'k' value: 1 }");
}

/** Encodes one leaf with a new compiler of the library's own. */
std::string encodeLeaf(GpbLibContext *context)
{
    GpbXmlCompilerBase *const plain = GpbXmlCompiler_CreateCompiler(context, "m");
    const XmlDocument document("<top><a-leaf>1</a-leaf></top>");
    unsigned int length = 0;
    unsigned int error = 1;
    const char *const bytes = GpbXmlCompiler_Encode(plain, document.get(), &length, &error);
    const std::string result = bytes == nullptr ? "none" : std::string(bytes, length);
    GpbXmlCompiler_Destory(plain);
    return result;
}

TEST_F(RecordTest, ThePlanGoesWithItsImporter)
{
    writeProto("m", "syntax = 'proto3'; package m; message Top { int32 a_leaf = 1; }");
    EXPECT_EQ("\x08\x01", encodeLeaf(context()));
    GPBLIB_UnloadProtoFileAll(context(), 0);
    writeProto("m", "syntax = 'proto3'; package m; message Top { string other = 1; int32 a_leaf = 2; }");
    EXPECT_EQ("\x10\x01", encodeLeaf(context()));
    // An importer that is taken away from the outside leaves the source tree, and takes the plan all the same.
    GPBLIB_UnloadProtoFile(context(), "m");
    delete context()->pstImporter;
    context()->pstImporter = nullptr;
    writeProto("m", "syntax = 'proto3'; package m; message Top { int32 a_leaf = 3; }");
    EXPECT_EQ("\x18\x01", encodeLeaf(context()));
    // So does one that is replaced, though the new one may lie where the old one lay.
    GPBLIB_UnloadProtoFile(context(), "m");
    delete context()->pstImporter;
    context()->pstImporter = new google::protobuf::compiler::Importer(context()->pstSourceTree, nullptr);
    writeProto("m", "syntax = 'proto3'; package m; message Top { int32 a_leaf = 4; }");
    EXPECT_EQ("\x20\x01", encodeLeaf(context()));
}

TEST_F(RecordTest, ACompilerOverAnotherImporterHasAPlanOfItsOwn)
{
    writeProto("m", "syntax = 'proto3'; package m; message Top { int32 a_leaf = 1; }");
    EXPECT_EQ("\x08\x01", encodeLeaf(context()));
    google::protobuf::compiler::DiskSourceTree tree;
    const gpbtest::TempDirectory directory;
    directory.writeFile("m.proto", "syntax = 'proto3'; package m; message Top { int32 a_leaf = 9; }");
    tree.MapPath("", directory.path());
    google::protobuf::compiler::Importer importer(&tree, nullptr);
    for (void *const handle : {static_cast<void *>(context()), static_cast<void *>(nullptr)})
    {
        GpbXmlCompiler compiler(importer.Import("m.proto"), &importer, handle);
        const XmlDocument document("<top><a-leaf>1</a-leaf></top>");
        EXPECT_EQ(0u, compiler.Encode(document.get()));
        unsigned int length = 0;
        const char *const bytes = compiler.GetResult(&length);
        EXPECT_EQ("\x48\x01", bytes == nullptr ? "none" : std::string(bytes, length));
    }
}

} // namespace
