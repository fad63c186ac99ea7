# What the tests reach of the library. A branch that only an exception takes, or that the compiler made
# and nothing can take, counts for nothing.
find_program(DOCDISPLAY_GCOVR gcovr)
if(NOT DOCDISPLAY_GCOVR)
  message(FATAL_ERROR "The coverage needs gcovr (Debian: gcovr)")
endif()

set(filters "")
foreach(folder IN ITEMS common pptdata pptanim emfdeal docdisplay)
  list(APPEND filters --filter "${PROJECT_SOURCE_DIR}/${folder}/")
endforeach()
# The counters of an earlier run are not those of this one.
add_test(NAME coverage_begin
  COMMAND sh -c "find \"$1\" -name '*.gcda' -delete" sh "${PROJECT_BINARY_DIR}")
get_property(all_tests DIRECTORY PROPERTY TESTS)
list(REMOVE_ITEM all_tests coverage_begin)
set_property(TEST ${all_tests} APPEND PROPERTY DEPENDS coverage_begin)

add_test(NAME coverage_floor
  COMMAND ${DOCDISPLAY_GCOVR} --root "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}" ${filters}
    --exclude-throw-branches --exclude-unreachable-branches
    --fail-under-line 97 --fail-under-branch 90 --print-summary
    --html-details "${PROJECT_BINARY_DIR}/coverage.html"
  WORKING_DIRECTORY "${PROJECT_BINARY_DIR}")
docdisplay_test_properties(coverage_begin LABELS coverage)
docdisplay_test_properties(coverage_floor LABELS coverage)
set_tests_properties(coverage_floor PROPERTIES DEPENDS "${all_tests}")
