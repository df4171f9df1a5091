// The two fixed tables of leaves whose values need special handling.
#ifndef GPB_DESCRIPTOR_GPB_UTIL_TABLES_H
#define GPB_DESCRIPTOR_GPB_UTIL_TABLES_H

/// An identity leaf whose value prefix stands for a module.
struct GpbIdentityPrefix
{
    const char *leafName;
    const char *pathFragment;
    const char *shortPrefix;
    const char *moduleName;
};

inline constexpr GpbIdentityPrefix GPB_IDENTITY_PREFIXES[] = {
    {"protocol", "telemetry-system/destination-groups/destination-group/destinations/destination", "zm-telemetry-ext",
     "zelmor-openconfig-telemetry-ext"},
    {"protocol", "telemetry-system/destination-groups/destination-group/destinations/destination", "oc-telemetry-types",
     "openconfig-telemetry-types"},
    {"encoding", "telemetry-system/subscriptions/persistent/subscription", "oc-telemetry-types",
     "openconfig-telemetry-types"},
};

/// A leaf of a bits type.
struct GpbBitsLeaf
{
    const char *leafName;
    const char *pathFragment;
};

inline constexpr GpbBitsLeaf GPB_BITS_LEAVES[] = {
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

#endif
