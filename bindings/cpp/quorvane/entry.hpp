// What the checks know of each function of the library that turns a frame into a picture: layout of the
// source, bytes of a pixel, sizes that are good, and which lines of the source a line of the picture is made
// of.
#pragma once

#include <quorvane/quorvane.h>

#include <array>
#include <bit>
#include <string_view>

#include "quorvane/correction.hpp"
#include "quorvane/types.hpp"

namespace quorvane {

/// How pixels lie in a source: `group` pixels share `bytes` bytes.
struct Layout {
  std::uint32_t group = 1;
  std::uint32_t bytes = 1;
};

inline constexpr Layout kOneByte{1, 1};
inline constexpr Layout kTwoBytes{1, 2};
inline constexpr Layout kThreeBytes{1, 3};
inline constexpr Layout kFourBytes{1, 4};
inline constexpr Layout kPacked12{2, 3};
inline constexpr Layout kYuv422{2, 4};
inline constexpr Layout kYuv411{4, 6};

/// Sizes that a function takes without reading or writing beside its buffers.
struct SizeRule {
  std::uint32_t width_step = 1;
  std::uint32_t height_step = 1;
  Size least{0, 0};
  std::uint32_t least_pixels = 0;
  std::uint32_t pixels_step = 1;
};

/// Which lines of the source a line of the picture is made of. This is what frames may be cut by.
enum class Lines : std::uint32_t {
  kRun,     ///< pixels know no lines
  kTwo,     ///< its own and the next one; the last line copies the one above
  kThree,   ///< its own and both neighbours; the first and last lines copy
  kNotCut,  ///< filters and fields that span the frame
};

/// What a table of a correction is asked for.
struct CorrectionRule {
  std::uint32_t index_bits = 0;   ///< of the values looked up, without a shift; 0: takes no correction
  std::uint32_t fixed_kind = 0;   ///< CcMatrixInt8 or CcMatrixInt16
  std::uint32_t table_kind = 0;   ///< CcTable8 or CcTable16
  std::uint32_t entry_bytes = 1;  ///< of the table
  bool looks_again = false;       ///< results go through the table, too
};

/// What a call is given beside its buffers and the size.
struct Arguments {
  Pattern pattern = Pattern::kRggb;
  Target target = Target::kBgr;
  SampleForm form{};
  Shift shift{};
  const Correction* correction = nullptr;

  void set(Pattern value) { pattern = value; }
  void set(Target value) { target = value; }
  void set(const SampleForm& value) { form = value; }
  void set(Shift value) { shift = value; }
  void set(const Correction* value) { correction = value; }
};

struct Buffers {
  std::array<std::uint8_t*, 4> dst{};
  std::uint8_t* src = nullptr;  // written to by functions that overwrite their source, by no others
};

using Run = std::uint32_t (*)(const Buffers& buffers, Size size, const Arguments& arguments);

struct Entry {
  std::string_view name;
  Layout source;
  std::uint32_t pixel_bytes = 0;  ///< of the picture; 0: those of the target
  std::uint32_t targets = 0;      ///< a bit for each one offered
  SizeRule size{};
  Lines lines = Lines::kRun;
  std::uint32_t planes = 1;
  bool in_place = false;  ///< where a pixel of the picture is no longer than one of the source
  bool overwrites_source = false;
  bool takes_shift = false;
  CorrectionRule correction{};
  Run run = nullptr;
};

constexpr std::uint32_t bytes_of(Target target) {
  constexpr std::array<std::uint32_t, 8> kBytes{1, 3, 4, 1, 2, 2, 2, 6};
  const auto index = static_cast<std::uint32_t>(target);
  return index < kBytes.size() ? kBytes[index] : 0;
}

namespace detail {

constexpr std::uint32_t kFourTargets = 0x0F;
constexpr std::uint32_t kFiveTargets = 0x1F;
constexpr std::uint32_t kSevenTargets = 0xEF;

constexpr SizeRule kAnySize{};
constexpr SizeRule k2x2{.least = {2, 2}};
constexpr SizeRule k2x2Pairs{.width_step = 2, .least = {2, 2}};
constexpr SizeRule kPairs{.width_step = 2, .least = {4, 2}};
constexpr SizeRule kHalves{.width_step = 2, .height_step = 2, .least = {2, 2}};
// Three pairs of pixels in each half frame.
constexpr SizeRule kHalvesOfThreePairs{
    .width_step = 2, .height_step = 2, .least = {2, 2}, .least_pixels = 12};
// With two lines in a half, the filter looks back before the half: before dst, where that is its scratch
// frame.
constexpr SizeRule kHalvesOfTwoLines{.width_step = 2, .height_step = 2, .least = {2, 4}};
constexpr SizeRule kHalvesOfThreeLines{.width_step = 2, .height_step = 2, .least = {2, 6}};
constexpr SizeRule kFields{.width_step = 2, .height_step = 4, .least = {2, 4}};
constexpr SizeRule kBinnedFields{.width_step = 2, .height_step = 4, .least = {4, 4}};
constexpr SizeRule kFieldsOfFourLines{.width_step = 2, .height_step = 4, .least = {2, 8}};
constexpr SizeRule kPairsOfLines{.height_step = 2, .least = {2, 2}};
// An odd count would never meet its end.
constexpr SizeRule kEvenCount{.pixels_step = 2};
constexpr SizeRule kCountOfEights{.pixels_step = 8};

constexpr CorrectionRule kBytes8{8, CcMatrixInt8, CcTable8, 1};
constexpr CorrectionRule kTopBytes{8, CcMatrixInt16, CcTable16, 1};
constexpr CorrectionRule kWords12{12, CcMatrixInt16, CcTable16, 2};
constexpr CorrectionRule kWords16{16, CcMatrixInt16, CcTable16, 2, true};

// Adapters, one for each form of argument list.

/// The functions ask for no alignment of their words.
inline std::uint16_t* words(std::uint8_t* bytes) {
  return static_cast<std::uint16_t*>(static_cast<void*>(bytes));
}
inline std::uint32_t count_of(Size size) { return static_cast<std::uint32_t>(size.pixels()); }
inline const ColorCorrection* object_of(const Arguments& a) {
  return a.correction == nullptr ? nullptr : a.correction->object();
}
inline TransformTarget code_of(Target target) { return static_cast<TransformTarget>(target); }
inline SampleFormatBlock block_of(const Arguments& a) {
  return {0, static_cast<std::uint32_t>(a.form.alignment), a.form.bits,
          static_cast<std::uint32_t>(a.form.order), code_of(a.pattern)};
}

template <auto F>
std::uint32_t run_count(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.src, count_of(s));
}
template <auto F>
std::uint32_t run_form(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, count_of(s), static_cast<std::uint32_t>(a.form.order),
           static_cast<std::uint32_t>(a.form.alignment), a.form.bits);
}
template <auto F>
std::uint32_t run_target(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, count_of(s), code_of(a.target));
}
template <auto F>
std::uint32_t run_target_form(const Buffers& b, Size s, const Arguments& a) {
  const SampleFormatBlock block = block_of(a);
  return F(b.dst[0], b.src, count_of(s), code_of(a.target), &block);
}
template <auto F>
std::uint32_t planes(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.dst[1], b.dst[2], b.src, s.width, s.height);
}
template <auto F>
std::uint32_t planes_y(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.dst[1], b.dst[2], b.dst[3], b.src, s.width, s.height);
}
template <auto F>
std::uint32_t planes_without_luma(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.dst[1], b.dst[2], nullptr, b.src, s.width, s.height);
}
template <auto F>
std::uint32_t mosaic(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.pattern));
}
template <auto F>
std::uint32_t mosaic_words(const Buffers& b, Size s, const Arguments& a) {
  return F(words(b.dst[0]), b.src, s.width, s.height, code_of(a.pattern));
}
template <auto F>
std::uint32_t corrected(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.pattern), object_of(a));
}
template <auto F>
std::uint32_t corrected_words(const Buffers& b, Size s, const Arguments& a) {
  return F(words(b.dst[0]), b.src, s.width, s.height, code_of(a.pattern), object_of(a));
}
template <auto F>
std::uint32_t shifted(const Buffers& b, Size s, const Arguments& a) {
  return F(words(b.dst[0]), b.src, s.width, s.height, code_of(a.pattern), a.shift.bits);
}
template <auto F>
std::uint32_t shifted_corrected(const Buffers& b, Size s, const Arguments& a) {
  return F(words(b.dst[0]), b.src, s.width, s.height, code_of(a.pattern), a.shift.bits, object_of(a));
}
template <auto F>
std::uint32_t mosaic_target(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.target), code_of(a.pattern));
}
template <auto F>
std::uint32_t mosaic_form(const Buffers& b, Size s, const Arguments& a) {
  const SampleFormatBlock block = block_of(a);
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.target), &block);
}
template <auto F>
std::uint32_t fields(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.src, s.width, s.height);
}
template <auto F>
std::uint32_t fields_target(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.target));
}
/// The phase has no effect.
template <auto F>
std::uint32_t fields_phase(const Buffers& b, Size s, const Arguments& /*unused*/) {
  return F(b.dst[0], b.src, s.width, s.height, 0);
}
template <auto F>
std::uint32_t fields_target_phase(const Buffers& b, Size s, const Arguments& a) {
  return F(b.dst[0], b.src, s.width, s.height, code_of(a.target), 0);
}

}  // namespace detail
}  // namespace quorvane
