#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when a C++ file of the repository differs from the root .clang-format, naming each one.
# Fix them with: git ls-files '*.cpp' '*.h' | xargs clang-format -i
set -euo pipefail
cd "$(dirname "$0")/.."
formatter=$(command -v clang-format-14 || command -v clang-format) \
    || { echo "check-format: clang-format is not installed" >&2; exit 1; }
mapfile -t files < <(git ls-files '*.cpp' '*.h' '*.c' '*.cc' '*.hpp')
unformatted=()
for f in "${files[@]}"; do
    "$formatter" --dry-run --Werror "$f" >/dev/null 2>&1 || unformatted+=("$f")
done
if [ ${#unformatted[@]} -gt 0 ]; then
    echo "check-format: ${#unformatted[@]} file(s) differ from .clang-format:" >&2
    printf '  %s\n' "${unformatted[@]}" >&2
    echo "Format them with: git ls-files '*.cpp' '*.h' | xargs $formatter -i" >&2
    exit 1
fi
echo "check-format: ${#files[@]} C++ files follow .clang-format"
