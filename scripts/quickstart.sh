#!/usr/bin/env bash
# From a fresh Debian or Ubuntu to pictures: installs what is missing, builds the library and the tool, makes a
# chart frame as a camera would send it, and converts it by every method. The pictures are in out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}"
# A build directory of its own: what is left out here stays in the cache, and would be missing from the presets'.
cmake --preset release -B build/quickstart -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_BENCH=OFF \
  -DQUORVANE_BUILD_PYTHON=OFF -DQUORVANE_BUILD_GSTREAMER=OFF >/dev/null
cmake --build build/quickstart
scripts/pictures.sh build/quickstart/tools/qvn out
