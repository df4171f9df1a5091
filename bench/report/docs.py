"""Writes the tables and plots of docs/performance.md from results."""
import pathlib
import re
import statistics

import charts
import table

PAGE = pathlib.Path("docs/performance.md")
PLOTS = pathlib.Path("docs/performance")

# name of the plot: title, axis, the series along it, and its curves as (name, program, way)
LEAVES = "leaves of the document"
SIZE_PLOTS = {
    "xml-to-gpb": ("XML to GPB, parsed document in, bytes out", LEAVES, "size", [
        ("this library", "xml_to_gpb", "request"), ("reflection floor", "xml_to_gpb", "floor"),
        ("textbook way", "xml_to_gpb", "textbook"), ("generated code", "xml_to_gpb", "generated")]),
    "json-to-gpb": ("JSON to GPB, parsed document in, bytes out", LEAVES, "size", [
        ("this library", "json_to_gpb", "request"), ("reflection floor", "json_to_gpb", "floor"),
        ("textbook way", "json_to_gpb", "textbook"), ("generated code", "json_to_gpb", "generated")]),
    "json-text-to-gpb": ("JSON text in, GPB bytes out", LEAVES, "text", [
        ("cJSON, this library", "json_to_gpb", "request"), ("cJSON alone", "json_to_gpb", "parse"),
        ("JsonStringToMessage", "json_to_gpb", "protobuf")]),
    "xml-to-json": ("XML to JSON, parsed document in, text out", LEAVES, "size", [
        ("this library", "xml_to_json", "request"), ("cJSON by hand", "xml_to_json", "cjson_walk")]),
    "xml-text-to-json": ("XML text in, JSON text out", LEAVES, "text", [
        ("libxml2, this library", "xml_to_json", "request"), ("libxml2 alone", "xml_to_json", "parse"),
        ("libyang", "xml_to_json", "libyang")]),
    "width": ("XML to GPB, all fields of a message set", "fields of a message", "width", [
        ("this library", "xml_to_gpb", "request"), ("reflection floor", "xml_to_gpb", "floor")]),
    "cases": ("XML to GPB, leaves in the cases of a choice", "cases of the choice", "cases", [
        ("this library", "xml_to_gpb", "request"), ("reflection floor", "xml_to_gpb", "floor")]),
}


def _points(times, program, series, way, value):
    found = []
    for name, one in times.items():
        match = re.fullmatch(rf"{program}/{series}:(\d+)/{way}", name)
        if match:
            found.append((int(match.group(1)), value(one)))
    return sorted(found)


def _nanoseconds(one):
    return statistics.median(one["ns_per_leaf"])


def _plots(times):
    for name, (title, axis, series, curves) in SIZE_PLOTS.items():
        drawn = {label: _points(times, program, series, way, _nanoseconds) for label, program, way in curves}
        yield name, charts.chart(title, axis, "ns per leaf", drawn)
    memory = {}
    for label, program, way in (*SIZE_PLOTS["xml-to-gpb"][3], ("XML to JSON", "xml_to_json", "request")):
        memory[label] = _points(times, program, "size", way, lambda one: one["peak_bytes"] / one["leaves"])
    yield "memory", charts.chart("Most memory at one time, beside the document", LEAVES, "bytes per leaf", memory)


def _markdown(headings, rows):
    lines = [headings, ["---"] * len(headings), *rows]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def _costs(times):
    rows = []
    for name, one in times.items():
        spread = f"{min(one['ns_per_leaf']):.1f} - {max(one['ns_per_leaf']):.1f}"
        rows.append([f"`{name}`", f"{_nanoseconds(one):.1f}", spread, f"{one['allocations'] / one['leaves']:.2f}",
                     f"{one['peak_bytes'] / one['leaves']:.0f}"])
    return _markdown(["benchmark", "ns per leaf", "spread", "allocations per leaf", "peak bytes per leaf"], rows)


def _replace(page, name, content):
    begin, end = f"<!-- {name} -->", f"<!-- end of {name} -->"
    if begin not in page or end not in page:
        raise SystemExit(f"{PAGE} has no place for {name}")
    return page.split(begin)[0] + f"{begin}\n{content}\n{end}" + page.split(end)[1]


def write(results):
    """Replaces the generated parts of the page, and the plots."""
    PLOTS.mkdir(exist_ok=True)
    for name, svg in _plots(results["times"]):
        (PLOTS / f"{name}.svg").write_text(svg)
    page = PAGE.read_text()
    machine = results["machine"]
    page = _replace(page, "machine", f"{machine['processor']}, {machine['processors']} processors; "
                                     f"load during the run {machine['load']}.")
    page = _replace(page, "ratios", _markdown(table.HEADINGS, [table.cells(one) for one in results["bars"]]))
    page = _replace(page, "costs", _costs(results["times"]))
    PAGE.write_text(page)
