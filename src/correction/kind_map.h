// Which rule each family of kernels has for each kind of object: the map that every _CC entry goes by.
#pragma once

#include <cstdint>

#include "correction/color_correction.h"

namespace qvn {

// The six rules, and two refusals, which callers see as one and the same status.
enum class Rule : int32_t {
  kNotServed = -4,    // a kind that this family does not serve
  kUnknownKind = -3,  // a kind that it does not know
  kMatrixFloat = 0,
  kMatrixFixed16,
  kMatrixFixed32,
  kGamma,
  kGammaMatrix,
  kTable,  // of entries of the family's own width: bytes or words
};

// The families, by source and output. The map's columns.
enum class Family : uint32_t { kRaw8, kRaw12ToBgr, kRaw12ToBgr16, kRaw16ToBgr16, kRaw16ToY16 };

struct RulesOfKind {
  Rule of_family[5];
};

inline constexpr RulesOfKind kRulesOfKind[] = {
    // Raw8               Raw12ToBGR            Raw12ToBGR16          Raw16ToBGR16          Raw16ToY16
    /* CcUnset */
    {{Rule::kUnknownKind, Rule::kUnknownKind, Rule::kUnknownKind, Rule::kUnknownKind, Rule::kUnknownKind}},
    /* CcMatrixFloat */
    {{Rule::kMatrixFloat, Rule::kMatrixFloat, Rule::kMatrixFloat, Rule::kMatrixFloat, Rule::kMatrixFloat}},
    /* CcMatrixInt8 */
    {{Rule::kMatrixFixed16, Rule::kNotServed, Rule::kNotServed, Rule::kNotServed, Rule::kNotServed}},
    /* CcMatrixInt16 */
    {{Rule::kNotServed, Rule::kMatrixFixed32, Rule::kMatrixFixed32, Rule::kMatrixFixed32,
      Rule::kMatrixFixed32}},
    /* CcGamma */
    {{Rule::kGamma, Rule::kGamma, Rule::kGamma, Rule::kGamma, Rule::kGamma}},
    /* CcGammaMatrix */
    {{Rule::kGammaMatrix, Rule::kGammaMatrix, Rule::kGammaMatrix, Rule::kGammaMatrix, Rule::kGammaMatrix}},
    /* CcReserved6: known at 8 and 12 bits, unknown at 16 */
    {{Rule::kNotServed, Rule::kNotServed, Rule::kNotServed, Rule::kUnknownKind, Rule::kUnknownKind}},
    /* CcTableList: known in one family alone */
    {{Rule::kUnknownKind, Rule::kUnknownKind, Rule::kUnknownKind, Rule::kUnknownKind, Rule::kNotServed}},
    /* CcTable8 */
    {{Rule::kTable, Rule::kNotServed, Rule::kNotServed, Rule::kNotServed, Rule::kNotServed}},
    /* CcTable16: Raw12ToBGR reads its storage as bytes */
    {{Rule::kNotServed, Rule::kTable, Rule::kTable, Rule::kTable, Rule::kTable}},
};

inline Rule rule_of(Family family, const ColorCorrection* object) {
  const uint32_t kind = kind_of(object);
  return kind <= CcTable16 ? kRulesOfKind[kind].of_family[static_cast<uint32_t>(family)] : Rule::kUnknownKind;
}

}  // namespace qvn
