/// Two columns a step, by one of four line bodies; whole pixels and whole lines are copied to the border.
#include "reference/transform_3x3.h"

#include <cstddef>
#include <cstring>

#include "reference/transform_pixel.h"

namespace reference {
namespace {

/// The neighbourhood of a sample, and the pixel of each kind of site.
class Site {
 public:
  /// `above` is the sample to the north-west of the centre.
  Site(const std::uint8_t* above, std::size_t pitch)
      : nw(above[0]),
        n(above[1]),
        ne(above[2]),
        w(above[pitch]),
        c(above[pitch + 1]),
        e(above[pitch + 2]),
        sw(above[2 * pitch]),
        s(above[2 * pitch + 1]),
        se(above[2 * pitch + 2]) {}

  std::uint8_t* put_blue(std::uint8_t* out, std::uint32_t target) const {
    return put_target(out, target, corners(), cross(), byte(c));
  }
  std::uint8_t* put_red(std::uint8_t* out, std::uint32_t target) const {
    return put_target(out, target, byte(c), cross(), corners());
  }
  std::uint8_t* put_green_on_blue_line(std::uint8_t* out, std::uint32_t target) const {
    return put_target(out, target, byte((n + s) >> 1), smoothed(), byte((w + e) >> 1));
  }
  std::uint8_t* put_green_on_red_line(std::uint8_t* out, std::uint32_t target) const {
    return put_target(out, target, byte((w + e) >> 1), smoothed(), byte((n + s) >> 1));
  }

 private:
  static std::uint8_t byte(std::uint32_t value) { return static_cast<std::uint8_t>(value); }
  std::uint8_t corners() const { return byte((nw + ne + sw + se) >> 2); }
  std::uint8_t cross() const { return byte((n + s + w + e) >> 2); }
  std::uint8_t smoothed() const { return byte((2 * c + sw + ne) >> 2); }

  std::uint32_t nw, n, ne, w, c, e, sw, s, se;
};

}  // namespace

bool Raw8ImageTransform_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                            std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  if (target > 3) return false;
  bool row_flag = (pattern & ~1U) == 0;
  const bool column_flag = (pattern & 1) == 0;
  const std::size_t pixel = target_bytes(target);
  const std::size_t line_bytes = pixel * width;

  std::memset(dst, 0, line_bytes);
  std::uint8_t* line = dst + line_bytes;
  for (std::uint32_t lines = height - 2; lines != 0; --lines) {
    std::uint8_t* out = line + pixel;
    if (width - 1 > 1) {
      for (std::uint32_t steps = ((width - 3) >> 1) + 1; steps != 0; --steps, src += 2) {
        const Site first(src, width);
        const Site second(src + 1, width);
        if (row_flag && column_flag) {
          out = first.put_blue(out, target);
          out = second.put_green_on_blue_line(out, target);
        } else if (row_flag) {
          out = first.put_green_on_blue_line(out, target);
          out = second.put_blue(out, target);
        } else if (column_flag) {
          out = first.put_green_on_red_line(out, target);
          out = second.put_red(out, target);
        } else {
          out = first.put_red(out, target);
          out = second.put_green_on_blue_line(out, target);  // though it lies on a red line
        }
      }
    }
    std::memcpy(out, out - pixel, pixel);
    std::memcpy(line, line + pixel, pixel);
    src += 2;
    line = out + pixel;
    row_flag = !row_flag;
  }
  std::memcpy(line, line - line_bytes, line_bytes);
  std::memcpy(dst, dst + line_bytes, line_bytes);
  return true;
}

}  // namespace reference
