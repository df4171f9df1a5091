/** Identity values with the module in place of their prefix. */
#include <string>
#include <vector>

#include "descriptor/xml_nesting.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "support/xml_document.h"

namespace
{

using gpbtest::XmlNesting;

constexpr char kLeafPath[] = "telemetry-system/destination-groups/destination-group/destinations/destination/protocol";
constexpr uint32_t kTestLine = 1;

class IdentityValue : public gpbtest::PlatformFixture
{
protected:
    /** The new value of a protocol leaf that declares a namespace; "(null)" for none. */
    static std::string update(const std::string &value)
    {
        XmlNesting nesting(kLeafPath);
        nesting.declareNamespace();
        return take(GPB_IdentityNodeValueUpdate(kModuleId, nesting.leaf(), value.c_str()));
    }

    static std::string take(char *value)
    {
        const std::string text = value == nullptr ? "(null)" : value;
        ZMP_Free_F(value, "xml_identity_value", kTestLine);
        return text;
    }
};

class IdentityValueDeliberateOddities : public IdentityValue
{
};

TEST_F(IdentityValue, GetsTheModuleForItsPrefix)
{
    EXPECT_EQ("openconfig-telemetry-types:GRPC", update("oc-telemetry-types:GRPC"));
    EXPECT_EQ("zelmor-openconfig-telemetry-ext:TCP", update("zm-telemetry-ext:TCP"));
    EXPECT_EQ("openconfig-telemetry-types:", update("oc-telemetry-types:"));
    EXPECT_EQ("(null)", update("other:GRPC"));
    EXPECT_EQ("(null)", update("oc-telemetry-types")) << "nothing to keep without a colon";
    EXPECT_EQ("(null)", update(""));
}

TEST_F(IdentityValueDeliberateOddities, FirstColonIsWhereItIsCut)
{
    EXPECT_EQ("openconfig-telemetry-types:A:B", update("oc-telemetry-types:A:B"));
    EXPECT_EQ("openconfig-telemetry-types:oc-telemetry-types", update("x:oc-telemetry-types"));
}

TEST_F(IdentityValueDeliberateOddities, OnlyDeclarationsOnTheElementItselfCount)
{
    const auto update = [](const std::string &rootAttributes, const std::string &leafAttributes)
    {
        const gpbtest::XmlDocument document("<telemetry-system " + rootAttributes +
                                            "><subscriptions><persistent><subscription><encoding " + leafAttributes +
                                            ">oc-telemetry-types:JSON</encoding></subscription></persistent>"
                                            "</subscriptions></telemetry-system>");
        return take(GPB_IdentityNodeValueUpdate(kModuleId, document.find("encoding"), "oc-telemetry-types:JSON"));
    };
    EXPECT_EQ("openconfig-telemetry-types:JSON", update("", "xmlns:oc-telemetry-types='urn:types'"));
    EXPECT_EQ("openconfig-telemetry-types:JSON", update("", "xmlns='urn:any'")) << "any declaration will do";
    EXPECT_EQ("(null)", update("xmlns:oc-telemetry-types='urn:types'", ""));
    EXPECT_EQ("(null)", update("", "name='value'"));
    EXPECT_EQ("(null)", update("", ""));
}

TEST_F(IdentityValue, IsOneAllocationOfTheModule)
{
    XmlNesting nesting(kLeafPath);
    nesting.declareNamespace();
    char *const value = GPB_IdentityNodeValueUpdate(kModuleId, nesting.leaf(), "oc-telemetry-types:GRPC");
    const std::vector<gpbtest::PlatformEvent> &made = events().events();
    ASSERT_EQ(1u, made.size());
    EXPECT_EQ(GPB_HOST_EVENT_MALLOC, made[0].kind);
    EXPECT_EQ("gpb_util", made[0].file);
    EXPECT_EQ(value, made[0].memory);
    EXPECT_EQ(sizeof("openconfig-telemetry-types:GRPC"), made[0].size);
    EXPECT_EQ(kModuleId, made[0].moduleId);
    EXPECT_EQ(g_aucZmpMemPt[0], made[0].partition);
    take(value);
}

TEST_F(IdentityValue, IsNullWithoutMemoryOrWhenItCannotBeWritten)
{
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    EXPECT_EQ("(null)", update("oc-telemetry-types:GRPC"));
    // Six elements of the path for each of two rows come before the value.
    GpbHost_FailCall(GPB_HOST_SPRINTF, 13);
    events().clear();
    EXPECT_EQ("(null)", update("oc-telemetry-types:GRPC"));
    EXPECT_EQ(1u, events().ofKind(GPB_HOST_EVENT_MALLOC).size());
    const std::vector<gpbtest::PlatformEvent> releases = events().ofKind(GPB_HOST_EVENT_FREE);
    ASSERT_EQ(1u, releases.size());
    EXPECT_EQ("gpb_util", releases[0].file);
}

TEST_F(IdentityValue, LeavesNothingBehindWhicheverCallFails)
{
    failEachCall(
        [](const gpbtest::FaultRun &run)
        { EXPECT_EQ(run.fails() ? "(null)" : "openconfig-telemetry-types:X", update("oc-telemetry-types:X")); });
}

TEST_F(IdentityValue, NeedsElementAndValue)
{
    XmlNesting nesting(kLeafPath);
    nesting.declareNamespace();
    EXPECT_EQ(nullptr, GPB_IdentityNodeValueUpdate(kModuleId, nullptr, "oc-telemetry-types:X"));
    EXPECT_EQ(nullptr, GPB_IdentityNodeValueUpdate(kModuleId, nesting.leaf(), nullptr));
    EXPECT_EQ(nullptr, GPB_IdentityNodeValueUpdate(kModuleId, nesting.document(), "oc-telemetry-types:X"));
    const gpbtest::XmlDocument document("<protocol>oc-telemetry-types:X</protocol>");
    EXPECT_EQ(nullptr, GPB_IdentityNodeValueUpdate(kModuleId, document.root()->children, "oc-telemetry-types:X"));
}

} // namespace
