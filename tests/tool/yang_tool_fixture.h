/** Subcommands of the tool that read YANG modules, with a small module "m". */
#ifndef GPB_TESTS_TOOL_YANG_TOOL_FIXTURE_H
#define GPB_TESTS_TOOL_YANG_TOOL_FIXTURE_H

#include <string>
#include <vector>

#include "tool_fixture.h"

namespace gpbtest
{

class YangToolTest : public ToolTest
{
protected:
    static constexpr const char *kBody = "container top { leaf a { type uint8; } leaf b { type string; } }";

    YangToolTest() { writeYang("m", kBody); }

    /** Writes yang/MODULE.yang with that body from its second line on; returns its path. */
    std::string writeYang(const std::string &module, const std::string &body) const
    {
        return write("yang/" + module + ".yang", "module " + module + " { namespace \"urn:" + module + "\"; prefix " +
                                                     module + ";\n" + body + "\n}\n");
    }

    static ProcessResult run(const std::vector<std::string> &arguments)
    {
        ProcessSetup setup;
        setup.program = GPBTOOL_PROGRAM;
        setup.arguments = arguments;
        return runProcess(setup);
    }

    /** Runs a subcommand for the module "m". */
    ProcessResult runFor(const std::string &command, const std::vector<std::string> &more) const
    {
        std::vector<std::string> arguments = {command, "m", "--yang-path", path("yang")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
};

} // namespace gpbtest

#endif
