#!/usr/bin/env bash
# Every unit test program of a build (no sanitizer) under valgrind's
# memcheck: any invalid read or write, use of an undefined value, bad free
# or leaked block of any kind (definite, indirect, possible, reachable)
# fails it. Two programs at a time.
#
#   .ci/memcheck.sh [BUILD_DIR]      (build, the README's build)
#
# The programs are those the tests' CMakeLists list in
# BUILD_DIR/unit_programs.txt; the build must be done.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
list=$build/unit_programs.txt
logs=$build/memcheck
jobs=${MEMCHECK_JOBS:-2}

command -v valgrind >/dev/null || { echo "valgrind is not installed" >&2; exit 1; }
[ -f "$list" ] || { echo "$list not found: build the tests first" >&2; exit 1; }
rm -rf "$logs"
mkdir -p "$logs"

# One program: its log, and a line with its verdict.
check_one() {
    local program=$1 logs=$2
    local name log status=0
    name=$(basename "$program")
    log=$logs/$name.log
    valgrind --tool=memcheck --error-exitcode=99 --leak-check=full --show-leak-kinds=all \
        --errors-for-leak-kinds=all --num-callers=30 --log-file="$log.valgrind" \
        "$program" --gtest_brief=1 >"$log" 2>&1 || status=$?
    if [ $status -eq 0 ]; then
        echo "ok      $name"
    else
        echo "FAILED  $name (exit $status; $log.valgrind)"
    fi
}
export -f check_one

start=$SECONDS
grep -v '^$' "$list" | xargs -P "$jobs" -I{} bash -c 'check_one "$@"' _ {} "$logs" |
    tee "$logs/summary.txt"
count=$(wc -l <"$logs/summary.txt")
echo "memcheck: $count programs in $((SECONDS - start)) s"
if grep -q '^FAILED' "$logs/summary.txt"; then
    grep '^FAILED' "$logs/summary.txt" | sed 's/.*; \(.*\))$/\1/' | while read -r log; do
        grep -E -A 12 'Invalid|uninitialised|definitely|indirectly|possibly|still reachable|ERROR SUMMARY' \
            "$log" | head -n 60
    done
    echo "memcheck: FAILED" >&2
    exit 1
fi
echo "memcheck: 0 errors, 0 leaks"
