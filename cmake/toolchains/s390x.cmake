# 64 bits, big-endian.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(GPB_MACHINE s390x-linux-gnu)
set(GPB_MULTIARCH s390x-linux-gnu)
set(GPB_DEBIAN_ARCH s390x)
set(GPB_LOADER ld64.so.1)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
