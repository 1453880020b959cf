#!/bin/sh
# run.sh SECONDS: builds the fuzzers and runs each for that long, starting with its corpus. build-fuzz/fuzz/NAME/ keeps
# the inputs that failed, and found/ in it the inputs that reached new code. Called by ./test --fuzz.
set -eu
cd "$(dirname "$0")/.."
. tools/need.sh
. fuzz/corpus.sh
need_build_tools
need clang++:clang llvm-symbolizer:llvm /usr/lib/llvm-14/lib/clang/14.0.6/lib/linux:libclang-rt-14-dev
seconds=$1
root=$PWD

cmake --preset fuzz
cmake --build --preset fuzz

make_scratch
status=0
for source in fuzz/fuzz_*.cpp; do
    name=$(basename "$source" .cpp)
    name=${name#fuzz_}
    work=$root/build-fuzz/fuzz/$name
    mkdir -p "$work/found"
    unpack_corpus "$name" "$work/corpus"
    if (cd "$scratch" && "$root/build-fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=10 -close_fd_mask=1 \
        -print_final_stats=1 -artifact_prefix="$work/" "$work/found" "$work/corpus") >"$work/log.txt" 2>&1; then
        echo "$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log.txt") executions, nothing found"
    else
        tail -n 60 "$work/log.txt"
        echo "$name: FAILED, the input that made it fail is named above" >&2
        status=1
    fi
done
exit $status
