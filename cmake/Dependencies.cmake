# What the library itself needs; docs/dependencies.md says why each of them was chosen.
set(GPB_PROTOBUF_MINIMUM 3.21)
set(GPB_LIBXML2_MINIMUM 2.9)
find_package(Protobuf ${GPB_PROTOBUF_MINIMUM} REQUIRED)
find_package(LibXml2 ${GPB_LIBXML2_MINIMUM} REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(CJSON REQUIRED IMPORTED_TARGET libcjson)
find_package(Threads REQUIRED)
