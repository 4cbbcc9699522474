# Shared part of the Linux cross toolchains: QUILLON_TRIPLET names the
# Debian cross compiler (package g++-<triplet>), whose libraries live in
# /usr/<triplet>; QUILLON_QEMU names the qemu-user emulator that runs the
# test programs with that tree as its library root.
set(QUILLON_SYSROOT /usr/${QUILLON_TRIPLET})

set(CMAKE_C_COMPILER ${QUILLON_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${QUILLON_TRIPLET}-g++)

set(CMAKE_FIND_ROOT_PATH ${QUILLON_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(QUILLON_QEMU_PROGRAM ${QUILLON_QEMU})
if(QUILLON_QEMU_PROGRAM)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QUILLON_QEMU_PROGRAM} -L ${QUILLON_SYSROOT})
endif()
