/// Two columns a step for Raw8 and Raw12, which gives odd widths their drift, and one for Raw16.
#include "reference/transform_2x2.h"

#include <cstddef>
#include <cstring>

#include "reference/demosaic_2x2.h"
#include "reference/transform_pixel.h"

namespace reference {
namespace {

std::uint8_t mean(std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>((a + b) >> 1); }

/// Where a kernel writes, and what it makes of a window.
class Output {
 public:
  Output(std::uint8_t* dst, std::uint32_t target, std::uint32_t width)
      : out_(dst),
        target_(target),
        pitch_(target == 4 ? std::size_t{width >> 1} * 4 : target_bytes(target) * width) {}

  void put(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    if (target_ == 4) {
      put_studio(red, green, blue);
    } else {
      out_ = put_target(out_, target_, red, green, blue);
    }
  }

  /// Steps over the fourth byte of target 2.
  void put_zero() {
    std::memset(out_, 0, target_ == 2 ? 3 : target_bytes(target_));
    out_ += target_bytes(target_);
  }

  void copy_line_above() { std::memcpy(out_, out_ - pitch_, pitch_); }

 private:
  void put_studio(std::int32_t red, std::int32_t green, std::int32_t blue) {
    const std::int32_t y = ((green * 129 + blue * 25 + red * 66 + 128) >> 8) + 16;
    const std::int32_t u = ((blue * 112 - green * 74 - red * 38 + 128) >> 8) + 128;
    const std::int32_t v = ((red * 112 - green * 94 - blue * 18 + 128) >> 8) + 128;
    if (counter_ % 2 == 0) {
      out_[1] = static_cast<std::uint8_t>(y);
      out_[0] = static_cast<std::uint8_t>(u);
      out_[2] = static_cast<std::uint8_t>(v);
    } else {
      out_[3] = static_cast<std::uint8_t>(y);
      out_[0] = static_cast<std::uint8_t>((u + out_[0]) >> 1);
      out_[2] = static_cast<std::uint8_t>((v + out_[2]) >> 1);
      out_ += 4;
    }
    ++counter_;
  }

  std::uint8_t* out_;
  std::uint32_t target_;
  std::size_t pitch_;
  std::uint32_t counter_ = 0;  ///< of the frame's pixels, for the pairs of target 4
};

/// All columns but the last two. `next` is the distance from a cursor's sample to its next one.
void put_steps(Output& out, CellWalker& at, std::uint32_t width, std::uint32_t pattern, std::size_t next) {
  if (width - 2 == 0) return;
  for (std::uint32_t steps = ((width - 3) >> 1) + 1; steps != 0; --steps, at.step_two_columns()) {
    out.put(at.R[0], mean(at.G1[0], at.G2[0]), at.B[0]);
    if ((pattern & 1) == 0) {
      out.put(at.R[next], mean(at.G1[next], at.G2[0]), at.B[0]);
    } else {
      out.put(at.R[0], mean(at.G1[0], at.G2[next]), at.B[next]);
    }
  }
}

void raw16_kernel(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t target, std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height, 2);
  Output out(dst, target, width);
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) out.put(*walker.R, walker.green(), *walker.B);
    out.put_zero();
    walker.end_line();
  }
  out.copy_line_above();
}

}  // namespace

bool Raw8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t target, std::uint32_t pattern) {
  if (target > 4) return false;
  CellWalker walker(src, pattern, width, height);
  Output out(dst, target, width);
  while (walker.begin_line()) {
    put_steps(out, walker, width, pattern, 2);
    if ((pattern & 1) == 0) {
      out.put(*walker.R, walker.green(), *walker.B);
    } else {
      out.put(*walker.B, walker.green(), *walker.R);
    }
    out.put(*walker.R, walker.green(), *walker.B);
    walker.end_line();
  }
  out.copy_line_above();
  return true;
}

bool Raw12ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                         std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  if (target > 3) return false;
  CellWalker walker(src, pattern, width, height, std::size_t{width >> 1} * 3, 2, 3);
  Output out(dst, target, width);
  while (walker.begin_line()) {
    put_steps(out, walker, width, pattern, 3);
    out.put(*walker.R, walker.green(), *walker.B);
    out.put(*walker.R, walker.green(), *walker.B);
    walker.end_line();
  }
  out.copy_line_above();
  return true;
}

bool Raw16ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                         std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  switch (target) {
    case 0:
      raw16_kernel(dst, src, width, height, 0, pattern);
      [[fallthrough]];
    case 3:
      raw16_kernel(dst, src, width, height, 3, pattern);
      return true;
    case 1:
    case 2:
      raw16_kernel(dst, src, width, height, target, pattern);
      return true;
    default:
      return false;
  }
}

}  // namespace reference
