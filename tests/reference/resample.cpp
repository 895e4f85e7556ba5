/// One element after the other, from tables that are built as the rule has it: a single-precision step, all
/// that follows in double precision.
#include "reference/resample.h"

#include <cstddef>
#include <limits>

namespace reference {
namespace {

constexpr std::uint32_t kNearest = 0;

std::int32_t to_int32(double value) {
  if (value > -2147483649.0 && value < 2147483648.0) return static_cast<std::int32_t>(value);
  return std::numeric_limits<std::int32_t>::min();
}

std::int64_t to_int64(double value) {
  if (value >= -9223372036854775808.0 && value < 9223372036854775808.0) {
    return static_cast<std::int64_t>(value);
  }
  return std::numeric_limits<std::int64_t>::min();
}

double position_of(std::uint32_t i, float srcRate, float dstRate) {
  const float step = srcRate / dstRate;
  return static_cast<double>(step) * static_cast<double>(i);
}

std::vector<std::int32_t> fraction_table(const std::vector<std::uint32_t>& index, float srcRate,
                                         float dstRate) {
  std::vector<std::int32_t> fraction;
  const auto length = static_cast<std::uint32_t>(index.size());
  for (std::uint32_t i = 0; i < length; ++i) {
    if (index[i] == 0 || index[i] == length - 1) {
      fraction.push_back(0);
    } else {
      const double position = position_of(i, srcRate, dstRate);
      fraction.push_back(to_int32((position - static_cast<double>(index[i])) * 1024.0));
    }
  }
  return fraction;
}

/// first * weight + second * other, wrapped at 32 bits, without its ten fraction bits.
std::uint8_t blend(std::uint8_t first, std::uint32_t weight, std::uint8_t second, std::uint32_t other) {
  const std::uint32_t sum = first * weight + second * other;
  return static_cast<std::uint8_t>(static_cast<std::int32_t>(sum) >> 10);
}

}  // namespace

std::int32_t GetResampledScanlineLength(std::int32_t srcLength, float srcRate, float dstRate) {
  const float product = static_cast<float>(srcLength) * dstRate;
  const std::int32_t length = to_int32(static_cast<double>(product) / static_cast<double>(srcRate));
  if (length % 4 == 0) return length;
  return length / 4 * 4 + 4;
}

std::vector<std::uint32_t> ScanlineIndexTable(std::int32_t dstLength, std::int32_t srcLength, float srcRate,
                                              float dstRate, std::uint32_t method) {
  const auto length = static_cast<std::uint32_t>(dstLength);
  const std::uint32_t limit = (method == kNearest ? static_cast<std::uint32_t>(srcLength) : length) - 1;
  std::vector<std::uint32_t> table;
  for (std::uint32_t i = 0; i < length; ++i) {
    const double position = position_of(i, srcRate, dstRate);
    auto index = static_cast<std::uint32_t>(to_int64(position + 0.5));
    if (index >= limit) index = limit;
    table.push_back(index);
  }
  return table;
}

void ResampleScanlinesEx(std::uint8_t* dst, const std::uint8_t* src, std::int32_t dstLength,
                         std::int32_t dstPitch, std::int32_t srcLength, std::int32_t srcPitch,
                         std::int32_t lineCount, float srcRate, float dstRate, std::uint32_t type,
                         std::uint32_t method) {
  const auto index = ScanlineIndexTable(dstLength, srcLength, srcRate, dstRate, method);
  const auto fraction = fraction_table(index, srcRate, dstRate);
  for (std::int32_t line = 0; line < lineCount; ++line) {
    const std::ptrdiff_t dst_line = std::ptrdiff_t{line} * dstPitch * static_cast<std::ptrdiff_t>(type);
    const std::ptrdiff_t src_line = std::ptrdiff_t{line} * srcPitch * static_cast<std::ptrdiff_t>(type);
    std::uint8_t* out = dst + dst_line;
    for (std::size_t i = 0; i < index.size(); ++i) {
      const std::uint8_t* s = src + src_line + std::size_t{index[i]} * type;
      const std::uint8_t* p = s - type;
      const auto f = static_cast<std::uint32_t>(fraction[i]);
      for (std::uint32_t b = 0; b < type; ++b) {
        if (method == kNearest || fraction[i] == 0) {
          *out = s[b];
        } else if (fraction[i] < 0) {
          *out = blend(s[b], 1024 + f, p[b], 0 - f);
        } else {
          *out = blend(p[b], 1024 - f, s[b], f);
        }
        ++out;
      }
    }
  }
}

}  // namespace reference
