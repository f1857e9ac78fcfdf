#!/usr/bin/env python3
"""Runs clang-tidy over the library's and the command's sources.

    tidy.py --build build/release [--since COMMIT] [--seconds 100] [--jobs 2]

With --since, only over those that differ from the commit; a header that differs is seen through the
source of its name, or else through one that includes it. All of them together take about half an
hour of processor time, which is why CI looks at what has changed and `make tidy` at everything.
With --seconds, what has not been started by then is named and left out.
"""
import argparse
import concurrent.futures
import json
import os
import re
import subprocess
import sys
import time

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
CHECKED = ("src/", "tools/")


def compiled_sources(build):
    """The checked sources that the build compiles, by path inside the tree."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        paths = {os.path.relpath(os.path.join(row["directory"], row["file"]), ROOT) for row in json.load(file)}
    return sorted(path for path in paths if path.startswith(CHECKED))


def changed_files(commit):
    command = ["git", "-C", ROOT, "diff", "--name-only", "--diff-filter=d", commit, "--", *CHECKED]
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.split()


def source_for(header, sources):
    """A source that shows the header: the one of its name, or the first that includes it."""
    own = os.path.splitext(header)[0] + ".cpp"
    if own in sources:
        return own
    name = header.split("/", 1)[1] if header.startswith("src/") else os.path.basename(header)
    include = re.compile(r'^\s*#\s*include\s*"%s"' % re.escape(name), re.MULTILINE)
    for source in sources:
        with open(os.path.join(ROOT, source), encoding="utf-8") as file:
            if include.search(file.read()):
                return source
    return None


def selected(sources, commit):
    if commit is None:
        return sources
    found = set()
    for path in changed_files(commit):
        source = path if path in sources else source_for(path, sources) if path.endswith(".h") else None
        if source is not None:
            found.add(source)
    return sorted(found)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "release"))
    parser.add_argument("--since", metavar="COMMIT")
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    arguments = parser.parse_args()
    build = os.path.abspath(arguments.build)
    sources = selected(compiled_sources(build), arguments.since)
    begun = time.monotonic()

    def check(source):
        if arguments.seconds is not None and time.monotonic() - begun > arguments.seconds:
            return None
        command = ["clang-tidy", "-quiet", "-p", build, source]
        return subprocess.run(command, cwd=ROOT, capture_output=True, text=True, check=False)

    faults, left_out = 0, []
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for source, run in zip(sources, pool.map(check, sources)):
            if run is None:
                left_out.append(source)
            elif run.returncode != 0:
                faults += 1
                print("%s:\n%s%s" % (source, run.stdout, run.stderr), flush=True)
    if left_out:
        print("clang-tidy: no time for %s" % " ".join(left_out))
    print("clang-tidy: %d of %d sources, %d with findings" % (len(sources) - len(left_out), len(sources), faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
