#!/usr/bin/env bash
# clang-tidy over the library and the tool: scripts/tidy.sh BUILD-DIRECTORY
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:?usage: scripts/tidy.sh BUILD-DIRECTORY}
command -v clang-tidy >/dev/null || { echo "clang-tidy is not installed" >&2; exit 1; }
# It counts on stderr what it found in system headers; findings of ours are on stdout.
git ls-files 'src/*.cpp' 'tools/*.cpp' ':!src/frame/platform_windows*.cpp' |
  xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet 2>/dev/null
