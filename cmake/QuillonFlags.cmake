# Compiler settings shared by the library, its tests and examples.
#
# Results must be the same bits on every platform: no fused multiply-add, no
# fast-math, and SSE2 arithmetic wherever the target is 32-bit x86 (the x87
# unit would evaluate in extended precision).

add_library(quillon_flags INTERFACE)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(quillon_flags INTERFACE
        -Wall -Wextra -Wpedantic -Werror
        -ffp-contract=off
        -fno-fast-math)
    # The sources refuse to compile for a target with fused multiply-add
    # unless this says that contraction is off (src/core/evaluation.hpp):
    # keep the two together.
    target_compile_definitions(quillon_flags INTERFACE QUILLON_FP_CONTRACT_OFF)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$")
        target_compile_options(quillon_flags INTERFACE -msse2 -mfpmath=sse)
    endif()
elseif(MSVC)
    target_compile_options(quillon_flags INTERFACE /W4 /WX /fp:precise)
endif()

if(QUILLON_SANITIZE)
    set(_quillon_san -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    target_compile_options(quillon_flags INTERFACE ${_quillon_san})
    target_link_options(quillon_flags INTERFACE ${_quillon_san})
endif()

# The fuzz targets' build: every object instrumented for libFuzzer's coverage
# and checked as in QUILLON_SANITIZE; the targets themselves link libFuzzer
# (fuzz/CMakeLists.txt).
if(QUILLON_FUZZ)
    if(NOT CMAKE_C_COMPILER_ID MATCHES "Clang" OR NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "QUILLON_FUZZ needs clang: configure with CC=clang CXX=clang++")
    endif()
    set(_quillon_fuzz_san -fsanitize=address,undefined,float-cast-overflow)
    target_compile_options(quillon_flags INTERFACE ${_quillon_fuzz_san} -fsanitize=fuzzer-no-link
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quillon_flags INTERFACE ${_quillon_fuzz_san})
endif()

if(QUILLON_SANITIZE_THREAD)
    target_compile_options(quillon_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(quillon_flags INTERFACE -fsanitize=thread)
endif()
