# Headers below one folder of their own, so that <pavane/...>, <platform/...> and <tessel/...> read the
# same in the tree and installed; the library, a CMake package and a pkg-config file; the programs, which
# find the library from where they lie, so that the prefix may be moved; what there is to read.
include(CMakePackageConfigHelpers)

set(PAVANE_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/pavane-1)
foreach(header pavane/pavane.h ${PAVANE_PUBLIC_HEADERS} ${PAVANE_REACHED_HEADERS})
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${header} DESTINATION ${PAVANE_INCLUDE_DIR}/${folder})
endforeach()
install(TARGETS pavane EXPORT pavane-targets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT pavane-targets NAMESPACE pavane:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/pavane)
file(RELATIVE_PATH to_library ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(pavane-view pavane-clean PROPERTIES INSTALL_RPATH "$ORIGIN/${to_library}")
install(TARGETS pavane-view pavane-clean pavane-simulate)
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

# laid out as in the tree, so that the links between the pages hold
install(FILES LICENSE README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples/host examples/demo DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
