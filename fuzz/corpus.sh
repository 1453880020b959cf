# shellcheck shell=sh
# Sourced by the scripts of this folder, at the root of the tree: the corpora, and what every run of a fuzzer needs.
# The inputs of fuzzer NAME are the files of fuzz/corpus/NAME.tar.gz.

export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

# unpack_corpus NAME FOLDER empties FOLDER and unpacks the corpus there. A new fuzzer has no corpus yet.
unpack_corpus() {
    rm -rf "$2"
    mkdir -p "$2"
    [ ! -e "fuzz/corpus/$1.tar.gz" ] || tar -xzf "fuzz/corpus/$1.tar.gz" -C "$2"
}

# pack_corpus NAME FOLDER makes the corpus of the files in FOLDER. The same files make the same archive.
pack_corpus() {
    find "$2" -type f -printf '%f\n' | LC_ALL=C sort |
        tar -c --format=ustar --mtime=@0 --owner=0 --group=0 --numeric-owner --mode=0644 -C "$2" -T - >"$2.tar"
    gzip -n9 "$2.tar"
    mv "$2.tar.gz" "fuzz/corpus/$1.tar.gz"
}

# make_scratch makes $scratch, a folder in memory where that is possible, until the script ends. Fuzzers are started
# there, because they write files where they are started.
make_scratch() {
    scratch=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
    trap 'rm -rf "$scratch"' EXIT
}
