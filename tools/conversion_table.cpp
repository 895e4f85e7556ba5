// The table of conversions and the adapters that call the library: one for each form of argument list.
//
// A size is in a rule also where the function takes it but makes no picture of it: lines that stay black, or
// pixels made of what lies outside the frame.
#include <quorvane/quorvane.h>

#include <bit>
#include <utility>

#include "conversions.h"

namespace qvn::tool {
namespace {

constexpr std::uint32_t kSwapped = 1;     // byteSwap: big-endian samples
constexpr std::uint32_t kHostOrder = 0;   // byteSwap: samples in the host's order
constexpr std::uint32_t kFromLowBit = 1;  // alignment: samples begin at bit 0
constexpr std::uint32_t kToHighBit = 0;   // alignment: samples end at bit 15

constexpr SizeRule kAny{};
constexpr SizeRule k2x2{.least = {2, 2}};
constexpr SizeRule k2x2Pairs{.width_step = 2, .least = {2, 2}};
// Two columns have no interior, two lines stay black.
constexpr SizeRule k3x3{.width_step = 2, .least = {4, 3}};
constexpr SizeRule kHalves{.width_step = 2, .height_step = 2, .least = {2, 2}};
// Three pairs in each half frame.
constexpr SizeRule kHalvesOfThreePairs{
    .width_step = 2, .height_step = 2, .least = {2, 2}, .least_pixels = 12};
// With two lines in a half the filter looks back before the half.
constexpr SizeRule kHalvesOfThreeLines{.width_step = 2, .height_step = 2, .least = {2, 6}};

/// (dst, src, width, height, pattern)
template <auto Entry>
std::uint32_t mosaic(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  return Entry(dst, src, frame.size.width, frame.size.height, frame.pattern->code);
}

std::uint32_t count_of(const Frame& frame) { return static_cast<std::uint32_t>(frame.size.pixels()); }

/// (dst, src, count)
template <auto Entry>
std::uint32_t run_of_pixels(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  return Entry(dst, src, count_of(frame));
}

/// (dst, src, count, byteSwap, alignment, bitsPerSample), samples big-endian
template <auto Entry>
std::uint32_t big_endian(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  return Entry(dst, src, count_of(frame), kSwapped, frame.form.low ? kFromLowBit : kToHighBit,
               frame.form.bits);
}

/// The same, samples little-endian, which the library knows as the order of a little-endian host.
template <auto Entry>
std::uint32_t little_endian(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < frame.bytes.size(); i += 2) {
      std::swap(src[i], src[i + 1]);
    }
  }
  return Entry(dst, src, count_of(frame), kHostOrder, frame.form.low ? kFromLowBit : kToHighBit,
               frame.form.bits);
}

/// (dstR, dstG, dstB, src, width, height)
template <auto Entry>
std::uint32_t planes(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  const std::size_t plane = frame.size.pixels();
  return Entry(dst, dst + plane, dst + 2 * plane, src, frame.size.width, frame.size.height);
}

/// (dstR, dstG, dstB, dstY, src, width, height)
template <auto Entry>
std::uint32_t planes_y(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  const std::size_t plane = frame.size.pixels();
  return Entry(dst, dst + plane, dst + 2 * plane, dst + 3 * plane, src, frame.size.width, frame.size.height);
}

std::uint32_t rgb8_planes(std::uint8_t* dst, std::uint8_t* src, const Frame& frame) {
  const std::size_t plane = frame.size.pixels();
  return QVN_RGB8ToRGBYPlanes(dst, dst + plane, dst + 2 * plane, nullptr, src, frame.size.width,
                              frame.size.height);
}

}  // namespace

const std::vector<Conversion>& conversions() {
  static const std::vector<Conversion> table{
      {"raw8", "2x2", "bgr", "QVN_Raw8ToBGR", k2x2Pairs, mosaic<QVN_Raw8ToBGR>},
      {"raw8", "3x3", "bgr", "QVN_Raw8ToBGR_3x3", k3x3, mosaic<QVN_Raw8ToBGR_3x3>},
      {"raw8", "yuv422", "bgr", "QVN_Raw8ToBGR_IntYUV422", kHalves, mosaic<QVN_Raw8ToBGR_IntYUV422>},
      {"raw8", "lcaa", "bgr", "QVN_Raw8ToBGR_IntLCAA", kHalvesOfThreePairs, mosaic<QVN_Raw8ToBGR_IntLCAA>},
      {"raw8", "lcaav", "bgr", "QVN_Raw8ToBGR_IntLCAAV", kHalvesOfThreeLines, mosaic<QVN_Raw8ToBGR_IntLCAAV>},
      {"raw8", "2x2", "grey-bgr", "QVN_Raw8ToBGR_mono", k2x2, mosaic<QVN_Raw8ToBGR_mono>},
      {"raw8", "2x2", "y8", "QVN_Raw8ToY8", k2x2, mosaic<QVN_Raw8ToY8>},
      {"raw16be", "2x2", "bgr", "QVN_Raw16ToBGR", k2x2, mosaic<QVN_Raw16ToBGR>},

      {"yuv444", "direct", "bgr", "QVN_YUV444ToBGR", kAny, run_of_pixels<QVN_YUV444ToBGR>},
      {"yuv444", "direct", "planes", "QVN_YUV444ToRGBPlanes", kAny, planes<QVN_YUV444ToRGBPlanes>},
      {"yuv444", "direct", "planes-y", "QVN_YUV444ToRGBYPlanes", kAny, planes_y<QVN_YUV444ToRGBYPlanes>},
      {"uyvy", "direct", "bgr", "QVN_YUV422ToBGR", kAny, run_of_pixels<QVN_YUV422ToBGR>},
      {"uyvy", "direct", "planes", "QVN_YUV422ToRGBPlanes", kAny, planes<QVN_YUV422ToRGBPlanes>},
      {"uyvy", "direct", "planes-y", "QVN_YUV422ToRGBYPlanes", kAny, planes_y<QVN_YUV422ToRGBYPlanes>},
      {"uyyvyy411", "direct", "bgr", "QVN_YUV411ToBGR", kAny, run_of_pixels<QVN_YUV411ToBGR>},
      {"uyyvyy411", "direct", "planes", "QVN_YUV411ToRGBPlanes", kAny, planes<QVN_YUV411ToRGBPlanes>},
      {"uyyvyy411", "direct", "planes-y", "QVN_YUV411ToRGBYPlanes", kAny, planes_y<QVN_YUV411ToRGBYPlanes>},

      {"y8", "direct", "bgr", "QVN_Y8ToBGR", kAny, run_of_pixels<QVN_Y8ToBGR>},
      {"y16be", "direct", "y8", "QVN_Y16ToY8Ex", kAny, big_endian<QVN_Y16ToY8Ex>},
      {"y16be", "direct", "bgr", "QVN_Y16ToBGREx", kAny, big_endian<QVN_Y16ToBGREx>},
      {"y16le", "direct", "y8", "QVN_Y16ToY8Ex", kAny, little_endian<QVN_Y16ToY8Ex>},
      {"y16le", "direct", "bgr", "QVN_Y16ToBGREx", kAny, little_endian<QVN_Y16ToBGREx>},
      {"rgb8", "direct", "bgr", "QVN_RGB8ToBGR", kAny, run_of_pixels<QVN_RGB8ToBGR>},
      {"rgb8", "direct", "y8", "QVN_RGB8ToY8", kAny, run_of_pixels<QVN_RGB8ToY8>},
      {"rgb8", "direct", "planes", "QVN_RGB8ToRGBYPlanes", kAny, rgb8_planes},
      {"rgb8", "direct", "planes-y", "QVN_RGB8ToRGBYPlanes", kAny, planes_y<QVN_RGB8ToRGBYPlanes>},
  };
  return table;
}

}  // namespace qvn::tool
