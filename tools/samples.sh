#!/usr/bin/env bash
# Makes varied sample documents in the folder given: a multi-page fax (204 x 98 dpi, Group 4), a
# colour scan, a PDF, a text and a saved mail in plain form.
set -euo pipefail
folder=$1
mkdir -p "$folder"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
font=$(fc-match -f '%{file}' 'Liberation Sans' 2>/dev/null || true)

# page FILE WIDTH HEIGHT BACKGROUND TITLE LINE...
page() {
  local file=$1 width=$2 height=$3 background=$4 title=$5; shift 5
  local draw=(-size "${width}x${height}" "xc:$background" -fill black ${font:+-font "$font"}
              -pointsize $((width / 28)) -annotate "+$((width / 12))+$((height / 10))" "$title"
              -pointsize $((width / 48)))
  local y=$((height / 6)) line
  for line in "$@"; do draw+=(-annotate "+$((width / 12))+$y" "$line"); y=$((y + height / 30)); done
  convert-im6 "${draw[@]}" "$file"
}

for n in 1 2 3; do
  page "$work/fax$n.png" 1728 1078 white "Telefax, pagina $n van 3" \
    "Aan: administratie" "Van: de heer J. Jansen" "Betreft: polis 4711-$n" "" \
    "Hierbij ontvangt u het ondertekende formulier."
  convert-im6 "$work/fax$n.png" -threshold 60% -density 204x98 -units PixelsPerInch -compress Group4 "$work/fax$n.tif"
done
tiffcp "$work"/fax[123].tif "$folder/Fax van Jansen.tif"

page "$work/colour.png" 1240 1754 '#f6efdc' "Schadeformulier" \
  "Datum: 15-11-2026" "Kenteken: XX-99-YY" "Omschrijving: deuk in linker portier"
convert-im6 "$work/colour.png" -fill '#c03030' -draw 'rectangle 100,900 560,1200' \
  -fill '#3060a0' -draw 'circle 900,1050 900,1200' -density 150 -units PixelsPerInch -compress LZW "$folder/Schadefoto.tif"

page "$work/letter.png" 1240 1754 white "Brief aan de verzekerde" \
  "Geachte heer Jansen," "" "Uw melding is ontvangen en in behandeling genomen." "" "Met vriendelijke groet"
convert-im6 "$work/letter.png" -colors 16 -density 150 -units PixelsPerInch -compress LZW "$work/letter.tif"
tiff2pdf -z -o "$folder/Brief aan verzekerde.pdf" "$work/letter.tif"

printf 'Gespreksnotitie\r\n\r\nDe heer O%sBrien belde over 100%% dekking; terugbellen v\303\263\303\263r vrijdag.\r\n' "'" \
  >"$folder/Gespreksnotitie O'Brien (100%).txt"
printf 'From: jansen@example.org\r\nTo: schade@example.org\r\nSubject: Formulier\r\nDate: Sun, 15 Nov 2026 14:05:09 +0100\r\n\r\nHet formulier volgt per post.\r\n' \
  >"$folder/Mail van Jansen.eml"
