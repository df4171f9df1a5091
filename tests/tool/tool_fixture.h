/** A work path of its own with a small module, and the tool run in it. */
#ifndef GPB_TESTS_TOOL_TOOL_FIXTURE_H
#define GPB_TESTS_TOOL_TOOL_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "process.h"
#include "support/temp_directory.h"

namespace gpbtest
{

class ToolTest : public ::testing::Test
{
protected:
    /** Writes the module "m" to the work path: package "m", message "Top". */
    ToolTest();

    /** Runs `gpbtool COMMAND --work-path DIR ARGUMENTS...`. */
    ProcessResult tool(const std::string &command, const std::vector<std::string> &arguments) const;

    /** Runs `gpbtool encode` for module "m". */
    ProcessResult encode(const std::vector<std::string> &arguments) const;

    /** Writes a document and runs `gpbtool encode --module m --text` on it. */
    ProcessResult encodeText(const std::string &xml, const std::vector<std::string> &more = {}) const;

    /** The setup that the runners above use. */
    ProcessSetup setup(const std::string &command, const std::vector<std::string> &arguments) const;

    std::string path(const std::string &relative) const { return m_dir.path() + relative; }
    std::string write(const std::string &relative, const std::string &text) const
    {
        return m_dir.writeFile(relative, text);
    }

    /** Puts MODULE.proto into the work path's last place. */
    void writeModule(const std::string &module, const std::string &text) const;

    /** Names of what lies in a directory below the test's own, sorted. */
    std::vector<std::string> list(const std::string &relative) const;

    TempDirectory m_dir;
};

/** The content of a file; fails the test when it cannot be read. */
std::string readFile(const std::string &path);

bool exists(const std::string &path);

} // namespace gpbtest

#endif
