// One checked object for each conversion of the library: call it and it throws Error, or ask it to attempt(),
// which answers with a Result. All take the destination, the source, the size, then their selectors, then
// Options:
//
//     quorvane::raw8_to_bgr(picture, mosaic, {1920, 1080}, quorvane::Pattern::kRggb);
//
// Sizes outside a function's contract are refused, so that nothing is read or written beside the buffers.
#pragma once

#include "quorvane/call.hpp"

namespace quorvane {

/// A conversion that leaves its source alone.
template <class... Selectors>
struct Conversion : Entry {
  Result<void> attempt(Destination dst, Source src, Size size, Selectors... selectors,
                       const Options& options = {}) const {
    Arguments arguments;
    (arguments.set(selectors), ...);
    return call(*this, {dst}, src, size, arguments, options);
  }
  void operator()(Destination dst, Source src, Size size, Selectors... selectors,
                  const Options& options = {}) const {
    attempt(dst, src, size, selectors..., options).value();
  }
};

/// A conversion that overwrites its source.
template <class... Selectors>
struct OverwritingConversion : Entry {
  Result<void> attempt(Destination dst, Destination src, Size size, Selectors... selectors,
                       const Options& options = {}) const {
    Arguments arguments;
    (arguments.set(selectors), ...);
    return call(*this, {dst}, Source(src.data(), src.size(), src.pitch()), size, arguments, options);
  }
  void operator()(Destination dst, Destination src, Size size, Selectors... selectors,
                  const Options& options = {}) const {
    attempt(dst, src, size, selectors..., options).value();
  }

  /// The same from a copy of the source, made for the call.
  Result<void> attempt_keeping_source(Destination dst, Source src, Size size, Selectors... selectors,
                                      const Options& options = {}) const {
    Arguments arguments;
    (arguments.set(selectors), ...);
    return call_keeping_source(*this, {dst}, src, size, arguments, options);
  }
  void keeping_source(Destination dst, Source src, Size size, Selectors... selectors,
                      const Options& options = {}) const {
    attempt_keeping_source(dst, src, size, selectors..., options).value();
  }
};

/// A conversion to planes.
struct PlanesConversion : Entry {
  Result<void> attempt(const Planes& dst, Source src, Size size, const Options& options = {}) const {
    return call(*this, {dst.red, dst.green, dst.blue, dst.luma}, src, size, {}, options);
  }
  void operator()(const Planes& dst, Source src, Size size, const Options& options = {}) const {
    attempt(dst, src, size, options).value();
  }
};

// Runs of pixels, which know no lines.

inline constexpr Conversion<> yuv444_to_bgr{{.name = "QVN_YUV444ToBGR",
                                             .source = kThreeBytes,
                                             .pixel_bytes = 3,
                                             .in_place = true,
                                             .run = detail::run_count<QVN_YUV444ToBGR>}};
inline constexpr Conversion<> yuv422_to_bgr{{.name = "QVN_YUV422ToBGR",
                                             .source = kYuv422,
                                             .pixel_bytes = 3,
                                             .run = detail::run_count<QVN_YUV422ToBGR>}};
inline constexpr Conversion<> yuv411_to_bgr{{.name = "QVN_YUV411ToBGR",
                                             .source = kYuv411,
                                             .pixel_bytes = 3,
                                             .run = detail::run_count<QVN_YUV411ToBGR>}};
inline constexpr Conversion<> rgb8_to_bgr{{.name = "QVN_RGB8ToBGR",
                                           .source = kThreeBytes,
                                           .pixel_bytes = 3,
                                           .in_place = true,
                                           .run = detail::run_count<QVN_RGB8ToBGR>}};
inline constexpr Conversion<> rgb8_to_y8{{.name = "QVN_RGB8ToY8",
                                          .source = kThreeBytes,
                                          .pixel_bytes = 1,
                                          .in_place = true,
                                          .run = detail::run_count<QVN_RGB8ToY8>}};
inline constexpr Conversion<> y8_to_bgr{
    {.name = "QVN_Y8ToBGR", .source = kOneByte, .pixel_bytes = 3, .run = detail::run_count<QVN_Y8ToBGR>}};
inline constexpr Conversion<> y16_to_bgr{
    {.name = "QVN_Y16ToBGR", .source = kTwoBytes, .pixel_bytes = 3, .run = detail::run_count<QVN_Y16ToBGR>}};
inline constexpr Conversion<> y16_to_y8{{.name = "QVN_Y16ToY8",
                                         .source = kTwoBytes,
                                         .pixel_bytes = 1,
                                         .in_place = true,
                                         .run = detail::run_count<QVN_Y16ToY8>}};
inline constexpr Conversion<> y16_to_y8_mmx{{.name = "QVN_Y16ToY8_MMX",
                                             .source = kTwoBytes,
                                             .pixel_bytes = 1,
                                             .size = detail::kCountOfEights,
                                             .lines = Lines::kNotCut,
                                             .in_place = true,
                                             .run = detail::run_count<QVN_Y16ToY8_MMX>}};
inline constexpr Conversion<SampleForm> y16_to_bgr_ex{{.name = "QVN_Y16ToBGREx",
                                                       .source = kTwoBytes,
                                                       .pixel_bytes = 3,
                                                       .run = detail::run_form<QVN_Y16ToBGREx>}};
inline constexpr Conversion<SampleForm> y16_to_y8_ex{{.name = "QVN_Y16ToY8Ex",
                                                      .source = kTwoBytes,
                                                      .pixel_bytes = 1,
                                                      .in_place = true,
                                                      .run = detail::run_form<QVN_Y16ToY8Ex>}};

inline constexpr Conversion<Target> rgb8_transform{{.name = "QVN_RGB8ImageTransform",
                                                    .source = kThreeBytes,
                                                    .targets = detail::kFourTargets,
                                                    .in_place = true,
                                                    .run = detail::run_target<QVN_RGB8ImageTransform>}};
inline constexpr Conversion<Target> rgba8_transform{{.name = "QVN_RGBA8ImageTransform",
                                                     .source = kFourBytes,
                                                     .targets = detail::kFourTargets,
                                                     .in_place = true,
                                                     .run = detail::run_target<QVN_RGBA8ImageTransform>}};
inline constexpr Conversion<Target> yuv444_transform{{.name = "QVN_YUV444ImageTransform",
                                                      .source = kThreeBytes,
                                                      .targets = detail::kFourTargets,
                                                      .in_place = true,
                                                      .run = detail::run_target<QVN_YUV444ImageTransform>}};
inline constexpr Conversion<Target> yuv422_transform{{.name = "QVN_YUV422ImageTransform",
                                                      .source = kYuv422,
                                                      .targets = detail::kFourTargets,
                                                      .run = detail::run_target<QVN_YUV422ImageTransform>}};
inline constexpr Conversion<Target> yuv411_transform{{.name = "QVN_YUV411ImageTransform",
                                                      .source = kYuv411,
                                                      .targets = detail::kFourTargets,
                                                      .run = detail::run_target<QVN_YUV411ImageTransform>}};
inline constexpr Conversion<Target> y8_transform{{.name = "QVN_Y8ImageTransform",
                                                  .source = kOneByte,
                                                  .targets = detail::kFiveTargets,
                                                  .in_place = true,
                                                  .run = detail::run_target<QVN_Y8ImageTransform>}};
inline constexpr Conversion<Target> y16_transform{{.name = "QVN_Y16ImageTransform",
                                                   .source = kTwoBytes,
                                                   .targets = detail::kFourTargets,
                                                   .in_place = true,
                                                   .run = detail::run_target<QVN_Y16ImageTransform>}};
inline constexpr Conversion<Target, SampleForm> y16_transform_ex{
    {.name = "QVN_Y16ImageTransformEx",
     .source = kTwoBytes,
     .targets = detail::kSevenTargets,
     .in_place = true,
     .run = detail::run_target_form<QVN_Y16ImageTransformEx>}};
inline constexpr Conversion<Target> y12_transform{{.name = "QVN_Y12ImageTransform",
                                                   .source = kPacked12,
                                                   .targets = detail::kFourTargets,
                                                   .size = detail::kEvenCount,
                                                   .in_place = true,
                                                   .run = detail::run_target<QVN_Y12ImageTransform>}};

// Planes.

inline constexpr PlanesConversion yuv444_to_rgb_planes{{.name = "QVN_YUV444ToRGBPlanes",
                                                        .source = kThreeBytes,
                                                        .pixel_bytes = 1,
                                                        .planes = 3,
                                                        .run = detail::planes<QVN_YUV444ToRGBPlanes>}};
inline constexpr PlanesConversion yuv444_to_rgby_planes{{.name = "QVN_YUV444ToRGBYPlanes",
                                                         .source = kThreeBytes,
                                                         .pixel_bytes = 1,
                                                         .planes = 4,
                                                         .run = detail::planes_y<QVN_YUV444ToRGBYPlanes>}};
inline constexpr PlanesConversion yuv422_to_rgb_planes{{.name = "QVN_YUV422ToRGBPlanes",
                                                        .source = kYuv422,
                                                        .pixel_bytes = 1,
                                                        .planes = 3,
                                                        .run = detail::planes<QVN_YUV422ToRGBPlanes>}};
inline constexpr PlanesConversion yuv422_to_rgby_planes{{.name = "QVN_YUV422ToRGBYPlanes",
                                                         .source = kYuv422,
                                                         .pixel_bytes = 1,
                                                         .planes = 4,
                                                         .run = detail::planes_y<QVN_YUV422ToRGBYPlanes>}};
inline constexpr PlanesConversion yuv411_to_rgb_planes{{.name = "QVN_YUV411ToRGBPlanes",
                                                        .source = kYuv411,
                                                        .pixel_bytes = 1,
                                                        .planes = 3,
                                                        .run = detail::planes<QVN_YUV411ToRGBPlanes>}};
inline constexpr PlanesConversion yuv411_to_rgby_planes{{.name = "QVN_YUV411ToRGBYPlanes",
                                                         .source = kYuv411,
                                                         .pixel_bytes = 1,
                                                         .planes = 4,
                                                         .run = detail::planes_y<QVN_YUV411ToRGBYPlanes>}};
inline constexpr PlanesConversion rgb8_to_rgby_planes{{.name = "QVN_RGB8ToRGBYPlanes",
                                                       .source = kThreeBytes,
                                                       .pixel_bytes = 1,
                                                       .planes = 4,
                                                       .run = detail::planes_y<QVN_RGB8ToRGBYPlanes>}};
inline constexpr PlanesConversion rgb8_to_rgb_planes{
    {.name = "QVN_RGB8ToRGBYPlanes",
     .source = kThreeBytes,
     .pixel_bytes = 1,
     .planes = 3,
     .run = detail::planes_without_luma<QVN_RGB8ToRGBYPlanes>}};

// Bayer demosaics.

inline constexpr Conversion<Pattern> raw8_to_bgr{{.name = "QVN_Raw8ToBGR",
                                                  .source = kOneByte,
                                                  .pixel_bytes = 3,
                                                  .size = detail::k2x2Pairs,
                                                  .lines = Lines::kTwo,
                                                  .run = detail::mosaic<QVN_Raw8ToBGR>}};
inline constexpr Conversion<Pattern> raw8_to_grey_bgr{{.name = "QVN_Raw8ToBGR_mono",
                                                       .source = kOneByte,
                                                       .pixel_bytes = 3,
                                                       .size = detail::k2x2,
                                                       .lines = Lines::kTwo,
                                                       .run = detail::mosaic<QVN_Raw8ToBGR_mono>}};
inline constexpr Conversion<Pattern> raw8_to_y8{{.name = "QVN_Raw8ToY8",
                                                 .source = kOneByte,
                                                 .pixel_bytes = 1,
                                                 .size = detail::k2x2,
                                                 .lines = Lines::kTwo,
                                                 .run = detail::mosaic<QVN_Raw8ToY8>}};
inline constexpr Conversion<Pattern> raw8_to_bgr_3x3{{.name = "QVN_Raw8ToBGR_3x3",
                                                      .source = kOneByte,
                                                      .pixel_bytes = 3,
                                                      .size = detail::k2x2Pairs,
                                                      .lines = Lines::kThree,
                                                      .run = detail::mosaic<QVN_Raw8ToBGR_3x3>}};
inline constexpr OverwritingConversion<Pattern> raw8_to_bgr_yuv422{
    {.name = "QVN_Raw8ToBGR_IntYUV422",
     .source = kOneByte,
     .pixel_bytes = 3,
     .size = detail::kHalves,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic<QVN_Raw8ToBGR_IntYUV422>}};
inline constexpr OverwritingConversion<Pattern> raw8_to_bgr_lcaa{
    {.name = "QVN_Raw8ToBGR_IntLCAA",
     .source = kOneByte,
     .pixel_bytes = 3,
     .size = detail::kHalvesOfThreePairs,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic<QVN_Raw8ToBGR_IntLCAA>}};
inline constexpr OverwritingConversion<Pattern> raw8_to_bgr_lcaav{
    {.name = "QVN_Raw8ToBGR_IntLCAAV",
     .source = kOneByte,
     .pixel_bytes = 3,
     .size = detail::kHalvesOfThreeLines,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic<QVN_Raw8ToBGR_IntLCAAV>}};
inline constexpr Conversion<Pattern> raw12_to_bgr{{.name = "QVN_Raw12ToBGR",
                                                   .source = kPacked12,
                                                   .pixel_bytes = 3,
                                                   .size = detail::k2x2Pairs,
                                                   .lines = Lines::kTwo,
                                                   .run = detail::mosaic<QVN_Raw12ToBGR>}};
inline constexpr Conversion<Pattern> raw12_to_bgr16{{.name = "QVN_Raw12ToBGR16",
                                                     .source = kPacked12,
                                                     .pixel_bytes = 6,
                                                     .size = detail::k2x2Pairs,
                                                     .lines = Lines::kTwo,
                                                     .run = detail::mosaic_words<QVN_Raw12ToBGR16>}};
inline constexpr Conversion<Pattern> raw16_to_bgr{{.name = "QVN_Raw16ToBGR",
                                                   .source = kTwoBytes,
                                                   .pixel_bytes = 3,
                                                   .size = detail::k2x2,
                                                   .lines = Lines::kTwo,
                                                   .run = detail::mosaic<QVN_Raw16ToBGR>}};
inline constexpr Conversion<Pattern, Shift> raw16_to_bgr16{{.name = "QVN_Raw16ToBGR16",
                                                            .source = kTwoBytes,
                                                            .pixel_bytes = 6,
                                                            .size = detail::kPairs,
                                                            .lines = Lines::kTwo,
                                                            .takes_shift = true,
                                                            .run = detail::shifted<QVN_Raw16ToBGR16>}};
inline constexpr Conversion<Pattern, Shift> raw16_to_y16{{.name = "QVN_Raw16ToY16",
                                                          .source = kTwoBytes,
                                                          .pixel_bytes = 2,
                                                          .size = detail::kPairs,
                                                          .lines = Lines::kTwo,
                                                          .takes_shift = true,
                                                          .run = detail::shifted<QVN_Raw16ToY16>}};

// The same with a colour correction; null is none.

inline constexpr Conversion<Pattern, const Correction*> raw8_to_bgr_cc{
    {.name = "QVN_Raw8ToBGR_CC",
     .source = kOneByte,
     .pixel_bytes = 3,
     .size = detail::k2x2Pairs,
     .lines = Lines::kTwo,
     .correction = detail::kBytes8,
     .run = detail::corrected<QVN_Raw8ToBGR_CC>}};
inline constexpr Conversion<Pattern, const Correction*> raw8_to_y8_cc{
    {.name = "QVN_Raw8ToY8_CC",
     .source = kOneByte,
     .pixel_bytes = 1,
     .size = detail::k2x2,
     .lines = Lines::kTwo,
     .correction = detail::kBytes8,
     .run = detail::corrected<QVN_Raw8ToY8_CC>}};
inline constexpr Conversion<Pattern, const Correction*> raw12_to_bgr_cc{
    {.name = "QVN_Raw12ToBGR_CC",
     .source = kPacked12,
     .pixel_bytes = 3,
     .size = detail::k2x2Pairs,
     .lines = Lines::kTwo,
     .correction = detail::kTopBytes,
     .run = detail::corrected<QVN_Raw12ToBGR_CC>}};
inline constexpr Conversion<Pattern, const Correction*> raw12_to_bgr16_cc{
    {.name = "QVN_Raw12ToBGR16_CC",
     .source = kPacked12,
     .pixel_bytes = 6,
     .size = detail::k2x2Pairs,
     .lines = Lines::kTwo,
     .correction = detail::kWords12,
     .run = detail::corrected_words<QVN_Raw12ToBGR16_CC>}};
inline constexpr Conversion<Pattern, Shift, const Correction*> raw16_to_bgr16_cc{
    {.name = "QVN_Raw16ToBGR16_CC",
     .source = kTwoBytes,
     .pixel_bytes = 6,
     .size = detail::kPairs,
     .lines = Lines::kTwo,
     .takes_shift = true,
     .correction = detail::kWords16,
     .run = detail::shifted_corrected<QVN_Raw16ToBGR16_CC>}};
inline constexpr Conversion<Pattern, Shift, const Correction*> raw16_to_y16_cc{
    {.name = "QVN_Raw16ToY16_CC",
     .source = kTwoBytes,
     .pixel_bytes = 2,
     .size = detail::kPairs,
     .lines = Lines::kTwo,
     .takes_shift = true,
     .correction = detail::kWords16,
     .run = detail::shifted_corrected<QVN_Raw16ToY16_CC>}};

// Transforms of Bayer frames.

inline constexpr Conversion<Target, Pattern> raw8_transform{
    {.name = "QVN_Raw8ImageTransform",
     .source = kOneByte,
     .targets = detail::kFiveTargets,
     .size = detail::k2x2Pairs,
     .lines = Lines::kTwo,
     .run = detail::mosaic_target<QVN_Raw8ImageTransform>}};
inline constexpr Conversion<Target, Pattern> raw8_transform_3x3{
    {.name = "QVN_Raw8ImageTransform_3x3",
     .source = kOneByte,
     .targets = detail::kFourTargets,
     .size = detail::k2x2Pairs,
     .lines = Lines::kThree,
     .run = detail::mosaic_target<QVN_Raw8ImageTransform_3x3>}};
inline constexpr OverwritingConversion<Target, Pattern> raw8_transform_yuv422{
    {.name = "QVN_Raw8ImageTransform_IntYUV422",
     .source = kOneByte,
     .targets = detail::kFourTargets,
     .size = detail::kHalves,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic_target<QVN_Raw8ImageTransform_IntYUV422>}};
inline constexpr OverwritingConversion<Target, Pattern> raw8_transform_lcaa{
    {.name = "QVN_Raw8ImageTransform_IntLCAA",
     .source = kOneByte,
     .targets = detail::kFourTargets,
     .size = detail::kHalvesOfThreePairs,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic_target<QVN_Raw8ImageTransform_IntLCAA>}};
inline constexpr OverwritingConversion<Target, Pattern> raw8_transform_lcaav{
    {.name = "QVN_Raw8ImageTransform_IntLCAAV",
     .source = kOneByte,
     .targets = detail::kFourTargets,
     .size = detail::kHalvesOfTwoLines,
     .lines = Lines::kNotCut,
     .overwrites_source = true,
     .run = detail::mosaic_target<QVN_Raw8ImageTransform_IntLCAAV>}};
inline constexpr Conversion<Target, Pattern> raw12_transform{
    {.name = "QVN_Raw12ImageTransform",
     .source = kPacked12,
     .targets = detail::kFourTargets,
     .size = detail::k2x2Pairs,
     .lines = Lines::kTwo,
     .run = detail::mosaic_target<QVN_Raw12ImageTransform>}};
inline constexpr Conversion<Target, Pattern> raw16_transform{
    {.name = "QVN_Raw16ImageTransform",
     .source = kTwoBytes,
     .targets = detail::kFourTargets,
     .size = detail::k2x2,
     .lines = Lines::kTwo,
     .run = detail::mosaic_target<QVN_Raw16ImageTransform>}};
inline constexpr Conversion<Target, Pattern, SampleForm> raw16_transform_ex{
    {.name = "QVN_Raw16ImageTransformEx",
     .source = kTwoBytes,
     .targets = detail::kSevenTargets,
     .size = detail::k2x2,
     .lines = Lines::kTwo,
     .run = detail::mosaic_form<QVN_Raw16ImageTransformEx>}};

// Interlaced frames of complementary colours.

inline constexpr Conversion<> cygm_binned_to_bgr{{.name = "QVN_IRaw8CYGMToBGR_Bin",
                                                  .source = kOneByte,
                                                  .pixel_bytes = 3,
                                                  .size = detail::kBinnedFields,
                                                  .lines = Lines::kNotCut,
                                                  .run = detail::fields<QVN_IRaw8CYGMToBGR_Bin>}};
inline constexpr Conversion<> cygm_to_bgr{{.name = "QVN_IRaw8CYGMToBGR",
                                           .source = kOneByte,
                                           .pixel_bytes = 3,
                                           .size = detail::kFieldsOfFourLines,
                                           .lines = Lines::kNotCut,
                                           .run = detail::fields_phase<QVN_IRaw8CYGMToBGR>}};
inline constexpr Conversion<> cygm_to_bgr_3x3{{.name = "QVN_IRaw8CYGMToBGR_3x3",
                                               .source = kOneByte,
                                               .pixel_bytes = 3,
                                               .size = detail::kFields,
                                               .lines = Lines::kNotCut,
                                               .run = detail::fields_phase<QVN_IRaw8CYGMToBGR_3x3>}};
inline constexpr Conversion<> cygm_to_grey_bgr{{.name = "QVN_IRaw8CYGMToMono",
                                                .source = kOneByte,
                                                .pixel_bytes = 3,
                                                .size = detail::kPairsOfLines,
                                                .lines = Lines::kNotCut,
                                                .run = detail::fields_phase<QVN_IRaw8CYGMToMono>}};
inline constexpr Conversion<Target> cygm_binned_transform{
    {.name = "QVN_IRaw8CYGMImageTransform_Bin",
     .source = kOneByte,
     .targets = detail::kFiveTargets,
     .size = detail::kBinnedFields,
     .lines = Lines::kNotCut,
     .run = detail::fields_target<QVN_IRaw8CYGMImageTransform_Bin>}};
inline constexpr Conversion<Target> cygm_transform{
    {.name = "QVN_IRaw8CYGMImageTransform",
     .source = kOneByte,
     .targets = detail::kFiveTargets,
     .size = detail::kFields,
     .lines = Lines::kNotCut,
     .run = detail::fields_target_phase<QVN_IRaw8CYGMImageTransform>}};
inline constexpr Conversion<Target> cygm_transform_3x3{
    {.name = "QVN_IRaw8CYGMImageTransform_3x3",
     .source = kOneByte,
     .targets = detail::kFourTargets,
     .size = detail::kFields,
     .lines = Lines::kNotCut,
     .run = detail::fields_target_phase<QVN_IRaw8CYGMImageTransform_3x3>}};

}  // namespace quorvane
