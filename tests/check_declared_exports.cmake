# The dynamic symbol table of a shared library holds exactly the functions
# its header declares (NAMES, read from the header at configure time), and at
# least one.
#   cmake -DLIBRARY=libquillon_survey.so "-DNAMES=a;b" -DNM=nm -P check_declared_exports.cmake
include(${CMAKE_CURRENT_LIST_DIR}/export_table.cmake)
if(NOT NAMES)
    message(FATAL_ERROR "no names read from the header")
endif()
quillon_dynamic_symbols(actual ${LIBRARY} ${NM})
quillon_expect_names(NAMES actual "the header")
list(LENGTH NAMES n)
message(STATUS "${n} names exported as declared")
