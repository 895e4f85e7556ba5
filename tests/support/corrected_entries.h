/// The six entries that take a colour correction, with their references and the shapes of their frames, and
/// the comparison of the two over whole arenas.
#pragma once

#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>

#include "reference/correction.h"
#include "reference/pattern.h"
#include "reference/raw12.h"
#include "reference/raw16.h"
#include "reference/raw8_cc.h"
#include "support/compare.h"
#include "support/corrections.h"

namespace support {

/// The arguments behind the two buffers. Entries without a shift ignore it.
struct Frame {
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t pattern = 0;
  std::uint32_t shift = 0;
};

inline std::ostream& operator<<(std::ostream& out, const Frame& frame) {
  return out << "width " << frame.width << ", height " << frame.height << ", pattern " << frame.pattern
             << ", shift " << frame.shift;
}

struct CorrectedEntry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t* dst, const std::uint8_t* src, const Frame&, const void* correction);
  int (*reference)(std::uint8_t* dst, const std::uint8_t* src, const Frame&, const void* correction);
  reference::Corrected column;  ///< in the map of kinds
  unsigned sample_bits;         ///< of a sample in the frame
  unsigned corrected_bits;      ///< of a sample that the correction gets
  unsigned channel_bits;
  std::uint32_t pixel_bytes;
  bool drifts;  ///< an odd width writes width + 1 pixels a line
  bool shifts;
  std::uint32_t good_width;  ///< least one that reads nothing before the frame

  std::size_t src_bytes(const Frame& frame) const {
    const std::size_t line =
        sample_bits == 12 ? std::size_t{frame.width >> 1} * 3 : std::size_t{frame.width} * (sample_bits / 8);
    return line * frame.height;
  }
  std::size_t dst_bytes(const Frame& frame) const {
    return std::size_t{pixel_bytes} * frame.width * frame.height;
  }
  /// Kind 9 holds bytes for the entries with 8-bit channels.
  bool word_tables() const { return channel_bits == 16; }
  bool serves(std::uint32_t kind) const {
    return reference::dispatch(column, Correction::of_kind(kind).get()) == reference::kServed;
  }
};

inline void PrintTo(const CorrectedEntry& entry, std::ostream* out) { *out << entry.name; }

/// The library takes records and words, the words at any address; tests hold them as bytes.
inline const ColorCorrection* as_correction(const void* object) {
  return static_cast<const ColorCorrection*>(object);
}
inline std::uint16_t* as_words(std::uint8_t* bytes) {
  return static_cast<std::uint16_t*>(static_cast<void*>(bytes));
}

inline constexpr std::array<CorrectedEntry, 6> kCorrectedEntries = {{
    {.name = "Raw8ToBGR_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw8ToBGR_CC(dst, src, f.width, f.height, f.pattern, as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw8ToBGR_CC(dst, src, f.width, f.height,
                                          reference::public_to_internal(f.pattern), object);
         },
     .column = reference::Corrected::kRaw8,
     .sample_bits = 8,
     .corrected_bits = 8,
     .channel_bits = 8,
     .pixel_bytes = 3,
     .drifts = true,
     .shifts = false,
     .good_width = 2},
    {.name = "Raw8ToY8_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw8ToY8_CC(dst, src, f.width, f.height, f.pattern, as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw8ToY8_CC(dst, src, f.width, f.height,
                                         reference::public_to_internal(f.pattern), object);
         },
     .column = reference::Corrected::kRaw8,
     .sample_bits = 8,
     .corrected_bits = 8,
     .channel_bits = 8,
     .pixel_bytes = 1,
     .drifts = false,
     .shifts = false,
     .good_width = 2},
    {.name = "Raw12ToBGR_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw12ToBGR_CC(dst, src, f.width, f.height, f.pattern, as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw12ToBGR_CC(dst, src, f.width, f.height,
                                           reference::public_to_internal(f.pattern), object);
         },
     .column = reference::Corrected::kRaw12ToBGR,
     .sample_bits = 12,
     .corrected_bits = 8,
     .channel_bits = 8,
     .pixel_bytes = 3,
     .drifts = true,
     .shifts = false,
     .good_width = 2},
    {.name = "Raw12ToBGR16_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw12ToBGR16_CC(as_words(dst), src, f.width, f.height, f.pattern,
                                      as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw12ToBGR16_CC(dst, src, f.width, f.height,
                                             reference::public_to_internal(f.pattern), object);
         },
     .column = reference::Corrected::kRaw12ToBGR16,
     .sample_bits = 12,
     .corrected_bits = 12,
     .channel_bits = 16,
     .pixel_bytes = 6,
     .drifts = true,
     .shifts = false,
     .good_width = 2},
    {.name = "Raw16ToBGR16_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw16ToBGR16_CC(as_words(dst), src, f.width, f.height, f.pattern, f.shift,
                                      as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw16ToBGR16_CC(dst, src, f.width, f.height,
                                             reference::public_to_internal(f.pattern), f.shift, object);
         },
     .column = reference::Corrected::kRaw16ToBGR16,
     .sample_bits = 16,
     .corrected_bits = 16,
     .channel_bits = 16,
     .pixel_bytes = 6,
     .drifts = true,
     .shifts = true,
     .good_width = 4},
    {.name = "Raw16ToY16_CC",
     .library =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return QVN_Raw16ToY16_CC(as_words(dst), src, f.width, f.height, f.pattern, f.shift,
                                    as_correction(object));
         },
     .reference =
         [](std::uint8_t* dst, const std::uint8_t* src, const Frame& f, const void* object) {
           return reference::Raw16ToY16_CC(dst, src, f.width, f.height,
                                           reference::public_to_internal(f.pattern), f.shift, object);
         },
     .column = reference::Corrected::kRaw16ToY16,
     .sample_bits = 16,
     .corrected_bits = 16,
     .channel_bits = 16,
     .pixel_bytes = 2,
     .drifts = true,
     .shifts = true,
     .good_width = 4},
}};

/// Compares the entry with its reference. The offsets shift the frames off their alignment, words too.
inline testing::AssertionResult matches(const CorrectedEntry& entry, const Frame& frame,
                                        const void* correction, Random& random, std::size_t dst_offset = 0,
                                        std::size_t src_offset = 0) {
  // A line of room before and behind the frame for the copy of heights 1 and 0 and for widths that copy what
  // lies before the frame, and more behind it for the drift of odd widths; their walk reads three bytes at
  // most behind the source.
  const std::size_t line = std::size_t{entry.pixel_bytes} * frame.width;
  const Room dst{.size = entry.dst_bytes(frame),
                 .line_bytes = line,
                 .before = (line + 127) / 64 * 64 + dst_offset,
                 .behind = line + std::size_t{entry.pixel_bytes} * frame.height + 64};
  const Room src{.size = entry.src_bytes(frame),
                 .line_bytes = frame.height == 0 ? 0 : entry.src_bytes(frame) / frame.height,
                 .before = 64 + src_offset};
  auto same = same_effect(
      dst, src, random,
      [&](std::uint8_t* out, const std::uint8_t* in) { return entry.library(out, in, frame, correction); },
      [&](std::uint8_t* out, const std::uint8_t* in) { entry.reference(out, in, frame, correction); });
  if (same) return same;
  return same << "; " << entry.name << ", " << frame << ", offsets " << dst_offset << " and " << src_offset;
}

}  // namespace support
