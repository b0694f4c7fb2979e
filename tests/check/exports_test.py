#!/usr/bin/env python3
"""What exports tell of their control files, a check tells before: compared over the tests of the command line that give
notices.

    exports_test.py PROGRAM TESTS_OF_THE_COMMAND_LINE
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

STAND_IN = pathlib.Path(__file__).resolve().parent / "checked_export.py"
SUITES = ["Lint.*", "NameHints.*", "Notes.*", "Failures.*", "Inputs.*", "SecondEdition*", "IncludedParts.*", "Report.*",
          # Others than the tests' own user, or without the files of the system, cannot run the stand-in.
          "-Report.IsRefusedWhereRightsAreMissingWithWhatToDo", "Failures.OfTheRegisterOfCoordinateSystemsLeaveBoundsOut"]
LEAST = 60  # things to compare: fewer would mean that the tests were not run


def main():
    program, tests = (str(pathlib.Path(path).resolve()) for path in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as folder:
        log = pathlib.Path(folder) / "log"
        environment = {**os.environ, "HALVANE_CHECKED": program, "HALVANE_CHECK_LOG": str(log),
                       "HALVANE_PROGRAM_OF_TESTS": str(STAND_IN)}
        done = subprocess.run([tests, "--gtest_filter=" + ":".join(SUITES)], env=environment, capture_output=True, text=True)
        entries = [json.loads(line) for line in log.read_text(encoding="utf-8").splitlines()]
    compared = sum(entry["compared"] for entry in entries)
    wrong = [entry for entry in entries if entry["missing"]]
    for entry in wrong:
        print(json.dumps(entry, indent=1))
    print(f"{len(entries)} exports, {compared} things compared, {len(wrong)} exports told more than their checks")
    if done.returncode != 0:
        print(done.stdout[-3000:])
    return 1 if wrong or compared < LEAST or done.returncode != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
