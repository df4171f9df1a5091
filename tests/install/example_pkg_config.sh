# Builds the host in C with its Makefile, which asks pkg-config, against the installed tree alone, and runs it.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir c_host-pkg-config)
cp -r "$source_dir/examples/c_host" "$dir/source"
cd "$dir"

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
[ "$("$pkg_config" --modversion gpb_templatelib)" = "$version" ] || fail "the version of gpb_templatelib.pc is wrong"
[ "$("$pkg_config" --modversion gpb_host)" = "$version" ] || fail "the version of gpb_host.pc is wrong"

"$make" -C source CC="$cc" CFLAGS="$host_flags -H" LDFLAGS="$host_flags" PKG_CONFIG="$pkg_config" >build.log 2>&1 ||
    { cat build.log >&2 && fail "the example does not build"; }
grep -q "gpb_templatelib/gpb_lib.h" build.log || fail "the headers that were read are not listed"
if grep -E "^\.+ $source_dir/(include|platform)/" build.log; then
    fail "headers of the source tree were read"
fi

make_runnable source/c_host
run_c_host source/c_host
