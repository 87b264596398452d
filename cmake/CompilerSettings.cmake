# Compiler settings shared by everything in this tree.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# Rounded results are part of the interface: no fused multiply-add, no extended precision.
add_compile_options(-ffp-contract=off)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^i.86$")
  add_compile_options(-msse2 -mfpmath=sse)
endif()
add_compile_definitions(_FILE_OFFSET_BITS=64)

if(TRELVO_SANITIZE)
  add_compile_options(-fsanitize=${TRELVO_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TRELVO_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Its flow analysis takes instrumented code of the standard library for uninitialised reads.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(TRELVO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
