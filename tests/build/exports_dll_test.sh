#!/usr/bin/env bash
# The DLL exports the functions that the header declares, each of them and nothing else, its import library offers
# the same, and it needs the system's own libraries alone.
#   exports_dll_test.sh OBJDUMP DLL IMPORT-LIBRARY HEADER
set -euo pipefail
objdump=$1 library=$2 import_library=$3 header=$4
declared=$(grep -oE '^QVN_API uint32_t QVN_[A-Za-z0-9_]+' "$header" | awk '{print $3}' | sort)
same() {
  if [[ "$declared" != "$2" ]]; then
    echo "header (<) and $1 (>) differ:"
    diff <(echo "$declared") <(echo "$2")
    exit 1
  fi
}
# Read whole, since who stops reading early breaks the pipe.
facts=$("$objdump" -p "$library")
same "$library" "$(awk '/Ordinal\/Name Pointer/ { on = 1; next } on && /^\t\[/ { print $NF }' <<<"$facts" | sort)"
same "$import_library" "$("$objdump" -t "$import_library" | grep -oE ' QVN_[A-Za-z0-9_]+$' | tr -d ' ' | sort -u)"
needed=$(awk '/DLL Name:/ { print $NF }' <<<"$facts" | grep -viE '^(kernel32|msvcrt|version)\.dll$' || true)
if [[ -n $needed ]]; then
  echo "$library needs more than the system: $needed"
  exit 1
fi
count=$(wc -l <<<"$declared")
[[ $count -eq 76 ]] || { echo "$count functions instead of 76"; exit 1; }
echo "$count functions"
