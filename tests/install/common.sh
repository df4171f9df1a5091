# What the installation tests share; each test names the settings file as its first argument.
set -euo pipefail

# shellcheck source=/dev/null
source "$1"

# The tree is installed under one name and moved to another, so that nothing can depend on where it was installed.
prefix="$work/moved"

# Nothing but what a test asks for is on the compilers' and the loader's ways.
unset CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH LIBRARY_PATH LD_LIBRARY_PATH PKG_CONFIG_PATH CMAKE_PREFIX_PATH DESTDIR
unset CFLAGS CXXFLAGS LDFLAGS MAKEFLAGS MAKELEVEL

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

module=openconfig-telemetry
message=openconfig_telemetry.TelemetrySystem

# check_message FILE: the file holds exactly the message of data/telemetry.xml, as protobuf's own compiler sees it.
check_message() {
    local modules="$source_dir/examples/modules"
    "$protoc" --proto_path="$modules" --encode="$message" "$module.proto" \
        <"$test_dir/data/telemetry.txtpb" >"$1.expected"
    "$protoc" --proto_path="$modules" --decode="$message" "$module.proto" <"$1" >"$1.txt"
    "$protoc" --proto_path="$modules" --decode="$message" "$module.proto" <"$1.expected" >"$1.expected.txt"
    diff "$1.expected.txt" "$1.txt" || fail "the decoded message differs"
    cmp "$1.expected" "$1" || fail "the bytes differ"
    [ -s "$1" ] || fail "the message is empty"
}

# run_host PROGRAM: runs an example host on data/telemetry.xml and checks what it writes; its standard output stays in
# host.out of the current directory. A module that is missing must be a plain failure and leave no output.
run_host() {
    "$1" "$source_dir/examples/modules" "$module" "$test_dir/data/telemetry.xml" out.gpb >host.out
    check_message out.gpb
    local result=0
    "$1" "$source_dir/examples/modules" no-such-module "$test_dir/data/telemetry.xml" none.gpb 2>host.err || result=$?
    [ "$result" -eq 1 ] || fail "a missing module gave exit code $result"
    grep -q 'no-such-module' host.err || fail "the host does not say which module is missing"
    [ ! -e none.gpb ] || fail "a failed run left an output"
}
