#!/usr/bin/env python3
"""Follows every link of the pages to a file of the tree or to a heading, and looks for each page in the first one.

    links.py ROOT
"""
import pathlib
import re
import sys


def anchors_of(page):
    """What the headings of a page are called in links: in small letters, blanks as hyphens, other signs left out."""
    prose = re.sub(r"^```.*?^```$", "", page.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)
    headings = re.findall(r"^#+ (.*)$", prose, flags=re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def links_of(page):
    for number, line in enumerate(page.read_text(encoding="utf-8").split("\n"), 1):
        for target in re.findall(r"\]\(([^)\s]+)\)", line):
            if not re.match(r"[a-z]+:", target):
                yield number, target


def problem_of(page, target):
    path, _, anchor = target.partition("#")
    file = (page.parent / path).resolve() if path else page
    if not file.exists():
        return "there is no such file"
    if anchor and (file.suffix != ".md" or anchor not in anchors_of(file)):
        return "there is no such heading"
    return None


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    first = root / "README.md"
    pages = [first, *sorted((root / "docs").glob("*.md")), *sorted((root / "examples").rglob("*.md"))]
    problems = [f"{page.relative_to(root)}:{number}: {target}: {problem}" for page in pages
                for number, target in links_of(page) if (problem := problem_of(page, target))]
    listed = {(root / target.partition("#")[0]).resolve() for _, target in links_of(first)}
    problems += [f"README.md: no link leads to {page.relative_to(root)}" for page in (root / "docs").glob("*.md")
                 if page.resolve() not in listed]
    print("\n".join(problems) or f"{len(pages)} pages, every link leads somewhere")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
