// What the library does to frames as they are, without making pictures of them: flips, weaving, unpacking,
// resampling of lines, and the block of bytes that a camera writes into its pixels.
#pragma once

#include "frame.h"

namespace qvn::tool {

enum class Axis : std::uint32_t { kHorizontal = 1, kVertical = 2, kBoth = 3 };
Axis find_axis(const std::string& name);

/// Of a mosaic, the result has the Bayer order of the flipped frame. Throws Failure for formats whose pixels
/// share bytes, except along the vertical axis.
Frame flip_frame(const Frame& frame, Axis axis);

/// From fields stored one behind the other to lines in display order.
Frame weave_fields(const Frame& frame);

/// Packed 12-bit samples to one of 8 or 16 bits each.
Frame unpack_samples(const Frame& frame, std::uint32_t bits);

struct LineRange {
  std::uint32_t top = 0;
  std::uint32_t count = 0;  // 0: all
};

struct Resampling {
  float source_rate = 0;
  float picture_rate = 0;
  std::uint32_t width = 0;  // of the result; 0: as the library reckons it
  bool linear = false;
  LineRange lines;
};
Frame resample_lines(const Frame& frame, const Resampling& how);

/// The block that starts at a line, or a number of pixels before the frame's end if `position` is negative.
/// Kinds 1 and 2 have 12 and 52 bytes.
std::vector<std::uint8_t> read_sis(const Frame& frame, std::int32_t position, std::uint32_t kind);

}  // namespace qvn::tool
