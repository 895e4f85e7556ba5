/// Queries, and the makers of colour corrections: what can be told of them without a frame.
#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include "every/entry.h"
#include "frame/error_texts.h"
#include "reference/correction.h"

namespace every {
namespace {

Entry version() {
  return {.name = "QVN_GetVersion",
          .takes = kAligned,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return one_to_one(4, 0); },
          .library =
              [](const Call&, const Buffers& b) {
                std::uint32_t word = 0;
                const std::uint32_t status = QVN_GetVersion(&word);
                std::memcpy(b.dst[0], &word, sizeof word);
                return status;
              },
          .reference =
              [](const Call&, const Buffers& b) {
                const std::uint32_t word = 0x02010200;
                std::memcpy(b.dst[0], &word, sizeof word);
                return QVN_OK;
              },
          .null_test = NullTest::kNone,
          .has_source = false};
}

/// All that is promised of a flag is that it is 0 or 1: those that are become 1 here.
Entry techno_info() {
  return {.name = "QVN_GetTechnoInfo",
          .takes = 0,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return one_to_one(sizeof(TechnoInfo), 0); },
          .library =
              [](const Call&, const Buffers& b) {
                auto* const info = static_cast<TechnoInfo*>(static_cast<void*>(b.dst[0]));
                const std::uint32_t status = QVN_GetTechnoInfo(info);
                if (info != nullptr) {
                  for (std::uint8_t& flag : info->flags) flag = flag <= 1 ? 1 : flag;
                }
                return status;
              },
          .reference =
              [](const Call&, const Buffers& b) {
                std::memset(b.dst[0], 1, sizeof(TechnoInfo));
                return QVN_OK;
              },
          .has_source = false};
}

/// 0 for an unknown code.
std::uint32_t bits_of(std::uint32_t coding) {
  constexpr std::array<std::uint32_t, 11> kCamera = {8, 12, 16, 24, 24, 16, 48, 16, 48, 8, 16};
  if (coding < kCamera.size()) return kCamera[coding];
  constexpr std::array<std::uint32_t, 14> kExtensions = {8, 8, 8, 0, 12, 36, 12, 36, 12, 0, 0, 0, 0, 32};
  return coding >= 128 && coding < 142 ? kExtensions[coding - 128] : 0;
}

Entry bits_per_pixel() {
  return {.name = "QVN_GetBitsPerPixel",
          .takes = kFlip | kAligned,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return one_to_one(4, 0); },
          .library =
              [](const Call& c, const Buffers& b) {
                return QVN_GetBitsPerPixel(c.coding,
                                           static_cast<std::uint32_t*>(static_cast<void*>(b.dst[0])));
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                const std::uint32_t bits = bits_of(c.coding);
                if (bits == 0) return QVN_E_PARAM1;
                std::memcpy(b.dst[0], &bits, sizeof bits);
                return QVN_OK;
              },
          .null_test = NullTest::kSecondOnly,
          .has_source = false};
}

/// Codes with a text of the library's own, and codes that have none anywhere.
Entry error_info() {
  return {.name = "QVN_GetErrorInfo",
          .takes = kCode,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call& c) { return one_to_one(c.width, 0); },
          .library =
              [](const Call& c, const Buffers& b) {
                return QVN_GetErrorInfo(c.coding, static_cast<char*>(static_cast<void*>(b.dst[0])), c.width);
              },
          .reference =
              [](const Call& c, const Buffers& b) {
                if (c.width == 0) return QVN_E_PARAM3;
                const char* text = "return code not found";
                for (const ExpectedText& row : kExpectedTexts) {
                  if (row.code == c.coding) text = row.text;
                }
                std::memcpy(b.dst[0], text, std::min<std::size_t>(c.width, std::strlen(text) + 1));
                return QVN_OK;
              },
          .null_test = NullTest::kSecondOnly,
          .has_source = false};
}

// ---- Colour corrections. The matrix is the source; the object's words are the result.

constexpr std::size_t kObjectBytes = 40;

template <auto library>
std::uint32_t create(const Call&, const Buffers& b) {
  ColorCorrection* object = nullptr;
  const std::uint32_t status = library(static_cast<const float*>(static_cast<const void*>(b.src)), &object);
  std::memcpy(b.dst[0], object, kObjectBytes);
  return status | QVN_DestroyColorCorrection(object);
}

template <auto library, std::uint32_t kKind>
Entry creator(std::string_view name) {
  return {.name = name,
          .takes = kAligned,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return one_to_one(kObjectBytes, 9 * sizeof(float)); },
          .library = create<library>,
          .reference =
              [](const Call&, const Buffers& b) {
                std::array<float, 9> matrix;
                std::memcpy(matrix.data(), b.src, sizeof matrix);
                const auto words = reference::created_words(kKind, matrix.data());
                std::memcpy(b.dst[0], words.data(), sizeof words);
                return QVN_OK;
              },
          .without_memory = WithoutMemory::kThrows,
          .null_test = NullTest::kNone};
}

std::uint32_t kind_to_destroy(const Call& c) { return c.coding % 16; }

/// What an object of a kind is made of, laid down in memory of operator new.
ColorCorrection* new_object(std::uint32_t kind) {
  void* const object = ::operator new(sizeof(ColorCorrectionTable));
  ColorCorrectionTable table = {kind, 0, nullptr, nullptr, nullptr, nullptr};
  if (kind == CcTable8 || kind == CcTable16) {
    table.first = ::operator new(16);
    table.last = static_cast<char*>(table.first) + 16;
  } else if (kind == CcTableList) {
    const ColorCorrectionNested nested = {nullptr, ::operator new(8), nullptr, nullptr};
    table.first = ::operator new(sizeof nested);
    std::memcpy(table.first, &nested, sizeof nested);
    table.last = static_cast<char*>(table.first) + sizeof nested;
  }
  table.end = table.last;
  std::memcpy(object, &table, sizeof table);
  return static_cast<ColorCorrection*>(object);
}

/// A kind of 15 stands for no object at all.
Entry destroy() {
  return {.name = "QVN_DestroyColorCorrection",
          .takes = kCode,
          .sizes = {},
          .tight = nullptr,
          .shape = [](const Call&) { return Shape{}; },
          .library =
              [](const Call& c, const Buffers&) {
                const std::uint32_t kind = kind_to_destroy(c);
                ColorCorrection* const object = kind == 15 ? nullptr : new_object(kind);
                const std::uint32_t status = QVN_DestroyColorCorrection(object);
                if (status == QVN_E_ABORTED) ::operator delete(static_cast<void*>(object));
                return status;
              },
          .reference =
              [](const Call& c, const Buffers&) {
                const std::uint32_t kind = kind_to_destroy(c);
                return kind == 15 ? QVN_E_PARAM1 : kind > 9 ? QVN_E_ABORTED : QVN_OK;
              },
          .null_test = NullTest::kNone,
          .has_source = false};
}

}  // namespace

std::vector<Entry> query_entries() {
  return {
      version(),
      techno_info(),
      bits_per_pixel(),
      error_info(),
      creator<QVN_CreateColorCorrectionMatrix_Int8, CcMatrixInt8>("QVN_CreateColorCorrectionMatrix_Int8"),
      creator<QVN_CreateColorCorrectionMatrix_Int16, CcMatrixInt16>("QVN_CreateColorCorrectionMatrix_Int16"),
      destroy()};
}

}  // namespace every
