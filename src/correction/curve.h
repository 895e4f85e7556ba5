// Rules that correct each sample by itself, by a curve, or begin by that. A curve has
//
//     operator()   the result for a sample
//     row          n samples become their results; may work on whole vectors of bytes
//
// In a line of windows, neighbours share their reds and blues, so that a curve has less to do before the
// windows are put together than behind them: one sample of either colour for two windows.
#pragma once

#include <cstring>

#include "correction/rule.h"

namespace qvn {

// Each of n samples by itself, four loads ahead of the results.
template <class T, class Result>
void correct_samples(T* samples, size_t n, const Result& result) {
  size_t x = 0;
  for (; x + 4 <= n; x += 4) {
    const T a = samples[x], b = samples[x + 1], c = samples[x + 2], d = samples[x + 3];
    samples[x] = result(a);
    samples[x + 1] = result(b);
    samples[x + 2] = result(c);
    samples[x + 3] = result(d);
  }
  for (; x < n; ++x) samples[x] = result(samples[x]);
}

// The same of look-ups, which the machine does two a cycle: eight results are put together before they are
// stored, and four samples taken from one load.
template <class Result>
void look_up_words(uint16_t* samples, size_t n, const Result& result) {
  size_t x = 0;
  if (kVectorRows) {
    using EightWords = VectorOf<uint16_t, 16>::type;
    for (; x + 8 <= n; x += 8) {
      uint64_t four[2];
      std::memcpy(four, samples + x, sizeof four);
      EightWords found{};
      for (int i = 0; i < 8; ++i) found[i] = result(static_cast<uint16_t>(four[i / 4] >> (i % 4 * 16)));
      std::memcpy(samples + x, &found, sizeof found);
    }
  }
  correct_samples(samples + x, n - x, result);
}

template <class T, class Curve>
class ByCurve {
 public:
  static constexpr bool kInOrder = false;
  static constexpr bool kCurveAlone = true;

  template <class... Arguments>
  explicit ByCurve(const Arguments&... arguments) : curve_(arguments...) {}

  Curve& curve() { return curve_; }
  void behind_curve(Planes<T>&, size_t, size_t) const {}

  void row(Planes<T>& p, size_t from, size_t to) {
    for (const Channel<T> channel : kChannels<T>) curve_.row((p.*channel).data() + from, to - from);
  }

 private:
  Curve curve_;
};

// Whether a rule is a curve and what comes behind it, and whether nothing comes behind it.
template <class CorrectionRule>
inline constexpr bool kBeginsByCurve = requires(CorrectionRule& rule) {
  rule.curve();
};
template <class CorrectionRule>
inline constexpr bool kCurveAlone = requires {
  requires CorrectionRule::kCurveAlone;
};

// The reds and blues of a line of windows, in one line: whatever site column 0 is, every second column is a
// red, and the others are blues.
//
//     red line     r    .    r'   .
//     blue line    .    b    .    b'        ->     r  b  r' b' ...
template <class T>
struct RedBlueLine {
  // A window more than a strip has pixels, and whole vectors.
  alignas(64) std::array<T, kStripPixels + 64> samples;
  const uint8_t* bytes() const { return reinterpret_cast<const uint8_t*>(samples.data()); }
};

// How such a line is read.
template <class T>
struct FetchRedBlue : FetchRaw16<kHostByteOrder> {};
template <>
struct FetchRedBlue<uint8_t> : FetchRaw8 {};

struct NoShift {
  template <class Pixels>
  const Pixels& operator()(const Pixels& pixels) const {
    return pixels;
  }
};

// An output that takes windows, shifted, apart into such a line and greens. Of the first column the colour is
// red (Odd 0) or blue (Odd 1).
template <class T, int Odd, class Shift>
struct SamplesOfWindows {
  using Form = Rgb<Lanes<T>>;
  static constexpr bool kWholePairs = true;
  RedBlueLine<T>& line;
  Plane<T>& green;
  Shift shift;
  void pixel(size_t x, Rgb<uint32_t> window) const {
    const Rgb<uint32_t> p = shift(window);
    const bool red_first = (x + Odd) % 2 == 0;
    line.samples[x] = static_cast<T>(red_first ? p.r : p.b);
    line.samples[x + 1] = static_cast<T>(red_first ? p.b : p.r);
    green[x] = static_cast<T>(p.g);
  }
  void pixels(size_t x, const Form& windows) const {
    const Form p = shift(windows);
    const Bytes first = as<Bytes>(Odd == 0 ? p.r : p.b), second = as<Bytes>(Odd == 0 ? p.b : p.r);
    store(reinterpret_cast<uint8_t*>(line.samples.data() + x),
          blend<places::is_even_lane<sizeof(T)>>(first, second));
    store_at(green, x, p.g);
  }
};

// An output that writes the reds and blues of windows to planes.
template <class T>
struct RedBluePlanes {
  using Form = Rgb<Lanes<T>>;
  static constexpr bool kWholePairs = false;
  Planes<T>& planes;
  void pixel(size_t x, Rgb<uint32_t> p) const {
    planes.r[x] = static_cast<T>(p.r);
    planes.b[x] = static_cast<T>(p.b);
  }
  void pixels(size_t x, const Form& p) const {
    store_at(planes.r, x, p.r);
    store_at(planes.b, x, p.b);
  }
};

// Takes n windows apart; n is not 0. Out of line, with its way back: neither knows the curve, and there are
// many of them.
template <class Fetch, class T, class Shift>
[[gnu::noinline]] void take_apart(RedBlueLine<T>& red_blue, Plane<T>& green, const CellLine& line, size_t n,
                                  Shift shift) {
  const auto take = [&]<int Odd>(const SamplesOfWindows<T, Odd, Shift>& output) {
    const bool vectors = kVectorRows && n >= Fetch::kColumns;
    if (vectors) row_2x2_vectors<Fetch, Odd>(output, line, n);
    // The last one brings the sample behind it, too.
    row_2x2_plain<Fetch>(output, line, vectors ? n - 1 : 0, n);
  };
  if (line.column_phase == 0) {
    take(SamplesOfWindows<T, 0, Shift>{red_blue, green, shift});
  } else {
    take(SamplesOfWindows<T, 1, Shift>{red_blue, green, shift});
  }
}

template <class T>
[[gnu::noinline]] void put_together(Planes<T>& planes, const RedBlueLine<T>& red_blue, uint32_t column_phase,
                                    size_t n) {
  const CellLine line = {red_blue.bytes(), red_blue.bytes(), column_phase};
  row_2x2<FetchRedBlue<T>>(RedBluePlanes<T>{planes}, line, n);
}

// n windows, of whose samples a curve makes the planes. take_apart(red_blue, green) brings the samples.
template <class T, class Curve, class TakeApart>
void samples_by_curve(Curve& curve, Planes<T>& planes, uint32_t column_phase, size_t n,
                      const TakeApart& take_apart) {
  RedBlueLine<T> red_blue{};
  take_apart(red_blue, planes.g);
  curve.row(red_blue.samples.data(), n + 1);
  curve.row(planes.g.data(), n);
  put_together(planes, red_blue, column_phase, n);
}

template <class Fetch, class T, class Curve, class Shift = NoShift>
void windows_by_curve(Curve& curve, Planes<T>& planes, const CellLine& line, size_t n, Shift shift = {}) {
  samples_by_curve(curve, planes, line.column_phase, n, [&](RedBlueLine<T>& red_blue, Plane<T>& green) {
    take_apart<Fetch>(red_blue, green, line, n, shift);
  });
}

}  // namespace qvn
