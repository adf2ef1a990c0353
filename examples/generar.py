#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the example plants, each as driver configuration (INI) and as project export.

Both forms are made from one list of ports, stations and blocks, so that they describe the same
plant. Files are Windows-1252 with CRLF, as the field has them. Run it in this folder.
"""

import os
from dataclasses import dataclass, field

D = "Ä§æã"


@dataclass
class Bloque:
    plc: int
    registro: str
    scan: float
    nivel: int = 1
    cantidad: int = 1
    activo: int = 1


@dataclass
class Puerto:
    numero: int
    time_out: int
    esclavos: list = field(default_factory=list)  # (plc, ip, puerto TCP, indice)
    bloques: list = field(default_factory=list)


def escribir(ruta, lineas):
    os.makedirs(os.path.dirname(ruta), exist_ok=True)
    with open(ruta, "w", encoding="cp1252", newline="\r\n") as archivo:
        archivo.write("\n".join(lineas) + "\n")


def numero(n):
    return f"{n:g}"


def ini(titulo, puertos):
    lineas = [f"; {titulo}", "[CONFIG]", f"CANT_PUERTOS={len(puertos)}"]
    esclavo = bloque = 0  # entries are numbered across the whole file
    for orden, p in enumerate(puertos, 1):
        lineas += [f"[PUERTO{orden}]", f"NUMERO={p.numero}", "DEFAULT_SCAN_TIME=5",
                   "READ_AFTER_WRITE=1", "REINTENTOS_MAX=3", f"TIME_OUT={p.time_out}",
                   "TIPO_PLC_DEFAULT=5", "SEG_RECONECCION=30", f"CantEsclavos={len(p.esclavos)}"]
        for plc, ip, tcp, indice in p.esclavos:
            lineas += [f"Esclavo{esclavo}_{clave}={valor}" for clave, valor in
                       (("Numero", plc), ("Ip", ip), ("Puerto", tcp), ("Indice", indice),
                        ("Digitos", 4))]
            esclavo += 1
        lineas.append(f"CantBloques={len(p.bloques)}")
        for b in p.bloques:
            lineas += [f"Bloque{bloque}_{clave}={valor}" for clave, valor in
                       (("Bloque", bloque + 1), ("PLC", b.plc), ("Quantity", b.cantidad),
                        ("StarAdrees", b.registro), ("ScanTime", numero(b.scan)),
                        ("Nivel", b.nivel), ("Numero", bloque + 1),
                        ("ActiveDefault", b.activo))]
            bloque += 1
    return lineas


def registro(campos):
    return D + D.join(f"{clave}:{valor}" for clave, valor in campos) + D


def marca(palabra):
    return D + palabra + D


def exportacion(titulo, puertos):
    lineas = ["Exportación de proyecto", titulo, marca("puertos:inicio")]
    bloque = 0
    for p in puertos:
        lineas.append(registro((("Numero", p.numero), ("DEFAULT_SCAN_TIME", 5),
                                ("MIN_RECONECCION", 30), ("READ_AFTER_WRITE", 1),
                                ("REINTENTOS_MAX", 3), ("TIME_OUT", p.time_out),
                                ("TIPO_PLC_DEFAULT", 5))))
        lineas.append(marca("esclavos:inicio"))
        lineas += [registro((("EsclavoNumero", plc), ("Digitos", 4), ("indice", indice),
                             ("Ip", ip), ("puerto", tcp))) for plc, ip, tcp, indice in p.esclavos]
        lineas += [marca("esclavos:fin"), marca("bloques:inicio")]
        for b in p.bloques:
            bloque += 1
            lineas.append(registro((("Bloque", bloque), ("plc", b.plc), ("Quantity", b.cantidad),
                                    ("ScanTime", numero(b.scan)), ("StarAdrees", b.registro),
                                    ("nivel", b.nivel),
                                    ("activo_Si_o_No_X_defecto", b.activo))))
        lineas.append(marca("bloques:fin"))
        if p is not puertos[-1]:
            lineas.append("")
    return lineas + [marca("puertos:fin")]


def ajustes(pausa):
    return ["; Para leer la exportación del proyecto en lugar del archivo INI:",
            "; RutaProyecto=Planta.qmx, en la sección PROYECTO_PREDETERMINADO",
            "[DRIVER_KV2200]", "VER=1", f"Tiempo_Entre_poleo={pausa}", "PuertoEscucha=1334"]


def planta(carpeta, titulo, puertos, pausa):
    escribir(f"{carpeta}/DRIVER_KV2200_Config.ini", ini(titulo, puertos))
    escribir(f"{carpeta}/Planta.KalmorKV2200_Conf", exportacion(titulo, puertos))
    escribir(f"{carpeta}/Planta.qmx", [titulo])
    escribir(f"{carpeta}/sis_config.ini", ajustes(pausa))


def chica():
    hornos = Puerto(1, 5)
    hornos.esclavos = [(1, "127.0.0.1", 5021, 1), (2, "127.0.0.1", 5021, 2),
                       (3, "127.0.0.1", 5022, 3), (4, "127.0.0.1", 5022, 4)]
    hornos.bloques = [Bloque(1, "10", 1), Bloque(1, "11", 2), Bloque(1, "1F", 5, 2),
                      Bloque(1, "20", 10, 2), Bloque(2, "10", 1), Bloque(2, "11", 2, 1, 2),
                      Bloque(2, "30", 60, 3), Bloque(2, "31", 90, 3), Bloque(3, "10", 1),
                      Bloque(3, "12", 3), Bloque(3, "FF", 5, 2), Bloque(4, "10", 2.5),
                      Bloque(4, "0A", 5, 2), Bloque(4, "40", 5, 2, 1, 0)]
    agua = Puerto(2, 3)
    agua.esclavos = [(1, "127.0.0.1", 5023, 5), (2, "127.0.0.1", 5024, 25)]
    agua.bloques = [Bloque(1, "10", 1), Bloque(1, "11", 2), Bloque(1, "0", 30, 3),
                    Bloque(2, "10", 1), Bloque(2, "11", 5, 2), Bloque(2, "50", 0, 3)]
    return [hornos, agua]


def grande():
    puertos = []
    for n in range(1, 6):
        p = Puerto(n, 5)
        for e in range(10):
            orden = (n - 1) * 10 + e
            p.esclavos.append((e + 1, "127.0.0.1", 6001 + orden // 2, orden + 1))
            p.bloques += [Bloque(e + 1, f"{16 + r:X}", (1, 2, 5, 10, 30)[r % 5], 1 + r % 4)
                          for r in range(20)]
        puertos.append(p)
    return puertos


if __name__ == "__main__":
    planta("planta-chica", "Planta de demostración: hornos y agua", chica(), 200)
    escribir("planta-chica/DRIVER_KV2200_Config.MDrivScrip",
             ["contador = contador + 1", "diferencia = MW_1_1_10 - MW_1_2_10",
              "nivel = MW_2_1_10 / 10"])
    planta("planta-50-estaciones", "Planta de 50 estaciones y 1000 bloques", grande(), 50)
