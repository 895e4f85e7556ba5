/// The conversions of complementary mosaics in one shape, and what they make of a picture's lines.
#pragma once

#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "cygm/frames.h"

namespace cygm {

constexpr std::uint8_t kPrefill = 0xA5;

using Library = std::uint32_t (*)(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                                  std::uint32_t height);

/// A conversion and its name in messages.
struct Named {
  const char* name;
  Library library;
};

constexpr Library kBin = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMToBGR_Bin(dst, src, width, height);
};
constexpr Library kCells = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMToBGR(dst, src, width, height, 1);
};
constexpr Library kCells3x3 = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMToBGR_3x3(dst, src, width, height, 2);
};
constexpr Library kMono = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMToMono(dst, src, width, height, 3);
};
template <std::uint32_t target>
constexpr Library kTransformBin = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
};
template <std::uint32_t target>
constexpr Library kTransform = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMImageTransform(dst, src, width, height, target, 1);
};
template <std::uint32_t target>
constexpr Library kTransform3x3 = [](auto* dst, auto* src, auto width, auto height) {
  return QVN_IRaw8CYGMImageTransform_3x3(dst, src, width, height, target, 2);
};

constexpr std::array<Named, 2> kBinnedToBgr = {{{"binned", kBin}, {"binned transform", kTransformBin<1>}}};
constexpr std::array<Named, 2> kCellsToBgr = {{{"2x2", kCells}, {"2x2 transform", kTransform<1>}}};
constexpr std::array<Named, 2> kCells3x3ToBgr = {{{"3x3", kCells3x3}, {"3x3 transform", kTransform3x3<1>}}};

constexpr std::array<Named, 4> kMosaicToBgr = {
    {kCellsToBgr[0], kCellsToBgr[1], kCells3x3ToBgr[0], kCells3x3ToBgr[1]}};

inline Bytes convert(Library library, const Lines& lines, std::size_t pixel_bytes) {
  const auto height = static_cast<std::uint32_t>(lines.size());
  const auto width = static_cast<std::uint32_t>(lines[0].size());
  const Bytes src = stored(lines);
  Bytes dst(pixel_bytes * width * height, kPrefill);
  EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), width, height));
  return dst;
}

/// Blue, green, red.
using Pixel = std::array<std::uint8_t, 3>;

constexpr Pixel kGrey = {100, 100, 100};

/// A cell of three sites at 100 and one at 140. Luma is 110, the differences are 10 or -10: 112640 +- 21650
/// +- 3440 in red, 112640 -+ 9170 -+ 10780 in green, 112640 -+ 9590 +- 46450 in blue.
constexpr Pixel cell_with(char site) {
  switch (site) {
    case 'C':  // red -, blue +
      return {164, 108, 92};
    case 'Y':  // red +, blue -
      return {55, 111, 127};
    case 'G':  // red -, blue -
      return {74, 129, 85};
    default:  // M: red +, blue +
      return {145, 90, 134};
  }
}

/// A picture of three bytes a pixel.
class Picture {
 public:
  Picture(Library library, const Lines& lines)
      : width_(lines[0].size()), bytes_(convert(library, lines, 3)) {}

  Pixel at(std::size_t row, std::size_t x) const {
    const std::uint8_t* pixel = &bytes_[(row * width_ + x) * 3];
    return {pixel[0], pixel[1], pixel[2]};
  }

  Bytes row(std::size_t row) const {
    const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(row * width_ * 3);
    return {begin, begin + static_cast<std::ptrdiff_t>(width_ * 3)};
  }

 private:
  std::size_t width_;
  Bytes bytes_;
};

inline Bytes repeated(std::size_t count, const Bytes& group) {
  Bytes all;
  for (std::size_t i = 0; i < count; ++i) all.insert(all.end(), group.begin(), group.end());
  return all;
}

}  // namespace cygm
