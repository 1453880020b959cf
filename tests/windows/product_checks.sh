#!/bin/sh
# product_checks.sh QUILLET_WFX QUILLET_WFX64 VERSION PROGRAM...: checks the contents of the two Windows editions and of
# the 64-bit programs. Exit status 1 when something is missing.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
failures=0
fail() {
    echo "FAILED $*"
    failures=$((failures + 1))
}

functions="FsInit FsGetDefRootName FsStatusInfo FsDisconnect FsFindFirst FsFindNext FsFindClose FsGetFile FsPutFile
    FsDeleteFile FsMkDir FsRemoveDir FsRenMovFile FsSetAttr FsSetTime FsExecuteFile
    $(sed -n 's/^QUILLET_C_API.*\(QLIB_[A-Za-z0-9_]*\)(.*/\1/p' "$root/qlib/call_layer.h")"
classes=$(find "$root" -path "$root/build*" -prune -o -name '*.h' -print | xargs \
    sed -nE 's/^(class|struct) QUILLET_API ([A-Za-z0-9_]+).*/\2/p' | sort -u)
# Libraries that every Windows installation has.
system='advapi32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|user32|version|winmm'

# check_libraries FILE HEADERS OTHERS: the file needs nothing but the system's libraries and those that match OTHERS.
check_libraries() {
    if printf '%s\n' "$2" | sed -n 's/^\s*DLL Name: //p' | grep -viE "^(($system)\.dll|$3)\$"; then
        fail "$1 needs libraries that not every Windows has"
    fi
}

# check_edition FILE TOOLS FORMAT VERSION
check_edition() {
    headers=$("$2-objdump" -p "$1")
    exports=$(printf '%s\n' "$headers" | sed -nE 's/^\s+\[ *[0-9]+\] (\+base\[ *[0-9]+\] +[0-9a-f]+ )?([A-Za-z_]\S*)$/\2/p')
    plain=$(printf '%s\n' "$exports" | c++filt)
    printf '%s\n' "$headers" | grep -q "file format $3" || fail "$1 is not $3"
    for name in $functions; do
        printf '%s\n' "$exports" | grep -qx "$name" || fail "$1 does not export $name"
    done
    for class in $classes; do
        printf '%s\n' "$plain" | grep -qE "^$class(<.*>)?::|for $class\$" || fail "$1 does not export the class $class"
    done
    if printf '%s\n' "$exports" | grep -E '@[0-9]+$'; then
        fail "$1 exports decorated names"
    fi
    check_libraries "$1" "$headers" ''
    # A bitmap (type 2) with the number 205, and a version (type 16).
    resources=$(printf '%s\n' "$headers" | sed -n '/^The .rsrc/,$p')
    printf '%s\n' "$resources" | grep -qi 'ID: 0x0*cd,' || fail "$1 has no bitmap 205"
    printf '%s\n' "$resources" | grep -qi 'ID: 0x0*10,' || fail "$1 has no version"
    python3 - "$1" "$4" <<'PY' || fail "$1 has a version other than $4.0"
import struct, sys
data = open(sys.argv[1], "rb").read()
at = data.index(struct.pack("<I", 0xFEEF04BD))  # where the fixed version block begins
words = struct.unpack("<8H", data[at + 8:at + 24])
numbers = [words[1], words[0], words[3], words[2]]
product = [words[5], words[4], words[7], words[6]]
sys.exit(0 if numbers == product == [int(part) for part in sys.argv[2].split(".")] + [0] else 1)
PY
}

check_edition "$1" i686-w64-mingw32 pei-i386 "$3"
check_edition "$2" x86_64-w64-mingw32 pei-x86-64 "$3"
shift 3
for program in "$@"; do
    headers=$(x86_64-w64-mingw32-objdump -p "$program")
    printf '%s\n' "$headers" | grep -q 'file format pei-x86-64' || fail "$program is not pei-x86-64"
    check_libraries "$program" "$headers" 'quillet\.wfx64'
done
[ "$failures" -eq 0 ]
