/// The sheet of digests: a line for each function and choice of selectors, with one number that stands for
/// everything that a fixed set of calls left behind. The same on every platform, level and compiler.
///
/// Numbers are digested, not memory: a 16-bit word counts as its value, so that the machine's byte order does
/// not show, and sources that are read in the machine's order are written as words.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace digest {

/// Numbers in a row with margins on both sides, all filled from `seed`.
template <typename Number>
class Buffer {
 public:
  Buffer(std::size_t size, std::uint64_t seed) : numbers_(size + 2 * kMargin) {
    for (Number& number : numbers_) {
      seed = seed * 6364136223846793005U + 1442695040888963407U;
      number = static_cast<Number>(seed >> 33);
    }
  }

  Number* data() { return numbers_.data() + kMargin; }
  /// As the library takes a source: by its bytes.
  std::uint8_t* bytes() { return static_cast<std::uint8_t*>(static_cast<void*>(data())); }
  const std::vector<Number>& whole() const { return numbers_; }

 private:
  /// More than any call of the sheet reaches beyond its frame.
  static constexpr std::size_t kMargin = 64;
  std::vector<Number> numbers_;
};

/// FNV-1a of 64 bits, over numbers taken apart from their lowest byte up.
class Digest {
 public:
  template <typename Number>
  void add(Number number) {
    auto rest = static_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < sizeof number; ++i, rest >>= 8) {
      value_ = (value_ ^ (rest & 0xFF)) * 0x100000001B3U;
    }
  }
  template <typename Number>
  void add(const Buffer<Number>& buffer) {
    for (const Number number : buffer.whole()) add(number);
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

/// A call over fresh buffers: its status, the whole destination and the whole source, margins included.
template <typename DstNumber, typename SrcNumber, typename Call>
void add_call(Digest& digest, std::size_t dst_size, std::size_t src_size, Call call) {
  Buffer<DstNumber> dst(dst_size, dst_size);
  Buffer<SrcNumber> src(src_size, ~std::uint64_t{src_size});
  digest.add(call(dst.data(), src.bytes()));
  digest.add(dst);
  digest.add(src);
}

class Sheet {
 public:
  /// `fill(digest)` makes the calls of the line.
  template <typename Fill>
  void line(std::string name, Fill fill) {
    Digest digest;
    fill(digest);
    lines_.emplace_back(std::move(name), digest.value());
  }
  const std::vector<std::pair<std::string, std::uint64_t>>& lines() const { return lines_; }

 private:
  std::vector<std::pair<std::string, std::uint64_t>> lines_;
};

struct Size {
  std::uint32_t width;
  std::uint32_t height;
};

/// Frames that every function takes, from the smallest to beyond a strip of 256 pixels.
inline constexpr Size kFrames[] = {{4, 8}, {34, 8}, {62, 12}, {130, 8}, {258, 12}, {322, 8}};

/// Runs of pixels with every kind of tail, and a multiple of 8.
inline constexpr std::uint32_t kCounts[] = {1, 7, 33, 64, 121, 264, 1003};

/// The parts of the sheet, one file each.
void add_queries(Sheet& sheet);
void add_runs(Sheet& sheet);
void add_planes(Sheet& sheet);
void add_mosaics(Sheet& sheet);
void add_corrected(Sheet& sheet);
void add_cygm(Sheet& sheet);
void add_utility(Sheet& sheet);

}  // namespace digest
