// The rows of the correction and deep rooms: each corrected entry with each of its rules.
#include <array>
#include <numeric>

#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr uint32_t kByte = 12;  // entry_rows.h counts in twelfths
constexpr uint32_t kPacked12 = kByte + kByte / 2;

// A camera's colour matrix.
ColorCorrectionFloat floats(uint32_t kind, float max_value) {
  return {kind, 0, {1.4F, -0.3F, -0.1F, -0.2F, 1.3F, -0.1F, 0, -0.4F, 1.4F}, 0.45F, max_value};
}
const ColorCorrectionFixed kFixed8 = {CcMatrixInt8, {1400, -300, -76, -200, 1300, -76, 0, -400, 1424}};
const ColorCorrectionFixed kFixed16 = {CcMatrixInt16, {1400, -300, -76, -200, 1300, -76, 0, -400, 1424}};

std::array<uint16_t, 65536> words = [] {
  std::array<uint16_t, 65536> all{};
  std::iota(all.rbegin(), all.rend(), uint16_t{0});
  return all;
}();
const ColorCorrectionTable kTable8 = {CcTable8,          0, nullptr, words.data(), words.data() + 128,
                                      words.data() + 128};
const ColorCorrectionTable kTable16 = {
    CcTable16, 0, nullptr, words.data(), words.data() + words.size(), words.data() + words.size()};

// As many entries as samples of 12 bits have values.
std::array<uint16_t, 4096> words12 = [] {
  std::array<uint16_t, 4096> all{};
  std::iota(all.rbegin(), all.rend(), uint16_t{0});
  return all;
}();
const ColorCorrectionTable kTable12 = {
    CcTable16, 0, nullptr, words12.data(), words12.data() + words12.size(), words12.data() + words12.size()};

const ColorCorrectionFloat kMatrix = floats(CcMatrixFloat, 0);
const ColorCorrectionFloat kGamma8 = floats(CcGamma, 255), kGamma12 = floats(CcGamma, 4095),
                           kGamma16 = floats(CcGamma, 65535);
const ColorCorrectionFloat kGammaMatrix8 = floats(CcGammaMatrix, 255),
                           kGammaMatrix12 = floats(CcGammaMatrix, 4095),
                           kGammaMatrix16 = floats(CcGammaMatrix, 65535);

uint16_t* words_of(uint8_t* dst) { return reinterpret_cast<uint16_t*>(dst); }

template <const auto& kObject>
const ColorCorrection* object() {
  return reinterpret_cast<const ColorCorrection*>(&kObject);
}

// Entries of bytes, of words, and of words with a shift, called with an object.
template <auto kEntry, const auto& kObject>
void to_bytes(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width, height, 0, object<kObject>());
}
template <auto kEntry, const auto& kObject>
void to_words(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(words_of(dst), src, width, height, 0, object<kObject>());
}
template <auto kEntry, uint32_t kShift, const auto& kObject>
void shifted(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(words_of(dst), src, width, height, 0, kShift, object<kObject>());
}
template <auto kEntry, uint32_t kShift>
void plain_shifted(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(words_of(dst), src, width, height, 0, kShift);
}

}  // namespace

const std::vector<EntryRow>& correction_rows() {
  static const std::vector<EntryRow> rows = {
      {"Raw12ToBGR", kPacked12, 3 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw12ToBGR(dst, src, width, height, 0);
       }},
      {"Raw12ToBGR16", kPacked12, 6 * kByte,
       [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
         QVN_Raw12ToBGR16(words_of(dst), src, width, height, 0);
       }},
      {"Raw16ToBGR16", 2 * kByte, 6 * kByte, plain_shifted<QVN_Raw16ToBGR16, 0>},
      {"Raw16ToBGR16_shift4", 2 * kByte, 6 * kByte, plain_shifted<QVN_Raw16ToBGR16, 4>},
      {"Raw16ToY16", 2 * kByte, 2 * kByte, plain_shifted<QVN_Raw16ToY16, 0>},
      {"Raw16ToY16_shift4", 2 * kByte, 2 * kByte, plain_shifted<QVN_Raw16ToY16, 4>},

      {"Raw8ToBGR_CC_float", kByte, 3 * kByte, to_bytes<QVN_Raw8ToBGR_CC, kMatrix>},
      {"Raw8ToBGR_CC_fixed", kByte, 3 * kByte, to_bytes<QVN_Raw8ToBGR_CC, kFixed8>},
      {"Raw8ToBGR_CC_table", kByte, 3 * kByte, to_bytes<QVN_Raw8ToBGR_CC, kTable8>},
      {"Raw8ToBGR_CC_gamma", kByte, 3 * kByte, to_bytes<QVN_Raw8ToBGR_CC, kGamma8>},
      {"Raw8ToBGR_CC_gamma_matrix", kByte, 3 * kByte, to_bytes<QVN_Raw8ToBGR_CC, kGammaMatrix8>},
      {"Raw8ToY8_CC_float", kByte, kByte, to_bytes<QVN_Raw8ToY8_CC, kMatrix>},
      {"Raw8ToY8_CC_fixed", kByte, kByte, to_bytes<QVN_Raw8ToY8_CC, kFixed8>},
      {"Raw8ToY8_CC_table", kByte, kByte, to_bytes<QVN_Raw8ToY8_CC, kTable8>},
      {"Raw8ToY8_CC_gamma", kByte, kByte, to_bytes<QVN_Raw8ToY8_CC, kGamma8>},
      {"Raw8ToY8_CC_gamma_matrix", kByte, kByte, to_bytes<QVN_Raw8ToY8_CC, kGammaMatrix8>},

      {"Raw12ToBGR_CC_float", kPacked12, 3 * kByte, to_bytes<QVN_Raw12ToBGR_CC, kMatrix>},
      {"Raw12ToBGR_CC_fixed", kPacked12, 3 * kByte, to_bytes<QVN_Raw12ToBGR_CC, kFixed16>},
      {"Raw12ToBGR_CC_table", kPacked12, 3 * kByte, to_bytes<QVN_Raw12ToBGR_CC, kTable16>},
      {"Raw12ToBGR_CC_gamma", kPacked12, 3 * kByte, to_bytes<QVN_Raw12ToBGR_CC, kGamma8>},
      {"Raw12ToBGR_CC_gamma_matrix", kPacked12, 3 * kByte, to_bytes<QVN_Raw12ToBGR_CC, kGammaMatrix8>},
      {"Raw12ToBGR16_CC_float", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kMatrix>},
      {"Raw12ToBGR16_CC_fixed", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kFixed16>},
      {"Raw12ToBGR16_CC_table", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kTable16>},
      {"Raw12ToBGR16_CC_table4096", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kTable12>},
      {"Raw12ToBGR16_CC_gamma", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kGamma12>},
      {"Raw12ToBGR16_CC_gamma_matrix", kPacked12, 6 * kByte, to_words<QVN_Raw12ToBGR16_CC, kGammaMatrix12>},

      {"Raw16ToBGR16_CC_float", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 0, kMatrix>},
      {"Raw16ToBGR16_CC_fixed", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 0, kFixed16>},
      {"Raw16ToBGR16_CC_table", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 0, kTable16>},
      {"Raw16ToBGR16_CC_gamma", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 0, kGamma16>},
      {"Raw16ToBGR16_CC_gamma_matrix", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 0, kGammaMatrix16>},
      {"Raw16ToBGR16_CC_shift4_table4096", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 4, kTable12>},
      {"Raw16ToBGR16_CC_shift4_gamma", 2 * kByte, 6 * kByte, shifted<QVN_Raw16ToBGR16_CC, 4, kGamma12>},
      {"Raw16ToBGR16_CC_shift4_gamma_matrix", 2 * kByte, 6 * kByte,
       shifted<QVN_Raw16ToBGR16_CC, 4, kGammaMatrix12>},
      {"Raw16ToY16_CC_float", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 0, kMatrix>},
      {"Raw16ToY16_CC_fixed", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 0, kFixed16>},
      {"Raw16ToY16_CC_table", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 0, kTable16>},
      {"Raw16ToY16_CC_gamma", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 0, kGamma16>},
      {"Raw16ToY16_CC_gamma_matrix", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 0, kGammaMatrix16>},
      {"Raw16ToY16_CC_shift4_float", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 4, kMatrix>},
      {"Raw16ToY16_CC_shift4_fixed", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 4, kFixed16>},
      {"Raw16ToY16_CC_shift4_table", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 4, kTable16>},
      {"Raw16ToY16_CC_shift4_table4096", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 4, kTable12>},
      {"Raw16ToY16_CC_shift4_gamma", 2 * kByte, 2 * kByte, shifted<QVN_Raw16ToY16_CC, 4, kGamma12>},
      {"Raw16ToY16_CC_shift4_gamma_matrix", 2 * kByte, 2 * kByte,
       shifted<QVN_Raw16ToY16_CC, 4, kGammaMatrix12>},
  };
  return rows;
}
