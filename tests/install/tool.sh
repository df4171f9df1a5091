# The installed tool runs where it lies, and encodes.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir tool)
cd "$dir"
"$prefix/$bindir/gpbtool" encode --work-path "$dir" --install-path "$source_dir/examples/modules/" --module "$module" \
    "$test_dir/data/telemetry.xml" -o out.gpb
check_message out.gpb
