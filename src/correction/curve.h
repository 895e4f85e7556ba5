// Rules that correct each channel by itself, by a curve: what gives the result for a sample.
#pragma once

#include "correction/rule.h"

namespace qvn {

template <class T, class Curve>
class ByCurve {
 public:
  static constexpr bool kInOrder = false;

  template <class... Arguments>
  explicit ByCurve(const Arguments&... arguments) : curve_(arguments...) {}

  void row(Planes<T>& p, size_t from, size_t to) {
    for (const Channel<T> channel : kChannels<T>) correct(p.*channel, from, to);
  }
  void shared_row(const Planes<T>&, Channel<T>, Plane<T>& samples, size_t from, size_t to) {
    correct(samples, from, to);
  }

 private:
  void correct(Plane<T>& samples, size_t from, size_t to) {
    correct_plane(samples, from, to, [this](T sample) { return curve_(sample); });
  }

  Curve curve_;
};

}  // namespace qvn
