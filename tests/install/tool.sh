# The installed tool runs where it lies, and encodes.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir tool)
cd "$dir"
tool="$prefix/$bindir/gpbtool"
if [ -n "$emulator" ]; then
    started_by_emulator "$tool" gpbtool
    tool=./gpbtool
fi
"$tool" encode --work-path "$dir" --install-path "$source_dir/examples/modules/" --module "$module" \
    "$test_dir/data/telemetry.xml" -o out.gpb
check_message out.gpb

search=(--work-path "$dir" --install-path "$source_dir/examples/modules/" --module "$module")
"$tool" encode "${search[@]}" "$test_dir/data/telemetry.json" -o json.gpb
check_message json.gpb
"$tool" json "${search[@]}" "$test_dir/data/telemetry.xml" -o out.json
check_json out.json
"$tool" attrs "${search[@]}" "$test_dir/data/telemetry.json" \
    --item /telemetry-system/destination-groups/destination-group >attrs.txt
grep -q '^group-id ' attrs.txt || fail "the attributes of the list are not listed"
