#!/bin/sh
# Merges what a fuzzer found into its corpus.
set -eu
usage() {
    cat <<'TEXT'
usage: fuzz/keep-corpus.sh NAME [FILE ...]

Makes fuzz/corpus/NAME.tar.gz anew from the inputs in it and from those that ./test --fuzz found
(build-fuzz/fuzz/NAME/found): one input for each new place in the code, the smallest that reaches it.

FILE: an input that failed and whose fault is fixed now. It stays in the corpus whatever it reaches.
TEXT
}

case ${1-} in
--help)
    usage
    exit 0
    ;;
'' | -*)
    usage >&2
    exit 2
    ;;
esac
name=$1
shift
for file in "$@"; do
    if [ ! -f "$file" ]; then
        echo "keep-corpus: no file $file" >&2
        exit 2
    fi
done
root=$(cd "$(dirname "$0")/.." && pwd)
program=$root/build-fuzz/fuzz_$name
if [ ! -x "$program" ]; then
    echo "keep-corpus: no fuzzer $program; ./test --fuzz builds it" >&2
    exit 1
fi

. "$root/fuzz/corpus.sh"
make_scratch
mkdir "$scratch/new" "$scratch/fixed"
for file in "$@"; do
    cp "$file" "$scratch/fixed/fixed-$(sha1sum <"$file" | cut -c 1-40)"
done
cd "$root"
work=$root/build-fuzz/fuzz/$name
mkdir -p "$work/found"
unpack_corpus "$name" "$scratch/old"
before=$(find "$scratch/old" -type f | wc -l)
if ! (cd "$scratch" && "$program" -merge=1 -use_counters=0 -timeout=10 -close_fd_mask=1 new "$work/found" old fixed) \
    >"$work/log.txt" 2>&1; then
    tail -n 60 "$work/log.txt"
    echo "keep-corpus: the merge failed" >&2
    exit 1
fi
find "$scratch/old" "$scratch/fixed" -name 'fixed-*' -exec cp {} "$scratch/new" ';'
pack_corpus "$name" "$scratch/new"
echo "$name: $(find "$scratch/new" -type f | wc -l) inputs (before: $before)"
