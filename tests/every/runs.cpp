/// Runs of pixels with a fixed output.
#include "every/entry.h"
#include "reference/mono_rgb.h"
#include "reference/yuv_to_bgr.h"

namespace every {
namespace {

using Library = std::uint32_t(std::uint8_t*, const std::uint8_t*, std::uint32_t);
using Reference = void(std::uint8_t*, const std::uint8_t*, std::uint32_t);

/// Groups of `pixels` pixels, `in` bytes to `out` bytes; pixels beyond the last whole group are not touched.
template <Library library, Reference reference, std::uint32_t kPixels, std::size_t kIn, std::size_t kOut>
Entry run(std::string_view name) {
  return {
      .name = name,
      .takes = 0,
      .sizes = {},
      .tight = nullptr,
      .shape = [](const Call& c) { return one_to_one(c.width / kPixels * kOut, c.width / kPixels * kIn); },
      .library = [](const Call& c, const Buffers& b) { return library(b.dst[0], b.src, c.width); },
      .reference =
          [](const Call& c, const Buffers& b) {
            reference(b.dst[0], b.src, c.width);
            return QVN_OK;
          }};
}

template <auto library, auto reference, std::size_t kOut>
Entry cut_run(std::string_view name) {
  return {
      .name = name,
      .takes = kSampleCut,
      .sizes = {},
      .tight = nullptr,
      .shape = [](const Call& c) { return one_to_one(c.width * kOut, std::size_t{2} * c.width); },
      .library =
          [](const Call& c, const Buffers& b) {
            return library(b.dst[0], b.src, c.width, c.selector, c.units, c.bits);
          },
      .reference =
          [](const Call& c, const Buffers& b) {
            reference(b.dst[0], b.src, c.width, c.selector, c.units, c.bits);
            return QVN_OK;
          },
  };
}

/// Counts that are no multiple of 8 are refused.
Entry by_eights() {
  Entry entry = run<QVN_Y16ToY8_MMX, reference::Y16ToY8_MMX, 1, 2, 1>("QVN_Y16ToY8_MMX");
  entry.reference = [](const Call& c, const Buffers& b) {
    if (c.width % 8 != 0) return QVN_E_PARAM3;
    reference::Y16ToY8_MMX(b.dst[0], b.src, c.width);
    return QVN_OK;
  };
  return entry;
}

}  // namespace

std::vector<Entry> run_entries() {
  return {
      run<QVN_YUV444ToBGR, reference::YUV444ToBGR, 1, 3, 3>("QVN_YUV444ToBGR"),
      run<QVN_YUV422ToBGR, reference::YUV422ToBGR, 2, 4, 6>("QVN_YUV422ToBGR"),
      run<QVN_YUV411ToBGR, reference::YUV411ToBGR, 4, 6, 12>("QVN_YUV411ToBGR"),
      run<QVN_RGB8ToBGR, reference::RGB8ToBGR, 1, 3, 3>("QVN_RGB8ToBGR"),
      run<QVN_RGB8ToY8, reference::RGB8ToY8, 1, 3, 1>("QVN_RGB8ToY8"),
      run<QVN_Y8ToBGR, reference::Y8ToBGR, 1, 1, 3>("QVN_Y8ToBGR"),
      run<QVN_Y16ToBGR, reference::Y16ToBGR, 1, 2, 3>("QVN_Y16ToBGR"),
      cut_run<QVN_Y16ToBGREx, reference::Y16ToBGREx, 3>("QVN_Y16ToBGREx"),
      run<QVN_Y16ToY8, reference::Y16ToY8, 1, 2, 1>("QVN_Y16ToY8"),
      cut_run<QVN_Y16ToY8Ex, reference::Y16ToY8Ex, 1>("QVN_Y16ToY8Ex"),
      by_eights(),
  };
}

}  // namespace every
