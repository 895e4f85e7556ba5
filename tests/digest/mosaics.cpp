/// Functions over Bayer frames, without a correction.
#include <quorvane/quorvane.h>

#include "digest/sheet.h"

namespace digest {
namespace {

/// `run(digest, frame, pattern)` over all frames, a line a pattern.
template <typename Run>
void add_patterns(Sheet& sheet, const std::string& name, Run run) {
  for (const std::uint32_t pattern : {0U, 1U, 2U, 3U}) {
    sheet.line(name + " pattern " + std::to_string(pattern), [&](Digest& digest) {
      for (const Size& frame : kFrames) run(digest, frame, pattern);
    });
  }
}

/// Room for any source and any destination.
constexpr std::size_t kSample = 2, kPixel = 6;

template <typename Number, typename Call>
void add_frame(Digest& digest, const Size& frame, Call call) {
  const std::size_t samples = std::size_t{frame.width} * frame.height;
  add_call<Number, std::uint8_t>(digest, kPixel * samples, kSample * samples, call);
}

template <typename Number, typename Source>
using Demosaic = std::uint32_t (*)(Number*, Source*, std::uint32_t, std::uint32_t, BayerPattern);

template <typename Number, typename Source>
void add_demosaic(Sheet& sheet, const char* name, Demosaic<Number, Source> demosaic) {
  add_patterns(sheet, name, [=](Digest& digest, const Size& frame, std::uint32_t pattern) {
    add_frame<Number>(digest, frame, [&](Number* dst, std::uint8_t* src) {
      return demosaic(dst, src, frame.width, frame.height, pattern);
    });
  });
}

using ShiftedDemosaic = std::uint32_t (*)(std::uint16_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                          BayerPattern, std::uint32_t);

void add_shifted_demosaic(Sheet& sheet, const char* name, ShiftedDemosaic demosaic) {
  add_patterns(sheet, name, [=](Digest& digest, const Size& frame, std::uint32_t pattern) {
    for (const std::uint32_t shift : {0U, 1U, 4U, 6U, 8U, 9U, 16U}) {
      add_frame<std::uint16_t>(digest, frame, [&](std::uint16_t* dst, const std::uint8_t* src) {
        return demosaic(dst, src, frame.width, frame.height, pattern, shift);
      });
    }
  });
}

template <typename Source>
using Transform = std::uint32_t (*)(std::uint8_t*, Source*, std::uint32_t, std::uint32_t, TransformTarget,
                                    BayerPattern);

template <typename Source>
void add_transform(Sheet& sheet, const char* name, Transform<Source> transform) {
  for (std::uint32_t target = 0; target < 8; ++target) {
    const std::string selector = " target " + std::to_string(target);
    add_patterns(sheet, name + selector, [=](Digest& digest, const Size& frame, std::uint32_t pattern) {
      add_frame<std::uint8_t>(digest, frame, [&](std::uint8_t* dst, std::uint8_t* src) {
        return transform(dst, src, frame.width, frame.height, target, pattern);
      });
    });
  }
}

template <typename DstNumber>
void add_raw16_ex(Digest& digest, const Size& frame, std::uint32_t target, const SampleFormatBlock& format) {
  const auto call = [&](DstNumber* dst, const std::uint8_t* src) {
    return QVN_Raw16ImageTransformEx(static_cast<std::uint8_t*>(static_cast<void*>(dst)), src, frame.width,
                                     frame.height, target, &format);
  };
  const std::size_t samples = std::size_t{frame.width} * frame.height;
  if (format.byteOrder == 1) {
    add_call<DstNumber, std::uint8_t>(digest, kPixel * samples, kSample * samples, call);
  } else {
    add_call<DstNumber, std::uint16_t>(digest, kPixel * samples, samples, call);
  }
}

void add_raw16_ex(Sheet& sheet, std::uint32_t order, std::uint32_t target) {
  const std::string selectors = " byteOrder " + std::to_string(order) + " target " + std::to_string(target);
  add_patterns(sheet, "QVN_Raw16ImageTransformEx" + selectors,
               [=](Digest& digest, const Size& frame, std::uint32_t pattern) {
                 for (const std::uint32_t bits : {0U, 10U, 11U, 12U, 13U, 14U, 15U, 16U}) {
                   const SampleFormatBlock format = {0, bits == 0 ? 0U : 1U, bits, order, pattern};
                   if (target < 5) {
                     add_raw16_ex<std::uint8_t>(digest, frame, target, format);
                   } else {
                     add_raw16_ex<std::uint16_t>(digest, frame, target, format);
                   }
                 }
               });
}

}  // namespace

void add_mosaics(Sheet& sheet) {
  add_demosaic(sheet, "QVN_Raw8ToBGR", QVN_Raw8ToBGR);
  add_demosaic(sheet, "QVN_Raw8ToBGR_mono", QVN_Raw8ToBGR_mono);
  add_demosaic(sheet, "QVN_Raw8ToY8", QVN_Raw8ToY8);
  add_demosaic(sheet, "QVN_Raw16ToBGR", QVN_Raw16ToBGR);
  add_demosaic(sheet, "QVN_Raw8ToBGR_3x3", QVN_Raw8ToBGR_3x3);
  add_demosaic(sheet, "QVN_Raw8ToBGR_IntYUV422", QVN_Raw8ToBGR_IntYUV422);
  add_demosaic(sheet, "QVN_Raw8ToBGR_IntLCAA", QVN_Raw8ToBGR_IntLCAA);
  add_demosaic(sheet, "QVN_Raw8ToBGR_IntLCAAV", QVN_Raw8ToBGR_IntLCAAV);
  add_demosaic(sheet, "QVN_Raw12ToBGR", QVN_Raw12ToBGR);
  add_demosaic(sheet, "QVN_Raw12ToBGR16", QVN_Raw12ToBGR16);
  add_shifted_demosaic(sheet, "QVN_Raw16ToBGR16", QVN_Raw16ToBGR16);
  add_shifted_demosaic(sheet, "QVN_Raw16ToY16", QVN_Raw16ToY16);
  add_transform(sheet, "QVN_Raw8ImageTransform", QVN_Raw8ImageTransform);
  add_transform(sheet, "QVN_Raw8ImageTransform_3x3", QVN_Raw8ImageTransform_3x3);
  add_transform(sheet, "QVN_Raw8ImageTransform_IntYUV422", QVN_Raw8ImageTransform_IntYUV422);
  add_transform(sheet, "QVN_Raw8ImageTransform_IntLCAA", QVN_Raw8ImageTransform_IntLCAA);
  add_transform(sheet, "QVN_Raw8ImageTransform_IntLCAAV", QVN_Raw8ImageTransform_IntLCAAV);
  add_transform(sheet, "QVN_Raw12ImageTransform", QVN_Raw12ImageTransform);
  add_transform(sheet, "QVN_Raw16ImageTransform", QVN_Raw16ImageTransform);
  for (const std::uint32_t order : {0U, 1U}) {
    for (std::uint32_t target = 0; target < 8; ++target) add_raw16_ex(sheet, order, target);
  }
}

}  // namespace digest
