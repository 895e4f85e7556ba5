# The library contains no processor query. The same sources are compiled once for each instruction-set level,
# and the system's loader takes the best library that the machine can run:
#
#   lib/libquorvane.so.2                             baseline
#   lib/glibc-hwcaps/x86-64-v2/libquorvane.so.2      SSSE3, SSE4
#   lib/glibc-hwcaps/x86-64-v3/libquorvane.so.2      AVX2
#   lib/glibc-hwcaps/x86-64-v4/libquorvane.so.2      AVX-512, with QUORVANE_LEVEL_V4
#
# Windows' loader knows no levels: whoever ships the library chooses.
#
#   bin/quorvane.dll                                 baseline
#   bin/x86-64-v3/quorvane.dll                       AVX2

set(QUORVANE_LIBRARY_DIR ${PROJECT_BINARY_DIR}/lib)
set(QUORVANE_RUNTIME_DIR ${PROJECT_BINARY_DIR}/bin)

set(QUORVANE_LEVELS baseline)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  if(QUORVANE_BASELINE_ONLY)
    # For what looks at lines, not at instructions.
  elseif(QUORVANE_SANITIZE STREQUAL "thread")
    # Threads meet in the same places at every level.
  elseif(QUORVANE_SANITIZE)
    list(APPEND QUORVANE_LEVELS x86-64-v3)  # v2 is the same text at the baseline's width
  elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    list(APPEND QUORVANE_LEVELS x86-64-v2 x86-64-v3)
    if(QUORVANE_LEVEL_V4)
      list(APPEND QUORVANE_LEVELS x86-64-v4)
    endif()
  elseif(MINGW)
    list(APPEND QUORVANE_LEVELS x86-64-v3)
  endif()
endif()

# quorvane_compile_for(TARGET MARCH): what a target is compiled with for a level above the baseline.
function(quorvane_compile_for target march)
  target_compile_options(${target} PRIVATE -march=${march})
  if(MINGW)
    # The compiler takes the stack for aligned to whole vectors, which it is not on Windows.
    target_compile_options(${target} PRIVATE -Wa,-muse-unaligned-vector-move)
  endif()
endfunction()

# quorvane_level_library(VARIABLE LEVEL): the name of a level's shared library.
function(quorvane_level_library variable level)
  if(level STREQUAL baseline)
    set(${variable} quorvane PARENT_SCOPE)
  else()
    set(${variable} quorvane_${level} PARENT_SCOPE)
  endif()
endfunction()

# quorvane_objects(TARGET MARCH): the library's objects, compiled for one level (empty: the baseline).
function(quorvane_objects target march)
  add_library(${target} OBJECT ${QUORVANE_SOURCES})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${target} PRIVATE quorvane_library_flags)
  target_include_directories(${target}
    PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR}/src)
  if(march)
    quorvane_compile_for(${target} ${march})
  endif()
endfunction()

# quorvane_shared_library(TARGET OBJECTS LEVEL_DIRECTORY): one level's shared library from its objects. The
# directory is one inside those of libraries and of runtimes; empty: these themselves.
function(quorvane_shared_library target objects directory)
  add_library(${target} SHARED)
  target_link_libraries(${target} PRIVATE ${objects} quorvane_library_flags)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME quorvane VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LIBRARY_OUTPUT_DIRECTORY ${QUORVANE_LIBRARY_DIR}/${directory}
    ARCHIVE_OUTPUT_DIRECTORY ${QUORVANE_LIBRARY_DIR}/${directory}
    RUNTIME_OUTPUT_DIRECTORY ${QUORVANE_RUNTIME_DIR}/${directory})
  if(MINGW)
    target_sources(${target} PRIVATE
      ${PROJECT_SOURCE_DIR}/src/frame/platform_windows_dll.cpp ${PROJECT_BINARY_DIR}/src/quorvane.rc)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${target} PRIVATE version)
    # The compiler's own libraries go into the file, which then needs the system's alone.
    target_link_options(${target} PRIVATE -static)
    set_target_properties(${target} PROPERTIES PREFIX "")
  elseif(UNIX AND NOT APPLE)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/src/exports.map)
    target_link_options(${target} PRIVATE
      -Wl,--version-script=${PROJECT_SOURCE_DIR}/src/exports.map -Wl,-z,relro,-z,now -Wl,--as-needed)
    if(NOT QUORVANE_SANITIZE)
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
endfunction()
