#include "every/trial.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>
#include <sstream>

#include "reference/correction.h"
#include "support/guard.h"
#include "support/invalid_parameter.h"
#include "support/random.h"

namespace every {
namespace {

constexpr std::size_t kCapacity = std::size_t{1} << 19;

/// A buffer and the bytes around it that are looked at.
struct Window {
  std::uint8_t* data = nullptr;
  std::uint8_t* first = nullptr;
  std::size_t whole = 0;
};

/// Memory between closed pages, for one buffer after the other.
class Ground {
 public:
  Ground() : memory_(kCapacity, support::Flush::kEnd) {}

  std::optional<Window> window(std::size_t size, Place place, std::size_t before, std::size_t behind) {
    if (before + size + behind > kCapacity) return std::nullopt;
    if (place == Place::kBegin) return Window{memory_.data(), memory_.data(), size + behind};
    std::uint8_t* const first = memory_.data() + (place == Place::kEnd ? kCapacity - before - size : 0);
    return Window{first + before, first, before + size + (place == Place::kEnd ? 0 : behind)};
  }

 private:
  support::GuardedBuffer memory_;
};

/// Four destinations and a source, for the library and for the reference.
constexpr std::size_t kBuffers = 5;
constexpr std::size_t kSource = 4;
using Windows = std::array<Window, kBuffers>;

struct Side {
  std::array<Ground, kBuffers> ground;
  Windows windows;
};

std::size_t size_of(const Shape& shape, std::size_t buffer) {
  return buffer == kSource ? shape.src : shape.dst[buffer];
}

/// What lies before and behind a buffer. Loose calls reach two lines before it and five behind it at most,
/// and drift by a pixel a line.
std::size_t margin(const Entry& entry, const Call& call, std::size_t size, std::size_t lines) {
  if (entry.is_tight(call)) return 64;
  return 128 + lines * (size / std::max<std::size_t>(call.height, 1)) + std::size_t{6} * call.height;
}

bool lay_out(const Entry& entry, const Call& call, const Trial& trial, const Shape& shape, Side& side) {
  const Place place = entry.is_tight(call) ? trial.place : Place::kMiddle;
  for (std::size_t k = 0; k < kBuffers; ++k) {
    const std::size_t size = size_of(shape, k);
    const std::size_t offset = entry.takes_a(kAligned) ? 0
                               : k == kSource          ? trial.src_offset
                                                       : trial.dst_offset;
    const std::size_t before = (margin(entry, call, size, 2) + 63) / 64 * 64;
    const std::size_t behind = margin(entry, call, size, 5);
    const auto window =
        side.ground[k].window(size, place, before + (place == Place::kMiddle ? offset : 0), behind);
    if (!window) return false;
    side.windows[k] = *window;
  }
  return true;
}

void fill(const Trial& trial, const Shape& shape, Side& library, Side& reference) {
  support::Random random(trial.contents);
  for (std::size_t k = 0; k < kBuffers; ++k) {
    const Window& window = library.windows[k];
    random.fill(window.first, window.whole);
    // The source, or what works in place.
    if (k == kSource || (k == 0 && shape.src == 0)) {
      const std::size_t count = std::min(trial.head.size(), size_of(shape, k));
      if (count != 0) std::memcpy(window.data, trial.head.data(), count);
    }
    std::memcpy(reference.windows[k].first, window.first, window.whole);
  }
}

Buffers buffers_of(const Call& call, const Windows& windows, unsigned nulls) {
  Buffers buffers;
  for (std::size_t k = 0; k < 4; ++k) buffers.dst[k] = (nulls >> k & 1) != 0 ? nullptr : windows[k].data;
  buffers.src = (nulls & kNullSource) != 0 ? nullptr : windows[kSource].data;
  if (call.in_place) buffers.src = buffers.dst[0];
  return buffers;
}

struct Outcome {
  std::uint32_t status = 0;
  enum Thrown { kNothing, kBadAlloc, kOne, kOther } thrown = kNothing;

  bool operator==(const Outcome&) const = default;
};

Outcome outcome_of(const Entry& entry, const Call& call, const Buffers& buffers) {
  try {
    return {entry.library(call, buffers)};
  } catch (const std::bad_alloc&) {
    return {0, Outcome::kBadAlloc};
  } catch (const int number) {
    return {0, number == 1 ? Outcome::kOne : Outcome::kOther};
  } catch (...) {
    return {0, Outcome::kOther};
  }
}

Outcome without_memory(WithoutMemory answer) {
  switch (answer) {
    case WithoutMemory::kOutOfMemory:
      return {QVN_E_OUT_OF_MEMORY};
    case WithoutMemory::kOk:
      return {QVN_OK};
    case WithoutMemory::kThrows:
      return {0, Outcome::kBadAlloc};
    case WithoutMemory::kThrowsOne:
      return {0, Outcome::kOne};
    default:
      return {0, Outcome::kOther};
  }
}

/// QVN_E_PARAM1 and so on.
std::uint32_t parameter(std::size_t argument) {
  return QVN_E_PARAM1 + static_cast<std::uint32_t>(argument) - 1;
}

/// What null pointers are answered with, if they are.
std::optional<std::uint32_t> refusal(const Entry& entry, const Call& call, unsigned nulls) {
  const auto is_null = [nulls](std::size_t k) { return (nulls >> k & 1) != 0; };
  const bool source = entry.has_source && !call.in_place && (nulls & kNullSource) != 0;
  switch (entry.null_test) {
    case NullTest::kNone:
      return std::nullopt;
    case NullTest::kSecondOnly:
      return is_null(0) ? std::optional(QVN_E_PARAM2) : std::nullopt;
    case NullTest::kRgbY:
      if (!(is_null(0) && is_null(1) && is_null(2) && !is_null(3))) {
        for (std::size_t k = 0; k < 3; ++k) {
          if (is_null(k)) return parameter(k + 1);
        }
      }
      return source ? std::optional(QVN_E_PARAM5) : std::nullopt;
    default:
      for (std::size_t k = 0; k < entry.planes; ++k) {
        if (is_null(k)) return parameter(k + 1);
      }
      return source ? std::optional(parameter(entry.planes + 1)) : std::nullopt;
  }
}

/// Those pointers that a function may get as null: of the ones that it does not test, none but the luma plane
/// that stands for no luma.
unsigned allowed_nulls(const Entry& entry, const Call& call, unsigned nulls) {
  constexpr unsigned kLuma = 1 << 3;
  if (refusal(entry, call, nulls)) return nulls;
  return entry.planes == 4 ? nulls & kLuma : 0;
}

std::string difference(const Shape& shape, const Windows& expected, const Windows& actual) {
  for (std::size_t k = 0; k < kBuffers; ++k) {
    const std::uint8_t* const want = expected[k].first;
    const std::uint8_t* const got = actual[k].first;
    if (std::memcmp(want, got, actual[k].whole) == 0) continue;
    const auto at = std::mismatch(got, got + actual[k].whole, want).first - actual[k].data;
    std::ostringstream text;
    text << (k == kSource ? "source" : "destination ");
    if (k != kSource) text << k;
    text << " differs at byte " << at << " of " << size_of(shape, k) << ": expected "
         << unsigned{expected[k].data[at]} << ", got " << unsigned{actual[k].data[at]};
    return text.str();
  }
  return {};
}

std::string text_of(const Outcome& outcome) {
  constexpr const char* kThrown[] = {"", "std::bad_alloc", "the integer 1", "an exception"};
  if (outcome.thrown != Outcome::kNothing) return kThrown[outcome.thrown];
  std::ostringstream text;
  text << "status 0x" << std::hex << outcome.status;
  return text.str();
}

}  // namespace

Verdict try_call(const Entry& entry, const Call& call, const Trial& trial) {
  static Side library;
  static Side reference_side;
  Verdict verdict;
  const Shape shape = entry.shape(call);
  if (!lay_out(entry, call, trial, shape, library) || !lay_out(entry, call, trial, shape, reference_side)) {
    return verdict;
  }
  verdict.ran = true;
  fill(trial, shape, library, reference_side);

  const unsigned nulls = allowed_nulls(entry, call, trial.nulls);
  const auto refused = refusal(entry, call, nulls);
  const bool may_fail = trial.allocations != nullptr && trial.failing_allocation != 0;
  int expected_reports = 0;
  reference::at_range_failure = [&] { ++expected_reports; };
  Outcome expected;
  // A frame is untouched where the call fails for want of memory, so the library runs first then.
  const auto run_reference = [&] {
    expected.status =
        refused ? *refused : entry.reference(call, buffers_of(call, reference_side.windows, nulls));
  };
  if (!may_fail) run_reference();

  int reports = 0;
  Outcome actual;
  {
    const support::CountedReports counted;
    if (may_fail) trial.allocations->fail(trial.failing_allocation);
    actual = outcome_of(entry, call, buffers_of(call, library.windows, nulls));
    if (may_fail) {
      verdict.failed_allocation = trial.allocations->has_failed();
      trial.allocations->fail(0);
    }
    reports = counted.count();
  }
  if (may_fail) {
    if (verdict.failed_allocation) {
      expected = without_memory(entry.without_memory);
    } else {
      run_reference();
    }
  }

  if (actual != expected) {
    verdict.trouble = "expected " + text_of(expected) + ", got " + text_of(actual);
  } else if (reports != expected_reports) {
    verdict.trouble =
        "expected " + std::to_string(expected_reports) + " reports, got " + std::to_string(reports);
  } else {
    verdict.trouble = difference(shape, reference_side.windows, library.windows);
  }
  return verdict;
}

std::string text_of(const Entry& entry, const Call& call) {
  std::ostringstream text;
  text << entry.name << ", width " << call.width << ", height " << call.height << ", pattern " << call.pattern
       << ", target " << call.target << ", shift " << call.shift << ", coding " << call.coding
       << ", selector " << call.selector << ", units " << call.units << ", bits " << call.bits
       << ", position " << call.position << ", alignment " << call.format.alignment << " of "
       << call.format.bitsPerSample << " bits, order " << call.format.byteOrder << ", length "
       << call.length_in << ", slack " << call.slack_in << " and " << call.slack_out << ", rates "
       << call.rate_in << " to " << call.rate_out << (call.upward_in ? ", source upward" : "")
       << (call.upward_out ? ", destination upward" : "") << (call.in_place ? ", in place" : "")
       << (entry.is_tight(call) ? "" : ", loose");
  return text.str();
}

}  // namespace every
