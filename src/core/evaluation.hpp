// The evaluation rule of the whole library, checked where the compiler lets it
// be checked: every formula is evaluated in IEEE double precision exactly as
// written, one rounding per operation, in the order the source gives. The
// build states the rule with its flags (cmake/QuillonFlags.cmake); this header
// makes a compilation of src/ with other flags fail instead of silently
// delivering other last bits. Every core header includes it first.
//
// What is caught:
// - Extended-precision evaluation (the x87 unit of 32-bit x86 without SSE2,
//   GCC's -fexcess-precision=fast there): FLT_EVAL_METHOD is not 0.
// - -ffast-math and -ffinite-math-only (GCC and Clang): __FAST_MATH__,
//   __FINITE_MATH_ONLY__.
// - With GCC, every option that gives up IEEE semantics for speed
//   (-fassociative-math, -freciprocal-math, -fno-signed-zeros,
//   -funsafe-math-optimizations) and -fsingle-precision-constant: GCC then
//   defines __GCC_IEC_559 as 0.
// - Fused multiply-add on a target that has it (x86 with FMA or FMA4, every
//   64-bit ARM, 32-bit ARM with VFPv4, and with GCC any target it knows to
//   fuse): the compilation must carry QUILLON_FP_CONTRACT_OFF, which the build
//   defines together with -ffp-contract=off and nowhere else. GCC fuses by
//   default in C++ (-ffp-contract=fast) and Clang within an expression
//   (-ffp-contract=on), so a plain compiler call fails here.
// - MSVC's /fp:fast: _M_FP_FAST.
//
// What is not caught, because no compiler says it in a macro:
// - Whether -ffp-contract=off is really in force. The macro is the build's
//   word for it; defining it by hand next to -ffp-contract=fast (or a later
//   -ffp-contract=fast on the command line) defeats the check.
// - Clang's -fassociative-math, -freciprocal-math and -fno-signed-zeros on
//   their own (they set no macro), and fused multiply-add on a Clang target
//   other than x86 and ARM (PowerPC, s390x, RISC-V).
// - MSVC's /fp:contract, and the contraction that MSVC before Visual Studio
//   2022 performs under /fp:precise: no macro tells them.
// - A different mathematical library: sin, cos, atan2 and the other functions
//   may round their last bit differently on another platform whatever the
//   flags; the reference vectors measure that.
#ifndef QUILLON_CORE_EVALUATION_HPP
#define QUILLON_CORE_EVALUATION_HPP

#include <cfloat>

#if !defined(FLT_EVAL_METHOD) || FLT_EVAL_METHOD != 0
#error "Quillon needs FLT_EVAL_METHOD == 0 (SSE2 on 32-bit x86)"
#endif

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ != 0)
#error "Quillon must not be built with -ffast-math or -ffinite-math-only"
#endif

#if defined(__GCC_IEC_559) && __GCC_IEC_559 == 0 && !defined(__clang__)
#error "Quillon needs IEEE semantics: no -fassociative-math, -freciprocal-math, -fno-signed-zeros"
#endif

#if defined(__FP_FAST_FMA) || defined(__FMA__) || defined(__FMA4__) || defined(__ARM_FEATURE_FMA)
#if !defined(QUILLON_FP_CONTRACT_OFF)
#error "The target fuses multiply-adds: build with -ffp-contract=off and -DQUILLON_FP_CONTRACT_OFF"
#endif
#endif

#if defined(_M_FP_FAST)
#error "Quillon must not be built with /fp:fast"
#endif

#endif
