#!/usr/bin/env python3
"""Holds the tables of docs/formats.md together with the drivers that are let in and with what a run on each format gives.

    formats.py PROGRAM [--write]

Where HALVANE_TEST_POSTGRES names a database ("host=... dbname=... user=...") PostgreSQL is one of them.

The tool of the data library writes one small layer, and one small raster, in each format that it can write; the program
reads them back. What they keep is compared with the cells of the page, or, with --write, put into them.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PAGE = ROOT / "docs" / "formats.md"
DRIVERS = ROOT / "src" / "host" / "gdal" / "source" / "Drivers.cpp"
SERVER = os.environ.get("HALVANE_TEST_POSTGRES")
SKIPPED = 77

# What each driver writes is told to the tool by more than its name.
FEATURE_FILES = {
    "GPKG": ("a.gpkg",), "SQLite": ("a.sqlite", "-dsco", "SPATIALITE=YES"),
    "ESRI Shapefile": ("a.shp", "-lco", "ENCODING=UTF-8"), "OpenFileGDB": ("a.gdb",),
    "CSV": ("a.csv", "-lco", "GEOMETRY=AS_WKT", "-lco", "CREATE_CSVT=YES"), "GeoJSON": ("a.geojson",),
    "GeoJSONSeq": ("a.geojsonl",), "FlatGeobuf": ("a.fgb",), "GML": ("a.gml",), "LIBKML": ("a.kml",),
    "GPX": ("a.gpx", "-dsco", "GPX_USE_EXTENSIONS=YES", "-nlt", "POINT25D"), "DXF": ("a.dxf", "-select", "name"),
    "MapInfo File": ("a.tab", "-unsetFid"), "XLSX": ("a.xlsx", "-unsetFid"), "ODS": ("a.ods", "-unsetFid"), "JML": ("a.jml",)}
if SERVER:
    FEATURE_FILES["PostgreSQL"] = ("a.xml",)
RASTER_FILES = {
    "GPKG": "a.gpkg", "GTiff": "a.tif", "HFA": "a.img", "AAIGrid": "a.asc", "PNG": "a.png", "JPEG": "a.jpg", "GIF": "a.gif",
    "BMP": "a.bmp", "JP2OpenJPEG": "a.jp2", "WEBP": "a.webp", "DTED": "a.dt1", "SRTMHGT": "N50E008.hgt",
    "USGSDEM": "a.dem", "EHdr": "a.bil", "ENVI": "a.dat"}

SOURCE = '''id,name,small,whole,large,number,single,day,moment,flag,WKT
7,"Zürich 漢字",-3,70000,9007199254740993,0.1,1.5,2024-03-09,2024-03-09T14:05:06Z,1,"POINT ZM (700000 5400000 408.25 17.5)"
3,"second",4,-1,1,1e-7,2.5,1899-12-31,1970-01-01T00:00:00Z,0,"POINT ZM (300000 5300000 520 3)"
12,"third",5,2,3,-12.25,-0.5,2000-02-29,2000-02-29T23:59:59Z,1,"POINT ZM (690000 5400500 1 2)"
'''
NAMES = ["Zürich 漢字", "second", "third"]
# A field of the source: what the page calls its type, the type and the value that the program tells of the row 7.
FIELDS = {
    "name": ("text", "vemiFieldTypeString", "Zürich 漢字"), "small": ("small integer", "vemiFieldTypeSmallInteger", "-3"),
    "whole": ("integer", "vemiFieldTypeInteger", "70000"),
    "large": ("integer of 64 bits", "vemiFieldTypeInteger", "9007199254740993"),
    "number": ("double", "vemiFieldTypeDouble", "0.1"), "single": ("single", "vemiFieldTypeSingle", "1.5"),
    "day": ("date", "vemiFieldTypeDate", "03/09/2024"), "moment": ("date-time", "vemiFieldTypeDate", "03/09/2024"),
    "flag": ("yes/no", "vemiFieldTypeSmallInteger", "1")}

# The types that the source gives its fields; the identifiers stand in the first column.
SOURCE_TYPES = {"name": 'String" width="40', "small": 'Integer" subtype="Int16', "whole": "Integer", "large": "Integer64",
                "number": "Real", "single": 'Real" subtype="Float32', "day": "Date", "moment": "DateTime",
                "flag": 'Integer" subtype="Boolean'}
LAYER = """<OGRVRTDataSource><OGRVRTLayer name="places">
  <SrcDataSource relativeToVRT="1">rows.csv</SrcDataSource><SrcLayer>rows</SrcLayer><FID>id</FID>
  <GeometryType>wkbPointZM</GeometryType><LayerSRS>EPSG:25832</LayerSRS>
  <GeometryField name="shape" encoding="WKT" field="WKT"/>
  """ + "\n  ".join(f'<Field name="{name}" type="{kind}"/>' for name, kind in SOURCE_TYPES.items()) + """
</OGRVRTLayer></OGRVRTDataSource>"""


def run(*arguments):
    done = subprocess.run([str(each) for each in arguments], capture_output=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{arguments[0]} ended with {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode()


def allowed(kind):
    """The drivers of one kind that the program lets in, as its source has them."""
    rows = re.findall(r'\{"([^"]+)", Opens::(\w+),', DRIVERS.read_text(encoding="utf-8"))
    return {name for name, opens in rows if opens == "Both" or (opens == "Rasters") == (kind != "feature")}


def make_on_server(source, file):
    """A database of our own, and a map document that names its table."""
    database = re.sub(r"dbname=\S+", "dbname=halvane_formats", SERVER)
    for statement in ("DROP DATABASE IF EXISTS halvane_formats", "CREATE DATABASE halvane_formats"):
        run("psql", "-q", "-X", "-d", SERVER, "-c", statement)
    run("psql", "-q", "-X", "-d", database, "-c", "CREATE EXTENSION postgis")
    run("ogr2ogr", "-preserve_fid", "-f", "PostgreSQL", f"PG:{database}", source, "-lco", "DIM=XYZM")
    file.write_text(f'<MapDocument><Connection name="server" database="PG:{database}"/><Map name="City">'
                    '<FeatureLayer connection="server" dataset="places"/></Map></MapDocument>', encoding="utf-8")


def make_features(folder):
    (folder / "rows.csv").write_text(SOURCE, encoding="utf-8")
    source = folder / "places.vrt"
    source.write_text(LAYER, encoding="utf-8")
    for driver, (name, *options) in FEATURE_FILES.items():
        (folder / driver).mkdir()
        if driver == "PostgreSQL":
            make_on_server(source, folder / driver / name)
            continue
        identifiers = [] if "-unsetFid" in options else ["-preserve_fid"]
        run("ogr2ogr", *identifiers, "-f", driver, folder / driver / name, source, *options)


def make_rasters(folder):
    grid = "\n".join(" ".join(str((row * 7 + column * 3) % 200) for column in range(24)) for row in range(24))
    (folder / "plain.asc").write_text(
        f"ncols 24\nnrows 24\nxllcorner 700000\nyllcorner 5400000\ncellsize 30\n{grid}\n", encoding="utf-8")
    as_bytes = ("-ot", "Byte", "-a_srs", "EPSG:25832")
    run("gdal_translate", "-q", *as_bytes, folder / "plain.asc", folder / "grey.tif")
    run("gdal_translate", "-q", *as_bytes, "-b", 1, "-b", 1, "-b", 1, folder / "plain.asc", folder / "color.tif")
    # Heights come in tiles of a degree.
    run("gdal_translate", "-q", "-ot", "Int16", "-outsize", 1201, 1201, "-a_srs", "EPSG:4326", "-a_ullr", 7.9995833333333,
        51.0004166666667, 9.0004166666667, 49.9995833333333, folder / "plain.asc", folder / "tile.tif")
    for driver, name in RASTER_FILES.items():
        (folder / driver).mkdir(exist_ok=True)
        source = {"WEBP": "color", "DTED": "tile", "SRTMHGT": "tile", "USGSDEM": "tile"}.get(driver, "grey")
        run("gdal_translate", "-q", "-of", driver, folder / f"{source}.tif", folder / driver / name)


def describe(program, file):
    return json.loads(run(program, "describe", file, "--json"))["maps"][0]


def reference_of(part):
    lines = " ".join((part.get("spatialReference") or {}).get("description") or [])
    if "UTM" in lines or "TRANSVERSE MERCATOR" in lines:
        return "own"
    return "WGS 84" if "WORLD GEODETIC SYSTEM 1984" in lines else "none" if not lines else lines


def control_file(names, layer):
    source = f'DataSource="{"MapLayer" if layer else "Table"}" Identity="{"Layer" if layer else "Table"}Name"'
    fields = "".join(f'<F Name="{name}" IdentityValue="{name}"/>' for name in FIELDS)
    point = "".join(f'<P Name="{axis}" Target="Attribute" DataProperty="Geometry.{axis}"/>' for axis in ("X", "Z", "Measure"))
    vertices = f'<V Name="P" DataSource="Geometry.Vertice" Entries="Multiple">{point}</V>' if layer else ""
    rows = (f'<E Name="Row" DataSource="{"Feature" if layer else "Record"}" Entries="Multiple">'
            f'<I Name="oid" IdentityValue="{"OBJECTID" if layer else names[1]}"/>{fields}{vertices}</E>')
    count = '<C Name="Count" DataProperty="FeatureCount"/>' if layer else ""
    return f'<T Name="T"><L Name="L" {source} IdentityValue="{names[0]}">{count}{rows}</L></T>'


def export(program, folder, file, names, layer):
    (folder / "control.xml").write_text(control_file(names, layer), encoding="utf-8")
    subprocess.run([program, "export", "--quiet", "--map", file, folder / "control.xml", folder / "output.xml"],
                   capture_output=True, check=False)
    return ElementTree.parse(folder / "output.xml").getroot()


def shapes_of(row):
    vertex = row.find(".//Part/P")
    if vertex is None:
        return "none"
    return ", ".join(axis[0] for axis in ("Z", "Measure") if vertex.get(axis)) or "x and y"


def identifiers_of(rows):
    numbers = sorted(int(row.findtext("oid")) for row in rows)
    return "kept" if numbers == [3, 7, 12] else f"from {numbers[0]}"


def order_of(rows):
    # The rows of a format with fields of its own alone are known by the first coordinate.
    names = [row.findtext("name") or row.find(".//Part/P").get("X") for row in rows]
    if not set(names) <= set(NAMES):
        return "as written" if names[0].startswith("7") and names[1].startswith("3") else "another"
    return {tuple(NAMES): "as written", ("second", "Zürich 漢字", "third"): "by identifier"}.get(tuple(names), "by place")


def changed_types(fields, row):
    """The types of the source that come back as another one, or with another value."""
    if not fields.keys() & (FIELDS.keys() - {"name"}):
        return "fields of the format's own"
    return ", ".join(word for name, (word, literal, value) in FIELDS.items()
                     if fields.get(name) != literal or row.findtext(name) != value) or "none"


def feature_cells(program, folder, driver):
    file = folder / driver / FEATURE_FILES[driver][0]
    described = describe(program, file)
    layer = described["layers"][0] if described["layers"] else None
    table = layer["featureClass"] if layer else described["tables"][0]
    name = layer["name"] if layer else table["dataset"]
    fields = {field["name"].lower(): field["type"] for field in table["fields"]}
    root = export(program, folder, file, (name, table["fields"][0]["name"]), layer is not None)
    rows = root.findall("L/Row")
    if len(rows) != 3 or (layer is not None and root.findtext("L/Count") != "3"):
        raise RuntimeError(f"{driver}: {len(rows)} rows, and a count of {root.findtext('L/Count')}")
    first = next((row for row in rows if row.findtext("name") == NAMES[0]), rows[0])
    return {"Shapes": shapes_of(rows[0]), "Reference": reference_of(layer or {}) if layer else "none",
            "Identifiers": identifiers_of(rows), "Types that change": changed_types(fields, first),
            "Order": order_of(rows)}


def raster_cells(program, folder, driver):
    """The reference, and the kind of the side file that holds it, if one does."""
    file = folder / driver / RASTER_FILES[driver]
    reference = reference_of(describe(program, file))
    for ending in (".aux.xml", ".prj"):
        for side_file in (folder / driver).glob(f"*{ending}"):
            side_file.unlink()
        if reference_of(describe(program, file)) != reference:
            return {"Reference": f"{reference}, in a `{ending}` beside it"}
    return {"Reference": reference}


class Table:
    """A table of the page, by the words in its head: a row for each driver, which stands in the second column."""

    def __init__(self, lines, second):
        begin = next(number for number, line in enumerate(lines) if line.startswith("|") and f"| {second} |" in line)
        self.lines = lines
        self.head = self.cells(lines[begin])
        self.rows = {}
        for number in range(begin + 2, len(lines)):
            if not lines[number].startswith("|"):
                break
            for driver in re.findall(r"`([^`]+)`", self.cells(lines[number])[1]):
                self.rows[driver] = number

    @staticmethod
    def cells(line):
        return [cell.strip() for cell in line.strip().strip("|").split("|")]

    def compare(self, driver, column, value, write):
        """What is wrong with a cell; None when nothing is, or when it was written."""
        cells = self.cells(self.lines[self.rows[driver]])
        index = self.head.index(column)
        # A cell may tell of a newer release of the library too.
        if value in re.split(r"; with GDAL [\d.]+: ", cells[index]):
            return None
        if write:
            cells[index] = value
            self.lines[self.rows[driver]] = "| " + " | ".join(cells) + " |"
            return None
        return f"{driver}: {column}: the page says {cells[index]!r}, the data {value!r}"


def check(program, lines, kind, cells_of, files, make, write):
    table = Table(lines, f"driver of {kind}s")
    problems = [f"{driver}: the page has no row" for driver in sorted(allowed(kind) - table.rows.keys())]
    problems += [f"{driver}: is not let in" for driver in sorted(table.rows.keys() - allowed(kind))]
    with tempfile.TemporaryDirectory(prefix="halvane-formats-") as name:
        make(pathlib.Path(name))
        for driver in files:
            for column, value in cells_of(program, pathlib.Path(name), driver).items():
                problems.append(table.compare(driver, column, value, write))
    return [problem for problem in problems if problem is not None]


def main():
    program, write = pathlib.Path(sys.argv[1]).resolve(), "--write" in sys.argv[2:]
    missing = [tool for tool in ("ogr2ogr", "gdal_translate") if shutil.which(tool) is None]
    if missing:
        print(f"not installed: {', '.join(missing)}")
        return SKIPPED
    lines = PAGE.read_text(encoding="utf-8").split("\n")
    problems = check(program, lines, "feature", feature_cells, FEATURE_FILES, make_features, write)
    problems += check(program, lines, "raster", raster_cells, RASTER_FILES, make_rasters, write)
    if write:
        PAGE.write_text("\n".join(lines), encoding="utf-8")
    print("\n".join(problems) or f"{len(FEATURE_FILES)} formats of features and {len(RASTER_FILES)} of rasters are as told")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
