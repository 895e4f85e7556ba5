/// Slow reference of colour corrections: what the objects hold, which entry serves which kind, and what each
/// of the six rules does to the red, green and blue of one pixel.
///
/// Objects are read field by field from plain memory, at the offsets at which callers lay them down. `bits`
/// is the width of an output channel: 8 for BGR and Y8, 16 for BGR16 and Y16. Nothing is clamped unless a
/// rule says so.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace reference {

struct Colours {
  std::uint32_t red;
  std::uint32_t green;
  std::uint32_t blue;
};

/// The entries that take an object, as far as they differ in what they serve.
enum class Corrected { kRaw8, kRaw12ToBGR, kRaw12ToBGR16, kRaw16ToBGR16, kRaw16ToY16 };

/// Answers of the dispatcher.
inline constexpr int kServed = 0;
inline constexpr int kUnknownKind = -3;
inline constexpr int kOtherDepth = -4;

/// What an entry answers for an object that is not null.
int dispatch(Corrected entry, const void* correction);

std::uint32_t kind_of(const void* correction);

/// The words that a creator stores: the kind, and nine floats as fixed-point numbers with 10 fraction bits.
std::array<std::uint32_t, 10> created_words(std::uint32_t kind, const float* matrix);

/// Applies the rule of the object's kind. Table objects are read as bytes for 8-bit channels and as words for
/// 16-bit ones.
Colours correct(const void* correction, Colours in, unsigned bits);

/// The pieces of the rules. A row of a matrix is 0 for red, 1 for green, 2 for blue.
std::uint32_t float_row(const void* correction, unsigned row, Colours in, unsigned bits);
std::uint32_t fixed_row_16(const void* correction, unsigned row, Colours in);
std::uint32_t fixed_row_32(const void* correction, unsigned row, Colours in, unsigned bits);
std::uint32_t power(const void* correction, std::uint32_t sample, unsigned bits);
std::uint32_t look_up(const void* correction, std::uint32_t index, unsigned bits);

/// The bound test of a look-up alone.
void test_look_up(const void* correction, std::uint32_t index, unsigned bits);

/// Called for each look-up outside of its table, before the entry there is read all the same. A null `first`
/// must not be looked up.
extern std::function<void()> at_range_failure;

}  // namespace reference
