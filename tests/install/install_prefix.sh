# Installs the build into an empty prefix and moves the tree.
source "$(dirname "$0")/common.sh"

rm -rf "${work:?}"
"$cmake" --install "$build_dir" --prefix "$work/first"
mv "$work/first" "$prefix"
