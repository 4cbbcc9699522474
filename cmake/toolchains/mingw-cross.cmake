# Shared part of the mingw-w64 toolchains: QUILLON_TRIPLET names the
# compiler; QUILLON_WINE_NAMES, when set, the wine launcher that runs the
# test programs, in the prefix QUILLON_WINE_PREFIX with the server
# QUILLON_WINESERVER_PROGRAM (tests/platform starts and stops it around the
# tests).
set(CMAKE_SYSTEM_NAME Windows)

# Prefer the win32 thread model: the module needs no pthread runtime.
foreach(lang C CXX)
    if(lang STREQUAL "C")
        set(_driver gcc)
    else()
        set(_driver g++)
    endif()
    find_program(QUILLON_${lang}_COMPILER
        NAMES ${QUILLON_TRIPLET}-${_driver}-win32 ${QUILLON_TRIPLET}-${_driver})
    if(QUILLON_${lang}_COMPILER)
        set(CMAKE_${lang}_COMPILER ${QUILLON_${lang}_COMPILER})
    else()
        set(CMAKE_${lang}_COMPILER ${QUILLON_TRIPLET}-${_driver})
    endif()
endforeach()
set(CMAKE_RC_COMPILER ${QUILLON_TRIPLET}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${QUILLON_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(QUILLON_WINE_NAMES)
    find_program(QUILLON_WINE_PROGRAM NAMES ${QUILLON_WINE_NAMES} PATHS /usr/lib/wine)
    find_program(QUILLON_WINESERVER_PROGRAM NAMES wineserver PATHS /usr/lib/wine)
    set(QUILLON_WINE_PREFIX ${CMAKE_BINARY_DIR}/wine-prefix CACHE PATH
        "Wine prefix the test programs run in (made by the first test run)")
    if(QUILLON_WINE_PROGRAM)
        # The build's own prefix, and a quiet wine without the .NET and
        # browser installers a fresh prefix would otherwise offer.
        set(QUILLON_WINE_ENVIRONMENT
            WINEPREFIX=${QUILLON_WINE_PREFIX} WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=)
        set(CMAKE_CROSSCOMPILING_EMULATOR env ${QUILLON_WINE_ENVIRONMENT} ${QUILLON_WINE_PROGRAM})
    endif()
endif()

# The GoogleTest suite is not built for Windows by default: GoogleTest needs
# the posix thread model of mingw-w64, and each test would start wine anew.
# The client program and the export checks cover the DLL.
set(QUILLON_BUILD_TESTS OFF CACHE BOOL "Build the test suite")
