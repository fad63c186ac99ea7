# What becomes of the work when calls of the system fail and when the program is killed.
add_library(faults MODULE
  faults/Allocations.cpp
  faults/FaultPlan.cpp
  faults/FaultPlan.h
  faults/FileCalls.cpp)
docdisplay_target_defaults(faults)
target_link_libraries(faults PRIVATE ${CMAKE_DL_LIBS})
set(preloaded "$<TARGET_FILE:faults>")
if(DOCDISPLAY_SANITIZE)
  target_compile_options(faults PRIVATE -fno-sanitize=all)
  target_link_options(faults PRIVATE -fno-sanitize=all)
endif()
# AddressSanitizer has to be the first of all libraries. Its calls go on to those behind it, but its
# allocator does not: allocations fail in the other builds only.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND "address" IN_LIST DOCDISPLAY_SANITIZE)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
    OUTPUT_VARIABLE libasan OUTPUT_STRIP_TRAILING_WHITESPACE)
  string(PREPEND preloaded "${libasan}:")
endif()

add_library(fault_runs STATIC faults/FaultRuns.cpp faults/FaultRuns.h)
docdisplay_target_defaults(fault_runs)
target_compile_definitions(fault_runs PRIVATE FAULTS_LIBRARIES="${preloaded}")
target_link_libraries(fault_runs PUBLIC docpage_test)
docdisplay_precompile_test(fault_runs)
add_dependencies(fault_runs faults)

foreach(test IN ITEMS tst_faults tst_faults_encoder tst_faults_viewer tst_killed)
  docdisplay_test(${test} LABELS faults LIBRARIES fault_runs)
endforeach()
set_tests_properties(tst_faults PROPERTIES COST 100) # the longest: not begun last
add_dependencies(tst_faults_encoder encoding_host) # of docs/encoding.md
target_compile_definitions(tst_faults_encoder PRIVATE
  ENCODING_HOST="$<TARGET_FILE:encoding_host>")
add_dependencies(tst_faults_viewer docviewer)
target_compile_definitions(tst_faults_viewer PRIVATE DOCVIEWER_PROGRAM="$<TARGET_FILE:docviewer>")
