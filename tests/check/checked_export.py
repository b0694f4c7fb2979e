#!/usr/bin/env python3
"""Stands in for the program in the tests of the command line: before each export it checks the same control file, and
whatever the export then tells of the control file the check must have told.

    checked_export.py ARGUMENT…

HALVANE_CHECKED is the program, HALVANE_CHECK_LOG a file that gets a line for each export: the number of things that
were compared, and those that the check did not tell.
"""
import json
import os
import re
import subprocess
import sys

PROGRAM = os.environ["HALVANE_CHECKED"]
LOG = os.environ["HALVANE_CHECK_LOG"]
OF_THE_CHECK = {"--map", "--xml", "--node-path", "--select", "--processor", "--set"}
OF_THE_EXPORT = {"--report", "--item-limit", "--progress", "--schema", "--schema-catalog"}


def arguments_of_check(arguments):
    """The arguments that say what is read; None where the line is no export of a file."""
    taken, places, rest = [], [], list(arguments)
    while rest:
        word = rest.pop(0)
        if word in OF_THE_CHECK and rest:
            taken += [word, rest.pop(0)]
        elif word in OF_THE_EXPORT and rest:
            rest.pop(0)
        elif not word.startswith("--"):
            places.append(word)
        elif word not in ("--exact-name", "--no-sync", "--quiet"):
            return None
    return None if len(places) != 2 or places[0] == "-" else [*taken, places[0]]


def plain(text):
    """Without the count of nodes that share a cause: a check tells each of them at its own place."""
    return re.sub(r" \(so too at lines? [^)]*\)$", "", text)


def told_by_export(messages):
    """Each message with the node that it is about."""
    for line in messages.splitlines():
        match = re.match(r'\S[^"]*:(\d+): (?:note|warning|error): (("[^"]*").*)$', line)
        if match and " written by " not in line:
            yield plain(match.group(2)), (match.group(1), match.group(3))


def told_by_check(findings):
    """Each message, and by node how often it failed with others than that."""
    messages, otherwise = set(), {}
    for line in findings.splitlines():
        match = re.match(r'.*?:(\d+)(?::\d+)?: (?:note|warning|error): (("[^"]*").*) \[[a-z-]+\]$', line)
        if match:
            text, times = re.fullmatch(r"(.*?)(?: \((\d+) times? more with other messages\))?", plain(match.group(2))).groups()
            messages.add(text)
            node = match.group(1), match.group(3)
            otherwise[node] = otherwise.get(node, 0) + int(times or 0)
    return messages, otherwise


def not_told(wanted, known, otherwise):
    """The messages that a check neither told nor counted at their node."""
    unknown = {}
    for text, node in wanted:
        if text not in known:
            unknown.setdefault(node, []).append(text)
    return [text for node, texts in unknown.items() if sum(map(times_of, texts)) != otherwise.get(node, 0)
            for text in texts]


def times_of(text):
    count = re.search(r" \((\d+) times\)$", text)
    return int(count.group(1)) if count else 1


def main():
    arguments = sys.argv[1:]
    checked = arguments_of_check(arguments[1:]) if arguments[:1] == ["export"] else None
    check = subprocess.run([PROGRAM, "check", *checked], capture_output=True, text=True) if checked else None
    export = subprocess.run([PROGRAM, *arguments], stderr=subprocess.PIPE, text=True, errors="surrogateescape")
    sys.stderr.buffer.write(export.stderr.encode(errors="surrogateescape"))
    if check is not None and "--item-limit" not in arguments and "; --report lists all" not in export.stderr:
        wanted = list(told_by_export(export.stderr))
        known, otherwise = told_by_check(check.stdout)
        # Without the map that a control file looks in, a check tells once that there is none.
        mapless = "give a map with --map" in check.stderr
        missing = [text for text in not_told(wanted, known, otherwise) if not (mapless and "--map" in text)]
        entry = {"arguments": arguments, "folder": os.getcwd(), "compared": len(wanted), "missing": missing,
                 "told": sorted(known) if missing else []}
        with open(LOG, "a", encoding="utf-8") as log:
            log.write(json.dumps(entry) + "\n")
    return export.returncode if export.returncode >= 0 else 128 - export.returncode


if __name__ == "__main__":
    sys.exit(main())
