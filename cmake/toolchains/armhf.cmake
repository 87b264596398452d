# ARM of 32 bits with hardware floating point, little-endian.
set(TRELVO_PORT armhf)
set(TRELVO_CROSS arm-linux-gnueabihf)
set(TRELVO_MULTIARCH arm-linux-gnueabihf)
set(TRELVO_QEMU qemu-arm)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
# Not on what releases of the compiler before 7 did.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/port.cmake)
