# What `cmake --install` lays out: the headers in their folders, the library with its version, the tool, and what CMake
# and pkg-config need to find them. All paths are relative, so that an installation can be moved.
include(CMakePackageConfigHelpers)

set(QUORVEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quorvex)
set(QUORVEX_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS quorvex EXPORT QuorvexTargets FILE_SET HEADERS)
install(EXPORT QuorvexTargets NAMESPACE Quorvex:: DESTINATION ${QUORVEX_CMAKE_DIR})
configure_package_config_file(cmake/QuorvexConfig.cmake.in QuorvexConfig.cmake INSTALL_DESTINATION ${QUORVEX_CMAKE_DIR})
write_basic_package_version_file(QuorvexConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuorvexConfig.cmake ${PROJECT_BINARY_DIR}/QuorvexConfigVersion.cmake
        DESTINATION ${QUORVEX_CMAKE_DIR})

file(RELATIVE_PATH QUORVEX_PREFIX_FROM_PKGCONFIG /prefix/${QUORVEX_PKGCONFIG_DIR} /prefix)
configure_file(cmake/quorvex.pc.in quorvex.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quorvex.pc DESTINATION ${QUORVEX_PKGCONFIG_DIR})

if(TARGET quorvex_cli)
    # The tool finds the library beside itself.
    file(RELATIVE_PATH library_from_programs /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
    set_target_properties(quorvex_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_programs}")
    install(TARGETS quorvex_cli)
    if(TARGET quorvex_viewer)
        set_target_properties(quorvex_viewer PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_programs}")
        install(TARGETS quorvex_viewer)
    endif()
endif()
