# Names and links of the libraries, and how the tool finds them.
source "$(dirname "$0")/common.sh"

for library in gpb_templatelib gpb_host; do
    file="$prefix/$libdir/lib$library.so"
    [ "$(readlink "$file")" = "lib$library.so.$soversion" ] || fail "lib$library.so is no link to its SONAME"
    [ "$(readlink "$file.$soversion")" = "lib$library.so.$version" ] || fail "the SONAME link of $library is wrong"
    soname=$("$readelf" -d "$file" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
    [ "$soname" = "lib$library.so.$soversion" ] || fail "the SONAME of $library is '$soname'"
    if "$readelf" -d "$file" | grep -E '\((RPATH|RUNPATH)\)'; then
        fail "$library carries a search path"
    fi
done

# The platform is the host's choice.
if "$readelf" -d "$prefix/$libdir/libgpb_templatelib.so" | grep 'NEEDED.*libgpb_host'; then
    fail "the library insists on the reference platform"
fi

if [ "$with_tool" = ON ]; then
    path=$("$readelf" -d "$prefix/$bindir/gpbtool" | sed -n 's/.*(\(RPATH\|RUNPATH\)).*\[\(.*\)\]/\2/p')
    path=${path#"$machine_rpath:"}
    case "$path" in
    '$ORIGIN/'*:* | '') fail "the tool's search path is '$path'" ;;
    '$ORIGIN/'*) ;;
    *) fail "the tool's search path is '$path'" ;;
    esac
fi
