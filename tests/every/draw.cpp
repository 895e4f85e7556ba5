#include "every/draw.h"

#include <bit>
#include <iterator>
#include <limits>
#include <utility>

#include "frame/error_texts.h"
#include "support/random.h"

namespace every {
namespace {

using support::Correction;
using Limits = std::numeric_limits<float>;

/// A code that a function knows, or any word.
std::uint32_t code(Input& input, std::uint32_t known) {
  return input.once_in(32) ? input.word() : input.below(known);
}

std::uint32_t size(Input& input, std::uint32_t least, std::uint32_t step, std::uint32_t most) {
  return least + step * input.below(most / step);
}

/// Small ones at which the ends of a line meet, and ones that fill vectors and strips.
void draw_sizes(const Sizes& sizes, Input& input, Call& call) {
  const bool is_run = sizes.height_step == 0;
  const bool is_long = input.once_in(4);
  const std::uint32_t most = is_long ? is_run ? 3000 : 700 : 72;
  call.width = size(input, sizes.least_width, sizes.width_step, most);
  call.height = is_run ? 1 : size(input, sizes.least_height, sizes.height_step, is_long ? 8 : 20);
}

float any_float(Input& input) { return std::bit_cast<float>(input.word()); }

float rate(Input& input) {
  constexpr float kSpecial[] = {
      0.0F, -0.0F, 1.0F, Limits::infinity(), -1.0F, Limits::max(), Limits::denorm_min(), Limits::quiet_NaN(),
      3e9F, 1e-3F};
  switch (input.below(8)) {
    case 0:
      return kSpecial[input.below(std::size(kSpecial))];
    case 1:
      return any_float(input);
    default:
      return static_cast<float>(1 + input.below(4096)) / 256;
  }
}

void draw_resampling(Input& input, Call& call) {
  call.units = input.below(8);
  call.selector = code(input, 2);
  call.rate_in = rate(input);
  call.rate_out = rate(input);
  call.length_in = static_cast<std::int32_t>(input.below(700));
  if (input.once_in(8)) call.length_in = -call.length_in;
  call.slack_in = static_cast<std::int32_t>(input.below(8)) - 2;
  call.slack_out = static_cast<std::int32_t>(input.below(8)) - 2;
  call.upward_in = input.once_in(4);
  call.upward_out = input.once_in(4);
}

std::uint32_t coding(Input& input) { return input.below(2) == 0 ? code(input, 12) : 126 + code(input, 18); }

/// A table of fewer entries than its storage has: look-ups behind it are reported, and read all the same. A
/// table without storage, whose every look-up ends the process, is left out.
Correction short_table(std::uint32_t kind, Input& input) {
  std::vector<std::uint8_t> storage(kind == CcTable8 ? 256 : std::size_t{2} << 16);
  support::Random(input.word()).fill(storage.data(), storage.size());
  const std::uint32_t bytes = input.below(static_cast<std::uint32_t>(storage.size()) + 1);
  return Correction::bytes(kind, storage, bytes);
}

Correction draw_correction(Input& input) {
  constexpr std::uint32_t kKinds[] = {CcMatrixFloat, CcMatrixInt8, CcMatrixInt16, CcGamma,
                                      CcGammaMatrix, CcTable8,     CcTable16};
  constexpr unsigned kBits[] = {8, 12, 16};
  const std::uint32_t kind = kKinds[input.below(std::size(kKinds))];
  switch (input.below(8)) {
    case 0:
      return {};
    case 1:
      return Correction::of_kind(input.once_in(4) ? input.word() : std::uint32_t{CcReserved6});
    case 2: {
      support::Matrix matrix;
      for (float& number : matrix) number = any_float(input);
      const float gamma = any_float(input);
      return Correction::floats(
          kind == CcGamma || kind == CcGammaMatrix ? kind : std::uint32_t{CcMatrixFloat}, matrix, gamma,
          any_float(input));
    }
    case 3: {
      support::Coefficients coefficients;
      for (std::int32_t& number : coefficients) number = static_cast<std::int32_t>(input.word());
      return Correction::fixed_matrix(kind == CcMatrixInt8 ? kind : std::uint32_t{CcMatrixInt16},
                                      coefficients);
    }
    case 4:
      return short_table(kind == CcTable8 ? kind : std::uint32_t{CcTable16}, input);
    default: {
      const support::Temper temper = support::kTempers[input.below(std::size(support::kTempers))];
      const unsigned bits = kBits[input.below(std::size(kBits))];
      support::Random random(input.word());
      return support::random_correction(kind, temper, bits, kind == CcTable16, random);
    }
  }
}

/// Codes with a text, and such of the library's own families as have none. Of all others the system may have
/// one.
std::uint32_t status_code(Input& input) {
  if (input.once_in(4)) return 0x88000000 | (input.word() & 0x02FFFFFF);
  return kExpectedTexts[input.below(std::size(kExpectedTexts))].code;
}

}  // namespace

std::uint8_t Input::byte() {
  if (bytes_.empty()) return 0;
  const std::uint8_t first = bytes_.front();
  bytes_ = bytes_.subspan(1);
  return first;
}

std::uint32_t Input::word() {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) word = word << 8 | byte();
  return word;
}

std::uint32_t Input::below(std::uint32_t bound) {
  if (bound <= 256) return byte() % bound;
  const std::uint32_t high = byte();
  if (bound <= 65536) return (high << 8 | byte()) % bound;
  return word() % bound;
}

Call draw_call(const Entry& entry, Input& input) {
  Call call;
  draw_sizes(entry.sizes, input, call);
  if (entry.takes_a(kPattern)) call.pattern = code(input, 8);
  if (entry.takes_a(kTarget)) call.target = code(input, 9);
  if (entry.takes_a(kShift)) call.shift = code(input, 20);
  if (entry.takes_a(kCorrection)) call.correction = draw_correction(input);
  if (entry.takes_a(kFormat)) {
    call.has_format = !input.once_in(16);
    call.format = {input.word(), code(input, 3), code(input, 20), code(input, 3), input.word()};
  }
  if (entry.takes_a(kSampleCut)) {
    call.selector = code(input, 3);
    call.units = code(input, 3);
    call.bits = code(input, 48);
  }
  if (entry.takes_a(kFlip)) {
    call.selector = code(input, 5);
    call.coding = coding(input);
  }
  if (entry.takes_a(kSis)) {
    call.selector = code(input, 4);
    call.coding = coding(input);
    call.position = input.once_in(8) ? static_cast<std::int32_t>(input.word())
                                     : static_cast<std::int32_t>(input.below(400)) - 200;
  }
  if (entry.takes_a(kResampling)) draw_resampling(input, call);
  if (entry.takes_a(kPlace)) call.in_place = input.below(2) == 1;
  if (entry.takes_a(kCode)) call.coding = status_code(input);
  return call;
}

}  // namespace every
