# Ports: tests under an emulator. ctest starts what it tests through CMAKE_CROSSCOMPILING_EMULATOR by
# itself; here is what goes beyond that.

# What all tests include; more in it makes each slower. Not <trelvo/trelvo.h> above all: it brings
# properties-cpp's namespace core, which is none of most tests'.
trelvo_share_headers(trelvo_tests_headers LIBS GTest::gmock HEADERS <gmock/gmock.h> <gtest/gtest.h>)

# Test programs that take longest, by the cases of which some cores are kept busy.
set(TRELVO_IN_PARTS crypto_openssl_memory robustness tools)

# What is not run there, and why; everything else is. ctest reads it from the build tree.
if(TRELVO_EMULATED)
  set(not_emulated
    # Python or CMake that works on files of this tree: nothing of the library runs.
    crypto.fixed_keys
    house.headers house.layering house.links house.self_tests
    package.symbols_self_test
    reference.bits reference.crypto reference.ellipse reference.encrypted_files reference.geodesy)
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

# What a test that compiles outside of this build does it with: flags for the compiler, and for the
# environment what builds a project for this port and runs it: EMULATOR goes in front of a program.
set(TRELVO_OUTSIDE "CXX=${CMAKE_CXX_COMPILER}" "CMAKE=${CMAKE_COMMAND}")
set(TRELVO_OUTSIDE_FLAGS "")
if(TRELVO_SANITIZE)
  # A library built with sanitizers wants their run time in the program as well.
  list(APPEND TRELVO_OUTSIDE_FLAGS -fsanitize=${TRELVO_SANITIZE})
endif()
if(TRELVO_EMULATED)
  list(APPEND TRELVO_OUTSIDE_FLAGS --sysroot=${CMAKE_SYSROOT})
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
  list(APPEND TRELVO_OUTSIDE "EMULATOR=${emulator}" "CMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}")
  foreach(name PKG_CONFIG_SYSROOT_DIR PKG_CONFIG_LIBDIR)
    list(APPEND TRELVO_OUTSIDE "${name}=$ENV{${name}}")
  endforeach()
endif()
list(JOIN TRELVO_OUTSIDE_FLAGS " " flags)
list(APPEND TRELVO_OUTSIDE "CXXFLAGS=${flags}")
