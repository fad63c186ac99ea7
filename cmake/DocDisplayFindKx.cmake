# docdisplay_find_kx(<package> <target> <library> <header> <found>): an installed in-house library, by
# its own CMake package, else below KXBASE_ROOT (a folder with include/ and lib/). Sets <found>.
# Installed beside DocDisplayConfig.cmake, which uses it too.
function(docdisplay_find_kx package target library header found)
  set(${found} TRUE PARENT_SCOPE)
  if(NOT TARGET ${target})
    find_package(${package} CONFIG QUIET)
  endif()
  if(TARGET ${target})
    return()
  endif()
  find_path(${package}_INCLUDE_DIR "${header}"
            HINTS "${KXBASE_ROOT}" ENV KXBASE_ROOT PATH_SUFFIXES include)
  find_library(${package}_LIBRARY NAMES "${library}" "${package}"
               HINTS "${KXBASE_ROOT}" ENV KXBASE_ROOT
               PATH_SUFFIXES lib "lib/${CMAKE_LIBRARY_ARCHITECTURE}" lib64)
  if(NOT ${package}_INCLUDE_DIR OR NOT ${package}_LIBRARY)
    set(${found} FALSE PARENT_SCOPE)
    return()
  endif()
  add_library(${target} SHARED IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES
    IMPORTED_LOCATION "${${package}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${${package}_INCLUDE_DIR}")
endfunction()

set(DOCDISPLAY_KX_HINT "install its CMake package (and name its prefix in CMAKE_PREFIX_PATH), or set \
KXBASE_ROOT to the folder that holds its include/ and lib/")
