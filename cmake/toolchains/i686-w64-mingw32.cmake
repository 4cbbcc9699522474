# 32-bit Windows with mingw-w64 (Debian package g++-mingw-w64-i686-win32).
# Arithmetic is SSE2 (cmake/QuillonFlags.cmake adds -msse2 -mfpmath=sse for
# this processor). No emulator is set: the module is checked through its
# export table and its code, not run.
#   cmake -S . -B build-win32 -G Ninja \
#       -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/i686-w64-mingw32.cmake
set(QUILLON_TRIPLET i686-w64-mingw32)
# The name of the platform in tests/platform/differences/.
set(QUILLON_PLATFORM win32)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-cross.cmake)
