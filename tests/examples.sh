#!/usr/bin/env bash
# examples.sh SOURCES PROGRAMS HANDSET: runs the example programs in the folder PROGRAMS with the simulated handset HANDSET,
# and compares their output with the comments at the heads of their sources. Exit status 1 if any differs.
#
# Lines of a comment that begin with "//     " count:
#     handset> COMMAND   before a program: prepares the handset. After it: is given to the handset while the program
#                        runs, with the others in turn, each as often as it takes until the handset carries it out
#     $ PROGRAM ...      runs the program
#     any other          its output: standard output, standard error, then "[exit status N]" unless N is 0
# Every example finds two handsets, COM1 and COM2; the commands go to the first.
set -euo pipefail
set -f
sources=$(realpath "$1")
programs=$(realpath "$2")
handset=$(realpath "$3")

folder=$(mktemp -d)
second=
cleanup() {
    [ -z "$second" ] || kill "$second" 2>/dev/null || true
    [ -z "${HANDSET_PID-}" ] || kill "$HANDSET_PID" 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
cd "$folder"
mkfifo ready

start_handsets() {
    local tty
    coproc HANDSET { exec "$handset" --device-root root; }
    read -r -u "${HANDSET[0]}" _
    "$handset" </dev/null >ready &
    second=$!
    read -r _ tty <ready
    ln -sf "$tty" root/dev/ttyUSB1
}

stop_handsets() {
    kill "$second" "$HANDSET_PID"
    wait "$second" "$HANDSET_PID" 2>/dev/null || true
    second=
}

# True when the handset has carried out the command.
tell() {
    local line
    printf '%s\n' "$1" >&"${HANDSET[1]}"
    while read -r -u "${HANDSET[0]}" line; do
        case $line in
        ok) return 0 ;;
        error:*) return 1 ;;
        esac
    done
    return 1
}

run() {
    local status=0 program line
    # shellcheck disable=SC2086
    QUILLET_DEVICE_ROOT=$folder/root timeout 60 "$programs"/$command >out 2>err </dev/null &
    program=$!
    while [ ${#meanwhile[@]} -gt 0 ] && kill -0 $program 2>/dev/null; do
        for line in "${meanwhile[@]}"; do
            while ! tell "$line" && kill -0 $program 2>/dev/null; do sleep 0.01; done
            sleep 0.01
        done
    done
    wait $program || status=$?
    cat out err >got
    [ $status -eq 0 ] || echo "[exit status $status]" >>got
    printf '%s' "$expected" >expected
    diff -u --label "$name: $command" --label "its output" expected got || failures=$((failures + 1))
    runs=$((runs + 1))
}

end_of_run() {
    [ -z "$command" ] || run
    command=
    expected=
    meanwhile=()
}

failures=0
for source in $(find "$sources" -name '*.cpp' | sort); do
    name=${source##*/}
    runs=0
    command=
    end_of_run
    start_handsets
    while IFS= read -r line && [ "${line#//}" != "$line" ]; do
        text=${line#//     }
        case $line in
        "//     handset> "*)
            if [ -n "$command" ]; then
                meanwhile+=("${text#handset> }")
            else
                tell "${text#handset> }"
            fi
            ;;
        "//     \$ "*) command=${text#\$ } ;;
        "//     "*) expected+=$text$'\n' ;;
        *) end_of_run ;;
        esac
    done <"$source"
    end_of_run
    stop_handsets
    if [ $runs -eq 0 ]; then
        echo "$name: the comment at its head shows no run"
        failures=$((failures + 1))
    fi
done
[ $failures -eq 0 ]
