#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs whatever this machine is missing to build and run zphonetic (Debian bookworm), and
# fetches the dictionary sources. Idempotent: does nothing that is already done.
#   scripts/bootstrap.sh demo   what the main job needs
#   scripts/bootstrap.sh test   what every test needs (adds Chromium, LibreOffice, sanitizers)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
purpose=${1:-test}

packages=(
    build-essential cmake ninja-build pkg-config ccache git python3 openssl
    qtbase5-dev qttools5-dev qttools5-dev-tools qtwebengine5-dev libqt5webchannel5-dev
    libjsoncpp-dev libzip-dev zlib1g-dev libpugixml-dev libbz2-dev libharfbuzz-dev libpng-dev
    libfontconfig-dev libgtest-dev libgmock-dev googletest libbenchmark-dev
    fonts-noto-cjk
    golang-github-mozillazg-go-pinyin-dev unicode-data
)
if [ "$purpose" = test ]; then
    packages+=(chromium libreoffice-impress poppler-utils xauth xvfb)
    packages+=(libpoppler-qt5-dev)  # where LibreOffice put each character of a PDF
    packages+=(clang-14 libclang-rt-14-dev)  # libFuzzer targets: test.sh builds and runs them
    packages+=(clang-format-14)  # the format check of test.sh
    packages+=(dpkg-dev file fakeroot lintian)  # the Debian package (cpack -G DEB) and its test
fi

missing=()
# Node.js may come from elsewhere than Debian (with its own npm, which Debian's npm conflicts
# with): only install Debian's when the commands are missing.
command -v node >/dev/null || missing+=(nodejs)
command -v npm >/dev/null || missing+=(npm)
for p in "${packages[@]}"; do
    # A nodejs that bundles its own npm (as some vendors' packages do) conflicts with Debian's npm.
    [ "$p" = npm ] && command -v npm >/dev/null && continue
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "bootstrap: installing ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

if [ -x "$here/scripts/fetch-dict-sources.sh" ]; then
    "$here/scripts/fetch-dict-sources.sh"
fi

if [ "$purpose" = test ] && [ -f "$here/tests/page/package-lock.json" ]; then
    if [ ! -d "$here/tests/page/node_modules" ]; then
        npm ci --prefix "$here/tests/page" --no-audit --no-fund --loglevel=error
    fi
fi
