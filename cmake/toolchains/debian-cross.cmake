# Another Debian machine: Debian's cross compiler, and the libraries of scripts/make-sysroot. The toolchain files of this
# folder say which:
#
#   GPB_MACHINE       prefix of the compiler
#   GPB_MULTIARCH     Debian's name of the folder of libraries
#   GPB_DEBIAN_ARCH   Debian's name of the architecture
#   GPB_LOADER        name of the dynamic loader
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${GPB_MACHINE}-gcc)
set(CMAKE_CXX_COMPILER ${GPB_MACHINE}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${GPB_MULTIARCH})

# The C and C++ libraries lie with the compiler, all others in the sysroot.
set(compiler_root /usr/${GPB_MACHINE})
get_filename_component(sysroot ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/${GPB_DEBIAN_ARCH} ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${sysroot} ${compiler_root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(ENV{PKG_CONFIG_LIBDIR} ${sysroot}/usr/lib/${GPB_MULTIARCH}/pkgconfig:${sysroot}/usr/share/pkgconfig)

# Programs name the loader and the libraries of their machine where these lie, so that they run without being installed
# there. The old kind of search path is the one that also holds for what a library needs.
set(GPB_MACHINE_RPATH ${compiler_root}/lib:${sysroot}/usr/lib/${GPB_MULTIARCH})
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,--dynamic-linker=${compiler_root}/lib/${GPB_LOADER},--disable-new-dtags,-rpath,${GPB_MACHINE_RPATH}")
