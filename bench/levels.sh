#!/usr/bin/env bash
# Runs the entry benchmarks once for each instruction-set level that the loader can choose here.
#   bench/levels.sh PATH-OF-entries_bench [--into DIRECTORY] [options of entries_bench]
# With --into, each level's rows go to DIRECTORY/LEVEL.json.
set -euo pipefail
program=$1
shift
into=
if [[ ${1:-} == --into ]]; then
  into=$2
  mkdir -p "$into"
  shift 2
fi
loader=/lib64/ld-linux-x86-64.so.2
if [[ ! -x $loader ]]; then
  exec "$program" ${into:+--json "$into/baseline.json"} "$@"
fi
for level in x86-64-v3 x86-64-v2 baseline; do
  if [[ $level != baseline ]] && ! "$loader" --help | grep -q "$level (supported"; then
    echo "== $level: this machine does not run it"
    continue
  fi
  echo "== $level"
  "$loader" --glibc-hwcaps-mask "$level" "$program" ${into:+--json "$into/$level.json"} "$@"
done
