# What `cmake --install` lays down; packaging/installed-files.txt lists every file of it.
#
# Everything refers to its neighbours relative to itself, so that an installed tree can be moved as a whole.
include(CMakePackageConfigHelpers)

set(GPB_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/gpb_templatelib)
set(GPB_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Libraries and headers.
set_target_properties(gpb_templatelib PROPERTIES EXPORT_NAME templatelib)
set_target_properties(gpb_host PROPERTIES EXPORT_NAME host)
install(TARGETS gpb_templatelib gpb_host EXPORT gpb_templatelib-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/gpb_templatelib/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gpb_templatelib
    FILES_MATCHING PATTERN "*.h")
install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gpb_templatelib/platform
    FILES_MATCHING PATTERN "*.h")

# The tool finds the libraries from where it lies.
if(TARGET gpbtool)
    file(RELATIVE_PATH lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(gpbtool PROPERTIES INSTALL_RPATH "$ORIGIN/${lib_from_bin}")
    install(TARGETS gpbtool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

# CMake package.
install(EXPORT gpb_templatelib-targets NAMESPACE gpb:: DESTINATION ${GPB_INSTALL_CMAKEDIR})
configure_package_config_file(cmake/gpb_templatelib-config.cmake.in
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config.cmake
    INSTALL_DESTINATION ${GPB_INSTALL_CMAKEDIR}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/gpb_templatelib-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config.cmake
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config-version.cmake
    DESTINATION ${GPB_INSTALL_CMAKEDIR})

# pkg-config files.
file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(package gpb_templatelib gpb_host)
    configure_file(packaging/${package}.pc.in ${PROJECT_BINARY_DIR}/package/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${package}.pc DESTINATION ${GPB_INSTALL_PKGCONFIGDIR})
endforeach()
