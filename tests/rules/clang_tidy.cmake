# clang-tidy over the sources of the targets, several of a target at a time: over the file that
# includes them. The analyser passes by what is included, but where the file has such a name.
# -DBINARY_DIR=, -DSOURCE_DIR=, -DRUN_CLANG_TIDY=
file(GLOB_RECURSE unity_sources "${BINARY_DIR}/unity_*_cxx.cxx")
foreach(unity_source IN LISTS unity_sources)
  string(REGEX REPLACE "/unity_([^/]*)$" "/UnifiedSource_\\1" unified_source "${unity_source}")
  configure_file("${unity_source}" "${unified_source}" COPYONLY)
endforeach()
file(READ "${BINARY_DIR}/compile_commands.json" commands)
string(REGEX REPLACE "/unity_([0-9]+_cxx\\.cxx)" "/UnifiedSource_\\1" commands "${commands}")
file(WRITE "${BINARY_DIR}/analysis/compile_commands.json" "${commands}")

execute_process(
  COMMAND ${RUN_CLANG_TIDY} -quiet -j 2 -p "${BINARY_DIR}/analysis"
    -checks=-bugprone-suspicious-include
    "^${BINARY_DIR}/(CMakeFiles|platform|fuzz|tools)/.*/UnifiedSource_[0-9]+_cxx\\.cxx$"
    "^${SOURCE_DIR}/emfdeal/EmfPlatform_linux\\.cpp$"
  COMMAND_ERROR_IS_FATAL ANY)
