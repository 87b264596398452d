# x86 of 32 bits, with SSE2.
set(TRELVO_PORT i386)
set(TRELVO_CROSS i686-linux-gnu)
set(TRELVO_MULTIARCH i386-linux-gnu)
set(TRELVO_QEMU qemu-i386)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/port.cmake)
