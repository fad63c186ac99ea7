# Builds for Linux on 64-bit ARM with Debian's cross compiler, and runs what is built by emulation.
# scripts/arm64-setup makes everything ready.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

get_filename_component(project_dir "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)
set(sysroot "${project_dir}/build/arm64-sysroot")
if(NOT EXISTS "${sysroot}/packages.txt")
  message(FATAL_ERROR "${sysroot} is missing; scripts/arm64-setup makes it")
endif()
set(libraries "${sysroot}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}")
set(CMAKE_CROSSCOMPILING_EMULATOR "${project_dir}/scripts/arm64-run")

# Only Qt and what it needs are in there: the compiler has a C and C++ library of its own, so that it
# is not told of the sysroot.
list(APPEND CMAKE_FIND_ROOT_PATH "${sysroot}" /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${libraries}/pkgconfig")
foreach(kind EXE SHARED MODULE)
  string(CONCAT CMAKE_${kind}_LINKER_FLAGS_INIT
    "-L${libraries} "
    "-Wl,-rpath-link,${libraries}:${sysroot}/lib/${CMAKE_LIBRARY_ARCHITECTURE}")
endforeach()
