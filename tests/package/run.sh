#!/usr/bin/env bash
# run.sh: makes the packages, installs those for this machine, uses them as others do, and removes them again. Then the
# Windows SDK, under Wine. Called by ./test --package.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
packages="quillet libquillet0 libquillet-dev"
if [ "$(id -u)" -ne 0 ]; then
    echo "./test --package installs and removes Debian packages. It must be run as root, in a container for instance." >&2
    exit 1
fi
# shellcheck disable=SC2086
if dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' $packages 2>/dev/null | grep '^i'; then
    echo "These packages are installed already, and ./test --package would remove them." >&2
    exit 1
fi
. tools/need.sh
need_build_tools
need_mount_library
need_windows_compilers
need_packaging
need_wine
need lintian:lintian clang++:clang pkg-config:pkg-config unzip:unzip man:man-db

failures=0
fail() {
    echo "FAILED package: $*"
    failures=$((failures + 1))
}
work=$(mktemp -d)
end() {
    # shellcheck disable=SC2086
    dpkg --purge $packages >/dev/null 2>&1 || true
    rm -rf "$work"
}
trap end EXIT
trap 'exit 1' INT TERM

./package.sh
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/CMakeCache.txt)
debs=(dist/*_"$version"_amd64.deb)

# --- The packages ---

lint() {
    # Tags of errors alone: the packages are for this system's users, not for Debian's archive.
    lintian --allow-root --fail-on error --display-level '=error' "${debs[@]}" || fail "lintian"
    for deb in "${debs[@]}"; do dpkg-deb -c "$deb"; done | awk '$2 != "root/root" || $1 ~ /^[^l]/ && $1 ~ /^.[r-][w-].[r-]w/' >"$work/odd"
    [ ! -s "$work/odd" ] || fail "owners or permissions: $(cat "$work/odd")"
}

# The files that are there because of the packages.
files_of() {
    # shellcheck disable=SC2086
    dpkg -L $packages | sort -u | while read -r path; do
        [ -d "$path" ] || echo "$path"
    done
}
named_quillet() {
    find / -xdev \( -path "$root" -o -path /proc -o -path /tmp -o -path /root -o -path /home \) -prune -o \
        -name '*quillet*' -print | sort
}

install_packages() {
    named_quillet >"$work/before"
    DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${debs[@]/#/./}"
    files_of >"$work/files"
}

remove_packages() {
    # shellcheck disable=SC2086
    dpkg --purge $packages
    while read -r path; do
        [ ! -e "$path" ] && [ ! -L "$path" ] || fail "$path is left"
    done <"$work/files"
    named_quillet | diff "$work/before" - || fail "something is left"
    ! ldconfig -p | grep quillet || fail "the loader still knows the library"
}

# --- What is installed ---

check_programs() {
    for program in wfxhost qdiag simulated-handset quillet-mount; do
        [ "$("$program" --version)" = "$program $version" ] || fail "the version of $program"
        man -w "$program" >/dev/null || fail "no manual page of $program"
    done
    grep -q "libquillet.so.0 => /.*lib/libquillet.so.0 " < <(ldd /usr/bin/qdiag) || fail "qdiag has another library"
    coproc PHONE { exec simulated-handset --device-root "$work/devices"; }
    read -r _ <&"${PHONE[0]}"
    QUILLET_DEVICE_ROOT=$work/devices wfxhost ls >"$work/listing" && [ -s "$work/listing" ] || fail "wfxhost ls"
    QUILLET_DEVICE_ROOT=$work/devices qdiag info >"$work/info" && [ -s "$work/info" ] || fail "qdiag info"
    kill "$PHONE_PID"
    wait "$PHONE_PID" 2>/dev/null || true
}

# Each header compiles alone, also twice under both of its names, and defines no macros but quillet's.
check_headers() {
    local flags standard compiler
    read -r -a flags <<<"$(pkg-config --cflags quillet)"
    # shellcheck disable=SC2016
    for compiler in g++ clang++; do
        (cd "$work" && find /usr/include/quillet -name '*.h' -printf '%P\n' | xargs -P "$(nproc)" -I HEADER sh -c '
            printf "#include \"%s\"\n#include <quillet/%s>\n" HEADER HEADER |
                '"$compiler"' -std=c++20 -Wall -Wextra -Werror -fsyntax-only '"${flags[*]}"' -x c++ - || echo HEADER') \
            >"$work/broken"
        [ ! -s "$work/broken" ] || fail "$compiler does not compile, alone: $(paste -sd ' ' "$work/broken")"
    done
    standard=$(grep -rhoE '^ *# *include *<[^>]*>' /usr/include/quillet | sort -u)
    ! grep -E '[./]' <<<"$standard" || fail "headers of the system in programs"
    macros() {
        g++ -std=c++20 "${flags[@]}" -dM -E -x c++ - | sed 's/^#define \([A-Za-z0-9_]*\).*/\1/' | sort
    }
    macros <<<"$standard" >"$work/theirs"
    macros <<<'#include <quillet.h>' | comm -13 "$work/theirs" - >"$work/ours"
    ! grep -v '^QUILLET_' "$work/ours" || fail "macros in programs"
    grep -q '^QUILLET_API$' "$work/ours" || fail "the macros were not found"
}

# --- Programs of others ---

# run_examples TITLE FOLDER
run_examples() {
    tests/examples.sh /usr/share/doc/libquillet-dev/examples "$2" /usr/bin/simulated-handset || fail "$1"
}

build_examples() {
    local compiler name
    cp -r /usr/share/doc/libquillet-dev/examples "$work/examples"
    for compiler in g++ clang++; do
        echo "== examples, $compiler"
        cmake -S "$work/examples" -B "$work/cmake-$compiler" -G Ninja -DCMAKE_CXX_COMPILER=$compiler \
            -DCMAKE_CXX_FLAGS='-Wall -Wextra -Werror' >/dev/null
        cmake --build "$work/cmake-$compiler" || fail "examples with CMake and $compiler"
        run_examples "examples with CMake and $compiler" "$work/cmake-$compiler"
        mkdir "$work/pkg-config-$compiler"
        for source in "$work"/examples/*.cpp; do
            name=$(basename "$source" .cpp)
            # shellcheck disable=SC2046
            $compiler -std=c++20 -Wall -Wextra -Werror "$source" $(pkg-config --cflags --libs quillet) -pthread \
                -o "$work/pkg-config-$compiler/$name" || fail "$name with pkg-config and $compiler"
        done
        run_examples "examples with pkg-config and $compiler" "$work/pkg-config-$compiler"
    done
}

# A program for another interface: its library has the next number.
check_interface() {
    local library=$work/other/libquillet.so
    mkdir -p "$work/other"
    sed 's/libquillet\.so\.0/libquillet.so.1/g' /usr/lib/libquillet.so >"$library"
    # shellcheck disable=SC2046
    g++ -std=c++20 "$work/examples/list_tree.cpp" $(pkg-config --cflags quillet) -L"$work/other" -lquillet -pthread \
        -o "$work/other/list_tree"
    if "$work/other/list_tree" 1 >"$work/output" 2>&1; then
        fail "a program for another interface runs"
    fi
    grep -q 'libquillet\.so\.1: cannot open' "$work/output" || fail "a program for another interface: $(cat "$work/output")"
    printf 'cmake_minimum_required(VERSION 3.22)\nproject(p CXX)\nfind_package(quillet 0.1 REQUIRED)\n' \
        >"$work/other/CMakeLists.txt"
    ! cmake -S "$work/other" -B "$work/other/build" >"$work/output" 2>&1 || fail "CMake takes 0.2 for 0.1"
    grep -q 'compatible with requested version "0.1"' "$work/output" || fail "CMake: $(cat "$work/output")"
}

# "cmake --install" to another prefix, and with DESTDIR.
check_prefix() {
    local prefix=$work/other-prefix
    cmake --install build --prefix "$prefix" >/dev/null
    DESTDIR=$work/staged cmake --install build --prefix /opt/phone >/dev/null
    (cd "$work/staged" && find . -type f) | sed 's,^\./opt/phone,.,' | sort >"$work/staged-files"
    (cd "$prefix" && find . -type f) | sort | diff - "$work/staged-files" || fail "DESTDIR installs something else"
    grep -q '^prefix=/opt/phone$' "$work/staged/opt/phone/lib/pkgconfig/quillet.pc" || fail "DESTDIR is in quillet.pc"
    "$prefix/bin/wfxhost" ls --help >/dev/null && grep -q "libquillet.so.0 => $prefix/" < <(ldd "$prefix/bin/qdiag") ||
        fail "qdiag under another prefix has another library"
    PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags --libs quillet >"$work/output"
    # shellcheck disable=SC2046
    g++ -std=c++20 "$work/examples/list_tree.cpp" $(cat "$work/output") -pthread -o "$prefix/list_tree" ||
        fail "pkg-config under another prefix: $(cat "$work/output")"
    cmake -S "$work/examples" -B "$prefix/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null &&
        grep -q "^quillet_DIR:PATH=$prefix/" "$prefix/build/CMakeCache.txt" || fail "CMake under another prefix"
}

# --- The Windows SDK ---

# exports TOOLS FILE: the names that a Windows library exports.
exports() {
    "$1-objdump" -p "$2" | sed -nE 's/^\s+\[ *[0-9]+\] (\+base\[ *[0-9]+\] +[0-9a-f]+ )?([A-Za-z_]\S*)$/\2/p' | sort
}

check_sdk() {
    local sdk=$work/sdk/quillet-$version-windows-sdk wine=${XDG_CACHE_HOME:-$HOME/.cache}/quillet-wine width compiler
    unzip -q "dist/quillet-$version-windows-sdk.zip" -d "$work/sdk"
    mkdir -p "$wine"
    for width in 32 64; do
        if [ $width = 32 ]; then
            compiler=i686-w64-mingw32
            if ! tests/windows/get-wine32.sh "$wine"; then
                echo '** The 32-bit Wine cannot be set up: THE 32-BIT SDK IS NOT TESTED. **' >&2
                continue
            fi
        else
            compiler=x86_64-w64-mingw32
        fi
        echo "== Windows SDK, $width bits"
        cmake -S "$sdk/examples" -B "$work/windows$width" -G Ninja -DCMAKE_PREFIX_PATH="$sdk/win$width" \
            -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-${compiler%%-*}.cmake" \
            -DCMAKE_CXX_FLAGS='-Wall -Wextra -Werror' -DCMAKE_EXE_LINKER_FLAGS=-static >/dev/null &&
            cmake --build "$work/windows$width" || fail "examples with the SDK of $width bits"
        exports $compiler "$sdk/win$width/bin/quillet-0.dll" >"$work/exports"
        exports $compiler "$(ls build/win$width/quillet.wfx*)" | grep -v '^Fs' | diff "$work/exports" - ||
            fail "quillet-0.dll of $width bits exports something else than the plug-in"
        cp "$sdk/win$width/bin/quillet-0.dll" "$work/windows$width/"
        tests/windows/session.py $width "$wine" "$root/build/win$width" "$root/build" "$work/windows$width/list_tree.exe" 6 |
            tee "$work/output" || fail "list_tree with the SDK of $width bits"
        grep -q 'notes.txt' "$work/output" || fail "list_tree with the SDK of $width bits lists no files"
    done
}

lint
install_packages
check_programs
check_headers
build_examples
check_interface
check_prefix
remove_packages
check_sdk
echo "== packages: $([ $failures -eq 0 ] && echo passed || echo FAILED)"
[ $failures -eq 0 ]
