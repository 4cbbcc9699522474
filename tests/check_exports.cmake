# Compares the dynamic symbol table of the shared library with the export
# list: every built name exported, nothing else, and the list itself complete.
#   cmake -DLIBRARY=libquillon.so -DEXPORTS=src/exports.txt -DNM=nm -P check_exports.cmake
# For the Windows module, give OBJDUMP instead of NM: the names are read from
# the export name table of `objdump -p` and must stand there exactly as
# listed, with no decoration added or stripped.
#   cmake -DLIBRARY=Quillon.dll -DEXPORTS=src/exports.txt -DOBJDUMP=objdump -P check_exports.cmake

include(${CMAKE_CURRENT_LIST_DIR}/export_table.cmake)

file(STRINGS ${EXPORTS} lines REGEX "^[^#]")
set(expected)
set(pending)
set(lib_names 0)
foreach(line IN LISTS lines)
    string(REGEX REPLACE "[ \t]+" ";" fields "${line}")
    list(GET fields 0 name)
    if(name MATCHES "^LIB_")
        math(EXPR lib_names "${lib_names} + 1")
    endif()
    list(LENGTH fields n)
    if(n EQUAL 2)
        list(APPEND expected ${name})
    else()
        list(APPEND pending ${name})
    endif()
endforeach()

if(NOT lib_names EQUAL 65)
    message(FATAL_ERROR "export list holds ${lib_names} LIB_ names, not 65")
endif()

set(actual)
if(OBJDUMP)
    execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY}
        OUTPUT_VARIABLE table RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}")
    endif()
    # The name table: lines "\t[   3] name" after "[Ordinal/Name Pointer] Table".
    string(FIND "${table}" "[Ordinal/Name Pointer] Table" start)
    if(start LESS 0)
        message(FATAL_ERROR "${LIBRARY} has no export name table")
    endif()
    string(SUBSTRING "${table}" ${start} -1 table)
    string(FIND "${table}" "\n" first_end)
    math(EXPR first_end "${first_end} + 1")
    string(SUBSTRING "${table}" ${first_end} -1 table)
    string(FIND "${table}" "\n\n" stop)
    if(stop GREATER 0)
        math(EXPR stop "${stop} + 1")
        string(SUBSTRING "${table}" 0 ${stop} table)
    endif()
    # The name ends each line; the brackets stay out of the match, since a
    # lone bracket would upset CMake's lists.
    string(REGEX MATCHALL "[^ \t\n]+\n" entries "${table}")
    foreach(entry IN LISTS entries)
        string(STRIP "${entry}" name)
        list(APPEND actual ${name})
    endforeach()
    list(LENGTH actual n_actual)
    set(n_unique ${actual})
    list(REMOVE_DUPLICATES n_unique)
    list(LENGTH n_unique n_unique)
    if(NOT n_actual EQUAL n_unique)
        message(FATAL_ERROR "a name is exported twice: ${actual}")
    endif()
else()
    quillon_dynamic_symbols(actual ${LIBRARY} ${NM})
endif()

quillon_expect_names(expected actual "the list")

list(LENGTH expected n_expected)
list(LENGTH pending n_pending)
message(STATUS "${n_expected} names exported as listed; ${n_pending} pending: ${pending}")
