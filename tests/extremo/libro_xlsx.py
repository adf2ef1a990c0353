# SPDX-License-Identifier: Apache-2.0
"""Imports configurations out of workbooks: libro_xlsx.py FOLDER_OF_THE_PROGRAMS.

The workbooks are made here, part by part, so that each way in which a spreadsheet keeps a cell is there.
"""
import pathlib
import subprocess
import sys
import tempfile
import zipfile

BIN = pathlib.Path(sys.argv[1])
SIN_LIMITE = "sin-limite" in sys.argv
CABEZA = ('<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n', 'xmlns="http://schemas.openxmlformats.org/')
HOJA = CABEZA[1] + 'spreadsheetml/2006/main"'
TIPO = "application/vnd.openxmlformats-officedocument.spreadsheetml."
DE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"


def relaciones(*destinos):
    return f'<Relationships {CABEZA[1]}package/2006/relationships">' + "".join(
        f'<Relationship Id="rId{i}" Type="{DE}/{que}" Target="{a}"/>' for i, (que, a) in enumerate(destinos, 1)
    ) + "</Relationships>"


def libro(ruta, filas, textos="", tamano=None):
    """A workbook of two sheets; `filas` is the inside of the first one's data."""
    partes = {
        "[Content_Types].xml": f'<Types {CABEZA[1]}package/2006/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{TIPO}sheet.main+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{TIPO}worksheet+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet2.xml" ContentType="{TIPO}worksheet+xml"/>'
        f'<Override PartName="/xl/sharedStrings.xml" ContentType="{TIPO}sharedStrings+xml"/></Types>',
        "_rels/.rels": relaciones(("officeDocument", "xl/workbook.xml")),
        "xl/workbook.xml": f'<workbook {HOJA} xmlns:r="{DE}"><sheets>'
        '<sheet name="Planta, &quot;1&quot;" sheetId="1" r:id="rId1"/><sheet name="Notas" sheetId="2" r:id="rId2"/>'
        "</sheets></workbook>",
        "xl/_rels/workbook.xml.rels": relaciones(("worksheet", "worksheets/sheet1.xml"),
                                                 ("worksheet", "worksheets/sheet2.xml"),
                                                 ("sharedStrings", "sharedStrings.xml")),
        "xl/worksheets/sheet1.xml": f"<worksheet {HOJA}><sheetData>{filas}</sheetData></worksheet>",
        "xl/worksheets/sheet2.xml": f'<worksheet {HOJA}><sheetData><row r="1"><c r="A1"><v>9</v></c></row>'
        "</sheetData></worksheet>",
        "xl/sharedStrings.xml": f"<sst {HOJA}>{textos}</sst>",
    }
    with zipfile.ZipFile(ruta, "w", zipfile.ZIP_DEFLATED) as z:
        for nombre, texto in partes.items():
            with z.open(nombre, "w", force_zip64=bool(tamano)) as f:
                f.write((CABEZA[0] + texto).encode())
                if tamano and nombre.endswith("sheet1.xml"):
                    for _ in range(tamano):
                        f.write(b" " * (1 << 20))
    return ruta


def correr(*argumentos):
    r = subprocess.run([BIN / "DriverKV2200", *argumentos], capture_output=True, text=True, timeout=300)
    return r.returncode, r.stderr


def main():
    with tempfile.TemporaryDirectory() as carpeta:
        d = pathlib.Path(carpeta)
        importar = lambda archivo: correr("--carpeta", d, "--importar", archivo)
        # Shared and rich texts, numbers, results of formulas, rows and cells left out.
        bueno = libro(
            d / "bueno.xlsx",
            '<row r="1">' + "".join(f'<c r="{c}1" t="s"><v>{i}</v></c>' for i, c in enumerate("ABCDEFGHI")) + "</row>"
            '<row r="3"><c r="A3" t="s"><v>1</v></c><c r="B3"><v>1</v></c></row>'
            '<row r="4"><c r="A4" t="s"><v>9</v></c><c r="B4"><v>1</v></c><c r="C4"><v>4</v></c>'
            '<c r="D4" t="str"><f>"10.0.0."&amp;1</f><v>10.0.0.1</v></c><c r="E4"><v>502</v></c><c r="F4"><v>4</v></c></row>'
            '<row r="5"><c r="A5" t="s"><v>10</v></c><c r="B5"><v>1</v></c><c r="C5"><v>4</v></c>'
            '<c r="G5" t="s"><v>11</v></c><c r="H5"><f>1/4</f><v>0.25</v></c><c r="I5" t="s"><v>12</v></c></row>',
            "".join(f"<si><t>{t}</t></si>" for t in ("tipo", "puerto", "PLC", "Ip", "PuertoTCP", "Indice",
                                                    "StarAdrees", "ScanTime", "descripcion"))
            + "<si><r><t>esta</t></r><r><t>ción</t></r></si><si><t>bloque</t></si><si><t>1F</t></si>"
            "<si><t>Caudal; kΩ</t></si>")
        assert importar(bueno) == (0, ""), importar(bueno)
        assert correr("--carpeta", d, "--exportar", d / "p.csv") == (0, "")
        filas = (d / "p.csv").read_text(encoding="utf-8-sig").splitlines()
        assert len(filas) == 4, filas
        assert filas[2].startswith("estacion;1;;;;;;;4;10.0.0.1;502;4;"), filas[2]
        assert ";1F;1;0,25;0;0;1;\"Caudal; kΩ\";" in filas[3], filas[3]
        # The same with its texts in the cells, as programs that are no spreadsheets write them: plain,
        # of two formats and with how it is read aloud, without places, without a formula.
        textos = ["tipo", "puerto", "PLC", "Ip", "PuertoTCP", "Indice", "StarAdrees", "ScanTime", "descripcion"]
        celda = lambda t, lugar="": f'<c {lugar} t="inlineStr"><is><t>{t}</t></is></c>'
        partida = ('<c r="A4" t="inlineStr"><is><r><t>esta</t></r><r><rPr><b/></rPr><t xml:space="preserve">ción</t></r>'
                   '<rPh sb="0" eb="1"><t>no</t></rPh></is></c>')
        en_celdas = libro(
            d / "en_celdas.xlsx", '<row r="1">' + "".join(map(celda, textos)) + "</row>"
            f'<row r="3">{celda("puerto")}<c><v>1</v></c></row>'
            f'<row>{partida}<c><v>1</v></c><c r="C4"><v>4</v></c><c r="D4" t="str"><v>10.0.0.1</v></c>'
            '<c r="E4"><v>502</v></c><c r="F4"><v>4</v></c></row>'
            '<row r="5">' + celda("bloque", 'r="A5"') + '<c><v>1</v></c><c r="C5"><v>4</v></c>'
            f'<c r="G5" t="str"><v>1F</v></c><c r="H5"><f>1/4</f><v>0.25</v></c>{celda("Caudal; kΩ &amp;&lt;")}</row>')
        assert importar(en_celdas) == (0, ""), importar(en_celdas)
        assert correr("--carpeta", d, "--exportar", d / "q.csv") == (0, "")
        esperadas = [f.replace("kΩ", "kΩ &<") for f in filas]
        assert (d / "q.csv").read_text(encoding="utf-8-sig").splitlines() == esperadas
        antes = (d / "DRIVER_KV2200_Config.ini").read_bytes()
        # What is wrong is told by the workbook's own rows.
        codigo, errores = importar(libro(
            d / "malo.xlsx", '<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c></row>'
            '<row r="7"><c r="A7" t="s"><v>2</v></c></row>',
            "<si><t>tipo</t></si><si><t>puerto</t></si><si><t>bloqe</t></si>"))
        assert codigo == 1 and "malo.xlsx:7: columna tipo: " in errores, errores
        # Cut off, no workbook at all, more than a gigabyte of blanks in a megabyte: that one is read
        # to its end, and found empty, where sanitizers do not let memory be limited.
        (d / "cortado.xlsx").write_bytes(bueno.read_bytes()[:900])
        (d / "otro.xlsx").write_bytes(b"PK\x03\x04" + bytes(range(256)) * 16)
        for archivo in (d / "cortado.xlsx", d / "otro.xlsx", libro(d / "enorme.xlsx", "", tamano=1100)):
            codigo, errores = importar(archivo)
            entero = archivo.name == "enorme.xlsx" and SIN_LIMITE
            queja = "falta la columna" if entero else f"{archivo.name}: no se importa nada\n"
            assert codigo == 1 and queja in errores, (archivo, codigo, errores)
        assert (d / "DRIVER_KV2200_Config.ini").read_bytes() == antes
        # Without what reads workbooks: the program alone in a folder.
        solo = d / "DriverKV2200"
        solo.write_bytes((BIN / "DriverKV2200").read_bytes())
        solo.chmod(0o755)
        r = subprocess.run([solo, "--importar", bueno], capture_output=True, text=True)
        assert r.returncode == 1 and "driverkv2200-xlsx" in r.stderr, r


main()
