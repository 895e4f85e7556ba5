/// Slow reference of the demosaics by way of YUV, which work inside the caller's two buffers.
///
/// Each stage runs over a whole frame or half frame before the next begins. `dst` first holds a working frame
/// of Y, U, V; `src` is overwritten with a 4:2:2 stream, half a frame at a time. Patterns are internal codes.
#pragma once

#include <cstdint>

namespace reference {

/// The 2x2 demosaic into Y, U, V, three bytes a pixel.
void BayerToYUV444(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                   std::uint32_t pattern);

/// Packs pairs of a working frame to U, Y0, V, Y1 with the mean of the two chromas.
void pack_yuv422(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t pairs);

/// The same with a forward box of four chromas. The last two pairs are copies of the one before them; with
/// exactly two pairs that one is four bytes before `out`.
void pack_lcaa(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t pairs);

/// The same with a rounded box of four columns and two lines. With two lines, the second looks up to the
/// three pixels before `frame` too; with one line, the line before `frame` is read, and one pair more than
/// there is is read and written.
void PackLCAAV(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t width, std::uint32_t lines);

void Raw8ToBGR_IntYUV422(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                         std::uint32_t pattern);
void Raw8ToBGR_IntLCAA(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                       std::uint32_t pattern);
void Raw8ToBGR_IntLCAAV(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t pattern);

}  // namespace reference
