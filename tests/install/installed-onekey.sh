#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# cmake --install into a temporary prefix lays out a working installation: the installed
# zphonetic finds its add-on, page, translations, tagging library and dictionaries by itself.
#   installed-onekey.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
. "$(dirname "$0")/runinstalled.sh"

cmake --install "$build" --prefix "$work/prefix" >/dev/null
for file in bin/zphonetic bin/addons/zphoneticsymbol/libzphoneticsymbol.so \
            bin/addons/zphoneticsymbol/mui/zh_CN/zphoneticsymbol.qm \
            bin/addons/zphoneticsymbol/mui/default/html/pinyin/index.html \
            lib/zphonetic/libPinyinTagger.so share/zphonetic/dict/Pinyin.dic \
            share/zphonetic/dict/firrule.dic share/zphonetic/dict/secrule.dic; do
    [ -f "$work/prefix/$file" ] || { echo "FAIL: not installed: $file" >&2; exit 1; }
done
run_installed "$work/prefix/bin/zphonetic" "$build" "$source" "$work"
