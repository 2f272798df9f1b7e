#!/usr/bin/env bash
# Builds KORX and runs what is asked for:
#   ./build.sh example    the library and the example program, then runs the example
#   ./build.sh test       the library, tests, benchmarks and examples, then the whole test suite
#   ./build.sh sanitize   the test suite built with AddressSanitizer + UBSan, then runs it
#   ./build.sh bench      the benchmarks in release mode, then runs them
# Missing build tools are installed with apt-get when run as root; otherwise they are named.
set -euo pipefail
cd "$(dirname "$0")"

mode=${1:-}
case "$mode" in
example | test | sanitize | bench) ;;
*)
    echo "usage: ./build.sh example|test|sanitize|bench" >&2
    exit 2
    ;;
esac

have_header() { [ -f "/usr/include/$1" ] || [ -f "/usr/local/include/$1" ]; }

missing=()
command -v cmake >/dev/null || missing+=(cmake)
command -v ninja >/dev/null || command -v make >/dev/null || missing+=(ninja-build)
command -v c++ >/dev/null || command -v g++ >/dev/null || missing+=(g++)
if [ "$mode" != example ]; then
    have_header gtest/gtest.h || missing+=(libgtest-dev)
    have_header benchmark/benchmark.h || missing+=(libbenchmark-dev)
fi

if [ ${#missing[@]} -gt 0 ]; then
    if [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null; then
        echo "Installing ${missing[*]} ..."
        apt-get update -qq
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
    else
        echo "Missing build dependencies: ${missing[*]}" >&2
        echo "Install them with: sudo apt-get install ${missing[*]}" >&2
        exit 1
    fi
fi

generator="Unix Makefiles"
command -v ninja >/dev/null && generator=Ninja
jobs=$(nproc 2>/dev/null || echo 2)

configure() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -G "$generator" "$@" >/dev/null
}

case "$mode" in
example)
    configure build/example -DCMAKE_BUILD_TYPE=Release -DKORX_BUILD_TESTS=OFF \
        -DKORX_BUILD_BENCHMARKS=OFF -DKORX_BUILD_EXAMPLES=ON
    cmake --build build/example --parallel "$jobs"
    ./build/example/examples/korx_example
    ;;
test)
    configure build/test -DCMAKE_BUILD_TYPE=Release
    cmake --build build/test --parallel "$jobs"
    ctest --test-dir build/test --output-on-failure --parallel "$jobs"
    ;;
sanitize)
    configure build/sanitize -DCMAKE_BUILD_TYPE=Debug -DKORX_SANITIZE=ON \
        -DKORX_BUILD_BENCHMARKS=OFF -DKORX_BUILD_EXAMPLES=OFF
    cmake --build build/sanitize --parallel "$jobs"
    ctest --test-dir build/sanitize --output-on-failure --parallel "$jobs"
    ;;
bench)
    configure build/bench -DCMAKE_BUILD_TYPE=Release -DKORX_BUILD_TESTS=OFF
    cmake --build build/bench --parallel "$jobs"
    for program in build/bench/bench/*_bench; do
        "$program"
    done
    ;;
esac
