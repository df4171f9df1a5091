#include "support/leaf_rows.h"
#include "support/proto_text.h"
#include "support/workload.h"

namespace gpbbench
{

namespace
{

constexpr size_t PROFILES = 2;

void DeclareSubscription(ProtoText &proto)
{
    proto.OpenMessage("Subscription");
    proto.OpenMessage("Config");
    DeclareLeaves(proto, TELEMETRY_CONFIG_LEAVES);
    proto.CloseMessage();
    proto.OpenMessage("SensorProfiles");
    proto.OpenMessage("SensorProfile");
    DeclareLeaves(proto, TELEMETRY_PROFILE_LEAVES);
    proto.CloseMessage();
    proto.MessageField("sensor-profile", "SensorProfile", 1, true);
    proto.CloseMessage();
    proto.LeafField("subscription-name", LeafKind::STRING, 1);
    proto.MessageField("config", "Config", 2, false);
    proto.MessageField("sensor-profiles", "SensorProfiles", 3, false);
    proto.CloseMessage();
}

// Far from each other and never in order: 0, 7, 3, 10, 6, 2, ... of eleven.
void WriteTelemetryLeaves(XmlText &xml, size_t count, size_t seed, NodeOrder order)
{
    constexpr size_t STRIDE = 7;
    for (size_t i = 0; i < count; ++i)
    {
        const size_t leaf = order == NodeOrder::MIXED ? i * STRIDE % count : i;
        xml.Leaf(LeafName(leaf), LeafKindOf(leaf), seed + leaf);
    }
}

void WriteProfiles(XmlText &xml, size_t seed, NodeOrder order)
{
    xml.Open("sensor-profiles");
    for (size_t i = 0; i < PROFILES; ++i)
    {
        xml.Open("sensor-profile");
        WriteTelemetryLeaves(xml, TELEMETRY_PROFILE_LEAVES, seed + i, order);
        xml.Close("sensor-profile");
    }
    xml.Close("sensor-profiles");
}

void WriteSubscription(XmlText &xml, size_t seed, NodeOrder order)
{
    xml.Open("subscription");
    if (order == NodeOrder::MIXED)
    {
        WriteProfiles(xml, seed, order);
    }
    else
    {
        xml.Leaf("subscription-name", LeafKind::STRING, seed);
    }
    xml.Open("config");
    WriteTelemetryLeaves(xml, TELEMETRY_CONFIG_LEAVES, seed, order);
    xml.Close("config");
    if (order == NodeOrder::MIXED)
    {
        xml.Leaf("subscription-name", LeafKind::STRING, seed);
    }
    else
    {
        WriteProfiles(xml, seed, order);
    }
    xml.Close("subscription");
}

} // namespace

std::string TelemetryProto()
{
    ProtoText proto("bench_telemetry");
    proto.OpenMessage("TelemetrySystem");
    proto.OpenMessage("Subscriptions");
    DeclareSubscription(proto);
    proto.MessageField("subscription", "Subscription", 1, true);
    proto.CloseMessage();
    proto.MessageField("subscriptions", "Subscriptions", 1, false);
    proto.CloseMessage();
    return proto.Text();
}

Workload MakeTelemetryWorkload(size_t leaves, NodeOrder order)
{
    XmlText xml;
    xml.Open("telemetry-system");
    xml.Open("subscriptions");
    while (xml.Leaves() < leaves)
    {
        WriteSubscription(xml, xml.Leaves(), order);
    }
    xml.Close("subscriptions");
    xml.Close("telemetry-system");
    return {"bench-telemetry", TelemetryProto(), "bench_telemetry.TelemetrySystem", xml.Text(), xml.Leaves()};
}

} // namespace gpbbench
