#!/usr/bin/env bash
# The library on the instrument's platforms: builds it for 32-bit ARM
# (armhf), 64-bit ARM and Windows (x86_64 and i686 DLLs), runs the whole test
# suite on both ARM targets under qemu-user, checks the export tables of the
# DLLs, and runs the C client program that loads the 64-bit DLL under wine.
# Every platform is checked against the reference vectors written by a
# native build. Installs what it needs; safe to run again.
#
#   bash .ci/platforms.sh              # everything
#   bash .ci/platforms.sh armhf win64  # some stages (native always runs)
#
# Build trees go to build-platforms/<stage> (PLATFORMS_BUILD_DIR to move).
# PLATFORMS_TARGETS="quillon quillon_client" builds only the library and the
# platform client (and the native reference), for a tree where something
# else does not build yet.
set -uo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=${PLATFORMS_BUILD_DIR:-$root/build-platforms}
toolchains=$root/cmake/toolchains
jobs=$(nproc 2>/dev/null || echo 2)

all_stages=(armhf aarch64 win64 win32)
if [ $# -gt 0 ]; then
    stages=("$@")
else
    stages=("${all_stages[@]}")
fi

packages=(
    cmake ninja-build g++ googletest python3
    g++-arm-linux-gnueabihf g++-aarch64-linux-gnu qemu-user
    g++-mingw-w64-x86-64-win32 g++-mingw-w64-i686-win32 wine64
)

timings=()
failed=()

# stage NAME COMMAND...: runs a command, times it, records a failure.
stage() {
    local name=$1
    shift
    local start end status
    echo
    echo "==== $name"
    start=$(date +%s)
    "$@"
    status=$?
    end=$(date +%s)
    timings+=("$(printf '%-16s %4ds  %s' "$name" $((end - start)) "$([ $status -eq 0 ] && echo ok || echo FAILED)")")
    if [ $status -ne 0 ]; then
        failed+=("$name")
    fi
    return $status
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "need root (or sudo) to run: $*" >&2
        return 1
    fi
}

install_packages() {
    local missing=()
    local p
    for p in "${packages[@]}"; do
        if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
            missing+=("$p")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        echo "all packages present"
        return 0
    fi
    echo "installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    as_root apt-get update -qq &&
        as_root apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# configure DIR [cmake options...]
configure() {
    local dir=$1
    shift
    cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >"$dir.configure.log" 2>&1 ||
        { cat "$dir.configure.log"; return 1; }
}

# build DIR: builds quietly, showing the log only when the build fails.
# build DIR [TARGET...]: builds quietly, showing the log only when the
# build fails; when PLATFORMS_TARGETS is set, only its targets and the ones
# given here (everything otherwise).
build() {
    local dir=$1
    shift
    local targets=()
    if [ -n "${PLATFORMS_TARGETS:-}" ]; then
        read -ra targets <<<"$PLATFORMS_TARGETS"
        targets=(--target "${targets[@]}" "$@")
    fi
    set -- "$dir"
    cmake --build "$1" -j "$jobs" "${targets[@]}" >"$1.build.log" 2>&1 ||
        { tail -n 60 "$1.build.log"; return 1; }
    echo "built $1"
}

# Prints what the vectors check found: the differences per function and the
# verdict (the planted tests' failures are expected and not shown).
show_vectors() {
    local log=$1/Testing/Temporary/LastTest.log
    [ -f "$log" ] || return 0
    awk '/^[0-9]+\/[0-9]+ Testing: / { shown = ($3 == "platform.vectors") } shown' "$log" |
        grep -E '^(differences:|outside the survey range:|vectors:|exported functions without|FAIL)' |
        head -n 120
    return 0
}

# Every test of every stage has a timeout: the tests of tests/platform set
# their own, the others (the GoogleTest cases under qemu) get this one.
test_timeout=300

run_tests() {
    local dir=$1
    shift
    local status=0
    ctest --test-dir "$dir" -j "$jobs" --timeout "$test_timeout" --output-on-failure "$@" \
        >"$dir.test.log" 2>&1 || status=1
    if [ $status -ne 0 ]; then
        tail -n 300 "$dir.test.log"
    else
        grep -E 'tests passed|Total Test time' "$dir.test.log"
    fi
    show_vectors "$dir"
    return $status
}

native() {
    local dir=$out/native
    mkdir -p "$out"
    configure "$dir" -DQUILLON_BUILD_TESTS=OFF -DQUILLON_BUILD_EXAMPLES=OFF -DQUILLON_BUILD_TOOLS=OFF &&
        build "$dir" quillon_vectors &&
        run_tests "$dir"
}

reference=$out/native/tests/platform/vectors.ref

linux_cross() {
    local name=$1 triplet=$2
    local dir=$out/$name
    configure "$dir" -DCMAKE_TOOLCHAIN_FILE="$toolchains/$triplet.cmake" \
        -DQUILLON_VECTORS_REFERENCE="$reference" &&
        build "$dir" &&
        run_tests "$dir"
}

# Stops the wine server of the stages' prefix (the tests' cleanup does it
# too; this covers a run that was interrupted).
stop_wine() {
    if [ -d "$wine_prefix" ] && command -v /usr/lib/wine/wineserver >/dev/null; then
        WINEPREFIX=$wine_prefix /usr/lib/wine/wineserver -k 2>/dev/null
    fi
    return 0
}

# The tests under wine run one at a time in the prefix the tests set up
# first (tests/platform: the fixture "wine").
windows() {
    local name=$1 triplet=$2
    local dir=$out/$name
    local status=0
    configure "$dir" -DCMAKE_TOOLCHAIN_FILE="$toolchains/$triplet.cmake" \
        -DQUILLON_BUILD_TESTS=OFF -DQUILLON_VECTORS_REFERENCE="$reference" \
        -DQUILLON_WINE_PREFIX="$wine_prefix" &&
        build "$dir" &&
        "$triplet-objdump" -p "$dir/src/Quillon.dll" | sed -n '/Ordinal\/Name Pointer/,/^$/p' &&
        run_tests "$dir" -j 1 || status=1
    stop_wine
    return $status
}

total_start=$(date +%s)

# A wine prefix of our own, made by the first test run and kept between runs.
wine_prefix=$out/wine-prefix
trap stop_wine EXIT
mkdir -p "$out"

stage install install_packages || { echo "cannot install the packages"; exit 1; }
stage native native || { echo "the native reference failed"; exit 1; }

for s in "${stages[@]}"; do
    case $s in
    armhf) stage armhf linux_cross armhf arm-linux-gnueabihf ;;
    aarch64) stage aarch64 linux_cross aarch64 aarch64-linux-gnu ;;
    win64) stage win64 windows win64 x86_64-w64-mingw32 ;;
    win32) stage win32 windows win32 i686-w64-mingw32 ;;
    native) ;;
    *) echo "unknown stage $s (stages: ${all_stages[*]})"; failed+=("$s") ;;
    esac
done

total_end=$(date +%s)
echo
echo "==== platform stages"
printf '%s\n' "${timings[@]}"
printf '%-16s %4ds\n' total $((total_end - total_start))
if [ ${#failed[@]} -gt 0 ]; then
    echo "platforms: FAILED: ${failed[*]}"
    exit 1
fi
echo "platforms: all stages passed"
