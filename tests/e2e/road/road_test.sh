#!/usr/bin/env bash
# The main road on the registered library, as hosts travel it: scripts and the sample host, real
# files, restarts, two processes at once, and what goes wrong.
#   road_test.sh CASE BINARIES
set -euo pipefail
case=$1 bin=$2
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../../.." && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/kavidex-road.XXXXXX")
options='HKCU\Software\VB and VBA Program Settings\Kavidex\DebugFlags'
finish() {
  rm -rf "$work"
  run reg delete "$options" /v Unattended /f >/dev/null 2>&1 || true
}
trap finish EXIT

windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }
run() { KAVIDEX_WINE_SECONDS=120 "$root/tools/wine-run.sh" "$@"; }
fail() { echo "FAILED: $*" >&2; [ ! -f "$work/out" ] || cat "$work/out" >&2; exit 1; }
# expect TEXT: a line of the last output holds it
expect() { grep -qF -- "$1" "$work/out" || fail "no line with: $1"; }

# script FILE ARGUMENTS...: runs it; an uncaught error ends a script without a word, so the marker
# that ends every script is asked for.
script() {
  local file=$1; shift
  run cscript //nologo "$(windows "$file")" "$@" 2>"$work/err" | tr -d '\r' >"$work/out" || true
  file=$(basename "$file"); expect "done: ${file%.*}"
}
stored() { find "$work/d/store" -type f | wc -l; }

oddNames() {
  printf 'per cent\n' >"$work/O'Brien 100% zeker.txt"
  printf 'beyond the code page\n' >"$work/Ωmega 文書 ń.txt"
  printf 'no ending\n' >"$work/README"
}

# Nobody is there to answer a message box.
run reg add "$options" /v Unattended /d True /f >/dev/null

case $case in
restart) # a dossier made by a script, its documents found again by the next run
  printf 'inhoud\n' >"$work/brief.txt"
  "$root/tools/samples.sh" "$work/samples"
  mkdir "$work/d"
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" K1 "$(windows "$work/brief.txt")" \
    "$(windows "$work/samples/Fax van Jansen.tif")"
  expect "brief (txt)"; expect "Fax van Jansen (tif)"
  [ "$(stored)" = 2 ] || fail "two files belong in the store, $(stored) are there"
  cmp "$work/brief.txt" "$(find "$work/d/store" -name '*.txt')" || fail "the stored text differs"
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" K1
  expect "brief (txt)"; expect "Fax van Jansen (tif)"
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" K2
  ! grep -q "brief" "$work/out" || fail "another key shows this dossier's documents"
  script "$root/examples/ten_lines.js" "$(windows "$work/d")" "$(windows "$work/brief.txt")"
  expect "1 text document(s) in dossier" ;;

build_dossier) # a dossier made of the data classes alone, sound to the integrity check until a file goes
  mkdir "$work/d"
  script "$root/examples/build_dossier.vbs" "$(windows "$work/d")" K1
  expect "      Brief van O'Brien (txt)"; expect "    Loonstrook 100% (txt)"
  expect "right EditDossiers = True"; expect "expected 3 x Loonstroken"
  [ "$(stored)" = 3 ] || fail "three files belong in the store, $(stored) are there"
  check() { run "$(windows "$bin/kavidex-db.exe")" check "$(windows "$work/d/kavidex.kdb")" >"$work/out" 2>&1; }
  check || fail "the check finds something"
  expect "0 findings"
  rm "$(find "$work/d/store" -type f | head -1)"
  ! check || fail "the check misses a file that is gone"
  expect "document without file" ;;

model_classes) # hostile texts, wrong values and orphans, straight into the data classes
  mkdir -p "$work/d/store"; printf '\377\376\075\330\301\334 \000\207e\366N' >"$work/d/emoji.txt"
  script "$here/model_classes.vbs" "$(windows "$work/d")"
  ! grep "^failed" "$work/out" || fail "see above" ;;

events) # what the small host in C++ hears
  printf 'inhoud\n' >"$work/brief.txt"; mkdir "$work/store"
  run "$(windows "$bin/show_events.exe")" "$(windows "$work/a.kdb")" "$(windows "$work/store")" K1 \
    "$(windows "$work/brief.txt")" 2>"$work/err" | tr -d '\r' >"$work/out" || true
  expect "OpenOrCreate 0"; expect "AddFiles 0"; expect "event EvItemCreated"
  expect "done: show_events" ;;

host) # the sample host: fills, tells, closes cleanly, and opens the same dossier again
  printf 'inhoud\n' >"$work/brief.txt"; mkdir "$work/store"
  for files in "$(windows "$work/brief.txt")" ""; do
    rm -f "$work/finish" "$work/report"
    run "$(windows "$bin/kavidex-host.exe")" --database "$(windows "$work/a.kdb")" --store "$(windows "$work/store")" \
      --key K1 --description Jansen --report "$(windows "$work/report")" --close-when "$(windows "$work/finish")" \
      ${files:+"$files"} >"$work/out" 2>&1 &
    host=$!
    for _ in $(seq 200); do grep -q '^ready' "$work/report" 2>/dev/null && break; sleep 0.2; done
    touch "$work/finish"
    wait $host || fail "the host ended with $?: $(cat "$work/report")"
    cp "$work/report" "$work/out"
    expect "dossier K1 result 0"; expect ready
    [ -z "$files" ] || expect "added 1 result 0"
  done ;;

names) # file names that a statement, a format or a code page could trip over
  oddNames; mkdir "$work/d"
  names=(); for name in "$work"/*.txt "$work/README"; do names+=("$(windows "$name")"); done
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" "O'Brien & 100%" "${names[@]}"
  expect "O'Brien 100% zeker (txt)"
  [ "$(stored)" = ${#names[@]} ] || fail "${#names[@]} files belong in the store, $(stored) are there"
  for name in "$work"/*.txt "$work/README"; do
    find "$work/d/store" -type f -exec cmp -s "$name" {} \; -print | grep -q . || fail "$name is not in the store as it was"
  done ;;

two_processes) # both add to one database at the same time; nothing is lost
  mkdir "$work/d"
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" K1
  for who in a b; do
    names=()
    for n in 1 2 3 4 5 6; do printf '%s\n' "$who$n" >"$work/$who$n.txt"; names+=("$(windows "$work/$who$n.txt")"); done
    run cscript //nologo "$(windows "$root/examples/open_dossier.vbs")" "$(windows "$work/d")" K1 "${names[@]}" \
      >"$work/out.$who" 2>&1 &
    eval "$who=\$!"
  done
  wait "$a" || true; wait "$b" || true
  cat "$work/out.a" "$work/out.b" | tr -d '\r' >"$work/out"
  [ "$(grep -c 'done: open_dossier' "$work/out")" = 2 ] || fail "a process did not finish"
  script "$root/examples/open_dossier.vbs" "$(windows "$work/d")" K1
  for n in a1 a2 a3 a4 a5 a6 b1 b2 b3 b4 b5 b6; do expect "$n (txt)"; done ;;

bad_input) # each ends in a clear answer, and nothing is half-filed
  mkdir -p "$work/d/store"; printf 'goed\n' >"$work/good.txt"
  head -c 5000 /dev/urandom >"$work/noise.kdb"; cp "$work/noise.kdb" "$work/noise.before"
  script "$here/bad_input.vbs" "$(windows "$work")"
  cmp "$work/noise.kdb" "$work/noise.before" || fail "a file that is no database was changed"
  expect "noise refused"
  expect "missing file refused"; expect "unknown folder refused"; expect "documents 1"
  expect "nothing refused"; expect "large number taken"; expect "border refused"
  [ "$(stored)" = 1 ] || fail "one file belongs in the store, $(stored) are there"
  script "$here/script_array.js" "$(windows "$work")"
  expect "array 0"; expect "empty 0"; expect "documents 3" ;;

*) fail "no such case: $case" ;;
esac
echo "ok: $case"
