# Tests of the release itself rather than of the computations: the version
# is the same everywhere it is written, and Quillon behaves as a guest when
# another project adds it with add_subdirectory.

add_test(NAME version.consistent
    COMMAND ${CMAKE_COMMAND}
        -DVERSION=${PROJECT_VERSION}
        -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
        -P ${PROJECT_SOURCE_DIR}/cmake/check_version.cmake)
set_tests_properties(version.consistent PROPERTIES TIMEOUT 120)

if(NOT CMAKE_CROSSCOMPILING)
    add_test(NAME package.subdirectory
        COMMAND ${CMAKE_COMMAND}
            -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
            -DWORK_DIR=${PROJECT_BINARY_DIR}/subdirectory-check
            -DGENERATOR=${CMAKE_GENERATOR}
            -DC_COMPILER=${CMAKE_C_COMPILER}
            -DCXX_COMPILER=${CMAKE_CXX_COMPILER}
            -P ${PROJECT_SOURCE_DIR}/cmake/check_subdirectory.cmake)
    set_tests_properties(package.subdirectory PROPERTIES TIMEOUT 900)
endif()
