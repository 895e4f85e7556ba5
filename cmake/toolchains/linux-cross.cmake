# Debian's cross compilers and qemu's user emulation: configure with -DQUORVANE_CROSS=aarch64, s390x or i686.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVANE_CROSS)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${QUORVANE_CROSS})
set(triple ${QUORVANE_CROSS}-linux-gnu)
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(QUORVANE_CROSS STREQUAL "i686")
  # An x86-64 kernel runs these programs by itself; emulated, their threads hang.
  set(CMAKE_CROSSCOMPILING_EMULATOR /usr/${triple}/lib/ld-linux.so.2 --library-path /usr/${triple}/lib)
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${QUORVANE_CROSS} -L /usr/${triple})
endif()
