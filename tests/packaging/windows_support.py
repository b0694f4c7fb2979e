"""What the tests of the packages of Windows share. Their arguments are the folders of the 64-bit and of the 32-bit build.
Where Wine runs no 32-bit programs, what they would see is left out."""
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
BUILD32 = pathlib.Path(sys.argv.pop(1)).resolve()
sys.path.insert(0, str(ROOT / "packaging" / "windows"))

RUNS_32 = subprocess.run([ROOT / "tools" / "with-wine", "--runs-32"], check=False).returncode == 0
CSCRIPTS = ["cscript", r"C:\windows\syswow64\cscript.exe"] if RUNS_32 else ["cscript"]

CLIENT = r"""
try {
  var names = WScript.CreateObject("Halvane.dCollection");
  names.Add("a value", "a key");
  WScript.Echo(names.GetValue("A KEY"));
} catch (e) {
  WScript.Echo("no class");
}
"""

# What the sample of the documents writes.
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


def pack(folder, *options):
    command = [ROOT / "tools" / "pack-windows", BUILD, BUILD32, folder, *options]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)


def wine(*arguments):
    return subprocess.run(
        [ROOT / "tools" / "with-wine", *arguments], check=False, capture_output=True, text=True, timeout=180
    )


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def clients(folder):
    """What scripts print that ask for a class: a 64-bit one and, where it runs, a 32-bit one."""
    script = folder / "client.js"
    script.write_text(CLIENT, encoding="ascii")
    return [wine(program, "//nologo", windows_path(script)).stdout.strip() for program in CSCRIPTS]


def town_of(file):
    """The sample's document, in the line ends of its text here."""
    return file.read_text(encoding="utf-8").replace("\r\n", "\n")
