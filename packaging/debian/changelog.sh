#!/bin/sh
# changelog.sh CHANGELOG MAINTAINER: prints the list of changes in the form of Debian's changelogs.
set -eu
tr -d '`' < "$1" | awk -v maintainer="$2" '
# Prints the change that was read, in lines of at most 80 characters.
function end_change(    count, words, i, line) {
    count = split(change, words)
    line = "  *"
    for (i = 1; i <= count; i++) {
        if (length(line) + length(words[i]) >= 80) {
            print line
            line = "   "
        }
        line = line " " words[i]
    }
    if (count)
        print line
    change = ""
}
function end_version() {
    end_change()
    if (version)
        printf "\n -- %s  %s\n\n", maintainer, date
}
/^## / {
    end_version()
    version = $2
    command = "LC_ALL=C date -u -R -d " substr($3, 2, 10)
    command | getline date
    close(command)
    printf "quillet (%s) unstable; urgency=medium\n\n", version
    next
}
version && /^- / { end_change() }
version { sub(/^- /, ""); change = change " " $0 }
END { end_version() }'
