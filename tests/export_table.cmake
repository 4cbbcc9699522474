# Reading and comparing export tables, for the export checks.
#
# quillon_dynamic_symbols(<out-var> <library> <nm>): the names a shared
# library defines in its dynamic symbol table (nm -D --defined-only), each
# once, without version suffixes.
function(quillon_dynamic_symbols out library nm)
    execute_process(COMMAND ${nm} -D --defined-only ${library}
        OUTPUT_VARIABLE table RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${nm} failed on ${library}")
    endif()
    string(REPLACE "\n" ";" table_lines "${table}")
    set(names)
    foreach(line IN LISTS table_lines)
        if(line MATCHES "^[0-9a-fA-F]* *[A-Za-z] ([^ @]+)")
            list(APPEND names ${CMAKE_MATCH_1})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES names)
    set(${out} ${names} PARENT_SCOPE)
endfunction()

# quillon_expect_names(<expected-list-var> <actual-list-var> <what>): fails
# with the names missing from and the names beyond the expected list.
function(quillon_expect_names expected_var actual_var what)
    set(missing ${${expected_var}})
    list(REMOVE_ITEM missing ${${actual_var}})
    set(extra ${${actual_var}})
    list(REMOVE_ITEM extra ${${expected_var}})
    if(missing OR extra)
        message(FATAL_ERROR "export table differs from ${what}\n  missing: ${missing}\n  extra: ${extra}")
    endif()
endfunction()
