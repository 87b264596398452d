# IBM Z of 64 bits, big-endian.
set(TRELVO_PORT s390x)
set(TRELVO_CROSS s390x-linux-gnu)
set(TRELVO_MULTIARCH s390x-linux-gnu)
set(TRELVO_QEMU qemu-s390x)
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/port.cmake)
