/// Two samples lie in a group of three bytes: the top byte of the even one, the low nibbles (the even
/// sample's in the low half), the top byte of the odd one. A cursor stays on byte 0 or on byte 2.
#include "reference/raw12.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "reference/correction.h"
#include "reference/demosaic_2x2.h"

namespace reference {
namespace {

std::uint32_t mean(std::uint32_t a, std::uint32_t b) { return (a + b) >> 1; }

CellWalker walk(const std::uint8_t* src, std::uint32_t pattern, std::uint32_t width, std::uint32_t height) {
  return {src, pattern, width, height, std::size_t{width >> 1} * 3, 2, 3};
}

Colours corrected(const void* correction, Colours window, unsigned bits) {
  return correction == nullptr ? window : correct(correction, window, bits);
}

std::uint8_t* put_bytes(std::uint8_t* out, Colours colours) {
  *out++ = static_cast<std::uint8_t>(colours.blue);
  *out++ = static_cast<std::uint8_t>(colours.green);
  *out++ = static_cast<std::uint8_t>(colours.red);
  return out;
}

std::uint8_t* put_words(std::uint8_t* out, Colours colours) {
  for (std::uint32_t channel : {colours.blue, colours.green, colours.red}) {
    const auto word = static_cast<std::uint16_t>(channel);
    std::memcpy(out, &word, 2);
    out += 2;
  }
  return out;
}

/// A cursor and its partner on the group's byte with the nibbles.
struct Cursor {
  const std::uint8_t* top;
  const std::uint8_t* nibbles;
  bool above;  ///< settled once a line: the cursor is on byte 2, and its nibble the high one

  Cursor(const std::uint8_t* cursor, const std::uint8_t* partner)
      : top(cursor), nibbles(partner), above(cursor > partner) {}

  /// The sample two columns on for each group.
  std::uint32_t sample(std::ptrdiff_t groups = 0) const {
    const std::uint32_t both = nibbles[3 * groups];
    const std::uint32_t nibble = above ? both >> 4 : both & 0x0F;
    return (std::uint32_t{top[3 * groups]} << 4) + nibble;
  }
  void step() {
    top += 3;
    nibbles += 3;
  }
};

void to_bytes(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern, const void* correction) {
  CellWalker at = walk(src, pattern, width, height);
  std::uint8_t* out = dst;
  const auto put = [&](std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    out = put_bytes(out, corrected(correction, {red, green, blue}, 8));
  };
  while (at.begin_line()) {
    if (width - 2 != 0) {
      for (std::uint32_t step = 0; step < ((width - 3) >> 1) + 1; ++step) {
        put(at.R[0], mean(at.G1[0], at.G2[0]), at.B[0]);
        if ((pattern & 1) == 0) {
          put(at.R[3], mean(at.G2[0], at.G1[3]), at.B[0]);
        } else {
          put(at.R[0], mean(at.G1[0], at.G2[3]), at.B[3]);
        }
        at.step_two_columns();
      }
    }
    put(*at.R, mean(*at.G1, *at.G2), *at.B);
    std::memcpy(out, out - 3, 3);
    out += 3;
    at.end_line();
  }
  const std::size_t line_bytes = std::size_t{3} * width;
  std::memcpy(out, out - line_bytes, line_bytes);
}

void to_words(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern, const void* correction) {
  CellWalker at = walk(src, pattern, width, height);
  std::uint8_t* out = dst;
  const auto put = [&](std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    out = put_words(out, corrected(correction, {red, green, blue}, 16));
  };
  // The left green of a window was the right one of the window before, and is carried over in a step and to
  // the pixel behind the steps. Width 2 makes no step, so that its pixels take what was never set.
  std::uint32_t carried = 0;
  while (at.begin_line()) {
    // R and G2 share a line and its first group, and so do B and G1.
    Cursor R(at.R, std::min(at.R, at.G2) + 1);
    Cursor G1(at.G1, std::min(at.B, at.G1) + 1);
    Cursor G2(at.G2, std::min(at.R, at.G2) + 1);
    Cursor B(at.B, std::min(at.B, at.G1) + 1);
    const bool even_phase = (pattern & 1) == 0;
    Cursor& left = even_phase ? G1 : G2;
    Cursor& right = even_phase ? G2 : G1;
    if (width - 2 != 0) {
      carried = left.sample();
      for (std::uint32_t step = 0; step < ((width - 3) >> 1) + 1; ++step) {
        const std::uint32_t red = R.sample();
        const std::uint32_t blue = B.sample();
        const std::uint32_t shared = right.sample();
        put(red, mean(carried, shared), blue);
        carried = left.sample(1);
        if (even_phase) {
          put(R.sample(1), mean(shared, carried), blue);
        } else {
          put(red, mean(shared, carried), B.sample(1));
        }
        for (Cursor* cursor : {&R, &G1, &G2, &B}) cursor->step();
      }
    }
    put(R.sample(), mean(carried, right.sample()), B.sample());
    std::memcpy(out, out - 6, 6);
    out += 6;
    at.end_line();
  }
  // The byte count of an 8-bit line: half of this one.
  std::memcpy(out, out - std::size_t{6} * width, std::size_t{3} * width);
}

}  // namespace

void Raw12ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern) {
  to_bytes(dst, src, width, height, pattern, nullptr);
}

void Raw12ToBGR16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern) {
  to_words(dst, src, width, height, pattern, nullptr);
}

int Raw12ToBGR_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, const void* correction) {
  const int answer = correction == nullptr ? kServed : dispatch(Corrected::kRaw12ToBGR, correction);
  if (answer == kServed) to_bytes(dst, src, width, height, pattern, correction);
  return answer;
}

int Raw12ToBGR16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern, const void* correction) {
  const int answer = correction == nullptr ? kServed : dispatch(Corrected::kRaw12ToBGR16, correction);
  if (answer == kServed) to_words(dst, src, width, height, pattern, correction);
  return answer;
}

}  // namespace reference
