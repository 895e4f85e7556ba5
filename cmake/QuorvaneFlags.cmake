# Two interface targets: what every file of the project is compiled with, and what the library's files get on top.

add_library(quorvane_common_flags INTERFACE)
target_compile_options(quorvane_common_flags INTERFACE -Wall -Wextra -Wconversion -ffp-contract=off)
if(QUORVANE_WERROR)
  target_compile_options(quorvane_common_flags INTERFACE -Werror)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$")
  # The x87 unit rounds in its own way; results must not depend on it.
  target_compile_options(quorvane_common_flags INTERFACE -msse2 -mfpmath=sse)
endif()
if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_common_flags INTERFACE
    -O1 -fsanitize=${QUORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(quorvane_common_flags INTERFACE -fsanitize=${QUORVANE_SANITIZE})
endif()

add_library(quorvane_library_flags INTERFACE)
target_link_libraries(quorvane_library_flags INTERFACE quorvane_common_flags)
target_compile_definitions(quorvane_library_flags INTERFACE QUORVANE_BUILDING
  QUORVANE_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} QUORVANE_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  QUORVANE_VERSION_PATCH=${PROJECT_VERSION_PATCH} QUORVANE_VERSION_TWEAK=${PROJECT_VERSION_TWEAK})
# g++ 12 vectorises plain rows at -O3 alone; a debug build stays one, and under sanitizers nothing needs to be
# fast but the compiler.
if(NOT QUORVANE_SANITIZE)
  target_compile_options(quorvane_library_flags INTERFACE $<$<CONFIG:RelWithDebInfo>:-O3>)
endif()
target_compile_options(quorvane_library_flags INTERFACE -fvisibility=hidden -fvisibility-inlines-hidden -fno-semantic-interposition)
