#!/bin/sh
# Runs a program on a virtual screen of its own: con_pantalla.sh PROGRAM ARGUMENT...
# The server chooses a free display itself, so that several may start at once.
set -eu
aviso=$(mktemp)
trap 'kill "$servidor" 2>/dev/null; wait "$servidor" 2>/dev/null; rm -f "$aviso"' EXIT INT TERM
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$aviso" 2>/dev/null &
servidor=$!
for _ in $(seq 200); do
    [ -s "$aviso" ] && break
    sleep 0.05
done
estado=0
DISPLAY=":$(cat "$aviso")" QT_QPA_PLATFORM=xcb "$@" || estado=$?
exit "$estado"
