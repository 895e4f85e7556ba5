// The demosaics by way of YUV: 2x2 windows to Y, U, V, chroma averaged to 4:2:2, and that to BGR.
//
// Defined as passes: BayerToYUV444 fills a working frame, which may be `dst` itself, then each half of it in
// turn is packed to 4:2:2 into `src` and converted into its place in `dst`. Frames of even width and height
// run row by row instead (interpolation_rows.h), which leaves the same bytes in `dst` and `src`.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

enum class ChromaFilter {
  kPair,   // IntYUV422: mean of the pair
  kBox4,   // IntLCAA: mean of four pixels from the pair's first on
  kBlock8  // IntLCAAV: mean of a block four wide and two high, rounded to nearest
};

// Where rows wait for their neighbours, three bytes a pixel.
struct WorkingRows {
  uint8_t* first;
  size_t step;  // from a row to the next one; 0 where they have one place in turn

  uint8_t* row(uint32_t row) const { return first + row * step; }
};

// Raw8 Bayer frame to packed Y, U, V, three bytes a pixel. Last column and last line as in QVN_Raw8ToY8.
void BayerToYUV444(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern);

// The pixels that the block filter looks back at before a half frame of two lines: as they are in memory, or
// as zeros, where there is no memory.
enum class LookBack { kRead, kZeros };

// A half frame of `lines` lines of Y, U, V to 4:2:2 with the block filter. Pixels are a flat run: taps wrap
// at line ends. Of two lines, the second looks back at the three pixels before `frame`.
void PackLCAAV(uint8_t* out, const uint8_t* frame, uint32_t width, uint32_t lines,
               LookBack look_back = LookBack::kRead);

// Packs half a frame of width * height pixels, (height >> 1) lines, to 4:2:2.
void pack_half_frame(ChromaFilter filter, uint8_t* out, const uint8_t* frame, uint32_t width, uint32_t height,
                     LookBack look_back = LookBack::kRead);

// What the 4:2:2 stream is turned into, by put.
struct InterpolationTarget {
  uint32_t pixel_bytes;
  bool (*convert)(uint8_t* dst, const uint8_t* src, uint32_t count, float hue, float saturation);
  void (*rows)(ChromaFilter filter, uint8_t* dst, WorkingRows working, uint8_t* src, uint32_t width,
               uint32_t height, uint32_t pattern);
};

extern const InterpolationTarget kInterpolationToBgr, kInterpolationToBgra, kInterpolationToY8,
    kInterpolationToY8Rounded;

// The whole demosaic to BGR, within dst and src. `src` ends as the 4:2:2 form of the second half frame.
void interpolate(ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                 uint32_t pattern);

// The same to any target, with a working frame of three bytes a pixel beside dst.
void interpolate(ChromaFilter filter, const InterpolationTarget& target, uint8_t* dst, uint8_t* scratch,
                 uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern);

}  // namespace qvn
