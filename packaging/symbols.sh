#!/bin/sh
# symbols.sh [--renew] BUILD: compares what BUILD/libquillet.so.0 exports with the list in packaging/debian/symbols. That
# list is the library's interface, and Debian's file of symbols. Exit status 1 when they differ.
#
# --renew: writes the list anew. When symbols are gone, or mean something else now, programs have to be built anew:
# increase QUILLET_INTERFACE in CMakeLists.txt.
set -eu
renew=
if [ "${1-}" = --renew ]; then
    renew=yes
    shift
fi
[ $# -eq 1 ] || { echo "usage: symbols.sh [--renew] BUILD" >&2; exit 2; }
cd "$(dirname "$0")/.."
list=packaging/debian/symbols
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$1/CMakeCache.txt")
interface=$(sed -n 's/^set(QUILLET_INTERFACE \([0-9]*\))$/\1/p' CMakeLists.txt)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

exports_of() {
    nm -D --defined-only "$1" | sed 's/^[^ ]* . //; s/@.*//' | sort
}
exports_of "$1/libquillet.so.$interface" > "$work/exported"
sed -n 's/^ \(.*\)@Base .*/\1/p' "$list" > "$work/listed"

if [ "$renew" ]; then
    {
        echo "libquillet.so.$interface libquillet$interface #MINVER#"
        # A symbol keeps the version in which it came.
        sed -n 's/^ \(.*\)@Base \(.*\)/\1 \2/p' "$list" | sort | join -a 1 -o 0,2.2 -e "$version" "$work/exported" - |
            sed 's/^\(.*\) \(.*\)/ \1@Base \2/'
    } > "$work/list"
    comm -13 "$work/exported" "$work/listed" | c++filt | sed 's/^/gone: /'
    cp "$work/list" "$list"
    exit 0
fi

status=0
# different TITLE FILE FILE
different() {
    changes=$(comm -3 "$2" "$3" | sed 's/^\t/+ /; s/^[^+]/- &/' | c++filt)
    [ -z "$changes" ] || { printf '%s:\n%s\n' "$1" "$changes"; status=1; }
}
different "The library's interface has changed (packaging/symbols.sh --renew $1)" "$work/listed" "$work/exported"
# The plug-in exports the same, its entry points, and pieces of the standard library.
exports_of "$1/quillet.wfx" | grep -vxE 'Fs[A-Z][A-Za-z]*|_Z(T[ISV]|Z|GVZ)?(N|NK)?(S[at]|9__gnu_cxx).*' > "$work/plugin"
different "libquillet and quillet.wfx export different symbols" "$work/exported" "$work/plugin"
[ "$(head -1 "$list")" = "libquillet.so.$interface libquillet$interface #MINVER#" ] ||
    { echo "$list is not that of interface $interface"; status=1; }
exit $status
