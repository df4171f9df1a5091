/** Identity values, whose prefix is replaced by the module name before they are stored. */
#include "compiler/compiler_fixture.h"

namespace
{

constexpr const char *kProto = R"(
syntax = "proto3";
package telemetry;
message TelemetrySystem {
    message DestinationGroups {
        message DestinationGroup {
            message Destinations {
                message Destination {
                    string protocol = 1;
                    string encoding = 2;
                }
                repeated Destination destination = 1;
            }
            Destinations destinations = 1;
        }
        repeated DestinationGroup destination_group = 1;
    }
    DestinationGroups destination_groups = 1;
}
)";

class IdentityTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addModule("telemetry", kProto);
        open("telemetry");
        events().clear();
    }

    void expectProtocol(const std::string &leaf, const std::string &value)
    {
        expectEncodes("<telemetry-system><destination-groups><destination-group><destinations><destination>" + leaf +
                          "</destination></destinations></destination-group></destination-groups></telemetry-system>",
                      "telemetry.TelemetrySystem",
                      "destination_groups { destination_group { destinations { destination { " + value + " } } } }");
    }

    std::vector<std::string> freed() { return events().sites(GPB_HOST_EVENT_FREE); }

    static constexpr const char *kLeaf =
        "<protocol xmlns:oc-telemetry-types='urn:x'>oc-telemetry-types:GRPC</protocol>";
};

TEST_F(IdentityTest, PrefixIsReplacedAndTheTextReleased)
{
    leaveOutTwin();
    expectProtocol(kLeaf, "protocol: 'openconfig-telemetry-types:GRPC'");
    EXPECT_EQ(std::vector<std::string>{"gpb_xmlcompiler.cpp:435"}, freed());
    const std::vector<gpbtest::PlatformEvent> made = events().ofKind(GPB_HOST_EVENT_MALLOC);
    ASSERT_EQ(1u, made.size());
    EXPECT_EQ(kModuleId, made[0].moduleId);
    EXPECT_EQ(std::string("openconfig-telemetry-types:GRPC").size() + 1, made[0].size);
}

TEST_F(IdentityTest, OtherLeavesAndValuesStand)
{
    expectProtocol("<protocol>oc-telemetry-types:GRPC</protocol>", "protocol: 'oc-telemetry-types:GRPC'");
    expectProtocol("<protocol xmlns:a='urn:x'>a:GRPC</protocol>", "protocol: 'a:GRPC'");
    expectProtocol("<protocol xmlns:a='urn:x'>GRPC</protocol>", "protocol: 'GRPC'");
    expectProtocol("<encoding xmlns:oc-telemetry-types='urn:x'>oc-telemetry-types:GPB</encoding>",
                   "encoding: 'oc-telemetry-types:GPB'");
    EXPECT_EQ(std::vector<std::string>{}, freed());
}

TEST_F(IdentityTest, WithoutMemoryTheValueStands)
{
    leaveOutTwin();
    GpbHost_FailCall(GPB_HOST_MALLOC, 1);
    expectProtocol(kLeaf, "protocol: 'oc-telemetry-types:GRPC'");
    EXPECT_EQ(std::vector<std::string>{}, freed());
}

TEST_F(IdentityTest, TextIsReleasedAfterAFailingTranslatorToo)
{
    compiler().astStrTrans[google::protobuf::FieldDescriptor::TYPE_STRING] = nullptr;
    const gpbtest::Encoded result =
        encode(std::string("<telemetry-system><destination-groups><destination-group><destinations><destination>") +
               kLeaf + "</destination></destinations></destination-group></destination-groups></telemetry-system>");
    EXPECT_EQ(0u, result.error);
    EXPECT_EQ("[GpbXmlCompiler][FillLeafField]Fail to find translator for node [protocol] type 9.",
              log().textsOfLevel(0).at(0));
    EXPECT_EQ(std::vector<std::string>{"gpb_xmlcompiler.cpp:435"}, freed());
}

// Every service of the platform fails once, from the context to its end.
TEST_F(IdentityTest, EachPlatformCallMayFail)
{
    const gpbtest::XmlDocument document(
        std::string("<telemetry-system><destination-groups><destination-group><destinations><destination>") + kLeaf +
        "</destination></destinations></destination-group></destination-groups></telemetry-system>");
    const uint64_t calls = failEachCall(
        [&](const gpbtest::FaultRun &run)
        {
            const GpbLibInitParam param = log().initParam(kModuleId);
            GpbLibContext *const other = GPBLIB_Initial(&param);
            GpbXmlCompilerBase *const compiler =
                other == nullptr ? nullptr : GpbXmlCompiler_CreateCompiler(other, "telemetry");
            if (compiler == nullptr)
            {
                EXPECT_TRUE(run.fails());
            }
            else
            {
                unsigned int length = 0;
                unsigned int error = 0;
                const char *const bytes = GpbXmlCompiler_Encode(compiler, document.get(), &length, &error);
                EXPECT_EQ(error != 0, bytes == nullptr);
                if (!run.fails())
                {
                    EXPECT_TRUE(judge().holds("telemetry.TelemetrySystem", std::string(bytes, length),
                                              "destination_groups { destination_group { destinations { destination { "
                                              "protocol: 'openconfig-telemetry-types:GRPC' } } } }"));
                }
                GpbXmlCompiler_Destory(compiler);
            }
            GPBLIB_Uninitial(other);
            log().clear();
        });
    EXPECT_GT(calls, 20u);
}

} // namespace
