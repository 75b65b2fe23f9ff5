#!/usr/bin/env bash
# The installer as a user meets it: installed, used and taken away again, in a Wine prefix of its own.
#   tools/package/check.sh BIN WORK    BIN: the folder of Kavidex.ocx; WORK: a folder for all this makes
set -euo pipefail
here=$(cd "$(dirname "$0")/../.." && pwd)
bin=$1 work=$(realpath -m "$2")
rm -rf "$work"; mkdir -p "$work"
export KAVIDEX_WINE_HOME=$work/wine KAVIDEX_WINE_SECONDS=120
wine() { "$here/tools/wine.sh" run "$@"; }
windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }
fail() { echo "failed: $*" >&2; exit 1; }
trap '"$here/tools/wine.sh" stop' EXIT

"$here/tools/package/package.sh" "$bin" "$work/out" >"$work/package.log" 2>&1 || { cat "$work/package.log"; fail "no package"; }
setup=$(echo "$work"/out/kavidex-*-setup.exe)
name=$(basename "${setup%-setup.exe}")
diff <(cd "$work/out/$name" && find . -type f | sort) \
     <(python3 -m zipfile -l "$work/out/$name.zip" | awk 'NR > 1 {print $1}' | grep -v '/$' | sed "s,^$name,.," | sort) ||
  fail "the zip does not hold what was staged"

# What the two roots of the registry hold, one line a key.
keys() {
  local root
  for root in HKCU HKLM; do wine reg query "$root\\Software" /s 2>/dev/null | tr -d '\r' | grep '^HKEY' | grep -i kavidex || true; done | sort
}
keys >"$work/before"
wine "$(windows "$setup")" /S || fail "the installer ended with $?"
installed=$(find "$work/wine/prefix/drive_c/users" -path '*Programs/Kavidex/Kavidex.ocx' -printf '%h\n')
[ -n "$installed" ] || fail "nothing was installed"
keys | grep -qi 'Classes.*Kavidex.ctrlCorrespondence' || fail "the classes were not registered for the user"

# The installed host with the installed library: its manifest names the classes, whoever registered what.
mkdir "$work/store"; touch "$work/finish"; printf 'a letter\r\n' >"$work/letter.txt"
wine "$(windows "$installed/kavidex-host.exe")" --database "$(windows "$work/kavidex.kdb")" --store "$(windows "$work/store")" \
  --key K-1 --description Sample --report "$(windows "$work/report.txt")" --close-when "$(windows "$work/finish")" \
  "$(windows "$work/letter.txt")" || fail "the installed host ended with $?"
grep -q '^ready' "$work/report.txt" || fail "the installed host did not open a dossier: $(cat "$work/report.txt")"
[ "$(find "$work/store" -name '*.txt' | wc -l)" = 1 ] || fail "the letter was not filed"
wine "$(windows "$installed/kavidex-db.exe")" check "$(windows "$work/kavidex.kdb")" || fail "the installed check found something"

touch "$installed/mine.txt" # what a user put there stays
wine "$(windows "$installed/uninst.exe")" /S
for _ in $(seq 50); do [ -e "$installed/Kavidex.ocx" ] || [ -e "$installed/uninst.exe" ] || break; sleep 0.2; done
sleep 1
[ "$(ls "$installed")" = mine.txt ] || fail "left behind: $(ls "$installed")"
keys | { grep -v 'VB and VBA' || true; } >"$work/after"
diff "$work/before" "$work/after" || fail "the registry is not as it was"
echo "all checks passed"
