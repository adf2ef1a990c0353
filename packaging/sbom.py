#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Lists all that the built packages' programs are made of, as CycloneDX JSON on standard output.

Usage: sbom.py TREE, in the root that they were built in. What they link is asked of the programs,
what is compiled into them from headers is named here.
"""
import json
import pathlib
import re
import subprocess
import sys

CABECERAS = ["libcli11-dev"]  # header libraries


def di(*orden):
    return subprocess.run(orden, check=True, capture_output=True, text=True).stdout


def paquetes_de(programa):
    """The packages that own the shared libraries of a program, those they need in turn among them."""
    hallados = set()
    for ruta in re.findall(r"(?:=>\s*)?(/\S+) \(0x", di("ldd", str(programa))):
        real = pathlib.Path(ruta).resolve()
        # The merged /usr has other names for what packages call /lib.
        for nombre in (str(real), str(real).removeprefix("/usr")):
            r = subprocess.run(["dpkg", "-S", nombre], capture_output=True, text=True)
            if r.returncode == 0:
                hallados.add(r.stdout.split(":")[0])
                break
        else:
            sys.exit(f"{programa}: no package owns {ruta}")
    return hallados


def componente(paquete):
    nombre, version, arquitectura = di(
        "dpkg-query", "-W", "-f", "${Package} ${Version} ${Architecture}\n", paquete
    ).splitlines()[0].split()
    return {
        "type": "library",
        "bom-ref": nombre,
        "name": nombre,
        "version": version,
        "purl": f"pkg:deb/debian/{nombre}@{version}?arch={arquitectura}",
    }


def main():
    arbol = pathlib.Path(sys.argv[1])
    version = re.search(r"\((.*?)\)", (arbol / "debian/changelog").read_text()).group(1)
    programas, todos = [], set(CABECERAS)
    for programa in sorted(arbol.glob("debian/driverkv2200*/usr/**/*KV2200")):
        if not programa.is_file() or programa.read_bytes()[:4] != b"\x7fELF":
            continue
        suyos = paquetes_de(programa)
        todos |= suyos
        donde = "/" + "/".join(programa.relative_to(arbol / "debian").parts[1:])
        programas.append({"ref": donde, "dependsOn": sorted(suyos | set(CABECERAS))})
    if len(programas) != 6:
        sys.exit(f"six programs are built, {len(programas)} were found")
    componentes = [componente(p) for p in sorted(todos)]
    componentes += [
        {"type": "application", "bom-ref": p["ref"], "name": p["ref"], "version": version}
        for p in programas
    ]
    json.dump(
        {
            "bomFormat": "CycloneDX",
            "specVersion": "1.5",
            "version": 1,
            "metadata": {
                "component": {"type": "application", "name": "driverkv2200", "version": version}
            },
            "components": componentes,
            "dependencies": programas,
        },
        sys.stdout,
        indent=1,
    )
    print()


main()
