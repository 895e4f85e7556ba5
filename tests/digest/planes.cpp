/// Functions that take a frame apart.
#include <quorvane/quorvane.h>

#include "digest/sheet.h"

namespace digest {
namespace {

using ThreePlanes = std::uint32_t (*)(std::uint8_t*, std::uint8_t*, std::uint8_t*, const std::uint8_t*,
                                      std::uint32_t, std::uint32_t);
using FourPlanes = std::uint32_t (*)(std::uint8_t*, std::uint8_t*, std::uint8_t*, std::uint8_t*,
                                     const std::uint8_t*, std::uint32_t, std::uint32_t);
template <typename Conversion>
struct Named {
  const char* name;
  Conversion convert;
};

constexpr Named<ThreePlanes> kThreePlanes[] = {
    {"QVN_YUV444ToRGBPlanes", QVN_YUV444ToRGBPlanes},
    {"QVN_YUV422ToRGBPlanes", QVN_YUV422ToRGBPlanes},
    {"QVN_YUV411ToRGBPlanes", QVN_YUV411ToRGBPlanes},
};
constexpr Named<FourPlanes> kFourPlanes[] = {
    {"QVN_YUV444ToRGBYPlanes", QVN_YUV444ToRGBYPlanes},
    {"QVN_YUV422ToRGBYPlanes", QVN_YUV422ToRGBYPlanes},
    {"QVN_YUV411ToRGBYPlanes", QVN_YUV411ToRGBYPlanes},
    {"QVN_RGB8ToRGBYPlanes", QVN_RGB8ToRGBYPlanes},
};

/// The planes lie one behind the other in one destination, with a gap between them.
template <typename Call>
void add_frames(Sheet& sheet, const char* name, Call call) {
  sheet.line(name, [&](Digest& digest) {
    for (const auto& [width, height] : {Size{1, 1}, Size{7, 5}, Size{33, 2}, Size{322, 3}}) {
      const std::size_t plane = std::size_t{width} * height + 7;
      add_call<std::uint8_t, std::uint8_t>(
          digest, 4 * plane, 3 * plane,
          [&, width = width, height = height](std::uint8_t* dst, const std::uint8_t* src) {
            return call(dst, plane, src, width, height);
          });
    }
  });
}

}  // namespace

void add_planes(Sheet& sheet) {
  for (const auto& [name, convert] : kThreePlanes) {
    add_frames(sheet, name,
               [convert = convert](std::uint8_t* dst, std::size_t plane, const std::uint8_t* src,
                                   std::uint32_t width, std::uint32_t height) {
                 return convert(dst, dst + plane, dst + 2 * plane, src, width, height);
               });
  }
  for (const auto& [name, convert] : kFourPlanes) {
    add_frames(sheet, name,
               [convert = convert](std::uint8_t* dst, std::size_t plane, const std::uint8_t* src,
                                   std::uint32_t width, std::uint32_t height) {
                 return convert(dst, dst + plane, dst + 2 * plane, dst + 3 * plane, src, width, height);
               });
  }
}

}  // namespace digest
