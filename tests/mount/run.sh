#!/usr/bin/env bash
# run.sh: builds and mounts a simulated handset, and runs programs written by others, which check themselves, in the
# mounted folder. On a handset that behaves, all must succeed. On one that sometimes drops, delays and refuses, each must
# succeed with the right content or report an error.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
. tools/need.sh
need_build_tools
need_mount_library
need fio:fio rsync:rsync git:git /usr/sbin/bonnie++:bonnie++ sqlite3:sqlite3 vim:vim fusermount3:fuse3
./build.sh >/dev/null
[ -x build/quillet-mount ] || { echo "quillet-mount was not built" >&2; exit 1; }

work=$(mktemp -d)
mnt=$work/mnt
log=$work/log
failures=0
fail() {
    echo "FAILED mount: $*"
    tail -n 15 "$log" | sed 's/^/    /'
    failures=$((failures + 1))
}
end() {
    cd "$root"
    fusermount3 -q -u -z "$mnt" || true
    [ -z "${PHONE_PID-}" ] || kill "$PHONE_PID" || true
    rm -rf "$work"
}
trap end EXIT
trap 'exit 1' INT TERM

# ask COMMAND...: sends a command to the handset and prints its output.
ask() {
    echo "$*" >&"${PHONE[1]}"
    local line
    while read -r line <&"${PHONE[0]}"; do
        case $line in
        ok) return 0 ;;
        error*) return 1 ;;
        *) echo "$line" ;;
        esac
    done
    return 1
}

# only PATTERN COMMAND...: the command must succeed, or print only errors that match the pattern.
only() {
    local pattern=$1 complaints=$work/complaints
    shift
    "$@" 2>"$complaints" && return 0
    cat "$complaints"
    ! grep -vE "$pattern" "$complaints"
}

# --- The programs. Each works in a folder of its own and fails when the program fails. ---

use_fio() {
    fio --name=random --directory="$1" --rw=randrw --bs=4k --size=192k --numjobs=3 --verify=crc32c \
        --verify_fatal=1 --verify_state_save=0 --fallocate=none --group_reporting
}
check_fio() {
    [ "$(cat "$1"/random.* | wc -c)" -eq $((3 * 192 * 1024)) ]
}

# The phone cannot set times: programs that set them report it, and must report nothing else.
use_rsync() {
    only 'failed to set times|some files/attrs were not transferred' rsync -a --checksum "$work/tree/" "$1/" &&
        rsync -a --checksum "$1/" "$work/rsync-back/"
}
check_rsync() {
    diff -r --no-dereference "$work/tree" "$work/rsync-back"
}

use_tar() {
    tar -C "$work/tree" -cf "$work/out.tar" . &&
        only 'Cannot utime|Exiting with failure status' tar -C "$1" -xf "$work/out.tar" &&
        mkdir -p "$work/tar-back" && tar -C "$1" -cf - . | tar -C "$work/tar-back" -xf -
}
check_tar() {
    diff -r --no-dereference "$work/tree" "$work/tar-back"
}

use_git() {
    git init -q "$1/repository" &&
        cp -r "$work/tree/." "$1/repository" &&
        git -C "$1/repository" add . &&
        git -C "$1/repository" -c user.name=t -c user.email=t@example.org commit -q -m first &&
        git -C "$1/repository" repack -q -a -d &&
        git clone -q --no-local "$1/repository" "$1/clone" &&
        git -C "$1/clone" fsck --strict
}
check_git() {
    git -C "$1/repository" fsck --strict && [ -z "$(git -C "$1/clone" status --porcelain)" ] &&
        diff -r --no-dereference -x .git -x empty "$work/tree" "$1/clone"
}

use_bonnie() {
    /usr/sbin/bonnie++ -f -q -d "$1" -s 2 -r 1 -n 1:2000:10:4 -u "$(id -u):$(id -g)"
}
check_bonnie() {
    [ -z "$(find "$1" -type f)" ]
}

use_editors() {
    cp "$work/tree/text" "$1/sed" && cp "$work/tree/text" "$1/vim" && sync "$1/sed" "$1/vim" &&
        sed -i 's/line/LINE/' "$1/sed" &&
        vim -N -u NONE -e -s -c 'set backup' -c '%s/line/LINE/' -c 'wq' "$1/vim" </dev/null
}
check_editors() {
    sed 's/line/LINE/' "$work/tree/text" | cmp - "$1/sed" && cmp "$1/sed" "$1/vim"
}

use_sqlite() {
    sqlite3 -bail "$1/data.db" "create table t(a integer primary key, b text);
        begin; with recursive n(i) as (select 1 union all select i + 1 from n where i < 500)
        insert into t select i, hex(randomblob(20)) from n; commit;
        delete from t where a % 3 = 0; vacuum; pragma integrity_check;"
}
check_sqlite() {
    [ "$(sqlite3 "$1/data.db" 'pragma integrity_check; select count(*) from t;' | tr '\n' ' ')" = "ok 334 " ]
}

use_lookers() {
    cp -r "$work/tree" "$1/" && (cd "$1/tree" && find . -printf '%y %P\n' | sort >"$work/found") &&
        du -s "$1" && df "$1"
}
check_lookers() {
    (cd "$work/tree" && find . -printf '%y %P\n') | sort | diff - "$work/found" && diff -r --no-dereference "$work/tree" "$1/tree"
}

programs="fio rsync tar git bonnie editors sqlite lookers"

# --- The two handsets ---

make_tree() {
    mkdir -p "$work/tree/sub/deep" "$work/tree/empty"
    cp efs2/*.cpp "$work/tree/sub"
    seq -f 'line %g' 1 2000 >"$work/tree/text"
    head -c 100001 /dev/urandom >"$work/tree/sub/deep/random"
    : >"$work/tree/nothing"
    printf x >"$work/tree/blanks and $(printf '\001\377') bytes"
    printf '#!/bin/sh\necho ran\n' >"$work/tree/sub/script"
    chmod 755 "$work/tree/sub/script"
    ln -s ../text "$work/tree/sub/link"
    ln -s nowhere "$work/tree/sub/dangling"
}

# misbehave: for a while, something fails about every 150 requests.
misbehave() {
    local i
    for i in 0 1; do
        ask misbehave drop skip=$((170 + i * 400))
        ask misbehave delay value=300 skip=$((90 + i * 150))
        ask misbehave refuse prefix=4B13 value=16 skip=$((250 + i * 300))
        ask misbehave corrupt prefix=4B1305 skip=$((100 + i * 150))
        ask misbehave cut prefix=4B1304 value=18 skip=$((60 + i * 150))
    done
}

# run KIND PROGRAM: KIND is good or bad.
run() {
    local folder=$mnt/$1-$2 begin=$SECONDS outcome="succeeded"
    rm -rf "$work"/*-back
    mkdir "$folder"
    [ "$1" = good ] || misbehave
    if ! "use_$2" "$folder" >"$log" 2>&1 </dev/null; then
        outcome="reported an error" # at least with its exit status
    fi
    ask behave
    if [ "$outcome" = succeeded ] && ! "check_$2" "$folder" >>"$log" 2>&1; then
        outcome="WRONG CONTENT"
    fi
    printf '%5d s  %-4s handset  %-8s %s\n' $((SECONDS - begin)) "$1" "$2" "$outcome"
    case $1,$outcome in
    good,succeeded | bad,succeeded | bad,"reported an error") ;;
    *) fail "$2 on a $1 handset: $outcome" ;;
    esac
}

coproc PHONE { exec build/simulated-handset --device-root "$work/devices" 2>&1; }
read -r ready <&"${PHONE[0]}"
[[ $ready = ready* ]] || { echo "the simulated handset does not start: $ready" >&2; exit 1; }
export QUILLET_DEVICE_ROOT=$work/devices
mkdir "$mnt"
build/quillet-mount "$mnt"
make_tree
for kind in good bad; do
    for program in $programs; do
        run "$kind" "$program"
    done
done
grep -q '^COM1 ' < <(df -h "$mnt") && grep -qx fuse.quillet < <(findmnt -n -o FSTYPE "$mnt") || fail "df or findmnt"

# The phone's files, as the handset sees them: no temporary file of the editors remains, and no file is truncated.
ask export good-editors/sed "$work/on-phone"
sed 's/line/LINE/' "$work/tree/text" | cmp - "$work/on-phone" || fail "the phone holds something else"
fusermount3 -u "$mnt"
[ "$failures" -eq 0 ]
