# Tests of cmake/FixedKeys.cmake. Usage: cmake -D SOURCE_ROOT=... -D WORK=... -P fixed_keys_test.cmake

set(A 00112233445566778899aabbccddeeff)
set(B 0F1E2D3C4B5A69788796A5B4C3D2E1F0)
file(REMOVE_RECURSE ${WORK})

# Runs trelvo_fixed_keys() on a file of `text` in a process of its own.
function(make_source text)
  file(WRITE ${WORK}/keys "${text}")
  file(WRITE ${WORK}/run.cmake "cmake_minimum_required(VERSION 3.25)\n"
    "include(${SOURCE_ROOT}/cmake/FixedKeys.cmake)\n"
    "trelvo_fixed_keys(${WORK}/keys ${WORK}/FixedKeys.cpp)\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -P ${WORK}/run.cmake
    RESULT_VARIABLE result ERROR_VARIABLE error)
  # CMake breaks the lines of a message where the path in it happens to end.
  string(REGEX REPLACE "[ \n]+" " " error "${error}")
  set(result ${result} PARENT_SCOPE)
  set(error "${error}" PARENT_SCOPE)
endfunction()

function(expect_source text)
  make_source("${text}")
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "refused: ${text}\n${error}")
  endif()
  file(READ ${WORK}/FixedKeys.cpp source)
  string(REGEX REPLACE "[ \n]+" " " source "${source}")
  foreach(part
      "{\"sltdb\", {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}, {0x0F, 0x1E,"
      "{\"lssdb\", {0x0F, 0x1E, 0x2D, 0x3C, 0x4B, 0x5A, 0x69, 0x78, 0x87, 0x96, 0xA5, 0xB4, 0xC3, 0xD2, 0xE1, 0xF0}, {0x00, 0x11,")
    string(FIND "${source}" "${part}" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "no ${part} in ${source}")
    endif()
  endforeach()
endfunction()

function(expect_refusal text reason)
  make_source("${text}")
  if(result EQUAL 0)
    message(FATAL_ERROR "taken: ${text}")
  endif()
  if(NOT error MATCHES "${reason}")
    message(FATAL_ERROR "${error}\ndoes not say: ${reason}")
  endif()
  if(error MATCHES "${A}|${B}")
    message(FATAL_ERROR "shows a key: ${error}")
  endif()
endfunction()

expect_source("${A}\n${B}\n${B}\n${A}\n")
expect_source("${A}\n${B}\n${B}\n${A}")
expect_source("${A}\r\n${B}\r\n${B}\r\n${A}\r\n")
expect_refusal("" "0 lines instead of 4")
expect_refusal("${A}\n${B}\n${B}\n" "3 lines instead of 4")
expect_refusal("${A}\n${B}\n${B}\n${A}\n${A}\n" "5 lines instead of 4")
expect_refusal("${A}\n${B}\n${B}0\n${A}\n" "KEY_B.*not 32")
expect_refusal("${A}\n${A}x\n${B}\n${A}\n" "IV_A.*not 32")
expect_refusal("${A}\n${B}\n${B}\n0011223344556677 899aabbccddeeff\n" "IV_B.*not 32")

file(WRITE ${WORK}/run.cmake "cmake_minimum_required(VERSION 3.25)\n"
  "include(${SOURCE_ROOT}/cmake/FixedKeys.cmake)\n"
  "trelvo_fixed_keys(${WORK}/missing ${WORK}/FixedKeys.cpp)\n")
execute_process(COMMAND ${CMAKE_COMMAND} -P ${WORK}/run.cmake
  RESULT_VARIABLE result ERROR_VARIABLE error)
string(REGEX REPLACE "[ \n]+" " " error "${error}")
if(result EQUAL 0 OR NOT error MATCHES "there is no file")
  message(FATAL_ERROR "a missing file: ${result} ${error}")
endif()
