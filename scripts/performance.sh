#!/usr/bin/env bash
# Measures everything and draws it: installs what is missing, builds, runs each benchmark, and writes the charts in
# docs/pictures/performance and the tables in docs/performance.md. About fifteen minutes on a machine that has
# nothing else to do, which it should not.
#   scripts/performance.sh               all of it
#   scripts/performance.sh --quick       a few minutes: short rounds, to see that everything works
#   scripts/performance.sh --draw        only draw what the last run measured
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

time=0.15
draw_only=
case ${1:-} in
  --quick) time=0.005 ;;
  --draw) draw_only=yes ;;
  '') ;;
  *) echo "usage: scripts/performance.sh [--quick | --draw]" >&2; exit 2 ;;
esac
build=build/performance
results=$build/results

install_packages "${build_packages[@]}" nlohmann-json3-dev libopencv-dev libyuv-dev libswscale-dev libdc1394-dev \
  python3-matplotlib
# Debian's matplotlib belongs to Debian's Python.
python=python3
"$python" -c 'import matplotlib' 2>/dev/null || python=/usr/bin/python3

if [[ -z $draw_only ]]; then
  cmake --preset release -B "$build" -DQUORVANE_BUILD_TESTS=OFF -DQUORVANE_BUILD_TOOLS=OFF -DQUORVANE_BUILD_BENCH=ON
  cmake --build "$build" --target entries_bench peers_bench
  mkdir -p "$results"
  # One core, so that no row is moved while it is timed; its clock may take a moment to rise.
  pinned=(taskset -c "$(($(nproc) - 1))")
  "${pinned[@]}" bench/levels.sh "$build/bench/entries_bench" --into "$results" --time "$time"
  "${pinned[@]}" "$build/bench/peers/peers_bench" --time "$time" --json "$results/peers.json"
  "${pinned[@]}" "$build/bench/entries_bench" --sweep --time "$time" --json "$results/sweep.json"
  "$build/bench/entries_bench" --threads --time "$time" --json "$results/threads.json"
fi
"$python" bench/charts.py "$results" docs/pictures/performance docs/performance.md
echo "Look at docs/performance.md; the numbers are in $results."
