#!/usr/bin/env bash
# Compares the interface of the built library, functions and types, with the kept dump; with --update, keeps it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages "${build_packages[@]}" abigail-tools

# The types are told by debugging information alone.
cmake -S . -B build/abi -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUORVANE_BASELINE_ONLY=ON -DQUORVANE_BUILD_TOOLS=OFF \
  -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_BENCH=OFF >/dev/null
cmake --build build/abi --target quorvane
kept=tests/abi/libquorvane.abi
# What only this machine says, such as where the sources lie, stays out.
dump() {
  abidw --exported-interfaces-only --no-corpus-path --no-comp-dir-path --no-show-locs --type-id-style hash \
    --headers-dir include --drop-private-types build/abi/lib/libquorvane.so | sed "s# path='[^']*/src/# path='src/#"
}
if [[ ${1:-} == --update ]]; then
  mkdir -p tests/abi
  dump >$kept
else
  dump >build/abi/libquorvane.abi
  if abidiff $kept build/abi/libquorvane.abi; then
    echo "The interface is the kept one."
  else
    echo "The interface differs from $kept. If that is meant, keep it: scripts/abi.sh --update" >&2
    exit 1
  fi
fi
