#!/bin/sh
# package_checks.sh: unpacks the packages from ./package.sh and checks that users get what they need. Exit status 1 if
# they do not.
set -eu
cd "$(dirname "$0")/.."
failures=0
fail() {
    echo "FAILED packages: $*"
    failures=$((failures + 1))
}
# expect_files FOLDER NAME...: the folder holds exactly these files.
expect_files() {
    found=$(cd "$1" && find . -type f | sed 's/^\.\///' | sort | paste -sd ' ' -)
    shift
    [ "$found" = "$*" ] || fail "found [$found] instead of [$*]"
}
# expect_text FILE REGEX
expect_text() {
    grep -qE "$2" "$1" || fail "$1 has no line like $2"
}

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/CMakeCache.txt)
work=$(mktemp -d)
device_root=$work/devices
handset=
trap '[ -z "$handset" ] || kill "$handset"; rm -rf "$work"' EXIT
unzip -q "dist/quillet-$version.zip" -d "$work/windows"
tar -C "$work" -xzf "dist/quillet-$version-linux-x86_64.tar.gz"
windows=$work/windows
linux=$work/quillet-$version-linux-x86_64

expect_files "$windows" pluginst.inf qdiag.exe quillet.wfx quillet.wfx64 readme.txt wfxhost.exe
expect_text "$windows/pluginst.inf" '^\[plugininstall\].$'
expect_text "$windows/pluginst.inf" '^type=wfx.$'
expect_text "$windows/pluginst.inf" '^file=quillet\.wfx.$'
expect_text "$windows/readme.txt" 'wfxhost\.exe .*qdiag\.exe'
tests/windows/product_checks.sh "$windows/quillet.wfx" "$windows/quillet.wfx64" "$version" \
    "$windows/wfxhost.exe" "$windows/qdiag.exe" || fail "Windows editions"

expect_files "$linux" 70-quillet.rules INSTALL completions/qdiag completions/simulated-handset completions/wfxhost \
    libquillet.so.0 man/qdiag.1.gz man/quillet-mount.1.gz man/simulated-handset.1.gz man/wfxhost.1.gz qdiag quillet-mount \
    quillet-mount.service quillet.wfx simulated-handset wfxhost
[ "$("$linux/quillet-mount" --version)" = "quillet-mount $version" ] || fail "the version of quillet-mount"
for program in wfxhost qdiag simulated-handset; do
    [ "$("$linux/$program" --version)" = "$program $version" ] || fail "the version of $program"
    gzip -dc "$linux/man/$program.1.gz" | grep -q "^\.TH .*quillet $version" || fail "the manual page of $program"
    bash -n "$linux/completions/$program" || fail "the completion of $program"
done
rules=$linux/70-quillet.rules
for id in 05c6:3197 05c6:9002 4b56:0001 4b56:0002; do
    same="idVendor\}==\"${id%:*}\", ATTRS?\{idProduct\}==\"${id#*:}\", ENV\{ID_MM_DEVICE_IGNORE\}=\"1\""
    expect_text "$rules" "^SUBSYSTEM==\"tty\", .*$same, TAG\+=\"uaccess\"\$"
    expect_text "$rules" "^SUBSYSTEM==\"usb\", .*$same\$"
done
[ "$(grep -c uaccess "$rules")" -eq "$(grep -cE '^ *\{0x[0-9A-F]{4}, 0x[0-9A-F]{4}\},' plugin/port_discovery.cpp)" ] ||
    fail "the udev rules and the accepted phones differ"
if grep -rn '@[A-Z]*@' "$windows"/*.txt "$windows"/*.inf "$linux"/INSTALL; then
    fail "a placeholder was not filled in"
fi

# The unpacked programs must find the unpacked plug-in and the handset.
mkfifo "$work/output"
build/simulated-handset --device-root "$device_root" > "$work/output" < /dev/null &
handset=$!
read -r ready < "$work/output" || fail "the simulated handset did not start"
QUILLET_DEVICE_ROOT=$device_root "$linux/wfxhost" ls > "$work/listing" || fail "the unpacked wfxhost: ${ready-}"
QUILLET_DEVICE_ROOT=$device_root "$linux/qdiag" info > "$work/info" || fail "the unpacked qdiag"
grep -q . "$work/info" || fail "the unpacked qdiag printed nothing about the phone"
[ -s "$work/listing" ] || fail "the unpacked plug-in listed nothing"

[ "$failures" -eq 0 ]
