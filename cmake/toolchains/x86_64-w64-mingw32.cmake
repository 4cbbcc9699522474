# 64-bit Windows with mingw-w64 (Debian package g++-mingw-w64-x86-64-win32).
# Test programs run under wine when wine64 is installed.
#   cmake -S . -B build-win64 -G Ninja \
#       -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/x86_64-w64-mingw32.cmake
set(QUILLON_TRIPLET x86_64-w64-mingw32)
# The name of the platform in tests/platform/differences/.
set(QUILLON_PLATFORM win64)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(QUILLON_WINE_NAMES wine64 wine)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-cross.cmake)
