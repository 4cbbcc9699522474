# 64-bit ARM with Debian's cross compiler. Programs built here run on the
# build machine under qemu-user.
#   cmake -S . -B build-aarch64 -G Ninja \
#       -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64-linux-gnu.cmake
set(QUILLON_TRIPLET aarch64-linux-gnu)
# The name of the platform in tests/platform/differences/.
set(QUILLON_PLATFORM aarch64)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(QUILLON_QEMU qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
