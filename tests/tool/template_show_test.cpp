#include <gmock/gmock.h>

#include "template_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/** A template with everything that views know: a described leaf, a case, and one node without description. */
constexpr const char *kEverything = "06 56 fe ff 1f 26 10 00 1a 03 74 6f 70 20 00 "
                                    "0e 0c 08 05 12 02 61 62 18 01 20 0d 28 03 "
                                    "0e 0d 08 00 12 03 6f 6e 65 18 02 20 0b 28 00 "
                                    "08 83 80 80 80 50 "
                                    "16 22 fe ff 1f 1b 10 09 1a 03 6f 6e 65 20 02 "
                                    "0e 10 08 06 12 06 22 0a 5c c3 a4 7c 18 01 20 0c 28 04 "
                                    "0a 01 7b "
                                    "18 07 ";

class TemplateShow : public gpbtest::TemplateTest
{
};

TEST_F(TemplateShow, ATree)
{
    const ProcessResult result = show({writeHex("t.bin", kEverything)});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "top                                                      class 0x0\n"
                          "|-- ab = 1                     uint32 repeated packable  field 5    3.5\n"
                          "|-- one = 2                    message case              class 0x9\n"
                          "|   `-- \\\"\\x0a\\\\\\xc3\\xa4| = 1  bytes key                 field 6    \"{\"\n"
                          "`-- ? = 3                      not described                        7.0\n");
}

TEST_F(TemplateShow, EveryByte)
{
    const ProcessResult result = show({writeHex("t.bin", kEverything), "--hex"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.out,
        "000000  06 56                                            template, 86 bytes\n"
        "000002  fe ff 1f 26                                        node attribute, 38 bytes\n"
        "000006  10 00                                                class id 0\n"
        "000008  1a 03 74 6f 70                                       name \"top\"\n"
        "00000d  20 00                                                flag 0\n"
        "00000f  0e 0c                                                field attribute, 12 bytes\n"
        "000011  08 05                                                  field id 5\n"
        "000013  12 02 61 62                                            field name \"ab\"\n"
        "000017  18 01                                                  field number 1\n"
        "000019  20 0d                                                  field type 13\n"
        "00001b  28 03                                                  field flag 3\n"
        "00001d  0e 0d                                                field attribute, 13 bytes\n"
        "00001f  08 00                                                  field id 0\n"
        "000021  12 03 6f 6e 65                                         field name \"one\"\n"
        "000026  18 02                                                  field number 2\n"
        "000028  20 0b                                                  field type 11\n"
        "00002a  28 00                                                  field flag 0\n"
        "00002c  08 83 80 80 80 50                                  field 1: 0x500000003\n"
        "000032  16 22                                              field 2, 34 bytes\n"
        "000034  fe ff 1f 1b                                          node attribute, 27 bytes\n"
        "000038  10 09                                                  class id 9\n"
        "00003a  1a 03 6f 6e 65                                         name \"one\"\n"
        "00003f  20 02                                                  flag 2\n"
        "000041  0e 10                                                  field attribute, 16 bytes\n"
        "000043  08 06                                                    field id 6\n"
        "000045  12 06 22 0a 5c c3 a4 7c                                  field name \"\\\"\\x0a\\\\\\xc3\\xa4|\"\n"
        "00004d  18 01                                                    field number 1\n"
        "00004f  20 0c                                                    field type 12\n"
        "000051  28 04                                                    field flag 4\n"
        "000053  0a 01 7b                                             field 1: \"{\"\n"
        "000056  18 07                                              field 3: 0x7\n");
}

TEST_F(TemplateShow, APicture)
{
    const ProcessResult result = show({writeHex("t.bin", kEverything), "--dot"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "digraph template {\n"
                          "  rankdir=LR;\n"
                          "  node [shape=record, fontname=monospace];\n"
                          "  n0 [label=\"{top\\nclass 0x0|ab = 1  uint32 repeated packable  field 5  3.5\\l? = 3  not "
                          "described  7.0\\l}\"];\n"
                          "  n1 [label=\"{one\\nmessage case\\nclass 0x9|\\\\\\\"\\\\x0a\\\\\\\\\\\\xc3\\\\xa4\\| = 1  "
                          "bytes key  field 6  \\\"\\{\\\"\\l}\"];\n"
                          "  n0 -> n1 [label=\"2\"];\n"
                          "}\n");
}

TEST_F(TemplateShow, StandardInput)
{
    const ProcessResult result = run("show", {"-"}, std::string("\x06\x00", 2));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "?\n");
}

TEST_F(TemplateShow, LongTextsRunOverSeveralLines)
{
    const std::string file = writeHex("t.bin", "06 14 0a 12 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e 6f 70 71 72 ");
    EXPECT_EQ(show({file, "--hex"}).out,
              "000000  06 14                                            template, 20 bytes\n"
              "000002  0a 12 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e    field 1: \"abcdefghijklmnopqr\"\n"
              "000012  6f 70 71 72\n");
}

TEST_F(TemplateShow, OneLongNameDoesNotWidenTheColumns)
{
    const std::string name(100, 'n');
    std::string bytes = "\x0a" + std::string(1, static_cast<char>(name.size())) + name + "\x10\x05";
    bytes = std::string("\x06") + static_cast<char>(bytes.size()) + bytes;
    EXPECT_EQ(show({write("t.bin", bytes)}).out, "?\n"
                                                 "|-- ? = 1  not described    \"" +
                                                     name +
                                                     "\"\n"
                                                     "`-- ? = 2  not described    5.0\n");
}

TEST_F(TemplateShow, TypesWithoutANameAreNumbers)
{
    const std::string file = writeHex("t.bin", "06 1f fe ff 1f 17 10 00 1a 01 61 20 07 "
                                               "0e 06 12 00 18 01 20 13 0e 06 12 00 18 02 20 00 08 00 10 00 ");
    EXPECT_EQ(show({file}).out, "a                  class 0x0\n"
                                "|--  = 1  type 19  field 0    0.0\n"
                                "`--  = 2  type 0   field 0    0.0\n");
}

TEST_F(TemplateShow, FieldsOfOneNumberTakeTheirDescriptionsInOrder)
{
    const std::string file = writeHex("t.bin", "06 21 fe ff 1f 19 10 00 1a 01 61 20 00 "
                                               "0e 07 12 01 78 18 01 20 0d 0e 07 12 01 79 18 01 20 05 08 01 08 02 ");
    EXPECT_EQ(show({file}).out, "a                  class 0x0\n"
                                "|-- x = 1  uint32  field 0    1.0\n"
                                "`-- y = 1  int32   field 0    2.0\n");
}

TEST_F(TemplateShow, WrongCommandLines)
{
    const std::string file = writeHex("t.bin", "06 00 ");
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{}, {file, file}, {file, "--hex", "--dot"}, {file, "--unknown"}})
    {
        const ProcessResult result = show(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(TemplateShow, AFileThatIsNotThere)
{
    const ProcessResult result = show({path("none.bin")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, StartsWith("error: " + path("none.bin") + ": cannot be read: No such file"));
}

TEST_F(TemplateShow, OutputThatCannotBeWritten)
{
    gpbtest::ProcessSetup process;
    process.program = "/bin/sh";
    process.arguments = {"-c", std::string(GPBTOOL_PROGRAM) + " template show " + writeHex("t.bin", "06 00 ") +
                                   " > /dev/full"};
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("error: standard output: cannot be written: No space left on device"));
}

} // namespace
