/// The bytes of one pixel for the four outputs that all transforms of 8 bits share.
///
///     target  bytes
///     0       luma, (R * 77 + G * 150 + B * 29) >> 8
///     1       B, G, R
///     2       B, G, R and a fourth byte that is stepped over
///     3       luma, (G * 184 + (R * 3 + B) * 18 + 128) >> 8
#pragma once

#include <cstddef>
#include <cstdint>

namespace reference {

/// Bytes from a pixel of a target, 0 to 3, to the next one.
std::size_t target_bytes(std::uint32_t target);

/// Writes a pixel and returns the place of the next one.
std::uint8_t* put_target(std::uint8_t* out, std::uint32_t target, std::uint8_t red, std::uint8_t green,
                         std::uint8_t blue);

/// Writes the low 16 bits in host order and returns the place behind them.
std::uint8_t* put_word(std::uint8_t* out, std::uint32_t value);

}  // namespace reference
