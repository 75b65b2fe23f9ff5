#!/usr/bin/env bash
# Makes what is handed out from a built tree: a zip, and an installer for the current user.
#   tools/package/package.sh BIN32 BIN64 OUT    the folders of Kavidex.ocx and Kavidex64.ocx; OUT: where the two files go
set -euo pipefail
here=$(cd "$(dirname "$0")/../.." && pwd)
bin=$(realpath "$1") bin64=$(realpath "$2") out=$(realpath -m "$3")
version=$(sed -n 's/^project(Kavidex VERSION \([0-9.]*\).*/\1/p' "$here/CMakeLists.txt")
name=kavidex-$version
stage=$out/$name
[ -n "$version" ] || { echo "package: no version in CMakeLists.txt" >&2; exit 1; }

rm -rf "$stage" "$out/$name.zip" "$out/$name-setup.exe"
mkdir -p "$stage/licenses"

windows() { printf 'Z:%s' "$(realpath -m "$1" | tr / '\\\\')"; }
# put BITS BIN TRIPLET LIBRARY FOLDER PROGRAM..: the library of one width, what it is told by, and its
# programs, without what only a debugger wants.
put() {
  local bits=$1 bin=$2 triplet=$3 library=$4 folder=$5 file; shift 5
  mkdir -p "$folder"
  for file in "$library.ocx" "$@"; do "$triplet-strip" -o "$folder/$file" "$bin/$file"; done
  cp "$bin/../com/kavidex.tlb" "$folder/$library.tlb"
  [ ! -f "$bin/pdfium.dll" ] || cp "$bin/pdfium.dll" "$folder/"
  KAVIDEX_BITS=$bits "$here/tools/wine.sh" run regsvr32 /s /n /i:manifest "$(windows "$folder/$library.ocx")"
  [ -s "$folder/$library.manifest" ] || { echo "package: $library.ocx wrote no manifest" >&2; exit 1; }
}
put 32 "$bin" i686-w64-mingw32 Kavidex "$stage" kavidex-db.exe kavidex-host.exe
put 64 "$bin64" x86_64-w64-mingw32 Kavidex64 "$stage/x64" kavidex-host.exe
cp -r "$here/docs" "$here/examples" "$stage/"
rm -f "$stage/examples/CMakeLists.txt"
cp "$here/README.md" "$here/CHANGELOG.md" "$here/NOTICES.md" "$stage/"
cp "$here/LICENSE" "$stage/LICENSE.txt"

# The notices of what is linked in, as Debian keeps them beside the same sources.
for package in libsqlite3-dev libtiff-dev libjpeg62-turbo-dev zlib1g-dev g++-mingw-w64-i686-posix mingw-w64-i686-dev \
               g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev; do
  cp "/usr/share/doc/$package/copyright" "$stage/licenses/$package.txt"
done
if [ -f "$stage/pdfium.dll" ]; then
  mkdir "$stage/licenses/pdfium"
  cp -r "$here"/build/deps/pdfium/win32/licenses/. "$stage/licenses/pdfium/"
fi

( cd "$out" && python3 -m zipfile -c "$name.zip" "$name" )
# What the uninstaller takes away: each file, then each folder where that left it empty.
( cd "$stage" && find . -type f -printf '  Delete "$INSTDIR\\%P"\n' && find . -mindepth 1 -depth -type d -printf '  RMDir "$INSTDIR\\%P"\n' ) |
  tr / '\\' >"$out/files.nsh"
makensis -V2 -INPUTCHARSET UTF8 -DVERSION="$version" -DSTAGE="$stage" -DFILES="$out/files.nsh" -DOUTFILE="$out/$name-setup.exe" \
  "$here/tools/package/kavidex.nsi"
ls -l "$out/$name.zip" "$out/$name-setup.exe"
