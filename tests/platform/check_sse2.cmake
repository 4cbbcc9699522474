# Fails when the library's own code does arithmetic in the x87 unit, which
# rounds through 80-bit registers and gives other last bits than SSE2.
# Loads and stores of st(0) remain, since 32-bit x86 returns doubles there,
# and so may the exact sign operations fabs and fchs and the comparisons.
#   cmake -DOBJECTS="a.obj|b.obj" -DOBJDUMP=objdump -P check_sse2.cmake
string(REPLACE "|" ";" objects "${OBJECTS}")
set(found "")
foreach(object IN LISTS objects)
    execute_process(COMMAND ${OBJDUMP} -d --no-show-raw-insn ${object}
        OUTPUT_VARIABLE listing RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${OBJDUMP} failed on ${object}")
    endif()
    string(REGEX MATCHALL "\t(f(add|sub|subr|mul|div|divr|sqrt|sin|cos|sincos|patan|ptan|prem|prem1|scale|rndint|xtract|2xm1|yl2x|yl2xp1|iadd|isub|isubr|imul|idiv|idivr)p?[lsq]?)[ \n]"
        hits "${listing}")
    if(hits)
        list(REMOVE_DUPLICATES hits)
        string(STRIP "${hits}" hits)
        get_filename_component(name ${object} NAME)
        list(APPEND found "${name}: ${hits}")
    endif()
endforeach()
if(found)
    message(FATAL_ERROR "x87 arithmetic in the library:\n  ${found}")
endif()
list(LENGTH objects n)
message(STATUS "${n} objects, no x87 arithmetic")
