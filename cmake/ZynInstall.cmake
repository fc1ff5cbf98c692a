# Install rules: headers, both libraries, the CMake package (Zyn::zyn,
# Zyn::zyn_static) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS zyn zyn_static
  EXPORT ZynTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/zyn
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN "*.inc"
  PATTERN "*_test.h" EXCLUDE)

install(EXPORT ZynTargets
  NAMESPACE Zyn::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Zyn)

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/ZynConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZynConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Zyn)
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/ZynConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/ZynConfig.cmake
  ${PROJECT_BINARY_DIR}/ZynConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Zyn)

# The .pc file finds its prefix relative to itself, so the tree can move.
file(RELATIVE_PATH ZYN_PC_TO_PREFIX
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
# sd-bus, when built with it, for static links.
set(ZYN_PC_REQUIRES_PRIVATE "")
if(ZYN_SDBUS_FOUND)
  set(ZYN_PC_REQUIRES_PRIVATE libsystemd)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/zyn.pc.in ${PROJECT_BINARY_DIR}/zyn.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zyn.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
