// Checks that keep the library from frames it would make nonsense of, and the calls.
#include "rearrange.h"

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <utility>

#include "conversions.h"
#include "failure.h"
#include "formats.h"

namespace qvn::tool {
namespace {

/// Format codes of the library that stand for nothing but their bytes a pixel.
constexpr ColorCodingId kMono8 = 0, kTwelveBits = 1, kRgb8 = 4, kMono16 = 5, kRgb16 = 6;

std::size_t line_bytes(const Frame& frame) { return frame.bytes.size() / frame.size.height; }

/// Bytes of a pixel that stands for itself; 0 if pixels share bytes.
std::uint32_t pixel_bytes(const SourceFormat& format) { return format.group == 1 ? format.group_bytes : 0; }

std::string name_of(const Frame& frame) { return std::string(frame.format->name); }

/// The Bayer order after the lines, the columns or both have been turned round. An odd number of them leaves
/// the first where it was.
const Pattern& flipped_pattern(const Frame& frame, Axis axis) {
  std::string name(frame.pattern->name);
  if (axis != Axis::kVertical && frame.size.width % 2 == 0) {
    std::swap(name[0], name[1]);
    std::swap(name[2], name[3]);
  }
  if (axis != Axis::kHorizontal && frame.size.height % 2 == 0) {
    std::swap(name[0], name[2]);
    std::swap(name[1], name[3]);
  }
  return find_pattern(name);
}

ColorCodingId coding_of_element(std::uint32_t bytes) {
  switch (bytes) {
    case 1:
      return kMono8;
    case 2:
      return kMono16;
    case 3:
      return kRgb8;
    case 6:
      return kRgb16;
    default:
      return 0;
  }
}

ColorCodingId coding_of_bits(const SourceFormat& format) {
  constexpr std::array<std::pair<std::uint32_t, ColorCodingId>, 5> kCodings{
      {{8, kMono8}, {12, kTwelveBits}, {16, kMono16}, {24, kRgb8}, {48, kRgb16}}};
  for (const auto& [bits, coding] : kCodings) {
    if (bits * format.group == format.group_bytes * 8) {
      return coding;
    }
  }
  throw Failure("the library knows no frames of " + std::to_string(format.group_bytes * 8 / format.group) +
                " bits a pixel, which " + std::string(format.name) + " has");
}

void check_status(std::uint32_t status, const std::string& entry) {
  if (status != QVN_OK) {
    throw Failure(entry + " refused the frame: " + status_text(status));
  }
}

}  // namespace

Axis find_axis(const std::string& name) {
  const std::array<std::pair<std::string, Axis>, 3> axes{
      {{"horizontal", Axis::kHorizontal}, {"vertical", Axis::kVertical}, {"both", Axis::kBoth}}};
  std::vector<std::string> names;
  for (const auto& [known, axis] : axes) {
    if (known == name) {
      return axis;
    }
    names.push_back(known);
  }
  throw Failure("--axis: expected " + one_of(names) + ", found " + quoted(name));
}

Frame flip_frame(const Frame& frame, Axis axis) {
  if (frame.format->interlaced) {
    throw Failure("flip: expected lines in display order, found the fields of " + name_of(frame));
  }
  if (frame.size.height < 2) {
    throw Failure("flip: expected a frame of at least 2 lines, found " + to_text(frame.size));
  }
  Frame flipped = frame;
  if (axis == Axis::kVertical) {
    if (frame.bytes.size() % frame.size.height != 0) {
      throw Failure("flip: expected lines of whole bytes, found " + name_of(frame) + " at " +
                    to_text(frame.size));
    }
    check_status(QVN_FlipVertical(flipped.bytes.data(), static_cast<std::uint32_t>(line_bytes(frame)),
                                  frame.size.height),
                 "QVN_FlipVertical");
  } else {
    const std::uint32_t element = pixel_bytes(*frame.format);
    if (element != 1 && coding_of_element(element) == 0) {
      throw Failure("flip: expected pixels of 1, 2, 3 or 6 bytes of their own, found " + name_of(frame) +
                    ", which can be flipped along the vertical axis only");
    }
    check_status(QVN_Flip(flipped.bytes.data(), frame.size.width, frame.size.height,
                          static_cast<std::uint32_t>(axis), coding_of_element(element)),
                 "QVN_Flip");
  }
  if (frame.format->mosaic) {
    flipped.pattern = &flipped_pattern(frame, axis);
  }
  return flipped;
}

Frame weave_fields(const Frame& frame) {
  if (frame.size.height % 2 != 0 || frame.bytes.size() % frame.size.height != 0) {
    throw Failure("weave: expected two fields of equal height with lines of whole bytes, found " +
                  name_of(frame) + " at " + to_text(frame.size));
  }
  // In place, because with buffers of their own the library looks for the second field elsewhere if a line
  // has an odd number of bytes.
  Frame woven = frame;
  check_status(QVN_InterlacedToProgressive(woven.bytes.data(), woven.bytes.data(),
                                           static_cast<std::uint32_t>(line_bytes(frame)), frame.size.height),
               "QVN_InterlacedToProgressive");
  return woven;
}

Frame unpack_samples(const Frame& frame, std::uint32_t bits) {
  if (frame.format->group != 2 || frame.format->group_bytes != 3) {
    throw Failure("unpack: expected two samples in three bytes, raw12packed or y12packed, found " +
                  name_of(frame));
  }
  Frame unpacked = frame;
  const std::string depth = bits == 8 ? "8" : "16be";
  unpacked.format = &find_format((frame.format->mosaic ? "raw" : "y") + depth);
  unpacked.bytes.assign(frame.size.pixels() * bits / 8, 0);
  const auto entry = bits == 8 ? QVN_Packed12BitTo8Bit : QVN_Packed12BitTo16Bit;
  check_status(entry(unpacked.bytes.data(), frame.bytes.data(), frame.size.width, frame.size.height),
               bits == 8 ? "QVN_Packed12BitTo8Bit" : "QVN_Packed12BitTo16Bit");
  return unpacked;
}

Frame resample_lines(const Frame& frame, const Resampling& how) {
  constexpr std::uint32_t kDone = 1;  // these entries report success by a true result
  const std::uint32_t element = pixel_bytes(*frame.format);
  if (frame.format->mosaic || frame.format->interlaced || element == 0) {
    throw Failure("resample: expected pixels of their own bytes and all colours, found " + name_of(frame));
  }
  std::int32_t width = static_cast<std::int32_t>(how.width);
  if (width == 0) {
    QVN_GetResampledScanlineLength(&width, static_cast<std::int32_t>(frame.size.width), how.source_rate,
                                   how.picture_rate);
  }
  const LineRange lines = how.lines.count == 0 ? LineRange{0, frame.size.height} : how.lines;
  if (lines.top >= frame.size.height || lines.count > frame.size.height - lines.top) {
    throw Failure("--lines: expected TOP,COUNT inside " + std::to_string(frame.size.height) +
                  " lines, found " + std::to_string(lines.top) + "," + std::to_string(lines.count));
  }
  Frame resampled = frame;
  resampled.size = checked_size("resample", width < 1 ? 0 : static_cast<std::uint64_t>(width), lines.count);
  resampled.bytes.assign(resampled.size.pixels() * element, 0);
  // The linear method reads as many pixels of a line as it writes, whatever the line has.
  std::vector<std::uint8_t> source(frame.bytes);
  const std::size_t beyond = std::max(resampled.size.width, frame.size.width) - frame.size.width;
  source.insert(source.end(), beyond * element, 0);
  const auto length = static_cast<std::int32_t>(frame.size.width);
  const auto count = static_cast<std::int32_t>(lines.count);
  const std::uint32_t method = how.linear ? 1 : 0;
  const bool whole = lines.count == frame.size.height;
  const std::uint32_t result =
      whole ? QVN_ResampleScanlines(resampled.bytes.data(), source.data(), width, length, count,
                                    how.source_rate, how.picture_rate, element, method)
            : QVN_ResampleScanlinesEx(resampled.bytes.data(), source.data() + lines.top * line_bytes(frame),
                                      width, width, length, length, count, how.source_rate, how.picture_rate,
                                      element, method);
  check_status(result == kDone ? QVN_OK : result,
               whole ? "QVN_ResampleScanlines" : "QVN_ResampleScanlinesEx");
  return resampled;
}

std::vector<std::uint8_t> read_sis(const Frame& frame, std::int32_t position, std::uint32_t kind) {
  std::vector<std::uint8_t> block(kind == 1 ? 12 : 52);
  const std::uint32_t status = QVN_GetSIS(block.data(), frame.bytes.data(), frame.size.width,
                                          frame.size.height, coding_of_bits(*frame.format), position, kind);
  if (status == QVN_E_UNCLASSIFIED) {
    throw Failure("sis: expected a position with " + std::to_string(block.size()) +
                  " bytes of the frame and one more behind it, found " + std::to_string(position));
  }
  if (status == QVN_E_PARAM2) {
    throw Failure("sis: expected a position that begins with a byte, found " + std::to_string(position));
  }
  check_status(status, "QVN_GetSIS");
  return block;
}

}  // namespace qvn::tool
