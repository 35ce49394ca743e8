#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# cpack -G DEB builds the Debian package; its run-time dependencies name the libraries the
# programs need, lintian (when installed) finds no error in it, and its zphonetic, unpacked into a
# throwaway root, runs there.
#   debian-package.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
. "$(dirname "$0")/runinstalled.sh"

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/package" >"$work/cpack.txt" 2>&1 ||
    { cat "$work/cpack.txt" >&2; exit 1; }
deb=$(ls "$work"/package/zphonetic_*.deb)
depends=$(dpkg-deb -f "$deb" Depends)
echo "$(basename "$deb"): Depends: $depends"
for needed in libqt5webenginewidgets5 libqt5widgets5 zlib1g libpugixml1v5 libjsoncpp25; do
    grep -q "$needed" <<<"$depends" || { echo "FAIL: $needed is not a dependency" >&2; exit 1; }
done
if command -v lintian >/dev/null; then
    # Warnings (no manual pages) are allowed; errors fail the test.
    lintian --fail-on error "$deb" >"$work/lintian.txt" 2>&1 ||
        { echo "FAIL: lintian finds errors in $(basename "$deb"):" >&2; cat "$work/lintian.txt" >&2; exit 1; }
    echo "lintian: no errors"
fi
dpkg -x "$deb" "$work/root"
run_installed "$work/root/usr/bin/zphonetic" "$build" "$source" "$work"
