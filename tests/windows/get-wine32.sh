#!/bin/sh
# get-wine32.sh FOLDER: unpacks the 32-bit Wine of Debian 12 into FOLDER/root, unless it is there already.
#
# It uses a package state of its own and does not change the machine's: no foreign architecture, no mounts. Outside
# FOLDER it creates a single link, /lib/ld-linux.so.2, if the machine has none.
set -eu
root=$1/root
state=$1/root.apt
# The loader has a fixed path, outside FOLDER.
link_loader() {
    [ ! -e /lib/ld-linux.so.2 ] || return 0
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    $as_root ln -sfn "$root/lib/i386-linux-gnu/ld-linux.so.2" /lib/ld-linux.so.2
}
if [ -e "$root/.done" ]; then
    link_loader
    exit 0
fi
rm -rf "$root" "$state"
mkdir -p "$root" "$state/lists/partial" "$state/archives/partial"
: > "$state/status"
uri=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' \
    'Component: main' | head -1)
[ -n "$uri" ] || { echo "get-wine32: no package source for bookworm main" >&2; exit 1; }
echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $uri bookworm main" > "$state/list"
apt32() {
    apt-get -qq -o APT::Architecture=i386 -o APT::Architectures=i386 -o APT::Sandbox::User="$(id -un)" \
        -o Dir::Etc::SourceList="$state/list" -o Dir::Etc::SourceParts=/dev/null -o Dir::State="$state" \
        -o Dir::State::status="$state/status" -o Dir::Cache="$state" -o Debug::NoLocking=1 "$@"
}
apt32 update
apt32 install -y --no-install-recommends --download-only wine32
for package in "$state"/archives/*.deb; do
    dpkg-deb -x "$package" "$root"
done
# Debian's start script prefers the machine's own 64-bit server.
ln -sfn wineserver32 "$root/usr/lib/wine/wineserver"
# As the package's installation does: Wine loads this library only if it is marked as Wine's own.
zlib=$root/usr/i686-w64-mingw32/lib/zlib1.dll
{
    head -c 64 "$zlib"
    printf 'Wine builtin DLL'
    head -c 16 /dev/zero
    tail -c +97 "$zlib"
} > "$root/usr/lib/i386-linux-gnu/wine/i386-windows/zlib1.dll"
rm -rf "$state"
link_loader
touch "$root/.done"
