// The two listings, built from the tables and from what the loader says.
#include "about.h"

#include <dlfcn.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "camera_names.h"
#include "conversions.h"
#include "failure.h"
#include "formats.h"

namespace qvn::tool {
namespace {

std::string padded(std::string_view text, std::size_t width) {
  std::string field(text);
  field.resize(std::max(field.size() + 1, width), ' ');
  return field;
}

/// By name through the loader, since an address taken here may be a stub inside this program.
std::string library_file() {
  Dl_info info{};
  void* const symbol = dlsym(RTLD_DEFAULT, "QVN_GetVersion");
  if (symbol == nullptr || dladdr(symbol, &info) == 0 || info.dli_fname == nullptr) {
    return "unknown";
  }
  return info.dli_fname;
}

/// The loader's choice shows in the path: .../glibc-hwcaps/LEVEL/libquorvane.so.2.
std::string level_of(const std::string& path) {
  const std::string folder = "/glibc-hwcaps/";
  const std::size_t at = path.rfind(folder);
  if (at == std::string::npos) {
    return "baseline";
  }
  const std::size_t start = at + folder.size();
  return path.substr(start, path.find('/', start) - start);
}

/// The library's twelve flags, a digit each.
std::string capabilities() {
  TechnoInfo info{};
  QVN_GetTechnoInfo(&info);
  std::string text;
  for (const std::uint8_t flag : info.flags) {
    append_part(text, " ", std::to_string(flag));
  }
  return text;
}

/// A row for each function and size rule; the targets beyond its first stand below that.
std::string list_conversions(const std::vector<const Conversion*>& conversions) {
  std::string text;
  const Conversion* row = nullptr;
  bool first = true;
  for (const Conversion* const conversion : conversions) {
    const std::string target(conversion->target);
    if (row != nullptr && row->method == conversion->method && row->entry == conversion->entry &&
        size_rule(*row) == size_rule(*conversion)) {
      text += first ? "\n                              --to " : ", ";
      text += target;
      first = false;
      continue;
    }
    text += row == nullptr ? "" : "\n";
    text += "    --method " + padded(conversion->method, 17) + "--to " + padded(target, 9) +
            padded(conversion->entry, 33) + "size: " + size_rule(*conversion);
    row = conversion;
    first = true;
  }
  return row == nullptr ? "" : text + "\n";
}

/// The first of an order stands for all four.
std::string list_camera_names() {
  std::string text = "\nNames of cameras and drivers, which --from and --format take too\n";
  std::string row;
  std::string meaning;
  for (const CameraName& known : camera_names()) {
    if (!known.pattern.empty() && known.pattern != "rggb") {
      continue;
    }
    std::string means(known.format);
    means += known.bits.empty() ? "" : " --bits " + std::string(known.bits);
    means += known.pattern.empty() ? "" : " --pattern rggb";
    if (means != meaning && !row.empty()) {
      text += "  " + padded(row, 34) + meaning + "\n";
      row.clear();
    }
    append_part(row, ", ", known.name);
    meaning = means;
  }
  text += "  " + padded(row, 34) + meaning + "\n";
  return text + "  and so with GR, GB, BG and GRBG, GBRG, BGGR for the other orders\n";
}

}  // namespace

std::string list_formats() {
  std::string text = "Source formats (--from, --format)\n";
  for (const SourceFormat& format : source_formats()) {
    text += "  " + padded(format.name, 18) + std::string(format.about);
    if (format.repack != nullptr) {
      text += "; read as " + std::string(format.read_as);
    } else if (format.group > 1) {
      text += "; in groups of " + std::to_string(format.group) + " pixels";
    }
    if (format.has_form) {
      text += "; --bits, --align";
    }
    if (format.netpbm_channels != 0) {
      text += format.netpbm_channels == 1 ? "; also in a PGM" : "; also in a PPM";
    }
    const auto conversions = conversions_of(format);
    if (conversions.empty() && format.repack == nullptr) {
      text += "; written by qvn chart";
    }
    text += "\n";
    text += list_conversions(conversions);
  }
  text += list_camera_names();
  text += "\nTargets (--to)\n";
  for (const Target& target : targets()) {
    text += "  " + padded(target.name, 10) + std::string(target.about) + "\n";
  }
  text += "\nBayer orders (--pattern): first two samples of the first line, then of the second\n ";
  for (const std::string& name : pattern_names()) {
    text += " " + name;
  }
  text +=
      "\n\nFiles read\n"
      "  headerless frames (--from and --size say what they hold)\n"
      "  PGM, PPM  binary, 8 and 16 bits, with their own size; raw8, raw16be, rgb8 or rgb16be unless --from\n"
      "            says otherwise; a PPM also as a chart's --scene\n"
      "\nFiles written\n"
      "  PNG, TIFF, PPM, PGM  8 and 16 bits, by the suffix or --out-format; the first two with opacity for\n"
      "                 bgra\n"
      "  headerless     raw and bin: by qvn convert what the library wrote, blue first, words of 16 bits in\n"
      "                 this machine's order, planes one behind the other; by qvn chart the frame\n";
  return text;
}

std::string describe_version() {
  std::uint32_t word = 0;
  QVN_GetVersion(&word);
  std::array<char, 64> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "qvn %u.%u.%u.%u (version word 0x%08X)",
                                  word >> 24, word >> 16 & 0xFF, word >> 8 & 0xFF, word & 0xFF, word));
  const std::string file = library_file();
  return std::string(text.data()) + "\nlibrary: " + file + "\nlevel: " + level_of(file) +
         "\ncapabilities: " + capabilities();
}

}  // namespace qvn::tool
