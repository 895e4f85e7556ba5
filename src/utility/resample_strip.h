// A strip of output elements, planned once for all lines: groups of as many elements as a vector has bytes,
// so that a group is one vector for each byte of an element. The last group ends with the strip and may
// overlap the one before it.
//
// What bytes come from where is a Gather; a linear strip has weights beside it, a word for each output byte.
#pragma once

#include <array>

#include "pixel/cache_lines.h"
#include "utility/gather.h"

namespace qvn {

// The tables of a call, from a strip's first element on.
struct StripTables {
  const uint32_t* index;
  const int32_t* fraction;  // null for nearest
  size_t length;            // elements of the strip; a plan is for kLaneBytes at least
  uint32_t line_elements;   // the largest index of the line and one: all that may be read

  StripTables part(size_t first, size_t most) const {
    return {index + first, fraction != nullptr ? fraction + first : nullptr, std::min(length - first, most),
            line_elements};
  }
};

// Elements of the longest strip: 16 KiB of output. Half the length costs a fifth more time where frames are
// beyond the caches and lines are longer than it.
template <size_t kElement>
inline constexpr size_t kStripElements = 16384 / (kElement * kLaneBytes) * kLaneBytes;

template <size_t kElement>
class StripGroups {
 public:
  static constexpr size_t kBytes = kElement * kLaneBytes;

  explicit StripGroups(size_t elements) : elements_(elements) {}

  size_t count() const { return (elements_ + kLaneBytes - 1) / kLaneBytes; }
  size_t vectors() const { return count() * kElement; }

  // The first element of a group.
  size_t first(size_t group) const { return std::min(group * kLaneBytes, elements_ - kLaneBytes); }

 private:
  size_t elements_;
};

// Calls run.operator()<windows>().
template <class Run>
void with_windows(int windows, Run&& run) {
  switch (windows) {
    case 1:
      return run.template operator()<1>();
    case 2:
      return run.template operator()<2>();
    case 3:
      return run.template operator()<3>();
    default:
      return run.template operator()<kMostWindows>();
  }
}

// The smallest number of windows with which plan(windows) succeeds; 0 if it never does.
template <class Plan>
int fewest_windows(uint32_t line_bytes, Plan&& plan) {
  for (int windows = 1; windows <= kMostWindows; ++windows) {
    if (line_bytes < 16 * static_cast<uint32_t>(windows)) return 0;
    if (plan(windows)) return windows;
  }
  return 0;
}

template <size_t kElement>
class NearestStrip {
 public:
  static constexpr bool kPlans = kBytePermutes;

  // Bytes of memory for a strip of so many elements, or fewer.
  static size_t memory_bytes(size_t elements) {
    return Gather::memory_bytes(StripGroups<kElement>(elements).vectors());
  }

  NearestStrip(uint8_t* memory, size_t elements)
      : gather_(memory, StripGroups<kElement>(elements).vectors()) {}

  // False if the elements are too far apart: then the strip cannot run.
  bool plan(const StripTables& tables) {
    if constexpr (!kPlans) return false;
    groups_ = StripGroups<kElement>(tables.length);
    const uint32_t line_bytes = tables.line_elements * uint32_t{kElement};
    windows_ =
        fewest_windows(line_bytes, [&](int windows) { return plan_windows(tables, windows, line_bytes); });
    return windows_ != 0;
  }

  void run(uint8_t* to, const uint8_t* from) const {
    with_windows(windows_, [&]<int kWindows>() { run_windows<kWindows>(to, from); });
  }

 private:
  bool plan_windows(const StripTables& tables, int windows, uint32_t line_bytes) {
    std::array<uint32_t, StripGroups<kElement>::kBytes> places;
    for (size_t group = 0; group < groups_.count(); ++group) {
      const uint32_t* index = tables.index + groups_.first(group);
      for (size_t i = 0; i < kLaneBytes; ++i) {
        for (uint32_t b = 0; b < kElement; ++b) places[i * kElement + b] = index[i] * uint32_t{kElement} + b;
      }
      for (size_t v = 0; v < kElement; ++v) {
        if (!gather_.plan(group * kElement + v, &places[v * kLaneBytes], windows, line_bytes)) return false;
      }
    }
    return true;
  }

  // By copies of the members, which the bytes that are stored might change for all that a compiler knows.
  template <int kWindows>
  void run_windows(uint8_t* to, const uint8_t* from) const {
    const Gather gather = gather_;
    const StripGroups<kElement> groups = groups_;
    for (size_t group = 0; group < groups.count(); ++group) {
      uint8_t* out = to + groups.first(group) * kElement;
      prefetch_ahead<kElement * kLaneBytes>(out);
      for (size_t v = 0; v < kElement; ++v) {
        store(out + v * kLaneBytes, gather.pick<kWindows>(group * kElement + v, from));
      }
    }
  }

  Gather gather_;
  StripGroups<kElement> groups_{kLaneBytes};
  int windows_ = 0;
};

// 64 * (s - p) of pairs p s, which fits a word.
inline SignedWords differences64(Bytes pairs) {
  if constexpr (kBytePermutes) {
    return multiply_add_pairs(pairs, as<SignedBytes>(Words{} + uint16_t{0x40C0}));  // -64, 64
  } else {
    return as<SignedWords>((odd_bytes(pairs) - even_bytes(pairs)) << 6);
  }
}

// p + ((s - p) * weight >> 10) of bytes that come as interleave_low(p, s) and interleave_high(p, s), their
// weights, up to 1024, in the same order. The upper half of 64 times the product is the shifted one.
inline Bytes blend_pairs(Bytes low, Bytes high, const uint8_t* weights) {
  const auto blend = [&](Bytes pairs, const uint8_t* weight) {
    return multiply_high(differences64(pairs), load<SignedWords>(weight)) +
           as<SignedWords>(even_bytes(pairs));
  };
  return narrow_to_bytes(blend(low, weights), blend(high, weights + kLaneBytes));
}

// Elements and the ones before them, from anywhere in a line to side by side.
template <size_t kElement, size_t kElements>
class LaidElements {
 public:
  // The one before and the own one come as 2 * kElement bytes, and go to place i. What is stored behind them
  // is written over by the next ones.
  void lay(size_t i, const uint8_t* pair) {
    constexpr size_t kWord = kElement > 4 ? 8 : 4;
    if constexpr (kElement == 1) {
      std::memcpy(&before_[2 * i], pair, 2);
    } else if constexpr (kElement == 3 || kElement > 4) {
      using Word = std::conditional_t<kWord == 8, uint64_t, uint32_t>;
      Word before, own;  // the own one at the word's top
      std::memcpy(&before, pair, kWord);
      std::memcpy(&own, pair + 2 * kElement - kWord, kWord);
      own >>= 8 * (kWord - kElement);
      std::memcpy(&before_[i * kElement], &before, kWord);
      std::memcpy(&own_[i * kElement], &own, kWord);
    } else {
      std::memcpy(&before_[i * kElement], pair, kElement);
      std::memcpy(&own_[i * kElement], pair + kElement, kElement);
    }
  }

  struct Pairs {
    Bytes low, high;
  };
  // kLaneBytes bytes of both from `at` on, in turn.
  Pairs pairs(size_t at) const {
    if constexpr (kElement == 1) {
      return {load_blocks<32>(&before_[2 * at]), load_blocks<32>(&before_[2 * at + 16])};
    } else {
      const Bytes p = load<Bytes>(&before_[at]), s = load<Bytes>(&own_[at]);
      return {interleave_low(p, s), interleave_high(p, s)};
    }
  }

 private:
  static constexpr size_t kBehind = 8;
  std::array<uint8_t, (kElement == 1 ? 2 : kElement) * kElements + kBehind> before_;
  std::array<uint8_t, kElement == 1 ? 0 : kElement * kElements + kBehind> own_;
};

// Every output byte is a blend of two elements next to each other, the one before and the own one. Where the
// own one is the line's first, it is taken as the one before, with the whole weight.
template <size_t kElement>
class LinearStrip {
 public:
  static constexpr bool kPlans = kVectorRows;

  static size_t memory_bytes(size_t elements) {
    const size_t vectors = StripGroups<kElement>(elements).vectors();
    return vectors * kWeightBytes + Gather::memory_bytes(2 * vectors);
  }

  LinearStrip(uint8_t* memory, size_t elements)
      : copies_(memory, elements),
        weights_(memory),
        places_(memory + StripGroups<kElement>(elements).vectors() * kWeightBytes),
        gather_(memory + StripGroups<kElement>(elements).vectors() * kWeightBytes,
                2 * StripGroups<kElement>(elements).vectors()) {}

  bool plan(const StripTables& tables) {
    is_blend_ =
        std::any_of(tables.fraction, tables.fraction + tables.length, [](int32_t f) { return f != 0; });
    if (!is_blend_) return copies_.plan(tables);
    tables_ = tables;
    groups_ = StripGroups<kElement>(tables.length);
    if (tables.line_elements < 2 || !plan_weights()) return false;
    const uint32_t line_bytes = tables.line_elements * uint32_t{kElement};
    windows_ = 0;
    if constexpr (kBytePermutes) {
      windows_ = fewest_windows(line_bytes, [&](int windows) { return plan_windows(windows, line_bytes); });
    }
    if (windows_ == 0) plan_places();
    return true;
  }

  void run(uint8_t* to, const uint8_t* from) const {
    if (!is_blend_) return copies_.run(to, from);
    if (windows_ == 0) return run_elements(to, from);
    with_windows(windows_, [&]<int kWindows>() { run_windows<kWindows>(to, from); });
  }

 private:
  static constexpr int32_t kWhole = 1024;
  static constexpr size_t kWeightBytes = 2 * kLaneBytes;  // of a vector

  // The index of the own element.
  static uint32_t own(uint32_t index) { return std::max(index, 1U); }

  // Its weight; outside 0 to 1024 where the index has wrapped.
  static int32_t own_weight(uint32_t index, int32_t fraction) {
    if (index == 0) return 0;
    return fraction > 0 ? fraction : kWhole + fraction;
  }

  bool plan_weights() {
    std::array<uint16_t, StripGroups<kElement>::kBytes> words;
    for (size_t group = 0; group < groups_.count(); ++group) {
      const size_t first = groups_.first(group);
      for (size_t i = 0; i < kLaneBytes; ++i) {
        const int32_t weight = own_weight(tables_.index[first + i], tables_.fraction[first + i]);
        if (weight < 0 || weight > kWhole) return false;
        for (size_t b = 0; b < kElement; ++b) words[i * kElement + b] = static_cast<uint16_t>(weight);
      }
      for (size_t v = 0; v < kElement; ++v) {
        uint8_t* to = weights_ + (group * kElement + v) * kWeightBytes;
        for_each_half_block([&](size_t from, size_t place) {
          std::memcpy(to + 2 * place, &words[v * kLaneBytes + from], 8 * sizeof words[0]);
        });
      }
    }
    return true;
  }

  bool plan_windows(int windows, uint32_t line_bytes) {
    std::array<uint32_t, StripGroups<kElement>::kBytes> places;
    std::array<uint32_t, 2 * kLaneBytes> pairs;
    for (size_t group = 0; group < groups_.count(); ++group) {
      const uint32_t* index = tables_.index + groups_.first(group);
      for (size_t i = 0; i < kLaneBytes; ++i) {
        const uint32_t first = own(index[i]) * uint32_t{kElement};
        for (uint32_t b = 0; b < kElement; ++b) places[i * kElement + b] = first + b;
      }
      for (size_t v = 0; v < kElement; ++v) {
        for_each_half_block([&](size_t from, size_t place) {
          for (size_t i = 0; i < 8; ++i) {
            const uint32_t own_place = places[v * kLaneBytes + from + i];
            pairs[2 * (place + i)] = own_place - uint32_t{kElement};
            pairs[2 * (place + i) + 1] = own_place;
          }
        });
        const size_t vector = 2 * (group * kElement + v);
        if (!gather_.plan(vector, &pairs[0], windows, line_bytes) ||
            !gather_.plan(vector + 1, &pairs[kLaneBytes], windows, line_bytes)) {
          return false;
        }
      }
    }
    return true;
  }

  // Calls move(from, place) for eight bytes of a vector each: what interleave_low and interleave_high do to
  // their order.
  template <class Move>
  static void for_each_half_block(Move&& move) {
    for (size_t block = 0; block < kLaneBytes / 16; ++block) {
      move(16 * block, 8 * block);
      move(16 * block + 8, kLaneBytes / 2 + 8 * block);
    }
  }

  template <int kWindows>
  void run_windows(uint8_t* to, const uint8_t* from) const {
    const Gather gather = gather_;
    const StripGroups<kElement> groups = groups_;
    const uint8_t* weights = weights_;
    for (size_t group = 0; group < groups.count(); ++group) {
      uint8_t* out = to + groups.first(group) * kElement;
      prefetch_ahead<kElement * kLaneBytes>(out);
      for (size_t v = 0; v < kElement; ++v, weights += kWeightBytes) {
        const size_t vector = 2 * (group * kElement + v);
        store(out + v * kLaneBytes, blend_pairs(gather.pick<kWindows>(vector, from),
                                                gather.pick<kWindows>(vector + 1, from), weights));
      }
    }
  }

  // Without windows: where the elements before the own ones lie, in the memory that the windows would take.
  void plan_places() {
    for (size_t i = 0; i < tables_.length; ++i) {
      const uint32_t place = (own(tables_.index[i]) - 1) * uint32_t{kElement};
      std::memcpy(places_ + i * sizeof place, &place, sizeof place);
    }
  }

  const uint8_t* before_of(size_t element, const uint8_t* from) const {
    uint32_t place;
    std::memcpy(&place, places_ + element * sizeof place, sizeof place);
    return from + place;
  }

  // Then elements are laid side by side one by one, and blended. Many at a time, since a vector cannot be
  // loaded before bytes that were just stored there have reached the cache.
  void run_elements(uint8_t* to, const uint8_t* from) const {
    constexpr size_t kTogether = 32, kUnrolled = 4;
    LaidElements<kElement, kTogether * kLaneBytes> laid;
    for (size_t start = 0; start < groups_.count(); start += kTogether) {
      const size_t end = std::min(start + kTogether, groups_.count()), first = groups_.first(start);
      const size_t count = groups_.first(end - 1) + kLaneBytes - first;
      size_t i = 0;
      for (; i + kUnrolled <= count; i += kUnrolled) {
        for (size_t k = i; k < i + kUnrolled; ++k) laid.lay(k, before_of(first + k, from));
      }
      for (; i < count; ++i) laid.lay(i, before_of(first + i, from));
      for (size_t group = start; group < end; ++group) {
        uint8_t* out = to + groups_.first(group) * kElement;
        for (size_t v = 0; v < kElement; ++v) {
          const auto [low, high] = laid.pairs((groups_.first(group) - first) * kElement + v * kLaneBytes);
          store(out + v * kLaneBytes,
                blend_pairs(low, high, weights_ + (group * kElement + v) * kWeightBytes));
        }
      }
    }
  }

  NearestStrip<kElement> copies_;  // for a strip without fractions, in the same memory
  bool is_blend_ = false;
  uint8_t* weights_;
  uint8_t* places_;
  Gather gather_;
  StripTables tables_{};
  StripGroups<kElement> groups_{kLaneBytes};
  int windows_ = 0;
};

}  // namespace qvn
