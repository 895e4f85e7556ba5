// From an object to its rule: what stands between a _CC entry and its kernel.
#pragma once

#include <limits>

#include "correction/gamma.h"
#include "correction/kind_map.h"
#include "correction/matrix_fixed.h"
#include "correction/table.h"

namespace qvn {

// What goes through a rule in the conversion of a frame.
struct SampleRange {
  uint32_t values;           // samples of windows are below this
  uint64_t samples;          // how many samples there are
  bool and_results = false;  // whether results, of whatever size, go through it again
};

// Runs kernel(rule) with a rule made of the arguments. Never inlined, so that the curves of rules that are
// not run take no stack.
template <class CorrectionRule, class Kernel, class... Arguments>
[[gnu::noinline]] void run_rule(const Kernel& kernel, const Arguments&... arguments) {
  CorrectionRule rule(arguments...);
  kernel(rule);
}

// Whether no look-up can leave a table. To look through all entries pays where there are fewer of them than
// samples.
template <class T>
bool stays_inside(const TableEntries<T>& entries, const SampleRange& range) {
  constexpr uint32_t kAllValues = std::numeric_limits<T>::max() + 1U;
  if (!range.and_results || entries.cover(kAllValues)) return entries.cover(range.values);
  return entries.cover(range.values) && range.values <= range.samples && entries.hold_indices(range.values);
}

template <class T, class Kernel>
void run_table(const ColorCorrection* object, const SampleRange& range, const Kernel& kernel) {
  const TableEntries<T> entries(object);
  if (stays_inside(entries, range)) {
    run_rule<Table<T>>(kernel, entries);
  } else {
    run_rule<ShortTable<T>>(kernel, entries);
  }
}

template <template <class, class> class GammaRule, class T, class Kernel>
void run_gamma(const ColorCorrection* object, const SampleRange& range, const Kernel& kernel) {
  if (range.samples < range.values) {
    run_rule<GammaRule<T, RecipeCurve<T>>>(kernel, object);
  } else if constexpr (sizeof(T) == 1) {
    run_rule<GammaRule<T, ByteCurve>>(kernel, object);
  } else if (range.values <= ShortWordCurve::kValues && !range.and_results) {
    run_rule<GammaRule<T, ShortWordCurve>>(kernel, object);
  } else {
    run_rule<GammaRule<T, RecentCurve>>(kernel, object);
  }
}

// Runs kernel(rule) by the rule for planes of T that the map names. A refusal is returned and runs nothing.
template <class T, class Kernel>
int32_t dispatch(Family family, const ColorCorrection* object, const SampleRange& range,
                 const Kernel& kernel) {
  const Rule rule = rule_of(family, object);
  switch (rule) {
    case Rule::kNotServed:
    case Rule::kUnknownKind:
      return static_cast<int32_t>(rule);
    case Rule::kMatrixFloat:
      run_rule<MatrixFloat<T>>(kernel, object);
      break;
    case Rule::kMatrixFixed16:
      if constexpr (sizeof(T) == 1) run_rule<MatrixFixed16>(kernel, object);
      break;
    case Rule::kMatrixFixed32:
      run_rule<MatrixFixed32<T>>(kernel, object);
      break;
    case Rule::kGamma:
      run_gamma<Gamma, T>(object, range, kernel);
      break;
    case Rule::kGammaMatrix:
      run_gamma<GammaMatrix, T>(object, range, kernel);
      break;
    case Rule::kTable:
      run_table<T>(object, range, kernel);
      break;
  }
  return 0;
}

}  // namespace qvn
