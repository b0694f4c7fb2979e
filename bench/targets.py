"""What we aim at, beside what was measured. Nothing here fails a run."""
import cases
import tables

HEADINGS = ["aim", "wanted", "measured"]
MEGABYTE = 1_000_000


class Results:
    """What was measured, by case and rival; nothing for what was not."""

    def __init__(self, results):
        self.results = results

    def seconds(self, case_name, rival_name):
        case, samples = self.results.get(case_name, (None, {}))
        if rival_name not in samples:
            return None
        rival = next(rival for rival in case.rivals if rival.name == rival_name)
        return tables.wall(rival, case, samples[rival_name])

    def memory(self, case_name, rival_name):
        _, samples = self.results.get(case_name, (None, {}))
        return max((sample.memory for sample in samples.get(rival_name, [])), default=None)


def quotient(upper, lower):
    return None if upper is None or lower is None else upper / lower


def rows_of(results):
    found = Results(results)

    def of(case_name, rival_name, other=cases.HALVANE):
        return quotient(found.seconds(case_name, rival_name), found.seconds(case_name, other))

    aims = []
    for name in ("points", "points-fgb", "areas", "areas-fgb"):
        wanted = "≤ 0.6" if name == "points" else "≤ 1.15"
        aims.append((f"{name}: time against the program by hand", wanted, of(name, cases.HALVANE, cases.BY_HAND), "{:.2f}"))
    for name in ("points", "areas"):
        aims.append((f"{name}: times faster than ogr2ogr to GML", "≥ 15", of(name, "ogr2ogr to GML"), "{:.1f}"))
    return [[aim, wanted, form.format(value)] for aim, wanted, value, form in aims if value is not None]
