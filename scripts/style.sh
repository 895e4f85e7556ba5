#!/usr/bin/env bash
# Formatting of every source file; with --fix, mends it.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h' '*.hpp' '*.c')
if [[ ${1:-} == --fix ]]; then
  clang-format -i "${files[@]}"
else
  clang-format --dry-run -Werror "${files[@]}"
fi
