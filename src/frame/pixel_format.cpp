// The table of pixel formats. A flip moves 2 bytes in all the YUV formats, although their pixels and pixel
// groups have other sizes: callers depend on the order of bytes that comes of it.
#include "frame/pixel_format.h"

#include <algorithm>
#include <iterator>

namespace qvn {
namespace {

constexpr PixelFormat kPixelFormats[] = {
    {0, 8, 1},     // Mono8
    {1, 12, 2},    // YUV 4:1:1
    {2, 16, 2},    // YUV 4:2:2
    {3, 24, 2},    // YUV 4:4:4
    {4, 24, 3},    // RGB8
    {5, 16, 2},    // Mono16
    {6, 48, 6},    // RGB16
    {7, 16, 2},    // signed Mono16
    {8, 48, 6},    // signed RGB16
    {9, 8, 1},     // Raw8
    {10, 16, 2},   // Raw16
    {128, 8, 1},   // extensions
    {129, 8, 1},   //
    {130, 8, 1},   //
    {132, 12, 0},  //
    {133, 36, 0},  //
    {134, 12, 0},  //
    {135, 36, 0},  //
    {136, 12, 0},  //
    {141, 32, 0},  //
};

}  // namespace

const PixelFormat* find_pixel_format(uint32_t code) {
  const auto* found = std::find_if(std::begin(kPixelFormats), std::end(kPixelFormats),
                                   [code](const PixelFormat& format) { return format.code == code; });
  return found != std::end(kPixelFormats) ? found : nullptr;
}

}  // namespace qvn
