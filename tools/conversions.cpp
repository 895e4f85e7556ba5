// Look-up of conversions by name, their size rules, and the way from a library call to finished pictures.
#include "conversions.h"

#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "bands.h"
#include "edges.h"
#include "failure.h"
#include "numbers.h"

namespace qvn::tool {
namespace {

constexpr std::int64_t kMostThreads = 1024;

void add_once(std::vector<std::string>& names, std::string_view name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    names.emplace_back(name);
  }
}

std::string step_rule(std::uint32_t step) {
  return step == 2 ? "even" : "a multiple of " + std::to_string(step);
}

void check_size(const Frame& frame, const Conversion& conversion) {
  const SizeRule& rule = conversion.size;
  const Size size = frame.size;
  const std::string what = std::string(conversion.format) + " by method " + std::string(conversion.method) +
                           " to " + std::string(conversion.target) + ": expected ";
  if (size.width < rule.least.width || size.height < rule.least.height) {
    throw Failure(what + "a frame of at least " + to_text(rule.least) + ", found " + to_text(size));
  }
  if (size.width % rule.width_step != 0) {
    throw Failure(what + "a width that is " + step_rule(rule.width_step) + ", found " +
                  std::to_string(size.width));
  }
  if (size.height % rule.height_step != 0) {
    throw Failure(what + "a height that is " + step_rule(rule.height_step) + ", found " +
                  std::to_string(size.height));
  }
  if (size.pixels() < rule.least_pixels) {
    throw Failure(what + "at least " + std::to_string(rule.least_pixels) + " pixels, found " + to_text(size));
  }
  if (size.pixels() % rule.pixel_step != 0) {
    throw Failure(what + "a number of pixels that is " + step_rule(rule.pixel_step) + ", found " +
                  to_text(size));
  }
}

/// The library writes blue first and words in the host's order; pictures hold red first and big-endian words.
void to_file_order(Picture& picture) {
  const std::size_t step = picture.depth / 8;
  const std::size_t pixel = picture.channels * step;
  if (picture.channels >= 3) {
    for (std::size_t i = 0; i + pixel <= picture.bytes.size(); i += pixel) {
      std::swap_ranges(picture.bytes.data() + i, picture.bytes.data() + i + step,
                       picture.bytes.data() + i + 2 * step);
    }
  }
  if (step == 2 && std::endian::native == std::endian::little) {
    for (std::size_t i = 0; i + 2 <= picture.bytes.size(); i += 2) {
      std::swap(picture.bytes[i], picture.bytes[i + 1]);
    }
  }
}

/// U, Y, V, Y of two pixels as the library's targets write them, luma from 16 to 235 and chroma around 128
/// from 16 to 240, to R, G, B by BT.601.
std::vector<std::uint8_t> rgb_of_studio(const std::uint8_t* groups, std::size_t pixels) {
  std::vector<std::uint8_t> rgb;
  rgb.reserve(pixels * 3);
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint8_t* const group = groups + i / 2 * 4;
    const double y = 1.164383 * (group[1 + i % 2 * 2] - 16);
    const double u = group[0] - 128;
    const double v = group[2] - 128;
    for (const double value : {y + 1.596027 * v, y - 0.391762 * u - 0.812968 * v, y + 2.017232 * u}) {
      rgb.push_back(static_cast<std::uint8_t>(std::clamp(std::floor(value + 0.5), 0.0, 255.0)));
    }
  }
  return rgb;
}

void refuse(const Conversion& conversion, const std::string& option) {
  throw Failure(option + " has no part in " + std::string(conversion.entry) + ", which converts " +
                std::string(conversion.format) + " by method " + std::string(conversion.method) + " to " +
                std::string(conversion.target));
}

void check_options(const Frame& frame, const Conversion& conversion, const PictureOptions& options) {
  if (frame.form_told && !conversion.reads_form) {
    refuse(conversion, "--bits or --align");
  }
  const std::uint32_t bits = frame.form.bits;
  if (conversion.method == kTransformEx && frame.form.low && (bits < 10 || bits == 11)) {
    throw Failure("--bits: expected 10, 12, 13, 14, 15 or 16 for " + std::string(conversion.entry) +
                  ", found " + std::to_string(bits));
  }
  if (!options.shift.empty() && !conversion.takes_shift) {
    refuse(conversion, "--shift");
  }
  if (options.correction.any() && conversion.corrected.run == nullptr) {
    const CorrectionOptions& told = options.correction;
    refuse(conversion, !told.matrix.empty()         ? "--matrix"
                       : !told.matrix_fixed.empty() ? "--matrix-fixed"
                       : !told.gamma.empty()        ? "--gamma"
                                                    : "--table");
  }
  const Target& target = find_target(conversion.target);
  if (!options.matrix_clamped.empty() && (target.channels < 3 || target.name == "uyvy")) {
    refuse(conversion, "--matrix-clamped");
  }
  if (options.stretch && target.depth != 16) {
    refuse(conversion, "--stretch");
  }
  if (!options.edges.empty() && options.edges != "keep" && options.edges != "fill") {
    throw Failure("--edges: expected keep or fill, found " + quoted(options.edges));
  }
}

}  // namespace

std::string status_text(std::uint32_t status) {
  std::array<char, 256> text{};
  QVN_GetErrorInfo(status, text.data(), static_cast<std::uint32_t>(text.size() - 1));
  return text.data();
}

std::string size_rule(const Conversion& conversion) {
  const SizeRule& rule = conversion.size;
  std::vector<std::string> parts;
  const auto named = [](const std::string& side, std::uint32_t step) {
    return step == 2 ? "even " + side : side + " " + step_rule(step);
  };
  if (rule.width_step == rule.height_step && rule.width_step > 1) {
    parts.push_back(named("width and height", rule.width_step));
  } else {
    if (rule.width_step > 1) {
      parts.push_back(named("width", rule.width_step));
    }
    if (rule.height_step > 1) {
      parts.push_back(named("height", rule.height_step));
    }
  }
  if (rule.least.width > rule.width_step || rule.least.height > rule.height_step) {
    parts.push_back("at least " + to_text(rule.least));
  }
  if (rule.least_pixels > 1) {
    parts.push_back("at least " + std::to_string(rule.least_pixels) + " pixels");
  }
  if (rule.pixel_step > 1) {
    parts.push_back(named("number of pixels", rule.pixel_step));
  }
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : ", ") + part;
  }
  return text.empty() ? "any" : text;
}

bool takes_size(const Conversion& conversion, Size size) {
  const SizeRule& rule = conversion.size;
  return size.width >= rule.least.width && size.height >= rule.least.height &&
         size.width % rule.width_step == 0 && size.height % rule.height_step == 0 &&
         size.pixels() >= rule.least_pixels && size.pixels() % rule.pixel_step == 0;
}

const std::vector<Target>& targets() {
  static const std::vector<Target> table{
      {"bgr", "colour picture, 8 bits a channel", 1, 3, 3, 8},
      {"bgra", "the same with a fourth byte, which the library leaves alone and the tool makes opaque", 2, 4,
       4, 8},
      {"grey-bgr", "luma in all three channels, 8 bits each", 1, 3, 3, 8},
      {"y8", "grey picture, 8 bits, weights 77, 150, 29", 0, 1, 1, 8},
      {"y8-709", "grey picture, 8 bits, weights 54, 184, 18", 3, 1, 1, 8},
      {"uyvy",
       "YUV 4:2:2 of studio range: its bytes with --out-format raw, else a picture of them; that of "
       "y8 is green, with chroma 0",
       4, 2, 3, 8},
      {"bgr16", "colour picture, 16 bits a channel", 7, 6, 3, 16},
      {"y16", "grey picture, 16 bits, weights 77, 150, 29, or 77, 150, 21 by method 2x2", 5, 2, 1, 16},
      {"y16-709", "grey picture, 16 bits, weights 54, 184, 18", 6, 2, 1, 16},
      {"planes", "red, green and blue as grey pictures: OUT with _r, _g, _b before its suffix", 0, 1, 1, 8,
       "rgb"},
      {"planes-y", "the same and luma: _r, _g, _b, _y", 0, 1, 1, 8, "rgby"},
  };
  return table;
}

const Target& find_target(std::string_view name) {
  std::vector<std::string> names;
  for (const Target& target : targets()) {
    if (target.name == name) {
      return target;
    }
    names.emplace_back(target.name);
  }
  throw Failure("unknown target " + quoted(std::string(name)) + ": expected " + one_of(names));
}

std::vector<const Conversion*> conversions_of(const SourceFormat& format) {
  std::vector<const Conversion*> found;
  for (const Conversion& conversion : conversions()) {
    if (conversion.format == format.name) {
      found.push_back(&conversion);
    }
  }
  return found;
}

const Conversion& find_conversion(const SourceFormat& format, const std::string& method,
                                  const std::string& target) {
  const std::vector<const Conversion*> candidates = conversions_of(format);
  if (candidates.empty()) {
    throw Failure("no method converts format " + quoted(std::string(format.name)) + ": see qvn formats");
  }
  std::vector<std::string> methods;
  std::vector<std::string> reached;
  for (const Conversion* const candidate : candidates) {
    add_once(methods, candidate->method);
    if (method.empty() || candidate->method == method) {
      if (target.empty() || candidate->target == target) {
        return *candidate;
      }
      add_once(reached, candidate->target);
    }
  }
  const std::string name(format.name);
  if (!method.empty() && std::find(methods.begin(), methods.end(), method) == methods.end()) {
    throw Failure("unknown method " + quoted(method) + " for " + name + ": expected " + one_of(methods));
  }
  throw Failure("unknown target " + quoted(target) + " for " + name +
                (method.empty() ? "" : " by method " + method) + ": expected " + one_of(reached));
}

Converted run_conversion(const Frame& frame, const Conversion& conversion, const PictureOptions& options) {
  check_size(frame, conversion);
  check_options(frame, conversion, options);
  const Target& target = find_target(conversion.target);
  const auto shift =
      static_cast<std::uint32_t>(options.shift.empty() ? 0 : parse_whole("--shift", options.shift, 0, 16));

  std::optional<Correction> correction;
  Call call{target.selector, shift, nullptr};
  if (options.correction.any()) {
    CorrectionLimits limits = conversion.corrected.limits;
    limits.index_bits -= std::min(shift, limits.index_bits - 1);
    correction.emplace(options.correction, limits);
    call.correction = correction->object();
  }

  // Methods that work inside the source get a copy like all others: the frame is converted again for a sheet.
  Frame source = frame;
  const std::string gains = balance(source, options.black, options.white_balance);
  const std::size_t planes = std::max<std::size_t>(target.planes.size(), 1);
  Converted converted{std::vector<std::uint8_t>(frame.size.pixels() * target.pixel_bytes * planes),
                      std::max(conversion.bits, shift + 1) - shift, correction ? correction->about() : "",
                      gains};
  if (target.channels == 4) {
    for (std::size_t i = 3; i < converted.bytes.size(); i += 4) {
      converted.bytes[i] = 255;
    }
  }
  const std::string_view entry = correction ? conversion.corrected.entry : conversion.entry;
  const auto threads = static_cast<std::uint32_t>(
      options.threads.empty() ? 1 : parse_whole("--threads", options.threads, 1, kMostThreads));
  // Where the host has another order, only the run itself brings these samples to it.
  const bool host_order = std::endian::native == std::endian::little || !conversion.format.ends_with("le");
  const bool cut = threads > 1 && host_order && can_be_cut(conversion, correction.has_value());
  const Run run = correction ? conversion.corrected.run : conversion.run;
  if (cut) {
    run_in_bands(conversion, converted.bytes, source, target.selector, shift,
                 correction ? &*correction : nullptr, threads);
  } else if (const std::uint32_t status = run(converted.bytes.data(), source.bytes.data(), source, call);
             status != QVN_OK) {
    throw Failure(std::string(entry) + " refused the frame: " + status_text(status));
  }
  if (options.edges == "fill") {
    if (const auto edges = edges_of(entry)) {
      fill_edges(converted.bytes, frame.size, target.pixel_bytes, target.name == "uyvy", *edges,
                 *frame.pattern);
    }
  }
  if (correction && conversion.takes_shift && (target.channels == 3 || shift != 0)) {
    append_part(converted.note, "; ",
                target.channels == 3
                    ? "this function corrects one colour of every second pixel twice"
                    : "with a shift, this function leaves two colours of every second pixel as they are");
  }
  if (threads > 1 && !cut) {
    append_part(converted.note, "; ",
                std::string(entry) + " works on a frame as a whole: --threads makes no difference");
  }
  return converted;
}

std::vector<Picture> make_pictures(const Converted& converted, Size size, const Conversion& conversion,
                                   const PictureOptions& options) {
  const Target& target = find_target(conversion.target);
  const std::size_t planes = std::max<std::size_t>(target.planes.size(), 1);
  const std::size_t length = converted.bytes.size() / planes;
  std::vector<Picture> pictures;
  const std::uint8_t* start = converted.bytes.data();
  for (std::size_t i = 0; i < planes; ++i, start += length) {
    Picture picture{size, target.channels, target.depth, {}};
    if (target.name == "uyvy") {
      picture.bytes = rgb_of_studio(start, size.pixels());
    } else {
      picture.bytes.assign(start, start + length);
      to_file_order(picture);
    }
    const std::uint32_t top = target.depth == 8 ? 255 : (1U << converted.bits) - 1;
    if (!options.matrix_clamped.empty()) {
      apply_clamped(picture, parse_matrix("--matrix-clamped", options.matrix_clamped), top);
    }
    if (options.stretch) {
      stretch(picture, top);
    }
    pictures.push_back(std::move(picture));
  }
  return pictures;
}

}  // namespace qvn::tool
