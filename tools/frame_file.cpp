// The choice of the output's file format.
#include "frame_file.h"

#include <algorithm>
#include <filesystem>

#include "failure.h"
#include "files.h"
#include "formats.h"
#include "netpbm.h"
#include "png_file.h"
#include "tiff_file.h"

namespace qvn::tool {
namespace {

std::string file_format_of(const std::string& path, const std::string& file_format, bool raw_too) {
  std::vector<std::string> known{"png", "tiff", "ppm", "pgm"};
  if (raw_too) {
    known.emplace_back("raw");
  }
  const auto is_known = [&](const std::string& name) {
    return std::find(known.begin(), known.end(), name) != known.end();
  };
  if (!file_format.empty()) {
    if (!is_known(file_format)) {
      throw Failure("unknown file format " + quoted(file_format) + ": expected " + one_of(known));
    }
    return file_format;
  }
  std::string suffix = suffix_of(path);
  if (suffix == "tif") {
    suffix = "tiff";
  }
  if (is_known(suffix)) {
    return suffix;
  }
  if (raw_too) {
    return "raw";
  }
  throw Failure("cannot tell the file format of " + (path == "-" ? "standard output" : quoted(path)) +
                ": expected a name that ends in .png, .tiff, .ppm or .pgm, or --out-format");
}

void check_channels(const std::string& file_format, std::uint32_t channels) {
  if ((file_format == "pgm" && channels != 1) || (file_format == "ppm" && channels == 1)) {
    throw Failure("a " + std::string(file_format == "pgm" ? "PGM" : "PPM") +
                  " file cannot hold the picture: expected " +
                  (file_format == "pgm" ? "1 channel" : "3 channels") + ", found " +
                  std::to_string(channels) + "; use png or " + (channels == 1 ? "pgm" : "ppm"));
  }
}

Picture without_opacity(const Picture& picture) {
  Picture rgb{picture.size, 3, picture.depth, {}};
  const std::size_t step = picture.depth / 8;
  for (std::size_t i = 0; i < picture.bytes.size(); i += 4 * step) {
    rgb.bytes.insert(rgb.bytes.end(), picture.bytes.data() + i, picture.bytes.data() + i + 3 * step);
  }
  return rgb;
}

std::vector<std::uint8_t> encode(const std::string& path, const std::string& file_format,
                                 const Picture& picture) {
  const std::string chosen = file_format_of(path, file_format, false);
  check_channels(chosen, picture.channels);
  if (chosen == "png") {
    return encode_png(picture);
  }
  if (chosen == "tiff") {
    return encode_tiff(picture);
  }
  return encode_netpbm(picture.channels == 4 ? without_opacity(picture) : picture);
}

}  // namespace

SceneImage read_scene(const std::string& path) {
  InputStream input(path);
  const Picture picture = read_netpbm(input).picture;
  if (picture.channels != 3) {
    throw Failure(input.name() + ": expected a PPM as the scene, found a PGM");
  }
  SceneImage scene{picture.size, {}};
  scene.rgb.reserve(picture.size.pixels() * 3);
  for (std::size_t i = 0; i < picture.bytes.size(); i += picture.depth / 8) {
    scene.rgb.push_back(picture.depth == 8
                            ? static_cast<float>(picture.bytes[i]) / 255.0F
                            : static_cast<float>(picture.bytes[i] * 256 + picture.bytes[i + 1]) / 65535.0F);
  }
  return scene;
}

bool wants_raw_bytes(const std::string& path, const std::string& file_format) {
  if (!file_format.empty()) {
    return file_format_of(path, file_format, true) == "raw";
  }
  const std::string suffix = suffix_of(path);
  return suffix == "raw" || suffix == "bin";
}

void check_picture_name(const std::string& path, const std::string& file_format, std::uint32_t channels,
                        std::string_view letters) {
  check_channels(file_format_of(path, file_format, false), channels);
  if (!letters.empty() && path == "-") {
    throw Failure("standard output holds one picture: expected a file name for " +
                  std::to_string(letters.size()) + " of them, found '-'");
  }
  const std::filesystem::path file = std::filesystem::path(path).filename();
  std::error_code code;
  const bool other = std::filesystem::exists(path, code) && !std::filesystem::is_regular_file(path, code);
  if (!letters.empty() && (other || file.empty() || file == "." || file == "..")) {
    throw Failure("cannot write a set of pictures: expected a file name for OUT, found '" + path + "'");
  }
}

std::string with_letter(const std::string& path, char letter) {
  const std::filesystem::path whole(path);
  const std::string name = whole.stem().string() + "_" + letter + whole.extension().string();
  return std::filesystem::path(whole).replace_filename(name).string();
}

std::vector<OutputFile> encode_pictures(const std::string& path, const std::string& file_format,
                                        const std::vector<Picture>& pictures, std::string_view letters) {
  check_picture_name(path, file_format, pictures.front().channels, letters);
  std::vector<OutputFile> files;
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    files.push_back(
        {letters.empty() ? path : with_letter(path, letters.at(i)), encode(path, file_format, pictures[i])});
  }
  return files;
}

void write_picture(const std::string& path, const std::string& file_format, const Picture& picture) {
  write_output(path, encode(path, file_format, picture));
}

void write_frame(const std::string& path, const std::string& file_format, const Frame& frame) {
  const std::string chosen = file_format_of(path, file_format, true);
  if (chosen == "raw") {
    write_output(path, frame.bytes);
    return;
  }
  if (frame.format->netpbm_channels == 0) {
    throw Failure(std::string(frame.format->name) + " fits no " + chosen + " file: expected raw");
  }
  write_picture(path, chosen,
                {frame.size, frame.format->netpbm_channels, frame.format->netpbm_depth, frame.bytes});
}

}  // namespace qvn::tool
