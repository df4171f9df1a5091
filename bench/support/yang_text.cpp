#include "support/yang_text.h"

#include "support/proto_text.h"
#include "support/workload.h"

namespace gpbbench
{

namespace
{

std::string YangType(LeafKind kind)
{
    switch (kind)
    {
    case LeafKind::STRING:
        return "type string;";
    case LeafKind::UINT32:
        return "type uint32;";
    case LeafKind::BOOL:
        return "type boolean;";
    case LeafKind::ENUM:
        return "type enumeration { enum NONE; enum PROTO3; enum JSON; }";
    case LeafKind::INT64:
        return "type int64;";
    case LeafKind::DOUBLE:
        return "type decimal64 { fraction-digits 2; }";
    case LeafKind::UINT64:
        return "type uint64;";
    case LeafKind::EMPTY:
        break;
    }
    return "type empty;";
}

std::string Leaves(size_t count)
{
    std::string text;
    for (size_t i = 0; i < count; ++i)
    {
        text += "leaf leaf-" + std::to_string(i) + " { " + YangType(LeafKindOf(i)) + " }\n";
    }
    return text;
}

} // namespace

std::string TelemetryYang()
{
    // State data, whose lists need no keys.
    return std::string("module bench-telemetry { yang-version 1.1; namespace \"") + TELEMETRY_NAMESPACE +
           "\"; prefix bt;\n"
           "container telemetry-system { config false; container subscriptions { list subscription {\n"
           "leaf subscription-name { type string; }\n"
           "container config {\n" +
           Leaves(TELEMETRY_CONFIG_LEAVES) + "}\ncontainer sensor-profiles { list sensor-profile {\n" +
           Leaves(TELEMETRY_PROFILE_LEAVES) + "} } } } } }\n";
}

} // namespace gpbbench
