#!/usr/bin/env python3
"""The packed component of Windows, unpacked and registered by its own scripts, used and taken back.

windows_package.py BUILD BUILD32: the folders of the 64-bit and of the 32-bit build.
"""
import pathlib
import shutil
import tempfile
import unittest
import zipfile

from windows_support import CSCRIPTS, RUNS_32, TOWN, clients, pack, town_of, windows_path, wine

import contents


def said(verdict):
    """What the scripts print: one line for each file."""
    if RUNS_32:
        return f"Halvane.dll {verdict}\nx86\\Halvane.dll {verdict}"
    return f"Halvane.dll {verdict}\nx86\\Halvane.dll is left out: this Windows runs no 32-bit programs."


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.archive = pathlib.Path(folder.name) / "Halvane.zip"
        pack(cls.archive.parent)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.unpack_archive(self.archive, self.folder)

    def script(self, name, *words):
        return wine("cmd", "/c", windows_path(self.folder / "Halvane" / name), *words)

    def regsvr32(self, name, *options):
        folder = "syswow64" if name.startswith("x86") else "system32"
        file = windows_path(self.folder / "Halvane" / name)
        return wine(rf"C:\windows\{folder}\regsvr32.exe", "/s", *options, file).returncode

    def test_is_the_same_every_time(self):
        pack(self.folder)
        self.assertEqual(self.archive.read_bytes(), (self.folder / "Halvane.zip").read_bytes())

    def test_holds_the_component_its_scripts_and_its_documents(self):
        with zipfile.ZipFile(self.archive) as archive:
            names = archive.namelist()
        for name in (
            "Halvane.dll", "Halvane.X.manifest", "x86/Halvane.dll", "x86/Halvane.X.manifest", "register.cmd", "unregister.cmd", "README.md", "LICENSE", "docs/windows.md",
            "docs/dialog.md", "docs/dialog-windows.png", "examples/countries.xml", "examples/windows/TownMap.js",
            "sdk/Halvane.h", "licenses/fmt.txt", "licenses/gcc-runtime.txt", "licenses/mingw-w64.txt",
        ):
            self.assertIn(f"Halvane/{name}", names)

    def test_follows_each_link_before_it_packs(self):
        page = "# A heading\n[a](docs/b.md#one-two) [b](#a-heading) [c](https://example.org)\n```\n[d](no)\n```\n"
        package = {"README.md": page.encode(), "docs/b.md": b"## One two\n[back](../README.md)\n"}
        self.assertEqual(contents.broken_links(package), [])
        package["docs/b.md"] = b"[e](c.md) [f](../README.md#nowhere) [g](#three)\n"
        self.assertEqual(
            contents.broken_links(package),
            ["README.md: docs/b.md#one-two", "docs/b.md: c.md", "docs/b.md: ../README.md#nowhere", "docs/b.md: #three"],
        )

    def test_has_samples_that_run_word_for_word(self):
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual(registered.returncode, 0)
        samples = self.folder / "Halvane" / "examples" / "windows"
        for program in CSCRIPTS:
            exported = wine(program, "//nologo", windows_path(samples / "export-town.js"))
            self.assertRegex(exported.stdout, r"^Wrote .*town-out\.xml\s*$")
            self.assertEqual(town_of(samples / "town-out.xml"), TOWN)
            (samples / "town-out.xml").unlink()
        nowhere = wine("cscript", "//nologo", windows_path(samples / "export-town.js"), r"Z:\nowhere\at\all")
        self.assertRegex(nowhere.stdout, r"^Nothing was written to Z:\\nowhere\\at\\all:")
        self.assertEqual(nowhere.returncode, 1)
        script = windows_path(samples / "export-town.vbs")
        without = wine("cscript", "//nologo", script, windows_path(self.folder))
        self.assertEqual(without.stdout.strip(), "no-map.xml: 0")
        self.assertIn("<Roads>", (self.folder / "no-map.xml").read_text(encoding="utf-8"))

    def test_is_registered_and_unregistered_by_its_scripts(self):
        self.assertEqual(set(clients(self.folder)), {"no class"})
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual((registered.returncode, registered.stdout.strip()), (0, said("is registered.")))
        self.assertEqual(set(clients(self.folder)), {"a value"})
        undone = self.script("unregister.cmd")
        self.assertEqual((undone.returncode, undone.stdout.strip()), (0, said("is not registered any more.")))
        self.assertEqual(set(clients(self.folder)), {"no class"})

    def test_is_not_registered_with_words_that_are_unknown(self):
        for name, words in (
            ("register.cmd", ["users"]), ("register.cmd", ["/?"]), ("register.cmd", ["user", "x"]),
            ("unregister.cmd", ["users"]), ("unregister.cmd", ["user", "undo"]),
        ):
            refused = self.script(name, *words)
            self.addCleanup(self.script, "unregister.cmd")
            self.assertEqual(refused.returncode, 2, (name, words))
            self.assertEqual(
                refused.stdout.strip(),
                f"Nothing was done: {name} does not take \"{words[-1]}\".\n"
                f"{name}         for the machine, as administrator\n{name} user    for the current user alone",
            )
        self.assertEqual(set(clients(self.folder)), {"no class"})

    @unittest.skipUnless(RUNS_32, "Wine runs no 32-bit programs here")
    def test_leaves_one_kind_when_the_other_is_undone(self):
        self.addCleanup(self.script, "unregister.cmd")
        for undone, left in (("Halvane.dll", ["no class", "a value"]), ("x86/Halvane.dll", ["a value", "no class"])):
            self.assertEqual(self.script("register.cmd").returncode, 0)
            self.assertEqual(self.regsvr32(undone, "/u"), 0)
            self.assertEqual(clients(self.folder), left)

    def test_says_when_it_cannot_be_registered(self):
        (self.folder / "Halvane" / "Halvane.dll").unlink()
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual(registered.returncode, 1)
        self.assertIn("\nIt cannot be loaded: it is missing here", registered.stdout)
        self.assertIn("Halvane.dll could not be registered.", registered.stdout)


if __name__ == "__main__":
    unittest.main()
