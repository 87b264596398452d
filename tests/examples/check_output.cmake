# cmake -DPROGRAM=... -DEXPECTED=... -P check_output.cmake
#
# Runs a program and compares what it prints, to the last byte, with a file.

execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed ERROR_VARIABLE complaint
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}\n${complaint}")
endif()
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected OR expected STREQUAL "")
  message(FATAL_ERROR "expected:\n${expected}\nprinted:\n${printed}")
endif()
