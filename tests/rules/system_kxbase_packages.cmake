# Against in-house libraries that are installed with their CMake packages, each in a place of its own
# where the loader does not look.
include("${CMAKE_CURRENT_LIST_DIR}/system_kx.cmake")
file(REMOVE_RECURSE "${WORK}")

copy_kx("${WORK}/base")
copy_kx("${WORK}/common")
file(GLOB_RECURSE others "${WORK}/base/*[kK]x[cC]ommon*" "${WORK}/common/*[kK]x[bB]ase*")
file(REMOVE ${others})
# The library finds both by itself, and so do its CMake hosts. What pkg-config names may become a
# host's own need, as the linker likes, and is looked for where the loader is told.
check_build_and_hosts("${WORK}/base\;${WORK}/common"
                      "${WORK}/base/${LIBDIR}:${WORK}/common/${LIBDIR}")
foreach(name base common)
  file(STRINGS "${WORK}/build/CMakeCache.txt" used REGEX "^Kx[A-Z][a-z]+_DIR:PATH=${WORK}/${name}/")
  if(NOT used)
    message(FATAL_ERROR "the package in ${WORK}/${name} was not used")
  endif()
endforeach()
