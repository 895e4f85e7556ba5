/// Differential fuzzing of all 76 functions: one input is one call, made by the library and by the reference
/// in separate guarded memory (every/trial.h), and whatever differs ends the program.
///
/// Undefined territory is not drawn: sizes that run away (a Bayer frame narrower than 2 or lower than 1, an
/// odd count of QVN_Y12ImageTransform, one pair of chroma in a half frame and the like; see the limits of
/// each entry), a table without storage, null pointers that a function does not test, status codes whose text
/// is the system's. Sizes outside the contract that have an outcome are drawn, with room around the buffers.
///
/// The first byte is the entry, what follows are its arguments, the rest is what the source begins with.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "every/draw.h"
#include "every/trial.h"
#include "frame/failing_new.h"

namespace {

std::size_t count_before = 0;
std::size_t number_to_fail = 0;

constexpr every::Allocations kAllocations = {
    [](std::size_t number) {
      number_to_fail = number;
      count_before = support::allocation_count();
      support::fail_allocation(number);
    },
    [] { return support::allocation_count() - count_before >= number_to_fail; }};

every::Trial draw_trial(const every::Entry& entry, every::Input& input) {
  every::Trial trial;
  trial.place = static_cast<every::Place>(input.below(3));
  trial.dst_offset = input.below(64);
  trial.src_offset = input.below(64);
  trial.contents = input.word();
  if (input.once_in(16)) trial.nulls = input.below(32);
  if (input.once_in(16) && entry.name != "QVN_DestroyColorCorrection") {
    trial.allocations = &kAllocations;
    trial.failing_allocation = 1 + input.below(4);
  }
  return trial;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  every::Input input(data, size);
  const every::Entry& entry = every::table()[input.below(static_cast<std::uint32_t>(every::table().size()))];
  every::Trial trial = draw_trial(entry, input);
  const every::Call call = every::draw_call(entry, input);
  trial.head = input.rest();
  const every::Verdict verdict = every::try_call(entry, call, trial);
  if (verdict.trouble.empty()) return 0;
  std::fprintf(stderr, "%s: %s\n", every::text_of(entry, call).c_str(), verdict.trouble.c_str());
  std::abort();
}
