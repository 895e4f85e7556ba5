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

// A strip of windows: pixels `x` to `x` + n - 1 of a line.
struct Windows {
  const CellLine& line;
  size_t x, n;
  uint32_t shift;

  WordChannel shared() const { return shared_channel(line); }

  // Out of line: no rule changes it.
  [[gnu::noinline]] void read(WordPlanes& planes) const {
    with_raw16_reading(shift, [&]<class Fetch, class Shift>(Fetch, Shift channel_shift) {
      row_2x2<Fetch>(ShiftedPlanes<Shift>{{planes}, channel_shift}, line_from<Fetch>(line, x), n);
    });
  }
  void take_apart(RedBlueLine<uint16_t>& red_blue, Plane<uint16_t>& green) const {
    with_raw16_reading(shift, [&]<class Fetch, class Shift>(Fetch, Shift channel_shift) {
      qvn::take_apart<Fetch>(red_blue, green, line_from<Fetch>(line, x), n, channel_shift);
    });
  }
  template <class Curve>
  void read_by(Curve& curve, WordPlanes& planes) const {
    samples_by_curve(
        curve, planes, line.column_phase, n,
        [this](RedBlueLine<uint16_t>& red_blue, Plane<uint16_t>& green) { take_apart(red_blue, green); });
  }
};

struct Strip {
  WordPlanes planes{};
  Pairs pairs{};
};

// Runs correct(from, to) over pairs, one by one where a rule must see them so.
template <class CorrectionRule, class Correct>
void for_pairs(size_t count, const Correct& correct) {
  if constexpr (CorrectionRule::kInOrder) {
    for (size_t i = 0; i < count; ++i) correct(i, i + 1);
  } else {
    correct(size_t{0}, count);
  }
}

void share_result(Pairs& pairs, WordChannel shared, size_t from, size_t to) {
  const auto& results = pairs.first.*shared;
  std::copy(results.data() + from, results.data() + to, (pairs.second.*shared).data() + from);
}

// The second pixel is corrected from the first one's result in the shared channel, which so goes through the
// rule twice. Callers depend on it.
struct SharedTwice {
  template <class CorrectionRule>
  static void correct(CorrectionRule& rule, Strip& strip, const Windows& windows) {
    const WordChannel shared = windows.shared();
    const size_t count = windows.n / 2;
    Pairs& pairs = strip.pairs;
    if constexpr (kBeginsByCurve<CorrectionRule>) {
      windows.read_by(rule.curve(), strip.planes);
      if constexpr (kCurveAlone<CorrectionRule>) {
        auto& samples = strip.planes.*shared;
        for (size_t x = 1; x < windows.n; x += 2) samples[x] = rule.curve()(samples[x]);
        return;
      }
      split(pairs, strip.planes, count);
      rule.behind_curve(pairs.first, 0, count);
      share_result(pairs, shared, 0, count);
      rule.curve().row((pairs.second.*shared).data(), count);
      rule.behind_curve(pairs.second, 0, count);
    } else {
      windows.read(strip.planes);
      split(pairs, strip.planes, count);
      for_pairs<CorrectionRule>(count, [&](size_t from, size_t to) {
        rule.row(pairs.first, from, to);
        share_result(pairs, shared, from, to);
        rule.row(pairs.second, from, to);
      });
    }
    join(strip.planes, pairs, count);
  }
};

// The second pixel is not corrected but for the shared channel, and that one beside the first pixel's
// results. Callers depend on it.
struct SharedAlone {
  template <class CorrectionRule>
  static void correct(CorrectionRule& rule, Strip& strip, const Windows& windows) {
    const WordChannel shared = windows.shared();
    const size_t count = windows.n / 2;
    Pairs& pairs = strip.pairs;
    windows.read(strip.planes);
    split(pairs, strip.planes, count);
    if constexpr (kCurveAlone<CorrectionRule>) {
      // The same sample, by itself: the same result.
      rule.row(pairs.first, 0, count);
      share_result(pairs, shared, 0, count);
    } else {
      for_pairs<CorrectionRule>(count, [&](size_t from, size_t to) {
        rule.row(pairs.first, from, to);
        rule.shared_row(pairs.first, shared, pairs.second.*shared, from, to);
      });
    }
    join(strip.planes, pairs, count);
  }
};

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
  Strip strip;
  return correct_lines<Put>(frame, [&](const CellLine& line, uint8_t* out, size_t windows) {
    for (size_t x = 0; x < windows; x += kStripPixels) {
      const size_t pixels = std::min(windows - x, kStripPixels);
      prefetch_strip<Put>(out + x * Put::kPixelBytes);
      Pairing::correct(rule, strip, {line, x, pixels, frame.shift});
      put_planes<Put>(out + x * Put::kPixelBytes, strip.planes, pixels);
    }
  });
}

struct ToBgr16 {
  using Put = PutBgr16;
  static constexpr Family kFamily = Family::kRaw16ToBgr16;
  // Whether results of the rule go through it again.
  static bool corrects_results(const Frame&, Rule) { return true; }
  template <class CorrectionRule>
  static uint8_t* lines(CorrectionRule& rule, const Frame& frame) {
    return correct_in_pairs<Put, SharedTwice>(rule, frame);
  }
};

struct ToY16 {
  using Put = PutY16;
  static constexpr Family kFamily = Family::kRaw16ToY16;
  static bool corrects_results(const Frame& frame, Rule rule) {
    return frame.shift != 0 && rule != Rule::kGamma;
  }
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
  const Rule rule = rule_of(Conversion::kFamily, object);
  const uint32_t values = raw16_values(frame.shift);
  if ((rule != Rule::kGamma && rule != Rule::kGammaMatrix) || !reads_whole_samples(frame.shift) ||
      values <= RecentCurve::kSlots || frame.width % 2 != 0) {
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
  const SampleRange range = {raw16_values(frame.shift), frame.samples(),
                             Conversion::corrects_results(frame, rule_of(Conversion::kFamily, object))};
  return dispatch<uint16_t>(Conversion::kFamily, object, range, [&](auto& rule) {
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
