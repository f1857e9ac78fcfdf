#!/usr/bin/env python3
"""Checks who includes whom.

A file of src/ includes only files of its own folder (with everything below it) or of a folder on a
lower floor; folders on the same floor do not see each other. The public header and the API frame
are for the files named api_*. The command, the examples and the contract tests see kelvo.h alone.
"""
import argparse
import os
import re
import sys

FLOORS = {
    "base": 0,
    "env": 1,
    "prob": 2,
    "io": 3,
    "lp": 3,
    "qp": 4,
    "analysis": 4,
    "mip": 5,
    "jni": 6,
}
OUTSIDE = ("tools", "examples", os.path.join("tests", "api"))  # they see the public header alone
SOURCES = (".h", ".hpp", ".c", ".cpp")
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')


def includes(path):
    """Yields (line number, quoted or not, name) of each include line of a file."""
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            found = INCLUDE.match(line)
            if found:
                yield number, found.group(1) == '"', found.group(2)


def sources(folder):
    for where, folders, files in os.walk(folder):
        folders.sort()
        for name in sorted(files):
            if name.endswith(SOURCES):
                yield os.path.join(where, name)


def is_api(path):
    return os.path.basename(path).startswith("api_")


def check_library(root, complain):
    source = os.path.join(root, "src")
    for path in sources(source):
        inside = os.path.relpath(path, source)
        folder = inside.split(os.sep)[0]
        if folder not in FLOORS:
            complain(path, 1, "the folder src/%s has no floor" % folder)
            continue
        for number, _, name in includes(path):
            if name == "kelvo.h" or name.endswith("/kelvo.h"):
                if not is_api(path) and folder != "jni":
                    complain(path, number, "only api_* files include kelvo.h")
                continue
            beside = os.path.normpath(os.path.join(os.path.dirname(path), name))
            if os.path.exists(beside):
                target = beside
            elif os.path.exists(os.path.join(source, name)):
                target = os.path.normpath(os.path.join(source, name))
            else:
                continue  # a header of the system
            target_folder = os.path.relpath(target, source).split(os.sep)[0]
            if is_api(target) and not is_api(path):
                complain(path, number, "only api_* files include the API's headers (%s)" % name)
            if folder == "jni":
                complain(path, number, "the Java bridge sees kelvo.h alone, not %s" % name)
            elif target_folder != folder and FLOORS.get(target_folder, 99) >= FLOORS[folder]:
                complain(path, number, "%s (floor %d) may not include %s" % (folder, FLOORS[folder], name))


def check_outside(root, complain):
    source = os.path.join(root, "src")
    for folder in OUTSIDE:
        for path in sources(os.path.join(root, folder)):
            for number, quoted, name in includes(path):
                beside = os.path.normpath(os.path.join(os.path.dirname(path), name))
                inside = os.path.commonpath([os.path.abspath(beside), os.path.abspath(source)])
                if inside == os.path.abspath(source) or (
                    not os.path.exists(beside) and os.path.exists(os.path.join(source, name))
                ):
                    complain(path, number, "%s sees kelvo.h alone, not %s" % (folder, name))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--root", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    arguments = parser.parse_args()
    root = os.path.normpath(arguments.root)
    faults = []

    def complain(path, line, text):
        faults.append("%s:%d: %s" % (os.path.relpath(path, root), line, text))

    check_library(root, complain)
    check_outside(root, complain)
    for fault in faults:
        print(fault)
    print("floors: %s" % ("%d faults" % len(faults) if faults else "in order"))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
