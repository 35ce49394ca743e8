#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The main job on the bundled example deck: builds zphonetic (and everything it loads at run
# time), writes the pinyin of every Chinese text of examples/lesson.pptx into new text boxes
# under their texts ("PhoneticOneKey" on every slide, then --place below), checks the result,
# shows what was written, and, when LibreOffice is installed, renders it to PNG pages.
# Exits non-zero when the deck did not get its readings.
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
rm -f "$out/lesson-pinyin.pptx"
build/bin/zphonetic onekey examples/lesson.pptx -o "$out/lesson-pinyin.pptx" --all-slides \
    --place below | tee "$out/onekey.txt"
echo
build/bin/zphonetic show "$out/lesson-pinyin.pptx" | tee "$out/show.txt"

# The result, checked: every text of every slide got its box, with the readings expected.
fail() {
    echo "demo: FAILED: $*" >&2
    exit 1
}
texts=$(build/bin/zphonetic show examples/lesson.pptx | grep -c '^    text (')
boxes=$(grep -c '^slide [0-9]*: new text box' "$out/onekey.txt" || true)
[ "$boxes" -eq "$texts" ] || fail "$boxes new text boxes for the $texts texts of examples/lesson.pptx"
for slide in 1 2 3; do
    grep -q "^slide $slide: new text box" "$out/onekey.txt" || fail "slide $slide got no readings"
done
for readings in "jìnɡ yè sī" "chuánɡ qián mínɡ yuè ɡuānɡ" "yín hánɡ hánɡ zhǎnɡ" \
                "yīn yuè hěn kuài lè" "chónɡ xīn" "zhònɡ yào" "yí ɡè rén yì tiān yì nián" \
                "bú shì bù hǎo shì bú duì"; do
    grep -qF "$readings" "$out/show.txt" || fail "the written deck lacks the readings \"$readings\""
done
echo
echo "demo: examples/lesson.pptx got $boxes text boxes of readings, the ones expected."

if command -v soffice >/dev/null && command -v pdftoppm >/dev/null; then
    rm -f "$out"/lesson-pinyin-*.png
    soffice --headless -env:UserInstallation="file://$here/$out/lo-profile" \
        --convert-to pdf --outdir "$out" "$out/lesson-pinyin.pptx" >/dev/null 2>&1
    pdftoppm -png -r 60 "$out/lesson-pinyin.pdf" "$out/lesson-pinyin"
    echo "Rendered pages: $(ls "$out"/lesson-pinyin-*.png | tr '\n' ' ')"
else
    echo "(LibreOffice and poppler-utils are not installed: no rendering.)"
fi
