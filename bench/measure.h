// What the benchmarks share: frames of noise, and works that are timed in turn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct Size {
  uint32_t width, height;
  size_t pixels() const { return size_t{width} * height; }
};

std::string text_of(Size size);
Size parse_size(const std::string& text);  // "640x480"; throws std::invalid_argument

// Buffers that are as large as the largest row asked for; growing them is not part of any time.
class Frames {
 public:
  // Room for a call that reads and writes so many bytes, and for a copy of `copied` bytes beside it. The
  // source is noise again, since some entries destroy theirs.
  void prepare(size_t read, size_t written, size_t copied);
  uint8_t* dst() { return dst_.data(); }
  uint8_t* src() { return src_.data(); }
  uint8_t* copy() { return copy_.data(); }
  const uint8_t* noise() const { return noise_.data(); }

 private:
  std::vector<uint8_t> dst_, src_, copy_, noise_;
};

using Work = std::function<void()>;

// Seconds a call.
struct Times {
  double median, best;
  double spread;  // distance of the quartiles as a share of the median
};

// Each round gives each work a turn, so that a machine whose speed drifts does the same to all of them. A
// turn is one call that is not timed, and then one that is: the caches hold what the work itself leaves
// there, not its predecessor (one peer's streaming stores tripled the time of the next in line). A work
// shorter than twenty microseconds is repeated within its turn. Rounds end with the budget in seconds, but
// five are made.
std::vector<Times> take_turns(const std::vector<Work>& works, double budget);
