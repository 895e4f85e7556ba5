#include <quorvane/quorvane.h>

#include <cstring>

#include "digest/sheet.h"
#include "frame/error_texts.h"

namespace digest {

void add_queries(Sheet& sheet) {
  sheet.line("QVN_GetVersion", [](Digest& digest) {
    std::uint32_t version = 0;
    digest.add(QVN_GetVersion(&version));
    digest.add(version);
  });

  sheet.line("QVN_GetTechnoInfo", [](Digest& digest) {
    TechnoInfo info;
    std::memset(&info, 2, sizeof info);
    digest.add(QVN_GetTechnoInfo(&info));
    for (const std::uint8_t flag : info.flags) digest.add(flag <= 1);
  });

  sheet.line("QVN_GetBitsPerPixel", [](Digest& digest) {
    for (std::uint32_t code = 0; code < 256; ++code) {
      std::uint32_t bits = 0x12345678;
      digest.add(QVN_GetBitsPerPixel(code, &bits));
      digest.add(bits);
    }
  });

  sheet.line("QVN_GetErrorInfo", [](Digest& digest) {
    for (const ExpectedText& known : kExpectedTexts) {
      for (const std::uint32_t size : {1U, 10U, 64U}) {
        Buffer<std::uint8_t> text(64, size);
        digest.add(QVN_GetErrorInfo(known.code, static_cast<char*>(static_cast<void*>(text.bytes())), size));
        digest.add(text);
      }
    }
  });
}

}  // namespace digest
