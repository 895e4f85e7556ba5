// Strips of a line's pixels as three planes, bytes or words: what stands between the window and the put of a
// corrected demosaic. A strip lies on the stack. Rows over planes may work on whole vectors: there is always
// room, and what lies behind the n pixels of a strip counts for nothing.
#pragma once

#include <array>

#include "bayer/row_2x2.h"
#include "pixel/cache_lines.h"

namespace qvn {

inline constexpr size_t kStripPixels = 256;  // whole vectors, and whole pairs of pixels

template <class T>
using Plane = std::array<T, kStripPixels>;

template <class T>
struct Planes {
  alignas(64) Plane<T> r, g, b;
};

// One of the three.
template <class T>
using Channel = Plane<T> Planes<T>::*;

template <class T>
inline constexpr Channel<T> kChannels[3] = {&Planes<T>::r, &Planes<T>::g, &Planes<T>::b};

// Which one: 0 for red, 1 for green, 2 for blue.
template <class T>
constexpr int place_of(Channel<T> channel) {
  return channel == &Planes<T>::r ? 0 : channel == &Planes<T>::g ? 1 : 2;
}

// Planes of which one is another's.
template <class T>
struct PlanesWith {
  PlanesWith(const Planes<T>& planes, Channel<T> channel, const Plane<T>& other)
      : r(channel == &Planes<T>::r ? other : planes.r),
        g(channel == &Planes<T>::g ? other : planes.g),
        b(channel == &Planes<T>::b ? other : planes.b) {}
  const Plane<T>&r, &g, &b;
};

template <class V, class T>
V load_at(const Plane<T>& plane, size_t x) {
  return load<V>(reinterpret_cast<const uint8_t*>(plane.data() + x));
}

template <class V, class T>
void store_at(Plane<T>& plane, size_t x, V lanes) {
  store(reinterpret_cast<uint8_t*>(plane.data() + x), lanes);
}

// The pixels from x on as vectors of any type.
template <class V, class PlanesOfT>
Rgb<V> load_pixels(const PlanesOfT& planes, size_t x) {
  return {load_at<V>(planes.r, x), load_at<V>(planes.g, x), load_at<V>(planes.b, x)};
}
template <class V, class T>
void store_pixels(Planes<T>& planes, size_t x, const Rgb<V>& pixels) {
  store_at(planes.r, x, pixels.r);
  store_at(planes.g, x, pixels.g);
  store_at(planes.b, x, pixels.b);
}

// An output that writes the windows of a row to planes.
template <class T>
struct PlaneOutput {
  using Form = Rgb<Lanes<T>>;
  static constexpr bool kWholePairs = false;
  Planes<T>& planes;
  void pixel(size_t x, Rgb<uint32_t> p) const {
    planes.r[x] = static_cast<T>(p.r);
    planes.g[x] = static_cast<T>(p.g);
    planes.b[x] = static_cast<T>(p.b);
  }
  void pixels(size_t x, const Form& p) const { store_pixels(planes, x, p); }
};

// Asks for the destination of a strip that is about to be made, so that it is there when the strip is put: a
// quarter less time where it is in no cache. Pixels of fewer bytes gain less there than they lose in a cache.
template <class Put>
[[gnu::always_inline]] inline void prefetch_strip(const uint8_t* out) {
  if constexpr (Put::kPixelBytes == 6) prefetch<kStripPixels * Put::kPixelBytes>(out);
}

// Writes n pixels.
template <class Put, class T>
void put_planes(uint8_t* out, const Planes<T>& planes, size_t n) {
  constexpr size_t kStep = kLaneCount<Lanes<T>>;
  const auto put_at = [&](size_t x) {
    Put::pixels(out + x * Put::kPixelBytes, load_pixels<Lanes<T>>(planes, x));
  };
  if (!kVectorRows || n < kStep) {
    for (size_t x = 0; x < n; ++x) {
      Put::pixel(out + x * Put::kPixelBytes, {planes.r[x], planes.g[x], planes.b[x]});
    }
    return;
  }
  for (size_t x = 0; x + kStep <= n; x += kStep) put_at(x);
  if (n % kStep != 0) put_at(n - kStep);
}

}  // namespace qvn
