# 32-bit ARM, hard-float VFP (armhf), with Debian's cross compiler.
# Programs built here run on the build machine under qemu-user.
#   cmake -S . -B build-armhf -G Ninja \
#       -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/arm-linux-gnueabihf.cmake
set(QUILLON_TRIPLET arm-linux-gnueabihf)
# The name of the platform in tests/platform/differences/.
set(QUILLON_PLATFORM armhf)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(QUILLON_QEMU qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
