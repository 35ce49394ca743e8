#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The main job on the bundled example deck: builds zphonetic, writes the pinyin of every Chinese
# text of examples/lesson.pptx into new text boxes ("PhoneticOneKey" on every slide), shows what
# was written, and, when LibreOffice is installed, renders the result to PNG pages.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
cd "$here"
bash scripts/bootstrap.sh demo

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
cmake -S . -B build -G Ninja "${launcher[@]}" >/dev/null
cmake --build build -j"$(nproc)" --target zphonetic

export QT_QPA_PLATFORM=offscreen QTWEBENGINE_DISABLE_SANDBOX=1
out=build/demo
mkdir -p "$out"
build/bin/zphonetic onekey examples/lesson.pptx -o "$out/lesson-pinyin.pptx" --all-slides
echo
build/bin/zphonetic show "$out/lesson-pinyin.pptx"

if command -v soffice >/dev/null && command -v pdftoppm >/dev/null; then
    soffice --headless -env:UserInstallation="file://$here/$out/lo-profile" \
        --convert-to pdf --outdir "$out" "$out/lesson-pinyin.pptx" >/dev/null 2>&1
    pdftoppm -png -r 60 "$out/lesson-pinyin.pdf" "$out/lesson-pinyin"
    echo
    echo "Rendered pages: $(ls "$out"/lesson-pinyin-*.png | tr '\n' ' ')"
else
    echo
    echo "(LibreOffice and poppler-utils are not installed: no rendering.)"
fi
