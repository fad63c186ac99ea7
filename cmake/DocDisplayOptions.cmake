include(CMakeDependentOption)

# The options of the build. Below another project only the libraries are built unless asked.
if(CMAKE_SOURCE_DIR STREQUAL PROJECT_SOURCE_DIR)
  set(DOCDISPLAY_IS_TOP_LEVEL ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
  endif()
else()
  set(DOCDISPLAY_IS_TOP_LEVEL OFF)
endif()

# A parent project may have set these as ordinary variables: they count, at every configuration.
if(NOT DEFINED DOCDISPLAY_SANITIZE)
  set(DOCDISPLAY_SANITIZE "" CACHE STRING "Sanitizers: address;undefined or thread")
endif()
if(NOT DEFINED DOCDISPLAY_KXBASE)
  set(DOCDISPLAY_KXBASE "bundled" CACHE STRING
      "The in-house libraries: bundled (the open stand-ins) or system (installed ones)")
endif()
if(NOT DOCDISPLAY_KXBASE MATCHES "^(bundled|system)$")
  message(FATAL_ERROR "DOCDISPLAY_KXBASE is '${DOCDISPLAY_KXBASE}'; it must be bundled or system")
endif()

# All that is not shipped, and the programs, listen to the log of the bundled libraries.
set(DOCDISPLAY_CAN_LISTEN OFF)
if(DOCDISPLAY_IS_TOP_LEVEL AND DOCDISPLAY_KXBASE STREQUAL "bundled")
  set(DOCDISPLAY_CAN_LISTEN ON)
endif()
option(DOCDISPLAY_BUILD_TESTS "Build the tests (needs Qt Test and the bundled in-house libraries)"
       ${DOCDISPLAY_CAN_LISTEN})
option(DOCDISPLAY_BUILD_TOOLS "Build the programs" ${DOCDISPLAY_CAN_LISTEN})
if(DOCDISPLAY_BUILD_TOOLS)
  find_package(PkgConfig)
  if(PkgConfig_FOUND)
    pkg_check_modules(POPPLER_QT5 IMPORTED_TARGET poppler-qt5)
  endif()
endif()
set(DOCDISPLAY_CAN_IMPORT OFF)
if(POPPLER_QT5_FOUND)
  set(DOCDISPLAY_CAN_IMPORT ON)
endif()
cmake_dependent_option(DOCDISPLAY_BUILD_IMPORT "Build docimport (needs Poppler for Qt 5)"
                       ${DOCDISPLAY_CAN_IMPORT} "DOCDISPLAY_BUILD_TOOLS" OFF)
if(DOCDISPLAY_BUILD_IMPORT AND NOT DOCDISPLAY_CAN_IMPORT)
  message(FATAL_ERROR
          "DOCDISPLAY_BUILD_IMPORT needs Poppler for Qt 5 (Debian: libpoppler-qt5-dev, pkg-config)")
endif()
option(DOCDISPLAY_BUILD_BENCHMARKS "Build the benchmarks (needs Google Benchmark)"
       ${DOCDISPLAY_CAN_LISTEN})
option(DOCDISPLAY_BUILD_FUZZERS "Build the fuzz targets as libFuzzer programs (needs clang)" OFF)
option(DOCDISPLAY_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(DOCDISPLAY_PRECOMPILED_HEADERS "Compile with precompiled headers, in half the time" OFF)
option(DOCDISPLAY_UNITY_BUILD "Compile several sources of a target as one" OFF)
option(DOCDISPLAY_COVERAGE "Instrument for gcov; the tests check the coverage as well" OFF)
option(DOCDISPLAY_TEST_IMPORT "Fail when LibreOffice is missing for the tests of docimport" OFF)
option(DOCDISPLAY_LINT "Add clang-format and clang-tidy to the tests" OFF)

if(DOCDISPLAY_BUILD_TESTS AND NOT DOCDISPLAY_KXBASE STREQUAL "bundled")
  message(FATAL_ERROR "The tests need DOCDISPLAY_KXBASE=bundled: they listen to its log")
endif()
