# The README's host program: taken out of it, compiled as it stands, and run on a page.
set(readme "${PROJECT_SOURCE_DIR}/README.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${readme}")
file(READ "${readme}" text)
if(NOT text MATCHES "\n```cpp\n([^`]*)```")
  message(FATAL_ERROR "README.md holds no host program")
endif()
set(DOCDISPLAY_README_HOST "${CMAKE_CURRENT_BINARY_DIR}/readme_host.cpp")
file(GENERATE OUTPUT "${DOCDISPLAY_README_HOST}" CONTENT "${CMAKE_MATCH_1}")

add_executable(readme_host "${DOCDISPLAY_README_HOST}")
target_link_libraries(readme_host PRIVATE docdisplay)
set_target_properties(readme_host PROPERTIES AUTOMOC OFF)
if(DOCDISPLAY_SANITIZE_FLAG)
  target_link_options(readme_host PRIVATE -fsanitize=${DOCDISPLAY_SANITIZE_FLAG})
endif()

# A page result file of 4 x 3 red pixels.
set(DOCDISPLAY_TEST_PAGE "${CMAKE_CURRENT_SOURCE_DIR}/data/red_4x3.page")
add_test(NAME readme_host COMMAND readme_host "${DOCDISPLAY_TEST_PAGE}" "${DOCDISPLAY_TEST_PAGE}")
docdisplay_test_properties(readme_host LABELS rules)
set_tests_properties(readme_host PROPERTIES
  PASS_REGULAR_EXPRESSION "page 0 QSize\\(4, 3\\)\npage 1 QSize\\(4, 3\\)\n$")
