// The grey conversion: its rows and its frame plan.
#include "cygm/mono.h"

#include <cstring>

#include "convert/yuv_tables.h"
#include "cygm/cygm_frame.h"
#include "pixel/defined_conversion.h"
#include "pixel/merge3.h"

namespace qvn {

namespace {

constexpr size_t kPixelBytes = 3;

void put_grey(uint8_t* out, uint8_t value) { out[0] = out[1] = out[2] = value; }

// The two lines of a row, and how its samples' colours lie.
struct GainedLines {
  const uint8_t* cyan_yellow;
  const uint8_t* green_magenta;
  size_t first_column;  // the mosaic column of sample 0
  bool magenta_first;   // magenta at even mosaic columns
};

// Of the low 8 bits of an integer; a sum that has none gives 0.
uint8_t gained_mean(const MonoGains& gains, float c, float m, float y, float g) {
  const float sum = c * gains.c + m * gains.m + y * gains.y + g * gains.g;
  return static_cast<uint8_t>(truncate_to_int32(sum * 0.25F) & 0xFF);
}

void gained_row(uint8_t* dst, const MonoGains& gains, const GainedLines& lines, size_t n) {
  for (size_t x = 0; x < n; ++x, dst += kPixelBytes) {
    const size_t even = (x + lines.first_column) % 2 == 0 ? x : x + 1, odd = 2 * x + 1 - even;
    const size_t magenta = lines.magenta_first ? even : odd, green = lines.magenta_first ? odd : even;
    put_grey(dst, gained_mean(gains, lines.cyan_yellow[even], lines.green_magenta[magenta],
                              lines.cyan_yellow[odd], lines.green_magenta[green]));
  }
}

// Means of pairs of columns x and x + 1, of which `next` has the second.
Words means(Words upper, Words upper_next, Words lower, Words lower_next) {
  return (upper + upper_next + lower + lower_next) >> 2;
}

void mono_vector(uint8_t* dst, const uint8_t* upper, const uint8_t* lower) {
  const Bytes a = load<Bytes>(upper), b = load<Bytes>(lower);
  const Words a_odd = odd_bytes(a), b_odd = odd_bytes(b);
  const Words a_right = odd_bytes(load<Bytes>(upper + 1)), b_right = odd_bytes(load<Bytes>(lower + 1));
  store_triple(dst, join_bytes(means(even_bytes(a), a_odd, even_bytes(b), b_odd),
                               means(a_odd, a_right, b_odd, b_right)));
}

}  // namespace

void mono_row_plain(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, size_t n) {
  for (size_t x = 0; x < n; ++x) {
    const uint32_t sum = uint32_t{upper[x]} + upper[x + 1] + lower[x] + lower[x + 1];
    put_grey(dst + x * kPixelBytes, static_cast<uint8_t>(sum >> 2));
  }
}

// A vector at a time; the last one overlaps the one before it.
void mono_row(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, size_t n) {
  constexpr size_t kStep = kLaneBytes;
  if (!kVectorRows || n < kStep) return mono_row_plain(dst, upper, lower, n);
  size_t x = 0;
  for (; x + kStep <= n; x += kStep) mono_vector(dst + x * kPixelBytes, upper + x, lower + x);
  if (x < n) mono_vector(dst + (n - kStep) * kPixelBytes, upper + (n - kStep), lower + (n - kStep));
}

// Row r comes from lines F(r) and F(r + 1); the last pixel of a row and the last row are copies. Bit 0 of the
// phase shifts the colours by a column, the bits above it shift them by lines.
void convert_to_mono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t phase) {
  const CygmFrame frame = halved_frame(src, width, height);
  const size_t line_bytes = width * kPixelBytes;
  const size_t windows = size_t{width} - 1;
  for (uint32_t row = 0; row + 1 < height; ++row, dst += line_bytes) {
    const uint8_t *upper = frame.line(row), *lower = frame.line(size_t{row} + 1);
    if (color_tables.useGains == 0) {
      mono_row(dst, upper, lower, windows);
    } else {
      const bool cyan_above = row % 2 == 0;
      gained_row(
          dst, color_tables.CygmMonoGains,
          {cyan_above ? upper : lower, cyan_above ? lower : upper, phase & 1, ((phase >> 1) + row) % 4 >= 2},
          windows);
    }
    uint8_t* last = dst + windows * kPixelBytes;
    std::memcpy(last, last - kPixelBytes, kPixelBytes);
  }
  std::memcpy(dst, dst - line_bytes, line_bytes);
}

}  // namespace qvn
