# The host programs of the documentation: taken out of it and compiled as they stand.

# docdisplay_document_host(<target> <document>): the document's first C++ program as a program.
function(docdisplay_document_host target document)
  set(path "${PROJECT_SOURCE_DIR}/${document}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
  file(READ "${path}" text)
  if(NOT text MATCHES "\n```cpp\n([^`]*)```")
    message(FATAL_ERROR "${document} holds no host program")
  endif()
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
  file(GENERATE OUTPUT "${source}" CONTENT "${CMAKE_MATCH_1}")
  add_executable(${target} "${source}")
  target_link_libraries(${target} PRIVATE docdisplay)
  set_target_properties(${target} PROPERTIES AUTOMOC OFF)
  docdisplay_test_targets(rules ${target})
  if(DOCDISPLAY_SANITIZE_FLAG)
    target_link_options(${target} PRIVATE -fsanitize=${DOCDISPLAY_SANITIZE_FLAG})
  endif()
endfunction()

# A page result file of 4 x 3 red pixels.
set(DOCDISPLAY_TEST_PAGE "${CMAKE_CURRENT_SOURCE_DIR}/data/red_4x3.page")
docdisplay_document_host(readme_host README.md)
set(DOCDISPLAY_README_HOST "${CMAKE_CURRENT_BINARY_DIR}/readme_host.cpp")
add_test(NAME readme_host COMMAND readme_host "${DOCDISPLAY_TEST_PAGE}" "${DOCDISPLAY_TEST_PAGE}")
docdisplay_test_properties(readme_host LABELS rules)
set_tests_properties(readme_host PROPERTIES
  PASS_REGULAR_EXPRESSION "page 0 QSize\\(4, 3\\)\npage 1 QSize\\(4, 3\\)\n$")

# Without pages it has nothing to show; with some it would stay.
docdisplay_document_host(hosting_host docs/hosting.md)
add_test(NAME hosting_host COMMAND hosting_host)
docdisplay_test_properties(hosting_host LABELS rules)
set_tests_properties(hosting_host PROPERTIES
  PASS_REGULAR_EXPRESSION "Name the page result files of a document.\n$")
