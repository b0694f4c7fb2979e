#!/usr/bin/env python3
"""The installers of the component of Windows: installed under Wine, used, upgraded, removed, signed.

windows_installer.py BUILD BUILD32: the folders of the 64-bit and of the 32-bit build.
"""
import pathlib
import subprocess
import tempfile
import unittest

from windows_support import BUILD, BUILD32, CSCRIPTS, ROOT, TOWN, clients, pack, town_of, windows_path, wine

import contents
import installer

HOME = "C:\\Program Files\\Halvane"
LATER = "9.8.7"
TYPE_LIBRARY = r"\software\classes\typelib\{f5975246-8f94-4f18-9f5c-e498375009d9}\1.0\0"
REMOVED = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall"


def table(file, name):
    """The rows of a table of an installer, as lists of texts."""
    exported = subprocess.run(["msiinfo", "export", file, name], check=True, capture_output=True, text=True)
    return [line.split("\t") for line in exported.stdout.splitlines()[3:]]


def properties(file):
    return dict(table(file, "Property"))


def msiexec(action, file):
    return wine("msiexec", action, windows_path(file), "/qn").returncode


class Installer(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        pack(cls.folder)
        cls.machine, cls.user = cls.folder / "Halvane.msi", cls.folder / "Halvane-user.msi"
        cls.later = cls.folder / "Later.msi"
        package = contents.contents(BUILD, BUILD32)
        package["docs/later.md"] = package.pop("LICENSE")
        installer.write(package, BUILD, "perMachine", cls.later, version=LATER)

    def keys(self, root, folder):
        """The keys that the registry has of the component, and their values; its folder is named X."""
        known = installer.identifiers(BUILD)
        names = [f"Halvane.{name}" for name, _ in installer.named(known, "CLSID_")]
        names.append(rf"TypeLib\{known['LIBID_Halvane']}")
        for view in ("", "Wow6432Node\\"):
            names += [rf"{view}CLSID\{value}" for _, value in installer.named(known, "CLSID_")]
            names += [rf"{view}Interface\{value}" for _, value in installer.named(known, "IID_")]
        script = self.folder / "keys.cmd"
        lines = [f'@reg query "{root}\\Software\\Classes\\{name}" /s 2>nul' for name in names]
        script.write_bytes("\r\n".join(lines).encode("ascii"))
        values = {}
        for line in wine("cmd", "/c", windows_path(script)).stdout.replace(folder, "X").lower().splitlines():
            if line.startswith("hkey_"):
                values[line] = []
            elif line.startswith(" "):
                values[list(values)[-1]].append(line.strip())
        return values

    @staticmethod
    def same_for_32(values):
        """What the same registration for 32-bit programs adds."""
        added = {}
        for key, texts in values.items():
            other = key.replace("win64", "win32")
            for kind in ("clsid", "interface"):
                other = other.replace(rf"\classes\{kind}", rf"\classes\wow6432node\{kind}")
            if other != key:
                added[other] = [text.replace("x\\halvane.dll", "x\\x86\\halvane.dll") for text in texts]
        return added

    def test_has_the_version_and_no_programs_of_its_own(self):
        version = installer.version_of(BUILD)
        for file in (self.machine, self.user):
            self.assertEqual(properties(file)["ProductVersion"], version)
            self.assertEqual(table(file, "CustomAction"), [])
        here, there, later = (properties(file) for file in (self.machine, self.user, self.later))
        self.assertEqual(here["ALLUSERS"], "1")
        self.assertNotIn("ALLUSERS", there)
        self.assertEqual(here["UpgradeCode"], later["UpgradeCode"])
        self.assertEqual(len({there["UpgradeCode"], here["UpgradeCode"]}), 2)
        self.assertEqual(len({there["ProductCode"], here["ProductCode"], later["ProductCode"]}), 3)

    def test_tells_the_versions_of_the_libraries_which_replace_earlier_ones(self):
        for file in (self.machine, self.user):
            versions = [row[4:6] for row in table(file, "File") if row[2].endswith("Halvane.dll")]
            self.assertEqual(versions, 2 * [[installer.version_of(BUILD) + ".0", installer.LANGUAGE]])

    def test_holds_what_the_zip_file_holds_without_its_scripts(self):
        out = self.folder / "extracted"
        subprocess.run(["msiextract", "-C", out, self.machine], check=True, stdout=subprocess.DEVNULL)
        package = contents.contents(BUILD, BUILD32)
        for name in ("register.cmd", "unregister.cmd"):
            del package[name]
        found = {str(path.relative_to(out)): path.read_bytes() for path in out.rglob("*") if path.is_file()}
        below = {name.partition("Halvane/")[2]: data for name, data in found.items()}
        self.assertEqual(sorted(below), sorted(package))
        self.assertEqual(below, package)

    def test_installs_for_the_machine_is_upgraded_and_leaves_nothing(self):
        self.addCleanup(msiexec, "/x", self.later)
        self.assertEqual(msiexec("/i", self.machine), 0)
        self.assertEqual(clients(self.folder), ["a value"] * len(CSCRIPTS))
        for program in CSCRIPTS:
            sample = rf"{HOME}\examples\windows\export-town.js"
            self.assertRegex(wine(program, "//nologo", sample, windows_path(self.folder)).stdout, r"^Wrote .*town-out\.xml")
            self.assertEqual(town_of(self.folder / "town-out.xml"), TOWN)
            (self.folder / "town-out.xml").unlink()
        self.assertEqual(msiexec("/i", self.later), 0)
        self.assertEqual(clients(self.folder), ["a value"] * len(CSCRIPTS))
        listed = wine("cmd", "/c", "dir", "/b", "/s", HOME).stdout
        self.assertIn("later.md", listed)
        self.assertNotIn("LICENSE", listed)
        removable = [line.split() for line in wine("reg", "query", REMOVED, "/s").stdout.splitlines()]
        self.assertEqual(removable.count(["DisplayName", "REG_SZ", "Halvane"]), 1)
        self.assertIn(["DisplayVersion", "REG_SZ", LATER], removable)
        self.assertNotEqual(msiexec("/i", self.machine), 0, "an older one over it")
        self.assertEqual(msiexec("/x", self.later), 0)
        self.assertEqual(clients(self.folder), ["no class"] * len(CSCRIPTS))
        self.assertEqual(self.keys("HKLM", HOME), {})
        self.assertNotEqual(wine("cmd", "/c", "dir", HOME).returncode, 0)

    def regsvr32(self, *arguments):
        done = wine("regsvr32", *arguments)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_writes_into_the_registry_what_registering_writes(self):
        unpacked = self.folder / "unpacked"
        for name, data in contents.component(BUILD, "").items():
            (unpacked / name).parent.mkdir(parents=True, exist_ok=True)
            (unpacked / name).write_bytes(data)
        registered = windows_path(unpacked / "Halvane.dll")
        self.addCleanup(wine, "regsvr32", "/s", "/u", registered)
        self.regsvr32("/s", registered)
        expected = self.keys("HKLM", windows_path(unpacked))
        self.regsvr32("/s", "/u", registered)
        self.addCleanup(msiexec, "/x", self.machine)
        self.assertEqual(msiexec("/i", self.machine), 0)
        found = self.keys("HKLM", HOME)
        self.assertEqual(msiexec("/x", self.machine), 0)
        self.assertEqual(len(expected), 4 * 8 + 5 * 3 + 5)
        self.assertEqual(found, {**expected, **self.same_for_32(expected)})

    def test_installs_for_a_user_and_leaves_nothing(self):
        self.addCleanup(msiexec, "/x", self.user)
        self.assertEqual(msiexec("/i", self.user), 0)
        home = wine("cmd", "/c", "echo", r"%LOCALAPPDATA%\Programs\Halvane").stdout.strip()
        keys = self.keys("HKCU", home)
        self.assertEqual(keys["hkey_current_user" + TYPE_LIBRARY + r"\win64"], [r"(default)    reg_sz    x\halvane.dll"])
        self.assertEqual(keys["hkey_current_user" + TYPE_LIBRARY + r"\win32"], [r"(default)    reg_sz    x\x86\halvane.dll"])
        self.assertEqual(self.keys("HKLM", home), {})
        self.assertEqual(msiexec("/x", self.user), 0)
        self.assertEqual(self.keys("HKCU", home), {})
        self.assertNotEqual(wine("cmd", "/c", "dir", home).returncode, 0)


class Signed(unittest.TestCase):
    def verify(self, file):
        command = ["osslsigncode", "verify", "-CAfile", self.certificate, "-in", file]
        return subprocess.run(command, check=False, capture_output=True, text=True)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.certificate, key = self.folder / "certificate.pem", self.folder / "key.pem"
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "30", "-subj", "/CN=Halvane test",
             "-addext", "extendedKeyUsage=codeSigning", "-keyout", key, "-out", self.certificate],
            check=True, capture_output=True,
        )
        self.options = ["--sign", f"-certs {self.certificate} -key {key}"]

    def test_are_the_libraries_and_the_installers(self):
        pack(self.folder, *self.options)
        subprocess.run(["msiextract", "-C", self.folder, self.folder / "Halvane.msi"], check=True, capture_output=True)
        files = [self.folder / "Halvane.msi", self.folder / "Halvane-user.msi", *self.folder.rglob("Halvane.dll")]
        self.assertEqual(len(files), 4)
        for file in files:
            verified = self.verify(file)
            self.assertEqual(verified.returncode, 0, f"{file}: {verified.stdout}{verified.stderr}")
        self.assertNotEqual(self.verify(BUILD / "bin" / "Halvane.dll").returncode, 0, "without a certificate")

    def test_is_nothing_without_the_key(self):
        command = [ROOT / "tools" / "pack-windows", BUILD, BUILD32, self.folder]
        done = subprocess.run(
            [*command, "--sign", "-certs nowhere.pem -key nowhere.pem"], check=False, capture_output=True, text=True
        )
        self.assertEqual(done.returncode, 1)
        self.assertIn("osslsigncode did not sign", done.stderr)
        self.assertEqual(list(self.folder.glob("Halvane*")), [])


if __name__ == "__main__":
    unittest.main()
