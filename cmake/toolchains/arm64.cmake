# ARM of 64 bits, little-endian.
set(TRELVO_PORT arm64)
set(TRELVO_CROSS aarch64-linux-gnu)
set(TRELVO_MULTIARCH aarch64-linux-gnu)
set(TRELVO_QEMU qemu-aarch64)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/port.cmake)
