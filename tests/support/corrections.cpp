/// Layouts by offsets, and the ranges that random fields are drawn from.
#include "support/corrections.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace support {
namespace {

constexpr std::size_t kPointer = sizeof(void*);
constexpr std::size_t kLargestObject = 52;

template <typename T>
void set(std::vector<std::uint64_t>& object, std::size_t offset, const T& value) {
  std::memcpy(reinterpret_cast<unsigned char*>(object.data()) + offset, &value, sizeof value);
}

std::vector<std::uint64_t> rubbish(std::uint32_t kind) {
  std::vector<std::uint64_t> object((kLargestObject + 7) / 8, 0xDEADC0DEF00DBEEF);
  set(object, 0, kind);
  return object;
}

float between(float low, float high, Random& random) {
  return low + (high - low) * (static_cast<float>(random.next() >> 40) * 0x1p-24F);
}

template <typename T, std::size_t N>
T one_of(const T (&values)[N], Random& random) {
  return values[random.below(N)];
}

/// Any sign, any magnitude from 2^low to 2^high.
float magnitude(float low, float high, Random& random) {
  const float value = std::exp2(std::floor(between(low, high, random))) * between(1, 2, random);
  return random.below(2) == 0 ? value : -value;
}

using Limits = std::numeric_limits<float>;

const float kSpecialFactors[] = {Limits::quiet_NaN(),
                                 Limits::infinity(),
                                 -Limits::infinity(),
                                 Limits::max(),
                                 -Limits::max(),
                                 Limits::min(),
                                 Limits::denorm_min(),
                                 0.0F,
                                 -0.0F,
                                 1.0F,
                                 0.5F,
                                 -1.0F,
                                 9223372036854775808.0F,
                                 -9223372036854775808.0F,
                                 2147483648.0F,
                                 4294967296.0F};
const float kSpecialExponents[] = {Limits::quiet_NaN(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   0.0F,
                                   -0.0F,
                                   1.0F,
                                   -1.0F,
                                   2.0F,
                                   3.0F,
                                   Limits::max(),
                                   0.5F,
                                   -0.5F,
                                   -3.0F,
                                   Limits::denorm_min(),
                                   1.0F / 3,
                                   -Limits::max()};
const float kSpecialMaxima[] = {Limits::quiet_NaN(),
                                Limits::infinity(),
                                -Limits::infinity(),
                                0.0F,
                                -0.0F,
                                1.0F,
                                255.0F,
                                4095.0F,
                                65535.0F,
                                -255.0F,
                                Limits::denorm_min(),
                                Limits::max()};
const std::int32_t kSpecialCoefficients[] = {
    0,      1,       -1,      1023,    1024,       -1024,           0x7FFF,     0x8000,
    0xFFFF, 0x10000, -0x8000, -0x8001, 0x7FFFFFFF, -0x7FFFFFFF - 1, 0x04000000, 0x03FFFFFF};

Matrix random_matrix(Temper temper, Random& random) {
  Matrix matrix{};
  for (std::size_t i = 0; i < matrix.size(); ++i) {
    const bool diagonal = i % 4 == 0;
    switch (temper) {
      case Temper::kGentle:
        matrix[i] = diagonal ? between(0.5F, 1.1F, random) : between(-0.2F, 0.3F, random);
        break;
      case Temper::kWild:
        matrix[i] = between(-8, 8, random);
        break;
      case Temper::kNegative:
        matrix[i] = between(-4, 0, random);
        break;
      case Temper::kHuge:
        matrix[i] = magnitude(10, 64, random);
        break;
      case Temper::kSpecial:
        matrix[i] = one_of(kSpecialFactors, random);
        break;
    }
  }
  // A matrix of numbers from all over gives NaN or the largest term almost everywhere; here and there a row
  // gets by with one special number.
  if (temper == Temper::kSpecial || temper == Temper::kHuge) {
    for (std::size_t row = 0; row < 3; ++row) {
      if (random.below(3) == 0) continue;
      const std::size_t kept = random.below(3);
      for (std::size_t column = 0; column < 3; ++column) {
        if (column != kept) matrix[3 * row + column] = random.below(2) == 0 ? 0.0F : between(-2, 2, random);
      }
    }
  }
  return matrix;
}

Coefficients random_coefficients(Temper temper, Random& random) {
  Coefficients coefficients{};
  for (std::size_t i = 0; i < coefficients.size(); ++i) {
    const bool diagonal = i % 4 == 0;
    switch (temper) {
      case Temper::kGentle:
        coefficients[i] =
            static_cast<std::int32_t>(diagonal ? between(500, 1200, random) : between(-200, 300, random));
        break;
      case Temper::kWild:
        coefficients[i] = static_cast<std::int32_t>(between(-40000, 40000, random));
        break;
      case Temper::kNegative:
        coefficients[i] = static_cast<std::int32_t>(between(-5000, 0, random));
        break;
      case Temper::kHuge:
        coefficients[i] = static_cast<std::int32_t>(static_cast<std::uint32_t>(random.next()));
        break;
      case Temper::kSpecial:
        coefficients[i] = one_of(kSpecialCoefficients, random);
        break;
    }
  }
  return coefficients;
}

float random_exponent(Temper temper, Random& random) {
  switch (temper) {
    case Temper::kGentle:
      return between(0.3F, 3, random);
    case Temper::kWild:
      return between(-3, 9, random);
    case Temper::kNegative:
      return random.below(2) == 0 ? between(-5, 0, random) : -static_cast<float>(random.below(5));
    case Temper::kHuge:
      return magnitude(3, 40, random);
    default:
      return one_of(kSpecialExponents, random);
  }
}

float random_max_value(Temper temper, unsigned sample_bits, Random& random) {
  const float top = static_cast<float>((1U << sample_bits) - 1);
  switch (temper) {
    case Temper::kGentle:
      return top;
    case Temper::kWild:
      return between(1, 2 * top, random);
    case Temper::kNegative:
      return random.below(2) == 0 ? -between(1, top, random) : top;
    case Temper::kHuge:
      return magnitude(20, 60, random);
    default:
      return one_of(kSpecialMaxima, random);
  }
}

}  // namespace

Correction Correction::of_kind(std::uint32_t kind) {
  Correction made;
  made.object_ = rubbish(kind);
  return made;
}

Correction Correction::fixed_matrix(std::uint32_t kind, const Coefficients& coefficients) {
  Correction made = of_kind(kind);
  set(made.object_, 4, coefficients);
  return made;
}

Correction Correction::floats(std::uint32_t kind, const Matrix& matrix, float gamma, float max_value) {
  Correction made = of_kind(kind);
  if (kind != 4) set(made.object_, 8, matrix);
  if (kind != 1) set(made.object_, 44, gamma);
  if (kind != 1) set(made.object_, 48, max_value);
  return made;
}

Correction Correction::table(std::uint32_t kind, const void* first, const void* last) {
  Correction made = of_kind(kind);
  set(made.object_, 8 + kPointer, first);
  set(made.object_, 8 + 2 * kPointer, last);
  return made;
}

Correction Correction::bytes(std::uint32_t kind, const std::vector<std::uint8_t>& storage,
                             std::size_t bytes) {
  std::vector<std::uint8_t> copy = storage;
  Correction made = table(kind, copy.data(), copy.data() + bytes);
  made.storage_ = std::move(copy);  // keeps its place
  return made;
}

Correction Correction::words(const std::vector<std::uint16_t>& storage, std::size_t entries) {
  std::vector<std::uint8_t> copy(2 * storage.size());
  std::memcpy(copy.data(), storage.data(), copy.size());
  return bytes(9, copy, 2 * entries);
}

std::size_t object_bytes(std::uint32_t kind) {
  switch (kind) {
    case 1:
      return 44;
    case 2:
    case 3:
      return 40;
    case 4:
    case 5:
      return 52;
    case 8:
    case 9:
      return 8 + 3 * kPointer;
    default:
      return 4;
  }
}

const char* name_of(Temper temper) {
  constexpr const char* kNames[] = {"gentle", "wild", "negative", "huge", "special"};
  return kNames[static_cast<int>(temper)];
}

Correction random_correction(std::uint32_t kind, Temper temper, unsigned sample_bits, bool word_table,
                             Random& random) {
  switch (kind) {
    case 2:
    case 3:
      return Correction::fixed_matrix(kind, random_coefficients(temper, random));
    case 1:
    case 4:
    case 5: {
      // A gamma that lets something through, before a matrix of any temper.
      const Temper tone = kind == 5 && random.below(2) == 0 ? Temper::kGentle : temper;
      const float gamma = random_exponent(tone, random);
      return Correction::floats(kind, random_matrix(temper, random), gamma,
                                random_max_value(tone, sample_bits, random));
    }
    default: {
      // Words that were corrected already are looked up again, and may be anything.
      std::vector<std::uint8_t> storage(word_table ? std::size_t{2} << 16 : std::size_t{1} << 8);
      random.fill(storage.data(), storage.size());
      return Correction::bytes(kind, storage, storage.size());
    }
  }
}

}  // namespace support
