// The demosaics by way of YUV: 2x2 windows to Y, U, V, chroma averaged to 4:2:2, and that to BGR.
//
// Defined as three passes over the caller's two buffers: BayerToYUV444 fills `dst` with the working frame,
// then each half of it in turn is packed to 4:2:2 into `src` and converted back into its place in `dst`.
// Frames of even width and height run row by row instead (interpolation_rows.h), which leaves the same bytes.
#pragma once

#include <cstdint>

namespace qvn {

enum class ChromaFilter {
  kPair,   // IntYUV422: mean of the pair
  kBox4,   // IntLCAA: mean of four pixels from the pair's first on
  kBlock8  // IntLCAAV: mean of a block four wide and two high, rounded to nearest
};

// Raw8 Bayer frame to packed Y, U, V, three bytes a pixel. Last column and last line as in QVN_Raw8ToY8.
void BayerToYUV444(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern);

// A half frame of `lines` lines of Y, U, V to 4:2:2 with the block filter. Pixels are a flat run: taps wrap
// at line ends. Of two lines, the second reads the three pixels before `frame`.
void PackLCAAV(uint8_t* out, const uint8_t* frame, uint32_t width, uint32_t lines);

// Packs half a frame of width * height pixels, (height >> 1) lines, to 4:2:2.
void pack_half_frame(ChromaFilter filter, uint8_t* out, const uint8_t* frame, uint32_t width,
                     uint32_t height);

// The whole demosaic, within dst and src. `src` ends as the 4:2:2 form of the second half frame.
void interpolate(ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                 uint32_t pattern);

}  // namespace qvn
