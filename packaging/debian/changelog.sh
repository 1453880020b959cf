#!/bin/sh
# changelog.sh CHANGELOG MAINTAINER: prints the list of changes in the form of Debian's changelogs.
set -eu
awk -v maintainer="$2" '
function close_entry() { if (version) printf "\n -- %s  %s\n\n", maintainer, date }
/^## / {
    close_entry()
    version = $2
    day = substr($3, 2, 10)
    command = "date -u -R -d " day
    command | getline date
    close(command)
    printf "quillet (%s) unstable; urgency=medium\n\n", version
    next
}
version && /^- / { sub(/^- /, "  * "); print; next }
version && NF { sub(/^ +/, "    "); print }
END { close_entry() }' "$1" | tr -d '`'
