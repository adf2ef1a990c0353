#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Hostile inputs that are kept by name, a table for each fuzz target. Writes them, and the files
that lie beside this one, into one folder for each target: casos.py FOLDER"""

import pathlib
import shutil
import sys

AQUI = pathlib.Path(__file__).resolve().parent
SEP = b"\xc4\xa7\xe6\xe3"

# Texts that somebody may have put where a number is wanted.
NUMEROS = {
    "vacio": b"", "blancos": b"   ", "letras": b"mucho", "coma": b"1,5", "negativo": b"-1",
    "menos-cero": b"-0", "fraccion": b"0.4", "nan": b"nan", "inf": b"inf", "enorme": b"1e309",
    "diminuto": b"1e-320", "int32": b"2147483648", "int64": b"9223372036854775808",
    "uint64": b"18446744073709551616", "hex": b"0x10", "exponente-suelto": b"1e", "dos-puntos": b"1.2.3",
    "mas": b"+5", "cola": b"5 segundos", "nulo": b"5\0", "comillas": b'"5"', "comilla-sola": b'"5',
    "ceros": b"0" * 300 + b"5", "largo": b"9" * 400, "utf8": "５".encode(), "tabulador": b"\t5\t",
}

INI = {
    "vacio": b"", "solo-saltos": b"\r\n\n\r", "sin-seccion": b"VER=1\n", "seccion-abierta": b"[DRIVER\nVER=1",
    "seccion-vacia": b"[]\nVER=1\n", "cierra-dos": b"[DRIVER]]\nVER=1\n", "abre-dos": b"[[DRIVER]\nVER=1\n",
    "seccion-repetida": b"[DRIVER]\nA=1\n[DRIVER]\nVER=2\n", "clave-repetida": b"[DRIVER]\nVER=1\nVER=2\n",
    "clave-vacia": b"[DRIVER]\n=1\nVER=2\n", "solo-igual": b"[DRIVER]\n=\n", "dos-iguales": b"[DRIVER]\nVER==1\n",
    "sin-igual": b"[DRIVER]\nVER\n", "comentario": b"[DRIVER]\n;VER=1\n", "comentario-al-final": b"[DRIVER];\nVER=1;x",
    "blancos-al-borde": b"  [ DRIVER ]  \n  VER  =  1  \n", "tabuladores": b"\t[DRIVER]\n\tVER\t=\t1\n",
    "comillas": b'[DRIVER]\nVER="1"\n', "comillas-sueltas": b'[DRIVER]\nVER="\n', "comillas-vacias": b'[DRIVER]\nVER=""\n',
    "apostrofos": b"[DRIVER]\nVER='1'\n", "sin-salto-final": b"[DRIVER]\nVER=1", "cr-solo": b"[DRIVER]\rVER=1\r",
    "saltos-mezclados": b"[DRIVER]\r\nA=1\nVER=1\r\n", "nulos": b"[DRIVER]\0\nVER=\0001\n", "todo-nulos": b"\0" * 500,
    "bom": b"\xef\xbb\xbf[DRIVER]\nVER=1\n", "utf16": "[DRIVER]\nVER=1\n".encode("utf-16"), "ff": b"\xff" * 300,
    "valor-254": b"[DRIVER]\nVER=" + b"a" * 254, "valor-255": b"[DRIVER]\nVER=" + b"a" * 255,
    "valor-largo": b"[DRIVER]\nVER=" + b"a" * 70000, "clave-larga": b"[DRIVER]\n" + b"k" * 70000 + b"=1\n",
    "seccion-larga": b"[" + b"s" * 70000 + b"]\nVER=1\n", "linea-sin-fin": b"x" * 100000,
    "muchas-secciones": b"".join(b"[s%d]\nVER=1\n" % i for i in range(3000)),
    "muchas-claves": b"[DRIVER]\n" + b"".join(b"k%d=1\n" % i for i in range(5000)),
    "la-misma-mil-veces": b"[DRIVER]\n" + b"VER=1\n" * 1000, "caja": b"[dRiVeR]\nvEr=1\n",
    "caja-windows1252": b"[OTRA]\nCLAVE\xc9=1\nclave\xe9=2\n", "otra-seccion": b"[Otra]\nclave=1\n[DRIVER]\n",
    "blancos-en-clave": b"[DRIVER]\nV E R=1\n", "corchete-en-valor": b"[DRIVER]\nVER=[x]\n[Otra]\nclave=[\n",
    "separadores-unicode": b"[DRIVER]\nVER=1\xe2\x80\xa8x=2\n", "ctrl-z": b"[DRIVER]\nVER=1\n\x1aOTRA=1\n",
}

def puerto(cuerpo, cantidad=b"1"):
    return b"[CONFIG]\nCANT_PUERTOS=" + cantidad + b"\n[PUERTO1]\nNUMERO=1\n" + cuerpo

DRIVER = {
    "vacio": b"", "sin-puertos": b"[CONFIG]\n", "menos-puertos": puerto(b"", b"0"), "mas-puertos": puerto(b"", b"99999999"),
    "puerto-sin-numero": b"[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\n", "puerto-dos-veces": puerto(b"[PUERTO1]\nNUMERO=2\n"),
    "puertos-salteados": b"[CONFIG]\nCANT_PUERTOS=9\n[PUERTO9]\nNUMERO=9\n", "puerto-cero": b"[CONFIG]\nCANT_PUERTOS=1\n[PUERTO0]\nNUMERO=0\n",
    "ordinal-enorme": b"[CONFIG]\nCANT_PUERTOS=1\n[PUERTO4294967297]\nNUMERO=1\n", "ordinal-con-ceros": b"[CONFIG]\nCANT_PUERTOS=1\n[PUERTO01]\nNUMERO=1\n",
    "esclavo-sin-ip": puerto(b"CantEsclavos=1\nEsclavo0_Numero=1\n"), "ip-imposible": puerto(b"CantEsclavos=1\nEsclavo0_Ip=999.1.1.1\nEsclavo0_Puerto=502\n"),
    "ip-larga": puerto(b"CantEsclavos=1\nEsclavo0_Ip=" + b"1." * 200 + b"\n"), "ip-nombre": puerto(b"CantEsclavos=1\nEsclavo0_Ip=plc.planta\n"),
    "puerto-tcp-cero": puerto(b"CantEsclavos=1\nEsclavo0_Ip=1.2.3.4\nEsclavo0_Puerto=0\n"), "puerto-tcp-65536": puerto(b"CantEsclavos=1\nEsclavo0_Ip=1.2.3.4\nEsclavo0_Puerto=65536\n"),
    "esclavos-iguales": puerto(b"CantEsclavos=2\n" + b"".join(b"Esclavo%d_Numero=1\nEsclavo%d_Ip=1.2.3.4\nEsclavo%d_Puerto=502\n" % (i, i, i) for i in (0, 1))),
    "indice-256": puerto(b"CantEsclavos=1\nEsclavo0_Ip=1.2.3.4\nEsclavo0_Indice=256\n"), "bloque-sin-plc": puerto(b"CantBloques=1\nBloque0_Quantity=1\n"),
    "bloque-plc-ajeno": puerto(b"CantBloques=1\nBloque0_PLC=9\nBloque0_StarAdrees=10\n"), "direccion-gg": puerto(b"CantBloques=1\nBloque0_StarAdrees=GG\n"),
    "direccion-negativa": puerto(b"CantBloques=1\nBloque0_StarAdrees=-1\n"), "direccion-100": puerto(b"CantBloques=1\nBloque0_StarAdrees=100\n"),
    "bloque-repetido": puerto(b"CantBloques=1\nBloque0_PLC=1\nBloque0_PLC=2\n"), "ordinal-bloque-enorme": puerto(b"CantBloques=1\nBloque99999999999_PLC=1\n"),
    "ordinal-bloque-letras": puerto(b"CantBloques=1\nBloquex_PLC=1\nBloque_PLC=1\n"), "campo-desconocido": puerto(b"CantBloques=1\nBloque0_Color=1\n"),
    "activo-texto": puerto(b"CantBloques=1\nBloque0_ActiveDefault=si\n"), "bytes-altos": puerto(b"CantEsclavos=1\nEsclavo0_Ip=\xf1\xff\xfe\n"),
    "mil-bloques": puerto(b"CantBloques=1000\n" + b"".join(b"Bloque%d_PLC=1\nBloque%d_StarAdrees=%X\n" % (i, i, i % 256) for i in range(1000))),
}
for clave in (b"Bloque0_Quantity", b"Bloque0_ScanTime", b"TIME_OUT", b"CantBloques", b"CantEsclavos", b"REINTENTOS_MAX"):
    for nombre in ("letras", "negativo", "nan", "enorme", "int64", "largo", "nulo"):
        DRIVER[clave.decode() + "=" + nombre] = puerto(b"CantBloques=1\nBloque0_PLC=1\n" + clave + b"=" + NUMEROS[nombre] + b"\n")

def registro(*campos):
    return SEP + b"".join(c + SEP for c in campos) + b"\r\n"

P, E, B = (registro(n + b":inicio") for n in (b"puertos", b"esclavos", b"bloques"))
EXPORTACION = {
    "vacia": b"", "solo-delimitador": SEP, "delimitador-cortado": SEP[:3], "delimitadores": SEP * 500, "titulo": b"Exportacion\r\n",
    "puertos-sin-fin": P + registro(b"Numero:1"), "puerto-vacio": P + registro(), "sin-dos-puntos": P + registro(b"Numero"),
    "clave-sin-valor": P + registro(b"Numero:"), "clave-vacia": P + registro(b":1"), "campo-abierto": P + SEP + b"Numero:1",
    "campo-repetido": P + registro(b"Numero:1", b"Numero:2"), "numero-letras": P + registro(b"Numero:x"), "numero-nan": P + registro(b"Numero:nan"),
    "numero-enorme": P + registro(b"Numero:1e309"), "numero-negativo": P + registro(b"Numero:-1"), "esclavo-suelto": E + registro(b"EsclavoNumero:1"),
    "esclavo-sin-puerto": P + E + registro(b"EsclavoNumero:1", b"Ip:1.2.3.4", b"puerto:502"), "ip-larga": P + registro(b"Numero:1") + E + registro(b"EsclavoNumero:1", b"Ip:" + b"9" * 5000),
    "ip-nula": P + registro(b"Numero:1") + E + registro(b"EsclavoNumero:1", b"Ip:1.2\x00.3.4"), "puerto-tcp-x": P + registro(b"Numero:1") + E + registro(b"EsclavoNumero:1", b"Ip:1.2.3.4", b"puerto:x"),
    "fin-sin-inicio": registro(b"puertos:fin"), "inicio-dos-veces": P + P + registro(b"Numero:1"), "fin-dos-veces": P + registro(b"puertos:fin") * 2,
    "bloques-antes": B + registro(b"Bloque:1") + P + registro(b"Numero:1"), "seccion-ajena": registro(b"otra:inicio") + registro(b"Numero:1"),
    "caja": registro(b"PUERTOS:INICIO") + registro(b"NUMERO:1"), "lf-solo": (P + registro(b"Numero:1")).replace(b"\r", b""), "cr-solo": (P + registro(b"Numero:1")).replace(b"\n", b""),
    "linea-enorme": P + SEP + b"a" * 100000, "mil-puertos": P + b"".join(registro(b"Numero:%d" % i) for i in range(1000)), "bytes-altos": P + registro(b"Numero:\xff\xfe"),
    "delimitador-dentro": P + registro(b"Nu" + SEP + b"mero:1"), "utf8": (P + registro(b"Numero:1")).decode("cp1252", "replace").encode(), "nulos": P + b"\0" * 100,
}

AJUSTES = {"vacio": b"", "sin-seccion": b"VER=1\r\n", "seccion-dos-veces": b"[DRIVER_KV2200]\r\nVER=1\r\n[DRIVER_KV2200]\r\nVER=0\r\n"}
for clave in (b"Tiempo_Entre_poleo", b"PuertoEscucha", b"Guion_Memoria_Maxima_KiB", b"Escucha_Plazo_De_Login_Segundos"):
    for nombre, valor in NUMEROS.items():
        AJUSTES[clave.decode() + "=" + nombre] = b"[DRIVER_KV2200]\r\n" + clave + b"=" + valor + b"\r\n"
for nombre, lista in {
    "nadie": b",", "mascara-33": b"10.0.0.0/33", "mascara-negativa": b"10.0.0.0/-1", "mascara-nan": b"10.0.0.0/nan", "mascara-0": b"0.0.0.0/0",
    "mascara-fraccion": b"10.0.0.0/8.5", "octeto-256": b"10.0.0.256", "tres-octetos": b"10.0.0", "ceros": b"010.0.0.1", "barra-sola": b"/", "nombre": b"localhost",
    "cortada": b"10.0.0.1," * 40, "ipv6": b"::1", "blancos": b" 10.0.0.1 , 10.0.0.2 ", "nulo": b"10.0.0.1\0", "todos-menos": b"!10.0.0.1",
}.items():
    AJUSTES["permitidos=" + nombre] = b"[DRIVER_KV2200]\r\nEscucha_Clientes_Permitidos=" + lista + b"\r\n"

DIRECCION = {}
for nombre, texto in {
    "vacia": b"", "punto": b".", "puntos": b"....", "un-campo": b"1", "dos-campos": b"1.1", "buena": b"1.1.10", "hex-minuscula": b"1.1.1f", "con-blancos": b" 1 . 1 . 10 ",
    "bit-0": b"1.1.10.0", "bit-15": b"1.1.10.15", "bit-16": b"1.1.10.16", "bit-negativo": b"1.1.10.-1", "bit-fraccion": b"1.1.10.1.5", "bit-letras": b"1.1.10.x", "cinco-campos": b"1.1.10.1.1",
    "puerto-0": b"0.1.10", "puerto-nan": b"nan.1.10", "puerto-enorme": b"1e308.1.10", "plc-ajeno": b"1.9.10", "plc-negativo": b"1.-1.10", "registro-ajeno": b"1.1.11",
    "registro-gg": b"1.1.GG", "registro-100": b"1.1.100", "registro-con-0x": b"1.1.0x10", "registro-con-ceros": b"1.1.0010", "larga": b"1.1." + b"1" * 5000, "nulo": b"1.1.10\0", "utf8": "1.1.１０".encode(), "separador": b"1;1;10", "altos": b"\xff\xfe.\x80",
}.items():
    DIRECCION[nombre] = texto + b"\n7"
for nombre in ("vacio", "negativo", "menos-cero", "fraccion", "nan", "inf", "enorme", "int32", "int64", "largo", "coma", "nulo"):
    DIRECCION["valor=" + nombre] = b"1.1.10\n" + NUMEROS[nombre]
for n in (32767, 32768, 65535, 65536, -32768, -32769):
    DIRECCION["valor=%d" % n] = b"1.1.1F\n%d" % n
for n in ("0", "1", "2", "-1", "0.5", "nan"):
    DIRECCION["bit=" + n] = b"1.1.10.3\n" + n.encode()

K = b"12345678901234567890"
CIFRADO = {
    "vacio": b"", "un-digito": b"1", "clave-corta": K[:19], "clave-justa": K, "sin-relleno": K + b"3", "relleno-0": K + b"0123", "relleno-9": K + b"9" + b"1" * 9,
    "relleno-mayor": K + b"9" + b"1" * 3, "letra-en-clave": b"x" + K[1:] + b"1123", "letra-en-relleno": K + b"x123", "letra-en-unidad": K + b"1" + b"12x", "unidad-cortada": K + b"112",
    "unidad-enorme": K + b"1" + b"9" * 30, "ceros": b"0" * 60, "nueves": b"9" * 60, "blanco-al-final": K + b"1123 ", "salto-al-final": K + b"1123\r\n", "nulos": b"\0" * 40, "altos": b"\xff" * 40,
    "menos": b"-" + K + b"1123", "punto": K + b"1.23", "larguisimo": K + b"1" + b"123" * 20000, "cifrado-dos-veces": K + b"1" + K + b"1", "texto-claro": b"Clave 2026112501", "utf8": "１２３".encode() * 10,
    "con-etiqueta": b"[KEEP_DESDE_SERVIDOR]" + K, "unidad-negativa": K + b"3-12-12", "letra-tras-21": K + b"1a",
}

W, w = b"[Write]", b"[/Write]"
LLEGADA = {
    "vacia": b"", "abre-sola": W, "cierra-sola": w, "cierra-antes": w + b"1.1.10;1" + W, "vacia-dentro": W + w, "sin-valor": W + b"1.1.10" + w, "solo-separador": W + b";" + w, "separadores": W + b";" * 500 + w,
    "valor-letras": W + b"1.1.10;x" + w, "valor-nan": W + b"1.1.10;nan" + w, "direccion-vacia": W + b";5" + w, "anidadas": (W * 50) + b"1.1.10;1" + (w * 50), "abre-dos": W + W + b"1.1.10;1" + w,
    "cierra-dos": W + b"1.1.10;1" + w + w, "mil-iguales": (W + b"1.1.10;1" + w) * 1000, "mil-distintas": b"".join(W + b"1.1.10;%d" % i + w for i in range(1000)), "marca-partida": b"[Wri[Write]te]1.1.10;1" + w,
    "marca-que-se-cierra": b"[Wri" + W + b"a;1" + w + b"te]1.1.10;2" + w, "caja": b"[wRITE]1.1.10;1[/wRITE]", "nulos": W + b"1.1\0.10;1" + w, "altos": W + b"\xf1\xff;1" + w, "saltos": W + b"1.1.10;1\r\n2" + w,
    "cruzadas": W + b"1;1[FORZNIV]" + w + b"2;2[/FORZNIV]", "forzado-vacio": b"[FORZNIV][/FORZNIV]", "forzado-letras": b"[FORZNIV]a;b[/FORZNIV]", "forzado-enorme": b"[FORZNIV]1e308;1e308[/FORZNIV]",
    "forzado-negativo": b"[FORZNIV]-1;-1[/FORZNIV]", "forzado-tres": b"[FORZNIV]1;2;3[/FORZNIV]", "lectura-vacia": b"read;FINREAD;", "lectura-sin-fin": b"read;1.1.10;", "lectura-sin-separador": b"read;1.1.10FINREAD;",
    "lectura-larga": b"read;" + b"1." * 20000 + b";FINREAD;", "lectura-anidada": b"read;read;1.1.10;FINREAD;FINREAD;", "mil-lecturas": b"read;1.1.10;FINREAD;" * 1000, "sincronizar": b"SINCRONIZAR", "sincronizar-partido": b"SINCRONI",
    "sincronizar-dentro": b"SINCRO" + b"SINCRONIZAR" + b"NIZAR", "keep-alives": b"[KEEP_DESDE_SERVIDOR][KEEP_DESDE_DRI]" * 200, "keep-partido": b"[KEEP_DESDE_", "keep-que-se-cierra": b"[KEEP_[KEEP_DESDE_DRI]DESDE_DRI]",
    "solo-blancos": b" \t\r\n" * 100, "corchetes": b"[" * 64 * 1024, "todo-junto": W + b"1.1.10;1" + w + b"SINCRONIZAR[FORZNIV]1;1[/FORZNIV]read;1.1.10;FINREAD;[KEEP_DESDE_DRI]", "64k-de-aperturas": W * 9000, "64k-de-cierres": w * 8000,
}

# A well-formed answer is 07, station, 0, register, 0, high, low, sum; the first byte of an input says
# which kind of station it is, the others what it does (see recepcion_fuzz.cpp).
def paso(*ordenes):
    return bytes(ordenes)

def basura(texto):
    return b"".join(bytes([(len(t) - 1) * 8]) + t for t in (texto[i:i + 32] for i in range(0, len(texto), 32)))

R = bytes([7, 1, 0, 0x10, 0, 1, 5]) + bytes([0x17])
RECEPCION = {
    "nada": b"", "buena": paso(0, 6, 50, 1), "marca-mala": b"\0" + basura(b"\x06" + R[1:]), "suma-mala": b"\0" + basura(R[:7] + b"\0"), "marca-dentro": b"\0" + basura(b"\x07" * 7 + R), "dos-juntas": b"\0" + basura(R + R),
    "una-y-media": b"\0" + basura(R + R[:4]), "siete-bytes": b"\0" + basura(R[:7]), "nueve-bytes": b"\0" + basura(R + b"\x07"), "ceros": b"\0" + basura(b"\0" * 64), "unos": b"\0" + basura(b"\xff" * 64), "marcas": b"\0" + basura(b"\x07" * 64),
    "estacion-ajena": b"\0" + basura(R[:1] + b"\x09" + R[2:]), "eco-del-pedido": b"\0" + basura(b"\x52\x01\x00\x10\x00\x00\x63"), "escritura-ajena": b"\0" + basura(b"\x57" + R[1:]), "texto": b"\0" + basura(b"HTTP/1.1 400 Bad Request\r\n\r\n"),
    "goteo": b"\0" + b"".join(basura(bytes([b])) + paso(5) for b in R), "basura-y-buena": b"\0" + basura(b"\x07\x07") + paso(6, 50, 1), "calla": paso(0) + paso(4, 6, 255) * 8, "corta-a-mitad": paso(0, 34, 7), "corta-siempre": paso(0) + paso(7, 6, 200) * 10,
    "tarde-una": paso(1, 6, 100, 1), "tarde-todas": paso(1) + paso(6, 110, 1) * 12, "tarde-y-partida": paso(1) + paso(6, 90, 34, 6, 20, 3) * 8, "caprichosa-calla": paso(2) + paso(4, 6, 80, 1) * 10, "red-detenida": paso(2, 15, 6, 200, 23, 1), "detenida-y-cortada": paso(2, 15, 7, 6, 200),
    "resto-viejo": b"\0" + basura(R[:5]) + paso(7, 6, 250) + basura(R[5:]), "inundacion": b"\0" + basura(R * 60), "sin-pausa": paso(0) + paso(1) * 60,
}

S = b"\x52\x01\x00\x10\x00\x00\x63"
SOLICITUDES = {
    "nada": b"", "un-byte": b"\1", "una": b"\1" + S, "dos-juntas": b"\7" + S + S, "cortada": b"\1" + S[:6], "suma-mala": b"\1" + S[:6] + b"\0", "marca-mala": b"\1\x51" + S[1:], "ruido-antes": b"\2\xff\xff" + S, "ruido-entre": b"\3" + S + b"\0" + S,
    "marcas": b"\1" + b"\x52" * 50, "escritura": b"\1\x57" + S[1:], "marca-al-final": b"\5" + S + b"\x52", "solo-ruido": b"\4" + b"\xaa" * 999, "de-a-16": b"\x0f" + S * 40,
}

TEXTO = {
    "vacio": b"", "blancos": b" \t\r\n", "nulo": b"\0", "utf8-roto": b"x = \"\xc3\"", "altos": b"\xff\xfe\xfd", "bom": b"\xef\xbb\xbfx = 1", "cadena-abierta": b"x = \"abc", "comillas": b"x = " + b"\"" * 1001, "fecha-abierta": b"x = #1/1/2024", "fecha-mala": b"x = #99/99/99999#",
    "hex-malo": b"x = &H", "hex-largo": b"x = &H" + b"F" * 100, "octal-malo": b"x = &9", "numero-largo": b"x = " + b"9" * 5000, "exponente": b"x = 1e", "exponente-enorme": b"x = 1e99999", "continuacion": b"x = _\n_\n_\n1", "continuacion-final": b"x = 1 _", "nombre-largo": b"a" * 300 + b" = 1",
    "nombre-corchetes": b"[a b] = 1", "corchete-abierto": b"[a", "parentesis": b"x = " + b"(" * 5000 + b"1", "parentesis-cerrados": b"x = 1" + b")" * 5000, "signos": b"x = " + b"-" * 5000 + b"1", "nots": b"x = " + b"Not " * 5000 + b"1", "potencias": b"x = 1" + b"^1" * 5000, "llamadas": b"x = " + b"a(" * 3000,
    "if-anidados": b"If 1 Then\n" * 2000, "end-sueltos": b"End If\n" * 100, "else-suelto": b"Else", "for-sin-next": b"For i = 1 To 2", "next-suelto": b"Next", "select-vacio": b"Select Case 1\nEnd Select", "case-suelto": b"Case 1", "do-sin-loop": b"Do\nx = 1", "class-vacia": b"Class C\nEnd Class", "class-abierta": b"Class C\nSub S", "class-dentro": b"Class A\nClass B\nEnd Class\nEnd Class",
    "sub-dentro": b"Sub A\nSub B\nEnd Sub\nEnd Sub", "dos-iguales": b"Sub A\nEnd Sub\nSub A\nEnd Sub", "const-sin-valor": b"Const a", "dim-negativo": b"Dim a(-5)", "dim-enorme": b"Dim a(99999999999)", "dim-60": b"Dim a(" + b",".join([b"1"] * 61) + b")", "redim-nada": b"ReDim", "exit-fuera": b"Exit Sub", "goto-0": b"On Error GoTo 1", "palabra-clave": b"If = 1", "puntos": b"a" + b".b" * 5000 + b" = 1", "dos-puntos": b":" * 10000, "rem": b"Rem", "comentario": b"'" + b"x" * 70000, "byref-byval": b"Sub A(ByRef ByVal x)\nEnd Sub", "property-sin-let": b"Class C\nProperty Let P\nEnd Property\nEnd Class", "explicit-tarde": b"x = 1\nOption Explicit", "with-abierto": b"With x", "get-ref": b"Set f = GetRef(\"no\")", "punto-solo": b".x = 1",
}

CORRIDA = {
    "vacio": b"", "bucle": b"Do : Loop", "recursion": b"Sub R : R : End Sub\nR", "memoria": b"s = \"x\"\nDo : s = s & s : Loop", "array-creciente": b"Dim a()\ni = 0\nDo : i = i + 1 : ReDim Preserve a(i) : Loop", "diccionario": b"Set d = CreateObject(\"Scripting.Dictionary\")\nDo : i = i + 1 : d.Add i, i : Loop",
    "diccionario-de-si": b"Set d = CreateObject(\"Scripting.Dictionary\")\nd.Add d, d\nSet d(d) = d", "terminar-en-bucle": b"Class C\nSub Class_Terminate : Do : Loop : End Sub\nEnd Class\nSet a = New C\nSet a = Nothing", "terminar-resucita": b"Class C\nSub Class_Terminate : Set g = Me : End Sub\nEnd Class\nSet a = New C\nSet a = Nothing\nSet g = Nothing",
    "execute-de-si": b"t = \"Execute t\"\nExecute t", "execute-nuevo": b"Do : i = i + 1 : Execute \"v\" & i & \" = 1\" : Loop", "textos-que-se-retiran": b"On Error Resume Next\nt = \" '\" & String(20000, \"a\")\nDo : i = i + 1 : Execute \"x = \" & i & t : Loop", "eval-hondo": b"x = Eval(String(3000, \"(\"))", "borrar-en-recorrido": b"a = Array(1, 2, 3)\nFor Each v In a : Erase a : Next",
    "redim-en-recorrido": b"ReDim a(5)\nFor Each v In a : ReDim a(1) : Next", "argumento-por-referencia": b"ReDim a(3)\nSub S(x) : ReDim a(0) : x = 1 : End Sub\nS a(3)", "cadena-larga": b"Set p = Nothing\nClass N\nPublic s\nEnd Class\nFor i = 1 To 20000 : Set n = New N : Set n.s = p : Set p = n : Next\nSet p = Nothing\nSet n = Nothing",
    "division": b"x = 1 / 0", "desborde": b"x = 2147483647\nx = CLng(x) * CLng(x)", "entero-minimo": b"x = CInt(-32768) \\ -1", "modulo": b"x = -2147483648 Mod -1", "mid-negativo": b"x = Mid(\"abc\", -1)", "mid-enorme": b"x = Mid(\"abc\", 2147483647, 2147483647)", "string-negativo": b"x = String(-1, \"a\")", "space-enorme": b"x = Space(2000000000)", "replace-explosivo": b"s = String(2000, \"a\")\nx = Replace(s, \"a\", s)", "split-vacio": b"x = Split(\"\", \"\")", "join-anidado": b"x = Join(Array(Array(1)))", "chr-malo": b"x = Chr(-1) & ChrW(99999)", "fecha-fuera": b"x = DateAdd(\"yyyy\", 99999, #1/1/2024#)", "fecha-nan": b"x = CDate(1e300)", "round-enorme": b"x = Round(1.5, 99999)", "formato": b"x = FormatNumber(1e300, 99)", "regexp-explosiva": b"Set r = New RegExp\nr.Pattern = \"(a+)+$\"\nx = r.Test(String(200, \"a\") & \"b\")", "regexp-mala": b"Set r = New RegExp\nr.Pattern = \"((((\"\nx = r.Test(\"a\")", "regexp-larga": b"Set r = New RegExp\nr.Pattern = String(100000, \"(\")\nx = r.Test(\"a\")", "err-raise": b"Err.Raise 0", "err-raise-enorme": b"Err.Raise 2147483647, String(1000, \"x\"), \"y\"", "publicada-como-clase": b"Class MW_1\nEnd Class", "publicada-como-sub": b"Sub MW_1\nEnd Sub", "eco-con-objeto": b"Echo(Err)", "anfitrion-pisado": b"Set Echo = Nothing\nEcho 1", "setlocale": b"SetLocale \"zz\"", "getref-borrado": b"Sub A : End Sub\nSet f = GetRef(\"A\")\nExecute \"Sub A : x = 1 : End Sub\"\nf", "null-en-if": b"If Null Then x = 1", "comparar-objetos": b"x = (Err = Err)", "for-infinito": b"For i = 1 To 2 Step 0 : Next", "for-fraccion": b"For i = 0 To 1 Step 1e-300 : Next", "archivos-sin-carpeta": b"Set f = CreateObject(\"Scripting.FileSystemObject\")", "shell": b"Set w = CreateObject(\"WScript.Shell\")",
}

# What follows a recording's mark: entries are a number and its parts.
GRABACION = {
    "vacia": b"", "fin": b"\0", "ceros": b"\0" * 300, "altos": b"\xff" * 300, "entrada-desconocida": b"\x63", "tic-de-nadie": b"\x01\x00\x7f", "tic-cortado": b"\x01", "datos-de-nadie": b"\x03\x00\x7f\x05abcde", "datos-cortados": b"\x03\x00\x00\x7fab", "largo-enorme": b"\x03\x00\x00\xff\xff\xff\xff\xff\xff\xff\xff\x7f", "numero-sin-fin": b"\x01" + b"\x80" * 40, "reloj-atras": b"\x0a\x00\x01" * 50, "vueltas": b"\x07" * 200, "respuesta-sin-pregunta": b"\x0d\x7f\x01", "pendientes-sin-fin": b"\x08\x00" * 100, "pide-nadie": b"\x05\x00\x00\x0310:",
    "lo-que-escucha-conectado": b"\0\x92\0\2\0\0\1\0\6\0\2\0\0\1\0\0\0",
}

PLANILLA = {
    "vacia": b"", "solo-cabecera": b"tipo;puerto\n", "utf16": b"\xff\xfet\0i\0", "comillas-sin-fin": b'tipo;puerto\n"puerto;1\n',
    "tabuladores": b"tipo\tpuerto\npuerto\t1\n", "muchos-separadores": b";" * 5000, "nulo": b"tipo;puerto\npuerto;1\0\n",
}

# The first byte says in what pieces the rest arrives.
PEDIDO = {
    "vacio": b"\xff", "nada": b"\xff\n\n\r\n", "basura": b"\x00\xff\xfe\x80{{{",
    "todo": b"\xff" + b"".join(b'{"pedido":"%s","id":%d}\n' % (q, i) for i, q in enumerate(
        [b"estado", b"variables", b"bloques", b"conexiones", b"contadores", b"sucesos"])),
    "vigilar": b'\x00{"pedido":"vigilar","valores":true,"sucesos":true}\n{"pedido":"vigilar"}',
    "vigilar-clases": b'\xff{"pedido":"vigilar","sucesos":true,"clases":["Envio"],"direcciones":["1.1.10"]}',
    "escribir": b'\xff{"pedido":"escribir","direccion":"1.1.10","valor":1e308}\n{"pedido":"escribir","direccion":"1.1.10.3","valor":-1}',
    "forzar": b'\xff{"pedido":"forzar","direccion":"1.1.FF"}\n{"pedido":"forzar","nivel":1,"veces":-1}\n{"pedido":"forzar","nivel":1e9,"veces":1}',
    "porque": b'\xff{"pedido":"porque","direccion":"1.1"}\n{"pedido":"porque","direccion":"10.0.0.1:502"}\n{"pedido":"porque","direccion":":"}',
    "sucesos-desde": b'\xff{"pedido":"sucesos","desde":1e300}\n{"pedido":"sucesos","desde":"0000-99-99T99:99:99"}\n{"pedido":"sucesos","desde":"7:05"}',
    "hondo": b"\xff" + b"[" * 500, "largo": b"\xff" + b"x" * 70000, "muchos": b"\xff" + b'{"pedido":"contadores"}\n' * 300,
    "id": b'\xff{"pedido":"estado","id":"' + b"i" * 100 + b'"}\n{"pedido":"estado","id":[]}\n{"id":"\\ud83d\\ude42","pedido":"estado"}',
}

TABLAS = {
    "ini": INI, "driver": DRIVER, "exportacion": EXPORTACION, "ajustes": AJUSTES, "direccion": DIRECCION, "cifrado": CIFRADO,
    "llegada": LLEGADA, "recepcion": RECEPCION, "solicitudes": SOLICITUDES, "vbscript_texto": TEXTO, "vbscript_corrida": CORRIDA,
    "grabacion": GRABACION, "planilla": PLANILLA, "pedido": PEDIDO,
}


def main():
    total = 0
    for destino, tabla in TABLAS.items():
        if len(set(tabla.values())) != len(tabla):
            vistos = {}
            iguales = [(n, vistos[c]) for n, c in tabla.items() if vistos.setdefault(c, n) != n]
            sys.exit(f"{destino}: the same twice: {iguales}")
        carpeta = pathlib.Path(sys.argv[1]) / destino
        shutil.rmtree(carpeta, ignore_errors=True)
        carpeta.mkdir(parents=True)
        for nombre, contenido in tabla.items():
            (carpeta / nombre).write_bytes(contenido)
        for archivo in (AQUI / destino).glob("*"):
            shutil.copy(archivo, carpeta / ("archivo-" + archivo.name))
        total += len(list(carpeta.iterdir()))
    print(f"{total} inputs kept")


main()
