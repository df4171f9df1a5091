#include "tool_fixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace gpbtest
{

namespace
{

constexpr const char *kModule = R"(syntax = "proto3";
package m;
message Top {
    enum Color { Color_RED = 0; Color_UPX_2 = 1; Color_X_10G = 2; }
    message Box { string name = 1; optional int32 size = 2; }
    message Level { Level level = 1; string name = 2; }
    string name = 1;
    optional int32 i32 = 2;
    optional uint32 u32 = 3;
    optional int64 i64 = 4;
    optional uint64 u64 = 5;
    optional double real = 6;
    optional float small_real = 7;
    optional bool flag = 8;
    optional Color color = 9;
    repeated Color colors = 10;
    repeated Box box = 11;
    Box presence = 12;
    Level level = 13;
    bytes raw = 14;
}
)";

} // namespace

ToolTest::ToolTest()
{
    writeModule("m", kModule);
}

void ToolTest::writeModule(const std::string &module, const std::string &text) const
{
    m_dir.writeFile("reslink/protobuf/" + module + ".proto", text);
}

ProcessSetup ToolTest::setup(const std::string &command, const std::vector<std::string> &arguments) const
{
    ProcessSetup setup;
    setup.program = GPBTOOL_PROGRAM;
    setup.arguments = {command, "--work-path", m_dir.path()};
    setup.arguments.insert(setup.arguments.end(), arguments.begin(), arguments.end());
    return setup;
}

ProcessResult ToolTest::tool(const std::string &command, const std::vector<std::string> &arguments) const
{
    return runProcess(setup(command, arguments));
}

ProcessResult ToolTest::encode(const std::vector<std::string> &arguments) const
{
    std::vector<std::string> all = {"--module", "m"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return tool("encode", all);
}

ProcessResult ToolTest::encodeText(const std::string &xml, const std::vector<std::string> &more) const
{
    std::vector<std::string> arguments = {"--text", write("doc.xml", xml)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return encode(arguments);
}

std::vector<std::string> ToolTest::list(const std::string &relative) const
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(path(relative)))
    {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

bool exists(const std::string &path)
{
    return std::filesystem::exists(path);
}

} // namespace gpbtest
