# Tests that run once a level: the loader picks the shared library.

# --glibc-hwcaps-mask keeps the better libraries from the loader.
set(QUORVANE_LOADER /lib64/ld-linux-x86-64.so.2)
if(CMAKE_CROSSCOMPILING OR NOT EXISTS ${QUORVANE_LOADER})
  set(QUORVANE_LOADER "")
else()
  execute_process(COMMAND ${QUORVANE_LOADER} --help OUTPUT_VARIABLE QUORVANE_LOADER_HELP ERROR_QUIET)
endif()

# Levels that this machine runs; others are built, but not tested.
set(QUORVANE_TESTED_LEVELS)
foreach(level IN LISTS QUORVANE_LEVELS)
  if(level STREQUAL baseline OR WIN32 OR QUORVANE_LOADER_HELP MATCHES "${level} \\(supported")
    list(APPEND QUORVANE_TESTED_LEVELS ${level})
  else()
    message(STATUS "This machine does not run ${level}: its tests are left out")
  endif()
endforeach()

# quorvane_under_wine(TEST LIBRARY): where tests run under Wine, this one begins once it is up, and finds its
# library in that target's folder.
function(quorvane_under_wine test library)
  if(WIN32)
    set_tests_properties(${test} PROPERTIES FIXTURES_REQUIRED wine)
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT WINEPATH=Z:$<TARGET_FILE_DIR:${library}>)
  endif()
endfunction()

# quorvane_level_test(NAME TARGET ARGUMENTS...): tests NAME.LEVEL, in which the program TARGET, which is linked
# with the shared library, gets that of each level in turn.
function(quorvane_level_test name target)
  foreach(level IN LISTS QUORVANE_TESTED_LEVELS)
    set(test ${name}.${level})
    if(QUORVANE_LOADER)
      add_test(NAME ${test}
        COMMAND ${QUORVANE_LOADER} --glibc-hwcaps-mask ${level} $<TARGET_FILE:${target}> ${ARGN})
    else()
      add_test(NAME ${test} COMMAND ${target} ${ARGN})
    endif()
    set_tests_properties(${test} PROPERTIES ENVIRONMENT "QVN_TEST_LEVEL=${level}")
    quorvane_level_library(library ${level})
    quorvane_under_wine(${test} ${library})
  endforeach()
endfunction()
