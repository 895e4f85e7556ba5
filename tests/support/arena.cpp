/// Arenas are aligned to 64 bytes, so that a test decides by its margins how a frame lies to a register.
#include "support/arena.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace support {
namespace {
constexpr std::align_val_t kAlignment{64};

std::uint8_t* allocate(std::size_t size) {
  return static_cast<std::uint8_t*>(::operator new(std::max<std::size_t>(size, 1), kAlignment));
}
}  // namespace

Arena::Arena(std::size_t before, std::size_t size, std::size_t behind)
    : before_(before), size_(size), behind_(behind), bytes_(allocate(before + size + behind)) {
  fill(0);
}

Arena::Arena(const Arena& other)
    : before_(other.before_),
      size_(other.size_),
      behind_(other.behind_),
      bytes_(allocate(other.whole_size())) {
  std::memcpy(bytes_, other.bytes_, whole_size());
}

Arena::~Arena() { ::operator delete(bytes_, kAlignment); }

void Arena::fill(std::uint8_t value) { std::memset(bytes_, value, whole_size()); }

void Arena::fill(Random& random) { random.fill(bytes_, whole_size()); }

void Arena::fill_inverse_of(const Arena& other) {
  for (std::size_t i = 0; i < whole_size(); ++i) bytes_[i] = static_cast<std::uint8_t>(~other.bytes_[i]);
}

testing::AssertionResult same_bytes(const char* what, const Arena& expected, const Arena& actual,
                                    std::size_t line_bytes) {
  if (expected.whole_size() != actual.whole_size() || expected.before() != actual.before()) {
    return testing::AssertionFailure() << what << ": arenas of different shapes";
  }
  const std::uint8_t* want = expected.whole();
  const std::uint8_t* got = actual.whole();
  const std::size_t count = expected.whole_size();
  if (std::memcmp(want, got, count) == 0) return testing::AssertionSuccess();

  std::size_t first = count;
  std::size_t differing = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (want[i] == got[i]) continue;
    first = std::min(first, i);
    ++differing;
  }
  testing::AssertionResult result = testing::AssertionFailure();
  result << what << ": " << differing << " bytes differ, the first at offset ";
  if (first < expected.before()) {
    result << "-" << expected.before() - first << " (before the frame)";
  } else {
    const std::size_t offset = first - expected.before();
    result << offset;
    if (line_bytes != 0)
      result << " (line " << offset / line_bytes << ", byte " << offset % line_bytes << ")";
    if (offset >= expected.size()) result << " (behind the frame's " << expected.size() << " bytes)";
  }
  return result << ": expected " << unsigned{want[first]} << ", got " << unsigned{got[first]};
}

}  // namespace support
