#!/bin/sh
# accepted-ids.sh: the USB ids of the accepted handsets, "05c6:3197" a line, from the one table of them.
set -eu
cd "$(dirname "$0")/.."
sed -n '/KnownDevices\[\] = {/,/};/s/.*{0x\([0-9A-Fa-f]*\), 0x\([0-9A-Fa-f]*\)}.*/\1:\2/p' plugin/port_discovery.cpp |
    tr 'A-F' 'a-f'
