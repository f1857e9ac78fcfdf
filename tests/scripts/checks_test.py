#!/usr/bin/env python3
"""The checks of the sources find each kind of fault, and nothing in a tree that is in order."""
import os
import subprocess
import sys
import tempfile
import unittest

SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")

IN_ORDER = {
    "src/base/memory.h": "#pragma once\n",
    "src/env/channel.h": '#include "base/memory.h"\n',
    "src/api/frame/api_frame.h": '#include "kelvo.h"\n#include "env/channel.h"\n',
    "src/api/query.cpp": '#include <vector>\n#include "api/frame/api_frame.h"\n#include "kelvo.h"\n',
    "src/lp/factor/lu.h": '#include "base/memory.h"\n',
    "src/lp/simplex/dual/iteration.cpp": '#include "lp/factor/lu.h"\n#include "lp/simplex/state/state.h"\n',
    "src/lp/simplex/state/state.h": "",
    "src/io/reader.h": "",
    "src/jni/bridge.cpp": '#include "kelvo.h"\n',
    "tools/kelvo/main.cpp": '#include "kelvo.h"\n#include "options.h"\n',
    "tools/kelvo/options.h": "",
    "tests/api/query_test.cpp": '#include "kelvo.h"\n',
}


def write(root, files):
    for name, text in files.items():
        path = os.path.join(root, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


class Floors(unittest.TestCase):
    def check(self, changes):
        with tempfile.TemporaryDirectory() as root:
            write(root, {**IN_ORDER, **changes})
            run = subprocess.run([sys.executable, os.path.join(SCRIPTS, "check_floors.py"), "--root", root],
                                 capture_output=True, text=True, check=False)
            return run.returncode, run.stdout

    def test_a_tree_in_order_passes(self):
        self.assertEqual(self.check({}), (0, "floors: in order\n"))

    def test_each_fault_is_found(self):
        faults = {
            "upward": {"src/base/memory.h": '#include "env/channel.h"\n'},
            "upward, relative": {"src/base/memory.h": '#  include "../env/channel.h"\n'},
            "sideways": {"src/io/reader.h": '#include "net/graph.h"\n', "src/net/graph.h": ""},
            "public header in an engine": {"src/lp/factor/lu.h": '#include "kelvo.h"\n'},
            "frame in an engine": {"src/lp/factor/lu.h": '#include "api/frame/api_frame.h"\n'},
            "frame sees a function": {"src/api/frame/api_frame.h": '#include "api/query.cpp"\n'},
            "upward inside a folder": {"src/lp/factor/lu.h": '#include "lp/simplex/state/state.h"\n'},
            "room of another folder": {"src/lp/solve/a.cpp": '#include "lp/simplex/state/state.h"\n'},
            "room without a floor": {"src/lp/elsewhere/a.h": "\n"},
            "no floor": {"src/elsewhere/a.cpp": "\n"},
            "bridge sees insides": {"src/jni/bridge.cpp": '#include "prob/../base/memory.h"\n'},
            "command sees insides": {"tools/kelvo/options.h": '#include "base/memory.h"\n'},
            "contract test sees insides": {"tests/api/query_test.cpp": '#include "../../src/env/channel.h"\n'},
        }
        for kind, changes in faults.items():
            with self.subTest(kind):
                status, output = self.check(changes)
                self.assertEqual(status, 1, output)
                self.assertIn(next(iter(changes)), output)


HEADER = """#ifndef KELVO_H
#define KELVO_H
#include <stdio.h>
%s
#ifdef __cplusplus
extern "C" {
#endif
%s
#ifdef __cplusplus
}
#endif
#endif
"""


class Header(unittest.TestCase):
    def check(self, declarations, definitions=None, sources=None):
        with tempfile.TemporaryDirectory() as root:
            header = os.path.join(root, "kelvo.h")
            write(root, {"kelvo.h": HEADER % ("#define KLV_API", declarations)})
            write(root, {"src/api/all.cpp": definitions or ""} if sources is None else sources)
            command = [sys.executable, os.path.join(SCRIPTS, "check_header.py"), "--header", header,
                       "--sources", os.path.join(root, "src")]
            if definitions is not None:
                write(root, {"library.c": definitions})
                library = os.path.join(root, "library.so")
                subprocess.run(["gcc", "-shared", "-fPIC", os.path.join(root, "library.c"), "-o", library], check=True)
                command += ["--library", library]
            run = subprocess.run(command, capture_output=True, text=True, check=False)
            return run.returncode, run.stdout

    GOOD = "/* Counts. */\nKLV_API int KLVcount(int a,\n                     int b);\n"
    BODY = "int KLVcount(int a, int b) { return a + b; }\n"

    def test_a_header_in_order_passes(self):
        status, output = self.check(self.GOOD, self.BODY + "void Java_zeph_kelvo_Kelvo_count(void) {}\n")
        self.assertEqual((status, output), (0, "header: 1 functions, in order\n"))

    def test_each_fault_is_found(self):
        cases = {
            "no comment": (self.GOOD + "\nKLV_API int KLVother(void);\n", self.BODY + "int KLVother(void) { return 0; }\n"),
            "comment of another": (self.GOOD + "KLV_API int KLVother(void);\n", self.BODY + "int KLVother(void) { return 0; }\n"),
            "not exported": (self.GOOD, ""),
            "not declared": (self.GOOD, self.BODY + "int KLVother(void) { return 0; }\n"),
            "leak": (self.GOOD, self.BODY + "int helper(void) { return 0; }\n"),
            "not C99": (self.GOOD + "/* x */\nstatic const int here = 0; // c++ comment\nint f(int x = 0);\n", self.BODY),
            "not C++": (self.GOOD + "/* x */\ntypedef int class;\n", self.BODY),
        }
        for kind, (declarations, definitions) in cases.items():
            with self.subTest(kind):
                status, output = self.check(declarations, definitions)
                self.assertEqual(status, 1, output)

    def test_sections_have_their_files(self):
        two = "/* ---- A ---- */\n" + self.GOOD + "/* ---- B ---- */\n/* x */\nKLV_API void* KLVother(void);\n"
        other = "void* KLVother(void) { return 0; }\n"
        self.assertEqual(self.check(two, sources={"src/api/a.cpp": self.BODY, "src/api/b.cpp": other})[0], 0)
        for kind, sources in {"one file for two sections": {"src/api/a.cpp": self.BODY + other},
                              "a function without a file": {"src/api/a.cpp": self.BODY}}.items():
            with self.subTest(kind):
                self.assertEqual(self.check(two, sources=sources)[0], 1)
        one = self.GOOD + "/* x */\nKLV_API void* KLVother(void);\n"
        self.assertEqual(self.check(one, sources={"src/api/a.cpp": self.BODY, "src/api/b.cpp": other})[0], 1)

    def test_error_codes_have_their_macros(self):
        uses = {"src/api/a.cpp": self.BODY + "// error::kNotANumber\n"}
        macro = "#define KLV_ERROR_NOT_A_NUMBER 1434\n"
        self.assertEqual(self.check(macro + self.GOOD, sources=uses)[0], 0)
        self.assertEqual(self.check(self.GOOD, sources=uses)[0], 1)
        self.assertEqual(self.check(macro + self.GOOD, self.BODY)[0], 1)

    def test_parameters_agree_with_the_table(self):
        table = '    integer(NAMED(ITLIM), 5, 0, 9, "limit"),\n    unused(real(NAMED(EPGAP), 1, 0, 9, "gap")),\n'
        macros = "#define KLV_PARAM_ITLIM 1020 /* limit */\n#define KLV_PARAM_EPGAP 2009 /* * gap */\n"
        reads = self.BODY + "// get_int(param::ITLIM)\n"

        def status(macros, table, code):
            return self.check(macros + self.GOOD, sources={"src/env/params/param_table.cpp": table,
                                                           "src/api/a.cpp": code})[0]

        self.assertEqual(status(macros, table, reads), 0)
        self.assertEqual(status(macros.replace("limit", "other"), table, reads), 1)
        self.assertEqual(status(macros.replace("* * gap", "* gap"), table, reads), 1)
        self.assertEqual(status(macros, table, self.BODY), 1)
        self.assertEqual(status(macros, table, reads + "// param::EPGAP\n"), 1)


if __name__ == "__main__":
    unittest.main()
