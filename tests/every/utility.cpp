/// Resampling, flips, weaving, unpacking and the SIS block.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "every/entry.h"
#include "reference/flip.h"
#include "reference/interlace.h"
#include "reference/packed12.h"
#include "reference/resample.h"
#include "reference/sis.h"

namespace every {
namespace {

constexpr Sizes kFrame = {.width_step = 1, .least_width = 0, .height_step = 1, .least_height = 0};

/// Resampling counts from 1.
constexpr std::uint32_t kResampled = 1;

// ---- Resampling: `width` elements a line from `length_in`, `height` lines.

/// Lines of `elements` elements, the first of which a call gets, wherever it lies among them. What no memory
/// holds is as large as can be told.
struct Lines {
  Lines(std::uint64_t elements, std::int32_t pitch, std::uint32_t lines, std::uint32_t type) {
    if (elements == 0 || lines == 0) return;
    const auto told = [](std::uint64_t bytes) {
      return static_cast<std::size_t>(std::min<std::uint64_t>(bytes, SIZE_MAX / 16));
    };
    const std::int64_t travel = std::int64_t{pitch} * (std::int64_t{lines} - 1);
    first = told(static_cast<std::uint64_t>(std::max<std::int64_t>(-travel, 0)) * type);
    size = told((static_cast<std::uint64_t>(std::abs(travel)) + elements) * type);
  }
  std::size_t first = 0;  ///< offset of the first line
  std::size_t size = 0;
};

std::int32_t length_out(const Call& c) { return static_cast<std::int32_t>(c.width); }

bool is_refused(const Call& c) { return c.units == 0 || c.units > 6 || c.selector > 1; }

/// What the tables reach of a source line.
std::uint64_t elements_read(const Call& c) {
  if (is_refused(c)) return 0;
  const auto table =
      reference::ScanlineIndexTable(length_out(c), c.length_in, c.rate_in, c.rate_out, c.selector);
  return table.empty() ? 0 : std::uint64_t{*std::max_element(table.begin(), table.end())} + 1;
}

std::int32_t pitch_out(const Call& c) {
  const std::int32_t down = std::max(length_out(c) + c.slack_out, 0);
  return c.upward_out ? -down : down;
}
std::int32_t pitch_in(const Call& c) {
  const std::int32_t down = std::max(std::abs(c.length_in) + c.slack_in, 0);
  return c.upward_in ? -down : down;
}

struct BothLines {
  Lines out;
  Lines in;
};

template <bool kPitches>
BothLines lines_of(const Call& c) {
  return {Lines(c.width, kPitches ? pitch_out(c) : length_out(c), c.height, c.units),
          Lines(elements_read(c), kPitches ? pitch_in(c) : c.length_in, c.height, c.units)};
}

template <bool kPitches>
Shape resampling_shape(const Call& c) {
  if (is_refused(c)) return one_to_one(8, 8);
  const BothLines lines = lines_of<kPitches>(c);
  return one_to_one(lines.out.size, lines.in.size);
}

template <bool kPitches>
std::uint32_t resample(const Call& c, const Buffers& b) {
  const BothLines lines = is_refused(c) ? BothLines{{0, 0, 0, 0}, {0, 0, 0, 0}} : lines_of<kPitches>(c);
  std::uint8_t* const dst = b.dst[0] == nullptr ? nullptr : b.dst[0] + lines.out.first;
  const std::uint8_t* const src = b.src == nullptr ? nullptr : b.src + lines.in.first;
  const auto count = static_cast<std::int32_t>(c.height);
  if (kPitches) {
    return QVN_ResampleScanlinesEx(dst, src, length_out(c), pitch_out(c), c.length_in, pitch_in(c), count,
                                   c.rate_in, c.rate_out, c.units, c.selector);
  }
  return QVN_ResampleScanlines(dst, src, length_out(c), c.length_in, count, c.rate_in, c.rate_out, c.units,
                               c.selector);
}

template <bool kPitches>
std::uint32_t resample_reference(const Call& c, const Buffers& b) {
  if (c.units == 0 || c.units > 6) return QVN_E_PARAM10;
  if (c.selector > 1) return QVN_E_PARAM11;
  const BothLines lines = lines_of<kPitches>(c);
  reference::ResampleScanlinesEx(b.dst[0] + lines.out.first, b.src + lines.in.first, length_out(c),
                                 kPitches ? pitch_out(c) : length_out(c), c.length_in,
                                 kPitches ? pitch_in(c) : c.length_in, static_cast<std::int32_t>(c.height),
                                 c.rate_in, c.rate_out, c.units, c.selector);
  return kResampled;
}

template <bool kPitches>
Entry resampling(std::string_view name) {
  return {.name = name,
          .takes = kResampling,
          .sizes = kFrame,
          .tight = nullptr,
          .shape = resampling_shape<kPitches>,
          .library = resample<kPitches>,
          .reference = resample_reference<kPitches>,
          .without_memory = WithoutMemory::kThrows};
}

Entry resampled_length() {
  return {.name = "QVN_GetResampledScanlineLength",
          .takes = kResampling | kAligned,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return one_to_one(4, 0); },
          .library =
              [](const Call& c, const Buffers& b) {
                std::int32_t length = 0;
                const std::uint32_t status =
                    QVN_GetResampledScanlineLength(&length, c.length_in, c.rate_in, c.rate_out);
                std::memcpy(b.dst[0], &length, sizeof length);
                return status;
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                const std::int32_t length =
                    reference::GetResampledScanlineLength(c.length_in, c.rate_in, c.rate_out);
                std::memcpy(b.dst[0], &length, sizeof length);
                return QVN_OK;
              },
          .null_test = NullTest::kNone,
          .has_source = false};
}

// ---- Flips, which have one buffer.

bool has_element(std::uint32_t coding) { return coding <= 10 || (coding >= 128 && coding <= 130); }

Entry flip() {
  return {
      .name = "QVN_Flip",
      .takes = kFlip,
      .sizes = kFrame,
      .tight = nullptr,
      .shape = [](const Call& c) { return one_to_one(pixels(c) * reference::flip_element(c.coding), 0); },
      .library = [](const Call& c,
                    const Buffers& b) { return QVN_Flip(b.dst[0], c.width, c.height, c.selector, c.coding); },
      .reference =
          [](const Call& c, const Buffers& b) {
            if (c.height < 2) return QVN_E_PARAM3;
            if (c.selector < 1 || c.selector > 3) return QVN_E_PARAM4;
            if (c.selector != 2 && !has_element(c.coding)) return QVN_E_PARAM5;
            reference::Flip(b.dst[0], c.width, c.height, c.selector, c.coding);
            return QVN_OK;
          },
      .without_memory = WithoutMemory::kOutOfMemory,
      .has_source = false};
}

Entry flip_vertical() {
  return {.name = "QVN_FlipVertical",
          .takes = 0,
          .sizes = kFrame,
          .tight = nullptr,
          .shape = [](const Call& c) { return one_to_one(pixels(c), 0); },
          .library = [](const Call& c,
                        const Buffers& b) { return QVN_FlipVertical(b.dst[0], c.width, c.height); },
          .reference =
              [](const Call& c, const Buffers& b) {
                if (c.height < 2) return QVN_E_PARAM3;
                reference::FlipVertical(b.dst[0], c.width, c.height);
                return QVN_OK;
              },
          .without_memory = WithoutMemory::kOutOfMemory,
          .has_source = false};
}

// ---- Weaving and unpacking.

Shape woven(const Call& c) {
  const std::size_t field = std::size_t{c.height >> 1} * c.width;
  if (!c.in_place)
    return one_to_one(2 * field, field == 0 ? 0 : std::size_t{c.width >> 1} * c.height + field);
  return one_to_one(std::max((pixels(c) >> 1) + field, 2 * field), 0);
}

Entry weave() {
  return {.name = "QVN_InterlacedToProgressive",
          .takes = kPlace,
          .sizes = kFrame,
          .tight = nullptr,
          .shape = woven,
          .library =
              [](const Call& c, const Buffers& b) {
                return QVN_InterlacedToProgressive(b.dst[0], b.src, c.width, c.height);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                reference::InterlacedToProgressive(b.dst[0], b.src, c.width, c.height);
                return QVN_OK;
              },
          .without_memory = WithoutMemory::kThrows};
}

template <auto library, auto reference, std::size_t kOut>
Entry unpacking(std::string_view name) {
  return {
      .name = name,
      .takes = 0,
      .sizes = kFrame,
      .tight = nullptr,
      .shape =
          [](const Call& c) {
            const std::size_t pairs = (pixels(c) + 1) / 2;
            return one_to_one(pairs * kOut, pairs * 3);
          },
      .library = [](const Call& c, const Buffers& b) { return library(b.dst[0], b.src, c.width, c.height); },
      .reference =
          [](const Call& c, const Buffers& b) {
            reference(b.dst[0], b.src, c.width, c.height);
            return QVN_OK;
          }};
}

reference::SisPlace place_of(const Call& c) {
  return reference::find_sis(c.width, c.height, c.coding, c.position, c.selector);
}

Entry sis() {
  return {.name = "QVN_GetSIS",
          .takes = kSis,
          .sizes = kFrame,
          .tight = nullptr,
          .shape =
              [](const Call& c) {
                const reference::SisPlace place = place_of(c);
                const bool good = place.status == QVN_OK;
                return one_to_one(c.selector == 2 ? 52 : 12,
                                  good ? std::size_t{place.offset} + place.size : 1);
              },
          .library =
              [](const Call& c, const Buffers& b) {
                return QVN_GetSIS(b.dst[0], b.src, c.width, c.height, c.coding, c.position, c.selector);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                const reference::SisPlace place = place_of(c);
                if (place.status == QVN_OK) std::memcpy(b.dst[0], b.src + place.offset, place.size);
                return place.status;
              }};
}

}  // namespace

std::vector<Entry> utility_entries() {
  return {resampled_length(),
          resampling<false>("QVN_ResampleScanlines"),
          resampling<true>("QVN_ResampleScanlinesEx"),
          flip(),
          flip_vertical(),
          weave(),
          unpacking<QVN_Packed12BitTo8Bit, reference::Packed12BitTo8Bit, 2>("QVN_Packed12BitTo8Bit"),
          unpacking<QVN_Packed12BitTo16Bit, reference::Packed12BitTo16Bit, 4>("QVN_Packed12BitTo16Bit"),
          sis()};
}

}  // namespace every
