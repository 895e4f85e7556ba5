// Entries beside memcpy. Each round times one call and, right after it, one memcpy that moves the same number
// of bytes (read + written); the medians of both give the ratio, which holds on a machine whose speed drifts.
//
//   entries_bench --benchmark_filter=Raw8ToBGR/1920x1080 --benchmark_out=rows.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "entry_rows.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Size {
  uint32_t width, height;
};
constexpr Size kSizes[] = {{640, 480}, {1920, 1080}, {4096, 3072}};

std::vector<uint8_t> noise(size_t count) {
  std::vector<uint8_t> bytes(count);
  uint32_t state = 1;
  for (uint8_t& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<uint8_t>(state >> 24);
  }
  return bytes;
}

template <class Work>
double seconds(Work&& work) {
  const Clock::time_point start = Clock::now();
  work();
  benchmark::ClobberMemory();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

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

}  // namespace

int main(int argc, char** argv) {
  for (const EntryRow& row : entry_rows()) {
    for (const Size size : kSizes) {
      const std::string name =
          std::string(row.name) + "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
      benchmark::RegisterBenchmark(name.c_str(), run, row, size)
          ->UseManualTime()
          ->Unit(benchmark::kMicrosecond);
    }
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
