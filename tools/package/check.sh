#!/usr/bin/env bash
# The installer as a user meets it: installed, used and taken away again, in Wine prefixes of its own,
# one of 32 bits and one of 64, where both libraries belong.
#   tools/package/check.sh BIN32 BIN64 WORK    the folders of both libraries; WORK: a folder for all this makes
set -euo pipefail
here=$(cd "$(dirname "$0")/../.." && pwd)
bin=$1 bin64=$2 work=$(realpath -m "$3")
if [ ! -e "$bin/Kavidex.ocx" ]; then
  echo "skipped: the library of 32 bits was not built here"
  exit 77
fi
rm -rf "$work"; mkdir -p "$work"
export KAVIDEX_WINE_HOME=$work/wine KAVIDEX_WINE_SECONDS=120
wine() { "$here/tools/wine.sh" run "$@"; }
windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }
fail() { echo "failed: ${KAVIDEX_BITS:-}: $*" >&2; exit 1; }
stop() { for bits in 32 64; do KAVIDEX_BITS=$bits "$here/tools/wine.sh" stop; done; }
trap stop EXIT

"$here/tools/package/package.sh" "$bin" "$bin64" "$work/out" >"$work/package.log" 2>&1 || { cat "$work/package.log"; fail "no package"; }
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

# host FOLDER: the installed host with the installed library: its manifest names the classes, whoever registered what.
host() {
  local folder=$1 own; own=$(mktemp -d -p "$work")
  mkdir "$own/store"; touch "$own/finish"; printf 'a letter\r\n' >"$own/letter.txt"
  wine "$(windows "$folder/kavidex-host.exe")" --database "$(windows "$own/kavidex.kdb")" --store "$(windows "$own/store")" \
    --key K-1 --description Sample --report "$(windows "$own/report.txt")" --close-when "$(windows "$own/finish")" \
    "$(windows "$own/letter.txt")" || fail "the host in $folder ended with $?"
  grep -q '^ready' "$own/report.txt" || fail "the host in $folder did not open a dossier: $(cat "$own/report.txt")"
  [ "$(find "$own/store" -name '*.txt' | wc -l)" = 1 ] || fail "the letter was not filed"
  wine "$(windows "$installed/kavidex-db.exe")" check "$(windows "$own/kavidex.kdb")" || fail "the installed check found something"
}

# The programs of both widths in the prefix of 64 bits, and whether a script there finds the classes by name.
system64='C:\windows\system32' system32='C:\windows\syswow64'
cat >"$work/create.vbs" <<'VBS'
Set store = CreateObject("Kavidex.EmbeddedDatabase")
WScript.Echo "created"
VBS
created() { wine "$1\\cscript.exe" //nologo "$(windows "$work/create.vbs")" 2>&1 | grep -q '^created'; }

# registerBoth FOLDER: both libraries for the machine, side by side; one goes, and the other stays at work.
registerBoth() {
  local narrow wide; narrow=$(windows "$1/Kavidex.ocx") wide=$(windows "$1/x64/Kavidex64.ocx")
  wine "$system32\\regsvr32.exe" /s "$narrow" && wine "$system64\\regsvr32.exe" /s "$wide" || fail "not both could be registered"
  created "$system32" && created "$system64" || fail "a script does not find both libraries"
  wine "$system64\\regsvr32.exe" /s /u "$wide"
  created "$system32" || fail "the library of 32 bits went with the other"
  ! created "$system64" || fail "the library of 64 bits is still found"
  wine "$system64\\regsvr32.exe" /s "$wide"
  wine "$system32\\regsvr32.exe" /s /u "$narrow"
  created "$system64" || fail "the library of 64 bits went with the other"
  wine "$system64\\regsvr32.exe" /s /u "$wide"
}

checkIn() {
  export KAVIDEX_BITS=$1
  local prefix=$work/wine/prefix
  [ "$1" = 32 ] || prefix=$work/wine64/prefix
  # Where a user's classes of 32 bits go: Windows has the key from the start.
  [ "$1" = 32 ] || wine reg add 'HKCU\Software\Classes\Wow6432Node' /f >/dev/null
  keys >"$work/before"
  wine "$(windows "$setup")" /S || fail "the installer ended with $?"
  installed=$(find "$prefix/drive_c/users" -path '*Programs/Kavidex/Kavidex.ocx' -printf '%h\n')
  [ -n "$installed" ] || fail "nothing was installed"
  keys | grep -qi 'Classes.*Kavidex.ctrlCorrespondence' || fail "the classes were not registered for the user"
  host "$installed"
  if [ "$1" = 32 ]; then
    [ ! -e "$installed/x64" ] || fail "the library of 64 bits was installed where it is of no use"
  else
    keys | grep -qi 'Wow6432Node.*Kavidex.ctrlCorrespondence' || fail "the classes of 32 bits were not registered for the user"
    host "$installed/x64"
  fi

  [ "$1" = 32 ] || cp -r "$installed" "$work/both"
  touch "$installed/mine.txt" "$installed/examples/mine.txt" # what a user put there stays
  wine "$(windows "$installed/uninst.exe")" /S
  for _ in $(seq 50); do [ -e "$installed/Kavidex.ocx" ] || [ -e "$installed/uninst.exe" ] || break; sleep 0.2; done
  sleep 1
  [ "$(cd "$installed" && find . -type f | sort | xargs)" = "./examples/mine.txt ./mine.txt" ] || fail "left behind: $(find "$installed")"
  keys | { grep -v 'VB and VBA' || true; } >"$work/after"
  diff "$work/before" "$work/after" || fail "the registry is not as it was"
  [ "$1" = 64 ] || return 0
  registerBoth "$work/both"
  keys | { grep -v 'VB and VBA' || true; } | diff "$work/before" - || fail "registration of both left something"
}
checkIn 32
checkIn 64
echo "all checks passed"
