// The table rule: every channel is the entry at its value. Entries are bytes or words, T as the samples.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "correction/byte_table.h"
#include "correction/color_correction.h"
#include "correction/curve.h"
#include "frame/platform.h"

namespace qvn {

template <class T>
class TableEntries {
 public:
  explicit TableEntries(const ColorCorrection* object) {
    const auto& record = record_of<ColorCorrectionTable>(object);
    entries_ = static_cast<const uint8_t*>(record.first);
    const auto first = reinterpret_cast<intptr_t>(record.first),
               last = reinterpret_cast<intptr_t>(record.last);
    length_ = (last - first) / static_cast<intptr_t>(sizeof(T));
  }

  // Whether every value below `values` is an index.
  bool cover(uint32_t values) const { return entries_ != nullptr && length_ >= int64_t{values}; }

  // Whether each of the first `count` entries is an index, too.
  bool hold_indices(uint32_t count) const {
    T largest = 0;
    for (uint32_t i = 0; i < count; ++i) largest = std::max(largest, (*this)[static_cast<T>(i)]);
    return largest < length_;
  }

  // Reports an index that has no entry. The report may return.
  void check(T index) const {
    if (entries_ == nullptr || index >= length_) report_invalid_parameter();
  }

  T operator[](T index) const {
    T entry;
    std::memcpy(&entry, entries_ + index * sizeof entry, sizeof entry);
    return entry;
  }

 private:
  const uint8_t* entries_;
  int64_t length_;
};

// A table that covers all values. Bytes are copied first: as stores of bytes may change anything, the place
// of the table would be looked up for every sample.
class WordEntries {
 public:
  explicit WordEntries(const TableEntries<uint16_t>& entries) : entries_(entries) {}
  uint16_t operator()(uint16_t sample) const { return entries_[sample]; }
  void row(uint16_t* samples, size_t n) const { look_up_words(samples, n, *this); }

 private:
  TableEntries<uint16_t> entries_;
};
class ByteEntries : public ByteTable {
 public:
  explicit ByteEntries(const TableEntries<uint8_t>& entries)
      : ByteTable([&](uint8_t sample) { return entries[sample]; }) {}
};

template <class T>
using Table = ByCurve<T, std::conditional_t<sizeof(T) == 1, ByteEntries, WordEntries>>;

// One that may not. Reports come in the order of the pixels, of each red, green, blue; after one that
// returns, what lies outside the table is read as if nothing had been.
template <class T>
class ShortTable {
 public:
  static constexpr bool kInOrder = true;
  explicit ShortTable(const TableEntries<T>& entries) : entries_(entries) {}

  void row(Planes<T>& p, size_t from, size_t to) const {
    correct_pixels(p, from, to, [this](Rgb<T> q) { return Rgb<T>{at(q.r), at(q.g), at(q.b)}; });
  }

  // The other two channels are tested all the same, but not read.
  void shared_row(const Planes<T>& others, Channel<T> shared, Plane<T>& samples, size_t from,
                  size_t to) const {
    for (size_t x = from; x < to; ++x) {
      for (const Channel<T> channel : kChannels<T>) {
        if (channel == shared) {
          samples[x] = at(samples[x]);
        } else {
          entries_.check((others.*channel)[x]);
        }
      }
    }
  }

 private:
  T at(T index) const {
    entries_.check(index);
    return entries_[index];
  }

  TableEntries<T> entries_;
};

}  // namespace qvn
