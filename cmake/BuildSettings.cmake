# How every target is compiled and linked.
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
endif()
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
# Binaries find their libraries beside themselves, so a tree can be moved. The build tree has the
# path of the installed one: another would be padded with colons to that one's length, and an empty
# element of a path is the folder in which a program is started.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH $ORIGIN/../lib $ORIGIN/../${CMAKE_INSTALL_LIBDIR} $ORIGIN)
list(REMOVE_DUPLICATES CMAKE_INSTALL_RPATH)

add_compile_options(
  -Wall -Wextra -Wpedantic $<$<BOOL:${ZOBGP_WERROR}>:-Werror>
  # Assertions and debug information name files relative to the root of the source tree.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}=.)
# GCC 12 at -O3 sees overlaps and overreads in the standard library's own strings and vectors.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options(-Wno-restrict -Wno-stringop-overread)
endif()

if(ZOBGP_SANITIZE)
  add_compile_options(-fsanitize=${ZOBGP_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZOBGP_SANITIZE})
  # GCC 12 takes the sanitizers' own code in the standard library for uses before initialisation.
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  # Threads give way between the steps of the interning protocol; see platform/Orv/Interleave.h.
  add_compile_definitions(ORV_INTERLEAVE)
endif()
# Clang links its sanitizer runtimes into executables only.
if(NOT (ZOBGP_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
  string(APPEND CMAKE_SHARED_LINKER_FLAGS " -Wl,--no-undefined")
endif()
