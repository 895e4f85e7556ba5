/// Functions over CYGM frames.
#include <quorvane/quorvane.h>

#include "digest/sheet.h"

namespace digest {
namespace {

/// `convert(dst, src, width, height)` over all frames.
template <typename Convert>
void add_frames(Digest& digest, Convert convert) {
  for (const auto& [width, height] : kFrames) {
    const std::size_t samples = std::size_t{width} * height;
    add_call<std::uint8_t, std::uint8_t>(
        digest, 4 * samples, samples,
        [&, width = width, height = height](std::uint8_t* dst, const std::uint8_t* src) {
          return convert(dst, src, width, height);
        });
  }
}

using Conversion = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                     std::uint32_t);
using Transform = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                    TransformTarget, std::uint32_t);

void add_conversion(Sheet& sheet, const char* name, Conversion convert) {
  for (const std::uint32_t phase : {0U, 1U}) {
    sheet.line(name + (" phase " + std::to_string(phase)), [=](Digest& digest) {
      add_frames(digest, [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height) { return convert(dst, src, width, height, phase); });
    });
  }
}

void add_transform(Sheet& sheet, const char* name, Transform transform) {
  for (std::uint32_t target = 0; target < 8; ++target) {
    sheet.line(name + (" target " + std::to_string(target)), [=](Digest& digest) {
      for (const std::uint32_t phase : {0U, 1U}) {
        add_frames(digest,
                   [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                       std::uint32_t height) { return transform(dst, src, width, height, target, phase); });
      }
    });
  }
}

}  // namespace

void add_cygm(Sheet& sheet) {
  sheet.line("QVN_IRaw8CYGMToBGR_Bin", [](Digest& digest) { add_frames(digest, QVN_IRaw8CYGMToBGR_Bin); });
  add_conversion(sheet, "QVN_IRaw8CYGMToBGR", QVN_IRaw8CYGMToBGR);
  add_conversion(sheet, "QVN_IRaw8CYGMToBGR_3x3", QVN_IRaw8CYGMToBGR_3x3);
  add_conversion(sheet, "QVN_IRaw8CYGMToMono", QVN_IRaw8CYGMToMono);
  add_transform(sheet, "QVN_IRaw8CYGMImageTransform_Bin",
                [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                   TransformTarget target, std::uint32_t) {
                  return QVN_IRaw8CYGMImageTransform_Bin(dst, src, width, height, target);
                });
  add_transform(sheet, "QVN_IRaw8CYGMImageTransform", QVN_IRaw8CYGMImageTransform);
  add_transform(sheet, "QVN_IRaw8CYGMImageTransform_3x3", QVN_IRaw8CYGMImageTransform_3x3);
}

}  // namespace digest
