# Installs the built tree into a scratch prefix, then builds and runs a caller
# through find_package(Quillon) and another through pkg-config.
#   cmake -DBUILD_DIR=... -DSOURCE_DIR=... -DWORK_DIR=... -DGENERATOR=... -P check_package.cmake

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/consumer -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_RPATH=${prefix}/lib)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${WORK_DIR}/consumer/consumer)
run(${WORK_DIR}/consumer/consumer_static)
if(EXISTS ${WORK_DIR}/consumer/consumer_io)
    run(${WORK_DIR}/consumer/consumer_io)
endif()

find_program(PKG_CONFIG pkg-config)
find_program(CC NAMES cc gcc)
if(PKG_CONFIG AND CC)
    file(GLOB pcdir LIST_DIRECTORIES true ${prefix}/lib*/pkgconfig ${prefix}/lib/*/pkgconfig)
    set(ENV{PKG_CONFIG_PATH} "${pcdir}")
    run(${PKG_CONFIG} --define-prefix --cflags --libs quillon)
    string(STRIP "${last_output}" flags)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    get_filename_component(libdir ${pcdir} DIRECTORY)
    run(${CC} -std=c11 -Wall -Werror ${SOURCE_DIR}/main.c ${flags} -Wl,-rpath,${libdir}
        -o ${WORK_DIR}/pc_consumer)
    run(${WORK_DIR}/pc_consumer)
    if(EXISTS ${SOURCE_DIR}/main_io.c AND EXISTS ${pcdir}/quillon_io.pc)
        run(${PKG_CONFIG} --define-prefix --cflags --libs quillon_io)
        string(STRIP "${last_output}" flags)
        separate_arguments(flags UNIX_COMMAND "${flags}")
        run(${CC} -std=c11 -Wall -Werror ${SOURCE_DIR}/main_io.c ${flags} -Wl,-rpath,${libdir}
            -o ${WORK_DIR}/pc_consumer_io)
        run(${WORK_DIR}/pc_consumer_io)
    endif()
else()
    message(STATUS "pkg-config or a C compiler not found: pkg-config check skipped")
endif()
message(STATUS "installed package found and linked")
