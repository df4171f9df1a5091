#include "template_fixture.h"

namespace gpbtest
{

namespace
{

constexpr const char *kYang = R"(
    container top {
        leaf label { type string; }
        list row {
            key k;
            leaf k { type string; }
            leaf num { type int32; }
            leaf-list many { type uint32; }
            choice way { case one { leaf x-y { type boolean; } } case two { leaf z { type string; } } }
            container inner { leaf deep { type uint64; } leaf real { type decimal64 { fraction-digits 1; } }
                leaf lost { type string; } }
        }
    })";

constexpr const char *kProto = R"(syntax = "proto3";
package t;
message Top {
    message Row {
        message One { bool x_y = 1; }
        message Two { bytes z = 1; }
        message Inner { uint64 deep = 1; double real = 2; }
        string k = 1;
        int32 num = 2;
        repeated uint32 many = 3;
        oneof way { One way_one = 20; Two way_two = 21; }
        Inner inner = 6;
    }
    string label = 1;
    repeated Row row = 2;
}
)";

} // namespace

TemplateTest::TemplateTest()
{
    writeYang("t", kYang);
    writeModule("t", kProto);
}

ProcessResult TemplateTest::run(const std::string &subcommand, const std::vector<std::string> &arguments,
                                const std::string &input) const
{
    ProcessSetup process;
    process.program = GPBTOOL_PROGRAM;
    process.arguments = {"template", subcommand};
    if (subcommand == "build")
    {
        process.arguments.insert(process.arguments.end(), {"--work-path", m_dir.path()});
    }
    process.arguments.insert(process.arguments.end(), arguments.begin(), arguments.end());
    process.input = input;
    return runProcess(process);
}

ProcessResult TemplateTest::build(const std::string &schemaPath, const std::string &file,
                                  const std::vector<std::string> &more) const
{
    std::vector<std::string> arguments = {"--yang-path", path("yang"), "--module", "t",
                                          "--path",      schemaPath,   "-o",       path(file)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run("build", arguments);
}

void TemplateTest::writeYang(const std::string &module, const std::string &body) const
{
    write("yang/" + module + ".yang",
          "module " + module + " { namespace \"urn:" + module + "\"; prefix " + module + ";" + body + "\n}\n");
}

std::string TemplateTest::writeHex(const std::string &relative, const std::string &digits) const
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 3)
    {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return write(relative, bytes);
}

} // namespace gpbtest
