# The docs target: the pages of quillon.h and quillon/survey.h, made by
# doxygen with the checked-in Doxyfile into <build>/docs/html. The Doxyfile
# turns every doxygen warning into a failure, so the target fails on any
# undocumented record, field, parameter or status.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
    # The checked-in settings, with the output moved into the build tree.
    set(_quillon_doxyfile ${PROJECT_BINARY_DIR}/Doxyfile.docs)
    file(CONFIGURE OUTPUT ${_quillon_doxyfile}
        CONTENT "@INCLUDE = ${PROJECT_SOURCE_DIR}/Doxyfile\nOUTPUT_DIRECTORY = ${PROJECT_BINARY_DIR}/docs\n")
    add_custom_target(docs
        COMMAND ${DOXYGEN_EXECUTABLE} ${_quillon_doxyfile}
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        COMMENT "Doxygen pages in ${PROJECT_BINARY_DIR}/docs/html"
        VERBATIM)
else()
    message(STATUS "Quillon: doxygen not found, so there is no docs target "
                   "(install it, e.g. apt-get install doxygen, and configure again)")
endif()
