# GoogleTest for the test suite. A native build uses the installed package;
# a cross build (or any build given QUILLON_GTEST_SOURCE) compiles GoogleTest
# from source with the target's compiler, since the installed libraries are
# for the build machine only. Either way the tests link GTest::gtest and
# GTest::gtest_main.
set(_quillon_gtest_default "")
if(CMAKE_CROSSCOMPILING AND EXISTS /usr/src/googletest/CMakeLists.txt)
    set(_quillon_gtest_default /usr/src/googletest)
endif()
set(QUILLON_GTEST_SOURCE "${_quillon_gtest_default}" CACHE PATH
    "GoogleTest source tree to build with the tests (empty: find_package(GTest))")

if(QUILLON_GTEST_SOURCE)
    set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
    add_subdirectory(${QUILLON_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
    foreach(_lib gtest gtest_main)
        if(NOT TARGET GTest::${_lib})
            add_library(GTest::${_lib} ALIAS ${_lib})
        endif()
    endforeach()
else()
    find_package(GTest REQUIRED)
endif()
