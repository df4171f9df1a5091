# What the library itself needs; docs/dependencies.md says why each of them was chosen.
find_package(Protobuf 3.21 REQUIRED)
find_package(LibXml2 2.9 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(CJSON REQUIRED IMPORTED_TARGET libcjson)
find_package(Threads REQUIRED)
