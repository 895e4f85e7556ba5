// The texts of the shared options.
#include "options.h"

namespace qvn::tool {

void add_output(CLI::App& command, OutputOptions& output, const std::string& formats) {
  command.add_option("OUT", output.path, "File to write; - is standard output")->required();
  command.add_option("--out-format", output.file_format, formats + ", if OUT's suffix does not say so");
}

void add_samples(CLI::App& command, std::string& pattern, std::string& bits, std::string& align) {
  command.add_option("--pattern", pattern, "Bayer order: rggb, grbg, gbrg or bggr")->capture_default_str();
  command.add_option("--bits", bits,
                     "Bits that count in a sample of raw16be, raw16le, y16be or y16le, 8 to 16 [16]; for "
                     "method transform-ex 10 or 12 to 16");
  command.add_option("--align", align, "Where they lie: lsb, from bit 0, or msb, up to bit 15 [lsb]");
}

void add_input(CLI::App& command, FrameOptions& input) {
  command.add_option("IN", input.path, "Headerless frame, PGM or PPM to read; - is standard input")
      ->required();
  command.add_option("--from", input.format, "Source format, see qvn formats; a PGM or PPM may go without");
  command.add_option("--size", input.size, "WIDTHxHEIGHT; a PGM or PPM brings its own");
  add_samples(command, input.pattern, input.bits, input.align);
}

}  // namespace qvn::tool
