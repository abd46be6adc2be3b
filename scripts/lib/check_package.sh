#!/usr/bin/env bash
# Checks a built Debian package without installing it on this machine:
#   scripts/lib/check_package.sh PACKAGE.deb BUILD_DIR
# its control fields and file list, the desktop entry (desktop-file-validate),
# the MIME types (compiled by update-mime-database into a scratch folder), the
# manual pages (groff warnings), and the installed orchidlamp-cli run from a
# scratch root on the bundled sample. Exits non-zero at the first fault.
set -euo pipefail
source "$(dirname "$0")/setup.sh"
ensure_packages dpkg-dev desktop-file-utils shared-mime-info man-db groff-base

deb="$1"
build_dir="$2"
sample="$ORCHIDLAMP_ROOT/samples/sample.ipd"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

fail() { echo "package check: $*" >&2; exit 1; }
pass() { echo "package check: ok: $*"; }

[ "$(dpkg-deb -f "$deb" Package)" = orchidlamp ] || fail "package name is not orchidlamp"
depends="$(dpkg-deb -f "$deb" Depends)"
for lib in libc6 libqt6core6 libzip4 libxml2 libical3; do
  [[ "$depends" == *"$lib"* ]] || fail "Depends lacks $lib (dpkg-shlibdeps did not run?): $depends"
done
pass "control fields; Depends: $depends"

dpkg-deb -c "$deb" | sed -E 's/^([^ ]+ +){5}//; s|^\./||' >"$scratch/files"  # names may hold spaces
required=(usr/bin/orchidlamp-cli usr/share/man/man1/orchidlamp-cli.1.gz usr/share/orchidlamp/)
gui=0
if grep -qx 'usr/bin/orchidlamp' "$scratch/files"; then
  gui=1
  required+=(usr/share/applications/orchidlamp.desktop usr/share/mime/packages/orchidlamp.xml
    usr/share/icons/hicolor/48x48/apps/orchidlamp.png usr/share/icons/hicolor/scalable/apps/orchidlamp.svg
    usr/share/icons/hicolor/scalable/mimetypes/application-x-orchidlamp-ipd.svg
    usr/share/man/man1/orchidlamp.1.gz)
fi
for f in "${required[@]}"; do grep -qx "$f" "$scratch/files" || fail "missing $f"; done
outside="$(grep -v '^usr/' "$scratch/files" | grep -vx '' || true)"
[ -z "$outside" ] || fail "files outside /usr: $outside"
# A help PDF the window's build made must reach the package.
if [ "$gui" = 1 ] && find "$build_dir/src/ui" -maxdepth 1 -name '*.pdf' | grep -q .; then
  grep -q '^usr/share/orchidlamp/.*\.pdf$' "$scratch/files" || fail "the built help PDF is not in the package"
fi
pass "file list ($(wc -l <"$scratch/files") entries)"

root="$scratch/root"
dpkg-deb -x "$deb" "$root"
cli="$root/usr/bin/orchidlamp-cli"
version="$("$cli" --version)"
[ "$version" = "orchidlamp-cli $(dpkg-deb -f "$deb" Version)" ] || fail "--version says '$version'"
"$cli" tree "$sample" >"$scratch/tree"
head -n 1 "$scratch/tree" | grep -q "^0	Top	sheet		$sample\$" || fail "tree of the sample starts wrongly"
[ "$(wc -l <"$scratch/tree")" -gt 20 ] || fail "tree of the sample is too short"
pass "installed $version, tree of the sample ($(wc -l <"$scratch/tree") nodes)"

for page in "$root"/usr/share/man/man1/*.1.gz; do
  warnings="$(zcat "$page" | groff -man -Tutf8 -ww -z 2>&1 || true)"
  [ -z "$warnings" ] || fail "$(basename "$page"): $warnings"
  grep -q '@' <(zcat "$page" | grep -E '@[A-Z_]+@') && fail "$(basename "$page") has an unfilled placeholder"
done
pass "manual pages"

if [ "$gui" = 1 ]; then
  desktop-file-validate "$root/usr/share/applications/orchidlamp.desktop" || fail "desktop entry does not validate"
  mkdir -p "$scratch/mime/packages"
  cp "$root/usr/share/mime/packages/orchidlamp.xml" "$scratch/mime/packages/"
  update-mime-database "$scratch/mime" 2>/dev/null
  for type in application/x-orchidlamp-ipd application/x-orchidlamp-bbb; do
    grep -q "$type" "$scratch/mime/globs2" || fail "MIME type $type is not compiled"
    grep -q "^MimeType=.*$type;" "$root/usr/share/applications/orchidlamp.desktop" || fail "the entry does not claim $type"
  done
  pass "desktop entry and MIME types"
fi
