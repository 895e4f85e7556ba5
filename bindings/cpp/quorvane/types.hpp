// The words of the checked interface: sizes, selectors by name, and buffers that know their length and pitch.
#pragma once

#include <quorvane/quorvane.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ranges>
#include <type_traits>

namespace quorvane {

/// Of a frame in pixels. A run of pixels is a frame of one line.
struct Size {
  std::uint32_t width = 0;
  std::uint32_t height = 1;

  /// The largest std::size_t where that is too small, which no function takes.
  constexpr std::size_t pixels() const {
    const std::uint64_t product = std::uint64_t{width} * height;
    constexpr std::size_t kMost = static_cast<std::size_t>(-1);
    return product < kMost ? static_cast<std::size_t>(product) : kMost;
  }
  bool operator==(const Size&) const = default;
};

/// 16384 x 16384: within it, no product that the library forms in 32 bits wraps.
inline constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

/// The first two samples of a Bayer frame's first line, and those of its second line.
enum class Pattern : std::uint32_t { kRggb = 0, kGbrg = 1, kGrbg = 2, kBggr = 3 };

/// What a transform function makes of a pixel; see TransformTarget.
enum class Target : std::uint32_t {
  kY8 = 0,
  kBgr = 1,
  kBgra = 2,
  kY8Rec709 = 3,
  kUyvy = 4,
  kY16 = 5,
  kY16Rec709 = 6,
  kBgr16 = 7,
};

enum class Axis : std::uint32_t { kHorizontal = 1, kVertical = 2, kBoth = 3 };

enum class ByteOrder : std::uint32_t { kHost = 0, kBigEndian = 1 };
/// Which end of a 16-bit word a sample touches.
enum class Alignment : std::uint32_t { kTopBit = 0, kLowBit = 1 };

/// How 16-bit samples lie in a source.
struct SampleForm {
  std::uint32_t bits = 16;  ///< that count, for samples that begin at bit 0
  Alignment alignment = Alignment::kLowBit;
  ByteOrder order = ByteOrder::kBigEndian;
};

/// How many low bits of a 16-bit sample do not count.
struct Shift {
  std::uint32_t bits = 0;
};

/// Pixel format codes; see QVN_GetBitsPerPixel.
enum class ColorCoding : std::uint32_t {
  kMono8 = 0,
  kYuv411 = 1,
  kYuv422 = 2,
  kYuv444 = 3,
  kRgb8 = 4,
  kMono16 = 5,
  kRgb16 = 6,
  kSignedMono16 = 7,
  kSignedRgb16 = 8,
  kRaw8 = 9,
  kRaw16 = 10,
};

/// Row by row, with red, green and blue as inputs; the rows make red, green and blue.
using Matrix = std::array<float, 9>;

enum class SisKind : std::uint32_t { k12Bytes = 1, k52Bytes = 2 };
enum class ResampleBy : std::uint32_t { kNearest = 0, kLinear = 1 };

namespace detail {

/// Bytes, and words where pixels are made of words.
template <class T>
concept Sample = sizeof(T) <= 2 && (std::is_integral_v<T> || std::is_same_v<T, std::byte>);

template <class R>
concept SampleRange =
    std::ranges::contiguous_range<R> && std::ranges::sized_range<R> && Sample<std::ranges::range_value_t<R>>;

template <class R>
concept WritableRange =
    SampleRange<R> && !std::is_const_v<std::remove_reference_t<std::ranges::range_reference_t<R>>>;

/// The code that the library takes. One without its version record takes codes 1 and 2 the other way about.
inline BayerPattern code_of(Pattern pattern) {
  static const bool swapped = [] {
    std::uint32_t version = 0;
    return QVN_GetVersion(&version) == QVN_OK && version >= UINT32_C(0x01010000);
  }();
  const auto code = static_cast<BayerPattern>(pattern);
  return swapped || code == 0 || code == 3 ? code : 3 - code;
}

/// The pattern of the same mosaic from its line `line` on.
constexpr Pattern from_line(Pattern pattern, std::uint32_t line) {
  return static_cast<Pattern>(static_cast<std::uint32_t>(pattern) ^ (line & 1));
}

}  // namespace detail

/// Bytes to read: any contiguous range of bytes or words (std::vector, std::array, std::span), and from one
/// line to the next a pitch in bytes; 0 stands for lines without padding. The memory stays the caller's.
class Source {
 public:
  template <detail::SampleRange R>
  requires(!std::is_base_of_v<Source, std::remove_cvref_t<R>>)
      Source(const R& range, std::size_t pitch = 0)  // NOLINT(google-explicit-constructor)
      : Source(std::ranges::data(range), std::ranges::size(range) * sizeof(std::ranges::range_value_t<R>),
               pitch) {}
  Source(const void* data, std::size_t size, std::size_t pitch)
      : data_(static_cast<const std::uint8_t*>(data)), size_(size), pitch_(pitch) {}

  const std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }
  std::size_t pitch() const { return pitch_; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pitch_;
};

/// Bytes to write, in the same way.
class Destination {
 public:
  Destination() = default;
  template <detail::WritableRange R>
  Destination(R&& range, std::size_t pitch =
                             0)  // NOLINT(google-explicit-constructor,bugprone-forwarding-reference-overload)
      : Destination(std::ranges::data(range),
                    std::ranges::size(range) * sizeof(std::ranges::range_value_t<R>), pitch) {}
  Destination(void* data, std::size_t size, std::size_t pitch)
      : data_(static_cast<std::uint8_t*>(data)), size_(size), pitch_(pitch) {}

  std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }
  std::size_t pitch() const { return pitch_; }

 private:
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t pitch_ = 0;
};

/// Where plane functions write; those without luma leave `luma` alone.
struct Planes {
  Destination red;
  Destination green;
  Destination blue;
  Destination luma{};
};

}  // namespace quorvane
