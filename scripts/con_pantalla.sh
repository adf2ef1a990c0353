#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs a program on a virtual screen of its own: con_pantalla.sh PROGRAM ARGUMENT... The screen has
# 1600 by 1000 pixels, or what PANTALLA says (1024x600).
# The server chooses a free display itself, so that several may start at once. Being told to end is
# passed on to the program.
set -eu
aviso=$(mktemp)
trap 'kill "$servidor" 2>/dev/null; wait "$servidor" 2>/dev/null; rm -f "$aviso"' EXIT
Xvfb -displayfd 3 -screen 0 "${PANTALLA:-1600x1000}x24" -nolisten tcp 3>"$aviso" 2>/dev/null &
servidor=$!
for _ in $(seq 200); do
    [ -s "$aviso" ] && break
    sleep 0.05
done
DISPLAY=":$(cat "$aviso")" QT_QPA_PLATFORM=xcb "$@" &
programa=$!
trap 'kill -TERM "$programa" 2>/dev/null' INT TERM
estado=0
wait "$programa" || estado=$?
# A signal ends the wait, not the program.
while kill -0 "$programa" 2>/dev/null; do
    estado=0
    wait "$programa" || estado=$?
done
exit "$estado"
