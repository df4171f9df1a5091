# Compiles the README's example as the README says, against the installed tree alone, and runs it.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir readme)
cd "$dir"

awk '/^```c$/ {inside = 1; next} /^```$/ {inside = 0} inside' "$source_dir/README.md" >readme.c
[ -s readme.c ] || fail "the README has no example in C"
grep -q '^cc -std=c11 readme.c .*pkg-config --cflags --libs gpb_templatelib gpb_host' "$source_dir/README.md" ||
    fail "the README compiles its example in another way than this test"

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
read -ra flags <<<"$("$pkg_config" --cflags --libs gpb_templatelib gpb_host)"
read -ra host <<<"$host_flags"
"$cc" -std=c11 "${host[@]}" -Wall -Wextra -Wpedantic -Werror readme.c "${flags[@]}" \
    -Wl,-rpath,"$prefix/$libdir" -o readme

make_runnable readme
./readme "$source_dir/examples/modules/" "$module" "$test_dir/data/telemetry.xml" >out.gpb
check_message out.gpb
result=0
make_runnable readme
./readme "$source_dir/examples/modules/" no-such-module "$test_dir/data/telemetry.xml" >none.gpb || result=$?
[ "$result" -eq 1 ] || fail "a missing module gave exit code $result"
