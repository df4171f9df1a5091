#!/usr/bin/env python3
"""Writes the example documents beside this script; the same files each time.

    generate.py [DIR]

DIR is where the documents go; the default is the directory of the script.
Sizes: small has a few leaves, medium some hundreds, large some thousands. The small and the medium documents have
JSON twins, which hold the same data in the forms that the module's JSON takes: 64-bit integers as texts, identities with
the name of their module, and a list as one array.
"""
import json
import os
import sys
from xml.sax.saxutils import escape

TELEMETRY_NS = "http://openconfig.net/yang/telemetry"
TYPES_NS = "http://openconfig.net/yang/telemetry-types"
INTERFACES_NS = "urn:example:interfaces"
YANG_LIBRARY_NS = "urn:ietf:params:xml:ns:yang:ietf-yang-library"
DATASTORES_NS = "urn:ietf:params:xml:ns:yang:ietf-datastores"


class XmlWriter:
    """Writes indented elements to a list of lines."""

    def __init__(self):
        self.lines = ['<?xml version="1.0" encoding="UTF-8"?>']
        self.open_names = []

    def indent(self):
        return "  " * len(self.open_names)

    def open(self, name, attributes=""):
        self.lines.append(f"{self.indent()}<{name}{attributes}>")
        self.open_names.append(name)

    def close(self):
        name = self.open_names.pop()
        self.lines.append(f"{self.indent()}</{name}>")

    def leaf(self, name, value, attributes=""):
        self.lines.append(f"{self.indent()}<{name}{attributes}>{escape(str(value))}</{name}>")

    def leaves(self, *pairs):
        for name, value in pairs:
            self.leaf(name, value)

    def empty(self, name):
        self.lines.append(f"{self.indent()}<{name}/>")

    def presence(self, name):
        """A presence container without content: its text is a line break, which tells it from an empty leaf."""
        self.lines.append(f"{self.indent()}<{name}>")
        self.lines.append(f"{self.indent()}</{name}>")

    def identity(self, name, value, prefix="oc-telemetry-types", namespace=TYPES_NS):
        self.leaf(name, value, f' xmlns:{prefix}="{namespace}"')

    def text(self):
        return "\n".join(self.lines) + "\n"


class JsonWriter:
    """Takes the calls of XmlWriter and builds a tree of members."""

    LISTS = {"sensor-group", "sensor-path", "destination-group", "destination", "subscription", "sensor-profile",
             "interface", "ipv4-address", "queue-8p", "component", "sub-interface", "ipv6-address"}
    LEAF_LISTS = {"higher-layer-if", "allowed-vlan", "label"}
    ENUMERATION_LISTS = {"supported-speed"}
    BOOLEANS = {"enabled", "suppress-redundant"}
    DECIMALS = {"multicast-percent", "utilization", "load"}
    INTEGERS_OF_64_BITS = {"subscription-id", "sample-interval", "heartbeat-interval", "last-change", "in-octets",
                           "out-octets", "in-errors", "dropped", "clock-offset", "balance", "drift"}

    def __init__(self):
        self.open_objects = [{}]

    def open(self, name, attributes=""):
        opened = {}
        if name in self.LISTS:
            self.open_objects[-1].setdefault(name, []).append(opened)
        else:
            self.open_objects[-1][name] = opened
        self.open_objects.append(opened)

    def close(self):
        self.open_objects.pop()

    def value(self, name, value):
        if name in self.BOOLEANS:
            return value == "true"
        if name in self.DECIMALS:
            return float(value)
        return str(value) if name in self.INTEGERS_OF_64_BITS else value

    def leaf(self, name, value, attributes=""):
        target = self.open_objects[-1]
        if name in self.ENUMERATION_LISTS:
            target.setdefault(name, []).extend(value.split(" "))
        elif name in self.LEAF_LISTS:
            target.setdefault(name, []).append(value)
        else:
            target[name] = self.value(name, value)

    def leaves(self, *pairs):
        for name, value in pairs:
            self.leaf(name, value)

    def empty(self, name):
        self.open_objects[-1][name] = True

    def presence(self, name):
        self.open_objects[-1][name] = {}

    def identity(self, name, value):
        self.leaf(name, value.replace("oc-telemetry-types:", "openconfig-telemetry-types:"))

    def text(self):
        return json.dumps(self.open_objects[0], indent=1, ensure_ascii=False) + "\n"


def telemetry(w, groups, paths, destinations, subscriptions):
    w.open("telemetry-system", f' xmlns="{TELEMETRY_NS}"')
    w.open("sensor-groups")
    for g in range(1, groups + 1):
        w.open("sensor-group")
        w.leaf("sensor-group-id", f"sensors-{g}")
        for part in ("config", "state"):
            w.open(part)
            w.leaf("sensor-group-id", f"sensors-{g}")
            w.close()
        w.open("sensor-paths")
        for p in range(1, paths + 1):
            path = f"/interfaces/interface[name='eth{g}/{p}']/state/counters"
            w.open("sensor-path")
            w.leaf("path", path)
            w.open("config")
            w.leaves(("path", path), ("exclude-filter", f"in-errors < {p} & out-errors < {p}"))
            w.close()
            w.close()
        w.close()
        w.close()
    w.close()
    w.open("destination-groups")
    for g in range(1, groups + 1):
        w.open("destination-group")
        w.leaf("group-id", f"collectors-{g}")
        w.open("config")
        w.leaf("group-id", f"collectors-{g}")
        w.close()
        w.open("destinations")
        for d in range(1, destinations + 1):
            w.open("destination")
            address = f"192.0.2.{d}"
            w.leaves(("destination-address", address), ("destination-port", 50000 + g))
            w.open("config")
            w.leaves(("destination-address", address), ("destination-port", 50000 + g))
            w.identity("protocol", "oc-telemetry-types:STREAM_GRPC")
            w.close()
            w.close()
        w.close()
        w.close()
    w.close()
    w.open("subscriptions")
    w.open("persistent")
    for s in range(1, subscriptions + 1):
        w.open("subscription")
        w.leaf("subscription-name", f"subscription-{s}")
        w.open("config")
        w.leaves(("subscription-name", f"subscription-{s}"), ("local-source-address", "198.51.100.7"),
                 ("originated-qos-marking", 1 + s % 63))
        w.identity("protocol", "oc-telemetry-types:STREAM_GRPC")
        w.identity("encoding", "oc-telemetry-types:ENC_PROTO3")
        w.close()
        w.open("state")
        w.leaves(("subscription-name", f"subscription-{s}"), ("subscription-id", 9007199254740993 + s))
        w.close()
        w.open("sensor-profiles")
        w.open("sensor-profile")
        group = 1 + (s - 1) % groups
        w.leaf("sensor-group", f"sensors-{group}")
        w.open("config")
        w.leaves(("sensor-group", f"sensors-{group}"), ("sample-interval", 1000 * s),
                 ("heartbeat-interval", 60000000000 + s), ("suppress-redundant", "true"))
        w.close()
        w.close()
        w.close()
        w.open("destination-groups")
        w.open("destination-group")
        w.leaf("group-id", f"collectors-{group}")
        w.open("config")
        w.leaf("group-id", f"collectors-{group}")
        w.close()
        w.close()
        w.close()
        w.close()
    w.close()
    w.open("dynamic")
    w.open("subscription")
    w.leaf("subscription-id", 18446744073709551615)
    w.open("state")
    w.leaves(("subscription-id", 18446744073709551615), ("destination-address", "2001:db8::1"),
             ("destination-port", 65535), ("sample-interval", 10000))
    w.close()
    w.close()
    w.close()
    w.close()
    w.close()
    return w.text()


TYPES = ("ethernet", "loopback", "tunnel", "802.3ad")
SPEEDS = ("auto", "10m", "100m", "1g", "10g", "2.5g", "25g-kr", "100g")
STATUSES = ("up", "down", "up-2", "not-present", "test/loop", "wait-(10s)", "lower_layer")
ALARMS = ("unknown", "under-repair critical", "major minor warning")
MODES = ("switched", "routed")


def switched(w, i):
    w.leaf("bridge", f"bridge-{i}")
    w.leaf("duplex", ("half", "full")[i % 2])
    w.open("storm-control")
    w.leaves(("broadcast-rate", i), ("multicast-percent", f"{i % 100}.25"))
    w.close()
    for vlan in range(100, 103):
        w.leaf("allowed-vlan", vlan)
    if i % 4 < 2:
        w.leaf("vlan-id", i % 4095)
        w.empty("half")
    else:
        w.leaves(("outer-vlan-id", 4000), ("inner-vlan-id", i % 4095))
        w.empty("rewrite")
        w.leaf("timeout", 30)


def routed(w, i):
    w.leaves(("vrf", "blue"), ("urpf-mode", ("off", "strict", "loose")[i % 3]))
    for a in range(1, 3):
        w.open("ipv4-address")
        w.leaves(("ip", f"203.0.113.{a}"), ("prefix-length", 24), ("origin", ("other", "static", "dhcp")[(a + i) % 3]))
        if a == 2:
            w.empty("secondary")
        w.close()


def interface(w, i, sub_interfaces):
    w.open("interface")
    w.leaves(("name", f"eth{i}"), ("description", f"port {i}: \u201cuplink\u201d & more"), ("type", TYPES[i % 4]),
             ("enabled", ("true", "false")[i % 2]), ("mtu", 1500 + i), ("if-index", -i),
             ("speed", SPEEDS[i % len(SPEEDS)]), ("oper-status", STATUSES[i % len(STATUSES)]))
    w.leaves(("higher-layer-if", f"bundle{i}"), ("higher-layer-if", f"bundle{i + 1}"))
    w.leaf("supported-speed", "1g 10g")
    w.leaves(("phys-address", f"AAECAwQ{i % 10}"), ("last-change", 18446744073709551615 - i))
    w.empty("loopback")
    w.leaf("mode", MODES[i % 2])
    (routed if i % 2 else switched)(w, i)
    w.open("statistics")
    w.leaves(("in-octets", 9223372036854775807 + i), ("out-octets", i), ("in-errors", 0),
             ("clock-offset", -9223372036854775808 + i), ("balance", -i), ("utilization", f"{i}.125"),
             ("load", f"-{i}.5"), ("crc", 4294967295 - i), ("temperature", -40), ("drift", -i), ("signal", -70))
    for q in range(2):
        w.open("queue-8p")
        w.leaves(("queue-id", q), ("out-octets", i * 1000 + q), ("dropped", q))
        w.close()
    w.close()
    w.open("hardware")
    for c in range(2):
        w.open("component")
        w.leaves(("name", f"optic-{i}-{c}"), ("alarm-state", ALARMS[(i + c) % 3]), ("serial", f"SN{i:06d}"))
        w.close()
    w.close()
    if i % 3 == 0:
        w.presence("ptp")
    else:
        w.open("ptp")
        w.leaf("domain", i % 128)
        w.close()
    w.open("sub-interfaces")
    for s in range(sub_interfaces):
        w.open("sub-interface")
        w.leaves(("index", s), ("description", f"service {s} of port {i}"))
        w.open("ipv6-addresses")
        for a in range(1, 3):
            w.open("ipv6-address")
            w.leaves(("ip", f"2001:db8:{i:x}:{s:x}::{a}"), ("prefix-length", 64), ("label", "blue"), ("label", "lab"))
            w.close()
        w.close()
        w.close()
    w.close()
    w.close()


def interfaces(w, count, sub_interfaces):
    w.open("interfaces", f' xmlns="{INTERFACES_NS}"')
    for i in range(1, count + 1):
        interface(w, i, sub_interfaces)
    w.leaf("generated-by", "generate.py")
    w.close()
    return w.text()


def small_interfaces(w):
    w.open("interfaces", f' xmlns="{INTERFACES_NS}"')
    w.open("interface")
    w.leaves(("name", "eth0"), ("enabled", "false"), ("speed", "10g"), ("oper-status", "up-2"))
    w.empty("loopback")
    w.leaves(("mode", "switched"), ("bridge", "br0"), ("vlan-id", 7))
    w.presence("ptp")
    w.close()
    w.close()
    return w.text()


MODULES = (("ietf-interfaces", "2018-02-20", ("arbitrary-names", "pre-provisioning", "if-mib")),
           ("ietf-ip", "2018-02-22", ("ipv4-non-contiguous-netmasks", "ipv6-privacy-autoconf")),
           ("ietf-hardware", "2018-03-13", ("entity-mib", "hardware-state")))
IMPORTED = (("ietf-yang-types", "2013-07-15"), ("ietf-inet-types", "2013-07-15"))


def yang_library(w):
    w.open("yang-library", f' xmlns="{YANG_LIBRARY_NS}"')
    w.open("module-set")
    w.leaf("name", "all")
    for name, revision, features in MODULES:
        w.open("module")
        w.leaves(("name", name), ("revision", revision), ("namespace", f"urn:ietf:params:xml:ns:yang:{name}"))
        w.leaves(*(("feature", feature) for feature in features))
        w.close()
    for name, revision in IMPORTED:
        w.open("import-only-module")
        w.leaves(("name", name), ("revision", revision), ("namespace", f"urn:ietf:params:xml:ns:yang:{name}"))
        w.close()
    w.close()
    w.open("schema")
    w.leaves(("name", "conventional"), ("module-set", "all"))
    w.close()
    for datastore in ("running", "operational"):
        w.open("datastore")
        w.identity("name", f"ds:{datastore}", "ds", DATASTORES_NS)
        w.leaf("schema", "conventional")
        w.close()
    w.leaf("content-id", "75a43df9bd56b92aacc156a2958fbe12312fb285")
    w.close()
    return w.text()


DOCUMENTS = {
    "ietf-yang-library/small": yang_library,
    "openconfig-telemetry/small": lambda w: telemetry(w, 1, 1, 1, 1),
    "openconfig-telemetry/medium": lambda w: telemetry(w, 6, 8, 6, 10),
    "openconfig-telemetry/large": lambda w: telemetry(w, 20, 25, 25, 80),
    "example-interfaces/small": small_interfaces,
    "example-interfaces/medium": lambda w: interfaces(w, 8, 2),
    "example-interfaces/large": lambda w: interfaces(w, 60, 4),
}


TWINS = ("openconfig-telemetry", "example-interfaces")  # the modules whose documents exist in JSON, too


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8", newline="\n") as out:
        out.write(text)


def main():
    target = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    for name, make in DOCUMENTS.items():
        path = os.path.join(target, name)
        write(path + ".xml", make(XmlWriter()))
        if name.split("/")[0] in TWINS and not name.endswith("/large"):
            write(path + ".json", make(JsonWriter()))


if __name__ == "__main__":
    main()
