# The exported symbols are those of a checked-in list, and nothing runs when a library is loaded.
foreach(library docdisplay)
  add_test(NAME symbols_${library}
    COMMAND ${CMAKE_COMMAND}
      -DNM=${CMAKE_NM} -DLIBRARY=$<TARGET_FILE:${library}>
      -DEXPECTED=${CMAKE_CURRENT_SOURCE_DIR}/rules/${library}.symbols
      -P ${CMAKE_CURRENT_SOURCE_DIR}/rules/check_symbols.cmake)
  docdisplay_test_properties(symbols_${library} LABELS rules)
endforeach()

set(loaded docdisplay)
if(DOCDISPLAY_KXBASE STREQUAL "bundled")
  list(APPEND loaded kxbase kxcommon)
endif()
# The compiler's own frame_dummy, and one that each file instrumented by a sanitizer or gcov has.
set(constructors 1)
if(DOCDISPLAY_SANITIZE_FLAG OR DOCDISPLAY_COVERAGE)
  set(constructors any)
endif()
foreach(library IN LISTS loaded)
  add_test(NAME no_code_at_load_${library}
    COMMAND ${CMAKE_COMMAND}
      -DREADELF=${CMAKE_READELF} -DLIBRARY=$<TARGET_FILE:${library}> -DPOINTERS=${constructors}
      -P ${CMAKE_CURRENT_SOURCE_DIR}/rules/check_no_code_at_load.cmake)
  docdisplay_test_properties(no_code_at_load_${library} LABELS rules)
endforeach()
