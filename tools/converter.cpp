// Conversion, the choice of the file's form, and the recipe.
#include "converter.h"

#include "failure.h"
#include "frame_file.h"

namespace qvn::tool {
namespace {

bool wants_planes(const ConvertOptions& options, const std::string& path) {
  return !wants_raw_bytes(path, options.file_format) && !options.target.empty() &&
         !find_target(options.target).planes.empty();
}

std::string recipe_of(ConvertOptions options, const FrameReader& reader, const Frame& frame,
                      const Conversion& conversion, const Converted& converted) {
  options.frame.format = frame.format_in_file().name;
  // A file that tells its own size is not asked for one.
  options.frame.size = reader.has_header() ? "" : to_text(frame.size);
  options.frame.pattern = frame.format->mosaic ? frame.pattern->name : "";
  options.method = conversion.method;
  options.target = conversion.target;
  if (!converted.gains.empty()) {
    options.picture.white_balance = converted.gains;
  }
  return write_recipe(ingredients_of(options));
}

}  // namespace

std::vector<Ingredient> ingredients_of(ConvertOptions& options) {
  FrameOptions& frame = options.frame;
  PictureOptions& picture = options.picture;
  CorrectionOptions& correction = picture.correction;
  return {{"from", &frame.format},
          {"size", &frame.size},
          {"pattern", &frame.pattern},
          {"bits", &frame.bits},
          {"align", &frame.align},
          {"pitch", &frame.pitch},
          {"skip", &frame.skip},
          {"method", &options.method},
          {"to", &options.target},
          {"shift", &picture.shift},
          {"matrix", &correction.matrix},
          {"matrix-fixed", &correction.matrix_fixed},
          {"gamma", &correction.gamma},
          {"table", &correction.table},
          {"black", &picture.black},
          {"wb", &picture.white_balance},
          {"matrix-clamped", &picture.matrix_clamped},
          {"stretch", nullptr, &picture.stretch},
          {"edges", &picture.edges}};
}

void check_convert_options(const ConvertOptions& options) {
  const FrameOptions& frame = options.frame;
  static_cast<void>(find_pattern(frame.pattern));
  if (!frame.size.empty()) {
    static_cast<void>(parse_size(frame.size));
  }
  if (!frame.format.empty()) {
    const SourceFormat& format = find_format(frame.format);
    static_cast<void>(parse_form(format, frame.bits, frame.align));
    const std::string as_read(format.repack == nullptr ? format.name : format.read_as);
    static_cast<void>(find_conversion(find_format(as_read), options.method, options.target));
  } else if (!options.target.empty()) {
    static_cast<void>(find_target(options.target));
  }
}

Product make_product(const ConvertOptions& options, const FrameReader& reader, const Frame& frame,
                     const std::string& path) {
  const Conversion& conversion = find_conversion(*frame.format, options.method, options.target);
  const Target& target = find_target(conversion.target);
  const bool raw = wants_raw_bytes(path, options.file_format);
  if (!raw) {
    check_picture_name(path, options.file_format, target.channels, target.planes);
  } else if (options.picture.stretch || !options.picture.matrix_clamped.empty()) {
    throw Failure(
        "expected a picture for --stretch or --matrix-clamped, found the library's own bytes as output");
  }
  Converted converted = run_conversion(frame, conversion, options.picture);
  Product product;
  product.note = converted.note;
  product.recipe = recipe_of(options, reader, frame, conversion, converted);
  if (raw) {
    product.files.push_back({path, std::move(converted.bytes)});
  } else {
    product.files =
        encode_pictures(path, options.file_format,
                        make_pictures(converted, frame.size, conversion, options.picture), target.planes);
  }
  return product;
}

std::vector<std::string> product_names(const ConvertOptions& options, const std::string& path) {
  if (!wants_planes(options, path)) {
    return {path};
  }
  std::vector<std::string> names;
  for (const char letter : find_target(options.target).planes) {
    names.push_back(with_letter(path, letter));
  }
  return names;
}

}  // namespace qvn::tool
