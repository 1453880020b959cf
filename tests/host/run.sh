#!/bin/sh
# Builds the Linux products and drives the plug-in in a file manager, Double Commander, on a screen of its own, against
# the simulated handset. Names of stages (functions of stages.py) do only those. Called by ./test --host.
set -eu
cd "$(dirname "$0")/../.."
. tools/need.sh
need_build_tools
need_file_manager

cmake --preset linux
cmake --build --preset linux --target quillet simulated-handset
echo "== Double Commander"
exec tests/host/session.py "$PWD/build" "$@"
