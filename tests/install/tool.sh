# The installed tool runs where it lies, and encodes.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir tool)
cd "$dir"
"$prefix/$bindir/gpbtool" encode --work-path "$dir" --install-path "$source_dir/examples/modules/" --module "$module" \
    "$test_dir/data/telemetry.xml" -o out.gpb
check_message out.gpb

search=(--work-path "$dir" --install-path "$source_dir/examples/modules/" --module "$module")
"$prefix/$bindir/gpbtool" encode "${search[@]}" "$test_dir/data/telemetry.json" -o json.gpb
check_message json.gpb
"$prefix/$bindir/gpbtool" json "${search[@]}" "$test_dir/data/telemetry.xml" -o out.json
check_json out.json
"$prefix/$bindir/gpbtool" attrs "${search[@]}" "$test_dir/data/telemetry.json" \
    --item /telemetry-system/destination-groups/destination-group >attrs.txt
grep -q '^group-id ' attrs.txt || fail "the attributes of the list are not listed"
