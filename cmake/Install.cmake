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
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY include/gpb_templatelib/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gpb_templatelib
    COMPONENT development FILES_MATCHING PATTERN "*.h")
install(DIRECTORY platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/gpb_templatelib/platform
    COMPONENT development FILES_MATCHING PATTERN "*.h")

# What Debian's policy wants in each package; that of the tool also names what is compiled into it.
set(doc_dir ${CMAKE_INSTALL_DATADIR}/doc)
install(FILES packaging/copyright DESTINATION ${doc_dir}/libgpb-templatelib${PROJECT_VERSION_MAJOR} COMPONENT library)
install(FILES packaging/copyright DESTINATION ${doc_dir}/libgpb-templatelib-dev COMPONENT development)

# The tool finds the libraries from where it lies.
if(TARGET gpbtool)
    file(RELATIVE_PATH lib_from_bin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(gpbtool PROPERTIES INSTALL_RPATH "$ORIGIN/${lib_from_bin}")
    install(TARGETS gpbtool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES packaging/completion/gpbtool DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        COMPONENT tool)
    file(READ packaging/copyright copyright)
    file(READ packaging/copyright-gpbtool contained)
    file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/package/copyright CONTENT "${copyright}${contained}" @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/copyright DESTINATION ${doc_dir}/gpbtool COMPONENT tool)
    # Its manual page holds what its --help says, so it has to run; a foreign one needs an emulator for that.
    if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
        find_package(Python3 REQUIRED COMPONENTS Interpreter)
        set(man_dir ${PROJECT_SOURCE_DIR}/packaging/man)
        set(man_page ${PROJECT_BINARY_DIR}/package/gpbtool.1.gz)
        add_custom_command(OUTPUT ${man_page}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/package
            COMMAND Python3::Interpreter ${man_dir}/from_help.py ${man_dir}/gpbtool.1.in $<TARGET_FILE:gpbtool>
                ${PROJECT_VERSION} ${man_page}
            DEPENDS gpbtool ${man_dir}/from_help.py ${man_dir}/gpbtool.1.in
            COMMENT "Writing the manual page of gpbtool" VERBATIM)
        add_custom_target(gpbtool_man ALL DEPENDS ${man_page})
        install(FILES ${man_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
    endif()
endif()

# CMake package.
install(EXPORT gpb_templatelib-targets NAMESPACE gpb:: DESTINATION ${GPB_INSTALL_CMAKEDIR} COMPONENT development)
configure_package_config_file(cmake/gpb_templatelib-config.cmake.in
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config.cmake
    INSTALL_DESTINATION ${GPB_INSTALL_CMAKEDIR}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/gpb_templatelib-config-version.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config.cmake
    ${PROJECT_BINARY_DIR}/package/gpb_templatelib-config-version.cmake
    DESTINATION ${GPB_INSTALL_CMAKEDIR} COMPONENT development)

# pkg-config files.
file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(package gpb_templatelib gpb_host)
    configure_file(packaging/${package}.pc.in ${PROJECT_BINARY_DIR}/package/${package}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/package/${package}.pc DESTINATION ${GPB_INSTALL_PKGCONFIGDIR}
        COMPONENT development)
endforeach()

include(cmake/Package.cmake)
