#include "support/workload.h"

#include "support/proto_text.h"

namespace gpbbench
{

namespace
{

constexpr size_t PROFILES = 2;
constexpr size_t CASE_LEAVES = 4;

Workload Finish(const std::string &module, const ProtoText &proto, const std::string &top, const XmlText &xml)
{
    return {module, proto.Text(), top, xml.Text(), xml.Leaves()};
}

std::string LeafName(size_t index)
{
    return "leaf-" + std::to_string(index);
}

void DeclareLeaves(ProtoText &proto, size_t count)
{
    proto.DeclareEnum();
    for (size_t i = 0; i < count; ++i)
    {
        proto.LeafField(LeafName(i), LeafKindOf(i), static_cast<int>(i + 1));
    }
}

void WriteLeaves(XmlText &xml, size_t count, size_t seed)
{
    for (size_t i = 0; i < count; ++i)
    {
        xml.Leaf(LeafName(i), LeafKindOf(i), seed + i);
    }
}

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

void WriteSubscription(XmlText &xml, size_t seed)
{
    xml.Open("subscription");
    xml.Leaf("subscription-name", LeafKind::STRING, seed);
    xml.Open("config");
    WriteLeaves(xml, TELEMETRY_CONFIG_LEAVES, seed);
    xml.Close("config");
    xml.Open("sensor-profiles");
    for (size_t i = 0; i < PROFILES; ++i)
    {
        xml.Open("sensor-profile");
        WriteLeaves(xml, TELEMETRY_PROFILE_LEAVES, seed + i);
        xml.Close("sensor-profile");
    }
    xml.Close("sensor-profiles");
    xml.Close("subscription");
}

std::string CaseLeafName(size_t caseIndex, size_t leaf)
{
    return "case-" + std::to_string(caseIndex) + "-" + LeafName(leaf);
}

void DeclareEntryWithChoice(ProtoText &proto, size_t cases)
{
    proto.OpenMessage("Entry");
    for (size_t i = 0; i < cases; ++i)
    {
        proto.OpenMessage("Case" + std::to_string(i));
        proto.DeclareEnum();
        for (size_t k = 0; k < CASE_LEAVES; ++k)
        {
            proto.LeafField(CaseLeafName(i, k), LeafKindOf(k), static_cast<int>(k + 1));
        }
        proto.CloseMessage();
    }
    proto.LeafField("name", LeafKind::STRING, 1);
    proto.OpenChoice("choice");
    for (size_t i = 0; i < cases; ++i)
    {
        proto.MessageField("case-" + std::to_string(i), "Case" + std::to_string(i), static_cast<int>(i + 2), false);
    }
    proto.CloseChoice();
    proto.CloseMessage();
}

} // namespace

Workload MakeTelemetryWorkload(size_t leaves)
{
    ProtoText proto("bench_telemetry");
    proto.OpenMessage("TelemetrySystem");
    proto.OpenMessage("Subscriptions");
    DeclareSubscription(proto);
    proto.MessageField("subscription", "Subscription", 1, true);
    proto.CloseMessage();
    proto.MessageField("subscriptions", "Subscriptions", 1, false);
    proto.CloseMessage();

    XmlText xml;
    xml.Open("telemetry-system");
    xml.Open("subscriptions");
    while (xml.Leaves() < leaves)
    {
        WriteSubscription(xml, xml.Leaves());
    }
    xml.Close("subscriptions");
    xml.Close("telemetry-system");
    return Finish("bench-telemetry", proto, "bench_telemetry.TelemetrySystem", xml);
}

Workload MakeWideWorkload(size_t width, size_t leaves)
{
    const std::string package = "bench_wide_" + std::to_string(width);
    ProtoText proto(package);
    proto.OpenMessage("Table");
    proto.OpenMessage("Entry");
    DeclareLeaves(proto, width);
    proto.CloseMessage();
    proto.MessageField("entry", "Entry", 1, true);
    proto.CloseMessage();

    XmlText xml;
    xml.Open("table");
    while (xml.Leaves() < leaves)
    {
        xml.Open("entry");
        WriteLeaves(xml, width, xml.Leaves());
        xml.Close("entry");
    }
    xml.Close("table");
    return Finish("bench-wide-" + std::to_string(width), proto, package + ".Table", xml);
}

Workload MakeChoiceWorkload(size_t cases, size_t leaves)
{
    const std::string package = "bench_choice_" + std::to_string(cases);
    ProtoText proto(package);
    proto.OpenMessage("Table");
    DeclareEntryWithChoice(proto, cases);
    proto.MessageField("entry", "Entry", 1, true);
    proto.CloseMessage();

    XmlText xml;
    xml.Open("table");
    for (size_t entry = 0; xml.Leaves() < leaves; ++entry)
    {
        xml.Open("entry");
        xml.Leaf("name", LeafKind::STRING, entry);
        for (size_t k = 0; k < CASE_LEAVES; ++k)
        {
            xml.Leaf(CaseLeafName(entry % cases, k), LeafKindOf(k), entry);
        }
        xml.Close("entry");
    }
    xml.Close("table");
    return Finish("bench-choice-" + std::to_string(cases), proto, package + ".Table", xml);
}

} // namespace gpbbench
