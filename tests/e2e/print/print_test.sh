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
  "$(windows "$work")" "$(windows "$work/pages.tif")" >"$work/out" 2>&1 || fail "the program ended with $?"
grep -q '^printed 3 pages' "$work/out" || fail "not printed"
grep -q '^refused: ' "$work/out" || fail "a printer that is gone"
[ -s "$work/job.ps" ] || fail "the printer got nothing"
# readJob NAME PAGES: what the printer got as NAME.pdf, its pages as pictures of 50 dots an inch, and
# the list `pictures` of what is on them.
readJob() {
  gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -dAutoRotatePages=/None -sOutputFile="$work/$1.pdf" "$work/$1.ps" >"$work/gs" 2>&1 ||
    fail "$1 is not PostScript: $(cat "$work/gs")"
  [ "$(pdfinfo "$work/$1.pdf" | awk '/^Pages/ {print $2}')" = "$2" ] || fail "pages: $(pdfinfo "$work/$1.pdf")"
  pdfimages -list "$work/$1.pdf" >"$work/pictures"
  pdftoppm -r 50 -png "$work/$1.pdf" "$work/$1"
}
# near WHAT FOUND WANTED TOLERANCE: numbers, each no further away than that.
near() {
  awk -v found="$2" -v wanted="$3" -v most="$4" 'BEGIN {
    n = split(wanted, w, " "); if (split(found, f, " ") != n) exit 1
    for (i = 1; i <= n; ++i) if (f[i] - w[i] > most || w[i] - f[i] > most) exit 1 }' || fail "$1: $2 instead of $3"
}
# Of a page NAME-PAGE: the width and height of what is black or coloured on it, and a colour there, at
# parts X and Y of the page.
size() { convert "$work/$1.png" -threshold 80% "${@:2}" -trim -format '%w %h' info:; }
colour() {
  local part; for part in r g b; do convert "$work/$1.png" -format "%[fx:round(p{w*$2,h*$3}.$part*255)] " info:; done
}
readJob job 3
grep -Eq '^ +1 .* 1728 +2200 +[a-z-]+ +1 +1 +ccitt ' "$work/pictures" || fail "the fax is not what was scanned: $(cat "$work/pictures")"
grep -Eq '^ +2 .* 400 +300 +rgb +3 +8 ' "$work/pictures" || fail "the photograph: $(cat "$work/pictures")"
grep -Eq '^ +3 .* 1100 +700 ' "$work/pictures" || fail "the wide page: $(cat "$work/pictures")"
# True size: 400 dots at 100 to the inch are 4 inches, turned with the paper that the page is too wide for.
near "the photograph at 50 dots an inch" "$(size job-2)" "150 200" 2
near "its one side, on turned paper" "$(colour job-2 0.34 0.5)" "255 0 0" 30
# From the viewer: all pages as they are shown, the first with its mark, the second one turned.
grep -q '^viewer: 3 pages offered' "$work/out" || fail "the viewer offered other pages"
readJob viewer 3
grep -Eq '^ +1 .* 1728 +2200 ' "$work/pictures" || fail "the marked fax: $(cat "$work/pictures")"
grep -Eq '^ +2 .* 300 +400 +rgb +3 +8 ' "$work/pictures" || fail "the turned photograph: $(cat "$work/pictures")"
near "the bar and the mark below it" "$(size viewer-1)" "312 323" 2
near "the mark, half the page wide and a quarter high" "$(size viewer-1 -gravity south -crop 100%x60%+0+0 +repage)" "207 132" 2
near "the mark" "$(colour viewer-1 0.5 0.6)" "0 0 0" 5
near "beside the mark" "$(colour viewer-1 0.9 0.6)" "255 255 255" 5
near "the turned photograph at 50 dots an inch" "$(size viewer-2)" "150 200" 2
near "its upper side, now on the right" "$(colour viewer-2 0.66 0.5)" "255 0 0" 30
near "its lower side" "$(colour viewer-2 0.34 0.5)" "0 0 255" 30
near "the circle" "$(size viewer-3)" "200 200" 2
# By thumbnails: the two that were selected, without marks once these are hidden.
grep -q '^thumbs: 0 pages offered' "$work/out" || fail "a range of chosen pages was offered"
readJob thumbs 2
grep -Eq '^ +1 .* 1728 +2200 +[a-z-]+ +1 +1 +ccitt ' "$work/pictures" || fail "the fax without its mark: $(cat "$work/pictures")"
near "where the mark was" "$(colour thumbs-1 0.5 0.6)" "255 255 255" 0
near "the second of them" "$(size thumbs-2)" "200 200" 2
! grep '^told: ' "$work/out" || fail "the viewer complained"
echo "all checks passed"
