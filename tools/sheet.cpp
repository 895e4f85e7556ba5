// Layout of the contact sheet. A cell holds two lines of label, the whole picture reduced to a fixed width (a
// small one as it is), and below it a part of it enlarged by whole factors, so that single pixels can be
// told.
#include "sheet.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "bitmap_font.h"
#include "conversions.h"
#include "failure.h"

namespace qvn::tool {
namespace {

constexpr std::uint32_t kCellWidth = 384;
constexpr std::uint32_t kCropHeight = 256;
constexpr std::uint32_t kMostColumns = 3;
constexpr std::uint32_t kGap = 20;
constexpr std::uint32_t kTitleHeight = 44;
constexpr std::uint32_t kLabelHeight = 46;
constexpr std::uint8_t kBehind = 34;
constexpr std::uint8_t kBright = 236;
constexpr std::uint8_t kDim = 150;

struct Rgb {
  std::uint8_t r, g, b;
};

/// The top eight bits of a pixel, grey as three equal channels.
Rgb pixel_of(const Picture& picture, std::uint32_t x, std::uint32_t y) {
  const std::size_t step = picture.depth / 8;
  const std::uint8_t* const at =
      picture.bytes.data() + y * picture.line_bytes() + std::size_t{x} * picture.channels * step;
  return picture.channels == 1 ? Rgb{at[0], at[0], at[0]} : Rgb{at[0], at[step], at[2 * step]};
}

void put(Picture& sheet, std::uint32_t x, std::uint32_t y, Rgb colour) {
  std::uint8_t* const at = sheet.bytes.data() + y * sheet.line_bytes() + std::size_t{x} * 3;
  at[0] = colour.r;
  at[1] = colour.g;
  at[2] = colour.b;
}

Size reduced(Size size) {
  if (size.width <= kCellWidth) {
    return {size.width, std::min(size.height, 2 * kCellWidth)};
  }
  const std::uint64_t height = (std::uint64_t{size.height} * kCellWidth + size.width / 2) / size.width;
  return {kCellWidth, static_cast<std::uint32_t>(std::clamp<std::uint64_t>(height, 1, 2 * kCellWidth))};
}

/// Mean of the source pixels from x0 to x1 and y0 to y1.
Rgb mean(const Picture& picture, std::uint32_t x0, std::uint32_t y0, std::uint32_t x1, std::uint32_t y1) {
  std::uint64_t r = 0;
  std::uint64_t g = 0;
  std::uint64_t b = 0;
  for (std::uint32_t y = y0; y < y1; ++y) {
    for (std::uint32_t x = x0; x < x1; ++x) {
      const Rgb pixel = pixel_of(picture, x, y);
      r += pixel.r;
      g += pixel.g;
      b += pixel.b;
    }
  }
  const std::uint64_t count = std::uint64_t{x1 - x0} * (y1 - y0);
  const auto rounded = [&](std::uint64_t sum) {
    return static_cast<std::uint8_t>((sum + count / 2) / count);
  };
  return {rounded(r), rounded(g), rounded(b)};
}

void draw_whole(Picture& sheet, std::uint32_t left, std::uint32_t top, const Picture& picture) {
  const Size small = reduced(picture.size);
  const auto edge = [](std::uint32_t i, std::uint32_t from, std::uint32_t to) {
    return static_cast<std::uint32_t>(std::uint64_t{i} * from / to);
  };
  for (std::uint32_t y = 0; y < small.height; ++y) {
    const std::uint32_t y0 = edge(y, picture.size.height, small.height);
    const std::uint32_t y1 = std::max(y0 + 1, edge(y + 1, picture.size.height, small.height));
    for (std::uint32_t x = 0; x < small.width; ++x) {
      const std::uint32_t x0 = edge(x, picture.size.width, small.width);
      const std::uint32_t x1 = std::max(x0 + 1, edge(x + 1, picture.size.width, small.width));
      put(sheet, left + x, top + y, mean(picture, x0, y0, x1, y1));
    }
  }
}

struct Crop {
  std::uint32_t x, y;
  Size size;
  std::uint32_t zoom;
};

/// How much happens in a part of a picture: differences between neighbouring blocks. Blocks and not pixels,
/// since the finest patterns of a mosaic are false colour, and a part that is full of it shows nothing else.
std::uint64_t detail(const Picture& picture, const Crop& crop) {
  constexpr std::uint32_t kBlock = 4;
  const auto block = [&](std::uint32_t x, std::uint32_t y) {
    return int{mean(picture, x, y, x + kBlock, y + kBlock).g};
  };
  std::uint64_t sum = 0;
  for (std::uint32_t y = crop.y; y + 2 * kBlock <= crop.y + crop.size.height; y += kBlock) {
    for (std::uint32_t x = crop.x; x + 2 * kBlock <= crop.x + crop.size.width; x += kBlock) {
      sum += static_cast<std::uint64_t>(std::abs(block(x, y) - block(x + kBlock, y)) +
                                        std::abs(block(x, y) - block(x, y + kBlock)));
    }
  }
  return sum;
}

void centre(Crop& crop, std::uint32_t x, std::uint32_t y, Size whole) {
  crop.x = std::min(x - std::min(x, crop.size.width / 2), whole.width - crop.size.width);
  crop.y = std::min(y - std::min(y, crop.size.height / 2), whole.height - crop.size.height);
}

/// Methods differ most where most happens, so that is what is enlarged unless the caller says otherwise.
void centre_on_detail(Crop& crop, const Picture& picture) {
  Crop candidate = crop;
  std::uint64_t most = 0;
  for (std::uint32_t y = 0; y < picture.size.height; y += crop.size.height / 2 + 1) {
    for (std::uint32_t x = 0; x < picture.size.width; x += crop.size.width / 2 + 1) {
      centre(candidate, x, y, picture.size);
      const std::uint64_t found = detail(picture, candidate);
      if (found > most) {
        most = found;
        crop = candidate;
      }
    }
  }
}

std::uint32_t parse_zoom(const std::string& text) {
  std::uint32_t zoom = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, zoom);
  if (parsed.ec != std::errc{} || parsed.ptr != end || zoom < 1 || zoom > 64) {
    throw Failure("--zoom: expected 1 to 64, found " + quoted(text));
  }
  return zoom;
}

Crop place_crop(const Picture& picture, const SheetOptions& options) {
  const std::uint32_t zoom = parse_zoom(options.zoom);
  const Size whole = picture.size;
  Crop crop{
      0, 0, {std::min(kCellWidth / zoom, whole.width), std::min(kCropHeight / zoom, whole.height)}, zoom};
  if (options.crop.empty()) {
    centre_on_detail(crop, picture);
    return crop;
  }
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  const char* const end = options.crop.data() + options.crop.size();
  const auto first = std::from_chars(options.crop.data(), end, x);
  const bool comma = first.ec == std::errc{} && first.ptr != end && *first.ptr == ',';
  const auto second = comma ? std::from_chars(first.ptr + 1, end, y) : first;
  if (!comma || second.ec != std::errc{} || second.ptr != end || x >= whole.width || y >= whole.height) {
    throw Failure("--crop: expected X,Y inside " + to_text(whole) + ", found " + quoted(options.crop));
  }
  centre(crop, x, y, whole);
  return crop;
}

void draw_crop(Picture& sheet, std::uint32_t left, std::uint32_t top, const Picture& picture,
               const Crop& crop) {
  for (std::uint32_t y = 0; y < crop.size.height * crop.zoom; ++y) {
    for (std::uint32_t x = 0; x < crop.size.width * crop.zoom; ++x) {
      put(sheet, left + x, top + y, pixel_of(picture, crop.x + x / crop.zoom, crop.y + y / crop.zoom));
    }
  }
}

/// "direct to planes-y: _r".
std::string heading(const Conversion& conversion, std::size_t plane) {
  std::string text = std::string(conversion.method) + " to " + std::string(conversion.target);
  const std::string_view letters = find_target(conversion.target).planes;
  if (!letters.empty()) {
    text += ": _";
    text += letters[plane];
  }
  return text;
}

bool is_selector(const Conversion& conversion) { return conversion.method.starts_with("transform"); }

/// Twelve bits in a word are shown as bright as they are meant.
std::vector<Picture> pictures_of(const Frame& frame, const Conversion& conversion) {
  PictureOptions options;
  options.stretch = conversion.bits < find_target(conversion.target).depth;
  return make_pictures(run_conversion(frame, conversion, options), frame.size, conversion, options);
}

/// A line of the sheet in the making: a conversion in an order.
struct Showing {
  const Conversion* conversion;
  const Pattern* pattern;
};

/// What fits the frame, without what only repeats others unless everything is asked for.
std::vector<const Conversion*> chosen_conversions(const Frame& frame, const std::string& show) {
  std::vector<const Conversion*> fitting;
  for (const Conversion* const conversion : conversions_of(*frame.format)) {
    if (takes_size(*conversion, frame.size) && (conversion->reads_form || !frame.form_told)) {
      fitting.push_back(conversion);
    }
  }
  if (fitting.empty()) {
    throw Failure("no method takes " + std::string(frame.format_in_file().name) + " at " +
                  to_text(frame.size) + ": see qvn formats");
  }
  if (show == "all") {
    return fitting;
  }
  if (show == "patterns") {
    return {fitting.front()};
  }
  // The functions that offer several targets repeat what others show, where there are others.
  if (!is_selector(*fitting.front())) {
    std::erase_if(fitting, [](const Conversion* conversion) { return is_selector(*conversion); });
  }
  return fitting;
}

std::vector<Showing> showings(const Frame& frame, const std::string& show) {
  if (show != "methods" && show != "patterns" && show != "all") {
    throw Failure("--show: expected methods, patterns or all, found " + quoted(show));
  }
  if (show == "patterns" && !frame.format->mosaic) {
    throw Failure("--show patterns is for Bayer mosaics, found " + std::string(frame.format->name));
  }
  std::vector<Showing> all;
  for (const Conversion* const conversion : chosen_conversions(frame, show)) {
    if (show == "methods" || !frame.format->mosaic) {
      all.push_back({conversion, frame.pattern});
      continue;
    }
    for (const std::string& name : pattern_names()) {
      all.push_back({conversion, &find_pattern(name)});
    }
  }
  return all;
}

}  // namespace

Picture make_sheet(const Frame& frame, const SheetOptions& options) {
  const std::vector<Showing> shown = showings(frame, options.show);
  std::uint32_t count = 0;
  for (const Showing& showing : shown) {
    count += std::max(static_cast<std::uint32_t>(find_target(showing.conversion->target).planes.size()), 1U);
  }
  const bool in_orders = options.show != "methods" && frame.format->mosaic;
  const Crop crop = place_crop(pictures_of(frame, *shown.front().conversion).front(), options);
  const std::uint32_t columns =
      in_orders ? static_cast<std::uint32_t>(pattern_names().size()) : std::min(count, kMostColumns);
  const std::uint32_t lines = (count + columns - 1) / columns;
  const std::uint32_t whole_height = reduced(frame.size).height;
  const std::uint32_t cell_height = kLabelHeight + whole_height + kGap / 2 + crop.size.height * crop.zoom;

  Picture sheet;
  sheet.size = {kGap + columns * (kCellWidth + kGap), kTitleHeight + lines * (cell_height + kGap)};
  sheet.bytes.assign(sheet.line_bytes() * sheet.size.height, kBehind);
  std::string title = std::string(frame.format_in_file().name) + " " + to_text(frame.size);
  if (frame.format->mosaic && !in_orders) {
    title += " ";
    title += frame.pattern->name;
  }
  draw_text(sheet, kGap, kGap, 2, title, kDim);

  std::uint32_t cell = 0;
  Frame ordered = frame;
  for (const Showing& showing : shown) {
    ordered.pattern = showing.pattern;
    const std::vector<Picture> pictures = pictures_of(ordered, *showing.conversion);
    for (std::size_t i = 0; i < pictures.size(); ++i, ++cell) {
      const std::uint32_t left = kGap + cell % columns * (kCellWidth + kGap);
      const std::uint32_t top = kTitleHeight + cell / columns * (cell_height + kGap);
      const std::string order = in_orders ? std::string(showing.pattern->name) + ": " : "";
      draw_text(sheet, left, top + 6, 2, order + heading(*showing.conversion, i), kBright);
      draw_text(sheet, left, top + 28, 1, showing.conversion->entry, kDim);
      draw_whole(sheet, left, top + kLabelHeight, pictures[i]);
      draw_crop(sheet, left, top + kLabelHeight + whole_height + kGap / 2, pictures[i], crop);
    }
  }
  return sheet;
}

}  // namespace qvn::tool
