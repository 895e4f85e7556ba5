#include "bindings/entries.h"

namespace bindings {
namespace {

using quorvane::Size;
using Bytes = std::uint8_t*;
using Number = std::uint32_t;

std::uint16_t* words(Bytes bytes) { return reinterpret_cast<std::uint16_t*>(bytes); }
const ColorCorrection* object(const Selection& with) {
  return with.correction == nullptr ? nullptr : with.correction->object();
}

const std::vector<Size> kAny{{1, 1}, {2, 1}, {7, 1}, {5, 3}, {8, 5}, {64, 2}, {67, 5}, {200, 40}, {128, 61}};
const std::vector<Size> kEvenCounts{{2, 1}, {6, 3}, {64, 2}, {66, 5}, {200, 40}, {5, 4}};
const std::vector<Size> kEights{{8, 1}, {4, 6}, {64, 3}, {67, 8}};
const std::vector<Size> kPairs{{2, 2}, {2, 3}, {4, 2}, {6, 4}, {10, 9}, {34, 40}, {300, 67}};
const std::vector<Size> kPairs4{{4, 2}, {4, 3}, {6, 4}, {10, 9}, {34, 40}, {300, 67}};
const std::vector<Size> kColumns{{2, 2}, {3, 2}, {2, 3}, {5, 4}, {11, 9}, {33, 40}, {301, 67}};
const std::vector<Size> kHalves{{2, 2}, {6, 2}, {2, 6}, {10, 8}, {34, 12}};
const std::vector<Size> kThreePairs{{6, 2}, {2, 6}, {4, 4}, {10, 8}, {34, 12}};
const std::vector<Size> kSixLines{{2, 6}, {10, 8}, {34, 12}};
const std::vector<Size> kFourLines{{4, 4}, {2, 6}, {10, 8}, {34, 12}};
const std::vector<Size> kFields{{2, 4}, {4, 4}, {6, 8}, {34, 12}};
const std::vector<Size> kBinned{{4, 4}, {6, 8}, {34, 12}};
const std::vector<Size> kEightLines{{2, 8}, {4, 8}, {34, 12}};
const std::vector<Size> kMono{{2, 2}, {3, 4}, {7, 6}, {34, 12}};

const std::vector<Size> kTooMany{{16384, 16385}, {0x10000, 0x10000}};
const std::vector<Size> kNotPairs{{0, 2}, {1, 2}, {2, 1}, {2, 0}, {5, 4}, {16386, 16384}};
const std::vector<Size> kNotPairs4{{2, 2}, {4, 1}, {5, 4}, {7, 8}};
const std::vector<Size> kNotColumns{{0, 2}, {1, 2}, {2, 1}, {2, 0}};
const std::vector<Size> kNotHalves{{2, 1}, {2, 3}, {3, 2}, {6, 5}};
const std::vector<Size> kNotThreePairs{{2, 2}, {4, 2}, {2, 4}, {6, 3}, {5, 4}};
const std::vector<Size> kNotSixLines{{6, 2}, {6, 4}, {6, 7}, {5, 6}};
const std::vector<Size> kNotFourLines{{6, 2}, {6, 3}, {6, 5}, {5, 6}};
const std::vector<Size> kNotFields{{4, 2}, {4, 6}, {4, 7}, {3, 4}, {0, 4}, {4, 0}};
const std::vector<Size> kNotBinned{{2, 4}, {4, 2}, {4, 6}, {5, 4}};
const std::vector<Size> kNotEightLines{{4, 4}, {4, 6}, {4, 10}, {3, 8}};
const std::vector<Size> kNotMono{{1, 2}, {2, 1}, {2, 3}};

const std::vector<Number> kFour{0, 1, 2, 3};
const std::vector<Number> kFive{0, 1, 2, 3, 4};
const std::vector<Number> kSeven{0, 1, 2, 3, 5, 6, 7};

SampleFormatBlock block(const Selection& s) { return {7, s.alignment, s.bits, s.order, s.pattern}; }

template <auto F>
Known run(const quorvane::Entry& entry, Number group, Number group_bytes, Number pixel_bytes) {
  return {&entry,      [](Bytes d, Bytes s, Number w, Number h, const Selection&) { return F(d, s, w * h); },
          group,       group_bytes,
          pixel_bytes, kAny,
          kTooMany};
}

template <auto F>
Known run_form(const quorvane::Entry& entry, Number pixel_bytes) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                return F(d, s, w * h, with.order, with.alignment, with.bits);
              },
              1,
              2,
              pixel_bytes,
              kAny,
              kTooMany};
  known.has_form = true;
  return known;
}

template <auto F>
Known run_target(const quorvane::Entry& entry, Number group, Number group_bytes,
                 std::vector<Number> targets) {
  Known known{
      &entry,
      [](Bytes d, Bytes s, Number w, Number h, const Selection& with) { return F(d, s, w * h, with.target); },
      group,
      group_bytes,
      0,
      kAny,
      kTooMany};
  known.targets = std::move(targets);
  return known;
}

template <auto F>
Known planes(const quorvane::Entry& entry, Number group, Number group_bytes) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection&) {
                const std::size_t n = std::size_t{w} * h;
                return F(d, d + n, d + 2 * n, s, w, h);
              },
              group,
              group_bytes,
              1,
              kAny,
              kTooMany};
  known.planes = 3;
  return known;
}

template <auto F>
Known planes_y(const quorvane::Entry& entry, Number group, Number group_bytes) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection&) {
                const std::size_t n = std::size_t{w} * h;
                return F(d, d + n, d + 2 * n, d + 3 * n, s, w, h);
              },
              group,
              group_bytes,
              1,
              kAny,
              kTooMany};
  known.planes = 4;
  return known;
}

template <auto F>
Known mosaic(const quorvane::Entry& entry, Number group, Number group_bytes, Number pixel_bytes,
             std::vector<Size> good, std::vector<Size> bad) {
  Known known{&entry, {}, group, group_bytes, pixel_bytes, std::move(good), std::move(bad)};
  known.call = [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
    if constexpr (std::is_invocable_v<decltype(F), std::uint16_t*, Bytes, Number, Number, Number>) {
      return F(words(d), s, w, h, with.pattern);
    } else {
      return F(d, s, w, h, with.pattern);
    }
  };
  known.has_pattern = true;
  return known;
}

template <auto F>
Known corrected(const quorvane::Entry& entry, Number group, Number group_bytes, Number pixel_bytes,
                std::vector<Size> good, std::vector<Size> bad) {
  Known known{&entry, {}, group, group_bytes, pixel_bytes, std::move(good), std::move(bad)};
  known.call = [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
    if constexpr (std::is_invocable_v<decltype(F), std::uint16_t*, Bytes, Number, Number, Number,
                                      const ColorCorrection*>) {
      return F(words(d), s, w, h, with.pattern, object(with));
    } else {
      return F(d, s, w, h, with.pattern, object(with));
    }
  };
  known.has_pattern = true;
  return known;
}

template <auto F>
Known shifted(const quorvane::Entry& entry, Number pixel_bytes) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                if constexpr (std::is_invocable_v<decltype(F), std::uint16_t*, Bytes, Number, Number, Number,
                                                  Number>) {
                  return F(words(d), s, w, h, with.pattern, with.shift);
                } else {
                  return F(words(d), s, w, h, with.pattern, with.shift, object(with));
                }
              },
              1,
              2,
              pixel_bytes,
              kPairs4,
              kNotPairs4};
  known.has_pattern = true;
  known.has_shift = true;
  return known;
}

template <auto F>
Known mosaic_target(const quorvane::Entry& entry, Number group, Number group_bytes, std::vector<Size> good,
                    std::vector<Size> bad, std::vector<Number> targets) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                return F(d, s, w, h, with.target, with.pattern);
              },
              group,
              group_bytes,
              0,
              std::move(good),
              std::move(bad)};
  known.targets = std::move(targets);
  known.has_pattern = true;
  return known;
}

template <auto F>
Known fields(const quorvane::Entry& entry, std::vector<Size> good, std::vector<Size> bad) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection&) {
                if constexpr (std::is_invocable_v<decltype(F), Bytes, Bytes, Number, Number>) {
                  return F(d, s, w, h);
                } else {
                  return F(d, s, w, h, 3);
                }
              },
              1,
              1,
              3,
              std::move(good),
              std::move(bad),
              false};
  return known;
}

template <auto F>
Known fields_target(const quorvane::Entry& entry, std::vector<Size> good, std::vector<Size> bad,
                    std::vector<Number> targets) {
  Known known{&entry,
              [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                if constexpr (std::is_invocable_v<decltype(F), Bytes, Bytes, Number, Number, Number>) {
                  return F(d, s, w, h, with.target);
                } else {
                  return F(d, s, w, h, with.target, 2);
                }
              },
              1,
              1,
              0,
              std::move(good),
              std::move(bad),
              false};
  known.targets = std::move(targets);
  return known;
}

Known whole(Known known) {
  known.cut = false;
  return known;
}

Known overwriting(Known known) {
  known.cut = false;
  known.overwrites = true;
  return known;
}

Known sized(Known known, std::vector<Size> good, std::vector<Size> bad) {
  known.good = std::move(good);
  known.bad = std::move(bad);
  return known;
}

std::vector<Known> make_known() {
  using namespace quorvane;
  Known y16_ex{&y16_transform_ex,
               [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                 const SampleFormatBlock form = block(with);
                 return QVN_Y16ImageTransformEx(d, s, w * h, with.target, &form);
               },
               1,
               2,
               0,
               kAny,
               kTooMany};
  y16_ex.targets = kSeven;
  y16_ex.has_form = true;
  Known raw16_ex{&raw16_transform_ex,
                 [](Bytes d, Bytes s, Number w, Number h, const Selection& with) {
                   const SampleFormatBlock form = block(with);
                   return QVN_Raw16ImageTransformEx(d, s, w, h, with.target, &form);
                 },
                 1,
                 2,
                 0,
                 kColumns,
                 kNotColumns};
  raw16_ex.targets = kSeven;
  raw16_ex.has_form = true;
  raw16_ex.has_pattern = true;
  Known rgb_planes{&rgb8_to_rgb_planes,
                   [](Bytes d, Bytes s, Number w, Number h, const Selection&) {
                     const std::size_t n = std::size_t{w} * h;
                     return QVN_RGB8ToRGBYPlanes(d, d + n, d + 2 * n, nullptr, s, w, h);
                   },
                   1,
                   3,
                   1,
                   kAny,
                   kTooMany};
  rgb_planes.planes = 3;

  return {
      run<QVN_YUV444ToBGR>(yuv444_to_bgr, 1, 3, 3),
      run<QVN_YUV422ToBGR>(yuv422_to_bgr, 2, 4, 3),
      run<QVN_YUV411ToBGR>(yuv411_to_bgr, 4, 6, 3),
      run<QVN_RGB8ToBGR>(rgb8_to_bgr, 1, 3, 3),
      run<QVN_RGB8ToY8>(rgb8_to_y8, 1, 3, 1),
      run<QVN_Y8ToBGR>(y8_to_bgr, 1, 1, 3),
      run<QVN_Y16ToBGR>(y16_to_bgr, 1, 2, 3),
      run<QVN_Y16ToY8>(y16_to_y8, 1, 2, 1),
      whole(sized(run<QVN_Y16ToY8_MMX>(y16_to_y8_mmx, 1, 2, 1), kEights, {{7, 1}, {4, 3}, {1, 9}})),
      run_form<QVN_Y16ToBGREx>(y16_to_bgr_ex, 3),
      run_form<QVN_Y16ToY8Ex>(y16_to_y8_ex, 1),

      run_target<QVN_RGB8ImageTransform>(rgb8_transform, 1, 3, kFour),
      run_target<QVN_RGBA8ImageTransform>(rgba8_transform, 1, 4, kFour),
      run_target<QVN_YUV444ImageTransform>(yuv444_transform, 1, 3, kFour),
      run_target<QVN_YUV422ImageTransform>(yuv422_transform, 2, 4, kFour),
      run_target<QVN_YUV411ImageTransform>(yuv411_transform, 4, 6, kFour),
      run_target<QVN_Y8ImageTransform>(y8_transform, 1, 1, kFive),
      run_target<QVN_Y16ImageTransform>(y16_transform, 1, 2, kFour),
      sized(run_target<QVN_Y12ImageTransform>(y12_transform, 2, 3, kFour), kEvenCounts,
            {{1, 1}, {3, 5}, {7, 1}}),
      y16_ex,

      planes<QVN_YUV444ToRGBPlanes>(yuv444_to_rgb_planes, 1, 3),
      planes<QVN_YUV422ToRGBPlanes>(yuv422_to_rgb_planes, 2, 4),
      planes<QVN_YUV411ToRGBPlanes>(yuv411_to_rgb_planes, 4, 6),
      planes_y<QVN_YUV444ToRGBYPlanes>(yuv444_to_rgby_planes, 1, 3),
      planes_y<QVN_YUV422ToRGBYPlanes>(yuv422_to_rgby_planes, 2, 4),
      planes_y<QVN_YUV411ToRGBYPlanes>(yuv411_to_rgby_planes, 4, 6),
      planes_y<QVN_RGB8ToRGBYPlanes>(rgb8_to_rgby_planes, 1, 3),
      rgb_planes,

      mosaic<QVN_Raw8ToBGR>(raw8_to_bgr, 1, 1, 3, kPairs, kNotPairs),
      mosaic<QVN_Raw8ToBGR_mono>(raw8_to_grey_bgr, 1, 1, 3, kColumns, kNotColumns),
      mosaic<QVN_Raw8ToY8>(raw8_to_y8, 1, 1, 1, kColumns, kNotColumns),
      mosaic<QVN_Raw8ToBGR_3x3>(raw8_to_bgr_3x3, 1, 1, 3, kPairs, kNotPairs),
      overwriting(mosaic<QVN_Raw8ToBGR_IntYUV422>(raw8_to_bgr_yuv422, 1, 1, 3, kHalves, kNotHalves)),
      overwriting(mosaic<QVN_Raw8ToBGR_IntLCAA>(raw8_to_bgr_lcaa, 1, 1, 3, kThreePairs, kNotThreePairs)),
      overwriting(mosaic<QVN_Raw8ToBGR_IntLCAAV>(raw8_to_bgr_lcaav, 1, 1, 3, kSixLines, kNotSixLines)),
      mosaic<QVN_Raw12ToBGR>(raw12_to_bgr, 2, 3, 3, kPairs, kNotPairs),
      mosaic<QVN_Raw12ToBGR16>(raw12_to_bgr16, 2, 3, 6, kPairs, kNotPairs),
      mosaic<QVN_Raw16ToBGR>(raw16_to_bgr, 1, 2, 3, kColumns, kNotColumns),
      shifted<QVN_Raw16ToBGR16>(raw16_to_bgr16, 6),
      shifted<QVN_Raw16ToY16>(raw16_to_y16, 2),

      corrected<QVN_Raw8ToBGR_CC>(raw8_to_bgr_cc, 1, 1, 3, kPairs, kNotPairs),
      corrected<QVN_Raw8ToY8_CC>(raw8_to_y8_cc, 1, 1, 1, kColumns, kNotColumns),
      corrected<QVN_Raw12ToBGR_CC>(raw12_to_bgr_cc, 2, 3, 3, kPairs, kNotPairs),
      corrected<QVN_Raw12ToBGR16_CC>(raw12_to_bgr16_cc, 2, 3, 6, kPairs, kNotPairs),
      shifted<QVN_Raw16ToBGR16_CC>(raw16_to_bgr16_cc, 6),
      shifted<QVN_Raw16ToY16_CC>(raw16_to_y16_cc, 2),

      mosaic_target<QVN_Raw8ImageTransform>(raw8_transform, 1, 1, kPairs, kNotPairs, kFive),
      mosaic_target<QVN_Raw8ImageTransform_3x3>(raw8_transform_3x3, 1, 1, kPairs, kNotPairs, kFour),
      overwriting(mosaic_target<QVN_Raw8ImageTransform_IntYUV422>(raw8_transform_yuv422, 1, 1, kHalves,
                                                                  kNotHalves, kFour)),
      overwriting(mosaic_target<QVN_Raw8ImageTransform_IntLCAA>(raw8_transform_lcaa, 1, 1, kThreePairs,
                                                                kNotThreePairs, kFour)),
      overwriting(mosaic_target<QVN_Raw8ImageTransform_IntLCAAV>(raw8_transform_lcaav, 1, 1, kFourLines,
                                                                 kNotFourLines, kFour)),
      mosaic_target<QVN_Raw12ImageTransform>(raw12_transform, 2, 3, kPairs, kNotPairs, kFour),
      mosaic_target<QVN_Raw16ImageTransform>(raw16_transform, 1, 2, kColumns, kNotColumns, kFour),
      raw16_ex,

      fields<QVN_IRaw8CYGMToBGR_Bin>(cygm_binned_to_bgr, kBinned, kNotBinned),
      fields<QVN_IRaw8CYGMToBGR>(cygm_to_bgr, kEightLines, kNotEightLines),
      fields<QVN_IRaw8CYGMToBGR_3x3>(cygm_to_bgr_3x3, kFields, kNotFields),
      fields<QVN_IRaw8CYGMToMono>(cygm_to_grey_bgr, kMono, kNotMono),
      fields_target<QVN_IRaw8CYGMImageTransform_Bin>(cygm_binned_transform, kBinned, kNotBinned, kFive),
      fields_target<QVN_IRaw8CYGMImageTransform>(cygm_transform, kFields, kNotFields, kFive),
      fields_target<QVN_IRaw8CYGMImageTransform_3x3>(cygm_transform_3x3, kFields, kNotFields, kFour),
  };
}

}  // namespace

const std::vector<Known>& known_entries() {
  static const std::vector<Known> entries = make_known();
  return entries;
}

std::vector<Selection> selections(const Known& known) {
  std::vector<Selection> all;
  for (const std::uint32_t target : known.targets) {
    for (std::uint32_t pattern = 0; pattern < (known.has_pattern ? 4U : 1U); ++pattern) {
      for (const std::uint32_t shift :
           known.has_shift ? std::vector<std::uint32_t>{0, 4} : std::vector<std::uint32_t>{0}) {
        for (const std::uint32_t order :
             known.has_form ? std::vector<std::uint32_t>{0, 1} : std::vector<std::uint32_t>{1}) {
          Selection one;
          one.target = target;
          one.pattern = pattern;
          one.shift = shift;
          one.order = order;
          one.bits = known.has_form && pattern % 2 == 0 ? 12 : 16;
          all.push_back(one);
        }
      }
    }
  }
  return all;
}

}  // namespace bindings
