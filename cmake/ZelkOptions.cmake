# SPDX-License-Identifier: MIT
# Compiler settings that every target shares.

option(ZELK_BUILD_TESTS "Build the tests and the examples" ON)
option(ZELK_BUILD_BENCH "Build the benchmarks" OFF)
option(ZELK_BUILD_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(ZELK_WARNINGS_ARE_ERRORS "Stop at a warning; OFF for packages, which other compilers build" ON)
set(ZELK_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# One flag set for all targets: the precompiled header is built once and shared, and that works only
# where the flags are the same.
set(warnings_are_errors "$<$<BOOL:${ZELK_WARNINGS_ARE_ERRORS}>:-Werror>")
add_compile_options(-Wall -Wextra -Wpedantic ${warnings_are_errors} -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wunused -Wcast-align -Wimplicit-fallthrough)
# A designated initialiser that leaves fields at their defaults is how options are written here.
add_compile_options(-Wno-missing-field-initializers)
# Qt's headers are left without its convenience macros, which would take names like `emit` and `slots`.
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

# The compiler collects its garbage ten times in a source of the declarative layer unless it may take more memory first:
# an eighth less time for a quarter more memory, 1.5 GB at most.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options("SHELL:--param ggc-min-heapsize=524288")
endif()

# A program loads only the libraries it calls: the preview is not to pay for the kit's.
add_link_options(-Wl,--as-needed)

# The other linker of binutils takes half the time for eighty programs with their symbols.
if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT ZELK_SANITIZE)
  find_program(ZELK_GOLD ld.gold)
  if(ZELK_GOLD)
    add_link_options(-fuse-ld=gold)
  endif()
endif()

if(ZELK_SANITIZE)
  add_compile_options(-fsanitize=${ZELK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZELK_SANITIZE})
  # GCC cannot tell what is initialised once the sanitizers have added their own code, and says so in its manual.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

find_program(ZELK_CCACHE ccache)
# It takes what a source depends on from the compiler's own list rather than preprocess each source once more.
if(ZELK_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;CCACHE_DEPEND=1;${ZELK_CCACHE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()
