# SPDX-License-Identifier: Apache-2.0
"""Runs the commands that the documents show: ordenes.py TREE FOLDER_OF_THE_PROGRAMS.

Every line of a code block is a command that runs here, one that something else runs and that is listed
with what does, or a line of a block that shows something else. Each document has a folder of its own
that looks like a machine: the examples, a plant, and one in /etc and /var/lib.
"""
import fcntl
import pathlib
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time

ARBOL, BIN = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
PLAZO = 120  # seconds; there to fail a test that would hang
PROGRAMAS = ("DriverKV2200", "SimuladorKV2200", "ClienteKV2200", "GuionKV2200", "mundo", "tar")

# Programs that go on until they are told to end: what they must print before.
SIGUEN = {
    r"SimuladorKV2200 ": r"Escuchando 127\.0\.0\.1:",
    r"DriverKV2200 .*--sin-ventana": r"Recepcion <- ",
    r"ClienteKV2200 .*vigilar": r"(?s)\b(\d\.\d\.10)\b.*\b\1\b.*\b\1\b",  # it goes on to follow
}
# As much of it as shows that it runs; the amount is all that is changed.
MENOS = {"--semillas 1-300": "--semillas 1-3", "--horas 12000": "--horas 20", "--cpu 30": "--cpu 1",
         "--semillas 5000-5999": "--semillas 5000-5001"}
# What this machine cannot be asked for: why, and who runs it, by a text in that file.
OTROS = {
    "./run": ("installs, builds, takes the example's ports", "packaging/primeros-pasos", "./run --durante 30"),
    "./test": ("is what runs this", "packaging/primeros-pasos", "./test"),
    "cmake --preset release": ("builds the tree anew", "test", 'cmake --preset "$preset"'),
    "cmake --preset fuzz": ("builds the tree anew", ".ci/nightly", "cmake --preset fuzz"),
    "fuzz/correr": ("takes an hour", ".ci/nightly", "fuzz/correr 60"),
    "packaging/paquetes": ("wants root and a quarter of an hour", ".ci/nightly", "packaging/paquetes"),
    "packaging/probar": ("boots a machine", ".ci/nightly", "packaging/probar"),
    "apt install": ("changes the machine", "packaging/probar-dentro", "instalar /prueba/nuevos/*.deb"),
    "systemctl enable": ("wants a service manager", "debian/tests/servicio", "systemctl start driverkv2200@norte"),
    "systemctl reload": ("wants a service manager", "debian/tests/servicio", "systemctl reload"),
    "systemctl status": ("wants a service manager", "debian/tests/servicio", "systemctl status"),
}
# Blocks that show something other than commands, by how their lines begin.
NO_SON = {
    "docs/architecture.md": r"[ |+]|configuration files|script  ",
    "docs/commissioning.md": r"en .*16 bloques",
    "docs/puerta-local.md": r"\s*[{\"]",
    "docs/protocolo-cliente.md": r"\[Write\]|Read;",
    "examples/README.md": r"\[PROYECTO|RutaProyecto=",
}
# Documents that speak of a plant that runs.
CON_PLANTA = {"docs/commissioning.md", "docs/protocolo-cliente.md"}


def ordenes(documento):
    """The commands of a document, each with its line."""
    for n, linea in enumerate(documento.read_text(encoding="utf-8").splitlines(), 1):
        if not linea.startswith("    ") or not linea.strip():
            continue
        texto = linea[4:]
        if re.match(NO_SON.get(str(documento.relative_to(ARBOL)), r"(?!)"), texto):
            continue
        for orden in re.split(r"\s{2,}|\s+# ", texto.strip())[0].split(" && "):
            yield n, orden.removeprefix("build/release/bin/")


def manuales():
    """The same of the examples of a manual page."""
    for pagina in sorted(ARBOL.glob("packaging/man/**/*.1")):
        for bloque in re.findall(r"^\.EX\n(.*?)^\.EE", pagina.read_text(encoding="utf-8"), re.M | re.S):
            for orden in bloque.replace("\\-", "-").splitlines():
                yield pagina, orden


class Maquina:
    """A folder that commands run in, and those of them that go on."""

    def __init__(self, carpeta):
        self.carpeta, self.siguen, self.registros = carpeta, [], 0
        ejemplo = ARBOL / "examples/planta-chica"
        shutil.copytree(ARBOL / "examples", carpeta / "examples")
        for donde in ("PLANTA", "etc/driverkv2200/norte", "var/lib/driverkv2200/norte", "plc"):
            shutil.copytree(ejemplo, carpeta / donde)
        for ajustes in carpeta.glob("**/sis_config.ini"):  # links come up sooner
            with open(ajustes, "a") as a:
                a.write("Base_Tiempo_Solicitar_Conexiones_Milisegundos=500\r\n")
        shutil.copy(ejemplo / "DRIVER_KV2200_Config.MDrivScrip", carpeta)
        shutil.copy(ejemplo / "DRIVER_KV2200_Config.ini", carpeta)
        (carpeta / "guion.vbs").write_text("Contador = Contador + MW_1_1_10\n")
        (carpeta / "VALORES").write_text("MW_1_1_10\n1\n2\n")

    def correr(self, orden):
        for largo, corto in MENOS.items():
            orden = orden.replace(largo, corto)
        orden = re.sub(r"(?<= )/(etc|var)/", rf"{self.carpeta}/\1/", orden)
        self.registros += 1
        registro = self.carpeta / f"salida-{self.registros}"
        with open(registro, "w") as salida:
            proceso = subprocess.Popen(["bash", "-c", "exec " + orden], cwd=self.carpeta, stdout=salida,
                                       stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                       env={"PATH": f"{BIN}:/usr/bin:/bin", "LC_ALL": "C.UTF-8"})
        espera = next((v for k, v in SIGUEN.items() if re.match(k, orden)), None)
        hasta = time.monotonic() + PLAZO
        if espera is None:
            try:
                codigo = proceso.wait(PLAZO)
            except subprocess.TimeoutExpired:
                proceso.kill()
                codigo = "no end"
            return None if codigo == 0 else f"ended with {codigo}:\n{registro.read_text()[-2000:]}"
        self.siguen.append((orden, proceso, registro))
        while not re.search(espera, registro.read_text(errors="replace")):
            if proceso.poll() is not None or time.monotonic() > hasta:
                return f"did not print {espera}:\n{registro.read_text()[-2000:]}"
            time.sleep(0.05)
        return None

    def terminar(self):
        """Those that go on, the last first: each must end in order when it is interrupted."""
        for orden, proceso, registro in reversed(self.siguen):
            proceso.send_signal(signal.SIGINT)
            try:
                codigo = proceso.wait(PLAZO)
            except subprocess.TimeoutExpired:
                proceso.kill()
                codigo = "no end"
            if codigo != 0:
                yield f"{orden}: interrupted, it ended with {codigo}:\n{registro.read_text()[-2000:]}"


def documento(donde, lineas):
    """Runs a document's commands; gives what failed."""
    fallas, corridas = [], 0
    with tempfile.TemporaryDirectory() as carpeta:
        m = Maquina(pathlib.Path(carpeta))
        if donde in CON_PLANTA:
            for orden in ("SimuladorKV2200 --config plc/DRIVER_KV2200_Config.ini --registro '*.10=rampa'",
                          "DriverKV2200 --carpeta plc --sin-ventana --traza"):
                fallas += [f"{donde}: {orden} {mal}" for mal in [m.correr(orden)] if mal]
        for n, orden in lineas:
            otro = next((v for k, v in OTROS.items() if orden.startswith(k)), None)
            if otro is not None or orden.startswith(("cmake --build", "ctest")):
                continue
            if not orden.startswith(PROGRAMAS):
                mal = "is neither a command that can be run nor listed"
            else:
                mal, corridas = m.correr(orden), corridas + 1
            if mal:
                fallas.append(f"{donde}:{n}: {orden}: {mal}")
        fallas += [f"{donde}: {f}" for f in m.terminar()]
    return fallas, corridas


def opciones():
    """Options that are named in a document and that nothing here has."""
    conocidas = set()
    for programa in PROGRAMAS[:-1]:
        ayuda = subprocess.run([BIN / programa, "--help"], capture_output=True, text=True)
        conocidas |= set(re.findall(r"--[a-z][a-z-]+", ayuda.stdout + ayuda.stderr))
    otros = [ARBOL / "run", *ARBOL.glob("packaging/[a-z]*"), *ARBOL.glob("bench/**/*.cpp")]
    for guion in (g for g in otros if g.is_file()):
        conocidas |= set(re.findall(r"--[a-z][a-z-]+", guion.read_text(encoding="utf-8")))
    for doc in documentos():
        for n, linea in enumerate(doc.read_text(encoding="utf-8").splitlines(), 1):
            for codigo in re.findall(r"`([^`]+)`", linea):
                for opcion in re.findall(r"(?<![\w-])--[a-z][a-z-]+", codigo):
                    if opcion not in conocidas:
                        yield f"{doc.relative_to(ARBOL)}:{n}: nothing has the option {opcion}"


def documentos():
    return [ARBOL / d for d in ("README.md", "HACKING.md", "CONTRIBUTING.md", "examples/README.md")] + sorted(
        (ARBOL / "docs").glob("*.md"))


def subirLazo():
    """The loop-back interface of a network of one's own begins switched off."""
    with socket.socket() as s:
        fcntl.ioctl(s, 0x8914, struct.pack("16sh14x", b"lo", 0x1 | 0x40))


def redPropia():
    """The examples' ports are fixed; where it may be, nobody else has them. Once, in a process of its own:
    who may have a network may not be allowed to switch it on, so it is tried first."""
    if "--aqui" in sys.argv or "--tanteo" in sys.argv:
        subirLazo()
        if "--tanteo" in sys.argv:
            sys.exit(0)
        return
    for como in (["--net"], ["--net", "--map-root-user"]):
        yo = ["unshare", *como, sys.executable, *sys.argv]
        if subprocess.run([*yo, "--tanteo"], capture_output=True).returncode == 0:
            sys.exit(subprocess.run([*yo, "--aqui"]).returncode)


def main():
    redPropia()
    fallas, corridas = [], 0
    for prefijo, (_, archivo, texto) in OTROS.items():
        if texto not in (ARBOL / archivo).read_text():
            fallas.append(f"{archivo} does not run {prefijo} any more")
    for doc in documentos():
        suyas, cuantas = documento(str(doc.relative_to(ARBOL)), list(ordenes(doc)))
        fallas, corridas = fallas + suyas, corridas + cuantas
    for pagina, orden in manuales():
        suyas, cuantas = documento(str(pagina.relative_to(ARBOL)), [(0, orden)])
        fallas, corridas = fallas + suyas, corridas + cuantas
    fallas += opciones()
    print(*fallas, sep="\n")
    print(f"{corridas} commands were run, {len(fallas)} failures")
    sys.exit(1 if fallas or corridas < 25 else 0)


main()
