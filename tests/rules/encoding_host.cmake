# Runs the host program of docs/encoding.md on two files of its own, and on one that is missing.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
configure_file("${PAGE}" "${FOLDER}/one.png" COPYONLY)
configure_file("${PAGE}" "${FOLDER}/two.png" COPYONLY)

run("the host program" ${EMULATOR} "${HOST}" "${FOLDER}/" "${FOLDER}/one.png" "${FOLDER}/two.png")
if(NOT run_output MATCHES
   "page-job: 1 of 2\npage-job: 2 of 2\n[^\n]*/{[0-9a-f-]+}_0\n[^\n]*/{[0-9a-f-]+}_1\n$")
  message(FATAL_ERROR "the host program printed: ${run_output}")
endif()
file(GLOB left RELATIVE "${FOLDER}" "${FOLDER}/*")
list(LENGTH left count)
if(NOT count EQUAL 2 OR NOT left MATCHES "}_0;{.*}_1$")
  message(FATAL_ERROR "the host program left: ${left}")
endif()

execute_process(COMMAND ${EMULATOR} "${HOST}" "${FOLDER}/" "${FOLDER}/missing.png"
                RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_QUIET)
if(NOT result EQUAL 1 OR NOT output MATCHES "^page-job: failed, error 9\n$")
  message(FATAL_ERROR "the host program ended with ${result} and printed: ${output}")
endif()
