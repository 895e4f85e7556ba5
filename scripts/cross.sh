#!/usr/bin/env bash
# Builds for another platform and runs its tests: scripts/cross.sh windows|aarch64|s390x|i686 [all]
#
# Under qemu, which is slow, one entry test in twelve runs; with `all` every one. The others meet every kernel: the
# tests of internals, and the sheet of digests, which calls every function with every selector.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=${1:?usage: scripts/cross.sh windows|aarch64|s390x|i686 [all]}
part=${2:-}
shards=1
case $preset in
  windows) install_packages g++-mingw-w64-x86-64-posix wine64 wine ;;
  i686) install_packages g++-i686-linux-gnu ;;
  aarch64) install_packages g++-aarch64-linux-gnu qemu-user && shards=12 ;;
  s390x) install_packages g++-s390x-linux-gnu qemu-user && shards=12 ;;
  *) echo "unknown platform: $preset" >&2 && exit 2 ;;
esac
install_packages cmake ninja-build googletest python3
[[ $part == all ]] && shards=1

cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)" --no-tests=error -E '^entries'
export GTEST_TOTAL_SHARDS=$shards GTEST_SHARD_INDEX=$((shards / 2))
ctest --preset "$preset" -j "$(nproc)" --no-tests=error -R '^entries'
