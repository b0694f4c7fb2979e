"""What the cross-checks share: running the program, and the programs that it is compared with.

    <script> PROGRAM [unittest options]

Every script compares what the program writes with what a program of other authors says of the same data.
"""
import contextlib
import csv
import io
import json
import os
import pathlib
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import xml.etree.ElementTree as ElementTree

HERE = pathlib.Path(__file__).resolve().parent
DATA = HERE / "data"
EXAMPLES = HERE.parent.parent / "examples"
PROGRAM = None

# One long text for each assertion that fails would bury its beginning.
unittest.TestCase.maxDiff = 2000


def require(*tools):
    """Skips, with the reason shown, where a tool is not installed."""
    missing = [tool for tool in tools if shutil.which(tool) is None]
    return unittest.skipIf(missing, f"not installed: {', '.join(missing)}")


def run(*arguments, stdin=None, environment=None):
    """The standard output of another program; its failure is one of the test."""
    result = subprocess.run([str(argument) for argument in arguments], input=stdin, capture_output=True,
                            env={**os.environ, **(environment or {})}, check=False)
    if result.returncode != 0:
        raise AssertionError(f"{arguments[0]} ended with {result.returncode}: {result.stderr.decode()}")
    return result.stdout.decode("utf-8", "replace")


def sql(database, statement):
    """Rows (None for null) as the database's own library gives them: its shell writes control characters its own way."""
    with contextlib.closing(sqlite3.connect(f"file:{urllib.parse.quote(str(database))}?mode=ro", uri=True)) as opened:
        return [list(row) for row in opened.execute(statement)]


def rows_of_text(lines):
    """The rows of a layer with shapes as text of the converter: dicts. The shape comes first and is called "WKT" here."""
    reader = csv.reader(lines)
    names = ["WKT", *next(reader)[1:]]
    return [dict(zip(names, row)) for row in reader]


def reference_rows(source, layer=None, *options):
    """The features of a layer as the data library's own converter writes them: dicts with WKT for the shape."""
    names = [layer] if layer else []
    text = run("ogr2ogr", "-f", "CSV", "/vsistdout/", source, *names, "-lco", "GEOMETRY=AS_WKT", *options)
    return rows_of_text(io.StringIO(text, newline=""))


def reference_layers(source, folder):
    """The same of all layers of a dataset, by the layer's name."""
    run("ogr2ogr", "-f", "CSV", folder, source, "-lco", "GEOMETRY=AS_WKT")
    layers = {}
    for file in folder.glob("*.csv"):
        with file.open(encoding="utf-8", newline="") as text:
            layers[file.stem] = rows_of_text(text)
    shutil.rmtree(folder)
    return layers


class CrossCheck(unittest.TestCase):
    """A test with a temporary folder."""

    def setUp(self):
        self._folder = tempfile.TemporaryDirectory(prefix="halvane-crosscheck-")
        self.addCleanup(self._folder.cleanup)
        self.folder = pathlib.Path(self._folder.name)

    def export(self, control, data, *options, messages=""):
        """The root of the document that a control file gives for some data; the messages are those expected."""
        (self.folder / "control.xml").write_text(control, encoding="utf-8")
        output = self.folder / "output.xml"
        result = subprocess.run([PROGRAM, "export", "--progress", "never", "--map", str(data), *options,
                                 str(self.folder / "control.xml"), str(output)], capture_output=True, check=False)
        found = result.stderr.decode("utf-8", "replace")
        self.assertEqual(result.returncode, 0, found)
        self.assertEqual(found, messages)
        return ElementTree.parse(output).getroot()

    def describe(self, data):
        """What the program says of a map, as JSON."""
        return json.loads(run(PROGRAM, "describe", data, "--json"))

    def described_layers(self, data):
        return {layer["name"]: layer for layer in self.describe(data)["maps"][0]["layers"]}

    def make(self, target, source, *options, driver=None):
        """Data made by the data library's converter."""
        run("ogr2ogr", *(["-f", driver] if driver else []), target, source, *options)
        return target


def main():
    global PROGRAM
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    PROGRAM = str(pathlib.Path(sys.argv.pop(1)).resolve())
    # The scripts import this module by its name; the one that runs is another.
    sys.modules["support"].PROGRAM = PROGRAM
    unittest.main(module="__main__", verbosity=2)
