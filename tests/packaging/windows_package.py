#!/usr/bin/env python3
"""The packed component of Windows, unpacked and registered by its own scripts, used and taken back.

windows_package.py BUILD: the folder of a Windows build.
"""
import importlib.machinery
import importlib.util
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop(1)).resolve()

CLIENT = r"""
try {
  var names = WScript.CreateObject("Halvane.dCollection");
  names.Add("a value", "a key");
  WScript.Echo(names.GetValue("A KEY"));
} catch (e) {
  WScript.Echo("no class");
}
"""


TOWN = """<Town>
<Roads>
<Layer>Roads</Layer>
<Road>
<Name>Mill Lane</Name>
<Width>6.5</Width>
</Road>
<Road>
<Name>\u00c4hrenweg &lt;north&gt;</Name>
<Width>2.25</Width>
</Road>
<Road>
<Name>Quay</Name>
<Width/>
</Road>
</Roads>
</Town>"""


def packing():
    """The packing program as a module."""
    loader = importlib.machinery.SourceFileLoader("pack_windows", str(ROOT / "tools" / "pack-windows"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


def pack(folder):
    archive = folder / "Halvane.zip"
    subprocess.run([ROOT / "tools" / "pack-windows", BUILD, archive], check=True, stdout=subprocess.DEVNULL)
    return archive


def wine(*arguments):
    return subprocess.run(
        [ROOT / "tools" / "with-wine", *arguments], check=False, capture_output=True, text=True, timeout=120
    )


class Package(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.archive = pack(self.folder)
        with zipfile.ZipFile(self.archive) as archive:
            archive.extractall(self.folder)
        (self.folder / "client.js").write_text(CLIENT, encoding="ascii")

    def script(self, name):
        return wine("cmd", "/c", "Z:" + str(self.folder / "Halvane" / name).replace("/", "\\"))

    def client(self):
        return wine("cscript", "//nologo", f"Z:{self.folder}/client.js").stdout.strip()

    def test_is_the_same_every_time(self):
        first = self.archive.read_bytes()
        self.assertEqual(first, pack(self.folder).read_bytes())

    def test_holds_the_component_its_scripts_and_its_documents(self):
        with zipfile.ZipFile(self.archive) as archive:
            names = archive.namelist()
        for name in (
            "Halvane.dll", "Halvane.X.manifest", "register.cmd", "unregister.cmd", "README.md", "LICENSE", "docs/windows.md",
            "docs/dialog.md", "docs/dialog-windows.png", "examples/countries.xml", "examples/windows/TownMap.js",
            "sdk/Halvane.h", "licenses/fmt.txt", "licenses/gcc-runtime.txt", "licenses/mingw-w64.txt",
        ):
            self.assertIn(f"Halvane/{name}", names)

    def test_follows_each_link_before_it_packs(self):
        module = packing()
        page = "# A heading\n[a](docs/b.md#one-two) [b](#a-heading) [c](https://example.org)\n```\n[d](no)\n```\n"
        package = {"README.md": page.encode(), "docs/b.md": b"## One two\n[back](../README.md)\n"}
        self.assertEqual(module.broken_links(package), [])
        package["docs/b.md"] = b"[e](c.md) [f](../README.md#nowhere) [g](#three)\n"
        self.assertEqual(
            module.broken_links(package),
            ["README.md: docs/b.md#one-two", "docs/b.md: c.md", "docs/b.md: ../README.md#nowhere", "docs/b.md: #three"],
        )

    def test_has_samples_that_run_word_for_word(self):
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual(registered.returncode, 0)
        samples = f"Z:{self.folder}/Halvane/examples/windows"
        exported = wine("cscript", "//nologo", f"{samples}/export-town.js")
        self.assertRegex(exported.stdout, r"^Wrote .*town-out\.xml\s*$")
        document = (self.folder / "Halvane" / "examples" / "windows" / "town-out.xml").read_text(encoding="utf-8")
        self.assertEqual(document.replace("\r\n", "\n"), TOWN)
        without = wine("cscript", "//nologo", f"{samples}/export-town.vbs", f"Z:{self.folder}".replace("/", "\\"))
        self.assertEqual(without.stdout.strip(), "no-map.xml: 0")
        self.assertIn("<Roads>", (self.folder / "no-map.xml").read_text(encoding="utf-8"))

    def test_is_registered_and_unregistered_by_its_scripts(self):
        self.assertEqual(self.client(), "no class")
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual((registered.returncode, registered.stdout.strip()), (0, "Halvane.dll is registered."))
        self.assertEqual(self.client(), "a value")
        undone = self.script("unregister.cmd")
        self.assertEqual((undone.returncode, undone.stdout.strip()), (0, "Halvane.dll is not registered any more."))
        self.assertEqual(self.client(), "no class")

    def test_says_when_it_cannot_be_registered(self):
        (self.folder / "Halvane" / "Halvane.dll").unlink()
        registered = self.script("register.cmd")
        self.assertEqual(registered.returncode, 1)
        self.assertIn("could not be registered", registered.stdout)
        self.assertIn("It cannot be loaded: it is missing here", registered.stdout)


if __name__ == "__main__":
    unittest.main()
