// Parsing of corrections, the objects, and the arithmetic of the tool's own corrections.
#include "correction.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "failure.h"
#include "files.h"
#include "formats.h"
#include "numbers.h"

namespace qvn::tool {
namespace {

constexpr std::uint64_t kLongestTable = std::uint64_t{1} << 20;

template <class Number>
std::vector<Number> parse_numbers(const std::string& option, const std::string& text, std::size_t count) {
  std::vector<Number> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  bool whole = false;
  while (!whole) {
    Number number = 0;
    const auto parsed = std::from_chars(at, end, number);
    if (parsed.ec != std::errc{} || !std::isfinite(number)) {
      break;
    }
    numbers.push_back(number);
    whole = parsed.ptr == end;
    if (!whole && *parsed.ptr != ',') {
      break;
    }
    at = parsed.ptr + (whole ? 0 : 1);
  }
  if (!whole || numbers.size() != count) {
    throw Failure(option + ": expected " +
                  (count == 1 ? "a number" : std::to_string(count) + " numbers with commas between") +
                  ", found " + quoted(text));
  }
  return numbers;
}

/// Whole numbers with white space between them.
std::vector<std::uint32_t> read_table(const std::string& path) {
  InputStream input(path);
  const std::string& name = input.name();
  const std::vector<std::uint8_t> bytes = input.read(kLongestTable);
  if (!input.at_end()) {
    throw Failure(name + " is too long for a table: expected at most " + std::to_string(kLongestTable) +
                  " bytes");
  }
  const std::string text(bytes.begin(), bytes.end());
  constexpr const char* kSpace = " \t\r\n";
  std::vector<std::uint32_t> table;
  for (std::size_t at = text.find_first_not_of(kSpace); at != std::string::npos;) {
    const std::size_t end = std::min(text.find_first_of(kSpace, at), text.size());
    table.push_back(static_cast<std::uint32_t>(parse_whole(name, text.substr(at, end - at), 0, 65535)));
    at = text.find_first_not_of(kSpace, end);
  }
  return table;
}

/// The samples of a mosaic one by one, whatever their format.
class Samples {
 public:
  explicit Samples(Frame& frame)
      : bytes_(frame.bytes),
        bits_(sample_bits(*frame.format, frame.form)),
        packed_(frame.format->group == 2),
        wide_(frame.format->group_bytes == 2),
        high_first_(frame.format->name.ends_with("be")),
        low_(frame.form.low) {}

  std::uint32_t top() const { return (1U << bits_) - 1; }

  std::uint32_t at(std::size_t i) const {
    if (packed_) {
      const std::size_t group = i / 2 * 3;
      const std::uint32_t nibbles = bytes_[group + 1];
      return i % 2 == 0 ? bytes_[group] * 16U + (nibbles & 15) : bytes_[group + 2] * 16U + (nibbles >> 4);
    }
    if (!wide_) {
      return bytes_[i];
    }
    const std::uint32_t word =
        bytes_[2 * i + (high_first_ ? 0 : 1)] * 256U + bytes_[2 * i + (high_first_ ? 1 : 0)];
    return low_ ? word & top() : word >> (16 - bits_);
  }

  void set(std::size_t i, std::uint32_t level) {
    if (packed_) {
      std::uint8_t* const group = bytes_.data() + i / 2 * 3;
      group[i % 2 * 2] = low_byte(level >> 4);
      group[1] =
          i % 2 == 0 ? low_byte((group[1] & 0xF0U) | (level & 15)) : low_byte((group[1] & 15U) | level << 4);
    } else if (!wide_) {
      bytes_[i] = low_byte(level);
    } else {
      const std::uint32_t word = low_ ? level : level << (16 - bits_);
      bytes_[2 * i + (high_first_ ? 0 : 1)] = low_byte(word >> 8);
      bytes_[2 * i + (high_first_ ? 1 : 0)] = low_byte(word);
    }
  }

 private:
  static std::uint8_t low_byte(std::uint32_t word) { return static_cast<std::uint8_t>(word & 0xFF); }

  std::vector<std::uint8_t>& bytes_;
  std::uint32_t bits_;
  bool packed_;
  bool wide_;
  bool high_first_;
  bool low_;
};

std::size_t channel_of(char colour) { return colour == 'r' ? 0 : colour == 'g' ? 1 : 2; }

/// Calls visit(place, channel) for every sample.
template <class Visit>
void visit_samples(const Frame& frame, Visit visit) {
  std::size_t i = 0;
  for (std::uint32_t y = 0; y < frame.size.height; ++y) {
    for (std::uint32_t x = 0; x < frame.size.width; ++x, ++i) {
      visit(i, channel_of(frame.pattern->colour_at(x, y)));
    }
  }
}

using Gains = std::array<double, 3>;

Gains grey_world(const Frame& frame, const Samples& samples, std::uint32_t black) {
  Gains sums{};
  std::array<std::uint64_t, 3> counts{};
  visit_samples(frame, [&](std::size_t i, std::size_t channel) {
    const std::uint32_t level = samples.at(i);
    sums.at(channel) += level - std::min(level, black);
    ++counts.at(channel);
  });
  Gains means{};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    means.at(channel) =
        counts.at(channel) == 0 ? 0 : sums.at(channel) / static_cast<double>(counts.at(channel));
    if (means.at(channel) <= 0) {
      throw Failure("--wb auto: expected light in all three colours, found none in " +
                    std::string(channel == 0   ? "red"
                                : channel == 1 ? "green"
                                               : "blue"));
    }
  }
  const double brightest = *std::max_element(means.begin(), means.end());
  return {brightest / means[0], brightest / means[1], brightest / means[2]};
}

std::string to_text(const Gains& gains) {
  std::string text;
  for (const double gain : gains) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), gain);
    append_part(text, ",", {digits.data(), written.ptr});
  }
  return text;
}

}  // namespace

Matrix parse_matrix(const std::string& option, const std::string& text) {
  const std::vector<float> numbers = parse_numbers<float>(option, text, 9);
  Matrix matrix{};
  std::copy(numbers.begin(), numbers.end(), matrix.begin());
  return matrix;
}

Correction::Correction(const CorrectionOptions& options, const CorrectionLimits& limits) {
  const int told = int{!options.matrix.empty() || !options.gamma.empty()} +
                   int{!options.matrix_fixed.empty()} + int{!options.table.empty()};
  if (told > 1) {
    throw Failure(
        "expected one correction of the library: --matrix, --gamma or both, --matrix-fixed, or --table");
  }
  if (!options.table.empty()) {
    const std::vector<std::uint32_t> table = read_table(options.table);
    const std::size_t wanted = std::size_t{1} << limits.index_bits;
    const std::uint32_t top = (1U << (limits.looks_twice ? limits.index_bits : limits.output_bits)) - 1;
    if (table.size() != wanted) {
      throw Failure(quoted(options.table) + ": expected a table of " + std::to_string(wanted) +
                    " numbers, found " + std::to_string(table.size()));
    }
    if (const std::uint32_t most = *std::max_element(table.begin(), table.end()); most > top) {
      throw Failure(quoted(options.table) + ": expected numbers up to " + std::to_string(top) + ", found " +
                    std::to_string(most));
    }
    const std::vector<std::uint16_t> words(table.begin(), table.end());
    std::vector<std::uint8_t> bytes;
    std::transform(table.begin(), table.end(), std::back_inserter(bytes),
                   [](std::uint32_t value) { return static_cast<std::uint8_t>(value & 0xFF); });
    object_ = limits.fixed_int8          ? quorvane::Correction::table8(bytes)
              : limits.output_bits == 16 ? quorvane::Correction::table16(words)
                                         : quorvane::Correction::table16_of_bytes(bytes);
    return;
  }
  if (!options.matrix_fixed.empty()) {
    const Matrix matrix = parse_matrix("--matrix-fixed", options.matrix_fixed);
    if (limits.fixed_int8) {
      object_ = quorvane::Correction::fixed_int8(matrix);
      about_ =
          "the fixed-point matrix of 8-bit frames gives levels of 0 to 31 only; --matrix-clamped does not";
      return;
    }
    object_ = quorvane::Correction::fixed_int16(matrix);
    if (limits.output_bits == 8) {
      about_ = "the fixed-point matrix wraps at 256 in this conversion; --matrix-clamped does not";
    }
    return;
  }
  Matrix matrix{};
  if (!options.matrix.empty()) {
    matrix = parse_matrix("--matrix", options.matrix);
    about_ =
        "the floating-point matrix does not stop at black and white, highlights wrap; --matrix-clamped does";
  }
  if (options.gamma.empty()) {
    object_ = quorvane::Correction::matrix(matrix);
    return;
  }
  const float gamma = parse_numbers<float>("--gamma", options.gamma, 1)[0];
  if (gamma <= 0) {
    throw Failure("--gamma: expected a number above 0, found " + quoted(options.gamma));
  }
  const auto white = static_cast<float>((1U << limits.index_bits) - 1);
  object_ = options.matrix.empty() ? quorvane::Correction::gamma(gamma, white)
                                   : quorvane::Correction::gamma_matrix(gamma, white, matrix);
}

namespace {

std::uint32_t sample_at(const Picture& picture, std::size_t i) {
  return picture.depth == 8 ? picture.bytes[i] : picture.bytes[2 * i] * 256U + picture.bytes[2 * i + 1];
}

void set_sample(Picture& picture, std::size_t i, double value, std::uint32_t top) {
  const auto level =
      static_cast<std::uint32_t>(std::clamp(std::floor(value + 0.5), 0.0, static_cast<double>(top)));
  if (picture.depth == 8) {
    picture.bytes[i] = static_cast<std::uint8_t>(level);
  } else {
    picture.bytes[2 * i] = static_cast<std::uint8_t>(level >> 8);
    picture.bytes[2 * i + 1] = static_cast<std::uint8_t>(level & 0xFF);
  }
}

}  // namespace

void apply_clamped(Picture& picture, const Matrix& matrix, std::uint32_t top) {
  for (std::size_t i = 0; i < picture.size.pixels() * picture.channels; i += picture.channels) {
    const std::array<double, 3> rgb{static_cast<double>(sample_at(picture, i)),
                                    static_cast<double>(sample_at(picture, i + 1)),
                                    static_cast<double>(sample_at(picture, i + 2))};
    for (std::size_t row = 0; row < 3; ++row) {
      set_sample(picture, i + row,
                 rgb[0] * double{matrix.at(3 * row)} + rgb[1] * double{matrix.at(3 * row + 1)} +
                     rgb[2] * double{matrix.at(3 * row + 2)},
                 top);
    }
  }
}

void stretch(Picture& picture, std::uint32_t top) {
  for (std::size_t i = 0; i < picture.size.pixels() * picture.channels; ++i) {
    set_sample(picture, i, sample_at(picture, i) * 65535.0 / top, 65535);
  }
}

std::string balance(Frame& frame, const std::string& black_text, const std::string& white_balance) {
  if (black_text.empty() && white_balance.empty()) {
    return {};
  }
  if (!frame.format->mosaic) {
    throw Failure(std::string(black_text.empty() ? "--wb" : "--black") + " is for Bayer mosaics, found " +
                  std::string(frame.format->name));
  }
  Samples samples(frame);
  const auto black = static_cast<std::uint32_t>(
      black_text.empty() ? 0 : parse_whole("--black", black_text, 0, samples.top() - 1));
  Gains gains{1, 1, 1};
  if (white_balance == "auto") {
    gains = grey_world(frame, samples, black);
  } else if (!white_balance.empty()) {
    const std::vector<double> numbers = parse_numbers<double>("--wb", white_balance, 3);
    if (std::any_of(numbers.begin(), numbers.end(), [](double gain) { return gain < 0; })) {
      throw Failure("--wb: expected auto or three gains of 0 or more, found " + quoted(white_balance));
    }
    std::copy(numbers.begin(), numbers.end(), gains.begin());
  }
  visit_samples(frame, [&](std::size_t i, std::size_t channel) {
    const std::uint32_t level = samples.at(i);
    const double value = (level - std::min(level, black)) * gains.at(channel);
    samples.set(
        i, static_cast<std::uint32_t>(std::min(std::floor(value + 0.5), static_cast<double>(samples.top()))));
  });
  return white_balance.empty() ? "" : to_text(gains);
}

}  // namespace qvn::tool
