# What the toolchain files of all ports share. Each sets first
#
#   TRELVO_PORT             the processor as Debian says it, and so the name of the sysroot
#   TRELVO_CROSS            what the cross compiler's name begins with
#   TRELVO_MULTIARCH        the folder that Debian keeps the processor's libraries in
#   TRELVO_QEMU             the emulator that runs the port's programs
#   CMAKE_SYSTEM_PROCESSOR  the processor as uname says it

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${TRELVO_CROSS}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${TRELVO_MULTIARCH})

get_filename_component(TRELVO_TREE ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
set(CMAKE_SYSROOT ${TRELVO_TREE}/build/sysroot/${TRELVO_PORT})
if(NOT EXISTS ${CMAKE_SYSROOT}/stamp)
  message(FATAL_ERROR "There is no ${CMAKE_SYSROOT}: run scripts/sysroot ${TRELVO_PORT}")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/${TRELVO_QEMU} -L ${CMAKE_SYSROOT})

# Libraries and packages come from the sysroot or, like the library once it is installed by a test,
# from below build/; programs that the build runs are the machine's.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_SYSROOT} ${TRELVO_TREE}/build)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${CMAKE_SYSROOT}/usr/lib/${TRELVO_MULTIARCH}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
