# The options of the build. Below another project only the libraries are built unless asked.
if(CMAKE_SOURCE_DIR STREQUAL PROJECT_SOURCE_DIR)
  set(DOCDISPLAY_IS_TOP_LEVEL ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
  endif()
else()
  set(DOCDISPLAY_IS_TOP_LEVEL OFF)
endif()

option(DOCDISPLAY_BUILD_TESTS "Build the tests (needs Qt Test)" ${DOCDISPLAY_IS_TOP_LEVEL})
option(DOCDISPLAY_BUILD_TOOLS "Build the programs" ${DOCDISPLAY_IS_TOP_LEVEL})
option(DOCDISPLAY_BUILD_BENCHMARKS "Build the benchmarks (needs Google Benchmark)"
       ${DOCDISPLAY_IS_TOP_LEVEL})
option(DOCDISPLAY_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(DOCDISPLAY_COVERAGE "Instrument for gcov" OFF)

set(DOCDISPLAY_SANITIZE "" CACHE STRING "Sanitizers: address;undefined or thread")
set_property(CACHE DOCDISPLAY_SANITIZE PROPERTY STRINGS "" "address;undefined" "thread")

set(DOCDISPLAY_KXBASE "bundled" CACHE STRING
    "The in-house libraries: bundled (the open stand-ins) or system (installed ones)")
set_property(CACHE DOCDISPLAY_KXBASE PROPERTY STRINGS bundled system)
if(NOT DOCDISPLAY_KXBASE MATCHES "^(bundled|system)$")
  message(FATAL_ERROR "DOCDISPLAY_KXBASE is '${DOCDISPLAY_KXBASE}'; it must be bundled or system")
endif()
