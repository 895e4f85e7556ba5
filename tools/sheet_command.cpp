// The subcommand `sheet`.
#include <memory>

#include "frame_file.h"
#include "options.h"
#include "sheet.h"

namespace qvn::tool {
namespace {

struct Sheet {
  FrameOptions frame;
  OutputOptions output;
  SheetOptions how;
};

}  // namespace

Command sheet_command() {
  const auto sheet = std::make_shared<Sheet>();
  return {
      "sheet", "Show a frame by every method or in every Bayer order, labelled, with enlarged crops",
      joined({input_options(sheet->frame),
              output_options(sheet->output, {"png", "tiff", "ppm"}),
              {{.name = "--show",
                .about = "methods, each in the order of --pattern; patterns, the four orders side by side by "
                         "the first method, which shows the camera's; all, every function in four orders",
                .text = &sheet->how.show,
                .words = {"methods", "patterns", "all"}},
               {.name = "--crop",
                .about = "X,Y of the enlarged part's middle [where most happens]",
                .text = &sheet->how.crop},
               {.name = "--zoom",
                .about = "How many times it is enlarged, 1 to 64",
                .text = &sheet->how.zoom}}}),
      [sheet] {
        check_picture_name(sheet->output.path, sheet->output.file_format, 3);
        write_picture(sheet->output.path, sheet->output.file_format,
                      make_sheet(read_frame(sheet->frame), sheet->how));
      }};
}

}  // namespace qvn::tool
