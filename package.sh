#!/bin/sh
# Installs what is missing, builds, and makes what others install, in dist/:
#     quillet-VERSION.zip                   the plug-in for Windows
#     quillet-VERSION-windows-sdk.zip       the library for Windows programs
#     quillet-VERSION-linux-x86_64.tar.gz   plug-in and programs for any Linux of Debian 12's age or newer
#     quillet_, libquillet0_, libquillet-dev_VERSION_amd64.deb
set -eu
if [ $# -ne 0 ]; then
    echo "usage: ./package.sh" >&2
    exit 2
fi
cd "$(dirname "$0")"
. tools/need.sh
need_build_tools
need_archive_library
need_windows_compilers
need_packaging
need_mount_library

./build.sh
for preset in win32 win64; do
    cmake --preset $preset
done
cmake --build --preset win32 --target quillet quillet_library
cmake --build --preset win64 --target quillet quillet_library wfxhost qdiag
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/CMakeCache.txt)
ids=$(packaging/accepted-ids.sh | paste -sd ' ' -)
[ -n "$version" ] && [ -n "$ids" ]

# fill NAME TARGET: a text of packaging/ with the version and the accepted ids.
fill() {
    sed "s/@VERSION@/$version/; s/@IDS@/$ids/" "packaging/$1" > "$2"
}

rm -rf dist
linux=quillet-$version-linux-x86_64
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p dist "$work/windows" "$work/$linux"

cp build/win32/quillet.wfx build/win64/quillet.wfx64 build/win64/wfxhost.exe build/win64/qdiag.exe "$work/windows/"
for text in pluginst.inf readme.txt; do
    fill $text "$work/$text"
    sed 's/$/\r/' "$work/$text" > "$work/windows/$text"
done
zip=$PWD/dist/quillet-$version.zip
(cd "$work/windows" && zip -q -X -9 "$zip" pluginst.inf readme.txt quillet.wfx quillet.wfx64 wfxhost.exe qdiag.exe)

for program in quillet.wfx libquillet.so.0 wfxhost qdiag simulated-handset quillet-mount; do
    strip --strip-unneeded -o "$work/$linux/$program" build/$program
done
fill INSTALL "$work/$linux/INSTALL"
packaging/udev-rules.sh > "$work/$linux/70-quillet.rules"
cp packaging/quillet-mount.service "$work/$linux/"
mkdir "$work/$linux/man" "$work/$linux/completions"
for program in wfxhost qdiag simulated-handset; do
    gzip -9n < "build/documents/$program.1" > "$work/$linux/man/$program.1.gz"
    cp "build/documents/$program.bash" "$work/$linux/completions/$program"
done
gzip -9n < docs/man/quillet-mount.1 > "$work/$linux/man/quillet-mount.1.gz"
tar -C "$work" --owner=0 --group=0 --sort=name -czf "dist/$linux.tar.gz" "$linux"

packaging/windows-sdk.sh "$work/quillet-$version-windows-sdk" "$version"
sdk=$PWD/dist/quillet-$version-windows-sdk.zip
(cd "$work" && zip -q -X -9 -r "$sdk" "quillet-$version-windows-sdk")
cpack --config build/CPackConfig.cmake -B "$work/debian"
mv "$work"/debian/*.deb dist/
ls -l dist
