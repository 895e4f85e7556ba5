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
constexpr SizeRule kPairs{.width_step = 2, .least = {4, 2}};
constexpr SizeRule kPairsOfPixels{.width_step = 2};
// Fields of lines in pairs.
constexpr SizeRule kFields{.width_step = 2, .height_step = 4, .least = {4, 4}};
constexpr SizeRule kFieldsOfFourLines{.width_step = 2, .height_step = 4, .least = {4, 8}};
// Two columns have no interior, two lines stay black.
constexpr SizeRule k3x3{.width_step = 2, .least = {4, 3}};
constexpr SizeRule kHalves{.width_step = 2, .height_step = 2, .least = {2, 2}};
// Three pairs in each half frame.
constexpr SizeRule kHalvesOfThreePairs{
    .width_step = 2, .height_step = 2, .least = {2, 2}, .least_pixels = 12};
// With two lines in a half the filter looks back before the half.
constexpr SizeRule kHalvesOfThreeLines{.width_step = 2, .height_step = 2, .least = {2, 6}};

constexpr SizeRule kEights{.pixel_step = 8};

constexpr std::string_view kTransform = "transform";
// The functions for big-endian grey that know no other form of sample.
constexpr std::string_view kPlain = "plain";
constexpr std::string_view kPlainByEights = "plain-by-eights";

/// The buffer of a frame's 16-bit samples comes from the heap, which aligns it.
std::uint16_t* words(std::uint8_t* dst) { return reinterpret_cast<std::uint16_t*>(dst); }

/// (dst, src, width, height, pattern)
template <auto Entry>
std::uint32_t mosaic(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  return Entry(dst, src, frame.size.width, frame.size.height, frame.pattern->code);
}

template <auto Entry>
std::uint32_t mosaic_to_words(std::uint8_t* dst, std::uint8_t* src, const Frame& frame,
                              const Call& /*unused*/) {
  return Entry(words(dst), src, frame.size.width, frame.size.height, frame.pattern->code);
}

/// (dst, src, width, height, pattern, object)
template <auto Entry>
std::uint32_t corrected(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(dst, src, frame.size.width, frame.size.height, frame.pattern->code, call.correction);
}

template <auto Entry>
std::uint32_t corrected_to_words(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(words(dst), src, frame.size.width, frame.size.height, frame.pattern->code, call.correction);
}

/// (dst, src, width, height, pattern, shift)
template <auto Entry>
std::uint32_t shifted(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(words(dst), src, frame.size.width, frame.size.height, frame.pattern->code, call.shift);
}

/// (dst, src, width, height, pattern, shift, object)
template <auto Entry>
std::uint32_t shifted_corrected(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(words(dst), src, frame.size.width, frame.size.height, frame.pattern->code, call.shift,
               call.correction);
}

/// (dst, src, width, height, target, pattern)
template <auto Entry>
std::uint32_t mosaic_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(dst, src, frame.size.width, frame.size.height, call.target, frame.pattern->code);
}

/// (dst, src, width, height)
template <auto Entry>
std::uint32_t fields(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  return Entry(dst, src, frame.size.width, frame.size.height);
}

/// (dst, src, width, height, 0), the phase of a frame whose first line is its first
template <auto Entry>
std::uint32_t fields_of_phase(std::uint8_t* dst, std::uint8_t* src, const Frame& frame,
                              const Call& /*unused*/) {
  return Entry(dst, src, frame.size.width, frame.size.height, 0);
}

/// (dst, src, width, height, target, 0)
template <auto Entry>
std::uint32_t fields_of_phase_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(dst, src, frame.size.width, frame.size.height, call.target, 0);
}

/// (dst, src, width, height, target)
template <auto Entry>
std::uint32_t fields_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(dst, src, frame.size.width, frame.size.height, call.target);
}

std::uint32_t count_of(const Frame& frame) { return static_cast<std::uint32_t>(frame.size.pixels()); }

/// (dst, src, count)
template <auto Entry>
std::uint32_t run_of_pixels(std::uint8_t* dst, std::uint8_t* src, const Frame& frame,
                            const Call& /*unused*/) {
  return Entry(dst, src, count_of(frame));
}

/// (dst, src, count, target)
template <auto Entry>
std::uint32_t run_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  return Entry(dst, src, count_of(frame), call.target);
}

/// The library knows little-endian samples as the order of a little-endian host.
void to_host_order(std::uint8_t* src, const Frame& frame) {
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < frame.bytes.size(); i += 2) {
      std::swap(src[i], src[i + 1]);
    }
  }
}

/// (dst, src, count, byteSwap, alignment, bitsPerSample)
template <auto Entry, bool BigEndian>
std::uint32_t run_of_words(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  if (!BigEndian) {
    to_host_order(src, frame);
  }
  return Entry(dst, src, count_of(frame), BigEndian ? kSwapped : kHostOrder,
               frame.form.low ? kFromLowBit : kToHighBit, frame.form.bits);
}

template <bool BigEndian>
SampleFormatBlock block_of(const Frame& frame) {
  return {0, frame.form.low ? kFromLowBit : kToHighBit, frame.form.bits, BigEndian ? kSwapped : kHostOrder,
          frame.pattern->code};
}

/// (dst, src, count, target, block)
template <bool BigEndian>
std::uint32_t y16_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  if (!BigEndian) {
    to_host_order(src, frame);
  }
  const SampleFormatBlock block = block_of<BigEndian>(frame);
  return QVN_Y16ImageTransformEx(dst, src, count_of(frame), call.target, &block);
}

/// (dst, src, width, height, target, block)
template <bool BigEndian>
std::uint32_t raw16_to(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& call) {
  if (!BigEndian) {
    to_host_order(src, frame);
  }
  const SampleFormatBlock block = block_of<BigEndian>(frame);
  return QVN_Raw16ImageTransformEx(dst, src, frame.size.width, frame.size.height, call.target, &block);
}

/// (dstR, dstG, dstB, src, width, height)
template <auto Entry>
std::uint32_t planes(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  const std::size_t plane = frame.size.pixels();
  return Entry(dst, dst + plane, dst + 2 * plane, src, frame.size.width, frame.size.height);
}

/// (dstR, dstG, dstB, dstY, src, width, height)
template <auto Entry>
std::uint32_t planes_y(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  const std::size_t plane = frame.size.pixels();
  return Entry(dst, dst + plane, dst + 2 * plane, dst + 3 * plane, src, frame.size.width, frame.size.height);
}

std::uint32_t rgb8_planes(std::uint8_t* dst, std::uint8_t* src, const Frame& frame, const Call& /*unused*/) {
  const std::size_t plane = frame.size.pixels();
  return QVN_RGB8ToRGBYPlanes(dst, dst + plane, dst + 2 * plane, nullptr, src, frame.size.width,
                              frame.size.height);
}

constexpr CorrectionLimits kEightBits{8, 8, true};
constexpr CorrectionLimits kTopBytes{8, 8, false};
constexpr CorrectionLimits kTwelveBits{12, 16, false};
constexpr CorrectionLimits kSixteenBits{16, 16, false, true};

/// The rows of methods that make one target each.
std::vector<Conversion> single_rows() {
  return {
      {"raw8",
       "2x2",
       "bgr",
       "QVN_Raw8ToBGR",
       k2x2Pairs,
       mosaic<QVN_Raw8ToBGR>,
       8,
       false,
       false,
       {"QVN_Raw8ToBGR_CC", corrected<QVN_Raw8ToBGR_CC>, kEightBits}},
      {"raw8", "3x3", "bgr", "QVN_Raw8ToBGR_3x3", k3x3, mosaic<QVN_Raw8ToBGR_3x3>},
      {"raw8", "yuv422", "bgr", "QVN_Raw8ToBGR_IntYUV422", kHalves, mosaic<QVN_Raw8ToBGR_IntYUV422>},
      {"raw8", "lcaa", "bgr", "QVN_Raw8ToBGR_IntLCAA", kHalvesOfThreePairs, mosaic<QVN_Raw8ToBGR_IntLCAA>},
      {"raw8", "lcaav", "bgr", "QVN_Raw8ToBGR_IntLCAAV", kHalvesOfThreeLines, mosaic<QVN_Raw8ToBGR_IntLCAAV>},
      {"raw8", "2x2", "grey-bgr", "QVN_Raw8ToBGR_mono", k2x2, mosaic<QVN_Raw8ToBGR_mono>},
      {"raw8",
       "2x2",
       "y8",
       "QVN_Raw8ToY8",
       k2x2,
       mosaic<QVN_Raw8ToY8>,
       8,
       false,
       false,
       {"QVN_Raw8ToY8_CC", corrected<QVN_Raw8ToY8_CC>, kEightBits}},
      {"raw12packed",
       "2x2",
       "bgr",
       "QVN_Raw12ToBGR",
       k2x2Pairs,
       mosaic<QVN_Raw12ToBGR>,
       8,
       false,
       false,
       {"QVN_Raw12ToBGR_CC", corrected<QVN_Raw12ToBGR_CC>, kTopBytes}},
      {"raw12packed",
       "2x2",
       "bgr16",
       "QVN_Raw12ToBGR16",
       kPairs,
       mosaic_to_words<QVN_Raw12ToBGR16>,
       12,
       false,
       false,
       {"QVN_Raw12ToBGR16_CC", corrected_to_words<QVN_Raw12ToBGR16_CC>, kTwelveBits}},
      {"raw16be", "2x2", "bgr", "QVN_Raw16ToBGR", k2x2, mosaic<QVN_Raw16ToBGR>},
      {"raw16be",
       "2x2",
       "bgr16",
       "QVN_Raw16ToBGR16",
       kPairs,
       shifted<QVN_Raw16ToBGR16>,
       16,
       true,
       false,
       {"QVN_Raw16ToBGR16_CC", shifted_corrected<QVN_Raw16ToBGR16_CC>, kSixteenBits}},
      {"raw16be",
       "2x2",
       "y16",
       "QVN_Raw16ToY16",
       kPairs,
       shifted<QVN_Raw16ToY16>,
       16,
       true,
       false,
       {"QVN_Raw16ToY16_CC", shifted_corrected<QVN_Raw16ToY16_CC>, kSixteenBits}},

      {"iraw8-cygm", "2x2", "bgr", "QVN_IRaw8CYGMToBGR", kFieldsOfFourLines,
       fields_of_phase<QVN_IRaw8CYGMToBGR>},
      {"iraw8-cygm", "3x3", "bgr", "QVN_IRaw8CYGMToBGR_3x3", kFields,
       fields_of_phase<QVN_IRaw8CYGMToBGR_3x3>},
      {"iraw8-cygm", "mono", "grey-bgr", "QVN_IRaw8CYGMToMono", kFields,
       fields_of_phase<QVN_IRaw8CYGMToMono>},
      {"iraw8-cygm-binned", "bin", "bgr", "QVN_IRaw8CYGMToBGR_Bin", kFields, fields<QVN_IRaw8CYGMToBGR_Bin>},

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
      {"y16be", "direct", "y8", "QVN_Y16ToY8Ex", kAny, run_of_words<QVN_Y16ToY8Ex, true>, 8, false, true},
      {"y16be", "direct", "bgr", "QVN_Y16ToBGREx", kAny, run_of_words<QVN_Y16ToBGREx, true>, 8, false, true},
      {"y16be", kPlain, "y8", "QVN_Y16ToY8", kAny, run_of_pixels<QVN_Y16ToY8>},
      {"y16be", kPlain, "bgr", "QVN_Y16ToBGR", kAny, run_of_pixels<QVN_Y16ToBGR>},
      {"y16be", kPlainByEights, "y8", "QVN_Y16ToY8_MMX", kEights, run_of_pixels<QVN_Y16ToY8_MMX>},
      {"y16le", "direct", "y8", "QVN_Y16ToY8Ex", kAny, run_of_words<QVN_Y16ToY8Ex, false>, 8, false, true},
      {"y16le", "direct", "bgr", "QVN_Y16ToBGREx", kAny, run_of_words<QVN_Y16ToBGREx, false>, 8, false, true},
      {"rgb8", "direct", "bgr", "QVN_RGB8ToBGR", kAny, run_of_pixels<QVN_RGB8ToBGR>},
      {"rgb8", "direct", "y8", "QVN_RGB8ToY8", kAny, run_of_pixels<QVN_RGB8ToY8>},
      {"rgb8", "direct", "planes", "QVN_RGB8ToRGBYPlanes", kAny, rgb8_planes},
      {"rgb8", "direct", "planes-y", "QVN_RGB8ToRGBYPlanes", kAny, planes_y<QVN_RGB8ToRGBYPlanes>},
  };
}

/// A function that offers several targets, by a method of its own.
struct Selector {
  std::string_view format;
  std::string_view method;
  std::string_view entry;
  SizeRule size;
  Run run;
  std::vector<std::string_view> targets;
  bool reads_form = false;
};

std::vector<Selector> selectors() {
  const std::vector<std::string_view> four{"bgr", "bgra", "y8", "y8-709"};
  const std::vector<std::string_view> five{"bgr", "bgra", "y8", "y8-709", "uyvy"};
  const std::vector<std::string_view> seven{"bgr16", "y16", "y16-709", "bgr", "bgra", "y8", "y8-709"};
  return {
      {"raw8", kTransform, "QVN_Raw8ImageTransform", k2x2Pairs, mosaic_to<QVN_Raw8ImageTransform>, five},
      {"raw8", "transform-3x3", "QVN_Raw8ImageTransform_3x3", k3x3, mosaic_to<QVN_Raw8ImageTransform_3x3>,
       four},
      {"raw8", "transform-yuv422", "QVN_Raw8ImageTransform_IntYUV422", kHalves,
       mosaic_to<QVN_Raw8ImageTransform_IntYUV422>, four},
      {"raw8", "transform-lcaa", "QVN_Raw8ImageTransform_IntLCAA", kHalvesOfThreePairs,
       mosaic_to<QVN_Raw8ImageTransform_IntLCAA>, four},
      {"raw8", "transform-lcaav", "QVN_Raw8ImageTransform_IntLCAAV", kHalvesOfThreeLines,
       mosaic_to<QVN_Raw8ImageTransform_IntLCAAV>, four},
      {"raw12packed", kTransform, "QVN_Raw12ImageTransform", k2x2Pairs, mosaic_to<QVN_Raw12ImageTransform>,
       four},
      {"raw16be", kTransform, "QVN_Raw16ImageTransform", k2x2, mosaic_to<QVN_Raw16ImageTransform>, four},
      {"raw16be", kTransformEx, "QVN_Raw16ImageTransformEx", k2x2, raw16_to<true>, seven, true},
      {"raw16le", kTransformEx, "QVN_Raw16ImageTransformEx", k2x2, raw16_to<false>, seven, true},
      {"iraw8-cygm", kTransform, "QVN_IRaw8CYGMImageTransform", kFields,
       fields_of_phase_to<QVN_IRaw8CYGMImageTransform>, five},
      {"iraw8-cygm", "transform-3x3", "QVN_IRaw8CYGMImageTransform_3x3", kFields,
       fields_of_phase_to<QVN_IRaw8CYGMImageTransform_3x3>, four},
      {"iraw8-cygm-binned", "transform-bin", "QVN_IRaw8CYGMImageTransform_Bin", kFields,
       fields_to<QVN_IRaw8CYGMImageTransform_Bin>, five},
      {"yuv444", kTransform, "QVN_YUV444ImageTransform", kAny, run_to<QVN_YUV444ImageTransform>, four},
      {"uyvy", kTransform, "QVN_YUV422ImageTransform", kAny, run_to<QVN_YUV422ImageTransform>, four},
      {"uyyvyy411", kTransform, "QVN_YUV411ImageTransform", kAny, run_to<QVN_YUV411ImageTransform>, four},
      {"y8", kTransform, "QVN_Y8ImageTransform", kAny, run_to<QVN_Y8ImageTransform>, four},
      {"y8", kTransform, "QVN_Y8ImageTransform", kPairsOfPixels, run_to<QVN_Y8ImageTransform>, {"uyvy"}},
      // An odd number of pixels would never end; the format's groups keep it out.
      {"y12packed", kTransform, "QVN_Y12ImageTransform", kAny, run_to<QVN_Y12ImageTransform>, four},
      {"y16be", kTransform, "QVN_Y16ImageTransform", kAny, run_to<QVN_Y16ImageTransform>, four},
      {"y16be", kTransformEx, "QVN_Y16ImageTransformEx", kAny, y16_to<true>, seven, true},
      {"y16le", kTransformEx, "QVN_Y16ImageTransformEx", kAny, y16_to<false>, seven, true},
      {"rgb8", kTransform, "QVN_RGB8ImageTransform", kAny, run_to<QVN_RGB8ImageTransform>, four},
      {"rgba8", kTransform, "QVN_RGBA8ImageTransform", kAny, run_to<QVN_RGBA8ImageTransform>, four},
  };
}

}  // namespace

const std::vector<Conversion>& conversions() {
  static const std::vector<Conversion> table = [] {
    std::vector<Conversion> rows = single_rows();
    for (const Selector& selector : selectors()) {
      for (const std::string_view target : selector.targets) {
        rows.push_back({selector.format, selector.method, target, selector.entry, selector.size, selector.run,
                        16, false, selector.reads_form});
      }
    }
    return rows;
  }();
  return table;
}

}  // namespace qvn::tool
