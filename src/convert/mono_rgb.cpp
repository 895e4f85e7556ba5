// The mono and RGB rows. A vector row leaves its tail to the plain one, so that it works in place.
#include "convert/mono_rgb.h"

#include "convert/luma_float.h"
#include "pixel/merge3.h"
#include "pixel/products.h"
#include "pixel/split3.h"

namespace qvn {

namespace {

// Runs `vector` at x = 0, kStep, ... as far as whole vectors go; returns where they end.
template <size_t kStep, class Vector>
size_t run_vectors(size_t n, Vector&& vector) {
  size_t x = 0;
  if constexpr (kVectorRows) {
    for (; x + kStep <= n; x += kStep) vector(x);
  }
  return x;
}

uint32_t load_sample(const uint8_t* from, SampleOrder order) {
  const bool big = order == SampleOrder::kBigEndian;
  return uint32_t{from[big ? 0 : 1]} << 8 | from[big ? 1 : 0];
}

uint8_t cut_byte(uint32_t sample, SampleCut cut) {
  return static_cast<uint8_t>((sample >> cut.shift) & cut.byte_mask);
}

uint8_t pushed(uint8_t byte, bool push) { return static_cast<uint8_t>(byte + (push && byte != 255 ? 1 : 0)); }

// The samples of a vector of pixels in two vectors of words, in the order that narrow_to_bytes undoes.
struct SamplePair {
  Words first, second;
};

template <SampleOrder order>
SamplePair load_samples(const uint8_t* from) {
  const auto in_host_order = [](Bytes bytes) {
    const auto words = as<Words>(bytes);
    return order == SampleOrder::kLittleEndian ? words : (words << 8) | (words >> 8);
  };
  const Bytes lower = load<Bytes>(from), upper = load<Bytes>(from + kLaneBytes);
  return {in_host_order(shuffle<qvn::places::every_other_block<0>>(lower, upper)),
          in_host_order(shuffle<qvn::places::every_other_block<1>>(lower, upper))};
}

struct CutLanes {
  uint32_t shift;
  Words byte_mask, roundBit, dropBit;

  explicit CutLanes(SampleCut cut)
      : shift(cut.shift),
        byte_mask(Words{} + cut.byte_mask),
        roundBit(Words{} + cut.roundBit),
        dropBit(Words{} + cut.dropBit) {}

  Words bytes(Words samples) const { return (samples >> shift) & byte_mask; }
};

// One more where a sample has the bit; the narrowing stops 256 at 255.
SignedWords pushed(Words byte, Words samples, Words bit) {
  return as<SignedWords>(byte) + 1 + ((samples & bit) == 0);
}

template <SampleOrder order>
void y16_to_bgr_vector(uint8_t* dst, const uint8_t* src, const CutLanes& cut) {
  const auto [first, second] = load_samples<order>(src);
  const Words byte0 = cut.bytes(first), byte1 = cut.bytes(second);
  const Bytes blue = narrow_to_bytes(pushed(byte0, first, cut.dropBit), pushed(byte1, second, cut.dropBit));
  const Bytes red = narrow_to_bytes(pushed(byte0, first, cut.roundBit), pushed(byte1, second, cut.roundBit));
  store_merge3(dst, blue, narrow_to_bytes(as<SignedWords>(byte0), as<SignedWords>(byte1)), red);
}

template <SampleOrder order>
void y16_to_y8_vector(uint8_t* dst, const uint8_t* src, const CutLanes& cut) {
  const auto [first, second] = load_samples<order>(src);
  store(dst, narrow_to_bytes(pushed(cut.bytes(first), first, cut.roundBit),
                             pushed(cut.bytes(second), second, cut.roundBit)));
}

namespace places {
// Which channel the byte at `i` of vector `Vector` of three belongs to.
template <int Vector, int Channel>
constexpr int is_packed_channel(int i) {
  return (Vector * kLaneBytes + i) % 3 == Channel ? 1 : 0;
}
}  // namespace places

// Every byte is the one two behind, its own, or the one two before:
//
//     src    R G B R G B ...
//     dst    B G R B G R ...
template <int Vector>
Bytes exchange_ends(const uint8_t* from) {
  const uint8_t* at = from + Vector * kLaneBytes;
  const Bytes behind = load<Bytes>(at + 2), own = load<Bytes>(at), before = load<Bytes>(at - 2);
  return blend<places::is_packed_channel<Vector, 0>>(
      behind, blend<places::is_packed_channel<Vector, 1>>(own, before));
}

}  // namespace

void rgb8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x, dst += 3, src += 3) {
    const uint8_t r = src[0], g = src[1], b = src[2];
    dst[0] = b;
    dst[1] = g;
    dst[2] = r;
  }
}

// The loads reach two bytes to either side, so the first and the last pixel are left to the plain row. In
// place the bytes before a vector are rewritten ones, but they are not the ones that are picked.
void rgb8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  if (n < 3) return rgb8_to_bgr_plain(dst, src, n);
  rgb8_to_bgr_plain(dst, src, 1);
  const size_t done = 1 + run_vectors<kLaneBytes>(n - 2, [=](size_t x) {
                        const uint8_t* from = src + 3 * (1 + x);
                        uint8_t* to = dst + 3 * (1 + x);
                        const Bytes first = exchange_ends<0>(from);
                        const Bytes second = exchange_ends<1>(from);
                        const Bytes third = exchange_ends<2>(from);
                        store(to, first);
                        store(to + kLaneBytes, second);
                        store(to + 2 * kLaneBytes, third);
                      });
  rgb8_to_bgr_plain(dst + 3 * done, src + 3 * done, n - done);
}

void rgb8_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x) dst[x] = luma_by_doubles(src[3 * x], src[3 * x + 1], src[3 * x + 2]);
}

void rgb8_to_y8(uint8_t* dst, const uint8_t* src, size_t n) {
  const size_t done = run_vectors<kLaneBytes>(n, [=](size_t x) {
    const auto [r, g, b] = load_split3(src + 3 * x);
    store(dst + x, luma_by_doubles(Rgb<Bytes>{r, g, b}));
  });
  rgb8_to_y8_plain(dst + done, src + 3 * done, n - done);
}

void y8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x) dst[3 * x] = dst[3 * x + 1] = dst[3 * x + 2] = src[x];
}

void y8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  const size_t done =
      run_vectors<kLaneBytes>(n, [=](size_t x) { store_triple(dst + 3 * x, load<Bytes>(src + x)); });
  y8_to_bgr_plain(dst + 3 * done, src + done, n - done);
}

void y16_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  for (size_t x = 0; x < n; ++x, dst += 3, src += 2) {
    const uint32_t sample = load_sample(src, order);
    const uint8_t byte = cut_byte(sample, cut);
    dst[0] = pushed(byte, (sample & cut.dropBit) != 0);
    dst[1] = byte;
    dst[2] = pushed(byte, (sample & cut.roundBit) != 0);
  }
}

void y16_to_bgr(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  const CutLanes lanes(cut);
  const auto run = [&]<SampleOrder kOrder>() {
    return run_vectors<kLaneBytes>(
        n, [&](size_t x) { y16_to_bgr_vector<kOrder>(dst + 3 * x, src + 2 * x, lanes); });
  };
  const size_t done = order == SampleOrder::kBigEndian
                          ? run.template operator()<SampleOrder::kBigEndian>()
                          : run.template operator()<SampleOrder::kLittleEndian>();
  y16_to_bgr_plain(dst + 3 * done, src + 2 * done, n - done, order, cut);
}

void y16_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  for (size_t x = 0; x < n; ++x) {
    const uint32_t sample = load_sample(src + 2 * x, order);
    dst[x] = pushed(cut_byte(sample, cut), (sample & cut.roundBit) != 0);
  }
}

void y16_to_y8(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  const CutLanes lanes(cut);
  const auto run = [&]<SampleOrder kOrder>() {
    return run_vectors<kLaneBytes>(n,
                                   [&](size_t x) { y16_to_y8_vector<kOrder>(dst + x, src + 2 * x, lanes); });
  };
  const size_t done = order == SampleOrder::kBigEndian
                          ? run.template operator()<SampleOrder::kBigEndian>()
                          : run.template operator()<SampleOrder::kLittleEndian>();
  y16_to_y8_plain(dst + done, src + 2 * done, n - done, order, cut);
}

}  // namespace qvn
