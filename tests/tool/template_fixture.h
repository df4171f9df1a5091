/** A work path with the small YANG module "t" and its .proto file, and `gpbtool template` run in it. */
#ifndef GPB_TESTS_TOOL_TEMPLATE_FIXTURE_H
#define GPB_TESTS_TOOL_TEMPLATE_FIXTURE_H

#include "tool_fixture.h"

namespace gpbtest
{

class TemplateTest : public ToolTest
{
protected:
    TemplateTest();

    /** Runs `gpbtool template SUBCOMMAND ARGUMENTS...`, with the work path for "build". */
    ProcessResult run(const std::string &subcommand, const std::vector<std::string> &arguments,
                      const std::string &input = "") const;

    /** Builds the template of a path of module "t" into that file below the test's directory. */
    ProcessResult build(const std::string &schemaPath, const std::string &file,
                        const std::vector<std::string> &more = {}) const;

    ProcessResult show(const std::vector<std::string> &arguments) const { return run("show", arguments); }
    ProcessResult diff(const std::vector<std::string> &arguments) const { return run("diff", arguments); }

    /** Writes yang/MODULE.yang with that body. */
    void writeYang(const std::string &module, const std::string &body) const;

    /** Puts bytes, given in hexadecimal, into a file; returns its path. */
    std::string writeHex(const std::string &relative, const std::string &digits) const;
};

} // namespace gpbtest

#endif
