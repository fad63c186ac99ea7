include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
file(REMOVE_RECURSE "${WORK}")
run("configuring" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/parent" -B "${WORK}"
    ${same_tools} "-DSOURCE=${SOURCE}" "-DHOST=${HOST}")
run("building" "${CMAKE_COMMAND}" --build "${WORK}")
run_host("${WORK}/bin/host")
