#!/usr/bin/env bash
# The documentation as HTML, with pictures that the tool makes, and all of its links checked:
# build/docs/html/index.html. Under a minute where the tool is built.
#
#     scripts/docs.sh [BUILD]     a folder with the built tool and library; build/quickstart, built if need be
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages doxygen python3
build=${1:-build/quickstart}
if [[ ! -x $build/tools/qvn ]]; then
  install_packages "${build_packages[@]}"
  cmake --preset release -B "$build" -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_BENCH=OFF \
    -DQUORVANE_BUILD_PYTHON=OFF -DQUORVANE_BUILD_GSTREAMER=OFF >/dev/null
  cmake --build "$build"
fi
export DOCS_OUT=build/docs
rm -rf "$DOCS_OUT"
mkdir -p "$DOCS_OUT"
python3 docs/site/pages.py "$build/tools/qvn" "$(realpath "$build/lib/libquorvane.so.2")" "$DOCS_OUT"
doxygen docs/Doxyfile
cp -r "$DOCS_OUT/pictures" "$DOCS_OUT/html/"
python3 docs/site/links.py "$DOCS_OUT/html"
echo "Look at $DOCS_OUT/html/index.html."
