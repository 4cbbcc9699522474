# A parent project that adds Quillon with add_subdirectory keeps its own
# build type (here none) and gets no install rules from Quillon unless it
# sets QUILLON_INSTALL. Only configures; nothing is built.
#   cmake -DSOURCE_DIR=... -DWORK_DIR=... -DGENERATOR=... [-DC_COMPILER=...
#         -DCXX_COMPILER=...] -P check_subdirectory.cmake

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
    endif()
endfunction()

set(parent ${WORK_DIR}/parent)
set(build ${WORK_DIR}/build)
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
file(WRITE ${parent}/CMakeLists.txt "cmake_minimum_required(VERSION 3.20)
project(QuillonParent LANGUAGES C CXX)
add_subdirectory(\"${SOURCE_DIR}\" quillon)
file(WRITE \"\${CMAKE_BINARY_DIR}/build_type.txt\" \"\${CMAKE_BUILD_TYPE}\")
")

set(compilers)
if(C_COMPILER)
    list(APPEND compilers -DCMAKE_C_COMPILER=${C_COMPILER})
endif()
if(CXX_COMPILER)
    list(APPEND compilers -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
endif()
run(${CMAKE_COMMAND} -S ${parent} -B ${build} -G ${GENERATOR} ${compilers})

# 1. The parent's build type, as the parent sees it after add_subdirectory
# and as the cache holds it, is still empty.
file(READ ${build}/build_type.txt seen)
if(NOT seen STREQUAL "")
    message(FATAL_ERROR "add_subdirectory(quillon) set the parent's CMAKE_BUILD_TYPE to \"${seen}\"")
endif()
file(STRINGS ${build}/CMakeCache.txt cached REGEX "^CMAKE_BUILD_TYPE:")
string(REGEX REPLACE "^CMAKE_BUILD_TYPE:[A-Z]+=" "" cached "${cached}")
if(NOT cached STREQUAL "")
    message(FATAL_ERROR "add_subdirectory(quillon) cached CMAKE_BUILD_TYPE \"${cached}\"")
endif()

# 2. Installing the parent installs nothing of Quillon (the parent has no
# rules of its own, so nothing at all).
execute_process(COMMAND ${CMAKE_COMMAND} --install ${build} --prefix ${prefix}
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
file(GLOB_RECURSE installed ${prefix}/*)
if(NOT status EQUAL 0 OR installed)
    message(FATAL_ERROR "add_subdirectory(quillon) installs Quillon without QUILLON_INSTALL:\n"
                        "${installed}\n${out}\n${err}")
endif()

# 3. Asked to, it does generate its install rules.
run(${CMAKE_COMMAND} -DQUILLON_INSTALL=ON ${build})
file(READ ${build}/quillon/cmake_install.cmake rules)
if(NOT rules MATCHES "quillon\\.h" OR NOT rules MATCHES "QuillonConfig\\.cmake")
    message(FATAL_ERROR "add_subdirectory(quillon) with QUILLON_INSTALL=ON generates no install rules")
endif()
message(STATUS "add_subdirectory(quillon): build type left alone, installed only when asked")
