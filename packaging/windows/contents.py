"""What the packages of the component of Windows hold: the bytes by the name below their folder."""
import pathlib
import re

PACKAGING = pathlib.Path(__file__).resolve().parent
ROOT = PACKAGING.parent.parent
# Where the pages begin that people read; those that they link to follow.
PAGES = ["docs/windows.md", "docs/host-automation.md", "docs/control-file.md", "docs/dialog.md", "examples/README.md"]
SAMPLES = ["TownMap.js", "town.xml", "export-town.js", "export-town.vbs"]
PUBLISHED = ["Halvane.h", "Halvane_i.c", "Halvane.tlb"]
# What is linked into the library: the texts that Debian hands out with it.
LICENSES = {
    "fmt.txt": "/usr/share/doc/libfmt-dev/copyright",
    "mingw-w64.txt": "/usr/share/doc/mingw-w64-x86-64-dev/copyright",
    "gcc-runtime.txt": "/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright",
    "GPL-3.txt": "/usr/share/common-licenses/GPL-3",
}


def links(text):
    """Where a page leads within the package."""
    prose = re.sub(r"```.*?```", "", text, flags=re.DOTALL)
    return [link for link in re.findall(r"\]\(([^)\s]+)\)", prose) if "://" not in link]


def anchors(text):
    """What links call the headings of a page."""
    headings = re.findall(r"^#+ (.*)$", re.sub(r"```.*?```", "", text, flags=re.DOTALL), flags=re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-") for heading in headings}


def with_linked(pages):
    """The pages and all that they link to, by their paths in the source."""
    found, waiting = {}, list(pages)
    while waiting:
        name = waiting.pop()
        if name in found:
            continue
        found[name] = (ROOT / name).read_bytes()
        if name.endswith(".md"):
            for link in links(found[name].decode()):
                target = (ROOT / name).parent / link.split("#")[0]
                if not link.startswith("#") and target.is_file():
                    waiting.append(str(target.resolve().relative_to(ROOT)))
    return found


def broken_links(package):
    """Links of the pages of a package that lead to no file or heading of it."""
    broken = []
    for name, data in package.items():
        for link in links(data.decode()) if name.endswith(".md") else []:
            path, _, anchor = link.partition("#")
            target = str(((ROOT / name).parent / path).resolve().relative_to(ROOT)) if path else name
            known = target in package and (not anchor or anchor in anchors(package[target].decode()))
            if not known:
                broken.append(f"{name}: {link}")
    return broken


def windows_text(path):
    return path.read_text(encoding="ascii").replace("\n", "\r\n").encode("ascii")


def component(build, folder):
    """What 64-bit or 32-bit programs need, with or without registration."""
    return {
        f"{folder}Halvane.dll": (build / "bin" / "Halvane.dll").read_bytes(),
        f"{folder}Halvane.X.manifest": (PACKAGING / "Halvane.X.manifest").read_bytes(),
    }


def contents(build, build32):
    """The bytes by the name in the archive."""
    package = {**component(build, ""), **component(build32, "x86/")}
    for script in ("register.cmd", "unregister.cmd"):
        package[script] = windows_text(PACKAGING / script)
    package["README.md"] = (PACKAGING / "README.md").read_bytes()
    package["LICENSE"] = (ROOT / "LICENSE").read_bytes()
    package.update(with_linked(PAGES + [f"examples/windows/{name}" for name in SAMPLES]))
    for name in PUBLISHED:
        package[f"sdk/{name}"] = (build / "src" / "component" / "com" / "published" / name).read_bytes()
    for name, source in LICENSES.items():
        package[f"licenses/{name}"] = pathlib.Path(source).read_bytes()
    return package
