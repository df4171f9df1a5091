"""Measures, keeps the results and prints the table of ratios; scripts/bench calls it."""
import argparse
import json
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
    parser.add_argument("--check", action="store_true", help="fail when a row misses its bar by more than noise")
    parser.add_argument("--docs", action="store_true",
                        help="measure nothing; write the tables and plots of docs/performance.md from the last results")
    return parser.parse_args()


def load():
    """The last results: times and instructions come from runs of their own and are kept side by side."""
    if RESULTS.exists():
        return json.loads(RESULTS.read_text())
    return {"machine": {}, "times": {}, "instructions": {}}


def run(arguments, results):
    if arguments.instructions:
        results["instructions"] = measure.instructions(PROGRAMS, arguments.quick)
    else:
        results["machine"] = measure.machine()
        results["times"] = measure.times(PROGRAMS, arguments.quick)
    results["bars"] = evaluate.evaluate(results)
    RESULTS.parent.mkdir(parents=True, exist_ok=True)
    RESULTS.write_text(json.dumps(results, indent=1))
    print("\nRatios of medians, the worst of a row's documents; spread over the repetitions, interleaved with the peer's."
          f"\nKept in {RESULTS}.\n")
    print(table.text(results["bars"]))


def main():
    arguments = parse_arguments()
    results = load()
    if arguments.docs:
        docs.write(results)
        return 0
    run(arguments, results)
    if not arguments.check:
        return 0
    if arguments.instructions:
        missed = evaluate.instruction_failures(results["bars"])
    else:
        missed = evaluate.failures(results["bars"], arguments.quick)
    for line in missed:
        print(f"error: {line}", file=sys.stderr)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
