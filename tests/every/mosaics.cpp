/// Bayer frames with a fixed output, plain and corrected.
///
/// A width of 2 of the 16-bit demosaics copies what lies before a line, and a height of 1 the line before the
/// frame; an odd width of the others drifts. Heights of 0 and widths below 2 run away and are left out.
#include "every/entry.h"
#include "reference/correction.h"
#include "reference/demosaic_2x2.h"
#include "reference/demosaic_3x3.h"
#include "reference/interpolation.h"
#include "reference/pattern.h"
#include "reference/raw12.h"
#include "reference/raw16.h"
#include "reference/raw8_cc.h"

namespace every {
namespace {

using reference::public_to_internal;

/// Bytes of a frame of samples of so many bits.
template <unsigned kBits>
std::size_t mosaic_bytes(const Call& c) {
  if (kBits == 12) return std::size_t{c.width >> 1} * 3 * c.height;
  return pixels(c) * (kBits / 8);
}

template <unsigned kBits, std::size_t kOut>
Shape shape_of(const Call& c) {
  return one_to_one(pixels(c) * kOut, mosaic_bytes<kBits>(c));
}

bool is_even(const Call& c) { return c.width % 2 == 0 && c.height >= 2; }
bool is_frame(const Call& c) { return c.height >= 2; }
bool is_even_from_4(const Call& c) { return is_even(c) && c.width >= 4; }

constexpr Sizes kBayer = {.width_step = 1, .least_width = 2, .height_step = 1, .least_height = 1};

template <auto library, auto reference, unsigned kBits, std::size_t kOut>
Entry plain(std::string_view name, bool (*tight)(const Call&), Sizes sizes = kBayer) {
  return {.name = name,
          .takes = kPattern,
          .sizes = sizes,
          .tight = tight,
          .shape = shape_of<kBits, kOut>,
          .library =
              [](const Call& c, const Buffers& b) {
                if constexpr (kBits == 12 && kOut == 6) {
                  return library(as_words(b.dst[0]), b.src, c.width, c.height, c.pattern);
                } else {
                  return library(b.dst[0], b.src, c.width, c.height, c.pattern);
                }
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                reference(b.dst[0], b.src, c.width, c.height, public_to_internal(c.pattern));
                return QVN_OK;
              }};
}

template <auto library, auto reference, std::size_t kOut>
Entry shifted(std::string_view name) {
  return {.name = name,
          .takes = kPattern | kShift,
          .sizes = kBayer,
          .tight = is_even_from_4,
          .shape = shape_of<16, kOut>,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(as_words(b.dst[0]), b.src, c.width, c.height, c.pattern, c.shift);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                if (c.shift > 16) return QVN_E_PARAM6;
                reference(b.dst[0], b.src, c.width, c.height, public_to_internal(c.pattern), c.shift);
                return QVN_OK;
              }};
}

std::uint32_t status_of(int dispatched) { return dispatched == reference::kServed ? QVN_OK : QVN_E_FAIL; }

template <auto library, auto reference, unsigned kBits, std::size_t kOut>
Entry corrected(std::string_view name, bool (*tight)(const Call&)) {
  return {.name = name,
          .takes = kPattern | kCorrection,
          .sizes = kBayer,
          .tight = tight,
          .shape = shape_of<kBits, kOut>,
          .library =
              [](const Call& c, const Buffers& b) {
                if constexpr (kOut == 6) {
                  return library(as_words(b.dst[0]), b.src, c.width, c.height, c.pattern,
                                 as_correction(c.correction));
                } else {
                  return library(b.dst[0], b.src, c.width, c.height, c.pattern, as_correction(c.correction));
                }
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                return status_of(reference(b.dst[0], b.src, c.width, c.height, public_to_internal(c.pattern),
                                           c.correction.get()));
              }};
}

template <auto library, auto reference, std::size_t kOut>
Entry corrected_shifted(std::string_view name) {
  return {.name = name,
          .takes = kPattern | kShift | kCorrection,
          .sizes = kBayer,
          .tight = is_even_from_4,
          .shape = shape_of<16, kOut>,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(as_words(b.dst[0]), b.src, c.width, c.height, c.pattern, c.shift,
                               as_correction(c.correction));
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                return status_of(reference(b.dst[0], b.src, c.width, c.height, public_to_internal(c.pattern),
                                           c.shift, c.correction.get()));
              }};
}

/// The source is written.
constexpr Sizes kByWayOfYuv = {.width_step = 2, .least_width = 2, .height_step = 1, .least_height = 2};

/// One pair a half runs away.
constexpr Sizes kTwoPairs = {.width_step = 2, .least_width = 4, .height_step = 1, .least_height = 2};

}  // namespace

std::vector<Entry> mosaic_entries() {
  return {
      plain<QVN_Raw8ToBGR, reference::Raw8ToBGR, 8, 3>("QVN_Raw8ToBGR", is_even),
      plain<QVN_Raw8ToBGR_mono, reference::Raw8ToBGR_mono, 8, 3>("QVN_Raw8ToBGR_mono", is_frame),
      plain<QVN_Raw8ToY8, reference::Raw8ToY8, 8, 1>("QVN_Raw8ToY8", is_frame),
      plain<QVN_Raw16ToBGR, reference::Raw16ToBGR, 16, 3>("QVN_Raw16ToBGR", is_frame),
      plain<QVN_Raw8ToBGR_3x3, reference::Raw8ToBGR_3x3, 8, 3>(
          "QVN_Raw8ToBGR_3x3", is_even, {.least_width = 2, .height_step = 1, .least_height = 2}),
      plain<QVN_Raw8ToBGR_IntYUV422, reference::Raw8ToBGR_IntYUV422, 8, 3>(
          "QVN_Raw8ToBGR_IntYUV422", [](const Call&) { return true; }, kByWayOfYuv),
      plain<QVN_Raw8ToBGR_IntLCAA, reference::Raw8ToBGR_IntLCAA, 8, 3>(
          "QVN_Raw8ToBGR_IntLCAA", [](const Call& c) { return c.height / 2 * c.width / 2 >= 3; }, kTwoPairs),
      plain<QVN_Raw8ToBGR_IntLCAAV, reference::Raw8ToBGR_IntLCAAV, 8, 3>(
          "QVN_Raw8ToBGR_IntLCAAV", [](const Call& c) { return c.height >= 6; }, kByWayOfYuv),
  };
}

std::vector<Entry> corrected_entries() {
  return {
      corrected<QVN_Raw8ToBGR_CC, reference::Raw8ToBGR_CC, 8, 3>("QVN_Raw8ToBGR_CC", is_even),
      corrected<QVN_Raw8ToY8_CC, reference::Raw8ToY8_CC, 8, 1>("QVN_Raw8ToY8_CC", is_frame),
      plain<QVN_Raw12ToBGR, reference::Raw12ToBGR, 12, 3>("QVN_Raw12ToBGR", is_even),
      corrected<QVN_Raw12ToBGR_CC, reference::Raw12ToBGR_CC, 12, 3>("QVN_Raw12ToBGR_CC", is_even),
      plain<QVN_Raw12ToBGR16, reference::Raw12ToBGR16, 12, 6>("QVN_Raw12ToBGR16", is_even),
      corrected<QVN_Raw12ToBGR16_CC, reference::Raw12ToBGR16_CC, 12, 6>("QVN_Raw12ToBGR16_CC", is_even),
      shifted<QVN_Raw16ToBGR16, reference::Raw16ToBGR16, 6>("QVN_Raw16ToBGR16"),
      corrected_shifted<QVN_Raw16ToBGR16_CC, reference::Raw16ToBGR16_CC, 6>("QVN_Raw16ToBGR16_CC"),
      shifted<QVN_Raw16ToY16, reference::Raw16ToY16, 2>("QVN_Raw16ToY16"),
      corrected_shifted<QVN_Raw16ToY16_CC, reference::Raw16ToY16_CC, 2>("QVN_Raw16ToY16_CC"),
  };
}

}  // namespace every
