# What `cmake --install` puts down: the library, its headers, the CMake package and the pkg-config
# module, both named trelvocore.

include(CMakePackageConfigHelpers)

# Packages whose headers a public header includes. Each entry names the CMake package on the left
# and the pkg-config module on the right ("ZLIB zlib"), so that users get them without asking.
# No public header includes any so far.
set(TRELVO_PUBLIC_DEPENDENCIES)

set(TRELVO_FIND_DEPENDENCIES "")
set(TRELVO_PKGCONFIG_REQUIRES "")
foreach(dependency IN LISTS TRELVO_PUBLIC_DEPENDENCIES)
  separate_arguments(dependency)
  list(GET dependency 0 package)
  list(GET dependency 1 module)
  string(APPEND TRELVO_FIND_DEPENDENCIES "find_dependency(${package})\n")
  string(APPEND TRELVO_PKGCONFIG_REQUIRES " ${module}")
endforeach()

set(TRELVO_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/trelvocore)

install(TARGETS trelvocore EXPORT trelvocore LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/trelvo
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT trelvocore NAMESPACE trelvocore:: FILE trelvocoreTargets.cmake
  DESTINATION ${TRELVO_PACKAGE_DIR})

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/trelvocoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/trelvocoreConfig.cmake
  INSTALL_DESTINATION ${TRELVO_PACKAGE_DIR}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/trelvocoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/trelvocoreConfig.cmake
  ${PROJECT_BINARY_DIR}/trelvocoreConfigVersion.cmake
  DESTINATION ${TRELVO_PACKAGE_DIR})

# The paths in the .pc file start from where the file lies, so that the installed tree can be moved
# or staged. An absolute directory, given by the one who configures, stays as it is.
file(RELATIVE_PATH TRELVO_PC_TO_PREFIX
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" TRELVO_PC_TO_PREFIX "${TRELVO_PC_TO_PREFIX}")
foreach(dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE ${CMAKE_INSTALL_${dir}})
    set(TRELVO_PC_${dir} ${CMAKE_INSTALL_${dir}})
  else()
    set(TRELVO_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/trelvocore.pc.in
  ${PROJECT_BINARY_DIR}/trelvocore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/trelvocore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
