#!/usr/bin/env python3
"""Installs a built tree into a folder, and uses it from there as others do.

    installed.py BUILD VERSION
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLES = ROOT / "examples"
EMBEDDING = EXAMPLES / "embedding"
BUILD, VERSION = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2]
STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]


def run(*command, code=0, **settings):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, encoding="utf-8", check=False,
                          **settings)
    if done.returncode != code:
        raise AssertionError(f"{command}: ended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix="halvane-install-")
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = pathlib.Path(cls.temporary.name)
        cls.prefix = cls.folder / "halvane"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.library = next(cls.prefix.glob("lib*/**/libhalvane.so.0")).parent
        cls.environment = {**os.environ, "CMAKE_GENERATOR": "Ninja", "LD_LIBRARY_PATH": str(cls.library),
                           "PKG_CONFIG_PATH": str(cls.library / "pkgconfig"), "CMAKE_PREFIX_PATH": str(cls.prefix)}

    def cmake(self, source, name):
        """Builds a project outside the tree with what is installed, and returns where."""
        copy, build = self.folder / name, self.folder / f"{name}-build"
        shutil.copytree(source, copy)
        run("cmake", "-S", copy, "-B", build, env=self.environment)
        run("cmake", "--build", build, env=self.environment)
        return build

    def exports(self, program):
        """Runs one of the programs on an example, and compares what it writes and reports."""
        output = self.folder / "output.xml"
        output.unlink(missing_ok=True)
        done = run(program, EXAMPLES / "world.xml", EXAMPLES / "continents.xml", output, env=self.environment)
        self.assertEqual(output.read_bytes(), (EXAMPLES / "expected" / "continents.xml").read_bytes())
        report = json.loads(done.stdout)
        self.assertEqual(report["program"], f"halvane {VERSION}")
        self.assertEqual(report["outcome"], "written")
        self.assertEqual(done.stderr.split("\n")[-2], f"{report['items']} items")

    def refuses(self, program):
        done = run(program, EXAMPLES / "none.xml", EXAMPLES / "continents.xml", self.folder / "never.xml", code=2,
                   env=self.environment)
        self.assertEqual(done.stdout, "")
        self.assertIn("none.xml", done.stderr)
        self.assertFalse((self.folder / "never.xml").exists())

    def test_programs_find_the_package(self):
        build = self.cmake(EMBEDDING, "embedding")
        for name in ("export_c", "export_cpp"):
            with self.subTest(name):
                self.exports(build / name)
                self.refuses(build / name)

    def test_python_finds_the_module(self):
        module = next(self.prefix.glob("lib/**/halvane/__init__.py")).parent.parent
        self.assertEqual(run(sys.executable, "-c", "import halvane; print(halvane.__version__)",
                             env={**self.environment, "PYTHONPATH": str(module)}).stdout, f"{VERSION}\n")
        output = self.folder / "from-python.xml"
        done = run(sys.executable, EMBEDDING / "export.py", EXAMPLES / "world.xml", EXAMPLES / "continents.xml", output,
                   env={**self.environment, "PYTHONPATH": str(module)})
        self.assertEqual(output.read_bytes(), (EXAMPLES / "expected" / "continents.xml").read_bytes())
        self.assertRegex(done.stdout, rf"\A[1-9][0-9]* fields\nwritten {re.escape(str(output))} 8\n\Z")
        self.assertTrue((module / "halvane" / "py.typed").exists())

    def test_pkg_config_says_how_to_build(self):
        self.assertEqual(run("pkg-config", "--modversion", "halvane", env=self.environment).stdout.strip(), VERSION)
        flags = run("pkg-config", "--cflags", "--libs", "halvane", env=self.environment).stdout.split()
        for compiler, standard, source in (("cc", "-std=c99", "export.c"), ("c++", "-std=c++17", "export.cpp")):
            with self.subTest(source):
                program = self.folder / f"from-{source}"
                run(compiler, standard, *STRICT, "-o", program, EMBEDDING / source, *flags)
                self.exports(program)

    def test_a_processor_is_built_outside_the_tree(self):
        library = self.cmake(EXAMPLES / "processor", "processor") / "lib" / "liblayer_report.so"
        output = self.folder / "related.xml"
        run(self.prefix / "bin" / "halvane", "export", "--map", EXAMPLES / "world.xml", "--processor", library,
            EXAMPLES / "related.xml", output)
        self.assertEqual(output.read_bytes(), (EXAMPLES / "expected" / "related.xml").read_bytes())

    def test_the_library_shows_the_functions_of_its_header_alone(self):
        header = (self.prefix / "include" / "halvane.h").read_text(encoding="utf-8")
        declared = set(re.findall(r"^HALVANE_API .*?\b(halvane_\w+)\(", header, flags=re.MULTILINE))
        symbols = run("nm", "-D", "--defined-only", self.library / "libhalvane.so.0").stdout
        shown = {line.split()[-1].partition("@")[0] for line in symbols.splitlines() if " A " not in line}
        self.assertEqual(shown, declared)
        self.assertGreater(len(declared), 15)
        self.assertIn("[libhalvane.so.0]", run("readelf", "-d", self.library / "libhalvane.so.0").stdout)

    def test_the_program_stands_alone(self):
        self.assertEqual(run(self.prefix / "bin" / "halvane", "--version").stdout, f"halvane {VERSION}\n")

    def test_nothing_names_where_it_was_built(self):
        # A tree in a folder such as "/halvane" is not what "include/halvane.h" names.
        places = re.compile("|".join(rf"(?<![\w./-]){re.escape(str(place))}/" for place in (ROOT, BUILD)).encode())
        for path in self.prefix.rglob("*"):
            if path.is_file() and path.suffix in (".cmake", ".pc", ".h", ".hpp", ".1", ".3", ".5"):
                content = path.read_bytes()
                self.assertIsNone(places.search(content), path)

    def test_schemas_are_installed(self):
        names = {path.name for path in (self.prefix / "share" / "halvane").iterdir()}
        docs = (ROOT / "docs").iterdir()
        self.assertEqual(names, {path.name for path in docs if path.name.endswith((".schema.json", ".xsd", ".rng"))})
        self.assertIn("control-file.rng", names)

    def test_shells_find_their_completions(self):
        for path in ("bash-completion/completions/halvane", "fish/vendor_completions.d/halvane.fish"):
            self.assertTrue((self.prefix / "share" / path).is_file(), path)

    def test_the_manual_has_its_pages(self):
        if shutil.which("lowdown") is None:
            self.skipTest("there is no lowdown to write the manual with")
        for page in ("halvane.1", "halvane-check.1", "halvane-control-file.5", "halvane-map-document.5", "libhalvane.3"):
            with self.subTest(page):
                name, _, section = page.partition(".")
                text = (self.prefix / "share" / "man" / f"man{section}" / page).read_text(encoding="utf-8")
                self.assertRegex(text[:200], rf'\A\'\\" t\n\.TH "{name}" "{section}" "" "halvane {VERSION}"\n'
                                       rf"\.SH NAME\n{name} \\- \w.*\n")
                self.assertEqual(re.findall(r"\S+\.md\b", text), [])


class Page(unittest.TestCase):
    """docs/embedding.md prints the programs that are tested here."""

    def test_it_prints_the_programs(self):
        page = (ROOT / "docs" / "embedding.md").read_text(encoding="utf-8")
        for language, name in (("c", "export.c"), ("cmake", "CMakeLists.txt"), ("cpp", "export.cpp"),
                               ("python", "export.py")):
            with self.subTest(name):
                self.assertIn(f"```{language}\n{(EMBEDDING / name).read_text(encoding='utf-8')}```\n", page)

    def test_the_version_is_the_one_that_changes_are_listed_for(self):
        self.assertIn(f"\n## {VERSION}\n", (ROOT / "CHANGELOG.md").read_text(encoding="utf-8"))
        page = (ROOT / "docs" / "command-line.md").read_text(encoding="utf-8")
        self.assertIn(f'"program": "halvane {VERSION}"', page)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
