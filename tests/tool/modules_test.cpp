#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using gpbtest::ProcessResult;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;

constexpr const char *kGood = "syntax = 'proto3'; package x; message Top { string name = 1; }";

class Modules : public gpbtest::ToolTest
{
};

TEST_F(Modules, TableInSearchOrderWithShadowedOnes)
{
    write("install/m.proto", kGood);
    write("patch/m.proto", "syntax = 'proto3'; broken");
    write("patch/p.proto", "syntax = 'proto3'; package p; message Top { string name = 1; }");
    write("patch/notes.txt", "no module");
    m_dir.makeDirectory("patch/dir.proto");
    const ProcessResult result = tool("modules", {"--install-path", path("install"), "--patch-dir", "patch"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    const std::size_t width = path("reslink/protobuf/ (reslink)").size();
    const auto line = [&](const std::string &module, const std::string &place, const std::string &status)
    {
        return module + std::string(8 - module.size(), ' ') + place + std::string(width + 2 - place.size(), ' ') +
               status + "\n";
    };
    EXPECT_EQ(result.out, line("MODULE", "PLACE", "STATUS") + line("m", path("install/ (install path)"), "loads") +
                              line("m", path("patch/ (patch dir)"), "shadowed by " + path("install/")) +
                              line("p", path("patch/ (patch dir)"), "loads") +
                              line("m", path("reslink/protobuf/ (reslink)"), "shadowed by " + path("install/")));
}

TEST_F(Modules, WhyAModuleDoesNotLoad)
{
    writeModule("bad", "syntax = \"proto3\";\nmessage Top {\n  strin name 1;\n}\n");
    writeModule("lost", "syntax = \"proto3\";\nimport \"nowhere.proto\";\n");
    const ProcessResult result = tool("modules", {});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, ContainsRegex("bad +[^ ]+ \\(reslink\\) +does not load: bad\\.proto:3:[0-9]+: "));
    EXPECT_THAT(result.out,
                ContainsRegex("lost +[^ ]+ \\(reslink\\) +does not load: nowhere\\.proto: .*\\(and 1 more\\)"));
    EXPECT_THAT(result.out, ContainsRegex("\nm +[^ ]+ \\(reslink\\) +loads\n"));
}

TEST_F(Modules, ImportsAreFoundAcrossPlaces)
{
    write("install/common.proto", "syntax = 'proto3'; package common; message C { string c = 1; }");
    writeModule("user", "syntax = 'proto3'; package user; import 'common.proto'; message Top { common.C c = 1; }");
    EXPECT_EQ(tool("modules", {"--install-path", path("install")}).exitCode, 0);
    EXPECT_EQ(tool("modules", {}).exitCode, 2);
}

TEST_F(Modules, NothingThere)
{
    gpbtest::ProcessSetup process;
    process.program = GPBTOOL_PROGRAM;
    process.arguments = {"modules", "--work-path", m_dir.makeDirectory("empty")};
    const ProcessResult result = gpbtest::runProcess(process);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "error: no modules in the search path\n"
                          "  hint: name directories that hold .proto files with --work-path or --install-path\n");
}

} // namespace
