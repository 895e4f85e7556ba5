#include "utility/resample.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "pixel/defined_conversion.h"
#include "utility/resample_strip.h"

namespace qvn {
namespace {

// The place in the source line of each output element.
class Scale {
 public:
  // An index at or above `limit` becomes it.
  Scale(const Resampling& lines, uint32_t limit) : step_(lines.src_rate / lines.dst_rate), limit_(limit) {}

  double position(uint32_t i) const { return step_ * i; }

  // The element nearest to the position; of the index that a large or a negative one gives, the low 32 bits
  // count.
  uint32_t index(uint32_t i) const {
    const auto nearest = static_cast<uint32_t>(truncate_to_int64(position(i) + 0.5));
    return nearest < limit_ ? nearest : limit_;
  }

  // How far the position lies from the index, in 1024ths: -512 to 511, where the index has not wrapped.
  int32_t fraction(uint32_t i, uint32_t index) const {
    if (index == 0 || index == limit_) return 0;
    return truncate_to_int32((position(i) - index) * 1024.0);
  }

 private:
  double step_;  // a quotient in single precision
  uint32_t limit_;
};

// Calls line(to, from) for every line.
template <size_t kElement, class Line>
void for_each_line(const Resampling& lines, Line&& line) {
  const ptrdiff_t dst_step = ptrdiff_t{lines.dst_pitch} * ptrdiff_t{kElement};
  const ptrdiff_t src_step = ptrdiff_t{lines.src_pitch} * ptrdiff_t{kElement};
  for (ptrdiff_t y = 0; y < lines.line_count; ++y) line(lines.dst + y * dst_step, lines.src + y * src_step);
}

// ---- One element at a time.

// An element, with bytes that are written over by the next one behind it. There is one before it in its line.
template <size_t kElement>
void copy_element_as_word(uint8_t* to, const uint8_t* element) {
  constexpr size_t kSpare = kElement > 4 ? 8 - kElement : 4 - kElement;
  std::conditional_t<(kElement > 4), uint64_t, uint32_t> word;
  std::memcpy(&word, element - kSpare, sizeof word);
  word >>= 8 * kSpare;
  std::memcpy(to, &word, sizeof word);
}

template <size_t kElement>
void copy_elements(uint8_t* to, const uint8_t* from, const uint32_t* index, size_t n) {
  constexpr bool kAsWords = kVectorRows && (kElement == 3 || kElement > 4);  // others are words themselves
  const auto copy = [=](size_t i) { std::memcpy(to + i * kElement, from + index[i] * kElement, kElement); };
  const auto copy_inner = [=](size_t i) {
    if (!kAsWords || index[i] == 0) return copy(i);
    copy_element_as_word<kElement>(to + i * kElement, from + index[i] * kElement);
  };
  constexpr size_t kTogether = 8;  // fewer branches: a fifth less time for single bytes
  size_t i = 0;
  for (; i + kTogether < n; i += kTogether) {
    for (size_t k = 0; k < kTogether; ++k) copy_inner(i + k);
  }
  for (; i < n; ++i) copy(i);
}

// The element at the index and the one before it, which counts even where the position lies behind the index.
// Callers depend on it.
template <size_t kElement>
void blend_element(uint8_t* to, const uint8_t* own, int32_t fraction) {
  if (fraction == 0) {
    std::memcpy(to, own, kElement);
    return;
  }
  // Wraps where the index has wrapped.
  const auto offset = static_cast<uint32_t>(fraction);
  const uint32_t own_weight = fraction < 0 ? 1024 + offset : offset;
  const uint32_t weight_before = fraction < 0 ? 0 - offset : 1024 - offset;
  const uint8_t* before = own - kElement;
  for (size_t b = 0; b < kElement; ++b) {
    to[b] = static_cast<uint8_t>((own[b] * own_weight + before[b] * weight_before) >> 10);
  }
}

template <size_t kElement>
void blend_elements(uint8_t* to, const uint8_t* from, const uint32_t* index, const int32_t* fraction,
                    size_t n) {
  for (size_t i = 0; i < n; ++i) {
    blend_element<kElement>(to + i * kElement, from + index[i] * kElement, fraction[i]);
  }
}

// ---- Strips.

// From so many lines on a plan is worth its time.
constexpr int32_t kFewestPlannedLines = 16;

template <size_t kElement>
size_t longest_strip(const Resampling& lines) {
  return std::min(static_cast<size_t>(lines.dst_length), kStripElements<kElement>);
}

// Words that the plan of a strip takes behind a table; 0 where none is made.
template <size_t kElement, class Strip>
size_t plan_words(const Resampling& lines) {
  const bool planned =
      Strip::kPlans && lines.dst_length >= kLaneBytes && lines.line_count >= kFewestPlannedLines;
  return planned ? (Strip::memory_bytes(longest_strip<kElement>(lines)) + kLaneBytes) / sizeof(uint32_t) : 0;
}

uint8_t* aligned(uint32_t* memory) {
  auto* bytes = reinterpret_cast<uint8_t*>(memory);
  return bytes + (0 - reinterpret_cast<uintptr_t>(bytes)) % kLaneBytes;
}

// Strips run through all lines before the next one does. Output lines that overlap must be written one after
// the other.
template <size_t kElement>
bool strips_may_run(const Resampling& lines, uint32_t line_elements) {
  constexpr uint32_t kMostElements = 1U << 29;  // so that places fit 32 bits
  const bool apart = std::abs(int64_t{lines.dst_pitch}) >= lines.dst_length;
  const bool one_strip = static_cast<size_t>(lines.dst_length) <= kStripElements<kElement>;
  return line_elements <= kMostElements && (apart || one_strip);
}

// Runs all lines: as strips in the plan's memory, and what has no plan by plain(to, from, tables).
template <size_t kElement, class Strip, class Plain>
void run_lines(const Resampling& lines, const StripTables& tables, uint32_t* memory, size_t words,
               Plain&& plain) {
  if (words == 0 || !strips_may_run<kElement>(lines, tables.line_elements)) {
    return for_each_line<kElement>(lines, [&](uint8_t* to, const uint8_t* from) { plain(to, from, tables); });
  }
  Strip strip(aligned(memory), longest_strip<kElement>(lines));
  for (size_t first = 0; first < tables.length; first += kStripElements<kElement>) {
    const StripTables part = tables.part(first, kStripElements<kElement>);
    const bool planned = part.length >= kLaneBytes && strip.plan(part);
    for_each_line<kElement>(lines, [&](uint8_t* to, const uint8_t* from) {
      if (planned) {
        strip.run(to + first * kElement, from);
      } else {
        plain(to + first * kElement, from, part);
      }
    });
  }
}

// ---- Kernels.

template <size_t kElement, bool kPlain>
void resample_nearest(const Resampling& lines) {
  using Strip = NearestStrip<kElement>;
  const auto length = static_cast<size_t>(lines.dst_length);
  const size_t words = kPlain ? 0 : plan_words<kElement, Strip>(lines);
  const Scale scale(lines, static_cast<uint32_t>(lines.src_length) - 1);
  std::vector<uint32_t> ScanlineIndexTable(length + words);
  uint32_t largest = 0;
  for (uint32_t i = 0; i < length; ++i) {
    ScanlineIndexTable[i] = scale.index(i);
    largest = std::max(largest, ScanlineIndexTable[i]);
  }

  const StripTables tables{ScanlineIndexTable.data(), nullptr, length, largest + 1};
  run_lines<kElement, Strip>(lines, tables, ScanlineIndexTable.data() + length, words,
                             [](uint8_t* to, const uint8_t* from, const StripTables& part) {
                               copy_elements<kElement>(to, from, part.index, part.length);
                             });
}

template <size_t kElement, bool kPlain>
void resample_linear(const Resampling& lines) {
  using Strip = LinearStrip<kElement>;
  const auto length = static_cast<size_t>(lines.dst_length);
  const size_t words = kPlain ? 0 : plan_words<kElement, Strip>(lines);
  // The output's length, not the source's: a shrinking line repeats one element from there on, and callers
  // depend on it.
  const Scale scale(lines, static_cast<uint32_t>(lines.dst_length) - 1);
  const std::unique_ptr<uint32_t[]> ScanlineIndexTable(new uint32_t[length + words]);
  const std::unique_ptr<int32_t[]> ScanlineFractionTable(new int32_t[length]);
  uint32_t largest = 0;
  for (uint32_t i = 0; i < length; ++i) {
    const uint32_t index = scale.index(i);
    ScanlineIndexTable[i] = index;
    ScanlineFractionTable[i] = scale.fraction(i, index);
    largest = std::max(largest, index);
  }

  const StripTables tables{ScanlineIndexTable.get(), ScanlineFractionTable.get(), length, largest + 1};
  run_lines<kElement, Strip>(lines, tables, ScanlineIndexTable.get() + length, words,
                             [](uint8_t* to, const uint8_t* from, const StripTables& part) {
                               blend_elements<kElement>(to, from, part.index, part.fraction, part.length);
                             });
}

template <bool kPlain>
constexpr ResampleKernel kNearestKernels[] = {resample_nearest<1, kPlain>, resample_nearest<2, kPlain>,
                                              resample_nearest<3, kPlain>, resample_nearest<4, kPlain>,
                                              resample_nearest<5, kPlain>, resample_nearest<6, kPlain>};

template <bool kPlain>
constexpr ResampleKernel kLinearKernels[] = {resample_linear<1, kPlain>, resample_linear<2, kPlain>,
                                             resample_linear<3, kPlain>, resample_linear<4, kPlain>,
                                             resample_linear<5, kPlain>, resample_linear<6, kPlain>};

}  // namespace

int32_t resampled_length(int32_t src_length, float src_rate, float dst_rate) {
  const float product = static_cast<float>(src_length) * dst_rate;
  const int32_t length = truncate_to_int32(double{product} / double{src_rate});
  if (length % 4 == 0) return length;
  return static_cast<int32_t>(static_cast<uint32_t>(length / 4 * 4) + 4);
}

ResampleKernel nearest_kernel_plain(uint32_t element) { return kNearestKernels<true>[element - 1]; }
ResampleKernel nearest_kernel(uint32_t element) { return kNearestKernels<false>[element - 1]; }

ResampleKernel linear_kernel_plain(uint32_t element) { return kLinearKernels<true>[element - 1]; }
ResampleKernel linear_kernel(uint32_t element) { return kLinearKernels<false>[element - 1]; }

}  // namespace qvn
