# What every test is run with. AddressSanitizer refuses any single allocation above 512 MB: a length
# in a file must not be trusted for one. Qt is not built for ThreadSanitizer, see tests/tsan.supp.
set(DOCDISPLAY_TEST_ENVIRONMENT
  "QT_QPA_PLATFORM=offscreen" "TZ=UTC" "LC_ALL=C.UTF-8"
  "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:max_allocation_size_mb=512"
  "LSAN_OPTIONS=print_suppressions=0:suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp"
  "UBSAN_OPTIONS=print_stacktrace=1"
  "TSAN_OPTIONS=halt_on_error=1:ignore_noninstrumented_modules=1:suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp")

# Elsewhere than on the programs' own processor it takes an emulator (the path of one program), which
# is slow.
set(DOCDISPLAY_TEST_TIMEOUT 300)
if(CMAKE_CROSSCOMPILING_EMULATOR)
  set(DOCDISPLAY_TEST_TIMEOUT 1500)
  list(APPEND DOCDISPLAY_TEST_ENVIRONMENT
    "DOCDISPLAY_EMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    "PKG_CONFIG_LIBDIR=$ENV{PKG_CONFIG_LIBDIR}") # the toolchain's
endif()

# docdisplay_runnable(<variable> <target>): the file that tests start to run a program of this build:
# itself, or a script that hands it to the emulator.
function(docdisplay_runnable variable target)
  set(file "$<TARGET_FILE:${target}>")
  if(CMAKE_CROSSCOMPILING_EMULATOR)
    set(file "${PROJECT_BINARY_DIR}/emulated/${target}")
    file(GENERATE OUTPUT "${file}"
      CONTENT "#!/bin/sh\nexec '${CMAKE_CROSSCOMPILING_EMULATOR}' '$<TARGET_FILE:${target}>' \"$@\"\n"
      FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  endif()
  set(${variable} "${file}" PARENT_SCOPE)
endfunction()

# docdisplay_test_properties(<test> [LABELS <label>...]): for tests that are no Qt Test program too.
function(docdisplay_test_properties name)
  cmake_parse_arguments(ARG "" "" "LABELS" ${ARGN})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${DOCDISPLAY_TEST_TIMEOUT}
    LABELS "${ARG_LABELS}"
    ENVIRONMENT "${DOCDISPLAY_TEST_ENVIRONMENT}")
endfunction()

# docdisplay_test_targets(<label> <target>...): what the tests of a label need, all of which the
# target tests_<label> builds.
function(docdisplay_test_targets label)
  if(NOT TARGET tests_${label})
    add_custom_target(tests_${label})
  endif()
  if(ARGN)
    add_dependencies(tests_${label} ${ARGN})
  endif()
endfunction()

# What the tests share when headers are precompiled. A precompiled header fits only where the same
# parts of Qt are used.
if(DOCDISPLAY_PRECOMPILED_HEADERS)
  file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp" CONTENT "")
  add_library(test_headers OBJECT "${CMAKE_CURRENT_BINARY_DIR}/test_headers.cpp")
  docdisplay_target_defaults(test_headers)
  target_link_libraries(test_headers PRIVATE docdisplay Qt5::Test)
  docdisplay_precompile(test_headers <QtTest> <QtGui>)
endif()

function(docdisplay_precompile_test target)
  if(DOCDISPLAY_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} REUSE_FROM test_headers)
  endif()
endfunction()

# docdisplay_test(<name> [FOLDER <folder>] [LABELS <label>...] [SOURCES <file>...]
# [LIBRARIES <target>...]): the Qt Test program of <name>.cpp, which may be in a folder below, linked
# to the shared library unless LIBRARIES names another.
function(docdisplay_test name)
  cmake_parse_arguments(ARG "" "FOLDER" "LABELS;SOURCES;LIBRARIES" ${ARGN})
  set(source "${name}.cpp")
  if(ARG_FOLDER)
    string(PREPEND source "${ARG_FOLDER}/")
  endif()
  if(NOT ARG_LIBRARIES)
    set(ARG_LIBRARIES docdisplay)
  endif()
  # The one file with classes of its own: AUTOMOC would add a file to compile to each program.
  qt5_generate_moc(${source} "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc")
  add_executable(${name} ${source} "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc" ${ARG_SOURCES})
  docdisplay_target_defaults(${name})
  target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} Qt5::Test)
  if(ARG_LIBRARIES MATCHES "^(docdisplay|docpage|fault)")
    docdisplay_precompile_test(${name})
  endif()
  add_test(NAME ${name} COMMAND ${name})
  docdisplay_test_properties(${name} LABELS ${ARG_LABELS})
  foreach(label IN LISTS ARG_LABELS)
    docdisplay_test_targets(${label} ${name})
  endforeach()
endfunction()
