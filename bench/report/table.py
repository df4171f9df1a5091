"""The table of ratios as text."""

HEADINGS = ("job / peer", "bar", "go for", "measured", "at", "spread", "fastest", "instructions", "holds")


def number(value):
    if value is None:
        return "-"
    return f"{value:.3f}" if value < 0.1 else f"{value:.2f}"


def holds(record):
    if record["bar"] is None or record["measured"] is None:
        return "-"
    return "yes" if record["holds"] else "NO"


def cells(record):
    """A row's cells, as texts."""
    spread = "-"
    if record["measured"] is not None and record["lowest"] != record["highest"]:
        spread = f"{number(record['lowest'])} - {number(record['highest'])}"
    return (record["job"], number(record["bar"]), number(record["goal"]), number(record["measured"]),
            record["where"] or "-", spread, number(record["fastest"]), number(record["instructions"]),
            holds(record))


def text(records):
    lines = [HEADINGS, *(cells(record) for record in records)]
    widths = [max(len(line[column]) for line in lines) for column in range(len(HEADINGS))]
    printed = ["  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines]
    return "\n".join([printed[0], "-" * len(printed[0]), *printed[1:]])
