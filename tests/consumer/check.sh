#!/usr/bin/env bash
# check.sh <package|subdirectory|pkgconfig> <checkout> <korx build dir> <work dir> <generator>
# Builds and runs tests/consumer/main.cpp the way a user of the library would.
set -euo pipefail
mode=$1 checkout=$2 build=$3 work=$4 generator=$5
consumer="$checkout/tests/consumer"
rm -rf "$work"
mkdir -p "$work"

case "$mode" in
package)
    cmake --install "$build" --prefix "$work/prefix" >/dev/null
    cmake -S "$consumer" -B "$work/build" -G "$generator" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
    cmake --build "$work/build" >/dev/null
    "$work/build/consumer"
    ;;
subdirectory)
    cmake -S "$consumer" -B "$work/build" -G "$generator" -DKORX_CHECKOUT="$checkout" >/dev/null
    cmake --build "$work/build" >/dev/null
    "$work/build/consumer"
    ;;
pkgconfig)
    command -v pkg-config >/dev/null || { echo "pkg-config not installed"; exit 77; }
    cmake --install "$build" --prefix "$work/prefix" >/dev/null
    export PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig:$work/prefix/lib64/pkgconfig"
    # shellcheck disable=SC2046
    c++ -std=c++17 "$consumer/main.cpp" -o "$work/consumer" $(pkg-config --cflags --libs korx)
    LD_LIBRARY_PATH="$(pkg-config --variable=libdir korx)" "$work/consumer"
    ;;
esac
echo "consumer ($mode) built and ran"
