# Other people's projects use the library: installed, by find_package and by pkg-config; built below
# their own; built against in-house libraries of theirs. All compile the README's host program with
# this build's compiler and flags, and run it on a page.
set(stage "${CMAKE_CURRENT_BINARY_DIR}/stage")
set(consumer_flags "${CMAKE_CXX_FLAGS}")
if(CMAKE_CROSSCOMPILING) # the linker is told where the libraries of libraries are
  string(APPEND consumer_flags " ${CMAKE_EXE_LINKER_FLAGS}")
endif()
if(DOCDISPLAY_SANITIZE_FLAG)
  string(APPEND consumer_flags " -fsanitize=${DOCDISPLAY_SANITIZE_FLAG}")
endif()
if(DOCDISPLAY_COVERAGE)
  string(APPEND consumer_flags " --coverage")
endif()

function(docdisplay_consumer_test name)
  cmake_parse_arguments(ARG "" "SETUP" "REQUIRES;DEFINITIONS" ${ARGN})
  set(definitions "")
  foreach(definition IN LISTS ARG_DEFINITIONS)
    list(APPEND definitions "-D${definition}")
  endforeach()
  add_test(NAME ${name}
    COMMAND ${CMAKE_COMMAND}
      "-DSOURCE=${PROJECT_SOURCE_DIR}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DCONFIG=$<CONFIG>"
      "-DSTAGE=${stage}" "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/${name}"
      "-DHOST=${DOCDISPLAY_README_HOST}" "-DPAGE=${DOCDISPLAY_TEST_PAGE}"
      "-DCXX=${CMAKE_CXX_COMPILER}" "-DFLAGS=${consumer_flags}"
      "-DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}" "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
      "-DGENERATOR=${CMAKE_GENERATOR}" "-DLIBDIR=${CMAKE_INSTALL_LIBDIR}"
      ${definitions}
      -P "${CMAKE_CURRENT_SOURCE_DIR}/rules/${name}.cmake")
  docdisplay_test_properties(${name} LABELS install)
  set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED "${ARG_REQUIRES}")
  if(ARG_SETUP)
    set_tests_properties(${name} PROPERTIES FIXTURES_SETUP ${ARG_SETUP})
  endif()
endfunction()

docdisplay_test_targets(install docdisplay kxbase kxcommon)
if(DOCDISPLAY_BUILD_TOOLS)
  docdisplay_test_targets(install docpage docviewer)
endif()
if(DOCDISPLAY_BUILD_IMPORT)
  docdisplay_test_targets(install docimport)
endif()
docdisplay_consumer_test(install_stage SETUP stage)
docdisplay_consumer_test(install_find_package REQUIRES stage)
find_program(PKG_CONFIG_PROGRAM NAMES pkg-config pkgconf)
if(NOT PKG_CONFIG_PROGRAM)
  message(FATAL_ERROR "The tests need pkg-config (Debian: pkg-config)")
endif()
docdisplay_consumer_test(install_pkg_config REQUIRES stage
                         DEFINITIONS "PKG_CONFIG=${PKG_CONFIG_PROGRAM}")
docdisplay_consumer_test(subproject)
docdisplay_consumer_test(system_kxbase REQUIRES stage
                         DEFINITIONS "PKG_CONFIG=${PKG_CONFIG_PROGRAM}")
docdisplay_consumer_test(system_kxbase_packages REQUIRES stage
                         DEFINITIONS "PKG_CONFIG=${PKG_CONFIG_PROGRAM}")
# These build the library again.
set_property(TEST subproject system_kxbase system_kxbase_packages APPEND PROPERTY LABELS builds)
