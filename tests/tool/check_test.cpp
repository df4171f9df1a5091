/** gpbtool check: what it prints and what it ends with. */
#include <gmock/gmock.h>

#include "yang_tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Check : public gpbtest::YangToolTest
{
protected:
    ProcessResult check(const std::vector<std::string> &more = {}) const { return runFor("check", more); }
};

TEST_F(Check, NotesAloneAreNoFailure)
{
    const ProcessResult result = check();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("note empty-text (kept with --lossless): The leaf may be empty. "));
    EXPECT_THAT(result.out, HasSubstr("\n  /m:top/b\nnote line-break (kept with --lossless): "));
    EXPECT_THAT(result.out, EndsWith("\n  /m:top/b\nm: no losses, 2 notes\n"));
    EXPECT_EQ(check({"--lossless"}).out, "m: no losses, no notes\n");
    EXPECT_EQ(check({"--losses"}).out, "m: no losses, 2 notes\n");
}

TEST_F(Check, LossesGiveSix)
{
    writeYang(
        "m",
        "container top { leaf a.b { type uint8; } anyxml x; leaf-list l { type uint8; } leaf-list n { type int8; } }");
    const std::string losses =
        "loss left-out (lost with --lossless, too): No message has a place for the "
        "node. It is left out of XML and refused in JSON.\n"
        "  /m:top/x: data without a schema has no fields\n"
        "loss dotted-name (kept with --lossless): The library never finds a name with a \".\", which no name in "
        "protobuf has. It leaves it out "
        "of XML and refuses it in JSON.\n"
        "  /m:top/a.b\n"
        "loss json-leaf-list (kept with --lossless): From JSON, the library takes arrays of enumeration values only. "
        "It passes over all others "
        "without a word.\n"
        "  /m:top/l\n"
        "  /m:top/n\n";
    const std::string notes = "note navigation: Functions that go by schema path look for the exact field name, and do "
                              "not find this one.\n"
                              "  /m:top/a.b\n";
    const std::string summary = "m: 4 losses (3 kept with --lossless), 1 note\n";
    const ProcessResult result = check();
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_EQ(result.out, losses + notes + summary);
    const ProcessResult only = check({"--losses"});
    EXPECT_EQ(only.exitCode, 6);
    EXPECT_EQ(only.out, losses + summary);
}

TEST_F(Check, WhatIsLeftWithTheLosslessSetting)
{
    writeYang("m", "container top { leaf a.b { type uint8; } anyxml x; leaf-list l { type uint8; } }");
    const ProcessResult left = check({"--lossless", "--losses"});
    EXPECT_EQ(left.exitCode, 6);
    EXPECT_EQ(left.out, "loss left-out: No message has a place for the node, which is left out.\n"
                        "  /m:top/x: data without a schema has no fields\n"
                        "m: 1 loss, 1 note\n");
    writeYang("m", "container top { leaf a.b { type uint8; } leaf-list l { type uint8; } }");
    EXPECT_EQ(check({"--lossless", "--losses"}).exitCode, 0);
    EXPECT_EQ(check({"--lossless", "--losses"}).out, "m: no losses, 1 note\n");
    EXPECT_THAT(check().out, EndsWith("m: 2 losses (all kept with --lossless), 1 note\n"));
    writeYang("m", "container top { anyxml x; }");
    EXPECT_THAT(check().out, EndsWith("m: 1 loss (none kept with --lossless), no notes\n"));
}

TEST_F(Check, NamespacesThatDoNotNameTheirModule)
{
    writeYang("z", "import m { prefix m; } augment /m:top { leaf a { type uint8; } }");
    EXPECT_EQ(check({"--augment", "z", "--lossless", "--losses"}).exitCode, 0);
    write("yang/z.yang", "module z { namespace \"urn:other\"; prefix z; import m { prefix m; } augment /m:top { leaf a "
                         "{ type uint8; } } }");
    const ProcessResult left = check({"--augment", "z", "--lossless", "--losses"});
    EXPECT_EQ(left.exitCode, 6);
    EXPECT_EQ(left.out, "loss shared-name: Several nodes have one name, and the namespace, which has to end in the "
                        "name of the module or the end of it, does not tell them apart.\n"
                        "  /m:top/z:a: goes to m.Top.a\n"
                        "  /m:top/a: gets what belongs to z:a\n"
                        "m: 2 losses, 1 note\n");
}

TEST_F(Check, AugmentsAndDecimalsCount)
{
    writeYang("z", "import m { prefix m; } augment /m:top { leaf a { type decimal64 { fraction-digits 1; } } }");
    EXPECT_THAT(check({"--augment", "z"}).out, HasSubstr("one node for another.\n  /m:top/z:a: goes to m.Top.a\n  "
                                                         "/m:top/a: gets what belongs to z:a\n"));
    EXPECT_THAT(check({"--augment", "z"}).out, EndsWith("m: 2 losses (all kept with --lossless), 4 notes\n"));
    EXPECT_THAT(check({"--augment", "z", "--decimals", "string"}).out,
                EndsWith("m: 2 losses (all kept with --lossless), 3 notes\n"));
}

TEST_F(Check, ModulesThatCannotBeChecked)
{
    EXPECT_EQ(run({"check"}).exitCode, 1);
    EXPECT_EQ(run({"check", "lost", "--yang-path", path("yang")}).exitCode, 2);
    writeYang("m", "typedef t { type string; }");
    const ProcessResult empty = check();
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_EQ(empty.out, "");
    EXPECT_THAT(empty.err, StartsWith("error: YANG module m has no container, list or notification of its own\n"));
    const std::string broken = writeYang("m", "container top {");
    EXPECT_THAT(check().err, HasSubstr("\n  " + broken + ":"));
}

TEST_F(Check, HelpHasItsOwnExitCodes)
{
    const ProcessResult result = run({"check", "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("6  encoding a valid document can lose or misplace data\n"));
}

} // namespace
