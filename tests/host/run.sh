#!/bin/sh
# Builds the Linux products and tests the plug-in in a file manager, Double Commander, on a private screen with the
# simulated handset. Arguments select stages by name (functions in stages.py). Called by ./test --host.
set -eu
cd "$(dirname "$0")/../.."
. tools/need.sh
need_build_tools
need_file_manager

cmake --preset linux
cmake --build --preset linux --target quillet simulated-handset
echo "== Double Commander"
exec tests/host/session.py "$PWD/build" "$@"
