# The host program of docs/encoding.md: taken out of it, compiled as it stands, and run on a file.
docdisplay_document_host(encoding_host docs/encoding.md)

# It consumes what it is given.
file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/encoding_pages")
add_test(NAME encoding_host
  COMMAND ${CMAKE_COMMAND} -DHOST=$<TARGET_FILE:encoding_host>
    "-DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}"
    -DPAGE=${CMAKE_CURRENT_SOURCE_DIR}/data/red_4x3.page
    -DFOLDER=${CMAKE_CURRENT_BINARY_DIR}/encoding_pages
    -P ${CMAKE_CURRENT_SOURCE_DIR}/rules/encoding_host.cmake)
docdisplay_test_properties(encoding_host LABELS rules)
