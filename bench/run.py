#!/usr/bin/env python3
"""Measures the program and its rivals, in turns, and prints one table.

The programs and the data stand in the folder that --build names.
"""
import argparse
import pathlib
import sys

import cases
import measure
import tables
import targets


def arguments():
    parser = argparse.ArgumentParser(prog="./dev bench", description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--case", action="append", metavar="NAME", help="only this case; may be given several times")
    parser.add_argument("--by", action="append", metavar="TEXT", help="only the ways with this text in their names")
    parser.add_argument("--runs", type=int, default=3, metavar="N", help="how often each is run (3)")
    parser.add_argument("--quick", action="store_true", help="a tenth of the size, to try things out")
    parser.add_argument("--large", action="store_true", help="up to 10,000,000 rows in the case of growth")
    parser.add_argument("--markdown", action="store_true", help="the table for a page of the documentation")
    parser.add_argument("--list", action="store_true", help="the names of the cases")
    given = parser.parse_args()
    if given.runs < 1:
        parser.error("--runs: at least one")
    return given


def wanted_cases(given, files):
    makers = cases.all_cases(files, given.quick)
    if given.list:
        print("\n".join(makers))
        sys.exit(0)
    unknown = [name for name in given.case or [] if name not in makers]
    if unknown:
        sys.exit(f"There is no case {unknown[0]}; there are {', '.join(makers)}")
    wanted = [make() for name, make in makers.items() if name in (given.case or makers)]
    if given.by:
        for case in wanted:
            case.rivals = [rival for rival in case.rivals if any(text in rival.name for text in given.by)]
            if case.reference not in [rival.name for rival in case.rivals]:
                case.reference = ""
    return [case for case in wanted if case.rivals]


def expected_document(rival, log):
    """The path of our document; an export of its own where the case has none of the same rows."""
    if not isinstance(rival.ours, cases.Rival):
        return rival.ours
    measure.run(rival.ours.steps, [rival.ours.result], rival.ours.result, log)
    return rival.ours.result


def compare(case, log):
    """Holds the documents that should be the same against ours. @returns how many differ."""
    different = 0
    for rival in case.rivals:
        if rival.ours is None:
            continue
        ours = expected_document(rival, log)
        # A document of an earlier run proves nothing.
        if ours is rival.ours and all(other.result != ours for other in case.rivals):
            rival.same = None
            continue
        check = measure.same_bytes if rival.bytewise else measure.same_but_for_breaks
        rival.same = check(ours, rival.result)
        if not rival.same:
            print(f"{case.name}: {rival.result} differs from {ours}", file=sys.stderr)
            different += 1
    return different


def measured(case, runs, log):
    """The samples of each rival; they take turns."""
    samples = {rival.name: [] for rival in case.rivals}
    for turn in range(max(runs, case.least_runs)):
        for rival in case.rivals:
            outputs = [path for path in [rival.result, *rival.passing] if path is not None]
            sample = measure.run(rival.steps, outputs, rival.result, log)
            samples[rival.name].append(sample)
            if case.least_runs == 1:
                print(f"{case.name} {turn + 1}/{runs}: {rival.name}: {sample.seconds:.2f} s", file=sys.stderr)
    return samples


def main():
    given = arguments()
    files = cases.Files(given.build, given.build / "bin", given.large)
    wanted = wanted_cases(given, files)
    missing = cases.missing_programs(wanted)
    if missing:
        sys.exit(f"Not installed: {', '.join(missing)}")
    rows, results, different = [], {}, 0
    log = files.document("messages.txt")
    for case in wanted:
        samples = measured(case, given.runs, log)
        different += compare(case, log)
        results[case.name] = (case, samples)
        rows += tables.rows_of(case, samples)
    layout = tables.as_markdown if given.markdown else tables.as_text
    print(layout(tables.HEADINGS, rows))
    goals = targets.rows_of(results)
    if goals:
        print()
        print(layout(targets.HEADINGS, goals))
    return 1 if different else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except measure.Failed as failure:
        sys.exit(str(failure))
