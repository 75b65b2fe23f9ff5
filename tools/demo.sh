#!/usr/bin/env bash
# Shows a dossier in the sample host: with the files given, or the first time with samples. Run
# through ./kavidex demo. On a screen of yours ($DISPLAY) the window stays until you close it;
# otherwise it appears on a virtual screen, and a picture of it is saved.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
demo=$here/build/demo
bin=$here/build/win32/bin
database=$demo/kavidex.kdb store=$demo/store key=Klant-4711
mkdir -p "$demo" "$store"

windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }

files=()
for name in "$@"; do
  [ -e "$name" ] || { echo "demo: there is no file $name" >&2; exit 1; }
  files+=("$(windows "$name")")
done
if [ $# = 0 ] && [ ! -f "$database" ]; then
  "$here/tools/samples.sh" "$demo/samples"
  for name in "$demo"/samples/*; do files+=("$(windows "$name")"); done
fi

report=$demo/report.txt finish=$demo/finish
rm -f "$report" "$finish"
arguments=(--database "$(windows "$database")" --store "$(windows "$store")" --key "$key"
           --description "Dossier van de heer Jansen" --folders "Correspondentie;Polissen;Schades" --report "$(windows "$report")")

if [ -n "${DISPLAY:-}" ] && [ "${KAVIDEX_HEADLESS:-}" != 1 ]; then
  export KAVIDEX_USE_DISPLAY=1 KAVIDEX_WINE_SECONDS=0
  echo "database   $database"; echo "documents  $store"
  exec "$here/tools/wine.sh" run "$(windows "$bin/kavidex-host.exe")" "${arguments[@]}" "${files[@]}"
fi

"$here/tools/wine.sh" run "$(windows "$bin/kavidex-host.exe")" "${arguments[@]}" --close-when "$(windows "$finish")" "${files[@]}" \
  >"$demo/host.log" 2>&1 &
host=$!
for _ in $(seq 300); do
  grep -q '^ready' "$report" 2>/dev/null && break
  kill -0 $host 2>/dev/null || break
  sleep 0.2
done
sleep 1
[ ! -f "$report" ] || "$here/tools/wine.sh" shot "$demo/screenshot.png"
touch "$finish"
rc=0; wait $host || rc=$?
cat "$report" 2>/dev/null || true
grep -q '^ready' "$report" 2>/dev/null && [ $rc = 0 ] || { echo "demo: the host did not come up (exit $rc)" >&2; cat "$demo/host.log" >&2; exit 1; }
echo "database   $database"
echo "documents  $store"
echo "picture    $demo/screenshot.png"
