#!/usr/bin/env python3
"""Does what a page of the documentation tells its readers to do, and compares what comes out with what it prints.

    sql_views.py PROGRAM PAGE

A block of the page is told by the words behind its backticks:

    ```sql NAME        a file of that name
    ```xml NAME        the same
    ```sh              commands, run in the order of the page
    ```xml > NAME      what the commands before it have written to that file, byte for byte

Every block is of one of these kinds, so nothing that the page shows goes untested.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
NEEDED = ("bash", "sqlite3", "spatialite")
SKIPPED = 77


def blocks_of(page):
    """The page's fenced blocks: line, language, the other words behind the backticks, text."""
    lines = page.read_text(encoding="utf-8").split("\n")
    begin = None
    for number, line in enumerate(lines, 1):
        if not line.startswith("```"):
            continue
        if begin is None:
            begin = number
            continue
        language, *words = lines[begin - 1].removeprefix("```").split() or [""]
        yield begin, language, words, "".join(each + "\n" for each in lines[begin:number - 1])
        begin = None


def first_difference(expected, actual):
    pairs = zip(expected + [None] * len(actual), actual + [None] * len(expected))
    return next((number, left, right) for number, (left, right) in enumerate(pairs, 1) if left != right)


class Reader:
    """A person who follows the page, in a folder of their own."""

    def __init__(self, program, folder):
        self.folder = folder
        self.path = f"{program.parent}{os.pathsep}{os.environ['PATH']}"
        self.compared = 0
        (folder / "examples").symlink_to(ROOT / "examples")

    def run(self, commands):
        done = subprocess.run(["bash", "-e", "-o", "pipefail"], input=commands.encode(), cwd=self.folder,
                              env={**os.environ, "PATH": self.path}, capture_output=True, check=False)
        messages = done.stderr.decode("utf-8", "replace")
        # A note of the program would be one that the page keeps from its reader.
        if done.returncode != 0 or re.search(r": (note|warning|error): ", messages):
            return f"ended with {done.returncode}: {messages}"
        return None

    def compare(self, name, printed):
        written = self.folder / name
        if not written.exists():
            return f"no command wrote {name}"
        self.compared += 1
        # Documents break lines with two characters, and do not end with a break.
        expected = printed.removesuffix("\n").replace("\n", "\r\n").split("\n")
        actual = written.read_bytes().decode().split("\n")
        if expected == actual:
            return None
        number, left, right = first_difference(expected, actual)
        return f"line {number} of {name} is {right!r}, the page says {left!r}"

    def follow(self, language, words, text):
        """What is wrong with a block; None when nothing is."""
        if language == "sh" and not words:
            return self.run(text)
        if language in ("sql", "xml") and len(words) == 1:
            (self.folder / words[0]).write_text(text, encoding="utf-8")
            return None
        if language == "xml" and len(words) == 2 and words[0] == ">":
            return self.compare(words[1], text)
        return "the block is of no kind that is tested"


def main():
    program, page = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    missing = [tool for tool in NEEDED if shutil.which(tool) is None]
    if missing:
        print(f"not installed: {', '.join(missing)}")
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="halvane-pages-") as folder:
        reader = Reader(program, pathlib.Path(folder))
        for line, language, words, text in blocks_of(page):
            wrong = reader.follow(language, words, text)
            if wrong is not None:
                print(f"{page.name}:{line}: {wrong}")
                return 1
    print(f"{reader.compared} documents are as the page prints them")
    return 0 if reader.compared else 1


if __name__ == "__main__":
    sys.exit(main())
