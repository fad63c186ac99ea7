include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
file(REMOVE_RECURSE "${WORK}")
run("configuring" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/consumer" -B "${WORK}"
    ${same_tools} "-DCMAKE_PREFIX_PATH=${STAGE}" "-DHOST=${HOST}")
run("building" "${CMAKE_COMMAND}" --build "${WORK}")
run_host("${WORK}/host")
