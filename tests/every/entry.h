/// The 76 functions in one shape, for tests that ask the same of all of them: what a call may touch, how it
/// is made, and what the reference makes of it.
///
/// A call's sizes are tight or loose. Tight ones are those that the public header promises: the buffers need
/// exactly the bytes of `shape`, and nothing around them is touched. Loose ones have an outcome too, but
/// reach into what lies around the buffers: a line before, lines behind. Sizes that run away are neither.
#pragma once

#include <quorvane/quorvane.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

#include "support/corrections.h"

namespace every {

/// The arguments beside the buffers. A function reads those that it has.
struct Call {
  std::uint32_t width = 0;  ///< of runs: the number of pixels
  std::uint32_t height = 1;
  std::uint32_t pattern = 0;  ///< or phase
  std::uint32_t target = 0;
  std::uint32_t shift = 0;
  std::uint32_t coding = 0;    ///< or any status code
  std::uint32_t selector = 0;  ///< axis; kind of block; resampling method; byte order of the Ex functions
  std::uint32_t units = 1;     ///< bytes of an element; alignment of the Ex functions
  std::uint32_t bits = 16;
  std::int32_t position = 0;
  bool in_place = false;
  bool has_format = true;
  std::int32_t length_in = 0;  ///< elements of a line; lines of resampling are `height` in number
  std::int32_t slack_in = 0;   ///< from a line's end to the next line
  std::int32_t slack_out = 0;
  bool upward_in = false;
  bool upward_out = false;
  float rate_in = 1;
  float rate_out = 1;
  SampleFormatBlock format = {};
  support::Correction correction;
};

/// A size of 0: the function has no such buffer.
struct Shape {
  std::array<std::size_t, 4> dst = {};
  std::size_t src = 0;
};

struct Buffers {
  std::array<std::uint8_t*, 4> dst = {};
  std::uint8_t* src = nullptr;
};

/// What a function does when an allocation fails. Nothing is written in any case.
enum class WithoutMemory {
  kNeverNeeds,
  kOutOfMemory,  ///< QVN_E_OUT_OF_MEMORY
  kOk,           ///< QVN_OK, and nothing is said
  kThrows,       ///< the exception leaves the function
  kThrowsOne,    ///< the integer 1 leaves the function
};

/// How null pointers are answered.
enum class NullTest {
  kInOrder,     ///< the first null pointer: QVN_E_PARAM1 and so on, the source behind the last destination
  kNone,        ///< they are the caller's fault
  kSecondOnly,  ///< the destination is argument 2
  kRgbY,        ///< the three colour planes may be null with a fourth plane, and the fourth alone
};

/// Which arguments a function has.
enum Takes : std::uint32_t {
  kPattern = 1,
  kTarget = 2,
  kShift = 4,
  kCorrection = 8,
  kFormat = 16,
  kSampleCut = 32,
  kFlip = 64,
  kSis = 128,
  kResampling = 256,
  kPlace = 512,  ///< may work in place
  kCode = 1024,
  kAligned = 2048,  ///< the buffers must be aligned to words
};

struct Sizes {
  std::uint32_t width_step = 1;
  std::uint32_t least_width = 0;
  std::uint32_t height_step = 0;  ///< 0: a run, without lines
  std::uint32_t least_height = 1;
};

struct Entry {
  std::string_view name;
  std::uint32_t takes;
  Sizes sizes;                  ///< tight and loose ones
  bool (*tight)(const Call&);   ///< null: all of them
  Shape (*shape)(const Call&);  ///< of tight calls
  std::uint32_t (*library)(const Call&, const Buffers&);
  std::uint32_t (*reference)(const Call&, const Buffers&);  ///< with the status that is to come
  WithoutMemory without_memory = WithoutMemory::kNeverNeeds;
  NullTest null_test = NullTest::kInOrder;
  std::size_t planes = 1;  ///< destinations
  bool has_source = true;

  bool takes_a(std::uint32_t what) const { return (takes & what) != 0; }
  bool is_tight(const Call& call) const { return tight == nullptr || tight(call); }
};

inline void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

/// All of them.
const std::vector<Entry>& table();

/// The parts of the table, one room each.
std::vector<Entry> query_entries();
std::vector<Entry> run_entries();
std::vector<Entry> plane_entries();
std::vector<Entry> mosaic_entries();
std::vector<Entry> cygm_entries();
std::vector<Entry> corrected_entries();
std::vector<Entry> utility_entries();
std::vector<Entry> run_transform_entries();
std::vector<Entry> mosaic_transform_entries();

// ---- What the parts share.

inline Shape one_to_one(std::size_t dst, std::size_t src) { return {.dst = {dst}, .src = src}; }
inline std::size_t pixels(const Call& call) { return std::size_t{call.width} * call.height; }

/// Bytes of a pixel of a target; of one that no function offers, the most.
inline std::size_t target_bytes(std::uint32_t target) {
  constexpr std::array<std::size_t, 8> kBytes = {1, 3, 4, 1, 2, 2, 2, 6};
  return target < kBytes.size() ? kBytes[target] : 6;
}

/// Words at any address.
inline std::uint16_t* as_words(std::uint8_t* bytes) {
  return static_cast<std::uint16_t*>(static_cast<void*>(bytes));
}
inline const ColorCorrection* as_correction(const support::Correction& correction) {
  return static_cast<const ColorCorrection*>(correction.get());
}

}  // namespace every
