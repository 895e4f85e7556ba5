// The exported functions of the frame room: three queries, which write no line to the log, and the error
// text.
#include "frame/call_frame.h"
#include "frame/error_text.h"
#include "frame/pixel_format.h"
#include "frame/platform.h"

using namespace qvn;

uint32_t QVN_GetVersion(uint32_t* version) {
  *version = version_word.load(std::memory_order_relaxed);
  return QVN_OK;
}

// Flag 2n is capability n of the first word, flag 2n + 1 that of the second. Nothing fills the words: the
// library asks no processor what it can do.
uint32_t QVN_GetTechnoInfo(TechnoInfo* info) {
  if (const uint32_t status = check_pointers({info}); status != QVN_OK) return status;
  constexpr uint32_t kCapabilityBits[] = {0, 1, 2, 3, 4, 8};
  constexpr uint32_t kFirstWord = 0;
  constexpr uint32_t kSecondWord = 0;
  uint8_t* flag = info->flags;
  for (const uint32_t bit : kCapabilityBits) {
    *flag++ = static_cast<uint8_t>(kFirstWord >> bit & 1);
    *flag++ = static_cast<uint8_t>(kSecondWord >> bit & 1);
  }
  return QVN_OK;
}

// The result pointer is tested before the code, against the order of the arguments.
uint32_t QVN_GetBitsPerPixel(ColorCodingId format, uint32_t* bitsPerPixel) {
  if (bitsPerPixel == nullptr) return QVN_E_PARAM2;
  const PixelFormat* found = find_pixel_format(format);
  if (found == nullptr) return QVN_E_PARAM1;
  *bitsPerPixel = found->bits_per_pixel;
  return QVN_OK;
}

uint32_t QVN_GetErrorInfo(uint32_t code, char* buffer, uint32_t size) {
  log_entry(__func__);
  if (buffer == nullptr) return QVN_E_PARAM2;
  if (size == 0) return QVN_E_PARAM3;
  if (!copy_error_text(code, buffer, size)) {
    write_system_text(code, buffer, size);
    trim_line_end(buffer, size);
  }
  return QVN_OK;
}
