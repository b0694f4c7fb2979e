#!/usr/bin/env python3
"""What the component's file is made for, what it offers, and what it needs beside itself.

windows_file.py FILE PROCESSOR: x86_64 or i686.
"""
import re
import subprocess
import sys
import unittest

FILE, PROCESSOR = sys.argv.pop(1), sys.argv.pop(1)
OBJDUMP = f"{PROCESSOR}-w64-mingw32-objdump"

ENTRIES = [
    "DllCanUnloadNow", "DllGetClassObject", "DllInstall", "DllRegisterServer", "DllUnregisterServer",
    "HalvaneShowExportDialog", "ShowExportDialogW",
]
# Every Windows from version 7 on has these.
SYSTEM = {
    "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll",
    "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll", "winhttp.dll",
}


def headers():
    return subprocess.run([OBJDUMP, "-p", "-f", FILE], check=True, capture_output=True, text=True).stdout


class File(unittest.TestCase):
    def test_is_of_its_processor(self):
        expected = {"x86_64": "pei-x86-64", "i686": "pei-i386"}[PROCESSOR]
        self.assertIn(f"file format {expected}\n", headers())

    def test_offers_its_functions_by_their_plain_names(self):
        table = headers().partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
        self.assertEqual(re.findall(r"\] (?:\+base\[ *\d+\] +[0-9a-f]+ +)?(\S+)$", table, re.MULTILINE), ENTRIES)

    def test_needs_the_system_alone(self):
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers())}
        self.assertLessEqual({"kernel32.dll", "ole32.dll", "oleaut32.dll"}, needed)
        self.assertLessEqual(needed, SYSTEM)


if __name__ == "__main__":
    unittest.main()
