#!/bin/sh
# Installs a build into a temporary prefix and checks what a desktop needs:
# the program and its desktop module, the help with every topic the windows
# open, the menu entry, the icon and the manual page.
#
# usage: install_test.sh BUILD_DIR
set -u

build=${1:?usage: install_test.sh BUILD_DIR}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
prefix=$(mktemp -d "${TMPDIR:-/tmp}/qb-install.XXXXXX")
trap 'rm -rf "$prefix"' EXIT INT TERM

failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

if ! cmake --install "$build" --prefix "$prefix" >"$prefix/install.log" 2>&1; then
    cat "$prefix/install.log" >&2
    echo "FAIL: cmake --install $build --prefix $prefix" >&2
    exit 1
fi

bin=$prefix/bin/quillarbor
# The program loads the desktop from ../lib/quillarbor beside bin/.
module=$prefix/lib/quillarbor/quillarbor-desktop.so
help=$prefix/share/quillarbor/help/quillarbor.html
desktop=$prefix/share/applications/quillarbor.desktop
icon=$prefix/share/icons/hicolor/scalable/apps/quillarbor.svg
manpage=$prefix/share/man/man1/quillarbor.1

for f in "$bin" "$module" "$help" "$desktop" "$icon" "$manpage"; do
    [ -s "$f" ] || fail "not installed or empty: ${f#"$prefix"/}"
done
[ -x "$bin" ] || fail "bin/quillarbor is not executable"

# The installed program runs headless from its new place.
if [ -x "$bin" ]; then
    "$bin" --version >/dev/null 2>&1 || fail "installed quillarbor --version failed"
fi

if [ -s "$help" ]; then
    # Every topic a window opens must be an anchor of the help page.
    topics=$(grep -rhoE 'openHelp\([^,]+, *"[A-Za-z_]+"' "$source_dir/src/gui" |
        sed -E 's/.*"([A-Za-z_]+)"/\1/')
    for topic in $topics Main_Contents clientsetup ratesetup reports deldata copy rectime; do
        grep -q "id=\"$topic\"" "$help" || fail "help has no topic '$topic'"
    done
    # Every link inside the page leads somewhere.
    for target in $(grep -oE 'href="#[^"]*"' "$help" | sed -E 's/href="#(.*)"/\1/' | sort -u); do
        grep -q "id=\"$target\"" "$help" || fail "help links to missing anchor '#$target'"
    done
    # One self-contained file: nothing fetched, nothing run.
    if grep -qiE '<script|<link|<img|src=|url\(|https?://' "$help"; then
        fail "help refers to outside resources or scripts"
    fi
fi

if [ -s "$desktop" ]; then
    grep -qx 'Exec=quillarbor' "$desktop" || fail "desktop entry does not start quillarbor"
    grep -qx 'Icon=quillarbor' "$desktop" || fail "desktop entry does not name the installed icon"
    if command -v desktop-file-validate >/dev/null 2>&1; then
        desktop-file-validate "$desktop" || fail "desktop-file-validate refuses the desktop entry"
    fi
fi

if [ -s "$icon" ]; then
    head -c 400 "$icon" | grep -q '<svg' || fail "icon is not an SVG document"
fi

if [ -s "$manpage" ]; then
    if command -v groff >/dev/null 2>&1; then
        warnings=$(LC_ALL=C.UTF-8 groff -man -Tutf8 -ww -z "$manpage" 2>&1)
        [ -z "$warnings" ] || fail "manual page renders with warnings: $warnings"
    else
        echo "groff not found: manual page rendering not checked"
    fi
fi

if [ "$failures" -ne 0 ]; then
    echo "$failures install check(s) failed" >&2
    exit 1
fi
echo "install layout ok"
