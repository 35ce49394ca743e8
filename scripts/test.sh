#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks the C++ format, builds everything and runs every test: the normal build (with the web
# engine and the page's tests in headless Chromium), then the same tests without the web engine
# under AddressSanitizer + UndefinedBehaviorSanitizer, then the fuzz targets (clang) for a bounded
# time each (ZPHONETIC_FUZZ_SECONDS, 30 by default). In all three builds a compiler warning is an
# error.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
cd "$here"
bash scripts/bootstrap.sh test

echo "== format (.clang-format)"
bash scripts/check-format.sh

export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QTWEBENGINE_DISABLE_SANDBOX=1
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
jobs=$(nproc)

echo "== build (RelWithDebInfo, web engine on)"
cmake -S . -B build -G Ninja "${launcher[@]}" -DZPHONETIC_WEBENGINE=ON -DZPHONETIC_WERROR=ON >/dev/null
cmake --build build -j"$jobs"
echo "== tests"
ctest --test-dir build --output-on-failure -j"$jobs"

echo "== build (AddressSanitizer + UndefinedBehaviorSanitizer, web engine off)"
cmake -S . -B build-asan -G Ninja "${launcher[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DZPHONETIC_SANITIZE=ON -DZPHONETIC_WEBENGINE=OFF -DZPHONETIC_BENCH=OFF -DZPHONETIC_WERROR=ON >/dev/null
cmake --build build-asan -j"$jobs"
echo "== tests under sanitizers"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-asan --output-on-failure -j"$jobs"

echo "== fuzz targets (clang, AddressSanitizer + UndefinedBehaviorSanitizer, ${ZPHONETIC_FUZZ_SECONDS:-30} s each)"
# -O1, as fuzzing is usually done: an unoptimised build runs the targets three to six times slower,
# and the sanitizers still see everything they see at -O0.
CC=clang-14 CXX=clang++-14 cmake -S . -B build-fuzz -G Ninja "${launcher[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" -DCMAKE_C_FLAGS_DEBUG="-g -O1" \
    -DZPHONETIC_SANITIZE=ON -DZPHONETIC_WEBENGINE=OFF -DZPHONETIC_BENCH=OFF -DZPHONETIC_WERROR=ON \
    -DZPHONETIC_FUZZ_SECONDS="${ZPHONETIC_FUZZ_SECONDS:-30}" >/dev/null
cmake --build build-fuzz -j"$jobs" --target \
    zphonetic_answerparser_fuzz zphonetic_deckreader_fuzz zphonetic_readingsimport_fuzz \
    zphonetic_textedits_fuzz zphonetic_dictionary_fuzz zphonetic_readings_fuzz \
    zphonetic_slidestructure_fuzz
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-fuzz --output-on-failure -L fuzz
