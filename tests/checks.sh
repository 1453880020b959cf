#!/bin/sh
# checks.sh SOURCE BUILD: checks rules that no compiler checks. Prints each breach; exit status 1 if there are any.
set -eu
cd "$1"
build=$2
breaches=0
breach() {
    echo "$*"
    breaches=$((breaches + 1))
}

product="plugin qlib link diag efs2 ftm portserver"

# The folders that each folder may include, besides the standard library.
layers_below() {
    case $1 in
    platform) echo "platform system" ;;
    link) echo "platform system link" ;;
    diag) echo "platform system link diag" ;;
    portserver) echo "platform system link portserver" ;;
    efs2) echo "platform system link diag efs2" ;;
    ftm) echo "platform system link diag ftm" ;;
    qlib) echo "platform system link diag efs2 ftm portserver qlib" ;;
    plugin) echo "platform system link diag efs2 ftm portserver qlib plugin" ;;
    handset) echo "handset" ;;
    tools/common) echo "common" ;;
    tools/wfxhost) echo "platform system common wfxhost" ;;
    tools/qdiag) echo "common qdiag" ;;
    tools/simulated_handset) echo "common handset" ;;
    tools/mount) echo "common mount" ;;
    esac
}

sources_of() {
    [ ! -d "$1" ] || find "$1" -name '*.cpp' -o -name '*.h'
}

for folder in platform $product handset tools/common tools/wfxhost tools/qdiag \
    tools/simulated_handset tools/mount; do
    allowed=$(layers_below "$folder" | tr ' ' '|')
    for file in $(sources_of "$folder"); do
        case $file in
        platform/posix/*) own='|[a-z_]*\.h' ;;
        tools/qdiag/* | tools/mount/*) own='|quillet\.h"' ;;
        *) own= ;;
        esac
        if found=$(grep -nE '^ *# *include *"' "$file" | grep -vE "\"(($allowed)/$own)"); then
            breach "$file includes a header that its layer may not use: $found"
        fi
    done
done

for file in examples/*.cpp; do
    if found=$(grep -nE '^ *# *include *("|<[^>]*[./])' "$file" | grep -v '<quillet\.h>'); then
        breach "$file includes more than quillet.h and the standard library: $found"
    fi
done

for folder in $product; do
    for file in $(sources_of "$folder"); do
        if found=$(grep -nE '^ *# *(if|ifdef|ifndef|elif)\b' "$file"); then
            breach "$file has conditional code; code that differs between systems belongs in platform/: $found"
        fi
        # Names of standard library headers contain neither a dot nor a folder.
        if found=$(grep -nE '^ *# *include *<[^>]*[./]' "$file"); then
            breach "$file includes a system header: $found"
        fi
    done
done

if command -v git >/dev/null 2>&1; then
    # Someone may be following the page, and has applied them.
    git apply --check --reverse docs/ADDING_A_COMMAND.md 2>/dev/null ||
        git apply --check docs/ADDING_A_COMMAND.md ||
        breach "the diffs in docs/ADDING_A_COMMAND.md do not fit the tree"
fi

echo '#include "quillet.h"' | ${CXX:-g++} -std=c++20 -I . -fsyntax-only -x c++ - ||
    breach "quillet.h does not compile on its own"

for file in tests/*_test.cpp; do
    grep -q "/$file\"" "$build/compile_commands.json" || breach "$file is not built"
done

if command -v clang-format >/dev/null 2>&1; then
    # shellcheck disable=SC2046
    clang-format --dry-run -Werror quillet.h \
        $(for folder in platform $product handset tools tests bench fuzz examples; do sources_of "$folder"; done) ||
        breach "not formatted according to .clang-format"
fi

plugin=$build/quillet.wfx
exports=$(nm -D --defined-only "$plugin" | sed 's/^[^ ]* . //')
exported_names=$(nm -D --defined-only -C "$plugin")
for name in FsInit FsGetDefRootName FsStatusInfo FsDisconnect FsFindFirst FsFindNext FsFindClose FsGetFile \
    FsPutFile FsDeleteFile FsMkDir FsRemoveDir FsRenMovFile FsSetAttr FsSetTime FsExecuteFile \
    $(sed -n 's/^QUILLET_C_API.*\(QLIB_[A-Za-z0-9_]*\)(.*/\1/p' qlib/call_layer.h); do
    printf '%s\n' "$exports" | grep -qx "$name" || breach "quillet.wfx does not export $name"
done
for class in $(for folder in $product; do sources_of "$folder"; done | xargs \
    sed -nE 's/^(class|struct) QUILLET_API ([A-Za-z0-9_]+).*/\2/p' | sort -u); do
    printf '%s\n' "$exported_names" | grep -qE " $class(<.*>)?::| for $class\$" ||
        breach "quillet.wfx does not export the class $class"
done
readelf -d "$plugin" | grep -q 'SONAME.*\[quillet\.wfx\]' || breach "quillet.wfx does not have its own name as SONAME"

[ "$breaches" -eq 0 ]
