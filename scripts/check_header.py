#!/usr/bin/env python3
"""Checks the public header against the rules and against the library.

kelvo.h compiles by itself as C99 (pedantic) and as C++; a comment stands before each declaration;
the library exports exactly the functions that the header declares, and the entry points of the
Java bridge.
"""
import argparse
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
JAVA = "Java_zeph_kelvo_Kelvo_"
COMPILERS = (
    ("C99", ".c", ["-std=c99"]),
    ("C++11", ".cpp", ["-std=c++11"]),
    ("C++20", ".cpp", ["-std=c++20"]),
)


def check_compiles(header, complain):
    folder, name = os.path.split(os.path.abspath(header))
    with tempfile.TemporaryDirectory() as scratch:
        for language, ending, flags in COMPILERS:
            source = os.path.join(scratch, "header" + ending)
            with open(source, "w", encoding="utf-8") as file:
                # Twice: the header must guard itself.
                file.write('#include "%s"\n#include "%s"\nint main(void) { return 0; }\n' % (name, name))
            compiler = os.environ.get("CXX", "g++") if ending == ".cpp" else os.environ.get("CC", "gcc")
            run = subprocess.run(
                [compiler, *flags, "-Wall", "-Wextra", "-pedantic-errors", "-Werror", "-fsyntax-only", "-I", folder, source],
                capture_output=True, text=True, check=False)
            if run.returncode != 0:
                complain("does not compile as %s:\n%s" % (language, run.stderr))


def declarations(header):
    """Yields (line number, function name, comment before it or not) of each KLV_API declaration.

    A comment covers the declaration after it, and declarations that follow that one without an
    empty line between when the comment names them.
    """
    with open(header, encoding="utf-8") as file:
        lines = file.read().split("\n")
    comment, in_comment, fresh, text = "", False, False, ""
    for number, line in enumerate(lines, 1):
        stripped = line.strip()
        if in_comment or stripped.startswith("/*"):
            comment = comment + stripped if in_comment else stripped
            in_comment = "*/" not in stripped
            fresh = True
            continue
        if not stripped:
            comment, fresh = "", False
            continue
        if text or stripped.startswith("KLV_API"):
            text = (text + " " + stripped).strip()
            if not stripped.endswith(";"):
                continue
            found = re.search(r"\b(KLV\w+)\s*\(", re.sub(r"^KLV_API", "", text))
            if found:
                name = found.group(1)
                yield number, name, fresh or re.search(r"\b%s\b" % name, comment) is not None
            text, fresh = "", False


def exported(library):
    run = subprocess.run(["nm", "--dynamic", "--defined-only", "--extern-only", library],
                         capture_output=True, text=True, check=True)
    return {line.split()[-1].split("@")[0] for line in run.stdout.splitlines() if line.split()}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--header", default=os.path.join(HERE, "..", "include", "kelvo.h"))
    parser.add_argument("--library", help="the shared library to compare with")
    arguments = parser.parse_args()
    faults = []
    check_compiles(arguments.header, faults.append)
    declared = {}
    for line, name, documented in declarations(arguments.header):
        if name in declared:
            faults.append("line %d: %s is declared twice" % (line, name))
        declared[name] = line
        if not documented:
            faults.append("line %d: %s has no comment" % (line, name))
    if arguments.library:
        symbols = exported(arguments.library)
        faults += ["%s is declared and not exported" % name for name in sorted(declared.keys() - symbols)]
        faults += ["%s is exported and not declared" % name for name in sorted(symbols - declared.keys())
                   if not name.startswith(JAVA)]
    for fault in faults:
        print("kelvo.h: " + fault)
    print("header: %d functions, %s" % (len(declared), "%d faults" % len(faults) if faults else "in order"))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
