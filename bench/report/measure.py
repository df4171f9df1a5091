"""Runs the benchmark programs and gathers what they measure."""
import json
import os
import pathlib
import platform
import re
import subprocess
import tempfile

PROGRAMS = ("xml_to_gpb", "json_to_gpb", "xml_to_json", "objtree", "template")
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
MIDDLE_ITEMS = 20000  # the largest documents of a quick run
MIDDLE = f"--max-items={MIDDLE_ITEMS}"
QUICK = (MIDDLE, "--benchmark_repetitions=3", "--benchmark_min_time=0.005")
QUICK_COUNTING = "--max-items=2000"  # callgrind makes everything fifty times slower

# The work is done twice, once to warm up; only what happens in this function is counted, and each time it returns the
# counts so far are written to a file of their own.
COUNTED = "gpb_bench_counted_run"
CALLGRIND = ("valgrind", "--tool=callgrind", "--collect-atstart=no", f"--toggle-collect={COUNTED}",
             f"--dump-after={COUNTED}")


def machine():
    """What the figures were measured on."""
    model = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text())
    load = pathlib.Path("/proc/loadavg").read_text().split()[:3]
    return {"processor": model.group(1) if model else platform.machine(), "processors": os.cpu_count(),
            "load": " ".join(load)}


def build(directory):
    """Changes with each build of what is measured."""
    files = [*(f"{directory}/bench_{program}" for program in PROGRAMS), *pathlib.Path(directory, "../lib").glob("*.so")]
    return max(os.stat(file).st_mtime_ns for file in files)


def times(directory, quick, repetitions=None):
    """Runs all programs; for each benchmark its leaves, nanoseconds per leaf by repetition, allocations and peak."""
    found = {}
    options = [*(QUICK if quick else ()), *([f"--benchmark_repetitions={repetitions}"] if repetitions else ())]
    for program in PROGRAMS:
        with tempfile.NamedTemporaryFile(suffix=".json") as out:
            command = [f"{directory}/bench_{program}", f"--benchmark_out={out.name}", *options]
            subprocess.run(command, check=True)
            for run in json.loads(pathlib.Path(out.name).read_text())["benchmarks"]:
                if run["run_type"] == "iteration":
                    _add_run(found, f"{program}/{run['run_name']}", run)
    return found


def _add_run(found, name, run):
    one = found.setdefault(name, {"leaves": run["leaves"], "ns_per_leaf": [], "allocations": run["allocs"],
                                  "peak_bytes": run["peak_bytes"]})
    one["ns_per_leaf"].append(run["cpu_time"] * NANOSECONDS[run["time_unit"]] / run["leaves"])


def instructions(directory, quick):
    """Runs all programs under callgrind; instructions per leaf for each benchmark. The largest documents, of which
    nothing new can be learnt here, are left out."""
    found = {}
    for program in PROGRAMS:
        with tempfile.TemporaryDirectory() as out:
            command = [*CALLGRIND, f"--callgrind-out-file={out}/counts", f"{directory}/bench_{program}", "--once",
                       QUICK_COUNTING if quick else MIDDLE]
            done = subprocess.run(command, check=True, capture_output=True, text=True)
            for number, line in enumerate(done.stdout.splitlines(), start=1):
                name, items = line.rsplit(" ", 1)
                found[f"{program}/{name}"] = _total(pathlib.Path(f"{out}/counts.{number}")) / int(items)
    return found


def _total(dump):
    return int(re.search(r"^(?:totals|summary): (\d+)", dump.read_text(), re.MULTILINE).group(1))
