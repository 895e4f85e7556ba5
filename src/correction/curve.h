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
    for (const Channel<T> channel : kChannels<T>) shared_row(p, channel, from, to);
  }
  void shared_row(Planes<T>& p, Channel<T> shared, size_t from, size_t to) {
    correct_plane(p.*shared, from, to, [this](T sample) { return curve_(sample); });
  }

 private:
  Curve curve_;
};

}  // namespace qvn
