#!/usr/bin/env bash
# A text, the README or another one, names the functions that the header declares, each of them and nothing else that
# begins like one.
#   index_test.sh HEADER TEXT [COUNT]     COUNT: how many functions there are
set -euo pipefail
header=$1 text=$2 count=${3:-}
declared=$(grep -oE '^QVN_API uint32_t QVN_[A-Za-z0-9_]+' "$header" | awk '{print $3}' | sort)
named=$(grep -oE '\bQVN_[A-Za-z0-9_]+' "$text" | grep -vE '^QVN_(OK|E_[A-Z0-9_]+)$' | sort -u)
if [[ "$declared" != "$named" ]]; then
  echo "header (<) and $text (>) differ:"
  diff <(echo "$declared") <(echo "$named")
  exit 1
fi
functions=$(echo "$declared" | wc -l)
if [[ -n $count && $functions != "$count" ]]; then
  echo "$functions functions instead of $count"
  exit 1
fi
echo "$functions functions"
