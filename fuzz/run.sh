#!/bin/sh
# run.sh SECONDS: builds the fuzzers and lets each search for that long, beginning with its corpus. What they find
# is kept in build-fuzz/fuzz/NAME/, together with the inputs that reached something new. Called by ./test --fuzz.
set -eu
cd "$(dirname "$0")/.."
. tools/need.sh
need_build_tools
need clang++:clang llvm-symbolizer:llvm /usr/lib/llvm-14/lib/clang/14.0.6/lib/linux:libclang-rt-14-dev
seconds=$1
root=$PWD

export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
cmake --preset fuzz
cmake --build --preset fuzz

# The fuzzers write files where they are started; best in memory.
files=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
trap 'rm -rf "$files"' EXIT
status=0
for source in fuzz/fuzz_*.cpp; do
    name=$(basename "$source" .cpp)
    name=${name#fuzz_}
    work=$root/build-fuzz/fuzz/$name
    mkdir -p "$work/found"
    if (cd "$files" && "$root/build-fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=10 -close_fd_mask=1 \
        -print_final_stats=1 -artifact_prefix="$work/" "$work/found" "$root/fuzz/corpus/$name") \
        >"$work/log.txt" 2>&1; then
        echo "$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log.txt") executions, nothing found"
    else
        tail -n 60 "$work/log.txt"
        echo "$name: FAILED, the input that made it fail is named above" >&2
        status=1
    fi
done
exit $status
