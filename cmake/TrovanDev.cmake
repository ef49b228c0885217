# How this project compiles its own code. Never installed: users keep their own flags.
add_library(trovan_dev INTERFACE)
target_compile_features(trovan_dev INTERFACE cxx_std_20)
target_compile_options(trovan_dev INTERFACE
  $<$<CXX_COMPILER_ID:MSVC>:/W4 /fp:precise /utf-8>
  # No fused multiply-add: clipping gives the same vertices on every machine.
  $<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-Wall -Wextra -Wconversion -Wshadow -ffp-contract=off>)
# GCC 12 takes the concatenation of a literal and a string for an overlapping copy (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(trovan_dev INTERFACE -Wno-restrict)
endif()
# Nobody replaces single functions of these libraries from outside, so calls among them may be
# inlined. Clang assumes so by itself.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(trovan_dev INTERFACE -fno-semantic-interposition)
endif()
if(TROVAN_DEVELOPER)
  target_compile_options(trovan_dev INTERFACE
    $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Each program that is installed finds the libraries that were installed with it.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN")
if(NOT DEFINED CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
endif()

if(TROVAN_SANITIZE)
  # float-cast-overflow is not part of "undefined", and conversions are what this library is about.
  add_compile_options(-fsanitize=${TROVAN_SANITIZE},float-cast-overflow -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TROVAN_SANITIZE},float-cast-overflow)
endif()
if(TROVAN_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
