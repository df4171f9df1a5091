# 32 bits, big-endian; no architecture of a Debian release, so there is a compiler and nothing else.
set(CMAKE_SYSTEM_PROCESSOR powerpc)
set(GPB_MACHINE powerpc-linux-gnu)
set(GPB_MULTIARCH powerpc-linux-gnu)
set(GPB_DEBIAN_ARCH powerpc)
set(GPB_LOADER ld.so.1)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
