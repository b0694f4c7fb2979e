"""The one table, as text or as Markdown."""
import statistics

HEADINGS = ["case", "by", "seconds", "from–to", "CPU s", "ratio", "peak MB", "output MB", "document"]
MEGABYTE = 1_000_000


def median(samples, member):
    return statistics.median(getattr(sample, member) for sample in samples)


def seconds(value):
    return f"{value:.3f}" if value < 1 else f"{value:.2f}"


def told_of(rival):
    told = []
    if rival.ours is not None:
        equal = "same bytes" if rival.bytewise else "same but for line breaks"
        told.append({True: equal, False: "DIFFERS", None: "not compared"}[rival.same])
    if rival.sample_rows:
        told.append(f"multiplied up from {rival.sample_rows:,}")
    return ", ".join(told)


def scale(rival, case):
    """By what a rival's time is multiplied that reads fewer rows than the case has."""
    return case.items / rival.sample_rows if rival.sample_rows else 1


def wall(rival, case, samples):
    return median(samples, "seconds") * scale(rival, case)


def rows_of(case, samples_by_rival):
    rivals = {rival.name: rival for rival in case.rivals}
    reference = rivals.get(case.reference)
    base = wall(reference, case, samples_by_rival[reference.name]) if reference else None
    for index, rival in enumerate(case.rivals):
        samples = samples_by_rival[rival.name]
        factor = scale(rival, case)
        time = wall(rival, case, samples)
        every = [sample.seconds * factor for sample in samples]
        output = median(samples, "output") * factor
        yield [
            case.title if index == 0 else "",
            rival.name,
            seconds(time),
            f"{seconds(min(every))}–{seconds(max(every))}",
            seconds(median(samples, "processor") * factor),
            f"{time / base:.2f}" if base else "",
            f"{max(sample.memory for sample in samples) / MEGABYTE:.0f}",
            f"{output / MEGABYTE:.1f}" if output else "",
            told_of(rival),
        ]


def as_text(headings, rows):
    widths = [max(len(row[column]) for row in [headings, *rows]) for column in range(len(headings))]
    lines = []
    for row in [headings, *rows]:
        lines.append("  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip())
    lines.insert(1, "-" * max(map(len, lines)))
    return "\n".join(lines)


def as_markdown(headings, rows):
    lines = ["| " + " | ".join(headings) + " |", "|" + "---|" * len(headings)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)
