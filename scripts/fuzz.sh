#!/usr/bin/env bash
# Builds both fuzzers with clang, AddressSanitizer and UndefinedBehaviorSanitizer, and runs each for so many seconds,
# from the inputs in tests/fuzz/corpus and those of earlier runs.
#
#   scripts/fuzz.sh [SECONDS]      60 by default; 0 runs the inputs alone
#   scripts/fuzz.sh --keep         puts the fewest inputs that reach as much into tests/fuzz/corpus
#
# An input that ends a fuzzer lies in build/fuzz/findings; to see it again: build/fuzz/tests/fuzz/NAME FILE.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

seconds=${1:-60}
fuzzers=(entries tool)
install_packages "${build_packages[@]}" "${test_packages[@]}" clang

march=""
if grep -q 'x86-64-v3 (supported' <<<"$(/lib64/ld-linux-x86-64.so.2 --help 2>/dev/null)"; then march=x86-64-v3; fi
cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DQUORVANE_FUZZ=ON -DQUORVANE_ARCH="$march" \
  -DQUORVANE_SANITIZE=address,undefined,fuzzer-no-link -DQUORVANE_BUILD_BENCH=OFF
cmake --build build/fuzz --target entries_fuzz tool_fuzz

mkdir -p build/fuzz/findings
fuzz() {
  local name=$1 program seeds found
  program=$PWD/build/fuzz/tests/fuzz/${name}_fuzz
  seeds=$PWD/build/fuzz/seeds-$name
  found=$PWD/build/fuzz/corpus-$name
  mkdir -p "$seeds" "$found"
  # A line of a corpus is an input in hexadecimal.
  python3 - "tests/fuzz/corpus/$name.hex" "$seeds" <<'PYTHON'
import pathlib, sys
for number, line in enumerate(pathlib.Path(sys.argv[1]).read_text().split()):
    pathlib.Path(sys.argv[2], str(number)).write_bytes(bytes.fromhex(line))
PYTHON
  if [[ $seconds == --keep ]]; then
    rm -rf "$seeds.kept" && mkdir "$seeds.kept"
    "$program" -merge=1 -use_counters=0 -close_fd_mask=3 -max_len=320 "$seeds.kept" "$seeds" "$found"
    python3 - "tests/fuzz/corpus/$name.hex" "$seeds.kept" <<'PYTHON'
import pathlib, sys
inputs = sorted((file.read_bytes() for file in pathlib.Path(sys.argv[2]).iterdir()), key=lambda b: (len(b), b))
pathlib.Path(sys.argv[1]).write_text("".join(b.hex() + "\n" for b in inputs if b))
PYTHON
  elif [[ $seconds == 0 ]]; then
    "$program" -runs=0 -close_fd_mask=3 -artifact_prefix="$PWD/build/fuzz/findings/" "$seeds" 2>&1 | tail -2
  else
    "$program" -max_total_time="$seconds" -max_len=320 -len_control=0 -timeout=30 -close_fd_mask=1 -verbosity=0 \
      -print_final_stats=1 -artifact_prefix="$PWD/build/fuzz/findings/" "$found" "$seeds" 2>"$found.log" || {
      grep -v '^qvn: ' "$found.log" | tail -60
      return 1
    }
    grep -E 'stat::(number|average)' "$found.log"
  fi
}

# Each has a core for itself, where there are two.
running=()
for name in "${fuzzers[@]}"; do
  fuzz "$name" &
  running+=($!)
done
for fuzzer in "${running[@]}"; do wait "$fuzzer"; done
