# Helpers of the scripts that build the library against installed in-house libraries.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")

# undeclare(<header> <regex>): takes the declaration out.
function(undeclare header declaration)
  file(READ "${header}" text)
  string(REGEX REPLACE "${declaration}" "" shorter "${text}")
  if(shorter STREQUAL text)
    message(FATAL_ERROR "${header} does not declare ${declaration}")
  endif()
  file(WRITE "${header}" "${shorter}")
endfunction()

# copy_kx(<prefix>): the staged tree without this library, and without what others than the bundled
# libraries need not have.
function(copy_kx prefix)
  file(COPY "${STAGE}/" DESTINATION "${prefix}")
  undeclare("${prefix}/include/KxBase/KxVariant.h" "KxVariant\\(long long value\\);")
  undeclare("${prefix}/include/KxBase/KxLog.h" "KXBASE_EXPORT void KxSetLogSink[^;]*;")
  file(GLOB_RECURSE ours "${prefix}/*oc[dD]isplay*" "${prefix}/include/DocDisplay/*")
  file(REMOVE ${ours})
endfunction()

# check_build_and_hosts(<prefix path> <library path> <argument>...): builds and installs the library
# with the arguments, and hosts of it by find_package, which is told the prefix path (its separators
# escaped) and the arguments, and by pkg-config, run with the library path.
function(check_build_and_hosts prefix_path library_path)
  file(REMOVE_RECURSE "${WORK}/build" "${WORK}/stage" "${WORK}/host")
  run("configuring" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" ${same_tools} -DDOCDISPLAY_UNITY_BUILD=ON
      -DDOCDISPLAY_KXBASE=system "-DCMAKE_PREFIX_PATH=${prefix_path}" ${ARGN})
  run("building" "${CMAKE_COMMAND}" --build "${WORK}/build")
  run("installing" "${CMAKE_COMMAND}" --install "${WORK}/build" --prefix "${WORK}/stage")
  file(GLOB_RECURSE stand_ins "${WORK}/stage/*[kK]x[bB]ase*" "${WORK}/stage/*[kK]x[cC]ommon*")
  if(stand_ins)
    message(FATAL_ERROR "installed although the system's are used: ${stand_ins}")
  endif()

  run("configuring the host" "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/consumer"
      -B "${WORK}/host" ${same_tools} "-DCMAKE_PREFIX_PATH=${WORK}/stage\;${prefix_path}" ${ARGN}
      "-DHOST=${HOST}")
  run("building the host" "${CMAKE_COMMAND}" --build "${WORK}/host")
  run_host("${WORK}/host/host")

  set(ENV{PKG_CONFIG_PATH} "${WORK}/stage/${LIBDIR}/pkgconfig")
  run("pkg-config" "${PKG_CONFIG}" --cflags --libs docdisplay)
  foreach(library kxbase kxcommon)
    if(NOT run_output MATCHES "/lib${library}\\.so")
      message(FATAL_ERROR "pkg-config does not name ${library}: ${run_output}")
    endif()
  endforeach()
  separate_arguments(needed UNIX_COMMAND "${run_output}")
  separate_arguments(flags UNIX_COMMAND "${FLAGS}")
  run("compiling" "${CXX}" ${flags} -std=c++17 "${HOST}" -o "${WORK}/host/by_pkg_config" ${needed})
  set(ENV{LD_LIBRARY_PATH} "${WORK}/stage/${LIBDIR}:${library_path}")
  run_host("${WORK}/host/by_pkg_config")
endfunction()
