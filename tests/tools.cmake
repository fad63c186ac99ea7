# The programs and their parts.
docdisplay_runnable(docpage_program docpage)
docdisplay_runnable(docviewer_program docviewer)

# What tests of the programs share.
add_library(docpage_test STATIC DocpageRun.cpp DocpageTest.h)
docdisplay_target_defaults(docpage_test MOC)
target_compile_definitions(docpage_test PUBLIC DOCPAGE_PROGRAM="${docpage_program}")
target_link_libraries(docpage_test PUBLIC docpage_parts Qt5::Test)
docdisplay_precompile_test(docpage_test)
add_dependencies(docpage_test docpage)

docdisplay_test(tst_naturalorder LABELS tools LIBRARIES docpage_parts)
docdisplay_test(tst_picturecheck LABELS tools LIBRARIES docpage_parts)
docdisplay_test(tst_childrun LABELS tools LIBRARIES docpage_parts)
docdisplay_test(tst_docpage_frames LABELS tools LIBRARIES docpage_parts)
docdisplay_test(tst_pageview LABELS tools SOURCES OffscreenScreen.cpp LIBRARIES docviewer_parts)
docdisplay_test(tst_docviewer LABELS tools SOURCES OffscreenScreen.cpp LIBRARIES docviewer_parts)
docdisplay_test(tst_docviewer_output LABELS tools SOURCES OffscreenScreen.cpp LIBRARIES docviewer_parts)
add_dependencies(tst_docviewer_output docviewer)
target_compile_definitions(tst_docviewer_output PRIVATE
  DOCVIEWER_PROGRAM="${docviewer_program}"
  DOCVIEWER_VERSION="${DocDisplay_VERSION}"
  DOCVIEWER_MAN_PAGE="${PROJECT_SOURCE_DIR}/docs/man/docviewer.1")
docdisplay_test(tst_thumbnaillist LABELS tools SOURCES OffscreenScreen.cpp LIBRARIES docviewer_parts)
docdisplay_test(tst_timeline LABELS tools SOURCES OffscreenScreen.cpp LIBRARIES docviewer_parts)

foreach(test IN ITEMS tst_docpage tst_docpage_output tst_docpage_wrap tst_docpage_info
                      tst_docpage_check tst_docpage_encode tst_docpage_deck tst_docpage_model
                      tst_docpage_play)
  docdisplay_test(${test} LABELS tools LIBRARIES docpage_test)
  target_compile_definitions(${test} PRIVATE
    DOCPAGE_VERSION="${DocDisplay_VERSION}"
    DOCPAGE_MAN_PAGE="${PROJECT_SOURCE_DIR}/docs/man/docpage.1"
    DOCPAGE_DECK_SCHEMA="${PROJECT_SOURCE_DIR}/docs/deck.schema.json"
    DOCPAGE_MODEL_DOCUMENT="${PROJECT_SOURCE_DIR}/docs/animation-model.md")
endforeach()

# Where Qt looks for decoders in a folder of plugins.
add_library(broken_decoder MODULE BrokenDecoder.cpp)
docdisplay_target_defaults(broken_decoder MOC)
target_link_libraries(broken_decoder PRIVATE Qt5::Gui)
set_target_properties(broken_decoder PROPERTIES
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/plugins/imageformats")
add_dependencies(tst_docpage_check broken_decoder)
target_compile_definitions(tst_docpage_check PRIVATE
  TEST_PLUGINS="${CMAKE_CURRENT_BINARY_DIR}/plugins"
  SAMPLE_DECK="${PROJECT_SOURCE_DIR}/samples/deck/deck.json")

docdisplay_test(tst_displaydeck_sample LABELS docdisplay LIBRARIES docpage_test)
docdisplay_test(tst_docpage_sample LABELS tools LIBRARIES docpage_test)
docdisplay_test(tst_samplepaint LABELS pptanim SOURCES DocpageRun.cpp LIBRARIES docdisplay_static)
add_dependencies(tst_samplepaint docpage)
target_compile_definitions(tst_samplepaint PRIVATE DOCPAGE_PROGRAM="${docpage_program}")
foreach(test IN ITEMS tst_displaydeck_sample tst_docpage_sample tst_samplepaint)
  target_compile_definitions(${test} PRIVATE
    SAMPLE_DECK="${PROJECT_SOURCE_DIR}/samples/deck/deck.json"
    SAMPLE_HASHES="${CMAKE_CURRENT_SOURCE_DIR}/data/sample_deck.hashes")
endforeach()

if(NOT CMAKE_CROSSCOMPILING_EMULATOR) # which would preload the libraries for itself
  include(faults/faults.cmake)
endif()

set(documented_programs docpage docviewer)
include(import/deck.cmake)
if(DOCDISPLAY_BUILD_IMPORT)
  include(import/import.cmake)
  list(APPEND documented_programs docimport)
endif()

find_program(DOCDISPLAY_PYTHON python3 HINTS /usr/bin) # the one that Debian's packages are for
if(NOT DOCDISPLAY_PYTHON)
  message(FATAL_ERROR "The tests need Python with jsonschema (Debian: python3-jsonschema)")
endif()
add_test(NAME deck_schema
  COMMAND ${DOCDISPLAY_PYTHON} "${CMAKE_CURRENT_SOURCE_DIR}/check_deck_schema.py"
    "${PROJECT_SOURCE_DIR}/docs/deck.schema.json" "${PROJECT_SOURCE_DIR}/samples/deck/deck.json"
    "${docpage_program}")
docdisplay_test_properties(deck_schema LABELS tools)

find_program(DOCDISPLAY_GROFF groff)
if(NOT DOCDISPLAY_GROFF)
  message(FATAL_ERROR "The tests need groff (Debian: groff-base)")
endif()
foreach(program IN LISTS documented_programs)
  add_test(NAME man_${program}
    COMMAND ${DOCDISPLAY_GROFF} -man -Tutf8 -ww -z "${PROJECT_SOURCE_DIR}/docs/man/${program}.1")
  docdisplay_test_properties(man_${program} LABELS tools)
  set_tests_properties(man_${program} PROPERTIES FAIL_REGULAR_EXPRESSION ".")
endforeach()
