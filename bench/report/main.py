"""Measures, keeps the results and prints the table of ratios; scripts/bench calls it."""
import argparse
import json
import math
import pathlib
import sys

import docs
import evaluate
import measure
import table

PROGRAMS = "build/release/bin"
RESULTS = pathlib.Path("build/bench/results.json")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__)
    parser.add_argument("--quick", action="store_true",
                        help="small documents and few repetitions: shows that everything runs, not how fast")
    parser.add_argument("--instructions", action="store_true",
                        help="count instructions with callgrind instead of measuring times")
    parser.add_argument("--repetitions", type=int, metavar="N",
                        help="measure everything N times; for machines on which other work comes and goes")
    parser.add_argument("--check", action="store_true", help="fail when a row misses its bar by more than noise")
    parser.add_argument("--docs", action="store_true",
                        help="measure nothing; write the tables and plots of docs/performance.md from the last results")
    return parser.parse_args()


def last_results():
    return json.loads(RESULTS.read_text()) if RESULTS.exists() else {}


def kept_results():
    """Times and instructions come from runs of their own and stand side by side, while they are of the same build."""
    build = measure.build(PROGRAMS)
    kept = last_results()
    return kept if kept.get("build") == build else {"build": build, "machine": {}, "times": {}, "instructions": {}}


def run(arguments):
    results = kept_results()
    if arguments.instructions:
        results["instructions"] = measure.instructions(PROGRAMS, arguments.quick)
    else:
        results["machine"] = measure.machine()
        results["times"] = measure.times(PROGRAMS, arguments.quick, arguments.repetitions)
    results["bars"] = evaluate.evaluate(results)
    RESULTS.parent.mkdir(parents=True, exist_ok=True)
    RESULTS.write_text(json.dumps(results, indent=1))
    print("\nRatios of medians, the worst of a row's documents; spread over the repetitions, interleaved with the peer's."
          f"\nKept in {RESULTS}.\n")
    print(table.text(results["bars"]))
    return results


def complaints(arguments, results):
    if arguments.instructions:
        return evaluate.instruction_failures(results["bars"]) if arguments.check else []
    largest = measure.MIDDLE_ITEMS if arguments.quick else math.inf
    found = [f"not measured: {name}" for name in evaluate.missing(results, largest)]
    return found + (evaluate.failures(results["bars"], arguments.quick) if arguments.check else [])


def main():
    arguments = parse_arguments()
    if arguments.docs:
        docs.write(last_results())
        return 0
    errors = complaints(arguments, run(arguments))
    for line in errors:
        print(f"error: {line}", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
