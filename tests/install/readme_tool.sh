# Runs the README's commands of the tool as a reader would, one after the other, with the installed tool.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir readme_tool)
cd "$dir"
ln -s "$source_dir/examples" examples
mkdir -p build/release/bin
tool="$prefix/$bindir/gpbtool"
if [ -n "$emulator" ]; then
    started_by_emulator "$tool" build/release/bin/gpbtool
else
    ln -s "$tool" build/release/bin/gpbtool
fi

awk '/^## The tool/ {inside = 1} /^## More/ {inside = 0} /^```sh$/ {code = inside; next} /^```$/ {code = 0} code' \
    "$source_dir/README.md" >commands.sh
for subcommand in modules encode decode json proto template; do
    grep -q "^gpbtool $subcommand" commands.sh || fail "the README does not show gpbtool $subcommand"
done
# The two templates that are compared last are different, which the README says has the exit code 1.
[[ $(tail -n 1 commands.sh) == "gpbtool template diff"* ]] || fail "the README does not end with two templates compared"
sed -i '$ s/ #.*$/ \&\& exit 1 || [ $? -eq 1 ]/' commands.sh
bash -euo pipefail commands.sh >out.txt || fail "a command of the README failed"

cmp small.gpb twin.gpb || fail "XML and JSON do not give the same message"
# Each leaf of the document is a line of the message that the YANG module led to.
build/release/bin/gpbtool decode --install-path ./ --module ietf-yang-library --message YangLibrary library.gpb >library.txt
leaves=$(grep -c '>[^<]*</' examples/documents/ietf-yang-library/small.xml)
[ "$leaves" -gt 20 ] || fail "the document has $leaves leaves"
[ "$(grep -c ': ' library.txt)" -eq "$leaves" ] || fail "not all of the $leaves leaves are in the message"
grep -q 'namespace: "urn:ietf:params:xml:ns:yang:ietf-ip"' library.txt || fail "a leaf has another value"
