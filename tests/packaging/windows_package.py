#!/usr/bin/env python3
"""The packed component of Windows, unpacked and registered by its own scripts, used and taken back.

windows_package.py BUILD BUILD32: the folders of the 64-bit and of the 32-bit build. Where Wine runs no 32-bit programs,
what they would see is left out.
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "packaging" / "windows"))

import contents  # noqa: E402

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
BUILD32 = pathlib.Path(sys.argv.pop(1)).resolve()

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


def pack(folder):
    subprocess.run([ROOT / "tools" / "pack-windows", BUILD, BUILD32, folder], check=True, stdout=subprocess.DEVNULL)
    return folder / "Halvane.zip"


def wine(*arguments):
    return subprocess.run(
        [ROOT / "tools" / "with-wine", *arguments], check=False, capture_output=True, text=True, timeout=180
    )


RUNS_32 = subprocess.run([ROOT / "tools" / "with-wine", "--runs-32"], check=False).returncode == 0
CSCRIPT_32 = r"C:\windows\syswow64\cscript.exe"


def said(verdict):
    """What the scripts print: one line for each file."""
    if RUNS_32:
        return f"Halvane.dll {verdict}\nx86\\Halvane.dll {verdict}"
    return f"Halvane.dll {verdict}\nx86\\Halvane.dll is left out: this Windows runs no 32-bit programs."


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

    def client(self, program="cscript"):
        return wine(program, "//nologo", f"Z:{self.folder}/client.js").stdout.strip()

    def clients(self):
        """What scripts of both kinds print."""
        return [self.client(program) for program in (["cscript", CSCRIPT_32] if RUNS_32 else ["cscript"])]

    def regsvr32(self, name, *options):
        folder = "syswow64" if name.startswith("x86") else "system32"
        return wine(rf"C:\windows\{folder}\regsvr32.exe", "/s", *options, f"Z:{self.folder}/Halvane/{name}").returncode

    def test_is_the_same_every_time(self):
        first = self.archive.read_bytes()
        self.assertEqual(first, pack(self.folder).read_bytes())

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
        samples = f"Z:{self.folder}/Halvane/examples/windows"
        exported = wine("cscript", "//nologo", f"{samples}/export-town.js")
        self.assertRegex(exported.stdout, r"^Wrote .*town-out\.xml\s*$")
        document = (self.folder / "Halvane" / "examples" / "windows" / "town-out.xml").read_text(encoding="utf-8")
        self.assertEqual(document.replace("\r\n", "\n"), TOWN)
        without = wine("cscript", "//nologo", f"{samples}/export-town.vbs", f"Z:{self.folder}".replace("/", "\\"))
        self.assertEqual(without.stdout.strip(), "no-map.xml: 0")
        self.assertIn("<Roads>", (self.folder / "no-map.xml").read_text(encoding="utf-8"))

    def test_is_registered_and_unregistered_by_its_scripts(self):
        self.assertEqual(set(self.clients()), {"no class"})
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual((registered.returncode, registered.stdout.strip()), (0, said("is registered.")))
        self.assertEqual(set(self.clients()), {"a value"})
        undone = self.script("unregister.cmd")
        self.assertEqual((undone.returncode, undone.stdout.strip()), (0, said("is not registered any more.")))
        self.assertEqual(set(self.clients()), {"no class"})

    @unittest.skipUnless(RUNS_32, "Wine runs no 32-bit programs here")
    def test_leaves_one_kind_when_the_other_is_undone(self):
        self.addCleanup(self.script, "unregister.cmd")
        for undone, left in (("Halvane.dll", ["no class", "a value"]), ("x86/Halvane.dll", ["a value", "no class"])):
            self.assertEqual(self.script("register.cmd").returncode, 0)
            self.assertEqual(self.regsvr32(undone, "/u"), 0)
            self.assertEqual(self.clients(), left)

    def test_says_when_it_cannot_be_registered(self):
        (self.folder / "Halvane" / "Halvane.dll").unlink()
        registered = self.script("register.cmd")
        self.addCleanup(self.script, "unregister.cmd")
        self.assertEqual(registered.returncode, 1)
        self.assertIn("\nIt cannot be loaded: it is missing here", registered.stdout)
        self.assertIn("Halvane.dll could not be registered.", registered.stdout)


if __name__ == "__main__":
    unittest.main()
