#!/usr/bin/env python3
"""The Python module over the library of a built tree.

    halvane_test.py PROGRAM LIBRARY PROCESSORS OTHERS

PROCESSORS are those of the examples, OTHERS those of the tests.
"""
import contextlib
import dataclasses
import datetime
import http.server
import io
import json
import os
import pathlib
import re
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import types
import typing
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLES = ROOT / "examples"
PROGRAM, LIBRARY, PROCESSOR, SIGNALS = (str(pathlib.Path(argument).resolve()) for argument in sys.argv[1:5])

os.environ["HALVANE_LIBRARY"] = LIBRARY
sys.path.insert(0, str(ROOT / "python"))
import halvane  # pylint: disable=wrong-import-position
from halvane._json import json_name  # pylint: disable=wrong-import-position

TOWNS = json.dumps({"type": "FeatureCollection", "name": "towns", "features": [
    {"type": "Feature", "id": number, "properties": {"NAME": name},
     "geometry": {"type": "Point", "coordinates": [number, number]}}
    for number, name in enumerate(("Abdera", "Byblos", "Corinth"), 1)]})
CONTROL = """<T Name="Map">
  <L Name="Towns" DataSource="MapLayer" Identity="LayerName" IdentityValue="towns">
    <E Name="Town" DataSource="Feature" Entries="Multiple"><F Name="Name" IdentityValue="{field}"/></E></L></T>"""


class WithFolder(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(prefix="halvane-python-")
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.map, self.control, self.output = (self.folder / name for name in ("towns.geojson", "control.xml", "out.xml"))
        self.map.write_text(TOWNS, encoding="utf-8")
        self.control.write_text(CONTROL.format(field="NAME"), encoding="utf-8")

    def export(self, **settings):
        return halvane.export(self.map, self.control, self.output, **settings)

    def report_of_program(self):
        file = self.folder / "report.json"
        subprocess.run([PROGRAM, "export", "--report", file, "--map", self.map, self.control, self.output], check=False,
                       capture_output=True)
        return json.loads(file.read_text(encoding="utf-8"))


class Export(WithFolder):
    def test_writes_the_document_and_returns_the_report(self):
        report = self.export()
        self.assertIn("<Name>Corinth</Name>", self.output.read_text(encoding="utf-8"))
        self.assertIs(report.outcome, halvane.Outcome.WRITTEN)
        self.assertEqual((report.items, report.document, report.problems), (3, str(self.output), ()))
        self.assertGreater(report.duration_seconds, 0)

    def test_returns_what_the_program_reports_of_an_incomplete_document(self):
        self.control.write_text(CONTROL.format(field="NAM").replace(
            "<F ", '<X Name="Zone" DataSource="External" IdentityValue="Acme.Zone"/><F '), encoding="utf-8")
        report = self.export()
        expected = self.report_of_program()
        self.assertIs(report.outcome, halvane.Outcome.INCOMPLETE)
        self.assertEqual([present(one) for one in report.failures], expected["failures"])
        self.assertEqual([present(one) for one in report.notices], expected["notices"])
        self.assertEqual((report.failures[0].count, report.notices[0].kind), (3, "FieldNotFound"))

    def test_writes_every_example_as_it_is_expected(self):
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(EXAMPLES)  # without a map, locations are relative to it
        os.environ["SOURCE_DATE_EPOCH"] = "1763856000"
        self.addCleanup(os.environ.pop, "SOURCE_DATE_EPOCH")
        for example in json.loads((EXAMPLES / "examples.json").read_text(encoding="utf-8")):
            # Values of --set are the command line's alone.
            if example.get("command", "export") != "export" or "--set" in example["arguments"]:
                continue
            with self.subTest(example["name"]):
                *options, control = example["arguments"]
                given = {}
                for option, value in zip(options[::2], options[1::2]):
                    given.setdefault(option, []).append(value.replace("{processor}", PROCESSOR))
                file = {option: EXAMPLES / given[option][0] for option in ("--map", "--xml") if option in given}
                tags = (file["--xml"], given["--node-path"][0]) if "--xml" in given else None
                halvane.export(file.get("--map"), EXAMPLES / control, self.output, tags=tags, select=given.get("--select", ()),
                               processors=given.get("--processor", ()), sync=False)
                today = datetime.date.today().strftime("%m/%d/%Y")
                written = self.output.read_bytes().replace(today.encode(), b"TODAY")
                self.assertEqual(written.replace(str(EXAMPLES).encode(), b"EXAMPLES"),
                                 (EXAMPLES / "expected" / example.get("document", f"{example['name']}.xml")).read_bytes())

    def test_raises_with_the_report_where_an_input_is_unfit(self):
        self.map.unlink()
        with self.assertRaises(halvane.Error) as raised:
            self.export()
        self.assertNotIsInstance(raised.exception, halvane.Cancelled)
        self.assertIn("towns.geojson", str(raised.exception))
        self.assertIs(raised.exception.report.outcome, halvane.Outcome.REFUSED)
        self.assertEqual(raised.exception.report.problems, (str(raised.exception),))
        self.assertFalse(self.output.exists())

    def test_reaches_servers_of_a_project_only_where_that_is_allowed(self):
        project = self.folder / "city.qgs"
        project.write_text("<qgis><projectlayers><maplayer type='vector'><id>f</id><provider>postgres</provider><datasource>"
                           "dbname='gis' host=127.0.0.1 port=1 table=\"t\" (g) sql=</datasource></maplayer></projectlayers></qgis>",
                           encoding="utf-8")
        for allowed in (False, True):
            with self.subTest(allowed):
                report = halvane.export(project, self.control, self.output, allow_connections=allowed)
                self.assertNotEqual(any("--allow-connections" in warning for warning in report.warnings), allowed)
                description = halvane.describe(project, allow_connections=allowed)
                self.assertNotEqual("--allow-connections" in str(description), allowed)

    def test_takes_paths_as_the_system_has_them(self):
        odd = os.fsencode(self.folder) + b"/out-\xff.xml"
        halvane.export(os.fsencode(self.map), str(self.control), odd)
        self.assertTrue(os.path.exists(odd))

    def test_refuses_what_has_no_meaning(self):
        for settings in ({"item_limit": 0}, {"item_limit": 2**64 + 1}, {"select": ["towns=1\0"]}, {"processors": ["a\0b"]}):
            with self.subTest(settings), self.assertRaises(ValueError):
                self.export(**settings)
        self.assertFalse(self.output.exists())

    def test_ends_a_repeated_node_at_the_limit(self):
        self.assertIs(self.export(item_limit=2).outcome, halvane.Outcome.INCOMPLETE)

    def test_tells_the_lines_of_the_program(self):
        told = []
        self.export(message=lambda level, text: told.append((level, text)))
        self.assertEqual(told, [(halvane.MessageLevel.RESULT, f"Wrote {self.output} (3 items)")])

    def test_tells_progress(self):
        told = []
        self.export(progress=told.append)
        self.assertEqual((told[0], told[-1]), (1, 3))

    def test_is_cancelled_by_a_progress_that_returns_false(self):
        self.output.write_text("<Old/>", encoding="utf-8")
        with self.assertRaises(halvane.Cancelled) as raised:
            self.export(progress=lambda items: False)
        self.assertIs(raised.exception.report.outcome, halvane.Outcome.CANCELLED)
        self.assertEqual(self.output.read_text(encoding="utf-8"), "<Old/>")

    def test_raises_what_progress_raises(self):
        self.output.write_text("<Old/>", encoding="utf-8")
        with self.assertRaises(ZeroDivisionError):
            self.export(progress=lambda items: 1 / 0)
        self.assertEqual(self.output.read_text(encoding="utf-8"), "<Old/>")

    def test_raises_what_a_message_raises(self):
        def fail(level, text):
            raise LookupError
        with self.assertRaises(LookupError):
            self.export(message=fail)

    def test_is_cancelled_from_the_keyboard_where_nobody_is_told(self):
        # A processor of the export sends the signal.
        self.control.write_text(CONTROL.format(field="NAME").replace(
            "<F ", '<X Name="Interrupt" DataSource="External" IdentityValue="Test.Interrupt"/><F '), encoding="utf-8")
        script = ("import halvane, sys\n"
                  "try:\n"
                  "    halvane.export(*sys.argv[1:4], processors=sys.argv[4:])\n"
                  "except KeyboardInterrupt:\n"
                  "    sys.exit(7)\n")
        done = subprocess.run([sys.executable, "-B", "-c", script, self.map, self.control, self.output, SIGNALS], check=False,
                              env={**os.environ, "PYTHONPATH": str(ROOT / "python")})
        self.assertEqual(done.returncode, 7)
        self.assertFalse(self.output.exists())


class Threads(WithFolder):
    def test_of_python_run_while_it_exports(self):
        counted = []
        control = self.control.read_bytes()

        class Answer(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                for number in range(200_000):
                    counted[:] = [number]
                self.send_response(200)
                self.send_header("Content-Length", str(len(control)))
                self.end_headers()
                self.wfile.write(control)

            def log_message(self, *arguments):
                pass

        # The library waits for a control file that a thread of this very process sends.
        with http.server.HTTPServer(("127.0.0.1", 0), Answer) as server:
            thread = threading.Thread(target=server.serve_forever)
            thread.start()
            try:
                report = halvane.export(self.map, f"http://127.0.0.1:{server.server_port}/control.xml", self.output)
            finally:
                server.shutdown()
                thread.join()
        self.assertEqual((report.items, counted), (3, [199_999]))

    def test_export_in_turns(self):
        failed = []

        def work(number):
            for _ in range(5):
                if halvane.export(self.map, self.control, self.folder / f"{number}.xml", sync=False).items != 3:
                    failed.append(number)

        threads = [threading.Thread(target=work, args=[number]) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failed, [])
        self.assertEqual(len({(self.folder / f"{number}.xml").read_bytes() for number in range(4)}), 1)

    def test_refuse_an_export_inside_a_callback(self):
        seen = []

        def progress(items):
            try:
                self.export()
            except halvane.Error as error:
                seen.append(str(error))

        self.assertEqual(self.export(progress=progress).items, 3)
        self.assertEqual(set(seen), {"a run cannot be started by what it calls back"})


class Process(WithFolder):
    """The library is a guest in it."""

    def test_keeps_its_own_databases(self):
        database = self.folder / "city.gpkg"
        shutil.copy(EXAMPLES / "data" / "city.gpkg", database)
        inside = []

        def write_elsewhere(items):
            with sqlite3.connect(":memory:") as own:
                own.execute("CREATE TABLE t (i)")
                inside.append(own.execute("INSERT INTO t VALUES (random()) RETURNING i").fetchone())

        (self.folder / "city.xml").write_text(CONTROL.format(field="name").replace('"towns"', '"bridges"'), encoding="utf-8")
        report = halvane.export(database, self.folder / "city.xml", self.output, progress=write_elsewhere)
        self.assertGreater(report.items, 0)
        self.assertTrue(inside)
        with sqlite3.connect(database) as same:
            same.execute("CREATE TABLE mine (i)")
            same.execute("INSERT INTO mine VALUES (random())")
            self.assertEqual(same.execute("SELECT count(*) FROM mine").fetchone(), (1,))

    def test_keeps_its_signals(self):
        before = [signal.getsignal(number) for number in signal.valid_signals()]
        self.export()
        self.assertEqual([signal.getsignal(number) for number in signal.valid_signals()], before)


class Describe(WithFolder):
    def test_returns_what_the_program_describes(self):
        for name in ("world.xml", "city.xml"):
            with self.subTest(name):
                done = subprocess.run([PROGRAM, "describe", "--json", EXAMPLES / name], capture_output=True, check=True)
                self.assertEqual(as_json(halvane.describe(EXAMPLES / name)), without_absent(json.loads(done.stdout)))

    def test_raises_where_there_is_no_map(self):
        with self.assertRaisesRegex(halvane.Error, "none.gpkg"):
            halvane.describe(self.folder / "none.gpkg")


def as_json(value):
    """A data class as the object it was made of; what is None or empty and may be absent is left out."""
    if dataclasses.is_dataclass(value):
        return {json_name(field.name): as_json(getattr(value, field.name)) for field in dataclasses.fields(value)
                if field.default is dataclasses.MISSING or getattr(value, field.name) not in (None, ())}
    if isinstance(value, tuple):
        return [as_json(item) for item in value]
    return value


def without_absent(value, layer_members=("selected", "spatialReference", "featureClass", "file", "workspace", "layers")):
    """The same for the JSON of a layer, whose members may be null though they are there."""
    if isinstance(value, dict):
        is_layer = "kind" in value and "kindCode" not in value
        return {name: without_absent(member) for name, member in value.items()
                if not (is_layer and name in layer_members and member is None)}
    if isinstance(value, list):
        return [without_absent(item) for item in value]
    return value


class Notebook(WithFolder):
    def test_of_the_page_works(self):
        page = (ROOT / "docs" / "embedding.md").read_text(encoding="utf-8")
        code = re.findall(r"^In a notebook.*?^```python\n(.*?)^```$", page, flags=re.MULTILINE | re.DOTALL)[0]
        shutil.copytree(EXAMPLES, self.folder / "examples")
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(self.folder / "examples")
        variables = {}
        with contextlib.redirect_stdout(io.StringIO()) as printed:
            exec(code, variables)  # pylint: disable=exec-used
        self.assertIn("Countries", variables["names"])
        self.assertTrue(printed.getvalue().endswith(f"8 items in {os.getcwd()}/out.xml and 0 failures\n"))
        self.assertEqual(pathlib.Path("out.xml").read_bytes(), (EXAMPLES / "expected" / "continents.xml").read_bytes())


class Types(unittest.TestCase):
    def expect_fields(self, kind, schema, definitions, seen):
        """Every member of a schema's object is a field of the data class, and every field a member."""
        schema = definitions[schema["$ref"].rpartition("/")[2]] if "$ref" in schema else schema
        if (kind, id(schema)) in seen:
            return
        seen.add((kind, id(schema)))
        hints = typing.get_type_hints(kind)
        names = {json_name(field.name): field for field in dataclasses.fields(kind)}
        self.assertEqual(set(names), set(schema["properties"]), kind)
        for name, member in schema["properties"].items():
            optional = name not in schema["required"]
            self.assertEqual(names[name].default is not dataclasses.MISSING, optional, f"{kind}.{name}")
            inner, nullable = plain(hints[names[name].name])
            resolved = definitions[member["$ref"].rpartition("/")[2]] if "$ref" in member else member
            self.assertEqual(nullable, "null" in resolved["type"] or (optional and name != "notReadable"), f"{kind}.{name}")
            if typing.get_origin(inner) is tuple:
                inner, _ = plain(typing.get_args(inner)[0])
                resolved = resolved["items"]
            if dataclasses.is_dataclass(inner):
                self.expect_fields(inner, resolved, definitions, seen)

    def test_are_those_of_the_schemas(self):
        for kind, name in ((halvane.Report, "report"), (halvane.Description, "describe")):
            schema = json.loads((ROOT / "docs" / f"{name}.schema.json").read_text(encoding="utf-8"))
            seen = set()
            self.expect_fields(kind, schema, schema.get("$defs", {}), seen)
            self.assertGreaterEqual(len(seen), 5)
        outcomes = json.loads((ROOT / "docs" / "report.schema.json").read_text(encoding="utf-8"))["properties"]["outcome"]
        self.assertEqual([outcome.value for outcome in halvane.Outcome], outcomes["enum"])

    def test_hold(self):
        if shutil.which("mypy") is None:
            self.skipTest("there is no mypy to check types with")
        done = subprocess.run(["mypy", "--strict", "--no-incremental", "--cache-dir", os.devnull, ROOT / "python" / "halvane",
                               EXAMPLES / "embedding" / "export.py"], capture_output=True, text=True, check=False,
                              env={**os.environ, "MYPYPATH": str(ROOT / "python")})
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_every_function_of_the_header_is_declared(self):
        header = (ROOT / "include" / "halvane.h").read_text(encoding="utf-8")
        for name in halvane._library._SIGNATURES:  # pylint: disable=protected-access
            self.assertIn(f"halvane_{name}(", header)


def present(one):
    """A data class as the report has it: members that are optional there are left out where they hold nothing."""
    return {name: value for name, value in dataclasses.asdict(one).items() if value is not None}


def plain(hint):
    """A type without None, and whether None was in it."""
    if isinstance(hint, types.UnionType):
        return next(one for one in typing.get_args(hint) if one is not type(None)), True
    return hint, False


class Import(unittest.TestCase):
    def test_says_what_to_do_where_the_library_is_not(self):
        done = subprocess.run([sys.executable, "-B", "-c", "import halvane"], capture_output=True, text=True, check=False,
                              env={**os.environ, "HALVANE_LIBRARY": "/nowhere/libhalvane.so.0",
                                   "PYTHONPATH": str(ROOT / "python")})
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"ImportError: the library of Halvane cannot be loaded: .*HALVANE_LIBRARY")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
