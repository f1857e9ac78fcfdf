#!/usr/bin/env python3
"""Prints how many lines of src/ the fast tests run, by folder, and the least covered files.

    coverage.py BUILD_FOLDER [--files 10] [--lines FILE]

The build is that of the preset "coverage" (`make coverage` makes it and runs the tests). A line counts
as covered when any of the programs has run it; what gcov says comes in its JSON form. --lines lists
the lines of a file that were never run.
"""
import argparse
import collections
import concurrent.futures
import json
import os
import subprocess

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
SOURCES = os.path.join(ROOT, "src") + os.sep


def counters(build):
    """The files of counters that the library's objects have left."""
    for where, _, files in os.walk(os.path.join(build, "CMakeFiles", "kelvo_objects.dir")):
        for name in files:
            if name.endswith(".gcda"):
                yield os.path.join(where, name)


def lines_of(counter):
    """(file, line, executions) of everything one object has counted."""
    run = subprocess.run(["gcov", "--json-format", "--stdout", os.path.basename(counter)],
                         cwd=os.path.dirname(counter), capture_output=True, check=True)
    for text in run.stdout.splitlines():
        data = json.loads(text)
        folder = data["current_working_directory"]
        for file in data["files"]:
            path = os.path.normpath(os.path.join(folder, file["file"]))
            if path.startswith(SOURCES):
                for line in file["lines"]:
                    yield path[len(ROOT) + 1:], line["line_number"], line["count"]


def gather(build):
    """Executions by file and line."""
    total = collections.defaultdict(lambda: collections.defaultdict(int))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for rows in pool.map(lambda counter: list(lines_of(counter)), counters(build)):
            for path, line, count in rows:
                total[path][line] += count
    return total


def row(name, lines):
    hit = sum(count > 0 for count in lines)
    return "%-50s %6d of %6d  %5.1f %%" % (name, hit, len(lines), 100.0 * hit / len(lines))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--files", type=int, default=10)
    parser.add_argument("--lines", metavar="FILE")
    arguments = parser.parse_args()
    total = gather(arguments.build)
    if not total:
        raise SystemExit("no counters in %s: run the tests of that build first" % arguments.build)
    if arguments.lines:
        with open(os.path.join(ROOT, arguments.lines), encoding="utf-8") as file:
            text = file.read().splitlines()
        for line, count in sorted(total[arguments.lines].items()):
            if count == 0:
                print("%5d  %s" % (line, text[line - 1]))
        return
    folders = collections.defaultdict(list)
    for path, lines in total.items():
        folders[os.path.dirname(path).split(os.sep + "lp" + os.sep)[0]].extend(lines.values())
    for folder in sorted(folders):
        print(row(folder, folders[folder]))
    print(row("all", [count for lines in total.values() for count in lines.values()]))
    print("\nLeast covered, by lines never run:")
    missing = {path: sum(count == 0 for count in lines.values()) for path, lines in total.items()}
    for path in sorted(missing, key=missing.get, reverse=True)[:arguments.files]:
        print(row(path, list(total[path].values())))


if __name__ == "__main__":
    main()
