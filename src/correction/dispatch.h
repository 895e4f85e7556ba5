// From an object to its rule: what stands between a _CC entry and its kernel.
#pragma once

#include "correction/gamma.h"
#include "correction/kind_map.h"
#include "correction/matrix_fixed.h"
#include "correction/table.h"

namespace qvn {

// What goes through a rule in the conversion of a frame.
struct SampleRange {
  uint32_t values;   // samples, and results that go through it again, are below this
  uint64_t samples;  // how many samples there are
};

// Runs kernel(rule) with a rule made of the arguments. Never inlined, so that the curves of rules that are
// not run take no stack.
template <class CorrectionRule, class Kernel, class... Arguments>
[[gnu::noinline]] void run_rule(const Kernel& kernel, const Arguments&... arguments) {
  CorrectionRule rule(arguments...);
  kernel(rule);
}

template <class T, class Kernel>
void run_table(const ColorCorrection* object, const SampleRange& range, const Kernel& kernel) {
  const TableEntries<T> entries(object);
  if (entries.cover(range.values)) {
    run_rule<Table<T>>(kernel, entries);
  } else {
    run_rule<ShortTable<T>>(kernel, entries);
  }
}

template <template <class, class> class GammaRule, class T, class Kernel>
void run_gamma(const ColorCorrection* object, const SampleRange& range, const Kernel& kernel) {
  constexpr uint32_t kTableValues = sizeof(T) == 1 ? 256 : 4096;
  if (range.samples < range.values) {
    run_rule<GammaRule<T, RecipeCurve<T>>>(kernel, object);
  } else if (range.values <= kTableValues) {
    run_rule<GammaRule<T, TableCurve<T, kTableValues>>>(kernel, object);
  } else if constexpr (sizeof(T) == 2) {
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
