#!/bin/sh
# Makes the reference of the library from its public headers, in build/docs/. Fails when Doxygen has anything to say.
set -eu
if [ $# -ne 0 ]; then
    echo "usage: ./docs.sh" >&2
    exit 2
fi
cd "$(dirname "$0")"
. tools/need.sh
need g++:g++ doxygen:doxygen

# The public headers are those that quillet.h includes. How names are exported is for the headers alone.
headers=$(g++ -std=c++20 -I . -MM quillet.h | tr -d '\\\n' | sed 's/^quillet\.o://; s| platform/export\.h||')
version=$(sed -n 's/^project(quillet VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
rm -rf build/docs
mkdir -p build/docs
# The page of each example begins as the comment at its head does.
examples=build/examples.dox
for source in examples/*.cpp; do
    echo "/** @example ${source##*/}"
    sed -n '1,/^\/\/$/s|^// *||p' "$source"
    echo "*/"
done >$examples
{
    cat docs/reference/Doxyfile
    echo "PROJECT_NUMBER = $version"
    echo "INPUT = docs/reference $headers $examples"
} | doxygen -
echo "build/docs/index.html"
