# The library contains no processor query. The same sources are compiled once for each instruction-set level,
# and the system's loader takes the best library that the machine can run:
#
#   lib/libquorvane.so.2                             baseline
#   lib/glibc-hwcaps/x86-64-v2/libquorvane.so.2      SSSE3, SSE4
#   lib/glibc-hwcaps/x86-64-v3/libquorvane.so.2      AVX2
#   lib/glibc-hwcaps/x86-64-v4/libquorvane.so.2      AVX-512, with QUORVANE_LEVEL_V4

set(QUORVANE_LIBRARY_DIR ${PROJECT_BINARY_DIR}/lib)

set(QUORVANE_LEVELS baseline)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  list(APPEND QUORVANE_LEVELS x86-64-v2 x86-64-v3)
  if(QUORVANE_LEVEL_V4)
    list(APPEND QUORVANE_LEVELS x86-64-v4)
  endif()
endif()

# quorvane_objects(TARGET MARCH): the library's objects, compiled for one level (empty: the baseline).
function(quorvane_objects target march)
  add_library(${target} OBJECT ${QUORVANE_SOURCES})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${target} PRIVATE quorvane_library_flags)
  target_include_directories(${target}
    PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR}/src)
  if(march)
    target_compile_options(${target} PRIVATE -march=${march})
  endif()
endfunction()

# quorvane_shared_library(TARGET OBJECTS DIRECTORY): one level's shared library from its objects.
function(quorvane_shared_library target objects directory)
  add_library(${target} SHARED)
  target_link_libraries(${target} PRIVATE ${objects} quorvane_library_flags)
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME quorvane VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LIBRARY_OUTPUT_DIRECTORY ${directory} LINK_DEPENDS ${PROJECT_SOURCE_DIR}/src/exports.map)
  if(UNIX AND NOT APPLE)
    target_link_options(${target} PRIVATE
      -Wl,--version-script=${PROJECT_SOURCE_DIR}/src/exports.map -Wl,-z,relro,-z,now -Wl,--as-needed)
    if(NOT QUORVANE_SANITIZE)
      target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
  endif()
endfunction()
