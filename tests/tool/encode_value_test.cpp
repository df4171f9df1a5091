/** Values and elements that do not fit are errors with their line; --lenient encodes the rest. */
#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::Not;

class EncodeValue : public gpbtest::ToolTest
{
protected:
    /** The finding that a document of one element in line 2 gives; an empty text for none. */
    std::string findingFor(const std::string &element) const
    {
        const ProcessResult result = encodeText("<top>\n" + element + "\n</top>");
        if (result.exitCode == 0)
        {
            EXPECT_EQ(result.err, "");
            return "";
        }
        EXPECT_EQ(result.exitCode, 6);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr("error: " + path("doc.xml") + ": 1 element of the document cannot"));
        const std::string place = "  " + path("doc.xml") + ":2: ";
        const std::size_t begin = result.err.find(place);
        if (begin == std::string::npos)
        {
            ADD_FAILURE() << result.err;
            return "";
        }
        const std::size_t textBegin = begin + place.size();
        return result.err.substr(textBegin, result.err.find('\n', textBegin) - textBegin);
    }
};

TEST_F(EncodeValue, NumbersAtTheirLimits)
{
    for (const char *element :
         {"<i32>-2147483648</i32>", "<i32>2147483647</i32>", "<u32>4294967295</u32>", "<i64>-9223372036854775808</i64>",
          "<i64>9223372036854775807</i64>", "<u64>18446744073709551615</u64>", "<u64>0</u64>", "<real>-1.5e3</real>",
          "<small-real>0.25</small-real>", "<flag>false</flag>", "<flag>true</flag>", "<flag/>", "<i32> 7 </i32>"})
    {
        EXPECT_EQ(findingFor(element), "") << element;
    }
}

TEST_F(EncodeValue, NumbersBeyondTheirLimits)
{
    EXPECT_EQ(findingFor("<i32>2147483648</i32>"), "<i32>: \"2147483648\" is no value of type int32");
    EXPECT_EQ(findingFor("<i32>-2147483649</i32>"), "<i32>: \"-2147483649\" is no value of type int32");
    EXPECT_EQ(findingFor("<u32>4294967296</u32>"), "<u32>: \"4294967296\" is no value of type uint32");
    EXPECT_EQ(findingFor("<u32>-1</u32>"), "<u32>: \"-1\" is no value of type uint32");
    EXPECT_EQ(findingFor("<i64>9223372036854775808</i64>"), "<i64>: \"9223372036854775808\" is no value of type int64");
    EXPECT_EQ(findingFor("<u64>18446744073709551616</u64>"),
              "<u64>: \"18446744073709551616\" is no value of type uint64");
}

TEST_F(EncodeValue, TextThatIsNoNumber)
{
    EXPECT_EQ(findingFor("<i32>abc</i32>"), "<i32>: \"abc\" is no value of type int32");
    EXPECT_EQ(findingFor("<i32>12abc</i32>"), "<i32>: \"12abc\" is no value of type int32");
    EXPECT_EQ(findingFor("<u64>0x1F</u64>"), "<u64>: \"0x1F\" is no value of type uint64");
    EXPECT_EQ(findingFor("<real>1.5.2</real>"), "<real>: \"1.5.2\" is no value of type double");
    EXPECT_EQ(findingFor("<small-real>none</small-real>"), "<small-real>: \"none\" is no value of type float");
    EXPECT_EQ(findingFor("<flag>FALSE</flag>"), "<flag>: \"FALSE\" is no value of type bool");
}

TEST_F(EncodeValue, Enumerations)
{
    EXPECT_EQ(findingFor("<color>red</color>"), "");
    EXPECT_EQ(findingFor("<color>up-2</color>"), "");
    EXPECT_EQ(findingFor("<colors>up-2 10g red</colors>"), "");
    EXPECT_EQ(findingFor("<color>blue</color>"), "<color>: \"blue\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("<colors>red blue</colors>"), "<colors>: \"blue\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("<colors>red  red</colors>"), "<colors>: \"\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("<color>red up-2</color>"), "<color>: \"red up-2\" are several values, the leaf takes one");
}

TEST_F(EncodeValue, HostileEnumerationTextIsCutAndPrintable)
{
    const std::string shown = "\"" + std::string(60, '!') + "...\"";
    EXPECT_EQ(findingFor("<color>" + std::string(127, '!') + "</color>"),
              "<color>: " + shown + " is no value of enumeration Color");
    EXPECT_EQ(findingFor("<color>" + std::string(100000, '!') + "</color>"),
              "<color>: " + shown + " is no value of enumeration Color");
    EXPECT_EQ(findingFor("<color>a&#x7f;b</color>"), "<color>: \"a?b\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("<color>a&#x9b;b</color>"), "<color>: \"a\xc2?b\" is no value of enumeration Color");
    EXPECT_EQ(findingFor("<color>a&#xe9;b</color>"), "<color>: \"a\xc3\xa9"
                                                     "b\" is no value of enumeration Color");
}

TEST_F(EncodeValue, ElementsWithoutAPlace)
{
    EXPECT_EQ(findingFor("<zz>1</zz>"), "<zz>: unknown in message m.Top");
    EXPECT_EQ(findingFor("<zz/>"), "<zz>: unknown in message m.Top");
    EXPECT_EQ(findingFor("<zz>\n</zz>"), "<zz>: unknown in message m.Top");
    EXPECT_EQ(findingFor("<zz><name>a</name><size>1</size></zz>"), "<zz>: unknown in message m.Top");
    EXPECT_EQ(findingFor("<" + std::string(128, 'n') + ">1</" + std::string(128, 'n') + ">"),
              "<" + std::string(128, 'n') + ">: unknown in message m.Top");
}

TEST_F(EncodeValue, ElementsOfTheWrongKind)
{
    EXPECT_EQ(findingFor("<name/>"), "<name>: empty, but the module wants a value of type string");
    EXPECT_EQ(findingFor("<presence/>"),
              "<presence>: an empty container or list entry needs a line break as its text to be encoded");
    EXPECT_EQ(findingFor("<name><size>1</size></name>"),
              "<name>: a leaf of type string in the module, but more than one text in the document");
    EXPECT_EQ(findingFor("<box>lost<name>a</name></box>"), "<box>: text beside elements is not encoded");
}

TEST_F(EncodeValue, LevelsAtTheLimitAndBeyond)
{
    const auto nested = [](int levels)
    {
        std::string text = "<name>x</name>";
        for (int i = 0; i < levels; ++i)
        {
            text = "<level>" + text + "</level>";
        }
        return text;
    };
    EXPECT_EQ(findingFor(nested(30)), "");
    EXPECT_EQ(findingFor(nested(31)), "<level>: nested deeper than 31 levels");
    EXPECT_EQ(findingFor(nested(200)), "<level>: nested deeper than 31 levels");
}

TEST_F(EncodeValue, TheLineIsThatOfTheElement)
{
    const ProcessResult result = encodeText("<top>\n<name>a</name>\n\n<box>\n<zz>1</zz></box>\n<yy>2</yy></top>");
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_EQ(result.err, "error: " + path("doc.xml") + ": 2 elements of the document cannot be encoded as given\n  " +
                              path("doc.xml") + ":5: <zz>: unknown in message m.Top.Box\n  " + path("doc.xml") +
                              ":6: <yy>: unknown in message m.Top\n" +
                              "  hint: correct them, or give --lenient to encode the rest; -v shows all\n");
}

TEST_F(EncodeValue, NothingIsWritten)
{
    const std::string document = write("doc.xml", "<top><name>a</name><zz>1</zz></top>");
    write("out/kept.gpb", "earlier");
    EXPECT_EQ(encode({document, "-o", path("out/kept.gpb")}).exitCode, 6);
    EXPECT_EQ(encode({document, "-o", path("out/new.gpb")}).exitCode, 6);
    EXPECT_EQ(list("out"), std::vector<std::string>{"kept.gpb"});
    EXPECT_EQ(gpbtest::readFile(path("out/kept.gpb")), "earlier");
}

TEST_F(EncodeValue, LenientEncodesTheRestAndCounts)
{
    const std::string document = "<top>\n<name>a</name><zz>1</zz>\n<yy/><i32>9</i32></top>";
    const ProcessResult result = encodeText(document, {"--lenient"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "name: \"a\"\ni32: 9\n");
    EXPECT_EQ(result.err, "warning: " + path("doc.xml") +
                              ": 2 elements skipped or with a value that does not fit, run with -v to see them\n");

    const ProcessResult verbose = encodeText(document, {"--lenient", "-v"});
    EXPECT_EQ(verbose.exitCode, 0);
    EXPECT_THAT(verbose.err, HasSubstr(path("doc.xml") + ":2: <zz>: unknown in message m.Top\n"));
    EXPECT_THAT(verbose.err, HasSubstr(path("doc.xml") + ":3: <yy>: unknown in message m.Top\n"));
    EXPECT_THAT(verbose.err, Not(HasSubstr("run with -v")));
}

TEST_F(EncodeValue, LongListsAreCutUnlessVerbose)
{
    std::string document = "<top>";
    for (int i = 0; i < 12; ++i)
    {
        document += "<zz>1</zz>";
    }
    document += "</top>";
    const ProcessResult result = encodeText(document);
    EXPECT_THAT(result.err, HasSubstr(": 12 elements of the document"));
    EXPECT_THAT(result.err, HasSubstr("\n  and 2 more\n"));
    EXPECT_THAT(encodeText(document, {"-v"}).err, Not(HasSubstr("more\n")));
}

} // namespace
