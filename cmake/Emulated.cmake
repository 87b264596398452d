# Ports: programs that run under an emulator, so that they can be tested. Building them is most of a
# port's time, so all that comes after the library is not optimised, and what its sources include
# most is compiled once. The library alone carries the sanitizer.
#
#   trelvo_share_headers(NAME [LIBS target...] HEADERS header...)
#   trelvo_use_shared_headers(TARGET NAME)
#
# The first compiles headers once, under a name; the second makes a target's sources begin with them.
# Both do nothing where nothing is emulated.

if(TRELVO_EMULATED)
  # The same for all, or the compiler does not take the headers: some link threads, others do not.
  add_compile_options(-O0 -pthread -fPIE)
  if(TRELVO_SANITIZE)
    add_compile_options(-fno-sanitize=all)
  endif()
  set(CMAKE_PCH_WARN_INVALID OFF)
  if(CCACHE_PROGRAM)
    # So it takes sources that begin with compiled headers.
    add_compile_options(-fpch-preprocess)
    set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
  endif()
endif()

function(trelvo_share_headers name)
  if(NOT TRELVO_EMULATED)
    return()
  endif()
  cmake_parse_arguments(SHARED "" "" "LIBS;HEADERS" ${ARGN})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE trelvocore::trelvocore ${SHARED_LIBS})
  target_precompile_headers(${name} PRIVATE ${SHARED_HEADERS})
endfunction()

function(trelvo_use_shared_headers target name)
  if(TRELVO_EMULATED)
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()
