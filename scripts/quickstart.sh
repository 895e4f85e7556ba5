#!/usr/bin/env bash
# From a fresh Debian or Ubuntu to pictures: installs what is missing, builds the library and the tool, makes a
# chart frame as a camera would send it, and converts it by every method. The pictures are in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}"
cmake --preset release -G Ninja -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_BENCH=OFF >/dev/null
cmake --build --preset release
scripts/pictures.sh build/release/tools/qvn out
