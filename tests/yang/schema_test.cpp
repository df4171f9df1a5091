#include <gmock/gmock.h>

#include "yang_fixture.h"

namespace
{

using gpbtest::errorOf;
using gpbyang::Fault;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class SchemaLoading : public gpbtest::YangTest
{
protected:
    std::string failure(const std::string &module) const
    {
        testing::internal::CaptureStderr();
        const auto [fault, text] = errorOf([&] { schema(module); });
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(fault, Fault::Module);
        EXPECT_THAT(text, StartsWith("YANG module " + module + " does not load\n  "));
        return text;
    }
};

TEST_F(SchemaLoading, AModuleThatIsNotThere)
{
    workDirectory().makeDirectory("yang");
    EXPECT_THAT(failure("nowhere"), HasSubstr("\n  no nowhere.yang in " + workPath() + "yang\n"));
}

TEST_F(SchemaLoading, ASyntaxErrorHasFileAndLine)
{
    const std::string path = writeModule("m", "container top {\n  leaf a { typ string; }\n}");
    EXPECT_THAT(failure("m"), HasSubstr("\n  " + path + ":3: "));
}

TEST_F(SchemaLoading, ASyntaxErrorInAnImportHasTheImportsFile)
{
    const std::string path = writeModule("base", "\n\ncontainer {");
    writeModule("m", "import base { prefix b; }");
    EXPECT_THAT(failure("m"), HasSubstr("\n  " + path + ":4: "));
}

TEST_F(SchemaLoading, ASyntaxErrorInASubmoduleHasTheSubmodulesFile)
{
    const std::string path = workDirectory().writeFile(
        "yang/part.yang", "submodule part { belongs-to m { prefix m; }\n  leaf a { oops; } }");
    writeModule("m", "include part;");
    EXPECT_THAT(failure("m"), HasSubstr("\n  " + path + ":2: "));
}

TEST_F(SchemaLoading, AMissingImportIsNamed)
{
    writeModule("m", "import lost { prefix l; }");
    EXPECT_THAT(failure("m"), HasSubstr("\n  no lost.yang in " + workPath() + "yang\n"));
}

TEST_F(SchemaLoading, WhatLibyangHasItselfIsNotMissed)
{
    writeModule("m", "import ietf-yang-types { prefix yt; } container top { leaf a { typ string; } }");
    EXPECT_THAT(failure("m"), testing::Not(HasSubstr("no ietf-yang-types")));
    writeModule("good", "import ietf-yang-types { prefix yt; } container top { leaf a { type yt:counter32; } }");
    schema("good");
}

TEST_F(SchemaLoading, AnErrorOfMeaningHasFileAndSchemaPath)
{
    const std::string path = writeModule("m", "container top { leaf a { type nothing; } }");
    const std::string text = failure("m");
    EXPECT_THAT(text, HasSubstr("\n  " + path + ": "));
    EXPECT_THAT(text, HasSubstr(" (at /m:top/a)"));
}

TEST_F(SchemaLoading, WhatIsNoYang)
{
    workDirectory().writeFile("yang/m.yang", std::string("\x00\xff\x01 no yang", 11));
    failure("m");
    workDirectory().writeFile("yang/m.yang", "");
    failure("m");
    workDirectory().writeFile("yang/m.yang", "module other { namespace \"urn:o\"; prefix o; }");
    failure("m");
}

TEST_F(SchemaLoading, ADirectoryThatIsNone)
{
    const auto [fault, text] = errorOf([&] { gpbyang::Schema({workPath() + "none"}, "m"); });
    EXPECT_EQ(fault, Fault::Module);
    EXPECT_EQ(text, workPath() + "none is not a directory");
}

TEST_F(SchemaLoading, DirectoriesAreSearchedInTheirOrderAndNowhereElse)
{
    const std::string first = workDirectory().makeDirectory("first");
    const std::string second = workDirectory().makeDirectory("second");
    const auto body = [](const std::string &top)
    { return "module m { namespace \"urn:m\"; prefix m; container " + top + " { } }"; };
    workDirectory().writeFile("second/m.yang", body("two"));
    EXPECT_EQ(gpbyang::PathOf(*gpbyang::RecordTree(gpbyang::Schema({first, second}, "m"), kModuleId).Nodes()[0]),
              "/two");
    workDirectory().writeFile("first/m.yang", body("one"));
    EXPECT_EQ(gpbyang::PathOf(*gpbyang::RecordTree(gpbyang::Schema({first, second}, "m"), kModuleId).Nodes()[0]),
              "/one");
    // A directory that is named twice is searched once.
    gpbyang::Schema({second, second}, "m");
    errorOf([&] { gpbyang::Schema({}, "m"); });
}

TEST_F(SchemaLoading, MessagesOfAnEarlierLoadAreNotRepeated)
{
    writeModule("bad", "container {");
    failure("bad");
    writeModule("m", "import lost { prefix l; }");
    EXPECT_THAT(failure("m"), testing::Not(HasSubstr("bad")));
}

} // namespace
