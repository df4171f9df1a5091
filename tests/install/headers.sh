# Every installed header compiles alone, twice, and after each other one, as C11 (all but those for C++) and as C++17.
source "$(dirname "$0")/common.sh"

cpp_only=" $(grep -v '^#' "$source_dir/packaging/cpp-only-headers.txt" | tr '\n' ' ')"
flags="-fsyntax-only -Wall -Wextra -Wpedantic -pedantic-errors -Werror"

cd "$prefix/$includedir/gpb_templatelib"
mapfile -t all < <(find . -name '*.h' -printf '%P\n' | LC_ALL=C sort)
[ "${#all[@]}" -ge 15 ] || fail "only ${#all[@]} headers are installed"

dir=$(fresh_dir headers)

# compile LANGUAGE HEADER...: one translation unit that includes these headers in this order.
compile() {
    local language=$1 compiler=$cxx standard=c++17
    shift
    if [ "$language" = c ]; then
        compiler=$cc
        standard=c11
    fi
    # A translation unit must not be empty in ISO C, and limits alone declare nothing.
    { printf '#include <gpb_templatelib/%s>\n' "$@" && echo 'extern int one_declaration;'; } |
        "$compiler" -x "$language" -std=$standard $flags -I"$prefix/$includedir" - 2>"$dir/errors" ||
        { cat "$dir/errors" >&2 && fail "$language: $*"; }
}

compiled=0
for language in c c++; do
    for first in "${all[@]}"; do
        [ "$language" = c++ ] || [[ $cpp_only != *" $first "* ]] || continue
        compile "$language" "$first"
        compile "$language" "$first" "$first"
        for second in "${all[@]}"; do
            [ "$second" != "$first" ] || continue
            [ "$language" = c++ ] || [[ $cpp_only != *" $second "* ]] || continue
            compile "$language" "$first" "$second"
            compiled=$((compiled + 1))
        done
    done
done
echo "$compiled ordered pairs of ${#all[@]} headers"
