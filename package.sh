#!/bin/sh
# Installs what is missing, builds, and makes what users install: dist/quillet-VERSION.zip (Windows) and
# dist/quillet-VERSION-linux-x86_64.tar.gz.
set -eu
if [ $# -ne 0 ]; then
    echo "usage: ./package.sh" >&2
    exit 2
fi
cd "$(dirname "$0")"
. tools/need.sh
need_build_tools
need_windows_compilers
need zip:zip

./build.sh
for preset in win32 win64; do
    cmake --preset $preset
done
cmake --build --preset win32 --target quillet
cmake --build --preset win64 --target quillet wfxhost qdiag
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

for program in quillet.wfx wfxhost qdiag simulated-handset quillet-mount; do
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
ls -l dist
