# Headers below one folder of their own, so that <pavane/...>, <platform/...> and <tessel/...> read the
# same in the tree and installed; the library, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(PAVANE_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/pavane-1)
install(DIRECTORY tessel platform pavane DESTINATION ${PAVANE_INCLUDE_DIR}
    FILES_MATCHING PATTERN "*.h"
    PATTERN "platform/core" EXCLUDE
    PATTERN "platform/qt" EXCLUDE)
install(TARGETS pavane EXPORT pavane-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT pavane-targets NAMESPACE pavane:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/pavane)
install(DIRECTORY pavane/resources/palettes/ DESTINATION ${CMAKE_INSTALL_DATADIR}/pavane
    FILES_MATCHING PATTERN "*.pal")

configure_package_config_file(cmake/pavane-config.cmake.in ${PROJECT_BINARY_DIR}/pavane-config.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/pavane)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pavane-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/pavane-config.cmake ${PROJECT_BINARY_DIR}/pavane-config-version.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/pavane)

file(RELATIVE_PATH PAVANE_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/pavane.pc.in ${PROJECT_BINARY_DIR}/pavane.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/pavane.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
