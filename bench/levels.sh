#!/usr/bin/env bash
# Runs the entry benchmarks once for each instruction-set level that the loader can choose here.
#   bench/levels.sh PATH-OF-entries_bench [benchmark options]
set -euo pipefail
program=$1
shift
loader=/lib64/ld-linux-x86-64.so.2
if [[ ! -x $loader ]]; then
  exec "$program" "$@"
fi
for level in baseline x86-64-v2 x86-64-v3; do
  if [[ $level != baseline ]] && ! "$loader" --help | grep -q "$level (supported"; then
    echo "== $level: this machine does not run it"
    continue
  fi
  echo "== $level"
  "$loader" --glibc-hwcaps-mask "$level" "$program" "$@"
done
