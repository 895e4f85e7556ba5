#!/usr/bin/env bash
# The library exports the functions that the header declares, each of them and nothing else; it carries its version
# note, needs the C and C++ runtimes alone, and is hardened: relocations bound at load and read-only from then on, no
# executable stack, no text relocations.
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
grep -q Quorvane <<<"$(readelf -n "$library")" || { echo "$library has no version note"; exit 1; }
needed=$(readelf -d "$library" | grep NEEDED | grep -vE '\[(libc|libm|libstdc\+\+|libgcc_s|ld-linux-x86-64|ld-linux-aarch64)\.so' || true)
if [[ -n $needed && -z ${QVN_SANITIZED:-} ]]; then
  echo "$library needs more than the runtimes:"
  echo "$needed"
  exit 1
fi
segments=$(readelf -lW "$library")
dynamic=$(readelf -dW "$library")
grep GNU_STACK <<<"$segments" | grep -qv RWE || { echo "$library has an executable stack"; exit 1; }
grep -q GNU_RELRO <<<"$segments" || { echo "$library leaves its relocations writable"; exit 1; }
grep -q BIND_NOW <<<"$dynamic" || { echo "$library binds its functions late"; exit 1; }
if grep -q TEXTREL <<<"$dynamic"; then echo "$library has text relocations"; exit 1; fi
echo "$count functions"
