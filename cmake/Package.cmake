# Debian packages by CPack: the libraries, what building against them needs, and the tool. scripts/package makes them.
#
# The library's package is named after its SONAME, so that two majors can be installed side by side.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME gpb-templatelib)
set(CPACK_PACKAGE_CONTACT "The gpb_templatelib developers <gpb-templatelib@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The tool's libraries come by the component that it depends on, not by a package that is installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libgpb-templatelib${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
    "Encodes XML and JSON instance documents of YANG modules into Protocol Buffers.
 The reference platform for Linux is in the package, too.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libgpb-templatelib-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libcjson-dev, libprotobuf-dev, libxml2-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers, CMake package and pkg-config files of libgpb_templatelib.
 A process that loads the library is built with them.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME gpbtool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOL_DEPENDS library)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
    "Command-line tool of libgpb_templatelib.
 Encodes, decodes and checks instance documents, and makes and shows templates.")

include(CPack)
