#!/bin/sh
# Builds the Windows products, checks the contents of the files, and runs them under Wine with the simulated handset.
# Called by ./test --windows.
set -eu
cd "$(dirname "$0")/../.."
. tools/need.sh
need_build_tools
need_windows_compilers
need_wine
wine=${XDG_CACHE_HOME:-$HOME/.cache}/quillet-wine
begin=$(date +%s)
export PYTHONDONTWRITEBYTECODE=1

cmake --preset linux
cmake --build --preset linux --target simulated-handset
for preset in win32 win64; do
    cmake --preset $preset -DQUILLET_TESTS=ON
    cmake --build --preset $preset
done
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/CMakeCache.txt)
status=0
tests/windows/product_checks.sh build/win32/quillet.wfx build/win64/quillet.wfx64 "$version" \
    build/win64/wfxhost.exe build/win64/qdiag.exe || status=1

widths=64
mkdir -p "$wine"
if tests/windows/get-wine32.sh "$wine"; then
    widths="32 64"
else
    echo '*******************************************************************************' >&2
    echo '** The 32-bit Wine cannot be set up; the reason is given above.              **' >&2
    echo '** THE 32-BIT LIBRARY IS BUILT BUT NOT RUN; the 64-bit one is tested alone.  **' >&2
    echo '*******************************************************************************' >&2
fi
for width in $widths; do
    echo "== Windows, $width bits"
    tests/windows/session.py $width "$wine" "$PWD/build/win$width" "$PWD/build" || status=1
done

echo "== packages"
./package.sh
tests/package_checks.sh || status=1
echo "== Windows: $([ $status -eq 0 ] && echo passed || echo FAILED), $(($(date +%s) - begin)) s"
exit $status
