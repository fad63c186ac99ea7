# The programs and their parts.
docdisplay_test(tst_naturalorder LABELS tools LIBRARIES docpage_parts)
docdisplay_test(tst_picturecheck LABELS tools LIBRARIES docpage_parts)

docdisplay_test(tst_docpage LABELS tools SOURCES DocpageRun.cpp LIBRARIES docpage_parts)
add_dependencies(tst_docpage docpage)
target_compile_definitions(tst_docpage PRIVATE
  DOCPAGE_PROGRAM="$<TARGET_FILE:docpage>"
  DOCPAGE_VERSION="${DocDisplay_VERSION}"
  DOCPAGE_MAN_PAGE="${PROJECT_SOURCE_DIR}/docs/man/docpage.1")

find_program(DOCDISPLAY_GROFF groff)
if(NOT DOCDISPLAY_GROFF)
  message(FATAL_ERROR "The tests need groff (Debian: groff-base)")
endif()
add_test(NAME man_docpage
  COMMAND ${DOCDISPLAY_GROFF} -man -Tutf8 -ww -z "${PROJECT_SOURCE_DIR}/docs/man/docpage.1")
docdisplay_test_properties(man_docpage LABELS tools)
set_tests_properties(man_docpage PROPERTIES FAIL_REGULAR_EXPRESSION ".")
