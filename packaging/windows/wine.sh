#!/usr/bin/env bash
# Runs a Windows program under Wine, in an environment of the build's own: the user's ~/.wine is neither used nor needed.
#   wine.sh PROGRAM [ARGUMENT…]   runs it, with its exit code
#   wine.sh --start               makes the environment ready; programs start faster until --stop
#   wine.sh --stop                ends every process of the environment
set -euo pipefail
build=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/build

export WINEPREFIX=$build/wine
export WINEARCH=win64
export WINEDEBUG=-all                     # programs' own output only
export WINEDLLOVERRIDES='mscoree,mshtml=' # nobody is there to answer whether to install .NET and a browser
unset DISPLAY WAYLAND_DISPLAY

case ${1-} in
  --start)
    mkdir -p "$WINEPREFIX"
    wineserver --persistent > /dev/null 2>&1
    # It complains about the 32-bit half, which is left out on purpose. Its services stay and hold what they were given
    # as stdout, so that must not be a pipe that somebody waits for.
    wine wineboot --init > "$WINEPREFIX/start.log" 2>&1 || { cat "$WINEPREFIX/start.log" >&2; exit 1; }
    ;;
  --stop)
    [ ! -d "$WINEPREFIX" ] || wineserver --kill || true # it fails when nothing runs, which is what is asked for
    ;;
  *)
    exec wine "$@"
    ;;
esac
