/// The two functions that the library with a logger in it exports beside its own.
#pragma once

#include <cstddef>

/// Lines that the logger got since the library was loaded.
using CountLines = std::size_t (*)();

/// From now on each line goes to `sink` as well.
using SetLineSink = void (*)(void (*sink)(const char* line));
