# The exported functions described once (tests/platform/functions.txt) for
# programs that link the library and call its functions from generated or
# raw inputs: the concurrency test, the fuzz target of the device library and
# the benchmarks (which link the shared library and name its functions from
# qv_linked_names.h themselves).
#
# quillon_add_harness() defines, once per build:
#   quillon_harness         the generated table (qv_table.h / qv_table.c: per
#                           function its arguments, their extents and its
#                           call), the input generators, the binding and the
#                           packing of the platform client's cases; it names
#                           functions through qv_symbol(), which the program
#                           provides;
#   quillon_harness_linked  qv_symbol() for a program linked to the static
#                           library: every exported LIB_ function by name.
# Without python3 (the table's generator) neither target exists.
#
# The platform client compiles the same sources from the same table (it
# loads the module and provides qv_symbol itself).
include_guard(GLOBAL)

function(quillon_add_harness)
    if(TARGET quillon_harness)
        return()
    endif()
    find_package(Python3 COMPONENTS Interpreter QUIET)
    if(NOT Python3_Interpreter_FOUND)
        message(STATUS "Quillon: python3 not found; the programs on the function table are not built")
        return()
    endif()
    set(source ${PROJECT_SOURCE_DIR}/tests/platform)
    set(out ${PROJECT_BINARY_DIR}/harness)
    set(table ${out}/qv_table.h ${out}/qv_table.c)
    add_custom_command(OUTPUT ${table}
        COMMAND ${Python3_EXECUTABLE} ${source}/generate_table.py
            ${source}/functions.txt ${PROJECT_SOURCE_DIR}/include/quillon.h ${out}
        DEPENDS ${source}/generate_table.py ${source}/functions.txt
            ${PROJECT_SOURCE_DIR}/include/quillon.h
        COMMENT "Generating the table of the exported functions"
        VERBATIM)
    add_library(quillon_harness STATIC
        ${source}/qv_run.c ${source}/qv_gen.c ${source}/packed.c
        ${source}/inputs_core.c ${source}/inputs_field.c ${source}/inputs_road.c
        ${source}/inputs_setup.c ${source}/inputs_traverse.c ${table})
    target_include_directories(quillon_harness PUBLIC ${source} ${out} ${PROJECT_SOURCE_DIR}/include)
    target_link_libraries(quillon_harness PRIVATE quillon_flags)
    if(UNIX)
        target_link_libraries(quillon_harness PUBLIC m)
    endif()

    # Every exported LIB_ name (src/exports.txt) as an X-macro for qv_linked.c.
    set(names "")
    foreach(name IN LISTS QUILLON_EXPORTS)
        if(name MATCHES "^LIB_")
            string(APPEND names "QV_LINKED(${name})\n")
        endif()
    endforeach()
    file(CONFIGURE OUTPUT ${out}/qv_linked_names.h CONTENT
"/* Generated from src/exports.txt: the exported functions of the library. */
${names}")
    add_library(quillon_harness_linked STATIC ${source}/qv_linked.c)
    target_include_directories(quillon_harness_linked PRIVATE ${out})
    target_link_libraries(quillon_harness_linked PUBLIC quillon_harness quillon_static)
    target_link_libraries(quillon_harness_linked PRIVATE quillon_flags)
endfunction()
