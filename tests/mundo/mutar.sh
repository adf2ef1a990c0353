#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# A test of the tests: every patch in mutaciones/ is a dangerous misreading of how the driver works.
# Each is applied to a copy of the tree and must be found by the world within 60 seconds of
# processor time.
#
#   tests/mundo/mutar.sh [PATCH...]      all of them, or those named
#
# MUTAR_EN names a folder in which the copy and its build are kept for the next time.
set -euo pipefail
raiz=$(cd "$(dirname "$0")/../.." && pwd)
if [ -n "${MUTAR_EN:-}" ]; then
    trabajo=$MUTAR_EN
    mkdir -p "$trabajo"
else
    trabajo=$(mktemp -d)
    trap 'rm -rf "$trabajo"' EXIT
fi
arbol=$trabajo/arbol
mkdir -p "$arbol"
# Only what differs is copied, so that a build that is there stays good.
git -C "$raiz" ls-files -z | while IFS= read -r -d '' f; do
    [ -f "$raiz/$f" ] || continue
    cmp -s "$raiz/$f" "$arbol/$f" || install -D -m "$(stat -c %a "$raiz/$f")" "$raiz/$f" "$arbol/$f"
done
cmake -S "$arbol" -B "$trabajo/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVENTANA=OFF \
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -DNDEBUG" -DPRUEBAS=ON -DBANCOS=OFF >/dev/null

construir() { cmake --build "$trabajo/build" --target mundo >"$trabajo/salida" 2>&1; }
correr() { # exit status of the world; what it says goes to the file; no verdict is no find
    timeout 3600 "$trabajo/build/bin/mundo" --cpu 60 --cuelgue 15 --primera --sin-reducir \
        >"$trabajo/salida" 2>&1 || [ $? -eq 124 ]
}

construir || { cat "$trabajo/salida"; echo "does not build as it is"; exit 1; }
if ! correr; then cat "$trabajo/salida"; echo "breaks a rule as it is"; exit 1; fi

[ $# -gt 0 ] || set -- "$raiz"/tests/mundo/mutaciones/*.patch
malas=0
for parche in "$@"; do
    parche=$(realpath "$parche")
    nombre=$(basename "$parche" .patch)
    if ! (cd "$arbol" && patch -p1 --dry-run -s <"$parche") >/dev/null; then
        echo "$nombre: no longer applies"
        malas=$((malas + 1))
        continue
    fi
    (cd "$arbol" && patch -p1 -s <"$parche")
    if ! construir; then
        echo "$nombre: does not build"
        malas=$((malas + 1))
    elif correr; then
        echo "$nombre: NOT FOUND"
        malas=$((malas + 1))
    else
        echo "$nombre: found, $(grep -m1 -E '^seed|^hangs|^dies' "$trabajo/salida" || tail -n 1 "$trabajo/salida")$(
            sed -n 's/.*simulated hours, \([0-9.]*\) CPU minutes.*/; \1 min/p' "$trabajo/salida")"
    fi
    (cd "$arbol" && patch -p1 -R -s <"$parche")
done
echo "$# misreadings, $malas not found"
[ "$malas" -eq 0 ]
