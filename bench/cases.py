"""What is measured: each case with its rivals."""
import dataclasses
import os
import pathlib
import shutil
import subprocess
import sys

BENCH = pathlib.Path(__file__).resolve().parent
SERVER = os.environ.get("HALVANE_TEST_POSTGRES")  # a database that may be written to
CONTROL = BENCH / "control"
RIVALS = BENCH / "rivals"

HALVANE = "halvane"
BY_HAND = "by hand, C++"
ONE_PASS = "by hand, C++, one pass"
QUERY_PER_PARENT = "by hand, C++, a query per parent"
SMALLEST = "halvane, the smallest export"
OPEN_ONLY = "a process that opens the file"
OPEN_ALL = "a loop that opens the files"


@dataclasses.dataclass
class Rival:
    """A way to the case's document, or to something like it."""

    name: str
    steps: list
    result: pathlib.Path = None
    passing: list = dataclasses.field(default_factory=list)  # files written on the way
    ours: pathlib.Path = None  # our document, which the result must equal
    bytewise: bool = True  # with its line breaks, or but for them
    sample_rows: int = 0  # how many rows it reads, where its figures are multiplied up to the case's rows
    items: int = 0  # what it handles, where the case's rivals differ in that
    same: bool = True  # what the comparison found; None: there was none


@dataclasses.dataclass
class Case:
    name: str
    title: str
    items: int  # rows, layers or control nodes
    reference: str  # the rival that the ratios refer to; "" for none
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
            if unfinished.is_dir():
                shutil.rmtree(unfinished)
            unfinished.unlink(missing_ok=True)
            subprocess.run([self.program("halvane_bench_data"), kind, str(count), str(unfinished)], check=True)
            unfinished.rename(path)
        return path

    def document(self, name):
        return self.documents / name

    def export(self, name, data, control, title=HALVANE):
        document = self.document(f"{name}.xml")
        command = [self.program("halvane"), "export", "--quiet", "--progress", "never", "--map", str(data)]
        return Rival(title, [[*command, str(control), str(document)]], document)

    def by_hand(self, ours, data, program, title=BY_HAND):
        """A program that writes what the rival `ours` writes."""
        document = self.document(f"{ours.result.stem}-{program}.xml")
        return Rival(title, [[self.program(program), str(data), str(document)]], document, ours=ours.result)


def converters(files, name, data):
    """ogr2ogr to the formats that people turn into what they want."""
    for form, extension in (("GML", "gml"), ("GeoJSON", "geojson"), ("KML", "kml")):
        result = files.document(f"{name}.{extension}")
        passing = [result.with_suffix(".xsd")] if form == "GML" else []
        yield Rival(f"ogr2ogr to {form}", [["ogr2ogr", "-f", form, str(result), str(data)]], result, passing=passing)


def transformed(files, kind, rows, sample_rows):
    """ogr2ogr to GML, then a stylesheet that makes our document of it, but for the line breaks.

    The stylesheet's processor holds both documents in memory, so it gets fewer rows.
    """
    data = files.made(kind, sample_rows, "gpkg")
    ours = files.export(f"{kind}-sample", data, CONTROL / f"{kind}.xml")
    gml = files.document(f"{kind}-transformed.gml")
    result = files.document(f"{kind}-transformed.xml")
    steps = [
        ["ogr2ogr", "-f", "GML", str(gml), str(data)],
        ["xsltproc", "-o", str(result), str(RIVALS / f"{kind}.xslt"), str(gml)],
    ]
    return Rival(
        "ogr2ogr to GML, xsltproc",
        steps,
        result,
        passing=[gml, gml.with_suffix(".xsd")],
        ours=ours,
        bytewise=False,
        sample_rows=sample_rows if sample_rows != rows else 0,
    )


def scripted(ours, data, kind):
    """A Python script with the data library's bindings, where an interpreter has them."""
    for interpreter in (sys.executable, "/usr/bin/python3"):
        probe = [interpreter, "-c", "from osgeo import ogr"]
        if subprocess.run(probe, capture_output=True, check=False).returncode == 0:
            result = ours.result.with_name(f"{kind}-python.xml")
            steps = [[interpreter, str(RIVALS / f"{kind}.py"), str(data), str(result)]]
            return [Rival("by hand, Python", steps, result, ours=ours.result)]
    print("No Python with the data library's bindings: its row is left out", file=sys.stderr)
    return []


def layer_case(files, kind, rows, sample_rows):
    """A layer of a GeoPackage, with every rival."""
    data = files.made(kind, rows, "gpkg")
    ours = files.export(kind, data, CONTROL / f"{kind}.xml")
    rivals = [ours, files.by_hand(ours, data, f"halvane_bench_{kind}"), *scripted(ours, data, kind)]
    rivals += converters(files, kind, data)
    rivals.append(transformed(files, kind, rows, sample_rows))
    return Case(kind, f"{rows:,} {kind}, GeoPackage", rows, BY_HAND, rivals)


def other_format_case(files, kind, rows):
    data = files.made(kind, rows, "fgb")
    ours = files.export(f"{kind}-fgb", data, CONTROL / f"{kind}.xml")
    rivals = [ours, files.by_hand(ours, data, f"halvane_bench_{kind}")]
    return Case(f"{kind}-fgb", f"{rows:,} {kind}, FlatGeobuf", rows, BY_HAND, rivals)


def one_shape_case(files, name, kind, count, title):
    """A layer of one feature, whose shape is large."""
    data = files.made(kind, count, "gpkg")
    ours = files.export(name, data, CONTROL / "areas.xml")
    rivals = [ours, files.by_hand(ours, data, "halvane_bench_areas")]
    return Case(name, title, count, BY_HAND, rivals)


def related_case(files, parents):
    data = files.made("related", parents, "gpkg")
    ours = files.export("related", data, CONTROL / "related.xml")
    rivals = [
        ours,
        files.by_hand(ours, data, "halvane_bench_related_pass", ONE_PASS),
        files.by_hand(ours, data, "halvane_bench_related", QUERY_PER_PARENT),
    ]
    return Case("related", f"{parents:,} parents, {5 * parents:,} related rows, no index", parents, ONE_PASS, rivals)


def nested_case(files, parents):
    data = files.made("nested", parents, "gpkg")
    ours = files.export("nested", data, CONTROL / "nested.xml")
    rivals = [ours, files.by_hand(ours, data, "halvane_bench_nested", ONE_PASS)]
    title = f"{parents:,} parents, {5 * parents:,} children, {15 * parents:,} grandchildren, no index"
    return Case("nested", title, parents, ONE_PASS, rivals)


def gpx_case(files, rows):
    data = files.made("points", rows, "gpkg")
    ours = files.export("gpx", data, CONTROL / "gpx.xml")
    rivals = [ours, files.by_hand(ours, data, "halvane_bench_gpx")]
    return Case("gpx", f"{rows:,} points as GPX, reprojected", rows, BY_HAND, rivals)


def server_case(files, rows):
    """A table of a server, whose rows are made anew: it is gone at the end."""
    print("Filling a table of the server", file=sys.stderr)
    subprocess.run([files.program("halvane_bench_data"), "server-points", str(rows), f"PG:{SERVER}"], check=True)
    server_map = files.data / "server.xml"
    server_map.write_text(
        f'<MapDocument><Connection name="Server" database="PG:{SERVER}"/><Map name="Map">'
        '<FeatureLayer name="points" connection="Server" dataset="points"/></Map></MapDocument>\n'
    )
    ours = files.export("server", server_map, CONTROL / "server.xml")
    hand = files.by_hand(ours, SERVER, "halvane_bench_server")
    gml = files.document("server.gml")
    convert = [["ogr2ogr", "-f", "GML", str(gml), f"PG:{SERVER}", "points"]]
    converter = Rival("ogr2ogr to GML", convert, gml, passing=[gml.with_suffix(".xsd")])
    return Case("server", f"{rows:,} points, PostGIS", rows, BY_HAND, [ours, hand, converter])


def structure_case(files, layers):
    data = files.made("structure", layers, "folder")
    ours = files.export("structure", data, files.made("structure-control", layers, "xml"))
    rivals = [ours, files.by_hand(ours, data, "halvane_bench_structure")]
    return Case("structure", f"{layers:,} layers and tables, described", layers, BY_HAND, rivals)


def tree_case(files, nodes):
    """The smallest export takes turns with the large one: what it takes is no walking of nodes."""
    data = files.made("small", 10, "gpkg")
    ours = files.export("tree", data, files.made("tree-control", nodes, "xml"))
    smallest = files.export("tree-smallest", data, CONTROL / "smallest.xml", SMALLEST)
    return Case("tree", f"{nodes:,} control nodes, small map", nodes, SMALLEST, [ours, smallest], least_runs=11)


def start_case(files):
    data = files.made("small", 10, "gpkg")
    ours = files.export("start", data, CONTROL / "smallest.xml")
    bare = Rival(OPEN_ONLY, [[files.program("halvane_bench_open"), str(data), "-"]])
    return Case("start", "the smallest export", 1, OPEN_ONLY, [ours, bare], least_runs=31)


def folder_case(files, count):
    """Everything that a control file could name in a folder, beside the least that this takes."""
    data = files.made("files", count, "folder")
    ours = Rival(HALVANE, [[files.program("halvane"), "describe", str(data)]])
    loop = Rival(OPEN_ALL, [[files.program("halvane_bench_open_all"), str(data), "-"]])
    return Case("folder", f"a folder of {count:,} files, described", count, OPEN_ALL, [ours, loop])


def growth_case(files, sizes):
    rivals = []
    for rows in sizes:
        data = files.made("points", rows, "gpkg")
        ours = files.export(f"growth-{rows}", data, CONTROL / "points.xml", f"{HALVANE}, {rows:,} rows")
        ours.items = rows
        rivals.append(ours)
    hand = files.by_hand(ours, data, "halvane_bench_points", f"{BY_HAND}, {rows:,} rows")
    hand.items = rows
    return Case("growth", "points, GeoPackage", max(sizes), "", [*rivals, hand])


def all_cases(files, quick):
    """Makers of the cases by name; a case's data is made only when the case is wanted."""
    share = 10 if quick else 1
    points, areas = 1_000_000 // share, 200_000 // share
    vertices, rings = 3_000_000 // share, 1_000_000 // share
    sizes = [10_000 // share, 100_000 // share, (10_000_000 if files.large else 1_000_000) // share]
    cases = {
        "points": lambda: layer_case(files, "points", points, points // 10),
        "points-fgb": lambda: other_format_case(files, "points", points),
        "areas": lambda: layer_case(files, "areas", areas, areas // 10),
        "areas-fgb": lambda: other_format_case(files, "areas", areas),
        "huge-shape": lambda: one_shape_case(
            files, "huge-shape", "huge-area", vertices, f"one area of {vertices:,} vertices, GeoPackage"
        ),
        "many-parts": lambda: one_shape_case(
            files, "many-parts", "area-of-rings", rings, f"one area of {rings:,} rings, GeoPackage"
        ),
        "related": lambda: related_case(files, 20_000 // share),
        "nested": lambda: nested_case(files, 20_000 // share),
        "gpx": lambda: gpx_case(files, points),
        "structure": lambda: structure_case(files, 5_000 // share),
        "tree": lambda: tree_case(files, 20_000),
        "start": lambda: start_case(files),
        "folder": lambda: folder_case(files, 1_000 // share),
        "growth": lambda: growth_case(files, sizes),
    }
    if SERVER is not None:
        cases["server"] = lambda: server_case(files, points)
    return cases


def missing_programs(cases):
    """Programs of others that are not installed."""
    names = {step[0] for case in cases for rival in case.rivals for step in rival.steps}
    return sorted(name for name in names if shutil.which(name) is None)
