# The mutation check takes long and is run by hand. What it makes of a source, and which tests it
# runs, is tested here, and that every mutant which it knows to be equivalent is still one of the
# library's.
find_program(DOCDISPLAY_PYTHON python3 HINTS /usr/bin)
if(NOT DOCDISPLAY_PYTHON)
  message(FATAL_ERROR "The tests need Python (Debian: python3)")
endif()
set(mutation "${CMAKE_CURRENT_SOURCE_DIR}/mutation")
add_test(NAME mutation_mutants COMMAND ${DOCDISPLAY_PYTHON} "${mutation}/test_mutants.py")
add_test(NAME mutation_reach COMMAND ${DOCDISPLAY_PYTHON} "${mutation}/test_reach.py")
add_test(NAME mutation_equivalents COMMAND ${DOCDISPLAY_PYTHON} "${mutation}/mutate" --list)
foreach(test IN ITEMS mutation_mutants mutation_reach mutation_equivalents)
  docdisplay_test_properties(${test} LABELS rules)
endforeach()
