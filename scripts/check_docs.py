#!/usr/bin/env python3
"""Checks that the files and folders that the documents name exist.

A name is a word in backticks that has a slash, or ends like a source; it is looked up in the tree
and in src/. Names with a placeholder in capitals (`fuzz_NAME.cpp`) or a dollar sign are left alone.
"""
import glob
import os
import re
import sys

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
NAME = re.compile(r"`([a-z0-9_.*][A-Za-z0-9_.*/-]*)`")
SOURCE = re.compile(r"\.(h|cpp|c|py|sh|md)$")
PLACEHOLDER = re.compile(r"(?<![A-Za-z])[A-Z]{3,}(?![A-Za-z.])")
ELSEWHERE = ("build/", "/")          # made by a build, or outside the tree
PLANNED = ("src/mip/", "src/jni/")  # have their floor, but no files yet


def names(path):
    with open(path, encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            for name in NAME.findall(line):
                is_path = "/" in name or SOURCE.search(name)
                if is_path and not name.startswith(ELSEWHERE + PLANNED) and not PLACEHOLDER.search(name):
                    yield number, name


def main():
    faults = 0
    documents = sorted(glob.glob(os.path.join(ROOT, "*.md")) + glob.glob(os.path.join(ROOT, "docs", "*.md")))
    for document in documents:
        for number, name in names(document):
            places = (name, os.path.join("src", name), os.path.join("src", "**", name), os.path.join("include", name))
            if not any(glob.glob(os.path.join(ROOT, place), recursive=True) for place in places):
                print("%s:%d: there is no %s" % (os.path.relpath(document, ROOT), number, name))
                faults += 1
    print("documents: %s" % ("%d faults" % faults if faults else "in order"))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
