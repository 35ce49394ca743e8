# SPDX-License-Identifier: MIT
# Sourced by the installation tests: runs an installed zphonetic on the example deck as a new
# user would, with no zphonetic environment variables and, where the system lets an unprivileged
# user make a mount namespace, with the build tree hidden under an empty directory.

# run_installed PROGRAM BUILD_DIR SOURCE_DIR WORK_DIR: onekey on examples/lesson.pptx, checked.
run_installed() {
    local program=$1 build=$2 source=$3 work=$4
    local command=(env -u ZPHONETIC_TAGGER_DIR -u ZPHONETIC_DICT_DIR QT_QPA_PLATFORM=offscreen
        QTWEBENGINE_DISABLE_SANDBOX=1 ZPHONETIC_HOME="$work/home" ZPHONETIC_UI_LANGUAGE=en_US
        "$program" onekey "$source/examples/lesson.pptx" -o "$work/lesson-pinyin.pptx"
        --all-slides --place below)
    # Nothing installed may look for its libraries in the build tree.
    local file
    while IFS= read -r file; do
        if readelf -d "$file" 2>/dev/null | grep -E 'R(UN)?PATH' | grep -qF "$build"; then
            echo "FAIL: $file looks for libraries in the build tree:" >&2
            readelf -d "$file" | grep -E 'R(UN)?PATH' >&2
            return 1
        fi
    done < <(find "$(dirname "$program")/.." -type f \( -name '*.so*' -o -perm -u+x \))
    if unshare --user --map-root-user --mount true 2>/dev/null; then
        echo "running $program with $build hidden"
        unshare --user --map-root-user --mount sh -c \
            'mount -t tmpfs none "$0" && exec "$@"' "$build" "${command[@]}" >"$work/out.txt"
    else
        echo "running $program (no mount namespace here: the build tree stays visible)"
        "${command[@]}" >"$work/out.txt"
    fi
    cat "$work/out.txt"
    grep -q "^wrote $work/lesson-pinyin.pptx: 6 new text boxes on 3 slides$" "$work/out.txt"
    grep -qF "yín hánɡ hánɡ zhǎnɡ" "$work/out.txt"
}
