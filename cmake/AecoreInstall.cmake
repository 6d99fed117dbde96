# Installation: library with SONAME, public headers, CMake package config and pkg-config file.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS aecore aecore_headers EXPORT aecoreTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/aecore DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT aecoreTargets NAMESPACE aecore:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/aecore)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/aecoreConfig.cmake.in
    ${PROJECT_BINARY_DIR}/aecoreConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/aecore)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/aecoreConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/aecoreConfig.cmake ${PROJECT_BINARY_DIR}/aecoreConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/aecore)

# The pkg-config file finds its prefix relative to itself, so an installed tree can be moved.
file(RELATIVE_PATH AECORE_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/aecore.pc.in ${PROJECT_BINARY_DIR}/aecore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/aecore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
