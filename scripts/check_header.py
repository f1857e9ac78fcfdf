#!/usr/bin/env python3
"""Checks the public header against the rules and against the library.

kelvo.h compiles by itself as C99 (pedantic) and as C++; each declaration has a comment; the library
exports exactly the functions that the header declares, and the entry points of the Java bridge. Each
section of the header has its file in src/api, with the same functions, each error code that the
library uses has its macro, and the header says of every parameter what the parameter table says:
its number, its meaning, and whether some part of the library reads it.
"""
import argparse
import glob
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
SOURCES = os.path.join(HERE, "..", "src")
READ_BY_THE_PARAMETERS = ("SCRIND",)  # takes effect when it is set
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


def sections(header):
    """The functions of each section that has any, by its title."""
    result, title = {}, None
    with open(header, encoding="utf-8") as file:
        for line in file:
            heading = re.match(r"/\* ---- (.*?) -+ \*/$", line)
            if heading:
                title = heading.group(1)
            found = re.search(r"\b(KLV\w+)\s*\(", line[len("KLV_API"):]) if line.startswith("KLV_API") else None
            if found:
                result.setdefault(title, set()).add(found.group(1))
    return result


def api_files(folder):
    """The functions that each file defines, by its path."""
    result = {}
    for path in sorted(glob.glob(os.path.join(folder, "*.cpp"))):
        with open(path, encoding="utf-8") as file:
            result[os.path.relpath(path, os.path.join(folder, "..", ".."))] = set(
                re.findall(r"^(?!static_assert)[A-Za-z][\w ]*[ *]+(KLV\w+)\(", file.read(), re.MULTILINE))
    return result


def check_sections(header, folder, complain):
    file_of = {name: path for path, names in api_files(folder).items() for name in names}
    owner = {}
    for title, names in sections(header).items():
        for name in sorted(names - file_of.keys()):
            complain("%s has no file in src/api" % name)
        files = sorted({file_of[name] for name in names & file_of.keys()})
        if len(files) > 1:
            complain("section '%s' is spread over %s" % (title, ", ".join(files)))
        for file in files:
            if file in owner:
                complain("%s has functions of the sections '%s' and '%s'" % (file, owner[file], title))
            owner[file] = title


def macro_of(code):
    """kNotANumber -> KLV_ERROR_NOT_A_NUMBER."""
    return "KLV_ERROR_" + re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", "_", code[1:]).upper()


def check_error_codes(header, sources, complain):
    with open(header, encoding="utf-8") as file:
        macros = set(re.findall(r"#define (KLV_ERROR_\w+)", file.read()))
    used = set()
    for path in glob.glob(os.path.join(sources, "**", "*.[ch]*"), recursive=True):
        if os.path.basename(path) in ("error_code.h", "error_table.cpp", "header_values.cpp"):
            continue  # the names themselves, and the tables of all of them
        with open(path, encoding="utf-8") as file:
            used.update(macro_of(code) for code in re.findall(r"\berror::(k\w+)", file.read()))
    for macro in sorted(used - macros):
        complain("%s is missing: the library uses that code" % macro)
    for macro in sorted(macros - used):
        complain("%s is not used by the library" % macro)


def check_parameters(header, sources, complain):
    """A parameter that the library does not read is unused(...) in the table, * in the header."""
    path = os.path.join(sources, "env", "params", "param_table.cpp")
    if not os.path.exists(path):
        return
    with open(path, encoding="utf-8") as file:
        table = {name: (not unused, meaning) for unused, name, meaning in
                 re.findall(r"^ +(unused\()?\w+\(NAMED\((\w+)\).*\"([^\"]*)\"\)", file.read(), re.MULTILINE)}
    with open(header, encoding="utf-8") as file:
        told = {name: (star == "", meaning) for name, star, meaning in
                re.findall(r"^#define KLV_PARAM_(\w+) +\d+ /\* (\* )?(.*) \*/$", file.read(), re.MULTILINE)}
    read = set()
    for path in glob.glob(os.path.join(sources, "**", "*.[ch]*"), recursive=True):
        if os.path.join("env", "params", "") not in path and os.path.basename(path) != "header_values.cpp":
            with open(path, encoding="utf-8") as file:
                read.update(re.findall(r"\bparam::([A-Z]\w*)", file.read()))
    for name in sorted(table.keys() | told.keys()):
        if table.get(name) != told.get(name):
            complain("KLV_PARAM_%s: the header says %s, the table %s" % (name, told.get(name), table.get(name)))
    for name, (effective, _) in sorted(table.items()):
        if effective and name not in read and name not in READ_BY_THE_PARAMETERS:
            complain("KLV_PARAM_%s is read by nobody: mark it unused(...) in param_table.cpp and * in kelvo.h" % name)
        if not effective and name in read:
            complain("KLV_PARAM_%s is read: it is no longer unused(...) in param_table.cpp, nor * in kelvo.h" % name)


def exported(library):
    run = subprocess.run(["nm", "--dynamic", "--defined-only", "--extern-only", library],
                         capture_output=True, text=True, check=True)
    return {line.split()[-1].split("@")[0] for line in run.stdout.splitlines() if line.split()}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--header", default=os.path.join(HERE, "..", "include", "kelvo.h"))
    parser.add_argument("--sources", default=SOURCES, help="the folder src")
    parser.add_argument("--library", help="the shared library to compare with")
    arguments = parser.parse_args()
    faults = []
    check_compiles(arguments.header, faults.append)
    check_sections(arguments.header, os.path.join(arguments.sources, "api"), faults.append)
    check_error_codes(arguments.header, arguments.sources, faults.append)
    check_parameters(arguments.header, arguments.sources, faults.append)
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
