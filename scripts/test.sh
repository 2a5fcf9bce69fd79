#!/usr/bin/env bash
# Builds everything (module, apps, tests, benchmarks, fuzz targets) and runs the test suite.
# --sanitize or ZR_SANITIZE=1: the AddressSanitizer/UBSan build in build-asan/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

sanitize=${ZR_SANITIZE:-0}
for arg in "$@"; do
    case $arg in
        --sanitize) sanitize=1 ;;
        *) echo "usage: bash scripts/test.sh [--sanitize]" >&2; exit 2 ;;
    esac
done

source scripts/deps.sh
zr_install_deps

build=build
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "$sanitize" = 1 ]; then
    build=build-asan
    options+=(-DZR_SANITIZE=ON)
fi

cmake -S . -B "$build" -G Ninja "${options[@]}"
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure
