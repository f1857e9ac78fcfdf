#!/usr/bin/env python3
"""Solves instances one after the other and shows times, iterations and whether the answers are right.

    instances.py --kelvo build/release/tools/kelvo [--class lp] [--time-limit 60] [--names a,b]

The instances are those of the folder in KELVO_BENCH_DATA: a table manifest.tsv with the columns
class, name and reference (an objective, "infeasible", "unbounded" or "unknown"), and the files
CLASS/NAME with any ending. Without that folder they are the project's own examples.
"""
import argparse
import glob
import json
import math
import os
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.join(HERE, "..", "examples", "models")
TOLERANCE = 1e-6  # relative, of an objective
SHIFT = 0.1       # seconds, of the mean
UNUSUAL = {2: ("unbounded",), 3: ("infeasible",), 4: ("infeasible", "unbounded")}


def public_instances(folder, kind):
    with open(os.path.join(folder, "manifest.tsv"), encoding="utf-8") as file:
        names = file.readline().rstrip("\n").split("\t")
        for line in file:
            row = dict(zip(names, line.rstrip("\n").split("\t")))
            found = glob.glob(glob.escape(os.path.join(folder, row["class"], row["name"])) + ".*")
            if row["class"] == kind and found:
                yield row["name"], found[0], row["reference"], float(row.get("offset") or 0)


def own_instances():
    with open(os.path.join(EXAMPLES, "answers.tsv"), encoding="utf-8") as file:
        for line in file:
            if not line.startswith("#"):
                model, status, objective = line.rstrip("\n").split("\t")
                if status == "optimal":
                    yield model, os.path.join(EXAMPLES, model), objective, 0.0


def verdict(outcome, reference, offset):
    """'ok', 'stopped', or what is wrong. The reader ignores a constant in the objective: offset."""
    status = outcome["status"]
    if status in UNUSUAL:
        fits = reference in UNUSUAL[status] or reference == "unknown"
        return "ok" if fits else "WRONG: %s, not %s" % (outcome["status_string"], reference)
    if status not in (1, 5, 101, 102):
        return "stopped"
    if reference == "unknown":
        return "ok"
    if reference in ("infeasible", "unbounded"):
        return "WRONG: optimal, not " + reference
    wanted, got = float(reference), outcome["objective"] + offset
    right = abs(got - wanted) <= TOLERANCE * max(1.0, abs(wanted))
    return "ok" if right else "WRONG: %.12g, not %.12g" % (got, wanted)


def solve(kelvo, path, limit):
    with tempfile.TemporaryDirectory() as scratch:
        result = os.path.join(scratch, "outcome.json")
        command = [kelvo, path, "--quiet", "--threads", "1", "--time-limit", str(limit), "--json", result]
        try:
            run = subprocess.run(command, capture_output=True, text=True, check=False, timeout=1.1 * limit + 5,
                                 stdin=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            return None, "FAILED: over the limit"
        if run.returncode != 0:
            return None, "FAILED: " + (run.stderr.strip() or "exit code %d" % run.returncode)
        with open(result, encoding="utf-8") as file:
            return json.load(file), ""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--kelvo", required=True)
    parser.add_argument("--class", dest="kind", default="lp")
    parser.add_argument("--time-limit", type=float, default=60)
    parser.add_argument("--names", help="comma list")
    arguments = parser.parse_args()
    folder = os.environ.get("KELVO_BENCH_DATA")
    instances = list(public_instances(folder, arguments.kind)) if folder else list(own_instances())
    if arguments.names:
        instances = [instance for instance in instances if instance[0] in arguments.names.split(",")]
    times, wrong = [], 0
    print("%-20s %9s %9s %9s %10s  %s" % ("instance", "rows", "columns", "seconds", "iterations", "verdict"))
    for name, path, reference, offset in instances:
        outcome, fault = solve(os.path.abspath(arguments.kelvo), path, arguments.time_limit)
        if outcome is None:
            print("%-20s %9s %9s %9s %10s  %s" % (name, "", "", "", "", fault))
            times.append(arguments.time_limit)
            wrong += 1
            continue
        judged = verdict(outcome, reference, offset)
        wrong += judged.startswith("WRONG")
        times.append(outcome["time"] if judged == "ok" else arguments.time_limit)
        print("%-20s %9d %9d %9.2f %10d  %s" % (name, outcome["rows"], outcome["columns"], outcome["time"],
                                                outcome["iterations"], judged), flush=True)
    if times:
        mean = math.exp(sum(math.log(time + SHIFT) for time in times) / len(times)) - SHIFT
        print("%d instances, %d wrong or failed, shifted geometric mean %.3f s (shift %g)" % (len(times), wrong, mean, SHIFT))
    return 1 if wrong or not times else 0


if __name__ == "__main__":
    sys.exit(main())
