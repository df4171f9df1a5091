# No installed text file knows where it was built or installed.
source "$(dirname "$0")/common.sh"

checked=0
for file in "$prefix/$libdir"/cmake/gpb_templatelib/*.cmake "$prefix/$libdir"/pkgconfig/*.pc; do
    for place in "$source_dir" "$build_dir" "$work"; do
        if grep -nF "$place" "$file"; then
            fail "$file names $place"
        fi
    done
    checked=$((checked + 1))
done
[ "$checked" -eq 6 ] || fail "expected 6 package files, checked $checked"
