# What every target of the project has in common. Everything a parent project may have set by
# variables (AUTOMOC, unity builds, the language level, visibility) is set here per target.

# The sanitizers as one comma-separated value, empty when none is asked for.
string(REPLACE ";" "," DOCDISPLAY_SANITIZE_FLAG "${DOCDISPLAY_SANITIZE}")

# An installed tree may be moved: its programs and libraries find each other by relative paths.
file(RELATIVE_PATH DOCDISPLAY_BIN_TO_LIB
     "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")

# docdisplay_target_defaults(<target> [MOC])
function(docdisplay_target_defaults target)
  cmake_parse_arguments(ARG "MOC" "" "" ${ARGN})
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD 17
    CXX_STANDARD_REQUIRED ON
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    AUTOMOC ${ARG_MOC}
    AUTOUIC OFF
    AUTORCC OFF
    UNITY_BUILD ${DOCDISPLAY_UNITY_BUILD}
    UNITY_BUILD_BATCH_SIZE 8
    DEBUG_POSTFIX ""
    NO_SYSTEM_FROM_IMPORTED OFF
    INSTALL_RPATH "$ORIGIN;$ORIGIN/${DOCDISPLAY_BIN_TO_LIB}")
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}")
  if(DOCDISPLAY_IS_TOP_LEVEL) # a parent project has its own opinion on how strict to be
    target_compile_definitions(${target} PRIVATE
      QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
      QT_DEPRECATED_WARNINGS)
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
      -Wold-style-cast)
  endif()
  if(DOCDISPLAY_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(DOCDISPLAY_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT DOCDISPLAY_LINT)
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage) # what it includes is no header
  endif()
  if(DOCDISPLAY_SANITIZE_FLAG)
    target_compile_options(${target} PRIVATE
      -fsanitize=${DOCDISPLAY_SANITIZE_FLAG} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${DOCDISPLAY_SANITIZE_FLAG})
  endif()
  if(DOCDISPLAY_BUILD_FUZZERS) # the fuzzer follows the paths that an input takes
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(DOCDISPLAY_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# docdisplay_precompile(<target> <header>...): when asked for, what nearly all files of the target
# include is parsed once. Builds without it show that each file includes what it needs.
function(docdisplay_precompile target)
  if(DOCDISPLAY_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# docdisplay_sources([PUBLIC <header>...] [PRIVATE <file>...]): adds the folder's files to the
# library; public headers are installed below the folder's own name and checked to stand alone.
function(docdisplay_sources)
  cmake_parse_arguments(ARG "" "" "PUBLIC;PRIVATE" ${ARGN})
  foreach(file IN LISTS ARG_PUBLIC ARG_PRIVATE)
    target_sources(docdisplay_objects PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
  endforeach()
  file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  foreach(header IN LISTS ARG_PUBLIC)
    set_property(GLOBAL APPEND PROPERTY DOCDISPLAY_PUBLIC_HEADERS "${folder}/${header}")
  endforeach()
endfunction()

# docdisplay_add_library(<name> SHARED|STATIC): a library of the common objects.
function(docdisplay_add_library name kind)
  add_library(${name} ${kind} $<TARGET_OBJECTS:docdisplay_objects>)
  docdisplay_target_defaults(${name})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${name} INTERFACE
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/DocDisplay>")
  target_link_libraries(${name} PUBLIC Qt5::Core Qt5::Gui KxBase::kxbase)
  if(kind STREQUAL "SHARED") # whose users need not know these; its threads have names
    target_link_libraries(${name} PRIVATE KxCommon::kxcommon Threads::Threads)
  else()
    target_link_libraries(${name} PUBLIC KxCommon::kxcommon)
  endif()
endfunction()
