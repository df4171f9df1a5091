# What the installation tests share; each test names the settings file as its first argument.
set -euo pipefail

# shellcheck source=/dev/null
source "$1"

# The tree is installed under one name and moved to another, so that nothing can depend on where it was installed.
prefix="$work/moved"

# Nothing but what a test asks for is on the compilers' and the loader's ways.
unset CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH LIBRARY_PATH LD_LIBRARY_PATH PKG_CONFIG_PATH CMAKE_PREFIX_PATH DESTDIR
unset CFLAGS CXXFLAGS LDFLAGS MAKEFLAGS MAKELEVEL

[ -z "$pkg_config_libdir" ] || export PKG_CONFIG_LIBDIR=$pkg_config_libdir

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# A new empty directory for one test.
fresh_dir() {
    rm -rf "${work:?}/$1"
    mkdir -p "$work/$1"
    echo "$work/$1"
}

# started_by_emulator PROGRAM SCRIPT: a script that starts a program for another machine.
started_by_emulator() {
    printf '#!/bin/sh\nexec %s "%s" "$@"\n' "$emulator" "$(realpath "$1")" >"$2"
    chmod +x "$2"
}

# make_runnable PROGRAM: a program for another machine changes places with a script that starts it.
make_runnable() {
    [ -n "$emulator" ] || return 0
    mv "$1" "$1.program"
    started_by_emulator "$1.program" "$1"
}

module=openconfig-telemetry
message=openconfig_telemetry.TelemetrySystem

# check_message FILE [TYPE TEXT]: the file holds exactly the message of data/telemetry.txtpb, or that of another text,
# as protobuf's own compiler sees it.
check_message() {
    local modules="$source_dir/examples/modules" type=${2:-$message}
    "$protoc" --proto_path="$modules" --encode="$type" "$module.proto" \
        <"$test_dir/data/${3:-telemetry.txtpb}" >"$1.expected"
    "$protoc" --proto_path="$modules" --decode="$type" "$module.proto" <"$1" >"$1.txt"
    "$protoc" --proto_path="$modules" --decode="$type" "$module.proto" <"$1.expected" >"$1.expected.txt"
    diff "$1.expected.txt" "$1.txt" || fail "the decoded message differs"
    cmp "$1.expected" "$1" || fail "the bytes differ"
    [ -s "$1" ] || fail "the message is empty"
}

# check_json FILE: the file holds the document of data/telemetry.json, as another reader sees it.
check_json() {
    "$python" - "$test_dir/data/telemetry.json" "$1" <<'PYTHON' || fail "the JSON document differs"
import json
import sys

expected, found = (json.load(open(path, encoding="utf-8")) for path in sys.argv[1:])
sys.exit(0 if expected == found else 1)
PYTHON
}

# fails_cleanly OUTPUT COMMAND...: a plain failure that leaves no output; what was said is in host.err.
fails_cleanly() {
    local output=$1 result=0
    shift
    "$@" 2>host.err || result=$?
    [ "$result" -eq 1 ] || fail "$*: exit code $result"
    [ -s host.err ] || fail "$*: no message"
    [ ! -e "$output" ] || fail "$*: a failed run left an output"
}

# run_host PROGRAM [MODE]: runs an example host on data/telemetry.xml and checks what it writes; its standard output
# stays in host.out of the current directory. A module that is missing must be a plain failure and leave no output.
run_host() {
    "$@" "$source_dir/examples/modules" "$module" "$test_dir/data/telemetry.xml" out.gpb >host.out
    check_message out.gpb
    fails_cleanly none.gpb "$@" "$source_dir/examples/modules" no-such-module "$test_dir/data/telemetry.xml" none.gpb
    grep -q 'no-such-module' host.err || fail "the host does not say which module is missing"
}

# run_c_host PROGRAM: every mode of the host in C, and with them every function of the compilers' C interface.
run_c_host() {
    local program=$1 modules="$source_dir/examples/modules" xml="$test_dir/data/telemetry.xml"
    local json="$test_dir/data/telemetry.json"
    run_host "$program" xml

    "$program" xml-json "$modules" "$module" "$xml" out.json
    check_json out.json
    fails_cleanly none.json "$program" xml-json "$modules" no-such-module "$xml" none.json

    "$program" json "$modules" "$module" "$json" json.gpb
    check_message json.gpb
    "$program" json "$modules" "$module" "$json" item.gpb sensor-groups sensor-group 0 sensor-paths
    check_message item.gpb "$message.SensorGroups.SensorGroup.SensorPaths" sensor-paths.txtpb
    fails_cleanly none.gpb "$program" json "$modules" no-such-module "$json" none.gpb
    fails_cleanly none.gpb "$program" json "$modules" "$module" "$json" none.gpb sensor-groups none
    fails_cleanly none.gpb "$program" json "$modules" "$module" "$xml" none.gpb
    sed 's/"path"/"no-such-leaf"/' "$json" >unknown.json
    fails_cleanly none.gpb "$program" json "$modules" "$module" unknown.json none.gpb

    "$program" attrs "$modules" "$module" "$json" attrs.txt destination-groups destination-group 0 destinations destination
    # 25 is the code of texts, 8 that of unsigned integers.
    printf 'destination-address 25\ndestination-port 8\n' | diff - attrs.txt || fail "the attributes differ"
    fails_cleanly none.txt "$program" attrs "$modules" "$module" "$json" none.txt \
        destination-groups destination-group 0 group-id

    local result=0
    "$program" attrs "$modules" "$module" "$json" none.txt 2>host.err || result=$?
    [ "$result" -eq 2 ] || fail "a command line without keys gave exit code $result"
}
