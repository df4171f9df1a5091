# The installed files are exactly those of the list.
source "$(dirname "$0")/common.sh"

dir=$(fresh_dir files)
sed -e "s|@bindir@|$bindir|; s|@includedir@|$includedir|; s|@libdir@|$libdir|; s|@config@|$config|" \
    -e "s|@datadir@|$datadir|; s|@mandir@|$mandir|; s|@soversion@|$soversion|; s|@version@|$version|" \
    "$source_dir/packaging/installed-files.txt" >"$dir/listed"
if [ "$with_tool" != ON ]; then
    sed -i "\|/gpbtool\(\.1\.gz\)\?\$|d; \|/gpbtool/|d" "$dir/listed"
fi
(cd "$prefix" && find . ! -type d -printf '%P\n') >"$dir/found"

LC_ALL=C sort -o "$dir/listed" "$dir/listed"
LC_ALL=C sort -o "$dir/found" "$dir/found"
diff -u "$dir/listed" "$dir/found" || fail "the installed files are not those of packaging/installed-files.txt"
