// The corrected demosaics of 16-bit mosaics. A line goes in pairs of pixels that share a sample, a blue one
// in the even column phase and a red one in the odd phase. Strips are taken apart into the pairs' first and
// second pixels, so that a rule works on whole rows of either.
#include "correction/corrected_2x2.h"
#include "deep/raw16.h"
#include "deep/raw16_reading.h"
#include "pixel/put16.h"

namespace qvn {

namespace {

using WordPlanes = Planes<uint16_t>;
using WordChannel = Channel<uint16_t>;
using End = TwoCopiesOfPixelBefore;

constexpr uint32_t kAllWords = 65536;  // results of a rule go through it again, whatever the shift

constexpr WordChannel shared_channel(const CellLine& line) {
  return line.column_phase == 0 ? &WordPlanes::b : &WordPlanes::r;
}

// The first and the second pixels of a strip's pairs.
struct Pairs {
  WordPlanes first, second;
};

void split(Pairs& pairs, const WordPlanes& planes, size_t count) {
  for (const WordChannel channel : kChannels<uint16_t>) {
    for (size_t i = 0; i < count; ++i) {
      (pairs.first.*channel)[i] = (planes.*channel)[2 * i];
      (pairs.second.*channel)[i] = (planes.*channel)[2 * i + 1];
    }
  }
}

void join(WordPlanes& planes, const Pairs& pairs, size_t count) {
  for (const WordChannel channel : kChannels<uint16_t>) {
    for (size_t i = 0; i < count; ++i) {
      (planes.*channel)[2 * i] = (pairs.first.*channel)[i];
      (planes.*channel)[2 * i + 1] = (pairs.second.*channel)[i];
    }
  }
}

// Shifted windows, as planes.
template <class Shift>
struct ShiftedPlanes : PlaneOutput<uint16_t> {
  Shift shift;
  void pixel(size_t x, Rgb<uint32_t> p) const { PlaneOutput::pixel(x, shift(p)); }
  void pixels(size_t x, const Form& p) const { PlaneOutput::pixels(x, shift(p)); }
};

void shifted_windows(WordPlanes& planes, const CellLine& line, size_t x, size_t n, uint32_t shift) {
  with_raw16_reading(shift, [&]<class Fetch, class Shift>(Fetch, Shift channel_shift) {
    row_2x2<Fetch>(ShiftedPlanes<Shift>{{planes}, channel_shift}, line_from<Fetch>(line, x), n);
  });
}

// The second pixel is corrected from the first one's result in the shared channel, which so goes through the
// rule twice. Callers depend on it.
struct SharedTwice {
  template <class CorrectionRule>
  static void correct(CorrectionRule& rule, Pairs& pairs, WordChannel shared, size_t from, size_t to) {
    rule.row(pairs.first, from, to);
    const auto& results = pairs.first.*shared;
    std::copy(results.data() + from, results.data() + to, (pairs.second.*shared).data() + from);
    rule.row(pairs.second, from, to);
  }
};

// The second pixel is not corrected but for the shared channel, and that one beside the first pixel's
// results. Callers depend on it.
struct SharedAlone {
  template <class CorrectionRule>
  static void correct(CorrectionRule& rule, Pairs& pairs, WordChannel shared, size_t from, size_t to) {
    rule.row(pairs.first, from, to);
    rule.shared_row(pairs.first, shared, pairs.second.*shared, from, to);
  }
};

template <class Pairing, class CorrectionRule>
void correct_pairs(CorrectionRule& rule, Pairs& pairs, WordChannel shared, size_t count) {
  if constexpr (CorrectionRule::kInOrder) {
    for (size_t i = 0; i < count; ++i) Pairing::correct(rule, pairs, shared, i, i + 1);
  } else {
    Pairing::correct(rule, pairs, shared, 0, count);
  }
}

struct Frame {
  uint8_t* dst;
  const uint8_t* src;
  uint32_t width, height, pattern, shift;

  uint64_t samples() const { return samples_of(width, height); }
  size_t line_pixels() const { return qvn::line_pixels(ColumnStep::kTwo, width); }
};

// Runs row(line, out, windows) over the lines of a frame but for the last, with their ends. Returns the place
// of the last one.
template <class Put, class Row>
uint8_t* correct_lines(const Frame& frame, const Row& row) {
  const size_t pixels = frame.line_pixels(), windows = pixels - End::kPixels;
  return walk_2x2(frame.dst, pixels * Put::kPixelBytes, frame.src, FetchWholeRaw16::line_bytes(frame.width),
                  frame.height, frame.pattern, [&](const CellLine& line, uint8_t* out) {
                    row(line, out, windows);
                    End::finish<FetchWholeRaw16>(PackedPixels<Put>{out}, line, windows);
                  });
}

template <class Put, class Pairing, class CorrectionRule>
uint8_t* correct_in_pairs(CorrectionRule& rule, const Frame& frame) {
  WordPlanes planes{};
  Pairs pairs{};
  return correct_lines<Put>(frame, [&](const CellLine& line, uint8_t* out, size_t windows) {
    for (size_t x = 0; x < windows; x += kStripPixels) {
      const size_t pixels = std::min(windows - x, kStripPixels);
      shifted_windows(planes, line, x, pixels, frame.shift);
      split(pairs, planes, pixels / 2);
      correct_pairs<Pairing>(rule, pairs, shared_channel(line), pixels / 2);
      join(planes, pairs, pixels / 2);
      put_planes<Put>(out + x * Put::kPixelBytes, planes, pixels);
    }
  });
}

struct ToBgr16 {
  using Put = PutBgr16;
  static constexpr Family kFamily = Family::kRaw16ToBgr16;
  template <class CorrectionRule>
  static uint8_t* lines(CorrectionRule& rule, const Frame& frame) {
    return correct_in_pairs<Put, SharedTwice>(rule, frame);
  }
};

struct ToY16 {
  using Put = PutY16;
  static constexpr Family kFamily = Family::kRaw16ToY16;
  template <class CorrectionRule>
  static uint8_t* lines(CorrectionRule& rule, const Frame& frame) {
    // An exact 0 alone makes all pixels alike; 32 reads the same samples.
    if (frame.shift != 0) return correct_in_pairs<Put, SharedAlone>(rule, frame);
    WordPlanes planes{};
    return correct_lines<Put>(frame, [&](const CellLine& line, uint8_t* out, size_t windows) {
      corrected_row<FetchWholeRaw16, Put>(rule, planes, line, out, windows);
    });
  }
};

// Gamma has more different samples here than a small stack has room for. The last lines of the destination
// have, until they are written: they hold the curve for the lines above them. Returns how many lines are done
// that way.
template <class Conversion>
uint32_t lines_with_lent_curve(const Frame& frame, const ColorCorrection* object) {
  constexpr uint32_t kFewValues = 4096;  // the curve without memory has a place for each
  const Rule rule = rule_of(Conversion::kFamily, object);
  const uint32_t values = kAllWords >> (frame.shift & 31);
  if ((rule != Rule::kGamma && rule != Rule::kGammaMatrix) || !reads_whole_samples(frame.shift) ||
      values <= kFewValues || frame.width % 2 != 0) {
    return 0;
  }
  const uint64_t line_bytes = frame.line_pixels() * Conversion::Put::kPixelBytes;
  const uint64_t frame_bytes = line_bytes * frame.height, curve_bytes = sizeof(uint16_t) * values;
  if (frame_bytes < curve_bytes) return 0;
  // An even number, for the same row phase below.
  const auto lines = static_cast<uint32_t>((frame_bytes - curve_bytes) / line_bytes) & ~1U;
  if (samples_of(frame.width, lines) < uint64_t{2} * values) return 0;

  Frame upper = frame;
  upper.height = lines + 1;
  const auto convert = [&](auto& gamma) { Conversion::lines(gamma, upper); };
  uint8_t* memory = frame.dst + (frame_bytes - curve_bytes);
  if (rule == Rule::kGamma) {
    run_rule<Gamma<uint16_t, LentCurve>>(convert, object, memory, values);
  } else {
    run_rule<GammaMatrix<uint16_t, LentCurve>>(convert, object, memory, values);
  }
  return lines;
}

template <class Conversion>
int32_t corrected(Frame frame, const ColorCorrection* object) {
  constexpr size_t kPixelBytes = Conversion::Put::kPixelBytes;
  const uint32_t done = lines_with_lent_curve<Conversion>(frame, object);
  frame.dst += done * frame.line_pixels() * kPixelBytes;
  frame.src += done * FetchWholeRaw16::line_bytes(frame.width);
  frame.height -= done;
  return dispatch<uint16_t>(Conversion::kFamily, object, {kAllWords, frame.samples()}, [&](auto& rule) {
    uint8_t* last = Conversion::lines(rule, frame);
    copy_last_line(last, kPixelBytes * frame.width);
  });
}

}  // namespace

int32_t raw16_to_bgr16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 uint32_t pattern, uint32_t shift, const ColorCorrection* object) {
  if (object != nullptr) return corrected<ToBgr16>({dst, src, width, height, pattern, shift}, object);
  raw16_to_bgr16(dst, src, width, height, pattern, shift);
  return 0;
}

int32_t raw16_to_y16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                               uint32_t pattern, uint32_t shift, const ColorCorrection* object) {
  if (object != nullptr) return corrected<ToY16>({dst, src, width, height, pattern, shift}, object);
  raw16_to_y16(dst, src, width, height, pattern, shift);
  return 0;
}

}  // namespace qvn
