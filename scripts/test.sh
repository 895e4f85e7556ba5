#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs all tests at every instruction-set level that this machine
# runs. Another preset as the argument: scripts/test.sh asan
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=${1:-dev}
install_packages "${build_packages[@]}" "${test_packages[@]}"
[[ $preset == dev ]] && install_packages "${binding_packages[@]}"
cmake --preset "$preset" -DQUORVANE_BUILD_TOOLS=ON -DQUORVANE_BUILD_TESTS=ON
cmake --build --preset "$preset"
ctest --preset "$preset" -j "$(nproc)" --no-tests=error
