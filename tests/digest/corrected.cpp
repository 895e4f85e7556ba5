/// Colour corrections: the objects, and the functions that take one.
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <limits>

#include "digest/sheet.h"

namespace digest {
namespace {

using Matrix = std::array<float, 9>;

constexpr Matrix kMatrices[] = {
    {1, 0, 0, 0, 1, 0, 0, 0, 1},
    {0.75F, 0.25F, 0, 0.125F, 0.75F, 0.125F, 0, 0.25F, 0.75F},
    {1.7F, -0.5F, -0.2F, -0.3F, 1.6F, -0.3F, 0.1F, -0.8F, 1.7F},
    {-1e30F, 1e18F, 3e9F, 40000.5F, -0.001F, 7, -300.25F, 1e12F, 0.999F},
};

/// Both kinds of the same numbers.
struct Objects {
  ColorCorrectionFloat floats = {};
  ColorCorrectionFixed fixed = {};
};

Objects objects_of(const Matrix& matrix) {
  Objects objects;
  for (std::size_t i = 0; i < matrix.size(); ++i) {
    objects.floats.matrix[i] = matrix[i];
    const float fixed = matrix[i] * 1024;
    objects.fixed.coefficients[i] =
        fixed > -1e6F && fixed < 1e6F ? static_cast<std::int32_t>(fixed) : 0x12345678;
  }
  return objects;
}

const ColorCorrection* as_correction(const void* object) {
  return static_cast<const ColorCorrection*>(object);
}

/// `run(correction)` with every object of a kind. Tables hold an entry for every number that a sample can be.
template <typename Run>
void for_each_object(std::uint32_t kind, Run run) {
  if (kind == CcTable8 || kind == CcTable16) {
    Buffer<std::uint8_t> bytes(256, kind);
    Buffer<std::uint16_t> words(65536, kind);
    ColorCorrectionTable table = {};
    table.kind = kind;
    table.first = kind == CcTable8 ? static_cast<void*>(bytes.data()) : words.data();
    table.last = kind == CcTable8 ? static_cast<void*>(bytes.data() + 256) : words.data() + 65536;
    table.end = table.last;
    run(as_correction(&table));
    return;
  }
  for (const Matrix& matrix : kMatrices) {
    Objects objects = objects_of(matrix);
    objects.floats.kind = kind;
    objects.fixed.kind = kind;
    run(kind == CcMatrixFloat ? as_correction(&objects.floats) : as_correction(&objects.fixed));
  }
}

template <typename Number>
using Corrected = std::uint32_t (*)(Number*, const std::uint8_t*, std::uint32_t, std::uint32_t, BayerPattern,
                                    const ColorCorrection*);
using ShiftedCorrected = std::uint32_t (*)(std::uint16_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                           BayerPattern, std::uint32_t, const ColorCorrection*);

/// `run(digest, frame, pattern, correction)`, a line without a correction and one for each kind whose results
/// are the same everywhere; kinds that the function does not serve are refused.
template <typename Run>
void add_kinds(Sheet& sheet, const std::string& name, Run run) {
  const auto add_frames = [&](Digest& digest, const ColorCorrection* correction) {
    for (const Size& frame : kFrames) {
      for (const std::uint32_t pattern : {0U, 1U, 2U, 3U}) run(digest, frame, pattern, correction);
    }
  };
  sheet.line(name + " no correction", [&](Digest& digest) { add_frames(digest, nullptr); });
  for (const std::uint32_t kind : {0U, 1U, 2U, 3U, 8U, 9U, 10U}) {
    if (kind == CcTable16 && name == "QVN_Raw12ToBGR_CC") continue;
    sheet.line(name + " kind " + std::to_string(kind), [&](Digest& digest) {
      for_each_object(kind, [&](const ColorCorrection* object) { add_frames(digest, object); });
    });
  }
}

template <typename Number, typename Call>
void add_frame(Digest& digest, const Size& frame, Call call) {
  const std::size_t samples = std::size_t{frame.width} * frame.height;
  add_call<Number, std::uint8_t>(digest, 3 * samples, 2 * samples, call);
}

template <typename Number>
void add_entry(Sheet& sheet, const char* name, Corrected<Number> convert) {
  add_kinds(sheet, name,
            [=](Digest& digest, const Size& frame, std::uint32_t pattern, const ColorCorrection* object) {
              add_frame<Number>(digest, frame, [&](Number* dst, const std::uint8_t* src) {
                return convert(dst, src, frame.width, frame.height, pattern, object);
              });
            });
}

void add_entry(Sheet& sheet, const char* name, ShiftedCorrected convert) {
  add_kinds(sheet, name,
            [=](Digest& digest, const Size& frame, std::uint32_t pattern, const ColorCorrection* object) {
              for (const std::uint32_t shift : {0U, 4U, 25U, 32U}) {
                add_frame<std::uint16_t>(digest, frame, [&](std::uint16_t* dst, const std::uint8_t* src) {
                  return convert(dst, src, frame.width, frame.height, pattern, shift, object);
                });
              }
            });
}

using Creator = std::uint32_t (*)(const float*, ColorCorrection**);

void add_created(Digest& digest, Creator create, const Matrix& matrix) {
  ColorCorrection* object = nullptr;
  digest.add(create(matrix.data(), &object));
  ColorCorrectionFixed fixed;
  std::memcpy(&fixed, object, sizeof fixed);
  digest.add(fixed.kind);
  for (const std::int32_t coefficient : fixed.coefficients) digest.add(coefficient);
  digest.add(QVN_DestroyColorCorrection(object));
}

void add_creator(Sheet& sheet, const char* name, Creator create) {
  sheet.line(name, [=](Digest& digest) {
    for (const Matrix& matrix : kMatrices) add_created(digest, create, matrix);
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    add_created(digest, create,
                {kInfinity, -kInfinity, kNaN, 2097151.875F, 2097152, -2097152, 0.99999F, -0.0009F, -0.0F});
  });
}

}  // namespace

void add_corrected(Sheet& sheet) {
  add_creator(sheet, "QVN_CreateColorCorrectionMatrix_Int8", QVN_CreateColorCorrectionMatrix_Int8);
  add_creator(sheet, "QVN_CreateColorCorrectionMatrix_Int16", QVN_CreateColorCorrectionMatrix_Int16);
  sheet.line("QVN_DestroyColorCorrection", [](Digest& digest) {
    ColorCorrectionFixed unknown = {};
    unknown.kind = 10;
    digest.add(QVN_DestroyColorCorrection(nullptr));
    digest.add(QVN_DestroyColorCorrection(static_cast<ColorCorrection*>(static_cast<void*>(&unknown))));
  });
  add_entry(sheet, "QVN_Raw8ToBGR_CC", QVN_Raw8ToBGR_CC);
  add_entry(sheet, "QVN_Raw8ToY8_CC", QVN_Raw8ToY8_CC);
  add_entry(sheet, "QVN_Raw12ToBGR_CC", QVN_Raw12ToBGR_CC);
  add_entry(sheet, "QVN_Raw12ToBGR16_CC", QVN_Raw12ToBGR16_CC);
  add_entry(sheet, "QVN_Raw16ToBGR16_CC", QVN_Raw16ToBGR16_CC);
  add_entry(sheet, "QVN_Raw16ToY16_CC", QVN_Raw16ToY16_CC);
}

}  // namespace digest
