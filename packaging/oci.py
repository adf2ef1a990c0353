#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes an OCI image layout of one layer, and unpacks one.

    oci.py hacer LAYER.tar FOLDER VERSION
    oci.py deshacer FOLDER ROOT

The same layer makes the same bytes.
"""
import gzip
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import time

CONFIGURACION = {
    "User": "10001:10001",
    "ExposedPorts": {"1334/tcp": {}},
    "Entrypoint": ["/usr/bin/DriverKV2200", "--sin-ventana", "--carpeta", "/planta"],
    "Volumes": {"/planta": {}},
    "WorkingDir": "/planta",
    "StopSignal": "SIGTERM",
}


def suma(datos):
    return "sha256:" + hashlib.sha256(datos).hexdigest()


def guardar(carpeta, datos, tipo):
    ruta = carpeta / "blobs" / "sha256" / suma(datos).removeprefix("sha256:")
    ruta.parent.mkdir(parents=True, exist_ok=True)
    ruta.write_bytes(datos)
    return {"mediaType": f"application/vnd.oci.image.{tipo}", "digest": suma(datos), "size": len(datos)}


def texto(objeto):
    return json.dumps(objeto, sort_keys=True, separators=(",", ":")).encode()


def hacer(capa, carpeta, version):
    datos = pathlib.Path(capa).read_bytes()
    carpeta = pathlib.Path(carpeta)
    cuando = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(int(os.environ["SOURCE_DATE_EPOCH"])))
    capa = guardar(carpeta, gzip.compress(datos, 9, mtime=0), "layer.v1.tar+gzip")
    config = guardar(
        carpeta,
        texto(
            {
                "created": cuando,
                "architecture": "amd64",
                "os": "linux",
                "config": CONFIGURACION
                | {"Labels": {"org.opencontainers.image.version": version}},
                "rootfs": {"type": "layers", "diff_ids": [suma(datos)]},
                "history": [{"created": cuando, "created_by": "packaging/imagen"}],
            }
        ),
        "config.v1+json",
    )
    manifiesto = guardar(
        carpeta,
        texto(
            {
                "schemaVersion": 2,
                "mediaType": "application/vnd.oci.image.manifest.v1+json",
                "config": config,
                "layers": [capa],
            }
        ),
        "manifest.v1+json",
    )
    manifiesto["annotations"] = {"org.opencontainers.image.ref.name": version}
    (carpeta / "index.json").write_bytes(texto({"schemaVersion": 2, "manifests": [manifiesto]}))
    (carpeta / "oci-layout").write_bytes(texto({"imageLayoutVersion": "1.0.0"}))


def leer(carpeta, descriptor):
    datos = (carpeta / "blobs" / "sha256" / descriptor["digest"].removeprefix("sha256:")).read_bytes()
    if suma(datos) != descriptor["digest"] or len(datos) != descriptor["size"]:
        sys.exit(f"{descriptor['digest']}: not what it says")
    return datos


def deshacer(carpeta, raiz):
    carpeta = pathlib.Path(carpeta)
    indice = json.loads((carpeta / "index.json").read_bytes())
    manifiesto = json.loads(leer(carpeta, indice["manifests"][0]))
    config = json.loads(leer(carpeta, manifiesto["config"]))
    os.makedirs(raiz)
    for capa, sin_comprimir in zip(manifiesto["layers"], config["rootfs"]["diff_ids"], strict=True):
        datos = gzip.decompress(leer(carpeta, capa))
        if suma(datos) != sin_comprimir:
            sys.exit("a layer is not the one of the configuration")
        subprocess.run(["tar", "x", "-C", raiz], input=datos, check=True)


{"hacer": hacer, "deshacer": deshacer}[sys.argv[1]](*sys.argv[2:])
