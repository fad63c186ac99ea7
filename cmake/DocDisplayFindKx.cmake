# Finds installed KxBase and KxCommon: by their own CMake packages, else below KXBASE_ROOT
# (a folder with include/ and lib/). Installed beside DocDisplayConfig.cmake, which uses it too.
find_package(KxBase CONFIG QUIET)
find_package(KxCommon CONFIG QUIET)

function(docdisplay_find_kx package target library header)
  if(TARGET ${target})
    return()
  endif()
  find_path(${package}_INCLUDE_DIR "${header}"
            HINTS "${KXBASE_ROOT}" ENV KXBASE_ROOT PATH_SUFFIXES include)
  find_library(${package}_LIBRARY NAMES "${library}" "${package}"
               HINTS "${KXBASE_ROOT}" ENV KXBASE_ROOT
               PATH_SUFFIXES lib "lib/${CMAKE_LIBRARY_ARCHITECTURE}" lib64)
  if(NOT ${package}_INCLUDE_DIR OR NOT ${package}_LIBRARY)
    message(FATAL_ERROR "DocDisplay needs the library ${package}: install its CMake package (and "
                        "name its prefix in CMAKE_PREFIX_PATH), or set KXBASE_ROOT to the folder "
                        "that holds its include/ and lib/.")
  endif()
  add_library(${target} SHARED IMPORTED GLOBAL)
  set_target_properties(${target} PROPERTIES
    IMPORTED_LOCATION "${${package}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${${package}_INCLUDE_DIR}")
endfunction()

docdisplay_find_kx(KxBase KxBase::kxbase kxbase KxBase/KxLog.h)
docdisplay_find_kx(KxCommon KxCommon::kxcommon kxcommon KxCommon/KxIniFile.h)
