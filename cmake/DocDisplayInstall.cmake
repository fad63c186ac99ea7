# What `cmake --install` puts down for the library: the shared library, its public headers, a CMake
# package (target DocDisplay::docdisplay) and a pkg-config file.
include(CMakePackageConfigHelpers)

set_target_properties(docdisplay PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  LINK_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/docdisplay.map")
if(DOCDISPLAY_KXBASE STREQUAL "system")
  # The in-house libraries may lie where the loader does not look.
  foreach(library KxBase::kxbase KxCommon::kxcommon)
    set_property(TARGET docdisplay APPEND PROPERTY
      INSTALL_RPATH "$<TARGET_FILE_DIR:${library}>")
  endforeach()
endif()
target_link_options(docdisplay PRIVATE
  "LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/docdisplay.map")
add_library(DocDisplay::docdisplay ALIAS docdisplay)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/DocDisplay")
install(TARGETS docdisplay EXPORT DocDisplayTargets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT DocDisplayTargets NAMESPACE DocDisplay:: DESTINATION "${package_dir}")

get_property(public_headers GLOBAL PROPERTY DOCDISPLAY_PUBLIC_HEADERS)
foreach(header IN LISTS public_headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${PROJECT_SOURCE_DIR}/${header}"
          DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/DocDisplay/${folder}")
endforeach()

set(config_dir "${PROJECT_BINARY_DIR}/package")
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/DocDisplayConfig.cmake.in" "${config_dir}/DocDisplayConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${config_dir}/DocDisplayConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES
          "${config_dir}/DocDisplayConfig.cmake"
          "${config_dir}/DocDisplayConfigVersion.cmake"
          "${PROJECT_SOURCE_DIR}/cmake/DocDisplayFindKx.cmake"
        DESTINATION "${package_dir}")

# A relative prefix lets the installed tree be moved or staged.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pc_to_prefix "/${pc_dir}" "/")
string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
set(pc_kx_requires "")
set(pc_kx_libs "")
set(pc_kx_cflags "")
if(DOCDISPLAY_KXBASE STREQUAL "bundled")
  set(pc_kx_requires ", kxbase")
else()
  set(pc_kx_libs " $<TARGET_FILE:KxBase::kxbase> $<TARGET_FILE:KxCommon::kxcommon>")
  set(pc_kx_cflags " -I$<JOIN:$<TARGET_PROPERTY:KxBase::kxbase,INTERFACE_INCLUDE_DIRECTORIES>, -I>")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/docdisplay.pc.in" "${config_dir}/docdisplay.pc.in" @ONLY)
file(GENERATE OUTPUT "${config_dir}/docdisplay.pc" INPUT "${config_dir}/docdisplay.pc.in")
install(FILES "${config_dir}/docdisplay.pc" DESTINATION "${pc_dir}")
