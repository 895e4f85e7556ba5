#include "correction/color_correction.h"

#include <new>
#include <stdexcept>

#include "pixel/defined_conversion.h"

namespace qvn {

namespace {

constexpr float kOne = 1024.0F;  // 1.0 with 10 fraction bits

// The storage of a record of tables, outer or nested.
template <class Record>
void release_storage(Record& table) {
  if (table.first != nullptr) ::operator delete(table.first);
  table.first = table.last = table.end = nullptr;
}

void release_nested(const ColorCorrectionTable& list) {
  auto* const last = static_cast<ColorCorrectionNested*>(list.last);
  for (auto* table = static_cast<ColorCorrectionNested*>(list.first); table < last; ++table) {
    release_storage(*table);
  }
}

}  // namespace

ColorCorrection* create_matrix(uint32_t kind, const float* matrix) {
  auto* const object = new ColorCorrectionFixed{kind, {}};
  for (int32_t& coefficient : object->coefficients) coefficient = truncate_to_int32(*matrix++ * kOne);
  return reinterpret_cast<ColorCorrection*>(object);
}

Destroyed destroy_color_correction(ColorCorrection* object) {
  if (object == nullptr) return Destroyed::kNoObject;
  try {
    const uint32_t kind = kind_of(object);
    if (kind > CcTable16) throw std::invalid_argument("tried to destroy unknown type");
    if (kind >= CcTableList) {
      auto& table = *reinterpret_cast<ColorCorrectionTable*>(object);
      if (kind == CcTableList && table.first != nullptr) release_nested(table);
      release_storage(table);
    }
    ::operator delete(object);
    return Destroyed::kReleased;
  } catch (...) {
    return Destroyed::kFailed;
  }
}

}  // namespace qvn
