# Each public header compiles alone and twice, also without Qt's keywords and implicit casts. The
# check is the compilation.
function(docdisplay_check_headers name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LIBRARIES" ${ARGN})
  set(sources "")
  foreach(header IN LISTS ARG_HEADERS)
    string(MAKE_C_IDENTIFIER "${header}" id)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${name}_${id}.cpp")
    file(GENERATE OUTPUT "${source}" CONTENT "#include <${header}>\n#include <${header}>\n")
    list(APPEND sources "${source}")
  endforeach()
  foreach(variant plain strict)
    add_library(${name}_${variant} OBJECT ${sources})
    docdisplay_target_defaults(${name}_${variant})
    # Not through the project's own include path: the library's target must bring what is needed.
    set_target_properties(${name}_${variant} PROPERTIES INCLUDE_DIRECTORIES "")
    target_link_libraries(${name}_${variant} PRIVATE ${ARG_LIBRARIES})
    docdisplay_test_targets(rules ${name}_${variant})
  endforeach()
  set_target_properties(${name}_plain PROPERTIES COMPILE_DEFINITIONS "")
endfunction()

get_property(public_headers GLOBAL PROPERTY DOCDISPLAY_PUBLIC_HEADERS)
docdisplay_check_headers(headers_docdisplay HEADERS ${public_headers} LIBRARIES docdisplay)
if(DOCDISPLAY_KXBASE STREQUAL "bundled")
  docdisplay_check_headers(headers_kxbase
    HEADERS KxBase/KxGlobal.h KxBase/KxByteArray.h KxBase/KxLog.h KxBase/KxVariant.h KxBase/KxVariantMap.h
    LIBRARIES KxBase::kxbase)
  docdisplay_check_headers(headers_kxcommon
    HEADERS KxCommon/KxGlobal.h KxCommon/KxIniFile.h LIBRARIES KxCommon::kxcommon)
endif()
