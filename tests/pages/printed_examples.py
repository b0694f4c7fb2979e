#!/usr/bin/env python3
"""Runs the first control file that a page prints, and looks for the document that it prints beside it.

    printed_examples.py PROGRAM ROOT

A line "…" stands for what the page leaves out. Map documents on a page are held against their schema.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

# Control files and documents on the bundled map of the world.
PAGES = ("README.md", "docs/control-file.md")
MAPS = "docs/map-document.md"


def blocks_of(page):
    return re.findall(r"^```xml\n(.*?)^```$", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)


def without_date(text):
    return re.sub(r"\b\d\d/\d\d/\d{4}\b", "TODAY", text)


def problem_with(program, root, page, folder):
    control, printed = blocks_of(root / page)[:2]
    (folder / "control.xml").write_text(control, encoding="utf-8")
    done = subprocess.run([program, "export", "--map", root / "examples" / "world.xml", folder / "control.xml",
                           folder / "document.xml"], capture_output=True, check=False)
    if done.returncode != 0 or done.stderr:
        return f"ended with {done.returncode}: {done.stderr.decode()}"
    document = without_date((folder / "document.xml").read_text(encoding="utf-8")) + "\n"
    for piece in filter(None, without_date(printed).split("…\n")):
        before, found, document = document.partition(piece)
        if not found or (before and not before.endswith("\n")):
            return f"the document does not go on with {piece!r}"
    return None


def main():
    program, root = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    problems = []
    with tempfile.TemporaryDirectory(prefix="halvane-pages-") as name:
        folder = pathlib.Path(name)
        problems += [f"{page}: {problem}" for page in PAGES
                     if (problem := problem_with(program, root, page, folder)) is not None]
        for text in blocks_of(root / MAPS):
            (folder / "map.xml").write_text(text, encoding="utf-8")
            done = subprocess.run(["xmllint", "--noout", "--schema", root / "docs" / "map-document.xsd", folder / "map.xml"],
                                  capture_output=True, check=False)
            if done.returncode != 0:
                problems.append(f"{MAPS}: {done.stderr.decode()}")
    print("\n".join(problems) or "The printed examples are those of the program")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
