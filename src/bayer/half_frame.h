// A half frame whose interpolation runs row by row: where its rows belong, and how a strip of chroma and luma
// gets there. Included by the filters alone.
//
// Rows wait for their neighbours in a working frame: `dst` itself, where every row waits in its own place, or
// a scratch frame, of which one row serves all of them.
//
// Why the caller's two buffers suffice. Row k of the second half, frame row L + k of 2 * L, leaves its 4:2:2
// form in bytes 2kw to 2(k+1)w of `src`, w being the width. What is still to be read starts at the row at
// hand, byte (L+k)w, or for the block filter, which is one row ahead, at the row behind it. The writing stays
// before that in every row but the last, which is parked in its row of the working frame until it has been
// read. The first half writes nothing to `src`: the second half writes the same bytes.
#pragma once

#include <cstring>

#include "bayer/chroma_strip.h"
#include "bayer/interpolation_rows.h"
#include "convert/yuv_rows.h"
#include "pixel/clamped_pairs.h"

namespace qvn {

// What is made at once: a vector of pixels. The last block of a line may have fewer, always an even number.
inline constexpr size_t kBlock = kLaneBytes;

// Chroma of the pairs of a block, around 0.
struct UV {
  SignedWords u, v;
};

inline SignedWords load_words(const int16_t* from) {
  SignedWords words;
  std::memcpy(&words, from, sizeof words);
  return words;
}

// A pair as U Y0 V Y1.
using Group = std::array<uint8_t, 4>;

// One half frame at hand, with everything that its rows share. Its pixels are written by a put.
template <class Put>
struct Half {
  Mosaic mosaic;
  uint8_t* dst;  // the whole frame's
  WorkingRows working;
  uint8_t* packed;      // where the 4:2:2 form goes, null in the first half
  uint32_t first, end;  // rows of the frame

  uint32_t width() const { return mosaic.width; }
  uint8_t* dst_at(uint32_t row, size_t x) const {
    return dst + Put::kPixelBytes * (size_t{row} * width() + x);
  }
  uint8_t* packed_at(uint32_t row, size_t x) const {
    return packed + 2 * (size_t{row - first} * width() + x);
  }
  // Of a row that waits, three bytes a pixel.
  uint8_t* waiting_at(uint32_t row, size_t x) const { return working.row(row) + 3 * x; }
  // Of the parked row, two bytes a pixel.
  uint8_t* parked_at(size_t x) const { return working.row(end - 1) + 2 * x; }
  bool is_parked(uint32_t row) const { return packed != nullptr && row + 1 == end; }
};

// U Y0 V Y1 of a block.
[[gnu::always_inline]] inline void put_groups(uint8_t* out, Bytes y, UV chroma) {
  const Words u = as<Words>(chroma.u + kChromaCentre), v = as<Words>(chroma.v + kChromaCentre);
  const Words first = u | as<Words>(y) << 8, second = v | (as<Words>(y) & 0xFF00);
  store(out, zip_low(first, second));
  store(out + kBlock, zip_high(first, second));
}

// A put of a block. The chroma words serve the even and the odd pixels of the pairs alike.
template <class Put>
[[gnu::always_inline]] inline void put_colours(uint8_t* out, Bytes y, UV chroma) {
  const SignedWords u = chroma.u << 2, v = chroma.v << 2;
  const Rgb<SignedWords> even = PackedChroma::colours(as<SignedWords>(even_bytes(y)), u, v);
  const Rgb<SignedWords> odd = PackedChroma::colours(as<SignedWords>(odd_bytes(y)), u, v);
  put_clamped<Put>(out, {even, odd});
}

// A block and its chroma.
struct StripBlock {
  Bytes y;
  UV chroma;
};

template <class Put, bool kPut, bool kPacked>
[[gnu::always_inline]] inline void put_block(uint8_t* out, uint8_t* packed, const StripBlock& block) {
  if constexpr (kPacked) put_groups(packed, block.y, block.chroma);
  if constexpr (kPut) put_colours<Put>(out, block.y, block.chroma);
}

// n pixels, block by block: source(i, count) makes the one at pixel i, of `count` pixels.
template <class Put, bool kPut, bool kPacked, class Source>
[[gnu::always_inline]] inline void put_blocks(uint8_t* out, uint8_t* packed, size_t n, const Source& source) {
  constexpr size_t kPixel = Put::kPixelBytes;
  size_t i = 0;
  for (; i + kBlock <= n; i += kBlock)
    put_block<Put, kPut, kPacked>(out + kPixel * i, packed + 2 * i, source(i, kBlock));
  if (i == n) return;
  std::array<uint8_t, kPixel * kBlock> part;
  std::array<uint8_t, 2 * kBlock> packed_part;
  // What a put steps over goes there and back.
  if constexpr (kPut && Put::kWrittenBytes < kPixel)
    std::memcpy(part.data(), out + kPixel * i, kPixel * (n - i));
  put_block<Put, kPut, kPacked>(part.data(), packed_part.data(), source(i, n - i));
  if constexpr (kPacked) std::memcpy(packed + 2 * i, packed_part.data(), 2 * (n - i));
  if constexpr (kPut) std::memcpy(out + kPixel * i, part.data(), kPixel * (n - i));
}

// A strip of a row to where it belongs: pixels, with their 4:2:2 form in the second half, of which the last
// row is parked.
template <class Put, class Source>
void put_strip(const Half<Put>& half, uint32_t row, size_t x, size_t n, const Source& source) {
  uint8_t* out = half.dst_at(row, x);
  if (half.packed == nullptr) {
    put_blocks<Put, true, false>(out, out, n, source);
  } else if (!half.is_parked(row)) {
    put_blocks<Put, true, true>(out, half.packed_at(row, x), n, source);
  } else {
    put_blocks<Put, false, true>(out, half.parked_at(x), n, source);
  }
}

// Pairs of a row by themselves, over what the filter made of them.
template <class Put>
void emit_groups(const Half<Put>& half, uint32_t row, size_t x, const Group* groups, size_t count) {
  for (size_t i = 0; i < count; ++i, x += 2) {
    if (half.is_parked(row)) {
      std::memcpy(half.parked_at(x), groups[i].data(), sizeof(Group));
    } else {
      if (half.packed != nullptr) std::memcpy(half.packed_at(row, x), groups[i].data(), sizeof(Group));
      yuv_to_packed<Yuv422, Put>(half.dst_at(row, x), groups[i].data(), 2);
    }
  }
}

// Behind the last row: its parked strips, from the end on, since BGR takes more room than what it is made
// from.
template <class Put>
void emit_parked_row(const Half<Put>& half) {
  const uint32_t row = half.end - 1;
  for (auto end = half.width(); end > 0;) {
    const auto x = static_cast<uint32_t>((end - 1) / kStripStep * kStripStep);
    const size_t n = end - x;
    std::array<uint8_t, 2 * kStripStep> packed;
    std::memcpy(packed.data(), half.parked_at(x), 2 * n);
    std::memcpy(half.packed_at(row, x), packed.data(), 2 * n);
    yuv_to_packed<Yuv422, Put>(half.dst_at(row, x), packed.data(), n);
    end = x;
  }
}

}  // namespace qvn
