/// Slow reference of the transforms of runs: RGB, YUV and mono sources, with a selector of the output.
///
/// `count` is a number of pixels; pixels beyond the last whole YUV group are neither read nor written. Each
/// function is false, and has written nothing, where its entry refuses the selector or the sample format.
#pragma once

#include <cstdint>

namespace reference {

/// How a 16-bit sample lies in its word. `alignment` 0: from the top bit, `bitsPerSample` is not read; 1: in
/// the low `bitsPerSample` bits. `byteOrder` 0: host order; 1: big-endian.
struct SampleFormat {
  std::uint32_t alignment;
  std::uint32_t bitsPerSample;
  std::uint32_t byteOrder;
};

/// The left shift that brings a sample to the top of its word; false if no kernel serves the format.
bool shift_of(const SampleFormat& format, std::uint32_t& shift);

/// The word at `src` in the order of the format, 0 or 1.
std::uint32_t word_at(const std::uint8_t* src, std::uint32_t byteOrder);

bool RGB8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                        std::uint32_t target);

/// Target 2 writes the fourth byte, the source's alpha.
bool RGBA8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                         std::uint32_t target);

bool YUV444ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target);
bool YUV422ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target);
bool YUV411ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target);

/// Target 4 has chroma bytes of 0; an odd count leaves byte 3 of the last group alone.
bool Y8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t target);

/// Big-endian; bits 7 and 6 of the low byte push red and blue, before the target's formula.
bool Y16ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t target);

/// A null `format` is alignment 0 and big-endian. Samples are shifted to the top, without a push. 16-bit
/// words go out in host order.
bool Y16ImageTransformEx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                         std::uint32_t target, const SampleFormat* format);

/// An odd count never ends.
bool Y12ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t target);

}  // namespace reference
