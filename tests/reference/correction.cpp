/// Kinds, layouts and rules, one function each.
#include "reference/correction.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace reference {

std::function<void()> at_range_failure;

namespace {

/// Byte offsets of the fields.
constexpr std::size_t kCoefficients = 4;
constexpr std::size_t kMatrix = 8;
constexpr std::size_t kGamma = 44;
constexpr std::size_t kMaxValue = 48;
constexpr std::size_t kFirst = 8 + sizeof(void*);
constexpr std::size_t kLast = kFirst + sizeof(void*);

template <typename T>
T field(const void* correction, std::size_t offset) {
  T value;
  std::memcpy(&value, static_cast<const unsigned char*>(correction) + offset, sizeof value);
  return value;
}

float matrix_entry(const void* correction, unsigned index) {
  return field<float>(correction, kMatrix + 4 * std::size_t{index});
}

std::int32_t coefficient(const void* correction, unsigned index) {
  return field<std::int32_t>(correction, kCoefficients + 4 * std::size_t{index});
}

/// Towards zero; what does not fit, and NaN, becomes the smallest number.
std::int64_t truncate_to_64_bits(double value) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  if (value >= -kTwoTo63 && value < kTwoTo63) return static_cast<std::int64_t>(value);
  return std::numeric_limits<std::int64_t>::min();
}

std::uint32_t low_bits(std::int64_t value, unsigned bits) {
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) & ((std::uint64_t{1} << bits) - 1));
}

std::uint32_t top_value(unsigned bits) { return (std::uint32_t{1} << bits) - 1; }

/// The answer of each entry, in the order of `Corrected`, for kinds 0 to 9.
constexpr int kMap[10][5] = {
    {kUnknownKind, kUnknownKind, kUnknownKind, kUnknownKind, kUnknownKind},  // none
    {kServed, kServed, kServed, kServed, kServed},                           // float matrix
    {kServed, kOtherDepth, kOtherDepth, kOtherDepth, kOtherDepth},           // fixed matrix for 8 bits
    {kOtherDepth, kServed, kServed, kServed, kServed},                       // fixed matrix for more
    {kServed, kServed, kServed, kServed, kServed},                           // gamma
    {kServed, kServed, kServed, kServed, kServed},                           // gamma, then matrix
    {kOtherDepth, kOtherDepth, kOtherDepth, kUnknownKind, kUnknownKind},     // reserved
    {kUnknownKind, kUnknownKind, kUnknownKind, kUnknownKind, kOtherDepth},   // list of tables
    {kServed, kOtherDepth, kOtherDepth, kOtherDepth, kOtherDepth},           // table of bytes
    {kOtherDepth, kServed, kServed, kServed, kServed},                       // table of words
};

}  // namespace

int dispatch(Corrected entry, const void* correction) {
  const std::uint32_t kind = kind_of(correction);
  if (kind == 0 || kind > 9) return kUnknownKind;
  return kMap[kind][static_cast<int>(entry)];
}

std::uint32_t kind_of(const void* correction) { return field<std::uint32_t>(correction, 0); }

std::array<std::uint32_t, 10> created_words(std::uint32_t kind, const float* matrix) {
  std::array<std::uint32_t, 10> words = {kind};
  for (std::size_t i = 0; i < 9; ++i) {
    const float product = matrix[i] * 1024.0F;
    // The whole numbers of 32 bits are those whose truncation lies strictly between these two.
    const bool fits = double{product} > -2147483649.0 && double{product} < 2147483648.0;
    words[i + 1] = fits ? static_cast<std::uint32_t>(static_cast<std::int32_t>(product)) : 0x80000000U;
  }
  return words;
}

std::uint32_t float_row(const void* correction, unsigned row, Colours in, unsigned bits) {
  const float red = static_cast<float>(in.red) * matrix_entry(correction, 3 * row);
  const float green = static_cast<float>(in.green) * matrix_entry(correction, 3 * row + 1);
  const float blue = static_cast<float>(in.blue) * matrix_entry(correction, 3 * row + 2);
  const float first_two = red + green;
  const float sum = first_two + blue;
  return low_bits(truncate_to_64_bits(sum), bits);
}

std::uint32_t fixed_row_16(const void* correction, unsigned row, Colours in) {
  const std::uint32_t inputs[3] = {in.red, in.green, in.blue};
  std::uint16_t sum = 0;
  for (unsigned i = 0; i < 3; ++i) {
    const auto low = static_cast<std::uint16_t>(coefficient(correction, 3 * row + i));
    const auto product = static_cast<std::uint16_t>(inputs[i] * low);
    sum = static_cast<std::uint16_t>(sum + product);
  }
  const auto shifted = static_cast<std::int16_t>(static_cast<std::int16_t>(sum) >> 10);
  if ((shifted & 0xFF00) == 0) return static_cast<std::uint32_t>(shifted);
  return shifted < 0 ? 0 : 255;
}

std::uint32_t fixed_row_32(const void* correction, unsigned row, Colours in, unsigned bits) {
  const std::uint32_t inputs[3] = {in.red, in.green, in.blue};
  std::uint32_t sum = 0;
  for (unsigned i = 0; i < 3; ++i) {
    sum += inputs[i] * static_cast<std::uint32_t>(coefficient(correction, 3 * row + i));
  }
  const std::int32_t shifted = static_cast<std::int32_t>(sum) >> 10;
  if ((static_cast<std::uint32_t>(shifted) & 0xFFFF0000U) == 0) return low_bits(shifted, bits);
  return shifted < 0 ? 0 : top_value(bits);
}

std::uint32_t power(const void* correction, std::uint32_t sample, unsigned bits) {
  const float gamma = field<float>(correction, kGamma);
  const float max_value = field<float>(correction, kMaxValue);
  const float ratio = static_cast<float>(sample) / max_value;
  const float raised = std::pow(ratio, gamma);
  const float scaled = raised * max_value;
  return low_bits(truncate_to_64_bits(double{scaled} + 0.5), bits);
}

void test_look_up(const void* correction, std::uint32_t index, unsigned bits) {
  const auto* first = field<const unsigned char*>(correction, kFirst);
  const auto* last = field<const unsigned char*>(correction, kLast);
  const std::ptrdiff_t bytes = last - first;
  const std::ptrdiff_t entries = bits == 8 ? bytes : bytes >> 1;
  if (first == nullptr || index >= static_cast<std::size_t>(entries)) at_range_failure();
}

std::uint32_t look_up(const void* correction, std::uint32_t index, unsigned bits) {
  test_look_up(correction, index, bits);
  const auto* first = field<const unsigned char*>(correction, kFirst);
  if (bits == 8) return first[index];
  return field<std::uint16_t>(first, 2 * std::size_t{index});
}

Colours correct(const void* correction, Colours in, unsigned bits) {
  Colours out = in;
  switch (kind_of(correction)) {
    case 2:
      out.red = fixed_row_16(correction, 0, in);
      out.green = fixed_row_16(correction, 1, in);
      out.blue = fixed_row_16(correction, 2, in);
      break;
    case 3:
      out.red = fixed_row_32(correction, 0, in, bits);
      out.green = fixed_row_32(correction, 1, in, bits);
      out.blue = fixed_row_32(correction, 2, in, bits);
      break;
    case 4:
      out.red = power(correction, in.red, bits);
      out.green = power(correction, in.green, bits);
      out.blue = power(correction, in.blue, bits);
      break;
    case 5:
      in.red = power(correction, in.red, bits);
      in.green = power(correction, in.green, bits);
      in.blue = power(correction, in.blue, bits);
      [[fallthrough]];
    case 1:
      out.red = float_row(correction, 0, in, bits);
      out.green = float_row(correction, 1, in, bits);
      out.blue = float_row(correction, 2, in, bits);
      break;
    default:
      out.red = look_up(correction, in.red, bits);
      out.green = look_up(correction, in.green, bits);
      out.blue = look_up(correction, in.blue, bits);
      break;
  }
  return out;
}

}  // namespace reference
