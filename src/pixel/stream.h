// Results that are too large for the caches, written past them: an ordinary store reads the line of memory
// that it goes to, a streamed one does not, which is a third of the traffic of a demosaic to BGR.
//
// Rows write ordinary bytes into a strip on the stack, and whole lines of memory go out from there. At 4096 x
// 3072 it takes a tenth to a third less time than ordinary stores, and as much where the arithmetic takes
// longer than the memory. In a cache it takes two to four times theirs, and a caller's next step finds
// nothing there: therefore large results only.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "pixel/aligned_run.h"
#include "pixel/cache_lines.h"
#include "pixel/overlap.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qvn {

#if defined(__SSE2__)
inline constexpr bool kStreams = true;
#else
inline constexpr bool kStreams = false;
#endif

// From how many bytes on, read and written together: what a usual machine's last-level cache holds, 8 to 32
// MiB, does not hold both. A constant, since the library asks for no processor features.
inline constexpr size_t kStreamedBytes = size_t{32} << 20;

// From how many bytes a pixel on: of two or one, too little is saved for what the strip costs.
inline constexpr size_t kStreamedPixelBytes = 3;

// Whether a put's pixels may go past the caches: all of their bytes are written, none is stepped over.
template <class Put>
inline constexpr bool kStreamed =
    kStreams&& Put::kWrittenBytes == Put::kPixelBytes&& Put::kPixelBytes >= kStreamedPixelBytes;

// Pixels that go through a strip at a time: whole groups of all formats. With a strip of 3 KB, the samples
// fit the first-level cache beside it.
inline constexpr size_t kStreamedPixels = 512;

// Whether a conversion goes past the caches. Where source and destination share a byte, what is read depends
// on the order of the stores, which stays as it is.
inline bool streams(Block to, Block from) {
  return kStreams && to.bytes + from.bytes >= kStreamedBytes && disjoint(to, from);
}

// Bytes that follow one another, to memory without a gap. They are complete after finish().
class Stream {
 public:
  explicit Stream(uint8_t* to) : to_(to) {}

  // Where the next bytes are to be written: room for kStreamedPixels and a line end.
  uint8_t* place() { return strip_.data() + held_; }

  // The n bytes at place() are the next ones. Less than two lines of memory are held back.
  void push(size_t n) {
    held_ += n;
    size_t done = bytes_to_line(to_);
    if (held_ < done + kLineBytes) return;
    std::memcpy(to_, strip_.data(), done);
    for (; done + kLineBytes <= held_; done += kLineBytes) stream_line(to_ + done, strip_.data() + done);
    std::memcpy(strip_.data(), strip_.data() + done, kLineBytes);
    to_ += done;
    held_ -= done;
  }

  // Streamed stores are ordered among other threads' loads from here on.
  void finish() {
    std::memcpy(to_, strip_.data(), held_);
#if defined(__SSE2__)
    _mm_sfence();
#endif
  }

 private:
  static constexpr size_t kPixelBytes = 6, kEndPixels = 2;  // the most

  static void stream_line(uint8_t* to, const uint8_t* from) {
#if defined(__SSE2__)
    for (size_t i = 0; i < kLineBytes; i += sizeof(__m128i)) {
      __m128i block;
      std::memcpy(&block, from + i, sizeof block);
      _mm_stream_si128(reinterpret_cast<__m128i*>(to + i), block);
    }
#else
    std::memcpy(to, from, kLineBytes);
#endif
  }

  alignas(kLineBytes)
      std::array<uint8_t, 2 * kLineBytes + (kStreamedPixels + kEndPixels) * kPixelBytes + kLineBytes> strip_;
  uint8_t* to_;
  size_t held_ = 0;
};

// row(to, from, pixels) over n pixels of kPixelBytes, all of which it writes. Two pixels of the source are
// `source_pair_bytes`. A large run goes past the caches, but for its end.
template <size_t kPixelBytes, class Row>
auto stream_run(uint8_t* dst, const uint8_t* src, size_t source_pair_bytes, size_t n, const Row& row) {
  static_assert(kPixelBytes >= kStreamedPixelBytes);
  if (streams({dst, n * kPixelBytes}, {src, (n / 2 + 1) * source_pair_bytes})) {
    Stream stream(dst);
    for (; n >= kStreamedPixels; n -= kStreamedPixels) {
      row(stream.place(), src, kStreamedPixels);
      stream.push(kStreamedPixels * kPixelBytes);
      src += kStreamedPixels / 2 * source_pair_bytes;
      dst += kStreamedPixels * kPixelBytes;
    }
    stream.finish();
  }
  return aligned_run<kPixelBytes>(dst, src, source_pair_bytes, n, row);
}

}  // namespace qvn
