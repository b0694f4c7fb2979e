#!/usr/bin/env python3
"""Looks for each test that a page names, `Suite.Name`, in the sources of the tests.

    named_tests.py ROOT PAGE
"""
import pathlib
import re
import sys


def tests_in(root):
    pattern = re.compile(r"^\s*TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.MULTILINE)
    return {".".join(found) for source in (root / "tests").rglob("*_test.cpp")
            for found in pattern.findall(source.read_text(encoding="utf-8"))}


def main():
    root, page = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    named = re.findall(r"`([A-Z]\w+\.[A-Z]\w+)`", page.read_text(encoding="utf-8"))
    missing = sorted(set(named) - tests_in(root))
    for name in missing:
        print(f"{page.name}: there is no test {name}")
    return 1 if missing or not named else 0


if __name__ == "__main__":
    sys.exit(main())
