# docimport and its parts.
docdisplay_runnable(docimport_program docimport)

# What tests of the program share.
add_library(docimport_test STATIC import/DocimportTest.cpp import/DocimportTest.h)
docdisplay_target_defaults(docimport_test MOC)
target_include_directories(docimport_test PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
target_compile_definitions(docimport_test PUBLIC
  DOCIMPORT_PROGRAM="${docimport_program}"
  DOCIMPORT_VERSION="${DocDisplay_VERSION}"
  DOCIMPORT_MAN_PAGE="${PROJECT_SOURCE_DIR}/docs/man/docimport.1")
target_link_libraries(docimport_test PUBLIC docpage_test docimport_parts)
add_dependencies(docimport_test docimport)

docdisplay_test(tst_importparts FOLDER import LABELS docimport LIBRARIES docimport_parts)
target_include_directories(tst_importparts PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
foreach(test IN ITEMS tst_layerpicture tst_slidecomposer)
  docdisplay_test(${test} FOLDER import LABELS docimport LIBRARIES docimport_parts)
  target_include_directories(${test} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
endforeach()
docdisplay_test(tst_docimport FOLDER import LABELS docimport LIBRARIES docimport_test)
docdisplay_test(tst_docimport_engine FOLDER import LABELS docimport LIBRARIES docimport_test)
docdisplay_test(tst_slideworkers FOLDER import LABELS docimport threads LIBRARIES docimport_parts)
target_include_directories(tst_slideworkers PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")

# With the engine itself, where it is.
file(GLOB import_engines /usr/lib/libreoffice/program/soffice.bin /opt/libreoffice*/program/soffice.bin)
if(import_engines)
  find_package(Qt5 5.15 REQUIRED COMPONENTS Network)
  docdisplay_test(tst_import FOLDER import LABELS import LIBRARIES docimport_test Qt5::Network)
  docdisplay_test(tst_importsample FOLDER import LABELS import LIBRARIES docimport_test)
  target_compile_definitions(tst_importsample PRIVATE
    IMPORT_SAMPLE="${PROJECT_SOURCE_DIR}/samples/tides.fodp")
elseif(DOCDISPLAY_TEST_IMPORT)
  message(FATAL_ERROR "DOCDISPLAY_TEST_IMPORT needs LibreOffice (Debian: libreoffice-impress)")
endif()
