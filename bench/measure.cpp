#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace {

constexpr double kShortestTurn = 20e-6;  // a thousand times what reading the clock takes
constexpr size_t kFewestRounds = 5, kMostRounds = 1000;
// Calls before the one that is timed: a destination that a neighbour wrote by streamed stores takes some to
// come back into the caches.
constexpr size_t kUntimed = 4;
constexpr size_t kMargin = 64;  // some entries read a sample beyond their frame

double seconds(const Work& work, size_t repeats) {
  const auto start = std::chrono::steady_clock::now();
  for (size_t i = 0; i < repeats; ++i) work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() /
         static_cast<double>(repeats);
}

void grow(std::vector<uint8_t>& bytes, size_t count) {
  if (bytes.size() < count) bytes.resize(count);
}

Times summary(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const auto at = [&](size_t quarter) { return times[quarter * (times.size() - 1) / 4]; };
  return {at(2), times.front(), (at(3) - at(1)) / at(2)};
}

}  // namespace

std::string text_of(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

Size parse_size(const std::string& text) {
  Size size{};
  char rest = 0;
  if (std::sscanf(text.c_str(), "%ux%u%c", &size.width, &size.height, &rest) != 2 || size.pixels() == 0) {
    throw std::invalid_argument("a size looks like 640x480, not like " + text);
  }
  return size;
}

void Frames::prepare(size_t read, size_t written, size_t copied) {
  const size_t most = std::max(read, copied) + kMargin;
  const size_t old = noise_.size();
  grow(noise_, most);
  uint32_t state = static_cast<uint32_t>(old) + 1;
  for (size_t i = old; i < noise_.size(); ++i) {
    state = state * 1664525 + 1013904223;
    noise_[i] = static_cast<uint8_t>(state >> 24);
  }
  grow(src_, read + kMargin);
  grow(dst_, written + kMargin);
  grow(copy_, copied + kMargin);
  std::memcpy(src_.data(), noise_.data(), read);
}

std::vector<Times> take_turns(const std::vector<Work>& works, double budget) {
  std::vector<size_t> repeats;
  for (const Work& work : works) {
    work();
    const double once = seconds(work, 1);
    repeats.push_back(static_cast<size_t>(std::max(1.0, std::ceil(kShortestTurn / std::max(once, 1e-9)))));
  }
  std::vector<std::vector<double>> times(works.size());
  double spent = 0;
  for (size_t round = 0; round < kMostRounds && (round < kFewestRounds || spent < budget); ++round) {
    for (size_t i = 0; i < works.size(); ++i) {
      spent += kUntimed * seconds(works[i], kUntimed);
      times[i].push_back(seconds(works[i], repeats[i]));
      spent += times[i].back() * static_cast<double>(repeats[i]);
    }
  }
  std::vector<Times> all;
  for (std::vector<double>& one : times) all.push_back(summary(std::move(one)));
  return all;
}
