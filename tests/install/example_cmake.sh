# Builds an example host with find_package, against the installed tree alone, and runs it.
source "$(dirname "$0")/common.sh"

example=$2
dir=$(fresh_dir "$example-cmake")
cp -r "$source_dir/examples/$example" "$dir/source"
cd "$dir"

"$cmake" -S source -B build -G "$generator" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_C_FLAGS="$host_flags -H" -DCMAKE_CXX_FLAGS="$host_flags -H" -DCMAKE_C_COMPILER_LAUNCHER= \
    -DCMAKE_CXX_COMPILER_LAUNCHER=
"$cmake" --build build --verbose >build.log 2>&1 || { cat build.log >&2 && fail "the example does not build"; }

# -H has listed every header that was read.
grep -q "$prefix/$includedir/gpb_templatelib/gpb_lib.h" build.log || fail "the installed headers were not read"
if grep -E "^\.+ $source_dir/(include|platform)/" build.log; then
    fail "headers of the source tree were read"
fi

make_runnable "build/$example"
if [ "$example" = c_host ]; then
    run_c_host build/c_host
else
    run_host build/"$example"
    # The debug text is protobuf's own, so only what it says of our document is looked at.
    grep -q 'openconfig-telemetry-types:STREAM_GRPC' host.out || fail "the host printed no message text"
fi
