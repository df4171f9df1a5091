/**
 * The example documents and their JSON twins: both give the same message, except for what this file lists.
 *
 * - Leaf-lists other than those of enumerations are not encoded from JSON.
 * - An identity keeps its prefix in XML, unless its leaf is one whose identities name their module; JSON names the
 *   module everywhere.
 * - Integers of more than 14 digits must be texts in JSON; as numbers they are cut.
 */
#include <cjson/cJSON.h>
#include <gmock/gmock.h>
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/util/message_differencer.h>

#include <algorithm>
#include <ostream>

#include "tool_fixture.h"

namespace
{

namespace pb = google::protobuf;
using gpbtest::ProcessResult;

struct Twin
{
    const char *module;
    const char *type;
    const char *size;
    int lostValues;   /**< values of leaf-lists that JSON does not get into the message */
    int keptPrefixes; /**< identities that keep their prefix in XML */
    int findings;     /**< what the tool finds in the JSON twin */
    bool sameFromXml; /**< the library makes this very twin of the XML document */
};

/** Names a twin in lists of tests. */
void PrintTo(const Twin &twin, std::ostream *out)
{
    *out << twin.module << " " << twin.size;
}

std::string nameOf(const ::testing::TestParamInfo<Twin> &tested)
{
    std::string name = std::string(tested.param.module) + "_" + tested.param.size;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

using Tree = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

class JsonTwins : public gpbtest::ToolTest, public ::testing::WithParamInterface<Twin>
{
protected:
    JsonTwins()
    {
        m_tree.MapPath("", std::string(EXAMPLES_DIR) + "modules");
        m_importer.Import(std::string(GetParam().module) + ".proto");
    }

    static std::string document(const std::string &suffix)
    {
        return std::string(EXAMPLES_DIR) + "documents/" + GetParam().module + "/" + GetParam().size + suffix;
    }

    ProcessResult runTool(const std::string &command, const std::string &file, std::vector<std::string> more = {}) const
    {
        more.insert(more.begin(),
                    {"--module", GetParam().module, "--install-path", std::string(EXAMPLES_DIR) + "modules/", file});
        return tool(command, more);
    }

    std::unique_ptr<pb::Message> encoded(const std::string &file, const std::vector<std::string> &more = {})
    {
        const ProcessResult result = runTool("encode", file, more);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::unique_ptr<pb::Message> message(
            m_factory.GetPrototype(m_importer.pool()->FindMessageTypeByName(GetParam().type))->New());
        EXPECT_TRUE(message->ParseFromString(result.out));
        return message;
    }

    pb::compiler::DiskSourceTree m_tree;
    pb::compiler::Importer m_importer{&m_tree, nullptr};
    pb::DynamicMessageFactory m_factory{m_importer.pool()};
};

/** Calls `visit` for a message and all below it. */
template <typename Visit>
void forEachMessage(pb::Message &message, const Visit &visit)
{
    visit(message);
    std::vector<const pb::FieldDescriptor *> fields;
    message.GetReflection()->ListFields(message, &fields);
    for (const pb::FieldDescriptor *field : fields)
    {
        if (field->cpp_type() != pb::FieldDescriptor::CPPTYPE_MESSAGE)
        {
            continue;
        }
        const int size = field->is_repeated() ? message.GetReflection()->FieldSize(message, field) : 0;
        for (int i = 0; i < size; ++i)
        {
            forEachMessage(*message.GetReflection()->MutableRepeatedMessage(&message, field, i), visit);
        }
        if (!field->is_repeated())
        {
            forEachMessage(*message.GetReflection()->MutableMessage(&message, field), visit);
        }
    }
}

/** Takes the values of leaf-lists that JSON does not encode out of a message; how many there were. */
int removeLeafLists(pb::Message &top)
{
    int removed = 0;
    forEachMessage(top,
                   [&](pb::Message &message)
                   {
                       for (int i = 0; i < message.GetDescriptor()->field_count(); ++i)
                       {
                           const pb::FieldDescriptor *field = message.GetDescriptor()->field(i);
                           if (field->is_repeated() && field->message_type() == nullptr &&
                               field->enum_type() == nullptr)
                           {
                               removed += message.GetReflection()->FieldSize(message, field);
                               message.GetReflection()->ClearField(&message, field);
                           }
                       }
                   });
    return removed;
}

/** Gives the identities with a prefix the name of their module; how many there were. */
int nameModules(pb::Message &top)
{
    const std::string prefix = "oc-telemetry-types:";
    int renamed = 0;
    forEachMessage(top,
                   [&](pb::Message &message)
                   {
                       const pb::FieldDescriptor *field = message.GetDescriptor()->FindFieldByName("protocol");
                       const pb::Reflection &reflection = *message.GetReflection();
                       if (field != nullptr && reflection.GetString(message, field).compare(0, 19, prefix) == 0)
                       {
                           const std::string value = reflection.GetString(message, field).substr(prefix.size());
                           reflection.SetString(&message, field, "openconfig-telemetry-types:" + value);
                           ++renamed;
                       }
                   });
    return renamed;
}

TEST_P(JsonTwins, GiveTheSameMessageExceptForWhatIsListed)
{
    const std::unique_ptr<pb::Message> fromXml = encoded(document(".xml"));
    const std::unique_ptr<pb::Message> fromJson = encoded(document(".json"), {"--lenient"});
    EXPECT_EQ(removeLeafLists(*fromXml), GetParam().lostValues);
    EXPECT_EQ(nameModules(*fromXml), GetParam().keptPrefixes);
    pb::util::MessageDifferencer differencer;
    std::string differences;
    differencer.ReportDifferencesToString(&differences);
    EXPECT_TRUE(differencer.Compare(*fromXml, *fromJson)) << differences;
}

TEST_P(JsonTwins, TheToolFindsEachLeafListThatIsNotEncoded)
{
    const ProcessResult result = runTool("encode", document(".json"));
    EXPECT_EQ(result.exitCode, GetParam().findings == 0 ? 0 : 6) << result.err;
    if (GetParam().findings > 0)
    {
        EXPECT_THAT(result.err, ::testing::HasSubstr(": " + std::to_string(GetParam().findings) +
                                                     " values of the document cannot be encoded as given\n"));
        const ProcessResult verbose = runTool("encode", document(".json"), {"-v"});
        std::size_t listed = 0;
        for (std::size_t at = verbose.err.find(": of leaf-lists only"); at != std::string::npos;
             at = verbose.err.find(": of leaf-lists only", at + 1))
        {
            ++listed;
        }
        EXPECT_EQ(listed, static_cast<std::size_t>(GetParam().findings));
    }
}

TEST_P(JsonTwins, XmlToJsonGivesTheTwinWhereNoListLiesInAnother)
{
    const ProcessResult strict = runTool("json", document(".xml"));
    EXPECT_EQ(strict.exitCode, GetParam().sameFromXml ? 0 : 6);
    const ProcessResult made = runTool("json", document(".xml"), {"--lenient"});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    std::string twin = gpbtest::readFile(document(".json"));
    if (GetParam().sameFromXml && GetParam().keptPrefixes > 0)
    {
        // The one identity of the small document that keeps its prefix: the first protocol below "subscriptions".
        const std::size_t subscriptions = twin.find("\"subscriptions\"");
        const std::size_t at = twin.find("openconfig-telemetry-types:STREAM_GRPC", subscriptions);
        ASSERT_NE(at, std::string::npos);
        twin.replace(at, 26, "oc-telemetry-types");
    }
    const Tree expected(cJSON_Parse(twin.c_str()), &cJSON_Delete);
    const Tree tree(cJSON_Parse(made.out.c_str()), &cJSON_Delete);
    EXPECT_EQ(cJSON_Compare(expected.get(), tree.get(), 1) != 0, GetParam().sameFromXml);
}

INSTANTIATE_TEST_SUITE_P(
    All, JsonTwins,
    ::testing::Values(Twin{"openconfig-telemetry", "openconfig_telemetry.TelemetrySystem", "small", 0, 1, 0, true},
                      Twin{"openconfig-telemetry", "openconfig_telemetry.TelemetrySystem", "medium", 0, 10, 0, false},
                      Twin{"example-interfaces", "example_interfaces.Interfaces", "small", 0, 0, 0, true},
                      Twin{"example-interfaces", "example_interfaces.Interfaces", "medium", 92, 0, 44, false}),
    nameOf);

/** A leaf in both formats, where the two go apart. */
class JsonTwinValues : public gpbtest::ToolTest
{
protected:
    ProcessResult fromXml(const std::string &element) const
    {
        return encode({"--text", "--lenient", write("v.xml", "<top>" + element + "</top>")});
    }
    ProcessResult fromJson(const std::string &member) const
    {
        return encode({"--text", "--lenient", write("v.json", "{\"top\":{" + member + "}}")});
    }
};

TEST_F(JsonTwinValues, Integers64AreExactAsTextsOnly)
{
    EXPECT_EQ(fromXml("<u64>9007199254740993</u64>").out, "u64: 9007199254740993\n");
    EXPECT_EQ(fromJson("\"u64\":\"9007199254740993\"").out, "u64: 9007199254740993\n");
    EXPECT_EQ(fromJson("\"u64\":9007199254740993").out, "u64: 9\n");
    EXPECT_EQ(fromJson("\"u64\":99999999999999").out, "u64: 99999999999999\n");
    EXPECT_EQ(fromJson("\"i64\":-100000000000000").out, "i64: -1\n");
}

TEST_F(JsonTwinValues, NumbersMadeFromXmlDoNotAllComeBack)
{
    const std::string xml = write("n.xml", "<top><u64>100000000000000</u64></top>");
    ASSERT_EQ(tool("json", {"--module", "m", "--numbers64", xml, "-o", path("n.json")}).exitCode, 0);
    EXPECT_EQ(gpbtest::readFile(path("n.json")), "{\"top\":{\"u64\":100000000000000}}\n");
    EXPECT_EQ(encode({"--text", path("n.json")}).exitCode, 6);
    ASSERT_EQ(tool("json", {"--module", "m", xml, "-o", path("n.json")}).exitCode, 0);
    EXPECT_EQ(encode({"--text", path("n.json")}).out, "u64: 100000000000000\n");
}

TEST_F(JsonTwinValues, EnumerationsAreOneTextInXmlAndAnArrayOrOneTextInJson)
{
    const std::string both = "colors: Color_UPX_2\ncolors: Color_X_10G\n";
    EXPECT_EQ(fromXml("<colors>up-2 10g</colors>").out, both);
    EXPECT_EQ(fromXml("<colors>up-2</colors><colors>10g</colors>").out, both);
    EXPECT_EQ(fromJson("\"colors\":[\"up-2\",\"10g\"]").out, both);
    EXPECT_EQ(fromJson("\"colors\":\"up-2 10g\"").out, both);
    EXPECT_EQ(fromJson("\"colors\":[\"up-2 10g\"]").out, both);
    EXPECT_EQ(fromXml("<color>blue</color><i32>1</i32>").out, "i32: 1\n");
    EXPECT_EQ(fromJson("\"color\":\"blue\",\"i32\":1").out, "i32: 1\n");
}

TEST_F(JsonTwinValues, EmptyLeaves)
{
    EXPECT_EQ(fromXml("<flag/>").out, "flag: true\n");
    EXPECT_EQ(fromJson("\"flag\":null").out, "flag: true\n");
    EXPECT_EQ(fromJson("\"flag\":true").out, "flag: true\n");
    EXPECT_EQ(fromXml("<presence>\n</presence>").out, "presence {\n}\n");
    EXPECT_EQ(fromJson("\"presence\":{}").out, "presence {\n}\n");
}

TEST_F(JsonTwinValues, ContainersThatStandTwiceAreMergedInXmlAndRefusedInJson)
{
    EXPECT_EQ(fromXml("<presence><name>a</name></presence><presence><size>1</size></presence>").out,
              "presence {\n  name: \"a\"\n  size: 1\n}\n");
    EXPECT_EQ(fromJson("\"presence\":{\"name\":\"a\"},\"presence\":{\"size\":1}").exitCode, 3);
}

} // namespace
