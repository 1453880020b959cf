#!/bin/sh
# windows-sdk.sh FOLDER VERSION: fills FOLDER with what Windows programs are built with, from build/win32 and build/win64.
set -eu
cd "$(dirname "$0")/.."
for width in 32 64; do
    for component in runtime development; do
        cmake --install build/win$width --prefix "$1/win$width" --component $component
    done
done
cp -r examples "$1/"
sed "s/@VERSION@/$2/; s/\$/\r/" packaging/sdk-readme.txt > "$1/readme.txt"
