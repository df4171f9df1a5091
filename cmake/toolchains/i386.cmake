# 32 bits, little-endian; an amd64 machine runs it.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(GPB_MACHINE i686-linux-gnu)
set(GPB_MULTIARCH i386-linux-gnu)
set(GPB_DEBIAN_ARCH i386)
set(GPB_LOADER ld-linux.so.2)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
