#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Takes the dictionary sources of the tagging library at set-up time, so the build never downloads.
#   - Debian packages golang-github-mozillazg-go-pinyin-dev (character readings) and unicode-data
#     (Unihan readings, to keep only modern ones): installed with apt-get when missing.
#   - npm package @pinyin-pro/data@1.3.1 (word readings and frequencies): fetched with `npm pack`
#     into .cache/dict-sources/, checked against a pinned sha512, unpacked beside it.
# Running it again does nothing when everything is already in place.
# Usage: scripts/fetch-dict-sources.sh [DEST_DIR]   (default: <repo>/.cache/dict-sources)
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
dest=${1:-$repo/.cache/dict-sources}

go_dict=/usr/share/gocode/src/github.com/mozillazg/go-pinyin/pinyin_dict.go
unihan=/usr/share/unicode/Unihan_Readings.txt.bz2
npm_spec=@pinyin-pro/data@1.3.1
npm_tarball=pinyin-pro-data-1.3.1.tgz
npm_dir=pinyin-pro-data-1.3.1
# The registry's integrity value for this version, pinned here so a changed tarball is refused.
npm_sha512=7SLDd8Q31U8lvZ6BtRFaZrTfQ4p01g+q/VFqpMRG0dAAsuBKMl59pAOsbLsRL2m3+SgW0zzztrQyAtHSvijMIQ==

fail() { echo "fetch-dict-sources: $*" >&2; exit 1; }

missing=()
[ -f "$go_dict" ] || missing+=(golang-github-mozillazg-go-pinyin-dev)
[ -f "$unihan" ] || missing+=(unicode-data)
if [ ${#missing[@]} -gt 0 ]; then
    echo "fetch-dict-sources: installing ${missing[*]}"
    command -v apt-get >/dev/null || fail "apt-get not found; install ${missing[*]} by hand"
    apt-get install -y --no-install-recommends "${missing[@]}" \
        || fail "could not install ${missing[*]} (run as root, or install them by hand)"
fi
[ -f "$go_dict" ] || fail "$go_dict is still missing after installing golang-github-mozillazg-go-pinyin-dev"
[ -f "$unihan" ] || fail "$unihan is still missing after installing unicode-data"

sha512_of() { openssl dgst -sha512 -binary "$1" | base64 -w0; }
command -v openssl >/dev/null || fail "openssl is needed to check the tarball's sha512"

mkdir -p "$dest"
tarball=$dest/$npm_tarball
if [ -f "$tarball" ] && [ "$(sha512_of "$tarball")" != "$npm_sha512" ]; then
    echo "fetch-dict-sources: $tarball does not match the pinned sha512; fetching it again"
    rm -f "$tarball"
    rm -rf "${dest:?}/$npm_dir"
fi
if [ ! -f "$tarball" ]; then
    command -v npm >/dev/null || fail "npm not found (Debian package npm) to fetch $npm_spec"
    tmp=$(mktemp -d)
    trap 'rm -rf "$tmp"' EXIT
    (cd "$tmp" && npm pack --silent "$npm_spec" >/dev/null) || fail "npm pack $npm_spec failed"
    got=$(sha512_of "$tmp/$npm_tarball")
    [ "$got" = "$npm_sha512" ] \
        || fail "$npm_spec has sha512 $got, expected $npm_sha512; refusing it"
    mv "$tmp/$npm_tarball" "$tarball"
fi
if [ ! -f "$dest/$npm_dir/json/complete.json" ]; then
    rm -rf "${dest:?}/$npm_dir"
    mkdir -p "$dest/$npm_dir"
    tar -xzf "$tarball" -C "$dest/$npm_dir" --strip-components=1 \
        || fail "could not unpack $tarball"
    [ -f "$dest/$npm_dir/json/complete.json" ] || fail "$tarball holds no json/complete.json"
fi
echo "fetch-dict-sources: sources ready in $dest"
