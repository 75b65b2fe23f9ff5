#!/usr/bin/env bash
# What a printer gets of a scanned document: its pages at their own resolution and depth, in true size.
#   print_test.sh PROGRAM WORK
set -euo pipefail
program=$1 work=$2
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../../.." && pwd)
windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"; }
fail() { echo "failed: $*" >&2; [ ! -f "$work/out" ] || cat "$work/out" >&2; exit 1; }
rm -rf "$work"; mkdir -p "$work"

# A page of a fax, and two that are wider than high: a photograph in colour, and one in grey.
convert -size 1728x2200 xc:white -fill black -draw 'rectangle 200,300 1500,340' -density 204 -units PixelsPerInch \
  -monochrome -compress Group4 "$work/1.tif"
convert -size 400x300 gradient:red-blue -density 100 -units PixelsPerInch -type TrueColor -compress LZW "$work/2.tif"
convert -size 1100x700 xc:white -fill gray50 -draw 'circle 500,350 500,150' -density 100 -units PixelsPerInch \
  -colorspace Gray -depth 8 -compress Zip "$work/3.tif"
tiffcp "$work"/[123].tif "$work/pages.tif" 2>/dev/null

KAVIDEX_WINE_SECONDS=120 "$root/tools/wine-run.sh" "$(windows "$program")" "$(windows "$here/kavidex.ppd")" \
  "$(windows "$work/job.ps")" "$(windows "$work/pages.tif")" >"$work/out" 2>&1 || fail "the program ended with $?"
grep -q '^printed 3 pages' "$work/out" || fail "not printed"
grep -q '^refused: ' "$work/out" || fail "a printer that is gone"
[ -s "$work/job.ps" ] || fail "the printer got nothing"
gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -dAutoRotatePages=/None -sOutputFile="$work/job.pdf" "$work/job.ps" >"$work/gs" 2>&1 ||
  fail "not PostScript: $(cat "$work/gs")"
[ "$(pdfinfo "$work/job.pdf" | awk '/^Pages/ {print $2}')" = 3 ] || fail "pages: $(pdfinfo "$work/job.pdf")"
pdfimages -list "$work/job.pdf" >"$work/pictures"
grep -Eq '^ +1 .* 1728 +2200 +[a-z-]+ +1 +1 +ccitt ' "$work/pictures" || fail "the fax is not what was scanned: $(cat "$work/pictures")"
grep -Eq '^ +2 .* 400 +300 +rgb +3 +8 ' "$work/pictures" || fail "the photograph: $(cat "$work/pictures")"
grep -Eq '^ +3 .* 1100 +700 ' "$work/pictures" || fail "the wide page: $(cat "$work/pictures")"
# True size: 400 dots at 100 to the inch are 4 inches, turned with the paper that the page is too wide for.
pdftoppm -r 50 -f 2 -l 2 -png "$work/job.pdf" "$work/page"
size=$(convert "$work"/page-*2.png -trim -format '%wx%h' info:)
case $size in 149x199|149x20[0-2]|15[0-2]x199|15[0-2]x20[0-2]) ;; *) fail "the photograph is $size at 50 dots an inch, not 150x200" ;; esac
echo "all checks passed"
