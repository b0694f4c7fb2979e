"""What is measured: each case with its rivals."""
import dataclasses
import pathlib
import shutil
import subprocess
import sys

BENCH = pathlib.Path(__file__).resolve().parent
CONTROL = BENCH / "control"
RIVALS = BENCH / "rivals"

HALVANE = "halvane"
BY_HAND = "by hand, C++"


@dataclasses.dataclass
class Rival:
    """A way to the case's document, or to something like it."""

    name: str
    steps: list
    result: pathlib.Path
    passing: list = dataclasses.field(default_factory=list)  # files written on the way
    document: str = "own"  # "bytes": ours, byte for byte; "text": ours but for line breaks; "own": another one
    rows: int = 0  # how many rows it reads, when these are fewer than the case's
    same: bool = True  # what the comparison found


@dataclasses.dataclass
class Case:
    name: str
    title: str
    rows: int  # or nodes, or layers: what the case has many of
    reference: str  # the rival that the ratios refer to
    rivals: list
    least_runs: int = 1


class Files:
    """Data, made once, and places for documents."""

    def __init__(self, folder, programs, large):
        self.programs = programs
        self.large = large
        self.data = folder / "data"
        self.documents = folder / "documents"
        self.data.mkdir(parents=True, exist_ok=True)
        self.documents.mkdir(parents=True, exist_ok=True)

    def program(self, name):
        return str(self.programs / name)

    def made(self, kind, count, extension):
        path = self.data / f"{kind}-{count}.{extension}"
        if not path.exists():
            print(f"Making {path.name}", file=sys.stderr)
            unfinished = self.data / f"unfinished.{extension}"
            unfinished.unlink(missing_ok=True)
            subprocess.run([self.program("halvane_bench_data"), kind, str(count), str(unfinished)], check=True)
            unfinished.rename(path)
        return path

    def document(self, name):
        return self.documents / name

    def export(self, name, data, control):
        document = self.document(f"{name}.xml")
        command = [self.program("halvane"), "export", "--quiet", "--progress", "never", "--map", str(data)]
        return Rival(HALVANE, [[*command, str(control), str(document)]], document)

    def by_hand(self, name, data, program, title=BY_HAND):
        document = self.document(f"{name}-{program}.xml")
        steps = [[self.program(program), str(data), str(document)]]
        return Rival(title, steps, document, document="bytes")


def converters(files, name, data):
    """ogr2ogr to the formats that people turn into what they want."""
    for form, extension in (("GML", "gml"), ("GeoJSON", "geojson"), ("KML", "kml")):
        result = files.document(f"{name}.{extension}")
        passing = [result.with_suffix(".xsd")] if form == "GML" else []
        yield Rival(f"ogr2ogr to {form}", [["ogr2ogr", "-f", form, str(result), str(data)]], result, passing)


def transformed(files, name, data, stylesheet, rows):
    """ogr2ogr to GML, then a stylesheet that makes our document of it."""
    gml = files.document(f"{name}-transformed.gml")
    result = files.document(f"{name}-transformed.xml")
    steps = [
        ["ogr2ogr", "-f", "GML", str(gml), str(data)],
        ["xsltproc", "-o", str(result), str(stylesheet), str(gml)],
    ]
    return Rival("ogr2ogr to GML, xsltproc", steps, result, [gml, gml.with_suffix(".xsd")], "text", rows)


def scripted(files, name, data, script):
    """A Python script with the data library's bindings, where an interpreter has them."""
    for interpreter in (sys.executable, "/usr/bin/python3"):
        probe = [interpreter, "-c", "from osgeo import ogr"]
        if subprocess.run(probe, capture_output=True, check=False).returncode == 0:
            result = files.document(f"{name}-python.xml")
            steps = [[interpreter, str(RIVALS / script), str(data), str(result)]]
            return [Rival("by hand, Python", steps, result, document="bytes")]
    print("No Python with the data library's bindings: its row is left out", file=sys.stderr)
    return []


def layer_case(files, kind, rows, extension, with_others):
    name = kind if extension == "gpkg" else f"{kind}-{extension}"
    data = files.made(kind, rows, extension)
    rivals = [
        files.export(name, data, CONTROL / f"{kind}.xml"),
        files.by_hand(name, data, f"halvane_bench_{kind}"),
    ]
    if with_others:
        rivals += scripted(files, name, data, f"{kind}.py")
        rivals += converters(files, name, data)
    form = {"gpkg": "GeoPackage", "fgb": "FlatGeobuf"}[extension]
    return Case(name, f"{rows:,} {kind}, {form}", rows, BY_HAND, rivals)


def all_cases(files, quick):
    """Makers of the cases by name; a case's data is made only when the case is wanted."""
    share = 10 if quick else 1
    points, areas = 1_000_000 // share, 200_000 // share
    return {
        "points": lambda: layer_case(files, "points", points, "gpkg", True),
        "points-fgb": lambda: layer_case(files, "points", points, "fgb", False),
        "areas": lambda: layer_case(files, "areas", areas, "gpkg", True),
        "areas-fgb": lambda: layer_case(files, "areas", areas, "fgb", False),
    }


def missing_programs(cases):
    """Programs of others that are not installed."""
    names = {step[0] for case in cases for rival in case.rivals for step in rival.steps}
    return sorted(name for name in names if shutil.which(name) is None)
