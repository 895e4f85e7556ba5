/// Slow reference of the plain conversions of complementary mosaics and binned frames.
///
/// Rows are made one after the other, two columns a pass, and nothing is checked: a 2x2 frame of fewer than
/// 6 lines copies rows from before `dst`, one of 4m + 2 lines writes a row behind it, and so on; the caller
/// provides memory there.
#pragma once

#include <cstdint>

namespace reference {

/// One factor a colour; without `useGains` the four samples of a cell are averaged.
struct CygmMonoGains {
  float c = 0;
  float m = 0;
  float y = 0;
  float g = 0;
  bool useGains = false;
};

void IRaw8CYGMToBGR_Bin(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                        std::uint32_t height);
void IRaw8CYGMToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                    std::uint32_t phase);
void IRaw8CYGMToBGR_3x3(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t phase);
void IRaw8CYGMToMono(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                     std::uint32_t phase);

/// The same with gains, whose weighted sums must be numbers that a 32-bit integer holds.
void IRaw8CYGMToMono_gains(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t phase, const CygmMonoGains& gains);

}  // namespace reference
