#!/bin/sh
# accepted-ids.sh: prints the USB ids of the accepted phones, one per line ("05c6:3197"), from their table.
set -eu
cd "$(dirname "$0")/.."
sed -n '/KnownDevices\[\] = {/,/};/s/.*{0x\([0-9A-Fa-f]*\), 0x\([0-9A-Fa-f]*\)}.*/\1:\2/p' plugin/port_discovery.cpp |
    tr 'A-F' 'a-f'
