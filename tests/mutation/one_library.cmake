# Included by the configuration of a mutation check (CMAKE_PROJECT_DocDisplay_INCLUDE). Its one
# library shows the private classes as well, and the tests of these link it, too: a mutant then
# needs no link but the library's. What mutants cannot change is compiled beforehand.
find_program(DOCDISPLAY_LLD ld.lld)
if(DOCDISPLAY_LLD)
  add_link_options(-fuse-ld=lld)
endif()

function(docdisplay_make_one_library)
  set_target_properties(docdisplay_objects PROPERTIES
    CXX_VISIBILITY_PRESET default
    VISIBILITY_INLINES_HIDDEN OFF)
  target_precompile_headers(docdisplay_objects PRIVATE
    <QBuffer> <QDataStream> <QDateTime> <QFile> <QImage> <QMap> <QMutex> <QPainter> <QPointer>
    <QStringList> <QThread> <QTimer> <QUuid> <QVariant> <algorithm> <array> <cmath> <limits> <list>
    <map> <memory> <string> <vector>)
  set_target_properties(docdisplay PROPERTIES LINK_OPTIONS "" LINK_DEPENDS "")
  if(DOCDISPLAY_LLD)
    target_link_options(docdisplay PRIVATE -fuse-ld=lld)
  endif()
  file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/empty.cpp" CONTENT "")
  set_target_properties(docdisplay_static PROPERTIES SOURCES "${PROJECT_BINARY_DIR}/empty.cpp")
  target_link_libraries(docdisplay_static PUBLIC docdisplay)
endfunction()
cmake_language(DEFER CALL docdisplay_make_one_library)
