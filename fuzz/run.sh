#!/usr/bin/env bash
# Runs the fuzz targets (libFuzzer, clang; fuzz/README in the main README).
#
#   fuzz/run.sh TARGET SECONDS [OPTION...]   a long run of one target
#   fuzz/run.sh --check SECONDS              every target for SECONDS each on
#                                            the corpus kept here (CI)
#   fuzz/run.sh --minimize TARGET            the corpus kept here replaced by
#                                            a small set of it, of the seeds
#                                            and of the long runs' finds that
#                                            reaches the same edges
#
# TARGET is device, survey, landxml or csv. Builds the targets first when
# needed (build-fuzz/, FUZZ_BUILD_DIR to move it; clang and libFuzzer
# required). A long run works on build-fuzz/corpus/TARGET, which starts
# from fuzz/corpus/TARGET (and, for device and survey, from the seed inputs)
# and keeps what the run finds; OPTION... go to libFuzzer. Every run also
# executes the inputs of past findings (fuzz/regressions/TARGET), and
# reports its executions and, per function, the calls made and the calls
# by status returned; a finding (a sanitizer report, a crash, a timeout)
# is written to build-fuzz/findings/TARGET/ and fails the run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
targets=(device survey landxml csv)

usage() {
    sed -n '2,20p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//' >&2
    exit 2
}

# Targets whose sources exist in this tree.
available() {
    local t
    for t in "${targets[@]}"; do
        [ -f "$root/fuzz/$t.cpp" ] && echo "$t"
    done
}

build_targets() {
    if [ ! -f "$build/build.ninja" ]; then
        CC=${FUZZ_CC:-clang} CXX=${FUZZ_CXX:-clang++} cmake -S "$root" -B "$build" -G Ninja \
            -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUILLON_FUZZ=ON -DQUILLON_BUILD_TESTS=OFF \
            -DQUILLON_BUILD_EXAMPLES=OFF -DQUILLON_BUILD_PLATFORM_CHECKS=OFF \
            -DQUILLON_INSTALL=OFF >"$build.configure.log" 2>&1 ||
            { cat "$build.configure.log"; return 1; }
    fi
    local names=(quillon_fuzz_seeds) t
    for t in $(available); do
        names+=("fuzz_$t")
    done
    cmake --build "$build" -j "${FUZZ_JOBS:-2}" --target "${names[@]}"
}

# Options every run passes to libFuzzer: a finding is written under
# findings/, an input running 25 s is one.
common_options() {
    local target=$1
    mkdir -p "$build/findings/$target"
    echo "-artifact_prefix=$build/findings/$target/ -timeout=25 -print_final_stats=1"
    if [ -f "$root/fuzz/$target.dict" ]; then
        echo "-dict=$root/fuzz/$target.dict"
    fi
}

# Prints the executions of a run's log and the calls per function.
report() {
    local target=$1 log=$2 stats=$3
    local runs seconds
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    seconds=$(sed -n 's/^Done [0-9]* runs in \([0-9]*\) second.*/\1/p' "$log" | tail -n 1)
    echo "fuzz $target: ${runs:-?} executions in ${seconds:-?} s"
    if [ -s "$stats" ]; then
        cat "$stats"
    fi
}

# The kept inputs of a target: its corpus, and its past findings if any.
kept_inputs() {
    local target=$1
    mkdir -p "$root/fuzz/corpus/$target"
    echo "$root/fuzz/corpus/$target"
    if [ -d "$root/fuzz/regressions/$target" ]; then
        echo "$root/fuzz/regressions/$target"
    fi
}

# run TARGET LOG OPTION... CORPUS...: one run, its report; fails on a finding.
run_target() {
    local target=$1 log=$2
    shift 2
    local stats=$build/stats-$target.txt
    local status=0
    rm -f "$stats"
    # shellcheck disable=SC2046
    QUILLON_FUZZ_STATS=$stats "$build/fuzz/fuzz_$target" $(common_options "$target") "$@" \
        >"$log" 2>&1 || status=$?
    report "$target" "$log" "$stats"
    if [ $status -ne 0 ]; then
        grep -E -A 30 '^==[0-9]+==ERROR|runtime error|^SUMMARY|ALARM|Test unit written' "$log" |
            head -n 80 >&2 || tail -n 40 "$log" >&2
        echo "fuzz $target: FINDING (exit $status); log $log, inputs in $build/findings/$target" >&2
        return 1
    fi
}

# The seed inputs of a target, written into DIR: generated calls for the
# libraries, the example files and the readers' test files for the readers.
write_seeds() {
    local target=$1 dir=$2
    case $target in
    device | survey) "$build/fuzz/quillon_fuzz_seeds" "$target" "$dir" >/dev/null ;;
    landxml) cp "$root"/examples/data/*.xml "$root"/tests/io/data/*.xml "$dir"/ ;;
    csv) cp "$root"/examples/data/*.csv "$dir"/ ;;
    esac
}

long_run() {
    local target=$1 seconds=$2
    shift 2
    local corpus=$build/corpus/$target
    local seeds=$build/seeds/$target
    mkdir -p "$corpus" "$seeds"
    rm -f "$seeds"/*
    write_seeds "$target" "$seeds"
    # shellcheck disable=SC2046
    run_target "$target" "$build/run-$target.log" -max_total_time="$seconds" "$@" \
        "$corpus" $(kept_inputs "$target") "$seeds"
}

check_all() {
    local seconds=$1 t failed=0 scratch
    for t in $(available); do
        # New finds go to a scratch directory: the corpus here is not changed.
        scratch=$(mktemp -d)
        # shellcheck disable=SC2046
        run_target "$t" "$build/check-$t.log" -max_total_time="$seconds" \
            "$scratch" $(kept_inputs "$t") || failed=1
        rm -rf "$scratch"
    done
    return $failed
}

minimize() {
    local target=$1
    local kept=$root/fuzz/corpus/$target
    local merged=$build/minimized/$target
    local seeds=$build/seeds/$target
    rm -rf "$merged" "$seeds"
    mkdir -p "$merged" "$seeds" "$kept" "$build/corpus/$target"
    write_seeds "$target" "$seeds"
    # The greedy set cover of the edges reached (hit counts ignored): a few
    # hundred inputs rather than thousands, every edge still reached.
    # shellcheck disable=SC2046
    "$build/fuzz/fuzz_$target" -set_cover_merge=1 -use_counters=0 $(common_options "$target") \
        "$merged" "$kept" \
        "$build/corpus/$target" "$seeds" >"$build/minimize-$target.log" 2>&1 ||
        { tail -n 40 "$build/minimize-$target.log"; return 1; }
    rm -f "$kept"/*
    cp "$merged"/* "$kept"/
    echo "fuzz/corpus/$target: $(find "$kept" -type f | wc -l) inputs, $(cat "$kept"/* | wc -c) bytes"
}

[ $# -ge 1 ] || usage
case $1 in
--check)
    [ $# -eq 2 ] || usage
    build_targets
    check_all "$2"
    ;;
--minimize)
    [ $# -eq 2 ] || usage
    build_targets
    minimize "$2"
    ;;
-*) usage ;;
*)
    [ $# -ge 2 ] || usage
    printf '%s\n' "${targets[@]}" | grep -qx "$1" || usage
    build_targets
    long_run "$@"
    ;;
esac
