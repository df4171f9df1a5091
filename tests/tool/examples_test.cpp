/** The example documents encode without losing a leaf, and are what their generator makes. */
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/dynamic_message.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <set>

#include "support/message_values.h"
#include "support/xml_document.h"
#include "tool_fixture.h"

namespace
{

namespace pb = google::protobuf;

/** Leaves whose text is a list of values. */
const std::set<std::string> kListLeaves = {"alarm-state", "supported-speed"};

/** Values in a document: texts of elements without elements in them, and empty elements. */
std::size_t countLeaves(const xmlNode &parent)
{
    std::size_t count = 0;
    for (const xmlNode *node = parent.children; node != nullptr; node = node->next)
    {
        if (node->type != XML_ELEMENT_NODE)
        {
            continue;
        }
        if (node->children == nullptr)
        {
            ++count;
        }
        else if (xmlChildElementCount(const_cast<xmlNode *>(node)) > 0)
        {
            count += countLeaves(*node);
        }
        else if (xmlIsBlankNode(node->children) == 0)
        {
            const std::string text = reinterpret_cast<const char *>(node->children->content);
            const bool isList = kListLeaves.count(reinterpret_cast<const char *>(node->name)) > 0;
            count += isList ? 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), ' ')) : 1;
        }
    }
    return count;
}

struct Example
{
    const char *module;
    const char *type;
    const char *size;
    std::size_t leastLeaves;
    std::size_t mostLeaves;
};

/** Names an example in lists of tests. */
void PrintTo(const Example &example, std::ostream *out)
{
    *out << example.module << " " << example.size;
}

class Examples : public gpbtest::ToolTest, public ::testing::WithParamInterface<Example>
{
};

TEST_P(Examples, KeepEveryLeaf)
{
    const Example &example = GetParam();
    const std::string document =
        std::string(EXAMPLES_DIR) + "documents/" + example.module + "/" + example.size + ".xml";
    const gpbtest::ProcessResult result = tool(
        "encode", {"--module", example.module, "--install-path", std::string(EXAMPLES_DIR) + "modules/", document});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");

    pb::compiler::DiskSourceTree tree;
    tree.MapPath("", std::string(EXAMPLES_DIR) + "modules");
    pb::compiler::Importer importer(&tree, nullptr);
    ASSERT_NE(importer.Import(std::string(example.module) + ".proto"), nullptr);
    pb::DynamicMessageFactory factory(importer.pool());
    const std::unique_ptr<pb::Message> message(
        factory.GetPrototype(importer.pool()->FindMessageTypeByName(example.type))->New());
    ASSERT_TRUE(message->ParseFromString(result.out));

    const gpbtest::XmlDocument xml(gpbtest::readFile(document));
    const std::size_t leaves = countLeaves(*xml.root());
    EXPECT_EQ(gpbtest::countValues(*message), leaves);
    EXPECT_GE(leaves, example.leastLeaves);
    EXPECT_LE(leaves, example.mostLeaves);
}

INSTANTIATE_TEST_SUITE_P(
    All, Examples,
    ::testing::Values(Example{"openconfig-telemetry", "openconfig_telemetry.TelemetrySystem", "small", 5, 50},
                      Example{"openconfig-telemetry", "openconfig_telemetry.TelemetrySystem", "medium", 200, 1000},
                      Example{"openconfig-telemetry", "openconfig_telemetry.TelemetrySystem", "large", 2000, 10000},
                      Example{"example-interfaces", "example_interfaces.Interfaces", "small", 5, 50},
                      Example{"example-interfaces", "example_interfaces.Interfaces", "medium", 200, 1000},
                      Example{"example-interfaces", "example_interfaces.Interfaces", "large", 2000, 10000}),
    [](const auto &tested)
    {
        std::string name = std::string(tested.param.module) + "_" + tested.param.size;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

using ExampleDetails = gpbtest::ToolTest;

TEST_F(ExampleDetails, IdentityValuesOfTheKnownLeavesNameTheirModule)
{
    const gpbtest::ProcessResult result =
        tool("encode", {"--module", "openconfig-telemetry", "--install-path", std::string(EXAMPLES_DIR) + "modules/",
                        "--text", std::string(EXAMPLES_DIR) + "documents/openconfig-telemetry/small.xml"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("          protocol: \"openconfig-telemetry-types:STREAM_GRPC\"\n"), std::string::npos);
    EXPECT_NE(result.out.find("        encoding: \"openconfig-telemetry-types:ENC_PROTO3\"\n"), std::string::npos);
    // A subscription's protocol is not one of them.
    EXPECT_NE(result.out.find("        protocol: \"oc-telemetry-types:STREAM_GRPC\"\n"), std::string::npos);
}

TEST_F(ExampleDetails, TheSmallInterfacesDocumentInFull)
{
    const gpbtest::ProcessResult result =
        tool("encode", {"--module", "example-interfaces", "--install-path", std::string(EXAMPLES_DIR) + "modules/",
                        "--text", std::string(EXAMPLES_DIR) + "documents/example-interfaces/small.xml"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "interface {\n"
                          "  name: \"eth0\"\n"
                          "  enabled: false\n"
                          "  speed: Speed_X_10G\n"
                          "  oper_status: OperStatus_UPX_2\n"
                          "  loopback: true\n"
                          "  mode3: Mode_SWITCHED\n"
                          "  mode_switched {\n"
                          "    bridge: \"br0\"\n"
                          "    tagging_single_tag {\n"
                          "      vlan_id: 7\n"
                          "    }\n"
                          "  }\n"
                          "  ptp {\n"
                          "  }\n"
                          "}\n");
}

TEST_F(ExampleDetails, DocumentsAreWhatTheGeneratorMakes)
{
    gpbtest::ProcessSetup process;
    process.program = PYTHON_PROGRAM;
    process.arguments = {std::string(EXAMPLES_DIR) + "documents/generate.py", path("made")};
    const gpbtest::ProcessResult result = gpbtest::runProcess(process);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    for (const char *module : {"openconfig-telemetry", "example-interfaces", "ietf-yang-library"})
    {
        for (const char *size : {"small", "medium", "large"})
        {
            for (const char *suffix : {".xml", ".json"})
            {
                const std::string name = std::string(module) + "/" + size + suffix;
                const std::string kept = std::string(EXAMPLES_DIR) + "documents/" + name;
                const std::string made = path("made/" + name);
                ASSERT_EQ(gpbtest::exists(made), gpbtest::exists(kept)) << name;
                EXPECT_TRUE(!gpbtest::exists(made) || gpbtest::readFile(made) == gpbtest::readFile(kept)) << name;
            }
        }
    }
}

} // namespace
