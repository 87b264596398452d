# What `cmake --install` puts down: the library, its headers, the CMake package and the pkg-config
# module, both named trelvocore.

include(CMakePackageConfigHelpers)

# Users get the public dependencies without asking: by the CMake package and by the module.
get_target_property(TRELVO_PUBLIC_LIBS trelvocore INTERFACE_LINK_LIBRARIES)
set(TRELVO_FIND_DEPENDENCIES "")
set(TRELVO_PKGCONFIG_REQUIRES "")
foreach(dependency IN LISTS TRELVO_PUBLIC_DEPENDENCIES)
  string(REPLACE "|" ";" dependency "${dependency}")
  list(GET dependency 0 target)
  list(GET dependency 1 find)
  list(GET dependency 2 module)
  if(target IN_LIST TRELVO_PUBLIC_LIBS)
    if(find MATCHES "^pkg_check_modules")
      string(PREPEND find "find_dependency(PkgConfig)\n")
    endif()
    string(APPEND TRELVO_FIND_DEPENDENCIES "${find}\n")
    string(APPEND TRELVO_PKGCONFIG_REQUIRES " ${module}")
  endif()
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
