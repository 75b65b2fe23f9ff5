#!/usr/bin/env bash
# Runs a Windows program while ADODB's own class ids are served by our objects: not a moment longer,
# since other tests need to see who serves them otherwise.
#   with_classes.sh LIBRARY CMD...    (both as Windows knows them)
set -euo pipefail
wine=$(dirname "$0")/../../../tools/wine-run.sh
library=$1; shift
trap '"$wine" regsvr32 /s /u "$library"' EXIT
"$wine" regsvr32 /s "$library"
"$wine" "$@"
