#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Runs the same programs here, in Lua 5.4 and in Python 3, one after the other, and prints the
ratios. Usage: comparar.py BANCO_VBSCRIPT (the built benchmark program)."""
import json
import pathlib
import subprocess
import sys

AQUI = pathlib.Path(__file__).parent
PROGRAMAS = AQUI / "programas"


def tiempos(orden):
    salida = subprocess.run(orden, check=True, capture_output=True, text=True).stdout
    return {n: float(t) for n, t in (linea.split() for linea in salida.splitlines())}


def propios(banco):
    salida = subprocess.run(
        [banco, "--benchmark_format=json", "--benchmark_repetitions=5"],
        check=True, capture_output=True, text=True).stdout
    mejores = {}
    for caso in json.loads(salida)["benchmarks"]:
        if caso["run_type"] == "iteration":
            unidad = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[caso["time_unit"]]
            nombre = caso["run_name"].split("/min_time")[0]
            mejores[nombre] = min(mejores.get(nombre, 1e9), caso["cpu_time"] * unidad)
    return mejores


def main():
    nuestro = propios(sys.argv[1])
    lua = tiempos(["lua5.4", str(AQUI / "medir.lua"), *map(str, sorted(PROGRAMAS.glob("*.lua")))])
    python = tiempos(["/usr/bin/python3", str(AQUI / "medir.py"), *map(str, sorted(PROGRAMAS.glob("*.py")))])
    print(f"{'program':26}{'here':>12}{'Lua 5.4':>12}{'Python 3':>12}{'/Lua':>8}{'/Python':>9}")
    for nombre, t in nuestro.items():
        l = lua.get(nombre)
        p = python.get(nombre)
        fila = f"{nombre:26}{t * 1e6:10.2f}us"
        fila += f"{l * 1e6:10.2f}us" if l else f"{'-':>12}"
        fila += f"{p * 1e6:10.2f}us" if p else f"{'-':>12}"
        fila += f"{t / l:8.2f}" if l else f"{'-':>8}"
        fila += f"{t / p:9.2f}" if p else f"{'-':>9}"
        print(fila)


main()
