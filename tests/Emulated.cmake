# Ports: tests under an emulator. ctest starts what it tests through CMAKE_CROSSCOMPILING_EMULATOR by
# itself; here is what goes beyond that.

# Building the tests is most of a port's time. The library alone carries the sanitizer; the tests are
# not optimised and share what their headers come to.
if(TRELVO_EMULATED)
  add_compile_options(-O0 -pthread)
  if(TRELVO_SANITIZE)
    add_compile_options(-fno-sanitize=all)
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/shared_headers.cpp CONTENT "")
  add_library(trelvo_shared_headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/shared_headers.cpp)
  target_compile_options(trelvo_shared_headers PRIVATE -fPIE)
  target_link_libraries(trelvo_shared_headers PRIVATE trelvocore::trelvocore GTest::gmock)
  # Not <trelvo/trelvo.h>: it brings properties-cpp's namespace core, which is none of most tests'.
  target_precompile_headers(trelvo_shared_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  set(CMAKE_PCH_WARN_INVALID OFF)
endif()

# What is not run there, and why; everything else is. ctest reads it from the build tree.
if(TRELVO_EMULATED)
  set(not_emulated
    # Python or CMake that works on files of this tree: nothing of the library runs.
    crypto.fixed_keys
    house.headers house.layering house.links house.self_tests
    package.symbols_self_test
    reference.crypto reference.ellipse reference.encrypted_files reference.geodesy)
  list(JOIN not_emulated " " names)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/CTestCustom.cmake
    CONTENT "set(CTEST_CUSTOM_TESTS_IGNORE ${names})\n")
endif()

# trelvo_runnable(TARGET VARIABLE): the path by which a test starts TARGET's program. Where that
# program is a port's, it is a script that starts it through the emulator.
function(trelvo_runnable target variable)
  if(NOT TRELVO_EMULATED)
    set(${variable} $<TARGET_FILE:${target}> PARENT_SCOPE)
    return()
  endif()
  set(script ${PROJECT_BINARY_DIR}/emulated/${target})
  # Once, however many tests start it.
  get_target_property(known ${target} TRELVO_RUNNABLE)
  if(NOT known)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
    file(GENERATE OUTPUT ${script}
      CONTENT "#!/bin/sh\nexec ${emulator} $<TARGET_FILE:${target}> \"$@\"\n"
      FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set_target_properties(${target} PROPERTIES TRELVO_RUNNABLE TRUE)
  endif()
  set(${variable} ${script} PARENT_SCOPE)
endfunction()

# What a test that builds a project outside sets in the environment to build it for this port and to
# run it: EMULATOR goes in front of a program.
set(TRELVO_OUTSIDE "CXX=${CMAKE_CXX_COMPILER}" "CMAKE=${CMAKE_COMMAND}")
set(flags "")
if(TRELVO_SANITIZE)
  # A library built with sanitizers wants their run time in the program as well.
  set(flags "-fsanitize=${TRELVO_SANITIZE}")
endif()
if(TRELVO_EMULATED)
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
  list(APPEND TRELVO_OUTSIDE "EMULATOR=${emulator}" "CMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}")
  string(APPEND flags " --sysroot=${CMAKE_SYSROOT}")
  foreach(name PKG_CONFIG_SYSROOT_DIR PKG_CONFIG_LIBDIR)
    list(APPEND TRELVO_OUTSIDE "${name}=$ENV{${name}}")
  endforeach()
endif()
list(APPEND TRELVO_OUTSIDE "CXXFLAGS=${flags}")
