// Entries beside memcpy. Each round times one call and, right after it, one memcpy that moves the same number
// of bytes (read + written); the medians of both give the ratio, which holds on a machine whose speed drifts.
//
//   entries_bench --benchmark_filter=Raw8ToBGR/1920x1080 --benchmark_out=rows.json
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "entry_rows.h"
#include "timing.h"

namespace {

void run(benchmark::State& state, const EntryRow& row, Size size) {
  const size_t pixels = size_t{size.width} * size.height;
  std::vector<uint8_t> src = noise(8 * pixels + 64), dst(8 * pixels + 64), copy_of(src), copy(dst);
  const size_t moved = pixels * (row.bytes_read + row.bytes_written) / 12;
  std::vector<double> ours, theirs;
  for (auto _ : state) {
    ours.push_back(seconds([&] { row.call(dst.data(), src.data(), size.width, size.height); }));
    theirs.push_back(seconds([&] { std::memcpy(copy.data(), copy_of.data(), moved / 2); }));
    state.SetIterationTime(ours.back());
  }
  const double time = median(ours);
  state.counters["ns/pixel"] = 1e9 * time / static_cast<double>(pixels);
  state.counters["GB/s"] = 1e-9 * static_cast<double>(moved) / time;
  state.counters["/memcpy"] = time / median(theirs);
}

void register_rows(const std::vector<EntryRow>& rows) {
  for (const EntryRow& row : rows) {
    for (const Size size : kSizes) {
      const std::string name =
          row.name + "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
      benchmark::RegisterBenchmark(name.c_str(), run, row, size)
          ->UseManualTime()
          ->Unit(benchmark::kMicrosecond);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  register_rows(entry_rows());
  register_rows(correction_rows());
  register_rows(transform_rows());
  register_rows(utility_rows());
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
