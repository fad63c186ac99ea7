# Format and static analysis of all that is compiled. Tests and benchmarks are formatted, but not
# analysed: Qt Test's macros and Google Benchmark's loops are most of what would be found.
find_program(DOCDISPLAY_CLANG_FORMAT clang-format)
find_program(DOCDISPLAY_RUN_CLANG_TIDY run-clang-tidy)
find_package(Git)
if(NOT DOCDISPLAY_CLANG_FORMAT OR NOT DOCDISPLAY_RUN_CLANG_TIDY OR NOT Git_FOUND)
  message(FATAL_ERROR
          "DOCDISPLAY_LINT needs clang-format, clang-tidy and git (Debian: packages of these names)")
endif()

docdisplay_test_targets(lint)
add_test(NAME clang_format
  COMMAND sh -c "\"$1\" ls-files -z '*.h' '*.cpp' | xargs -0 \"$2\" --dry-run -Werror"
    sh "${GIT_EXECUTABLE}" "${DOCDISPLAY_CLANG_FORMAT}"
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
docdisplay_test_properties(clang_format LABELS lint)

add_test(NAME clang_tidy
  COMMAND ${CMAKE_COMMAND} -DBINARY_DIR=${PROJECT_BINARY_DIR} -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
    -DRUN_CLANG_TIDY=${DOCDISPLAY_RUN_CLANG_TIDY} -P "${CMAKE_CURRENT_SOURCE_DIR}/rules/clang_tidy.cmake")
docdisplay_test_properties(clang_tidy LABELS lint)
set_tests_properties(clang_tidy PROPERTIES TIMEOUT 1500 PROCESSORS 2)
