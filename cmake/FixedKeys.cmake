# trelvo_fixed_keys(FILE SOURCE)
#
# Makes the source SOURCE of crypto/FixedKeys.cpp.in with the keys in FILE: four lines of 32
# hexadecimal digits each, key A, IV A, key B, IV B. A and B are the stores "sltdb" and "lssdb".
set(TRELVO_FIXED_KEYS_TEMPLATE ${CMAKE_CURRENT_LIST_DIR}/../crypto/FixedKeys.cpp.in)

function(trelvo_fixed_keys file source)
  if(NOT EXISTS "${file}" OR IS_DIRECTORY "${file}")
    message(FATAL_ERROR "TRELVO_FIXED_KEYS: there is no file ${file}")
  endif()
  file(READ "${file}" text)
  string(REGEX REPLACE "\r?\n" ";" lines "${text}")
  list(REMOVE_ITEM lines "")
  list(LENGTH lines count)
  if(NOT count EQUAL 4)
    message(FATAL_ERROR "TRELVO_FIXED_KEYS: ${file} has ${count} lines instead of 4")
  endif()
  foreach(name line IN ZIP_LISTS TRELVO_KEY_NAMES lines)
    string(LENGTH "${line}" length)
    # Without the line itself: it may be a key with a slip in it.
    if(NOT length EQUAL 32 OR NOT line MATCHES "^[0-9A-Fa-f]+$")
      message(FATAL_ERROR "TRELVO_FIXED_KEYS: ${name} in ${file} is not 32 hexadecimal digits")
    endif()
    string(REGEX REPLACE "(..)" "0x\\1, " bytes "${line}")
    string(REGEX REPLACE ", $" "" ${name} "${bytes}")
  endforeach()
  configure_file("${TRELVO_FIXED_KEYS_TEMPLATE}" "${source}" @ONLY)
endfunction()

set(TRELVO_KEY_NAMES TRELVO_KEY_A TRELVO_IV_A TRELVO_KEY_B TRELVO_IV_B)
