#!/usr/bin/env bash
# Wine for the project alone: a prefix and a virtual screen under the build folder.
#   tools/wine.sh run CMD...   runs a Windows program there (starts what is needed)
#   tools/wine.sh up           only starts it
#   tools/wine.sh env          prints the variables for a shell
#   tools/wine.sh shot FILE    saves a picture of the screen
#   tools/wine.sh stop         stops what was started here
# The prefix is one of 32 bits; KAVIDEX_BITS=64 takes another beside it, for programs of both widths.
# KAVIDEX_WINE_SECONDS limits one run (default 600). With DISPLAY set and KAVIDEX_USE_DISPLAY=1 the
# programs appear on that screen.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
bits=${KAVIDEX_BITS:-32}
home=${KAVIDEX_WINE_HOME:-$here/build/wine}
wine=wine
if [ "$bits" = 64 ]; then
  home+=64
  wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
fi
mkdir -p "$home"
export WINEPREFIX=$home/prefix WINEARCH=win$bits WINEDEBUG=${WINEDEBUG:--all}
# Wine names files by the locale's character set; without UTF-8 it knows only ASCII ones.
case ${LC_ALL:-${LC_CTYPE:-${LANG:-}}} in *UTF-8 | *utf8) ;; *) export LC_ALL=C.UTF-8 ;; esac
export WINEDLLOVERRIDES='mscoree=,mshtml=,winemenubuilder.exe='

# Wine's ODBC loads the system's 32-bit one, which the setup unpacked.
export LD_LIBRARY_PATH=$here/build/deps/odbc32/usr/lib/i386-linux-gnu${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}

alive() { [ -s "$1" ] && kill -0 "$(cat "$1")" 2>/dev/null; }

screenUp() {
  if [ "${KAVIDEX_USE_DISPLAY:-}" = 1 ] && [ -n "${DISPLAY:-}" ]; then return; fi
  if ! alive "$home/xvfb.pid"; then
    rm -f "$home/display"
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp >"$home/xvfb.log" 2>&1 3>"$home/display" 9>&- &
    echo $! >"$home/xvfb.pid"
    for _ in $(seq 100); do [ -s "$home/display" ] && break; sleep 0.1; done
    DISPLAY=:$(cat "$home/display") openbox >/dev/null 2>&1 9>&- &
    echo $! >"$home/openbox.pid"
  fi
  DISPLAY=:$(cat "$home/display"); export DISPLAY
}

prefixUp() {
  if [ ! -f "$WINEPREFIX/.ready" ]; then
    rm -rf "$WINEPREFIX"
    timeout 400 $wine wineboot -i >"$home/wineboot.log" 2>&1 </dev/null 9>&-
    # A crash ends the program with a trace instead of waiting in a dialog.
    timeout 60 $wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 9>&-
    wineserver -w
    touch "$WINEPREFIX/.ready"
  fi
  # Kept up between runs, so that a program starts at once. Wine's services outlive the program that
  # started them and would hold its output open: the first one started here has none.
  wineserver -p 9>&- </dev/null >/dev/null 2>&1 || true
  timeout 60 $wine cmd /c exit </dev/null >/dev/null 2>&1 9>&- || true
}

up() {
  exec 9>"$home/lock"; flock 9
  screenUp; prefixUp
  flock -u 9
}

case ${1:-} in
  up) up ;;
  env) up; printf 'export LC_CTYPE=C.UTF-8 DISPLAY=%q WINEPREFIX=%q WINEARCH=%q WINEDEBUG=%q WINEDLLOVERRIDES=%q LD_LIBRARY_PATH=%q\n' \
         "$DISPLAY" "$WINEPREFIX" "$WINEARCH" "$WINEDEBUG" "$WINEDLLOVERRIDES" "$LD_LIBRARY_PATH" ;;
  run) shift; up; exec timeout --kill-after=10 "${KAVIDEX_WINE_SECONDS:-600}" $wine "$@" 9>&- ;;
  shot) up; import-im6 -window root "$2" ;;
  stop)
    if [ -d "$WINEPREFIX" ]; then wineserver -k 2>/dev/null || true; fi
    for name in openbox xvfb; do
      if alive "$home/$name.pid"; then kill "$(cat "$home/$name.pid")" 2>/dev/null || true; fi
      rm -f "$home/$name.pid"
    done ;;
  *) sed -n '2,10p' "$0"; exit 2 ;;
esac
