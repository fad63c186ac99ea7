# Against in-house libraries that are installed: by their CMake packages, and as a bare folder with
# include/ and lib/ alone.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
file(REMOVE_RECURSE "${WORK}/kx" "${WORK}/root" "${WORK}/packages" "${WORK}/stage" "${WORK}/host" "${WORK}/optional")
set(ours_off -DDOCDISPLAY_BUILD_TESTS=OFF -DDOCDISPLAY_BUILD_TOOLS=OFF
    -DDOCDISPLAY_BUILD_BENCHMARKS=OFF)

file(COPY "${STAGE}/" DESTINATION "${WORK}/kx")
file(GLOB_RECURSE ours "${WORK}/kx/*ocdisplay*" "${WORK}/kx/include/DocDisplay/*")
file(REMOVE ${ours})
run("configuring by packages" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/packages"
    ${same_tools} ${ours_off} -DDOCDISPLAY_KXBASE=system "-DCMAKE_PREFIX_PATH=${WORK}/kx")
file(READ "${WORK}/packages/CMakeCache.txt" cache)
if(NOT cache MATCHES "KxBase_DIR:PATH=${WORK}/kx")
  message(FATAL_ERROR "the package of KxBase was not used")
endif()

file(REMOVE_RECURSE "${WORK}/kx/${LIBDIR}/cmake" "${WORK}/kx/${LIBDIR}/pkgconfig")
if(NOT LIBDIR STREQUAL "lib")
  file(RENAME "${WORK}/kx/${LIBDIR}" "${WORK}/kx/lib")
endif()
run("configuring by a folder" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/root"
    ${same_tools} ${ours_off} -DDOCDISPLAY_KXBASE=system "-DKXBASE_ROOT=${WORK}/kx")
run("building" "${CMAKE_COMMAND}" --build "${WORK}/root")
run("installing" "${CMAKE_COMMAND}" --install "${WORK}/root" --prefix "${WORK}/stage")
file(GLOB_RECURSE stand_ins "${WORK}/stage/*[kK]x[bB]ase*" "${WORK}/stage/*[kK]x[cC]ommon*")
if(stand_ins)
  message(FATAL_ERROR "installed although the system's are used: ${stand_ins}")
endif()

# A host of that build, by find_package and by pkg-config.
run("configuring the host" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/consumer"
    -B "${WORK}/host" ${same_tools} "-DCMAKE_PREFIX_PATH=${WORK}/stage"
    "-DKXBASE_ROOT=${WORK}/kx" "-DHOST=${HOST}")
run("building the host" "${CMAKE_COMMAND}" --build "${WORK}/host")
run_host("${WORK}/host/host")

# Without them it is not found, which an optional search survives.
run("an optional search" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/optional"
    -B "${WORK}/optional" ${same_tools} "-DCMAKE_PREFIX_PATH=${WORK}/stage")

set(ENV{PKG_CONFIG_PATH} "${WORK}/stage/${LIBDIR}/pkgconfig")
run("pkg-config" "${PKG_CONFIG}" --cflags --libs docdisplay)
separate_arguments(needed UNIX_COMMAND "${run_output}")
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
run("compiling" "${CXX}" ${flags} -std=c++17 "${HOST}" -o "${WORK}/host/by_pkg_config" ${needed})
set(ENV{LD_LIBRARY_PATH} "${WORK}/stage/${LIBDIR}:${WORK}/kx/lib")
run_host("${WORK}/host/by_pkg_config")
