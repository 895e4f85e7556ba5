// The texts of the shared options.
#include "options.h"

#include <iterator>
#include <utility>

#include "failure.h"
#include "formats.h"

namespace qvn::tool {

Option out_format_option(std::string& text, const std::vector<std::string>& formats) {
  return {.name = "--out-format",
          .about = one_of(formats) + ", if OUT's suffix does not say so",
          .text = &text,
          .words = formats};
}

std::vector<Option> output_options(OutputOptions& output, const std::vector<std::string>& formats) {
  return {
      {.name = "OUT", .about = "File to write; - is standard output", .text = &output.path, .required = true},
      out_format_option(output.file_format, formats)};
}

std::vector<Option> sample_options(FrameOptions& input) {
  return {
      {.name = "--pattern",
       .about = "Bayer order: rggb, grbg, gbrg or bggr [rggb]",
       .text = &input.pattern,
       .words = pattern_names()},
      {.name = "--bits",
       .about = "Bits that count in a sample of raw16be, raw16le, y16be or y16le, 8 to 16 [16]; for method "
                "transform-ex 10 or 12 to 16",
       .text = &input.bits,
       .words = {"8", "10", "12", "13", "14", "15", "16"}},
      {.name = "--align",
       .about = "Where they lie: lsb, from bit 0, or msb, up to bit 15 [lsb]",
       .text = &input.align,
       .words = {"lsb", "msb"}}};
}

std::vector<Option> frame_options(FrameOptions& input) {
  return joined(
      {{{.name = "--from",
         .about = "Source format or a camera's name of one, see qvn formats; a PGM or PPM may go without",
         .text = &input.format,
         .words = format_names()},
        {.name = "--size",
         .about = "WIDTHxHEIGHT [guessed from the file's name or length]; a PGM or PPM brings its own",
         .text = &input.size,
         .words = {"640x480", "1280x960", "1920x1080"}}},
       sample_options(input),
       {{.name = "--pitch",
         .about =
             "Bytes from a line's start to the next one's, if a driver pads lines [nothing between them]",
         .text = &input.pitch},
        {.name = "--skip",
         .about = "Bytes before a frame that are no samples, or BEFORE,BEHIND [0]",
         .text = &input.skip}}});
}

std::vector<Option> input_options(FrameOptions& input) {
  return joined({{{.name = "IN",
                   .about = "Headerless frame, PGM or PPM to read; - is standard input",
                   .text = &input.path,
                   .required = true}},
                 frame_options(input)});
}

std::vector<std::string> format_names() {
  std::vector<std::string> names;
  for (const SourceFormat& format : source_formats()) {
    names.emplace_back(format.name);
  }
  return names;
}

std::vector<Option> joined(std::vector<std::vector<Option>> lists) {
  std::vector<Option> all;
  for (std::vector<Option>& list : lists) {
    all.insert(all.end(), std::make_move_iterator(list.begin()), std::make_move_iterator(list.end()));
  }
  return all;
}

}  // namespace qvn::tool
