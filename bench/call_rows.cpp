// Functions that make no picture: what a call costs.
#include <array>

#include "entry_rows.h"
#include "quorvane/quorvane.h"

namespace {

constexpr std::array<float, 9> kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

template <uint32_t kCode>
void error_text() {
  std::array<char, 64> text{};
  QVN_GetErrorInfo(kCode, text.data(), text.size());
}

template <auto kCreate>
void create_and_destroy() {
  ColorCorrection* object = nullptr;
  kCreate(kIdentity.data(), &object);
  QVN_DestroyColorCorrection(object);
}

// A block at the start of a frame of 64 x 64 bytes.
template <uint32_t kKind>
void sis() {
  static const std::array<uint8_t, 64 * 64> frame{};
  std::array<uint8_t, 52> block{};
  QVN_GetSIS(block.data(), frame.data(), 64, 64, 0, 0, kKind);
}

}  // namespace

const std::vector<CallRow>& call_rows() {
  static const std::vector<CallRow> rows = {
      {"GetBitsPerPixel",
       [] {
         uint32_t bits = 0;
         QVN_GetBitsPerPixel(4, &bits);
       }},
      {"GetErrorInfo", error_text<QVN_E_PARAM1>},
      {"GetErrorInfo_unknown", error_text<0x12345678>},
      {"GetResampledScanlineLength",
       [] {
         int32_t length = 0;
         QVN_GetResampledScanlineLength(&length, 641, 3, 4);
       }},
      {"GetSIS_12", sis<1>},
      {"GetSIS_52", sis<2>},
      {"CreateColorCorrectionMatrix_Int8", create_and_destroy<QVN_CreateColorCorrectionMatrix_Int8>},
      {"CreateColorCorrectionMatrix_Int16", create_and_destroy<QVN_CreateColorCorrectionMatrix_Int16>},
      // A picture of one group: all but nothing is the call itself.
      {"YUV422ToBGR_one_pair",
       [] {
         static const std::array<uint8_t, 4> source{};
         std::array<uint8_t, 6> picture{};
         QVN_YUV422ToBGR(picture.data(), source.data(), 2);
       }},
  };
  return rows;
}
