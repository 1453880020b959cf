#!/bin/sh
# public_names.sh TAGS: checks that the compile-only test calls every public operation of Diag_FTM and every flat call.
# TAGS is the list of names that ./docs.sh leaves in build/quillet.tag.
set -eu
tags=$(realpath "$1")
cd "$(dirname "$0")/.."
names=$(awk -F '[<>]' '
    $2 ~ /^compound/ { compound = "" }
    $2 == "name" && compound == "" { compound = $3; next }
    FNR == NR { if ($2 == "base" && compound == "Diag_FTM") family[$3]; next }
    $2 ~ /^member/ { is_function = $2 ~ /kind="function"/ }
    $2 == "name" && is_function && (compound in family && $3 !~ "^~?" compound "$" || $3 ~ /^QLIB_/) { print $3 }
    ' "$tags" "$tags" | sort -u)
missing=0
count=0
for name in $names; do
    count=$((count + 1))
    grep -qE "&(D::)?$name\b|diag\.$name\(" tests/public_calls.cpp fuzz/fuzz_answers.cpp || {
        echo "no test calls $name from outside"
        missing=$((missing + 1))
    }
done
echo "$count public operations, $missing of them not called"
[ $missing -eq 0 ] && [ $count -gt 0 ]
