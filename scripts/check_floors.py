#!/usr/bin/env python3
"""Checks who includes whom.

A file of src/ includes only files of its own folder (with everything below it) or of a folder on a
lower floor; folders on the same floor do not see each other. The folders inside lp/ and mip/ have
floors of their own, and the rooms named by PRIVATE are for the folder they are in. The public
header and the API's headers are for src/api/ alone. The command, the examples and the contract
tests see kelvo.h alone.
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
    "net": 3,
    "lp": 4,
    "qp": 5,
    "analysis": 5,
    "mip": 6,
    "api": 7,
    "jni": 8,
}
SUBFLOORS = {
    "api": {"frame": 0, "": 1},
    "lp": {
        "form": 0,
        "factor": 0,
        "simplex": 1,
        "presolve": 1,
        "crossover": 2,
        "first_order": 2,
        "barrier": 2,
        "sifting": 2,
        "solve": 3,
        "tableau": 4,
    },
    "mip": {
        "form": 0,
        "domain": 1,
        "presolve": 2,
        "relaxation": 2,
        "cuts": 3,
        "heuristics": 3,
        "tree": 4,
        "solve": 5,
    },
}
# Rooms that only the files of the folder around them see: the others go through its headers.
PRIVATE = {
    os.path.join("lp", "factor"): ("lu",),
    os.path.join("lp", "simplex"): ("state", "dual", "primal"),
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


def rooms(inside):
    """The folder of src/ that a file is in, and the folder inside that ("" for none)."""
    parts = inside.split(os.sep)
    return parts[0], parts[1] if len(parts) > 2 else ""


def resolve(path, source, name):
    """The included file as a path inside src/, or None for a header of the system."""
    beside = os.path.normpath(os.path.join(os.path.dirname(path), name))
    if os.path.exists(beside):
        return os.path.relpath(beside, source)
    inside = os.path.normpath(name)
    return inside if os.path.exists(os.path.join(source, inside)) else None


def check_private(path, number, inside, target, complain):
    for folder, names in PRIVATE.items():
        if inside.startswith(folder + os.sep):
            continue
        for name in names:
            room = os.path.join(folder, name)
            if target.startswith(room + os.sep):
                complain(path, number, "%s is for the files of %s alone" % (room, folder))


def check_include(path, number, rooms_of_file, rooms_of_target, complain):
    folder, room = rooms_of_file
    target, target_room = rooms_of_target
    if folder == "jni":
        complain(path, number, "the Java bridge sees kelvo.h alone, not src/%s" % target)
    elif target != folder:
        if FLOORS.get(target, 99) >= FLOORS[folder]:
            complain(path, number, "%s (floor %d) may not include from %s" % (folder, FLOORS[folder], target))
    elif folder in SUBFLOORS and target_room != room:
        floors = SUBFLOORS[folder]
        if floors.get(target_room, 99) >= floors.get(room, -1):
            complain(path, number, "%s/%s may not include from %s/%s" % (folder, room, folder, target_room))


def check_library(root, complain):
    source = os.path.join(root, "src")
    for path in sources(source):
        inside = os.path.relpath(path, source)
        folder, room = rooms(inside)
        if folder not in FLOORS:
            complain(path, 1, "the folder src/%s has no floor" % folder)
            continue
        if folder in SUBFLOORS and room not in SUBFLOORS[folder]:
            complain(path, 1, "the folder src/%s has no floor" % os.path.dirname(inside))
            continue
        for number, _, name in includes(path):
            if name == "kelvo.h" or name.endswith("/kelvo.h"):
                if folder not in ("api", "jni"):
                    complain(path, number, "only src/api includes kelvo.h")
                continue
            target = resolve(path, source, name)
            if target is not None:
                check_include(path, number, (folder, room), rooms(target), complain)
                check_private(path, number, inside, target, complain)


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
