#!/bin/sh
# Installs what is missing, builds the benchmarks, and prints their table.
set -eu
usage() {
    cat <<'TEXT'
usage: ./bench.sh [--quick | --full] [--only TOPIC] [--json FILE]

Prints what the client adds to a bare request and answer, each figure beside its floor of the same run, and
writes the same rows to build-bench/bench.json, or to FILE.

--quick: about three minutes on an idle machine (the default).
--full: about fifteen; with files of 64 MiB, folders of 100 000 entries and more at 1 ms.
--only TOPIC: exchange, listing, transfer, framing, idle, memory, ports, programs or mount.
TEXT
}

cd "$(dirname "$0")"
here=$(pwd)
cd "$OLDPWD"
size=--quick
only=
json=$here/build-bench/bench.json
while [ $# -gt 0 ]; do
    case $1 in
    --quick | --full) size=$1 ;;
    --only | --json)
        if [ $# -lt 2 ]; then
            usage >&2
            exit 2
        fi
        if [ "$1" = --only ]; then only=$2; else json=$2; fi
        shift
        ;;
    --help)
        usage
        exit 0
        ;;
    *)
        echo "bench.sh: unknown option $1" >&2
        usage >&2
        exit 2
        ;;
    esac
    shift
done

. "$here/tools/need.sh"
need_build_tools
need_archive_library
(
    cd "$here"
    cmake --preset bench
    cmake --build --preset bench --target quillet-bench
) >&2
exec "$here/build-bench/quillet-bench" "$size" ${only:+--only "$only"} --json "$json"
