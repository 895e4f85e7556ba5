/// Runs and Bayer frames with a selectable output.
#include <algorithm>

#include "every/entry.h"
#include "reference/pattern.h"
#include "reference/transform_2x2.h"
#include "reference/transform_3x3.h"
#include "reference/transform_int.h"
#include "reference/transform_raw16_ex.h"
#include "reference/transform_runs.h"

namespace every {
namespace {

using reference::public_to_internal;

std::uint32_t status_of(bool served) { return served ? QVN_OK : QVN_E_NOT_IMPLEMENTED; }

// ---- Runs.

template <std::uint32_t kPixels, std::size_t kIn>
Shape run_shape(const Call& c) {
  const std::size_t groups = c.width / kPixels;
  const std::size_t out = groups * kPixels * target_bytes(c.target);
  // Both chroma bytes of a last half group of target 4 are written.
  return one_to_one(out + (c.target == 4 ? c.width % 2 : 0), groups * kIn);
}

template <auto library, auto reference, std::uint32_t kPixels, std::size_t kIn>
Entry run(std::string_view name, std::uint32_t step = 1) {
  return {
      .name = name,
      .takes = kTarget,
      .sizes = {.width_step = step},
      .tight = nullptr,
      .shape = run_shape<kPixels, kIn>,
      .library = [](const Call& c, const Buffers& b) { return library(b.dst[0], b.src, c.width, c.target); },
      .reference = [](const Call& c,
                      const Buffers& b) { return status_of(reference(b.dst[0], b.src, c.width, c.target)); }};
}

reference::SampleFormat format_of(const Call& c) {
  return {c.format.alignment, c.format.bitsPerSample, c.format.byteOrder};
}

Entry mono_16_ex() {
  return {.name = "QVN_Y16ImageTransformEx",
          .takes = kTarget | kFormat,
          .sizes = {},
          .tight = nullptr,
          .shape = run_shape<1, 2>,
          .library =
              [](const Call& c, const Buffers& b) {
                return QVN_Y16ImageTransformEx(b.dst[0], b.src, c.width, c.target,
                                               c.has_format ? &c.format : nullptr);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                const reference::SampleFormat format = format_of(c);
                return status_of(reference::Y16ImageTransformEx(b.dst[0], b.src, c.width, c.target,
                                                                c.has_format ? &format : nullptr));
              }};
}

// ---- Bayer frames. Sizes outside of the contract are those of the plain demosaics.

constexpr Sizes kBayer = {.width_step = 1, .least_width = 4, .height_step = 1, .least_height = 2};
constexpr Sizes kByWayOfYuv = {.width_step = 2, .least_width = 4, .height_step = 1, .least_height = 4};

bool is_even(const Call& c) { return c.width % 2 == 0; }

template <unsigned kBits>
Shape frame_shape(const Call& c) {
  return one_to_one(pixels(c) * target_bytes(c.target),
                    kBits == 12 ? std::size_t{c.width >> 1} * 3 * c.height : pixels(c) * (kBits / 8));
}

template <auto library, auto reference, unsigned kBits>
Entry frame(std::string_view name, bool (*tight)(const Call&), Sizes sizes = kBayer,
            WithoutMemory without_memory = WithoutMemory::kNeverNeeds) {
  return {.name = name,
          .takes = kTarget | kPattern,
          .sizes = sizes,
          .tight = tight,
          .shape = frame_shape<kBits>,
          .library =
              [](const Call& c, const Buffers& b) {
                return library(b.dst[0], b.src, c.width, c.height, c.target, c.pattern);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                return status_of(
                    reference(b.dst[0], b.src, c.width, c.height, c.target, public_to_internal(c.pattern)));
              },
          .without_memory = without_memory};
}

Entry raw_16_ex() {
  return {
      .name = "QVN_Raw16ImageTransformEx",
      .takes = kTarget | kPattern | kFormat,
      .sizes = kBayer,
      .tight = nullptr,
      .shape = frame_shape<16>,
      .library =
          [](const Call& c, const Buffers& b) {
            SampleFormatBlock format = c.format;
            format.pattern = c.pattern;
            return QVN_Raw16ImageTransformEx(b.dst[0], b.src, c.width, c.height, c.target,
                                             c.has_format ? &format : nullptr);
          },
      .reference =
          [](const Call& c, const Buffers& b) {
            if (!c.has_format) return QVN_E_PARAM6;
            return status_of(reference::Raw16ImageTransformEx(b.dst[0], b.src, c.width, c.height, c.target,
                                                              format_of(c), public_to_internal(c.pattern)));
          }};
}

}  // namespace

std::vector<Entry> run_transform_entries() {
  return {
      run<QVN_RGB8ImageTransform, reference::RGB8ImageTransform, 1, 3>("QVN_RGB8ImageTransform"),
      run<QVN_RGBA8ImageTransform, reference::RGBA8ImageTransform, 1, 4>("QVN_RGBA8ImageTransform"),
      run<QVN_YUV444ImageTransform, reference::YUV444ImageTransform, 1, 3>("QVN_YUV444ImageTransform"),
      run<QVN_YUV422ImageTransform, reference::YUV422ImageTransform, 2, 4>("QVN_YUV422ImageTransform"),
      run<QVN_YUV411ImageTransform, reference::YUV411ImageTransform, 4, 6>("QVN_YUV411ImageTransform"),
      run<QVN_Y8ImageTransform, reference::Y8ImageTransform, 1, 1>("QVN_Y8ImageTransform"),
      run<QVN_Y16ImageTransform, reference::Y16ImageTransform, 1, 2>("QVN_Y16ImageTransform"),
      mono_16_ex(),
      // An odd count never ends.
      run<QVN_Y12ImageTransform, reference::Y12ImageTransform, 2, 3>("QVN_Y12ImageTransform", 2),
  };
}

std::vector<Entry> mosaic_transform_entries() {
  return {
      frame<QVN_Raw8ImageTransform, reference::Raw8ImageTransform, 8>("QVN_Raw8ImageTransform", is_even),
      frame<QVN_Raw8ImageTransform_3x3, reference::Raw8ImageTransform_3x3, 8>("QVN_Raw8ImageTransform_3x3",
                                                                              is_even),
      frame<QVN_Raw8ImageTransform_IntYUV422, reference::Raw8ImageTransform_IntYUV422, 8>(
          "QVN_Raw8ImageTransform_IntYUV422", nullptr, kByWayOfYuv, WithoutMemory::kOk),
      frame<QVN_Raw8ImageTransform_IntLCAA, reference::Raw8ImageTransform_IntLCAA, 8>(
          "QVN_Raw8ImageTransform_IntLCAA", nullptr, kByWayOfYuv, WithoutMemory::kThrows),
      frame<QVN_Raw8ImageTransform_IntLCAAV, reference::Raw8ImageTransform_IntLCAAV, 8>(
          "QVN_Raw8ImageTransform_IntLCAAV", nullptr, kByWayOfYuv, WithoutMemory::kThrowsOne),
      frame<QVN_Raw12ImageTransform, reference::Raw12ImageTransform, 12>("QVN_Raw12ImageTransform", is_even),
      frame<QVN_Raw16ImageTransform, reference::Raw16ImageTransform, 16>("QVN_Raw16ImageTransform", nullptr),
      raw_16_ex(),
  };
}

}  // namespace every
