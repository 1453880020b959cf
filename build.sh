#!/bin/sh
# Builds the Linux products into build/.
set -eu
if [ $# -ne 0 ]; then
    echo "usage: ./build.sh" >&2
    exit 2
fi
cd "$(dirname "$0")"
cmake --preset linux
cmake --build --preset linux
