#!/usr/bin/env python3
"""The dialog of the library as a person uses it: dialog_test.py HOST LIBRARY SCRIPT [PICTURE]

Seen and typed into through the X server. With PICTURE, what is on the screen after an export is kept there.
"""
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
HOST, LIBRARY, SCRIPT = sys.argv[1:4]
PICTURE = sys.argv[4] if len(sys.argv) > 4 else None
PATIENCE = 60  # seconds
CONTROL = """<a Name="Out">
 <l Name="L" DataSource="MapLayer" Identity="LayerName" IdentityValue="Roads" DataProperty="LayerName"/>
</a>"""


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False).stdout


def wait_until(look, what):
    end = time.monotonic() + PATIENCE
    while not (answer := look()):
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.1)
    return answer


def windows(title):
    return xdotool("search", "--onlyvisible", "--name", f"^{title}$").split()


def on_windows(path):
    return "Z:" + str(path).replace("/", "\\")


class Dialog:
    def __init__(self, *arguments):
        self.process = subprocess.Popen([ROOT / "tools/with-wine", *arguments], stdout=subprocess.PIPE, text=True)
        self.window = wait_until(lambda: windows("Export to XML"), "the dialog")[0]
        self.focus()

    def focus(self):
        xdotool("windowfocus", "--sync", self.window)
        time.sleep(0.5)

    def type(self, text):
        xdotool("type", "--delay", 5, text)

    def fill(self, letter, text):
        """Goes to a box by its letter, and replaces what is in it."""
        xdotool("key", f"alt+{letter}")
        time.sleep(0.2)
        xdotool("key", "Home", "shift+End", "Delete")
        self.type(text)

    def end(self):
        output, _ = self.process.communicate(timeout=PATIENCE)
        return self.process.returncode, output.strip()


class DialogTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "control.xml").write_text(CONTROL)
        self.document = self.folder / "town.xml"

    def fill_and_export(self, dialog):
        dialog.fill("c", on_windows(self.folder / "control.xml"))
        dialog.fill("d", on_windows(self.folder))
        dialog.fill("f", "town")
        xdotool("key", "Return")
        wait_until(self.document.exists, "the document")

    def exported(self):
        return "".join(line.strip() for line in self.document.read_text().splitlines())

    def test_exports_the_map_of_its_host(self):
        dialog = Dialog(HOST, LIBRARY, SCRIPT)
        self.fill_and_export(dialog)
        self.assertIn("<Out><L>Roads</L></Out>", self.exported())
        time.sleep(1)
        if PICTURE:
            subprocess.run(["import", "-window", "root", PICTURE], check=True)
        self.assertTrue(windows("Export to XML"), "the dialog stays open")
        dialog.focus()
        xdotool("key", "Escape")
        self.assertEqual(dialog.end(), (0, "closed 0"))

    def test_exports_the_map_of_a_running_application(self):
        dialog = Dialog(HOST, LIBRARY, SCRIPT, "HalvaneTest.DialogHost")
        self.fill_and_export(dialog)
        self.assertIn("<Out><L>Roads</L></Out>", self.exported())
        dialog.focus()
        xdotool("key", "Escape")
        self.assertEqual(dialog.end(), (0, "closed"))

    def test_exports_without_a_map(self):
        dialog = Dialog("rundll32.exe", f"{LIBRARY},ShowExportDialog")
        self.fill_and_export(dialog)
        self.assertIn("<Out><L/></Out>", self.exported())
        dialog.focus()
        xdotool("key", "Escape")
        self.assertEqual(dialog.end()[0], 0)

    def test_tells_that_nothing_of_that_name_runs(self):
        dialog = Dialog("rundll32.exe", f"{LIBRARY},ShowExportDialog", "No.Such.Application")
        xdotool("key", "Return")
        self.assertEqual(dialog.end()[0], 0)
        self.assertFalse(windows("Export to XML"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
