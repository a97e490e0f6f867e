#!/usr/bin/env bash
# Runs a Windows program under Wine, in an environment of the build's own: the user's ~/.wine and screen are neither used
# nor needed.
#   wine.sh PROGRAM [ARGUMENT…]   runs it, with its exit code
#   wine.sh --start               makes the environment ready, with a screen that nobody sees; programs start faster
#                                 until --stop, and only then can they show windows
#   wine.sh --stop                ends every process of the environment
#   wine.sh --screen              prints the number of that screen, as DISPLAY takes it
set -euo pipefail
build=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build

export WINEPREFIX=$build/wine
export WINEARCH=win64
export WINEDEBUG=-all                     # programs' own output only
# Nobody is there to answer whether to install .NET and a browser, and shortcuts do not belong into the user's own menu.
export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='
unset DISPLAY WAYLAND_DISPLAY

screen_number=$WINEPREFIX/screen
screen_process=$WINEPREFIX/screen.pid

start_screen() {
  # It holds what it was given as stdout for as long as it lives, so that must not be a pipe that somebody waits for.
  Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp 3> "$screen_number" > "$WINEPREFIX/screen.log" 2>&1 &
  echo $! > "$screen_process"
  for _ in {1..100}; do
    [ ! -s "$screen_number" ] || return 0
    sleep 0.1
  done
  cat "$WINEPREFIX/screen.log" >&2
  return 1
}

stop_screen() {
  [ -e "$screen_process" ] || return 0
  local process
  process=$(cat "$screen_process")
  # After a crash of the machine the number may be that of another process.
  [ "$(cat "/proc/$process/comm" 2> /dev/null)" != Xvfb ] || kill "$process"
  rm -f "$screen_process" "$screen_number"
}

if [ "${1-}" = --start ]; then
  mkdir -p "$WINEPREFIX"
  stop_screen
  start_screen
fi
[ ! -s "$screen_number" ] || export DISPLAY=:$(cat "$screen_number")

case ${1-} in
  --start)
    wineserver --persistent > /dev/null 2>&1
    # The first program makes the environment and starts the services, which take stdout with them. It complains about
    # the 32-bit half, which is left out on purpose. What it sets: nothing here draws in three dimensions, and getting
    # ready for it takes seconds.
    wine reg add 'HKCU\Software\Wine\Direct3D' /v renderer /d no3d /f > "$WINEPREFIX/start.log" 2>&1 ||
      { cat "$WINEPREFIX/start.log" >&2; exit 1; }
    # The desktop and the like are links to the user's own.
    find "$WINEPREFIX/drive_c/users" -mindepth 2 -maxdepth 2 -type l | while IFS= read -r link; do
      rm "$link"
      mkdir "$link"
    done
    # That first program's desktop ends a second behind the last program, and the next program with windows starts another
    # one, which holds that program's stderr until no program is left: whoever reads it waits for all the others. So one
    # that has nothing to do stays, and the desktop with it.
    rm -f "$WINEPREFIX/nothing"
    mkfifo "$WINEPREFIX/nothing"
    wine cmd /c pause <> "$WINEPREFIX/nothing" > "$WINEPREFIX/start.log" 2>&1 &
    # The first one's may have ended before.
    wine explorer /desktop < /dev/null > "$WINEPREFIX/desktop.log" 2>&1 &
    ;;
  --stop)
    [ ! -d "$WINEPREFIX" ] || wineserver --kill || true # it fails when nothing runs, which is what is asked for
    stop_screen
    ;;
  --screen)
    echo "${DISPLAY:?no screen is there: wine.sh --start makes one}"
    ;;
  *)
    exec wine "$@"
    ;;
esac
