# Tests of the release itself rather than of the computations: the version
# is the same everywhere it is written.

add_test(NAME version.consistent
    COMMAND ${CMAKE_COMMAND}
        -DVERSION=${PROJECT_VERSION}
        -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
        -P ${PROJECT_SOURCE_DIR}/cmake/check_version.cmake)

