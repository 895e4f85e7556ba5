/// Two columns a step. The second pixel of a step keeps one channel of the first: blue in the even column
/// phase, red in the odd one; what is kept differs from form to form.
#include "reference/raw16.h"

#include <cstddef>
#include <cstring>

#include "reference/correction.h"
#include "reference/demosaic_2x2.h"

namespace reference {
namespace {

/// Shift counts are taken modulo 32; the high byte's is a 16-bit difference.
std::uint32_t low_count(std::uint32_t shift) { return shift & 31; }
std::uint32_t high_count(std::uint32_t shift) { return static_cast<std::uint16_t>(8 - shift) & 31U; }

std::uint8_t* put_word(std::uint8_t* out, std::uint32_t value) {
  const auto word = static_cast<std::uint16_t>(value);
  std::memcpy(out, &word, 2);
  return out + 2;
}

std::uint32_t word_at(const std::uint8_t* bytes) {
  std::uint16_t word;
  std::memcpy(&word, bytes, 2);
  return word;
}

std::uint8_t* put_pixel(std::uint8_t* out, Colours colours) {
  out = put_word(out, colours.blue);
  out = put_word(out, colours.green);
  return put_word(out, colours.red);
}

std::uint8_t* put_luma(std::uint8_t* out, Colours colours) {
  return put_word(out, (colours.red * 77 + colours.green * 150 + colours.blue * 21) >> 8);
}

std::uint8_t* repeat(std::uint8_t* out, std::size_t pixel_bytes) {
  for (std::size_t i = 0; i < pixel_bytes; ++i, ++out) *out = *(out - pixel_bytes);
  return out;
}

std::uint32_t steps_in_line(std::uint32_t width) { return width == 2 ? 0 : ((width - 3) >> 1) + 1; }

Colours window(const CellWalker& at, std::uint32_t shift) {
  return {.red = shifted_sample(at.R, shift),
          .green = shifted_mean(at.G1, at.G2, shift),
          .blue = shifted_sample(at.B, shift)};
}

/// The second pixel's fresh channels; the kept one is left 0.
Colours second_window(const CellWalker& at, std::uint32_t shift, bool even_phase) {
  if (even_phase) {
    return {
        .red = shifted_sample(at.R + 4, shift), .green = shifted_mean(at.G2, at.G1 + 4, shift), .blue = 0};
  }
  return {.red = 0, .green = shifted_mean(at.G1, at.G2 + 4, shift), .blue = shifted_sample(at.B + 4, shift)};
}

Colours corrected(const void* correction, Colours colours) {
  return correction == nullptr ? colours : correct(correction, colours, 16);
}

/// The kept channel of a second pixel in the luma entry's general form. It is corrected from its own raw
/// value and from what the correction made of the first pixel's other two channels: `state` holds these
/// three. In the even column phase that is row 2, in the odd one row 0.
std::uint32_t corrected_kept(const void* correction, Colours state, bool even_phase) {
  const unsigned row = even_phase ? 2 : 0;
  switch (kind_of(correction)) {
    case 1:
      return float_row(correction, row, state, 16);
    case 3:
      return fixed_row_32(correction, row, state, 16);
    case 4:
      return power(correction, even_phase ? state.blue : state.red, 16);
    case 5: {
      const Colours raised = {.red = power(correction, state.red, 16),
                              .green = power(correction, state.green, 16),
                              .blue = power(correction, state.blue, 16)};
      return float_row(correction, row, raised, 16);
    }
    default:
      // Red, green, blue; the two that are not used are tested.
      if (even_phase) {
        test_look_up(correction, state.red, 16);
        test_look_up(correction, state.green, 16);
        return look_up(correction, state.blue, 16);
      } else {
        const std::uint32_t kept = look_up(correction, state.red, 16);
        test_look_up(correction, state.green, 16);
        test_look_up(correction, state.blue, 16);
        return kept;
      }
  }
}

void to_bgr16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern, std::uint32_t shift, const void* correction) {
  const bool even_phase = (pattern & 1) == 0;
  CellWalker at(src, pattern, width, height, 2);
  std::uint8_t* out = dst;
  while (at.begin_line()) {
    for (std::uint32_t step = 0; step < steps_in_line(width); ++step) {
      out = put_pixel(out, corrected(correction, window(at, shift)));
      Colours second = second_window(at, shift, even_phase);
      // The first pixel's word as it was stored, corrected already.
      if (even_phase) {
        second.blue = word_at(out - 6);
      } else {
        second.red = word_at(out - 2);
      }
      out = put_pixel(out, corrected(correction, second));
      at.step_two_columns();
    }
    out = repeat(out, 6);
    out = repeat(out, 6);
    at.end_line();
  }
  const std::size_t line_bytes = std::size_t{6} * width;
  std::memcpy(out, out - line_bytes, line_bytes);
}

void to_y16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
            std::uint32_t pattern, std::uint32_t shift, const void* correction) {
  const bool even_phase = (pattern & 1) == 0;
  const bool twin = shift == 0;
  CellWalker at(src, pattern, width, height, 2);
  std::uint8_t* out = dst;
  while (at.begin_line()) {
    for (std::uint32_t step = 0; step < steps_in_line(width); ++step) {
      const Colours raw = window(at, shift);
      const Colours first = corrected(correction, raw);
      out = put_luma(out, first);
      Colours second = second_window(at, shift, even_phase);
      if (correction == nullptr || twin) {
        (even_phase ? second.blue : second.red) = even_phase ? raw.blue : raw.red;
        out = put_luma(out, corrected(correction, second));
      } else {
        Colours state = first;
        (even_phase ? state.blue : state.red) = even_phase ? raw.blue : raw.red;
        (even_phase ? second.blue : second.red) = corrected_kept(correction, state, even_phase);
        out = put_luma(out, second);
      }
      at.step_two_columns();
    }
    out = repeat(out, 2);
    out = repeat(out, 2);
    at.end_line();
  }
  const std::size_t line_bytes = std::size_t{2} * width;
  std::memcpy(out, out - line_bytes, line_bytes);
}

}  // namespace

std::uint32_t shifted_sample(const std::uint8_t* sample, std::uint32_t shift) {
  const std::uint32_t hi = sample[0];
  const std::uint32_t lo = sample[1];
  return static_cast<std::uint16_t>((hi << high_count(shift)) + (lo >> low_count(shift)));
}

std::uint32_t shifted_mean(const std::uint8_t* a, const std::uint8_t* b, std::uint32_t shift) {
  const std::uint32_t hi_sum = std::uint32_t{a[0]} + b[0];
  const std::uint32_t lo_sum = std::uint32_t{a[1]} + b[1];
  return static_cast<std::uint16_t>(((lo_sum >> low_count(shift)) + (hi_sum << high_count(shift))) >> 1);
}

void Raw16ToBGR16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, std::uint32_t shift) {
  to_bgr16(dst, src, width, height, pattern, shift, nullptr);
}

void Raw16ToY16(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern, std::uint32_t shift) {
  to_y16(dst, src, width, height, pattern, shift, nullptr);
}

int Raw16ToBGR16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t pattern, std::uint32_t shift, const void* correction) {
  const int answer = correction == nullptr ? kServed : dispatch(Corrected::kRaw16ToBGR16, correction);
  if (answer == kServed) to_bgr16(dst, src, width, height, pattern, shift, correction);
  return answer;
}

int Raw16ToY16_CC(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                  std::uint32_t pattern, std::uint32_t shift, const void* correction) {
  const int answer = correction == nullptr ? kServed : dispatch(Corrected::kRaw16ToY16, correction);
  if (answer == kServed) to_y16(dst, src, width, height, pattern, shift, correction);
  return answer;
}

}  // namespace reference
