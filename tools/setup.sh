#!/usr/bin/env bash
# Installs what building and testing need (Debian 12, as root or with sudo) and cross-builds the
# static libraries that Debian has no Windows package for. Quick when nothing is missing.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
deps=$here/build/deps
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")

native=(build-essential cmake ninja-build ccache pkg-config dpkg-dev tcl
        clang clang-format clang-tidy libclang-rt-14-dev
        libsqlite3-dev libgtest-dev googletest libbenchmark-dev
        unixodbc-dev odbc-mariadb mariadb-server
        libtiff-dev libjpeg62-turbo-dev zlib1g-dev nasm python3-pip
        imagemagick libtiff-tools qpdf poppler-utils ghostscript)
cross=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev libz-mingw-w64-dev nsis)
desktop=(xvfb xauth x11-utils openbox xdotool fonts-wine fonts-liberation)
# What Windows programs under Wine reach MariaDB by. Installed, the first would displace the native
# driver: these are unpacked into a folder, and what they need is installed.
odbc32=(odbc-mariadb:i386 libmariadb3:i386 libodbc2:i386 libodbcinst2:i386)
odbc32Needs=(libltdl7:i386 libssl3:i386 zlib1g:i386)

say() { printf 'setup: %s\n' "$*"; }
asRoot() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }
installed() { [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null | cut -c1-2)" = ii ]; }

missing() {
  local name
  for name in "$@"; do installed "$name" || echo "$name"; done
}

# A stale index of one architecture is no reason to stop: what cannot be installed says so below.
updated=
update() {
  [ -n "$updated" ] && return
  asRoot apt-get update >/dev/null 2>&1 || say "some package indexes could not be refreshed; going on with the rest"
  updated=1
}

# The plain install first. Where an index of one architecture is stale, the versions of the two
# architectures disagree: then the release's own versions are taken, for what is needed only.
install() {
  [ $# -gt 0 ] || return 0
  say "installing $*"
  update
  local log pin; log=$(mktemp); pin=$(mktemp)
  printf 'Package: *\nPin: release n=%s\nPin-Priority: 1001\n' "$codename" >"$pin"; chmod 644 "$pin"
  local apt=(asRoot env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends)
  local agreeing=(--allow-downgrades -o Dir::Etc::Preferences="$pin" -o Dir::Etc::PreferencesParts=/dev/null)
  keepServicesDown
  local rc=0
  "${apt[@]}" "$@" >"$log" 2>&1 ||
    { say "again, with the versions of $codename itself"; "${apt[@]}" "${agreeing[@]}" "$@" >"$log" 2>&1; } || rc=$?
  letServicesStart
  [ $rc = 0 ] || tail -n 15 "$log" >&2
  rm -f "$log" "$pin"
  return $rc
}

# No service that a package brings starts by itself: the tests start their own, on loopback.
policy=/usr/sbin/policy-rc.d
policyIsOurs=
keepServicesDown() {
  [ ! -e $policy ] || return 0
  printf '#!/bin/sh\nexit 101\n' | asRoot tee $policy >/dev/null
  asRoot chmod +x $policy
  policyIsOurs=1
}
letServicesStart() { [ -z "$policyIsOurs" ] || asRoot rm -f $policy; policyIsOurs=; }

setupPackages() {
  local names
  mapfile -t names < <(missing "${native[@]}" "${cross[@]}" "${desktop[@]}")
  install "${names[@]}"
}

# setupWine BITS PACKAGE...: Wine for programs of so many bits; for 32 it needs the i386 architecture.
# Without one the tests of the other, and the native ones, still run.
setupWine() {
  local bits=$1 names; shift
  mapfile -t names < <(missing "$@")
  if [ ${#names[@]} -gt 0 ]; then
    [ "$bits" = 64 ] || dpkg --print-foreign-architectures | grep -qx i386 || { asRoot dpkg --add-architecture i386; updated=; }
    if ! install "${names[@]}"; then
      say "$bits-bit Wine cannot be installed here: the Windows tests of $bits bits will be counted as skipped"
      echo "skipped: $bits-bit Wine cannot be installed here" >"$deps/wine$bits.state"
      return 0
    fi
  fi
  echo ready >"$deps/wine$bits.state"
}

# The 32-bit ODBC driver of MariaDB, unpacked. Without it the tests that need it say so.
setupOdbc32() {
  local state=$deps/odbc32.state folder=$deps/odbc32 work name names
  [ "$(cat "$deps/wine32.state")" = ready ] || { cp "$deps/wine32.state" "$state"; return 0; }
  [ "$(cat "$state" 2>/dev/null)" = ready ] && [ -d "$folder" ] && return 0
  say "unpacking the 32-bit ODBC driver"
  work=$(mktemp -d)
  mapfile -t names < <(missing "${odbc32Needs[@]}")
  if install "${names[@]}" && fetchPackages "$work" "${odbc32[@]}"; then
    rm -rf "$folder"; mkdir "$folder"
    for name in "$work"/*.deb; do dpkg -x "$name" "$folder"; done
    echo ready >"$state"
  else
    say "the 32-bit ODBC driver cannot be fetched: tests of MariaDB under Wine will be counted as skipped"
    echo "skipped: the 32-bit ODBC driver cannot be fetched here" >"$state"
  fi
  rm -rf "$work"
}

# fetchPackages DIR NAME...: downloads the packages there, with a fresh index where the old one fails.
fetchPackages() {
  local dir=$1; shift
  local fetch=(apt-get -q -o APT::Sandbox::User=root download "$@")
  ( cd "$dir"; "${fetch[@]}" >"$dir/log" 2>&1 || { update; "${fetch[@]}" >"$dir/log" 2>&1; } || { tail -n 5 "$dir/log" >&2; false; } )
}

# The static libraries go to build/deps/win32 and win64; `bits` and `triplet` tell for which Windows.
forWindows() {
  bits=$1 triplet=$2 mingw=/usr/$2
  prefix=$deps/win$bits toolchain=$here/cmake/mingw-${triplet%%-*}.cmake
  buildSqlite
  buildGoogleTest
  buildImageLibraries
}

# SQLite for Windows, from the source package of the release that the native build links against.
buildSqlite() {
  [ -f "$prefix/lib/libsqlite3.a" ] && return 0
  say "cross-building SQLite for $bits bits"
  local work; work=$(mktemp -d)
  fetchSource sqlite3 "$work"
  local tree; tree=$(find "$work" -maxdepth 1 -type d -name 'sqlite3-*' | head -n 1)
  ( cd "$tree" && ./configure >/dev/null && make -s sqlite3.c sqlite3.h >/dev/null ) 2>"$work/log" ||
    { tail -n 20 "$work/log" >&2; return 1; }
  mkdir -p "$prefix/lib" "$prefix/include"
  ccache "$triplet-gcc-posix" -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_OMIT_LOAD_EXTENSION \
    -DSQLITE_DEFAULT_MEMSTATUS=0 -DSQLITE_ENABLE_COLUMN_METADATA \
    -c "$tree/sqlite3.c" -o "$work/sqlite3.o"
  "$triplet-ar" rcs "$work/libsqlite3.a" "$work/sqlite3.o"
  cp "$tree/sqlite3.h" "$tree/src/sqlite3ext.h" "$prefix/include/" 2>/dev/null || cp "$tree/sqlite3.h" "$prefix/include/"
  mv "$work/libsqlite3.a" "$prefix/lib/libsqlite3.a"
  rm -rf "$work"
}

# GoogleTest for Windows, from the sources that Debian installs.
buildGoogleTest() {
  [ -f "$prefix/lib/libgtest.a" ] && return 0
  say "cross-building GoogleTest for $bits bits"
  local work; work=$(mktemp -d)
  cmake -S /usr/src/googletest -B "$work" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_BUILD_TYPE=Release -DBUILD_GMOCK=OFF \
    -Dgtest_disable_pthreads=ON -DCMAKE_INSTALL_PREFIX="$prefix" >"$work/log"
  cmake --build "$work" --target install >>"$work/log" || { tail -n 20 "$work/log" >&2; return 1; }
  rm -rf "$work"
}

# crossBuild SOURCE LIBRARY OPTION...: a static library for Windows from Debian's source package.
crossBuild() {
  local source=$1 library=$2; shift 2
  [ -f "$prefix/lib/$library" ] && return 0
  say "cross-building $source for $bits bits"
  local work; work=$(mktemp -d)
  fetchSource "$source" "$work"
  local tree; tree=$(find "$work" -mindepth 1 -maxdepth 1 -type d)
  local ccache=(env CCACHE_BASEDIR="$work" CCACHE_NOHASHDIR=1)
  # The prefix is told by path: a finder would take zlib's import library, which needs a DLL beside ours.
  { "${ccache[@]}" cmake -S "$tree" -B "$tree/made" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
      -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_BUILD_TYPE=Release \
      -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR="$prefix/lib" \
      -DZLIB_LIBRARY="$mingw/lib/libz.a" -DZLIB_INCLUDE_DIR="$mingw/include" "$@" &&
    "${ccache[@]}" cmake --build "$tree/made" --target install; } >"$work/log" 2>&1 || { tail -n 20 "$work/log" >&2; return 1; }
  rm -rf "$work"
}

buildImageLibraries() {
  crossBuild libjpeg-turbo libjpeg.a -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=OFF
  crossBuild tiff libtiff.a -DBUILD_SHARED_LIBS=OFF -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF \
    -Dtiff-docs=OFF -Dcxx=OFF -Dlzma=OFF -Dzstd=OFF -Dwebp=OFF -Djbig=OFF -Dlibdeflate=OFF -Dlerc=OFF \
    -DJPEG_LIBRARY="$prefix/lib/libjpeg.a" -DJPEG_INCLUDE_DIR="$prefix/include"
}

# PDFium, which draws pages of PDF files, as published for each platform; tools/pdfium.txt pins the
# version and the checksums. Without it such pages are not drawn, and the tests of that say so.
fetchPdfium() {
  local folder=$deps/pdfium state=$deps/pdfium.state
  if [ "$(cat "$state" 2>/dev/null)" = ready ] && cmp -s "$here/tools/pdfium.txt" "$folder/pdfium.txt"; then return 0; fi
  say "fetching PDFium"
  local work platform; work=$(mktemp -d)
  rm -rf "$folder"; mkdir -p "$folder"
  for platform in win32 win_amd64 manylinux_2_17_x86_64; do
    if ! { python3 -m pip download -q --no-deps --only-binary=:all: --require-hashes --platform "$platform" \
             -r "$here/tools/pdfium.txt" -d "$work/$platform" && python3 -m zipfile -e "$work/$platform"/*.whl "$work/$platform"
         } >"$work/log" 2>&1; then
      tail -n 5 "$work/log" >&2
      say "PDFium cannot be fetched: tests of pages of PDF files will be counted as skipped"
      echo "skipped: PDFium cannot be fetched here" >"$state"
      rm -rf "$work" "$folder"
      return 0
    fi
    mkdir "$folder/$platform"
    mv "$work/$platform"/pypdfium2_raw/*pdfium.* "$folder/$platform/"
    cp -r "$work/$platform"/*.dist-info/licenses "$folder/$platform/"
  done
  cp "$here/tools/pdfium.txt" "$folder/"
  echo ready >"$state"
  rm -rf "$work"
}

# fetchSource NAME DIR: unpacks Debian's source package there, through a sources list of its own.
fetchSource() {
  local lists; lists=$(mktemp -d)
  mkdir -p "$lists/lists/partial" "$lists/cache/archives/partial"
  sourceLines >"$lists/sources.list"
  local options=(-o Dir::Etc::SourceList="$lists/sources.list" -o Dir::Etc::SourceParts=/dev/null
                 -o Dir::State::Lists="$lists/lists" -o Dir::Cache="$lists/cache" -o APT::Sandbox::User=root)
  apt-get -q "${options[@]}" update >/dev/null 2>&1 || true
  ( cd "$2" && apt-get -q "${options[@]}" source "$1" >/dev/null 2>"$lists/log" ) ||
    { tail -n 5 "$lists/log" >&2; say "the source package of $1 cannot be fetched"; return 1; }
  rm -rf "$lists"
}

# The archives that this machine already uses for its own packages, of the release and its corrections.
sourceLines() {
  apt-get indextargets --format '$(SITE) $(CODENAME) $(COMPONENT)' 2>/dev/null | sort -u |
    awk -v c="$codename" '$3 == "main" && ($2 == c || $2 == c "-security") {
      print "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]", $1, $2, "main" }'
}

mkdir -p "$deps"
setupPackages
setupWine 32 wine wine32:i386
setupWine 64 wine wine64
setupOdbc32
forWindows 32 i686-w64-mingw32
forWindows 64 x86_64-w64-mingw32
fetchPdfium
say "ready"
