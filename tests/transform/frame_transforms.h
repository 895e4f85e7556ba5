/// Tests that every transform of a Bayer frame has to pass, whatever its window and its output.
///
/// A transform is an entry with its target, and with its sample format where it has one. Patterns are public
/// codes.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "reference/pattern.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace transforms {

using Bytes = std::vector<std::uint8_t>;

enum class Samples { kBytes, kPacked12, kWords };

struct FrameTransform {
  std::string name;
  std::function<std::uint32_t(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                              std::uint32_t)>
      library;
  /// Takes the internal pattern; false where it refuses.
  std::function<bool(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t)>
      reference;
  Samples samples;
  std::size_t pixel_bytes;
  bool drifts = false;          ///< odd widths are outside the contract: they write a pixel more a line
  std::size_t zero_column = 0;  ///< bytes of the last pixel of a line that are zero

  std::size_t src_line(std::uint32_t width) const {
    switch (samples) {
      case Samples::kPacked12:
        return std::size_t{width >> 1} * 3;
      case Samples::kWords:
        return std::size_t{width} * 2;
      default:
        return width;
    }
  }
  std::size_t dst_line(std::uint32_t width) const { return pixel_bytes * width; }
};

inline void PrintTo(const FrameTransform& transform, std::ostream* out) { *out << transform.name; }

inline std::string transform_name(const testing::TestParamInfo<FrameTransform>& info) {
  return info.param.name;
}

/// Compares with the reference. The offsets shift the frames off their alignment.
inline testing::AssertionResult matches(const FrameTransform& transform, std::uint32_t width,
                                        std::uint32_t height, std::uint32_t pattern, support::Random& random,
                                        std::size_t dst_offset = 0, std::size_t src_offset = 0) {
  // A line of room before and behind the frame for the copy of heights 1 and 0; a pixel a line more behind it
  // for the drift of odd widths, which in the 3x3 windows moves through the source too.
  const std::size_t line = transform.dst_line(width);
  const support::Room dst{.size = line * height,
                          .line_bytes = line,
                          .before = (line + 127) / 64 * 64 + dst_offset,
                          .behind = line + transform.pixel_bytes * height + 64};
  const support::Room src{.size = transform.src_line(width) * height,
                          .line_bytes = transform.src_line(width),
                          .before = 64 + src_offset,
                          .behind = std::size_t{height} + 64};
  auto same = support::same_effect(
      dst, src, random,
      [&](std::uint8_t* out, const std::uint8_t* in) {
        return transform.library(out, in, width, height, pattern);
      },
      [&](std::uint8_t* out, const std::uint8_t* in) {
        EXPECT_TRUE(transform.reference(out, in, width, height, reference::public_to_internal(pattern)));
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", offsets "
              << dst_offset << " and " << src_offset;
}

/// Both buffers hold the frame alone, between inaccessible pages.
inline void expect_nothing_touched_outside(const FrameTransform& transform) {
  support::Random random(301);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::frame_widths()) {
      if (width % 2 != 0 && transform.drifts) continue;
      for (std::uint32_t height : {2U, 3U}) {
        support::GuardedBuffer src(transform.src_line(width) * height, flush);
        support::GuardedBuffer dst(transform.dst_line(width) * height, flush);
        random.fill(src.data(), src.size());
        for (std::uint32_t pattern : support::numbers(0, 3)) {
          Bytes expected(dst.data(), dst.data() + dst.size());
          transform.reference(expected.data(), src.data(), width, height,
                              reference::public_to_internal(pattern));
          ASSERT_EQ(0U, transform.library(dst.data(), src.data(), width, height, pattern));
          ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
              << "width " << width << ", height " << height << ", pattern " << pattern;
        }
      }
    }
  }
}

/// The picture of a frame over a destination of one value.
inline Bytes picture(const FrameTransform& transform, const Bytes& src, std::uint32_t width,
                     std::uint32_t height, std::uint32_t pattern, std::uint8_t prefill = 0xA5) {
  Bytes dst(transform.dst_line(width) * height, prefill);
  EXPECT_EQ(0U, transform.library(dst.data(), src.data(), width, height, pattern));
  return dst;
}

/// Part of a frame of whole samples.
inline Bytes crop_of(const Bytes& frame, std::size_t sample_bytes, std::size_t width, std::size_t left,
                     std::size_t top, std::size_t crop_width, std::size_t crop_height) {
  Bytes crop;
  for (std::size_t y = top; y < top + crop_height; ++y) {
    const std::uint8_t* line = &frame[(y * width + left) * sample_bytes];
    crop.insert(crop.end(), line, line + crop_width * sample_bytes);
  }
  return crop;
}

}  // namespace transforms
