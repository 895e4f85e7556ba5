#!/usr/bin/env bash
# clang-tidy over the library and the tool: scripts/tidy.sh BUILD-DIRECTORY
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: scripts/tidy.sh BUILD-DIRECTORY}
git ls-files 'src/*.cpp' 'tools/*.cpp' ':!src/frame/platform_windows.cpp' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet
