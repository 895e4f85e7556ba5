// A colour matrix for finished pictures that rounds and stops at black and at the top. The library has none;
// this one is the same wherever it is offered.
//
// Pixels are taken apart into strips of planes, so that compilers make vectors of the sums. A sample times a
// float is exact in double precision, so the sums are the same on every machine, whether or not the compiler
// fuses them.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <span>

#include "quorvane/result.hpp"
#include "quorvane/types.hpp"

namespace quorvane {

class ClampedMatrix {
 public:
  explicit ClampedMatrix(const Matrix& matrix) {
    std::copy(matrix.begin(), matrix.end(), m_.begin());
    if (!std::all_of(m_.begin(), m_.end(), [](double factor) { return std::isfinite(factor); })) {
      throw Error({Cause::kArgument, QVN_E_UNCLASSIFIED, "ClampedMatrix: expected nine finite numbers"});
    }
    constexpr double kMost = 32767.0 / 3;  // times three samples of up to 65535
    within_32_bits_ =
        std::all_of(m_.begin(), m_.end(), [](double factor) { return std::abs(factor) <= kMost; });
  }

  /// Pixels of `step` samples in place, of which red, green and blue are at the indices `red`, 1 and 2 - red:
  /// 2 for the library's BGR, BGRA and BGR16, 0 for RGB.
  template <class T>
  void apply(T* pixels, std::size_t count, std::size_t step, std::size_t red, std::uint32_t top) const {
    apply_to_bytes<T>(reinterpret_cast<std::uint8_t*>(pixels), count, step, red, top);
  }
  /// The same where words have no alignment.
  template <class T>
  void apply_to_bytes(std::uint8_t* pixels, std::size_t count, std::size_t step, std::size_t red,
                      std::uint32_t top) const {
    Strip strip;
    for (std::size_t done = 0; done < count; done += kStrip) {
      const std::size_t n = std::min(count - done, kStrip);
      std::uint8_t* const first = pixels + done * step * sizeof(T);
      take_apart<T>(strip, first, n, step, red);
      if (within_32_bits_) {
        transform<true>(strip, static_cast<std::int32_t>(top));
      } else {
        transform<false>(strip, static_cast<std::int32_t>(top));
      }
      put_together<T>(first, strip, n, step, red);
    }
  }
  void apply_bgr(std::span<std::uint8_t> picture) const {
    apply(picture.data(), picture.size() / 3, 3, 2, 255);
  }
  void apply_bgra(std::span<std::uint8_t> picture) const {
    apply(picture.data(), picture.size() / 4, 4, 2, 255);
  }
  void apply_bgr16(std::span<std::uint16_t> picture, std::uint32_t top) const {
    apply(picture.data(), picture.size() / 3, 3, 2, top);
  }

 private:
  static constexpr std::size_t kStrip = 64;

  /// The planes lie within the cache next to the processor. Where a strip is not full, old samples take part.
  struct Strip {
    std::array<std::int32_t, kStrip> red{};
    std::array<std::int32_t, kStrip> green{};
    std::array<std::int32_t, kStrip> blue{};
  };

  template <class T>
  static void take_apart(Strip& strip, const std::uint8_t* pixels, std::size_t n, std::size_t step,
                         std::size_t red) {
    for (std::size_t i = 0; i < n; ++i, pixels += step * sizeof(T)) {
      strip.red[i] = load<T>(pixels, red);
      strip.green[i] = load<T>(pixels, 1);
      strip.blue[i] = load<T>(pixels, 2 - red);
    }
  }
  template <class T>
  static void put_together(std::uint8_t* pixels, const Strip& strip, std::size_t n, std::size_t step,
                           std::size_t red) {
    for (std::size_t i = 0; i < n; ++i, pixels += step * sizeof(T)) {
      store<T>(pixels, red, strip.red[i]);
      store<T>(pixels, 1, strip.green[i]);
      store<T>(pixels, 2 - red, strip.blue[i]);
    }
  }

  template <bool kWithin32Bits>
  void transform(Strip& strip, std::int32_t most) const {
    const std::array<double, 9> m = m_;  // which no sample can overlap
    for (std::size_t i = 0; i < kStrip; ++i) {
      const double r = strip.red[i];
      const double g = strip.green[i];
      const double b = strip.blue[i];
      strip.red[i] = level<kWithin32Bits>(r * m[0] + g * m[1] + b * m[2], most);
      strip.green[i] = level<kWithin32Bits>(r * m[3] + g * m[4] + b * m[5], most);
      strip.blue[i] = level<kWithin32Bits>(r * m[6] + g * m[7] + b * m[8], most);
    }
  }

  /// Rounded halves up and clamped, in either order: `most` is a whole number. Only clamped integers make
  /// vectors by every compiler, but they have to be integers.
  template <bool kWithin32Bits>
  static std::int32_t level(double value, std::int32_t most) {
    const double sum = kWithin32Bits ? value : std::clamp(value, 0.0, static_cast<double>(most));
    return std::clamp(static_cast<std::int32_t>(sum + 0.5), 0, most);
  }

  template <class T>
  static T load(const std::uint8_t* pixel, std::size_t channel) {
    T sample;
    std::memcpy(&sample, pixel + channel * sizeof(T), sizeof(T));
    return sample;
  }
  template <class T>
  static void store(std::uint8_t* pixel, std::size_t channel, std::int32_t value) {
    const auto sample = static_cast<T>(value);
    std::memcpy(pixel + channel * sizeof(T), &sample, sizeof(T));
  }

  std::array<double, 9> m_{};
  bool within_32_bits_ = false;
};

}  // namespace quorvane
