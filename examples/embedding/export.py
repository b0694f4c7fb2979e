"""export.py MAP CONTROL OUTPUT: an export with its progress and what is worth knowing of it."""
import sys

import halvane


def main(map: str, control: str, output: str) -> int:
    fields = [
        field.name
        for one in halvane.describe(map).maps or ()
        for layer in (one and one.layers) or ()
        for field in (layer and layer.feature_class and layer.feature_class.fields) or ()
        if field
    ]
    print(len(fields), "fields")
    try:
        report = halvane.export(map, control, output, progress=lambda items: print(items, "items", file=sys.stderr))
    except halvane.Error as error:
        print(error, file=sys.stderr)
        return 2
    for failure in report.failures:
        print(f"{control}:{failure.line}: {failure.message} ({failure.count} times)")
    print(report.outcome.value, report.document, report.items)
    return report.exit_code


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
