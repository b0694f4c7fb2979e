#!/usr/bin/env python3
"""The packed component of Windows, unpacked and registered by its own scripts, used and taken back.

windows_package.py BUILD: the folder of a Windows build.
"""
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
        for name in ("Halvane.dll", "register.cmd", "unregister.cmd", "docs/windows.md", "sdk/Halvane.h"):
            self.assertIn(f"Halvane/{name}", names)

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


if __name__ == "__main__":
    unittest.main()
