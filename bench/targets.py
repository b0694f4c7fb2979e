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

    def rivals(self, case_name):
        case, _ = self.results.get(case_name, (None, {}))
        return [rival.name for rival in case.rivals] if case is not None else []

    def items(self, case_name, rival_name):
        """How many rows or nodes a rival handled."""
        case, _ = self.results[case_name]
        rival = next(rival for rival in case.rivals if rival.name == rival_name)
        return rival.items or case.items

    def memory(self, case_name, rival_name):
        _, samples = self.results.get(case_name, (None, {}))
        return max((sample.memory for sample in samples.get(rival_name, [])), default=None)


def quotient(upper, lower):
    return None if upper is None or lower is None else upper / lower


def points_and_areas(found):
    for name in ("points", "points-fgb", "areas", "areas-fgb"):
        time = quotient(found.seconds(name, cases.HALVANE), found.seconds(name, cases.BY_HAND))
        yield f"{name}: time, by hand in C++ is 1", "≤ 0.6" if name == "points" else "≤ 1.15", time, "{:.2f}"
    for name in ("points", "areas"):
        times = quotient(found.seconds(name, "ogr2ogr to GML"), found.seconds(name, cases.HALVANE))
        yield f"{name}: times faster than ogr2ogr to GML", "≥ 15", times, "{:.1f}"


def server(found):
    time = quotient(found.seconds("server", cases.HALVANE), found.seconds("server", cases.BY_HAND))
    yield "server: time, by hand in C++ is 1", "≤ 1.15", time, "{:.2f}"
    times = quotient(found.seconds("server", "ogr2ogr to GML"), found.seconds("server", cases.HALVANE))
    yield "server: times faster than ogr2ogr to GML", "≥ 10", times, "{:.1f}"


def one_shape(found):
    for name in ("huge-shape", "many-parts"):
        time = quotient(found.seconds(name, cases.HALVANE), found.seconds(name, cases.BY_HAND))
        yield f"{name}: time, by hand in C++ is 1", "≤ 1.5", time, "{:.2f}"
        memory = quotient(found.memory(name, cases.HALVANE), found.memory(name, cases.BY_HAND))
        yield f"{name}: peak memory, by hand in C++ is 1", "≤ 1.25", memory, "{:.2f}"


def related(found):
    times = quotient(found.seconds("related", cases.QUERY_PER_PARENT), found.seconds("related", cases.HALVANE))
    yield "related rows: times faster than a query per parent", "≥ 100", times, "{:.0f}"


    for name in ("related", "nested"):
        time = quotient(found.seconds(name, cases.HALVANE), found.seconds(name, cases.ONE_PASS))
        yield f"{name} rows: time, by hand in C++ in one pass is 1", "≤ 1.5", time, "{:.2f}"


def gpx(found):
    time = quotient(found.seconds("gpx", cases.HALVANE), found.seconds("gpx", cases.BY_HAND))
    yield "points as GPX: time, by hand in C++ is 1", "≤ 1.3", time, "{:.2f}"


def nodes(found):
    large, smallest = found.seconds("tree", cases.HALVANE), found.seconds("tree", cases.SMALLEST)
    rate = None
    if large is not None and smallest is not None and large > smallest:
        rate = found.items("tree", cases.HALVANE) / (large - smallest)
    yield "control nodes a second, start-up taken off", "≥ 1,000,000", rate, "{:,.0f}"


def start(found):
    time = quotient(found.seconds("start", cases.HALVANE), found.seconds("start", cases.OPEN_ONLY))
    yield "smallest export: time, a process that opens the file is 1", "≤ 1.5", time, "{:.2f}"


def folder(found):
    seconds = found.seconds("folder", cases.HALVANE)
    yield "a folder described, seconds", "≤ 5", seconds, "{:.2f}"
    time = quotient(seconds, found.seconds("folder", cases.OPEN_ALL))
    yield "a folder described: time, a loop that opens its files is 1", "≤ 5", time, "{:.2f}"


def growth(found):
    names = sorted(
        (name for name in found.rivals("growth") if name.startswith(cases.HALVANE)),
        key=lambda name: found.items("growth", name),
    )
    if len(names) < 3:
        return
    few, middle, many = (found.items("growth", name) for name in names)
    of_many = quotient(found.seconds("growth", names[2]), many)
    of_middle = quotient(found.seconds("growth", names[1]), middle)
    yield f"time a row at {many:,} rows, at {middle:,} it is 1", "≤ 1.05", quotient(of_many, of_middle), "{:.2f}"
    for count, name in ((few, names[0]), (many, names[2])):
        yield f"peak memory at {count:,} rows, MB", "≤ 100", found.memory("growth", name) / MEGABYTE, "{:.0f}"


def rows_of(results):
    """What was aimed at and measured, in the order of the cases."""
    found = Results(results)
    aims = [aim for part in (points_and_areas, server, one_shape, related, gpx, nodes, start, folder, growth) for aim in part(found)]
    return [[aim, wanted, form.format(value)] for aim, wanted, value, form in aims if value is not None]
