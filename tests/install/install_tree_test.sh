#!/usr/bin/env bash
# Installs a build into a temporary DESTDIR with prefix /usr (as the Debian package does) and
# checks what a desktop needs from it.
#   install_tree_test.sh BUILD_DIR SOURCE_DIR VERSION APP_ID
set -uo pipefail

build=$1 source=$2 version=$3 app_id=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
failures=0

fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

if ! DESTDIR=$root cmake --install "$build" --prefix /usr >"$work/install.log" 2>&1; then
    cat "$work/install.log" >&2
    echo "FAIL: cmake --install" >&2
    exit 1
fi
share=$root/usr/share

# --- The tree: exactly these files, nothing missing and nothing stray.
icon_sizes=(16 22 24 32 48 64 128 256)
expected=(
    usr/bin/lumetra
    "usr/share/applications/$app_id.desktop"
    "usr/share/metainfo/$app_id.metainfo.xml"
    "usr/share/icons/hicolor/scalable/apps/$app_id.svg"
    "usr/share/icons/hicolor/symbolic/apps/$app_id-symbolic.svg"
    usr/share/man/man1/lumetra.1.gz
    usr/share/bash-completion/completions/lumetra
)
for size in "${icon_sizes[@]}"; do
    expected+=("usr/share/icons/hicolor/${size}x${size}/apps/$app_id.png")
done
languages=()
for ts in "$source"/translations/lumetra_*.ts; do
    name=$(basename "$ts" .ts)
    languages+=("${name#lumetra_}")
    expected+=("usr/share/lumetra/translations/$name.qm")
done
[ ${#languages[@]} -gt 0 ] || fail "no catalogues in $source/translations"

(cd "$root" && find . \( -type f -o -type l \) | sed 's|^\./||' | LC_ALL=C sort) >"$work/actual"
printf '%s\n' "${expected[@]}" | LC_ALL=C sort >"$work/expected"
if ! diff -u "$work/expected" "$work/actual" >"$work/tree.diff"; then
    fail "installed tree differs from the expected one (- missing, + stray):"
    cat "$work/tree.diff" >&2
fi

# --- The binary runs from the tree and reports the project version.
reported=$("$root/usr/bin/lumetra" --version 2>&1)
[ "$reported" = "lumetra $version" ] || fail "lumetra --version said '$reported', not 'lumetra $version'"

# --- The desktop file: the validator accepts it, and what it names is installed.
desktop=$share/applications/$app_id.desktop
if ! desktop-file-validate "$desktop" >"$work/desktop.log" 2>&1 || [ -s "$work/desktop.log" ]; then
    fail "desktop-file-validate:"
    cat "$work/desktop.log" >&2
fi
entry() { sed -n '/^\[Desktop Entry\]/,/^\[/{s/^'"$1"'=//p}' "$desktop" | head -n1; }
exec_program=$(entry Exec | cut -d' ' -f1)
[ -x "$root/usr/bin/$exec_program" ] || fail "Exec=$exec_program is not an installed program"
[ "$(entry Icon)" = "$app_id" ] || fail "Icon=$(entry Icon), not the application id"
[ "$(entry Name)" = "Lumetra" ] || fail "Name=$(entry Name)"
for category in System Monitor; do
    [[ ";$(entry Categories)" == *";$category;"* ]] || fail "Categories=$(entry Categories) lacks $category"
done

# --- The metainfo: the validator accepts it; it names the desktop file and this version.
metainfo=$share/metainfo/$app_id.metainfo.xml
if ! appstreamcli validate --no-net --explain "$metainfo" >"$work/appstream.log" 2>&1; then
    fail "appstreamcli validate --no-net:"
    cat "$work/appstream.log" >&2
fi
python3 - "$metainfo" "$app_id" "$version" <<'EOF' || fail "metainfo contents"
import sys, xml.etree.ElementTree as ET
path, app_id, version = sys.argv[1:]
root = ET.parse(path).getroot()
problems = []
if root.findtext("id") != app_id:
    problems.append(f"id {root.findtext('id')!r}")
launchable = root.find("launchable[@type='desktop-id']")
if launchable is None or launchable.text != app_id + ".desktop":
    problems.append("launchable is not the installed desktop file")
if root.findtext("provides/binary") != "lumetra":
    problems.append("provides no binary lumetra")
releases = root.findall("releases/release")
if not releases or releases[0].get("version") != version:
    problems.append(f"newest release {releases[0].get('version') if releases else None!r} "
                    f"is not the project version {version}")
for problem in problems:
    print("metainfo:", problem, file=sys.stderr)
sys.exit(1 if problems else 0)
EOF

# --- Icons: every PNG is square at its folder's size; the SVG is there for the rest.
python3 - "$share/icons/hicolor" "$app_id" "${icon_sizes[@]}" <<'EOF' || fail "icon sizes"
import struct, sys
base, app_id, *sizes = sys.argv[1:]
bad = False
for size in map(int, sizes):
    path = f"{base}/{size}x{size}/apps/{app_id}.png"
    try:
        with open(path, "rb") as f:
            head = f.read(26)
    except OSError as error:
        print(error, file=sys.stderr); bad = True; continue
    if head[:8] != b"\x89PNG\r\n\x1a\n" or head[12:16] != b"IHDR":
        print(f"{path}: not a PNG", file=sys.stderr); bad = True; continue
    width, height, depth, colour = struct.unpack(">IIBB", head[16:26])
    if (width, height) != (size, size) or colour != 6:
        print(f"{path}: {width}x{height} colour type {colour}, want {size}x{size} RGBA",
              file=sys.stderr)
        bad = True
sys.exit(1 if bad else 0)
EOF

# --- The man page: clean roff, and every option the program lists is documented.
man_text=$work/lumetra.1
gzip -dc "$share/man/man1/lumetra.1.gz" >"$man_text" || fail "lumetra.1.gz does not decompress"
groff -Tutf8 -man -ww -z "$man_text" >"$work/groff.log" 2>&1
[ -s "$work/groff.log" ] && fail "groff warnings in lumetra(1): $(cat "$work/groff.log")"
grep -q "lumetra $version" "$man_text" || fail "lumetra(1) does not carry version $version"
mapfile -t help_options < <("$root/usr/bin/lumetra" --help | grep -oE -- '--[a-z][a-z-]*' | sort -u)
[ ${#help_options[@]} -ge 5 ] || fail "lumetra --help lists only: ${help_options[*]}"
completion=$share/bash-completion/completions/lumetra
for option in "${help_options[@]}" --snapshot --style --theme; do
    grep -qF -- "\\-\\-${option#--}" "$man_text" || fail "lumetra(1) does not document $option"
    grep -qw -- "$option" "$completion" || fail "the bash completion does not offer $option"
done

# --- Bash completion: options, each option's values, and both --option=value spellings.
mkdir -p "$work/files/shots" "$work/files/proc-tree"
touch "$work/files/a.png" "$work/files/b.PNG" "$work/files/notes.txt"
complete_line() { # WORDS...  (the last word is the one being completed)
    (
        cd "$work/files" || exit 1
        # shellcheck disable=SC1090
        source "$completion"
        COMP_WORDS=("$@")
        COMP_CWORD=$(($# - 1))
        _lumetra
        printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | tr '\n' ' ' | sed 's/ $//'
    )
}
while IFS='|' read -r words want; do
    # shellcheck disable=SC2086
    got=$(complete_line $words "")
    [ "$got" = "$want" ] || fail "completing '$words _': got '$got', want '$want'"
done <<'EOF'
lumetra --format|i3bar json text waybar
lumetra --style|classic compactRow grid ring sparklineArea
lumetra --label --style|compactGraph iconAndText miniBar textOnly
lumetra --theme|dark light
lumetra --format =|i3bar json text waybar
lumetra --root|proc-tree shots
lumetra --snapshot|a.png b.PNG proc-tree shots
lumetra --print|--format --help --label --print --root --settings --snapshot --style --theme --top --version --watch
lumetra --format json --top|10 3 5
EOF
while IFS='|' read -r words want; do
    # shellcheck disable=SC2086
    got=$(complete_line $words)
    [ "$got" = "$want" ] || fail "completing '$words': got '$got', want '$want'"
done <<'EOF'
lumetra --fo|--format
lumetra --format w|waybar
lumetra --style c|classic compactRow
lumetra --format = j|json
lumetra --theme=d|--theme=dark
lumetra --snapshot s|shots
lumetra --print x|
EOF

# --- Catalogues: compiled Qt catalogues that carry translations.
for language in "${languages[@]}"; do
    qm=$share/lumetra/translations/lumetra_$language.qm
    magic=$(head -c 16 "$qm" | od -An -tx1 | tr -d ' \n')
    [ "$magic" = 3cb86418caef9c95cd211cbf60a1bddd ] || fail "$qm is not a Qt catalogue"
    # Qt 6's own first: the lconvert on PATH may be qtchooser's (KDE's qdbus-qt5 brings it),
    # which runs Qt 5's and fails when that is not installed.
    lconvert=/usr/lib/qt6/bin/lconvert
    [ -x "$lconvert" ] || lconvert=$(command -v lconvert)
    translated=$("$lconvert" -i "$qm" -of ts -o - 2>/dev/null | grep -c '<translation>[^<]')
    [ "$translated" -ge 10 ] || fail "$qm holds only $translated translations"
done

if [ "$failures" -gt 0 ]; then
    echo "$failures check(s) failed" >&2
    exit 1
fi
echo "installed tree of $((${#expected[@]})) files checked"
