# SPDX-License-Identifier: Apache-2.0
"""Usage: python3 medir.py PROGRAM.py ... ; prints "name seconds" of the best of several runs."""
import pathlib
import runpy
import sys
import time

for ruta in sys.argv[1:]:
    correr = runpy.run_path(ruta)["correr"]
    menor = float("inf")
    for _ in range(5):
        t = time.process_time()
        correr()
        menor = min(menor, time.process_time() - t)
    print(pathlib.Path(ruta).stem, menor)
