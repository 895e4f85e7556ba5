// What the benchmarks share: sizes, a source of noise, and the time of a piece of work.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

struct Size {
  uint32_t width, height;
};
inline constexpr Size kSizes[] = {{640, 480}, {1920, 1080}, {4096, 3072}};

inline std::vector<uint8_t> noise(size_t count) {
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
  const auto start = std::chrono::steady_clock::now();
  work();
  asm volatile("" : : : "memory");
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}
