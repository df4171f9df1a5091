"""Holds what was measured against the bars."""
import re
import statistics

import bars

MARGIN = 1.10        # of a bar in time, for --check: what two runs on one machine differ by
EXACT_MARGIN = 1.02  # of a bar in bytes or instructions


def _ratio(times, pair, metric):
    """(ratio of medians, lowest, highest ratio of the repetitions, where), or None when one side was not measured."""
    where = pair[0].split("/")[1]
    one, peer = (times.get(name) for name in pair)
    if one is None or peer is None:
        return None
    if metric == bars.PEAK:
        exact = one["peak_bytes"] / peer["peak_bytes"]
        return exact, exact, exact, where
    by_repetition = [a / b for a, b in zip(one["ns_per_leaf"], peer["ns_per_leaf"])]
    medians = statistics.median(one["ns_per_leaf"]) / statistics.median(peer["ns_per_leaf"])
    return medians, min(by_repetition), max(by_repetition), where


def _worst(candidates):
    known = [one for one in candidates if one is not None]
    return max(known) if known else None


def _fastest_ratio(times, pair):
    one, peer = (times.get(name) for name in pair)
    return min(one["ns_per_leaf"]) / min(peer["ns_per_leaf"]) if one and peer else None


def _instruction_ratio(counts, pair):
    return counts[pair[0]] / counts[pair[1]] if pair[0] in counts and pair[1] in counts else None


def evaluate(results):
    """One record per row: the worst ratios of its pairs in time and in instructions, None where nothing was measured."""
    records = []
    for row in bars.rows():
        worst = _worst(_ratio(results["times"], pair, row.metric) for pair in row.pairs)
        timed = () if row.metric == bars.PEAK else row.pairs
        fastest = _worst(_fastest_ratio(results["times"], pair) for pair in timed)
        counted = _worst(_instruction_ratio(results["instructions"], pair) for pair in timed)
        records.append({
            "job": row.job, "bar": row.bar, "goal": row.goal, "metric": row.metric,
            "measured": worst and worst[0], "lowest": worst and worst[1], "highest": worst and worst[2],
            "where": worst and worst[3],
            "fastest": fastest, "instructions": counted,
            "holds": None if worst is None or row.bar is None else worst[0] <= row.bar,
        })
    return records


def missing(results, largest):
    """Benchmarks of the rows that were not measured, though documents up to `largest` leaves or nodes were."""
    wanted = {name for row in bars.rows() for pair in row.pairs for name in pair}
    return sorted(name for name in wanted - results["times"].keys()
                  if all(int(number) <= largest for number in re.findall(r":(\d+)/", name)))


def failures(records, quick):
    """What --check complains about. Times of a quick run say nothing, but bytes do."""
    found = []
    for one in records:
        exact = one["metric"] == bars.PEAK
        if one["measured"] is None or one["bar"] is None or (quick and not exact):
            continue
        if one["measured"] > one["bar"] * (EXACT_MARGIN if exact else MARGIN):
            found.append(f"{one['measured']:.3f}, bar {one['bar']:.3f}: {one['job']}")
    return found


def instruction_failures(records):
    """Rows whose instructions miss the bar."""
    return [f"{one['instructions']:.3f} in instructions, bar {one['bar']:.3f}: {one['job']}" for one in records
            if one["instructions"] is not None and one["bar"] is not None
            and one["instructions"] > one["bar"] * EXACT_MARGIN]
