/** A module with every kind of node that JSON treats in its own way, and the tool run on JSON documents of it. */
#ifndef GPB_TESTS_TOOL_JSON_FIXTURE_H
#define GPB_TESTS_TOOL_JSON_FIXTURE_H

#include "tool_fixture.h"

namespace gpbtest
{

class JsonToolTest : public ToolTest
{
protected:
    /** Writes the module "j" to the work path: package "j", message "Top". */
    JsonToolTest();

    /** Writes doc.json and runs `gpbtool encode --module j --text` on it. */
    ProcessResult encodeJson(const std::string &json, const std::vector<std::string> &more = {}) const;

    /** As encodeJson, for the members of the container "top". */
    ProcessResult encodeMembers(const std::string &members, const std::vector<std::string> &more = {}) const
    {
        return encodeJson("{\"top\":{\n" + members + "\n}}", more);
    }

    /** Runs another subcommand for module "j" on a document. */
    ProcessResult run(const std::string &command, const std::string &document,
                      const std::vector<std::string> &more = {}) const;
};

} // namespace gpbtest

#endif
