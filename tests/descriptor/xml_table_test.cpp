/** The two fixed tables: identity leaves and leaves of a bits type. */
#include <string>

#include "descriptor/xml_nesting.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "support/platform_fixture.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::XmlNesting;

constexpr char kDestination[] = "telemetry-system/destination-groups/destination-group/destinations/destination";
constexpr char kSubscription[] = "telemetry-system/subscriptions/persistent/subscription";
constexpr size_t kMaxElements = 32;
constexpr size_t kMaxPath = 255;

struct IdentityRow
{
    const char *leaf;
    const char *path;
    const char *prefix;
    const char *module;
};

const IdentityRow kIdentityRows[] = {
    {"protocol", kDestination, "zm-telemetry-ext", "zelmor-openconfig-telemetry-ext"},
    {"protocol", kDestination, "oc-telemetry-types", "openconfig-telemetry-types"},
    {"encoding", kSubscription, "oc-telemetry-types", "openconfig-telemetry-types"},
};

struct BitsRow
{
    const char *leaf;
    const char *path;
};

const BitsRow kBitsRows[] = {
    {"day-of-week", "time-range/time-range-instances/time-range-instance/period-ranges/period-range"},
    {"route-type", "bgp/base-process/bgp-route"},
    {"external-flags", "bgp/base-process/bgp-route"},
    {"prefix-igp-flags", "bier/prefixs/prefix"},
    {"prefix-sd-flags", "bier/prefixs/prefix"},
    {"invalid-reason", "bier/prefixs/prefix/encapsulation-infos/invalid-encapsulations/invalid-encapsulation"},
    {"route-type-flag", "evpn/instances/instance"},
    {"control-flag-bit", "l2vpn/instances/instance"},
    {"send-trap-bits", "nqa/instances/instance"},
    {"sys-service", "system/system-info"},
    {"severity-mask", "syslog/servers"},
    {"facility-mask", "syslog/servers"},
    {"alarm-state", "hardware/component"},
    {"access-operations", "nacm/rule-list/list"},
    {"permit-no-tls", "grpc/service"},
    {"permit-no-tls", "grpc/service-ipv6"},
};

std::string join(const std::string &path, const std::string &leaf)
{
    return path + "/" + leaf;
}

class IdentityTable : public gpbtest::PlatformFixture
{
protected:
    /** The module of a leaf and its value; "(none)" for the result 1, the out argument being untouched then. */
    static std::string moduleOf(const std::string &path, const std::string &value)
    {
        const XmlNesting nesting(path);
        const char *module = "untouched";
        const uint32_t result = GPB_GetXmlNodeLeafIdtType(nesting.leaf(), value.c_str(), &module);
        EXPECT_EQ(result, GPB_GetXmlNodeLeafIdtType(nesting.leaf(), value.c_str(), nullptr));
        if (result != 0)
        {
            EXPECT_EQ(1u, result);
            EXPECT_STREQ("untouched", module);
            return "(none)";
        }
        return module;
    }
};

class BitsTable : public gpbtest::PlatformFixture
{
protected:
    static uint32_t lookUp(const std::string &path) { return GPB_GetXmlNodeLeafBitsType(XmlNesting(path).leaf()); }
};

TEST_F(IdentityTable, FindsEveryRow)
{
    for (const IdentityRow &row : kIdentityRows)
    {
        const std::string value = std::string(row.prefix) + ":X";
        EXPECT_EQ(row.module, moduleOf(join(row.path, row.leaf), value)) << value;
        EXPECT_EQ(row.module, moduleOf("config/" + join(row.path, row.leaf), value)) << value;
        EXPECT_EQ(row.module, moduleOf(join(row.path, "config/") + row.leaf, value)) << value;
        EXPECT_EQ("(none)", moduleOf(join(row.path, row.leaf) + "s", value)) << value;
        EXPECT_EQ("(none)", moduleOf(join(std::string(row.path).substr(1), row.leaf), value)) << value;
        EXPECT_EQ("(none)", moduleOf(row.leaf, value)) << value;
        EXPECT_EQ("(none)", moduleOf(join(row.path, row.leaf), "other:X"));
    }
    EXPECT_EQ("(none)", moduleOf(join(kSubscription, "encoding"), "zm-telemetry-ext:X")) << "no row of that pair";
    EXPECT_EQ("(none)", moduleOf(join(kSubscription, "protocol"), "oc-telemetry-types:X"));
    EXPECT_EQ("(none)", moduleOf(join(kDestination, "encoding"), "oc-telemetry-types:X"));
    EXPECT_EQ("(none)", moduleOf(join(kDestination, "Protocol"), "oc-telemetry-types:X"));
}

TEST_F(IdentityTable, FindsFragmentAndPrefixAnywhere)
{
    EXPECT_EQ("openconfig-telemetry-types", moduleOf(join(kDestination, "protocol"), "oc-telemetry-types"));
    EXPECT_EQ("openconfig-telemetry-types", moduleOf(join(kDestination, "protocol"), "a:b-oc-telemetry-types-c"));
    EXPECT_EQ("openconfig-telemetry-types",
              moduleOf("my-" + std::string(kSubscription) + "s/encoding", "oc-telemetry-types:X"));
}

TEST_F(IdentityTable, TakesTheFirstRowThatFits)
{
    EXPECT_EQ("zelmor-openconfig-telemetry-ext",
              moduleOf(join(kDestination, "protocol"), "oc-telemetry-types:zm-telemetry-ext"));
}

TEST_F(IdentityTable, NeedsElementAndValue)
{
    const XmlNesting nesting(join(kDestination, "protocol"));
    const char *module = nullptr;
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafIdtType(nullptr, "oc-telemetry-types:X", &module));
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafIdtType(nesting.leaf(), nullptr, &module));
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafIdtType(nesting.leaf(), "", &module));
    EXPECT_EQ(nullptr, module);
    const gpbtest::XmlDocument document("<protocol>oc-telemetry-types:X</protocol>");
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafIdtType(document.root()->children, "oc-telemetry-types:X", &module)) << "a text";
}

TEST_F(IdentityTable, FindsNothingBelow32ElementsOrBehind255Characters)
{
    const std::string tail = join(kDestination, "protocol");
    const size_t elements = 6;
    const std::string value = "oc-telemetry-types:X";
    EXPECT_EQ("openconfig-telemetry-types", moduleOf(XmlNesting::levels(kMaxElements - elements) + tail, value));
    EXPECT_EQ("(none)", moduleOf(XmlNesting::levels(kMaxElements - elements + 1) + tail, value));
    const std::string head(kMaxPath - tail.size() - 2, 'h');
    EXPECT_EQ("openconfig-telemetry-types", moduleOf(join(head, tail), value));
    EXPECT_EQ("(none)", moduleOf(join(head + "h", tail), value));
}

TEST_F(IdentityTable, StopsAtTheFirstPathThatCannotBeBuilt)
{
    const XmlNesting nesting(join(kDestination, "protocol"));
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SPRINTF);
    GpbHost_FailCall(GPB_HOST_SPRINTF, 1);
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafIdtType(nesting.leaf(), "oc-telemetry-types:X", nullptr));
    EXPECT_EQ(before + 1, GpbHost_CallCount(GPB_HOST_SPRINTF)) << "the second row would have found it";
}

TEST_F(BitsTable, FindsEveryRow)
{
    for (const BitsRow &row : kBitsRows)
    {
        const std::string path = row.path;
        EXPECT_EQ(0u, lookUp(join(path, row.leaf))) << row.leaf;
        EXPECT_EQ(0u, lookUp("config/" + join(path, row.leaf))) << row.leaf;
        EXPECT_EQ(0u, lookUp(join(path, "state/") + row.leaf)) << row.leaf;
        EXPECT_EQ(0u, lookUp("my-" + path + "s/" + row.leaf)) << "a fragment may begin and end within a name";
        EXPECT_EQ(1u, lookUp(join(path, row.leaf) + "s")) << row.leaf;
        EXPECT_EQ(1u, lookUp(join(path.substr(1), row.leaf))) << row.leaf;
        EXPECT_EQ(1u, lookUp(row.leaf));
        EXPECT_EQ(1u, lookUp(path));
    }
}

TEST_F(BitsTable, GoesByLeafAndPathTogether)
{
    EXPECT_EQ(1u, lookUp("syslog/servers/permit-no-tls"));
    EXPECT_EQ(1u, lookUp("grpc/service/severity-mask"));
    EXPECT_EQ(1u, lookUp("bier/prefixs/prefix/invalid-reason"));
    EXPECT_EQ(1u, lookUp("grpc/Service/permit-no-tls"));
    EXPECT_EQ(1u, lookUp("grpc/other/service/permit-no-tls"));
}

TEST_F(BitsTable, SecondServiceIsFoundByTheFirstRowAlready)
{
    const XmlNesting nesting("grpc/service-ipv6/permit-no-tls");
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SPRINTF);
    EXPECT_EQ(0u, GPB_GetXmlNodeLeafBitsType(nesting.leaf()));
    EXPECT_EQ(before + 3, GpbHost_CallCount(GPB_HOST_SPRINTF)) << "one path of three elements was built";
}

TEST_F(BitsTable, FindsNothingBelow32ElementsOrBehind255Characters)
{
    const std::string tail = "grpc/service/permit-no-tls";
    const size_t elements = 3;
    EXPECT_EQ(0u, lookUp(XmlNesting::levels(kMaxElements - elements) + tail));
    EXPECT_EQ(1u, lookUp(XmlNesting::levels(kMaxElements - elements + 1) + tail));
    const std::string head(kMaxPath - tail.size() - 2, 'h');
    EXPECT_EQ(0u, lookUp(join(head, tail)));
    EXPECT_EQ(1u, lookUp(join(head + "h", tail)));
}

TEST_F(BitsTable, StopsAtTheFirstPathThatCannotBeBuilt)
{
    const XmlNesting nesting("grpc/service/permit-no-tls");
    const uint64_t before = GpbHost_CallCount(GPB_HOST_SPRINTF);
    GpbHost_FailCall(GPB_HOST_SPRINTF, 1);
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafBitsType(nesting.leaf()));
    EXPECT_EQ(before + 1, GpbHost_CallCount(GPB_HOST_SPRINTF));
    EXPECT_EQ(1u, GPB_GetXmlNodeLeafBitsType(nullptr));
}

} // namespace
