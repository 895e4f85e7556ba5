// From a frame to the files of its picture, by what the command line says: the one place that `convert` goes
// through for a file, for a batch and for a stream. Any number of threads may use one.
#pragma once

#include "conversions.h"
#include "files.h"
#include "frame_reader.h"
#include "recipe.h"

namespace qvn::tool {

struct ConvertOptions {
  FrameOptions frame;  // without a path
  std::string file_format;
  std::string method;
  std::string target;
  PictureOptions picture;
};

/// The options that make a recipe.
std::vector<Ingredient> ingredients_of(ConvertOptions& options);

struct Product {
  std::vector<OutputFile> files;
  std::string note;    // what the user should know of the picture; empty: nothing
  std::string recipe;  // everything that was told, guessed or found, for the same picture again
};

/// Throws Failure for names that do not exist and outputs that cannot be, before anything is read.
void check_convert_options(const ConvertOptions& options);

/// `path` is where the picture is to go; its suffix tells the file format if no option does.
Product make_product(const ConvertOptions& options, const FrameReader& reader, const Frame& frame,
                     const std::string& path);

/// The files that a picture at `path` would have, of a target that may have several.
std::vector<std::string> product_names(const ConvertOptions& options, const std::string& path);

}  // namespace qvn::tool
