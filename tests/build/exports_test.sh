#!/usr/bin/env bash
# The library exports the functions that the header declares, each of them and nothing else; it carries its version
# note and needs the C and C++ runtimes alone.
#   exports_test.sh LIBRARY HEADER
set -euo pipefail
library=$1 header=$2
declared=$(grep -oE '^QVN_API uint32_t QVN_[A-Za-z0-9_]+' "$header" | awk '{print $3}' | sort)
exported=$(nm -D --defined-only "$library" | awk '{print $NF}' | sort)
if [[ "$declared" != "$exported" ]]; then
  echo "$library: header (<) and exports (>) differ:"
  diff <(echo "$declared") <(echo "$exported")
  exit 1
fi
count=$(echo "$exported" | wc -l)
[[ $count -eq 76 ]] || { echo "$library exports $count functions instead of 76"; exit 1; }
readelf -n "$library" | grep -q Quorvane || { echo "$library has no version note"; exit 1; }
needed=$(readelf -d "$library" | grep NEEDED | grep -vE '\[(libc|libm|libstdc\+\+|libgcc_s|ld-linux-x86-64|ld-linux-aarch64)\.so' || true)
if [[ -n $needed && -z ${QVN_SANITIZED:-} ]]; then
  echo "$library needs more than the runtimes:"
  echo "$needed"
  exit 1
fi
readelf -lW "$library" | grep GNU_STACK | grep -qv RWE || { echo "$library has an executable stack"; exit 1; }
if readelf -d "$library" | grep -q TEXTREL; then echo "$library has text relocations"; exit 1; fi
echo "$count functions"
