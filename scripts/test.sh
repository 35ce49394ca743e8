#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds everything and runs every test: the normal build (with the web engine and the page's
# tests in headless Chromium), then the same tests without the web engine under
# AddressSanitizer + UndefinedBehaviorSanitizer, then every fuzz target (clang) for a bounded
# time (ZPHONETIC_FUZZ_SECONDS each, 20 by default).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
cd "$here"
bash scripts/bootstrap.sh test

export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QTWEBENGINE_DISABLE_SANDBOX=1
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
jobs=$(nproc)

echo "== build (RelWithDebInfo, web engine on)"
cmake -S . -B build -G Ninja "${launcher[@]}" -DZPHONETIC_WEBENGINE=ON >/dev/null
cmake --build build -j"$jobs"
echo "== tests"
ctest --test-dir build --output-on-failure -j"$jobs"

echo "== build (AddressSanitizer + UndefinedBehaviorSanitizer, web engine off)"
cmake -S . -B build-asan -G Ninja "${launcher[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DZPHONETIC_SANITIZE=ON -DZPHONETIC_WEBENGINE=OFF -DZPHONETIC_BENCH=OFF >/dev/null
cmake --build build-asan -j"$jobs"
echo "== tests under sanitizers"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    ctest --test-dir build-asan --output-on-failure -j"$jobs"

echo "== fuzz targets (clang, sanitizers): each run for a bounded time from its seed corpus"
cmake -S . -B build-fuzz -G Ninja "${launcher[@]}" -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_BUILD_TYPE=Debug -DZPHONETIC_SANITIZE=ON -DZPHONETIC_WEBENGINE=OFF -DZPHONETIC_BENCH=OFF \
    >/dev/null
fuzzers=(
    zphonetic_deckreader_fuzz:tests/slxcore/fuzz/decks
    zphonetic_textedits_fuzz:tests/slxcore/fuzz/edits
    zphonetic_dictionary_fuzz:tests/tagger/fuzz/corpus
    zphonetic_answerparser_fuzz:tests/engine/fuzz/corpus
    zphonetic_readingsimport_fuzz:tests/model/fuzz/corpus
)
cmake --build build-fuzz -j"$jobs" --target "${fuzzers[@]%%:*}"
for fuzzer in "${fuzzers[@]}"; do
    name=${fuzzer%%:*}
    # New inputs go to a scratch corpus; the repository's seeds are only read. A finding stops
    # the run with the input saved as build-fuzz/<name>-crash-*.
    scratch=$(mktemp -d)
    status=0
    ASAN_OPTIONS=detect_leaks=1 build-fuzz/bin/"$name" -max_total_time="${ZPHONETIC_FUZZ_SECONDS:-20}" \
        -artifact_prefix=build-fuzz/"$name"- -print_final_stats=1 "$scratch" "${fuzzer#*:}" \
        >"$scratch.log" 2>&1 || status=$?
    grep -E '^stat::number_of_executed_units|ERROR|SUMMARY' "$scratch.log" | sed "s/^/$name: /" || true
    [ "$status" -eq 0 ] || { tail -n 40 "$scratch.log"; echo "$name found a problem (status $status)"; exit 1; }
    rm -rf "$scratch" "$scratch.log"
done
