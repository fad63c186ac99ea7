# Against in-house libraries that are installed as a bare folder with include/ and lib/.
include("${CMAKE_CURRENT_LIST_DIR}/system_kx.cmake")
file(REMOVE_RECURSE "${WORK}")

copy_kx("${WORK}/kx")
file(REMOVE_RECURSE "${WORK}/kx/${LIBDIR}/cmake" "${WORK}/kx/${LIBDIR}/pkgconfig")
if(NOT LIBDIR STREQUAL "lib")
  file(RENAME "${WORK}/kx/${LIBDIR}" "${WORK}/kx/lib")
endif()
check_build_and_hosts("" "${WORK}/kx/lib" "-DKXBASE_ROOT=${WORK}/kx")

# Without them it is not found, which an optional search survives.
run("an optional search" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/optional"
    -B "${WORK}/optional" ${same_tools} "-DCMAKE_PREFIX_PATH=${WORK}/stage")
