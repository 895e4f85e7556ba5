#!/usr/bin/env bash
# The library and the sheet of digests as a WebAssembly program, by Emscripten, run by node: every function gives the
# bytes that it gives elsewhere. Result: build/wasm/libquorvane.a, and build/wasm/digest_sheet.js beside it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages emscripten nodejs

# Debian's Emscripten keeps its system libraries in a cache of its own, and its modules where its own node finds them.
unset EM_CACHE
export NODE_PATH=/usr/share/nodejs out=build/wasm
mkdir -p $out
IFS=. read -r major minor patch tweak < <(sed -n 's/^project(quorvane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export flags="-std=c++20 -O3 -DNDEBUG -msimd128 -fexceptions -ffp-contract=off -Wall -Wextra
  -Iinclude -Isrc -Itests -DQUORVANE_BUILDING -DQUORVANE_VERSION_MAJOR=$major -DQUORVANE_VERSION_MINOR=$minor
  -DQUORVANE_VERSION_PATCH=$patch -DQUORVANE_VERSION_TWEAK=$tweak"

compile() {
  object=$out/${1//\//_}.o
  em++ $flags -c "$1" -o "$object"
}
export -f compile
find src tests/digest -name '*.cpp' ! -name 'platform_windows*' ! -name 'platform_elf.cpp' | sort |
  xargs -P "$(nproc)" -I '{}' bash -ec 'compile {}'
rm -f $out/libquorvane.a
emar rcs $out/libquorvane.a $out/src_*.o
em++ -O2 -fexceptions -sNODERAWFS=1 -sALLOW_MEMORY_GROWTH=1 $out/tests_*.o $out/libquorvane.a -o $out/digest_sheet.js
node --no-experimental-fetch $out/digest_sheet.js tests/digest/digests.txt
