#!/usr/bin/env python3
"""The command as a user meets it: options, files, exit codes, errors, Ctrl-C.

    command_test.py KELVO SOURCE_DIR
"""
import bz2
import gzip
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import unittest

KELVO = SOURCE = MODELS = ""
KEYS = {"status", "status_string", "objective", "best_bound", "gap", "nodes", "nodes_left", "iterations", "time",
        "rows", "columns", "nonzeros"}
INFEASIBLE = "Minimize\n x + y\nSubject To\n low: x + y >= 3\n high: x + y <= 1\nEnd\n"
UNBOUNDED = "Maximize\n x + y\nSubject To\n c1: x - y <= 1\nEnd\n"


class Command(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = scratch.name

    def path(self, name):
        return os.path.join(self.scratch, name)

    def file(self, name, text):
        with open(self.path(name), "wb" if isinstance(text, bytes) else "w") as file:
            file.write(text)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def kelvo(self, *arguments):
        return subprocess.run([KELVO, *arguments], capture_output=True, text=True, check=False,
                              stdin=subprocess.DEVNULL, cwd=self.scratch, timeout=100)

    def succeed(self, *arguments):
        run = self.kelvo(*arguments)
        self.assertEqual((run.returncode, run.stderr), (0, ""), run.stdout)
        return run.stdout

    def fail_with(self, words, *arguments):
        """The command ends with 1 and one line on standard error that has the words."""
        run = self.kelvo(*arguments)
        self.assertEqual(run.returncode, 1, run.stdout + run.stderr)
        told = re.sub(r"^\ngzip: .*\n", "", run.stderr)  # gzip speaks for itself
        self.assertEqual(told.count("\n"), 1, run.stderr)
        self.assertTrue(told.startswith("kelvo: "), run.stderr)
        for word in [words] if isinstance(words, str) else words:
            self.assertIn(word, run.stderr)
        return run

    def outcome(self, *arguments):
        """Solves and returns the JSON object."""
        self.succeed(*arguments, "--json", self.path("outcome.json"))
        outcome = json.loads(self.read("outcome.json"))
        self.assertEqual(set(outcome), KEYS)
        return outcome


class Solving(Command):
    def test_the_examples_have_their_answers(self):
        with open(os.path.join(MODELS, "answers.tsv"), encoding="utf-8") as file:
            answers = [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]
        solved = 0
        for model, status, objective in answers:
            for method in ("auto", "primal", "dual"):
                with self.subTest(model=model, method=method):
                    outcome = self.outcome(os.path.join(MODELS, model), "--method", method)
                    self.assertEqual(outcome["status_string"], status)
                    self.assertAlmostEqual(outcome["objective"] / float(objective), 1.0, delta=1e-8)
                    solved += 1
        self.assertGreater(solved, 0)

    def test_log_and_summary(self):
        output = self.succeed(os.path.join(MODELS, "diet.lp"), "--log", self.path("copy.log"))
        self.assertIn("6 rows, 7 columns, 38 nonzeros", output)
        self.assertRegex(output, r"Status: +optimal\nObjective: +8\.22993\d*\nIterations: +\d+\nTime: +\d+\.\d\d s\n$")
        self.assertEqual(self.read("copy.log"), output)
        quiet = self.succeed(os.path.join(MODELS, "diet.lp"), "--quiet")
        self.assertTrue(quiet.startswith("Status:"), quiet)
        self.assertLess(len(quiet.split("\n")), 7)

    def test_outcomes_without_an_optimum_exit_0(self):
        outcome = self.outcome(self.file("infeasible.lp", INFEASIBLE), "--values", self.path("values"))
        self.assertIn(outcome["status"], (3, 4))
        self.assertIsNone(outcome["objective"])
        self.assertEqual(self.read("values"), "")
        outcome = self.outcome(self.file("unbounded.lp", UNBOUNDED))
        self.assertIn(outcome["status"], (2, 4))
        outcome = self.outcome(os.path.join(MODELS, "plan.mps"), "--time-limit", "0")
        self.assertEqual((outcome["status"], outcome["status_string"]), (11, "time limit exceeded"))
        outcome = self.outcome(os.path.join(MODELS, "plan.mps"), "--set", "itlim=1", "--set", "PREIND=0")
        self.assertEqual(outcome["status"], 10)

    def test_values_give_the_objective(self):
        outcome = self.outcome(os.path.join(MODELS, "diet.lp"), "--values", self.path("values"))
        values = dict(line.split() for line in self.read("values").splitlines())
        cost = {"oats": 0.30, "milk": 0.55, "lentils": 0.70, "bread": 0.40, "salmon": 2.40, "apples": 0.65,
                "spinach": 0.90}
        self.assertAlmostEqual(sum(cost[name] * float(value) for name, value in values.items()),
                               outcome["objective"], delta=1e-12)
        self.assertNotIn("salmon", values)

    def test_odd_models(self):
        empty = self.outcome(self.file("empty.lp", "Minimize\n\nSubject To\nEnd\n"))
        self.assertEqual((empty["status"], empty["rows"], empty["columns"]), (1, 0, 0))
        spaced = self.file("two words & \"quotes\".lp", "Maximize\n x\nSubject To\n c1: x <= 4\nEnd\n")
        self.assertEqual(self.outcome(spaced)["objective"], 4.0)

    def test_integer_programs(self):
        depots = os.path.join(MODELS, "depots.lp")
        output = self.succeed(depots)
        self.assertIn("   Node  Left     Objective  IInf  Best Integer     Best Node    ItCnt     Gap\n", output)
        self.assertRegex(output, r"Best bound: +1695\nGap: +0 %\nNodes: +\d+\nIterations: +\d+\n")
        outcome = self.outcome(depots)
        self.assertEqual((outcome["best_bound"], outcome["gap"], outcome["nodes_left"]), (1695, 0, 0))
        stopped = self.outcome(depots, "--node-limit", "0", "--set", "PREIND=0")
        self.assertIn(stopped["status"], (105, 106))
        self.assertLessEqual(stopped["best_bound"], 1695)
        first = self.outcome(depots, "--first")
        self.assertIn(first["status"], (101, 102, 104))
        wide = self.outcome(depots, "--gap", "0.9")
        self.assertEqual(wide["status"], 102 if wide["gap"] > 0 else 101)
        relaxed = self.outcome(depots, "--relax", "--values", self.path("values"))
        self.assertEqual(relaxed["status"], 1)
        self.assertLess(relaxed["objective"], 1695)  # the integer optimum
        self.assertIn("open_w", self.read("values"))

    def test_a_relaxation_keeps_names_numbers_and_senses(self):
        self.file("mixed.lp", """Maximize
 profit: 3 alpha + 2 beta - gamma + delta
Subject To
 first: alpha + beta <= 4.5
 second: alpha - gamma >= -2
 third: beta + delta <= 3
 switch: beta = 1 -> alpha <= 2
Lazy Constraints
 late: alpha + delta <= 5
User Cuts
 cut: alpha + beta <= 4
Bounds
 2 <= gamma <= 7
 alpha <= 3
 1 <= delta <= 9
General
 alpha delta
Binary
 beta
Semi-continuous
 gamma delta
SOS
 choice: S1:: alpha:1 beta:2
End
""")
        self.file("continuous.lp", """Maximize
 profit: 3 alpha + 2 beta - gamma + delta
Subject To
 first: alpha + beta <= 4.5
 second: alpha - gamma >= -2
 third: beta + delta <= 3
Bounds
 0 <= gamma <= 7
 alpha <= 3
 beta <= 1
 delta <= 9
End
""")
        for ending in ("lp", "mps"):
            self.succeed("mixed.lp", "--relax", "--write", "relaxed." + ending, "--values", "relaxed.txt")
            self.succeed("convert", "continuous.lp", "expected." + ending)
            relaxed, expected = (self.read(name + ending).replace(name[:-1] + ".lp", "")
                                 for name in ("relaxed.", "expected."))
            self.assertEqual(relaxed, expected)
        self.assertIn("alpha 3", self.read("relaxed.txt"))


class Files(Command):
    def test_compressed_models_and_written_ones(self):
        with open(os.path.join(MODELS, "plan.mps"), "rb") as file:
            text = file.read()
        with gzip.open(self.path("plan.mps.gz"), "wb") as file:
            file.write(text)
        with bz2.open(self.path("plan.MPS.BZ2"), "wb") as file:
            file.write(text)
        for name in ("plan.mps.gz", "plan.MPS.BZ2"):
            self.assertAlmostEqual(self.outcome(self.path(name))["objective"], 15254, delta=1e-4)
        self.outcome(os.path.join(MODELS, "plan.mps"), "--write", self.path("a.lp"), "--write", self.path("b.mps.gz"))
        for name in ("a.lp", "b.mps.gz"):
            self.assertAlmostEqual(self.outcome(self.path(name))["objective"], 15254, delta=1e-4)

    def test_convert(self):
        depots = os.path.join(MODELS, "depots.lp")
        self.succeed("convert", depots, self.path("a b.mps.gz"))
        self.succeed("convert", "a b.mps.gz", "back.rlp")
        info = self.succeed("info", "back.rlp")
        for line in ("Rows:", "Columns:", "Discrete:", "Nonzeros:"):
            wanted = [text for text in self.succeed("info", depots).splitlines() if text.startswith(line)]
            self.assertIn(wanted[0], info)
        self.assertIn("x1", self.read("back.rlp"))
        self.fail_with("out.xyz", "convert", depots, "out.xyz")
        self.fail_with("OUT", "convert", depots)
        self.fail_with("missing.lp", "convert", "missing.lp", "out.mps")
        self.fail_with(["out.bas", "No basis"], "convert", depots, "out.bas")
        self.fail_with(["none/out.lp"], "convert", depots, "none/out.lp")

    def test_a_basis_goes_from_one_solve_to_the_next(self):
        diet = os.path.join(MODELS, "diet.lp")
        self.assertGreater(self.outcome(diet, "--write", "end.bas", "--write", "end.bas.gz")["iterations"], 0)
        self.assertTrue(self.read("end.bas").startswith("NAME "))
        for name in ("end.bas", "end", "end.bas.gz"):
            self.assertEqual(self.outcome(diet, "--basis", name, "--set", "PREIND=0")["iterations"], 0)
        self.fail_with(["missing.bas", "1423"], diet, "--basis", "missing.bas")
        self.fail_with(["bad.bas", "Line 2"], diet, "--basis", self.file("bad.bas", "NAME\n ZZ a\nENDATA\n"))
        run = self.fail_with("nowhere/end.bas", diet, "--write", self.path("nowhere/end.bas"))
        self.assertNotIn("Status", run.stdout)  # found out before the solve

    def test_a_solution_goes_from_one_solve_to_the_next(self):
        diet = os.path.join(MODELS, "diet.lp")
        run = self.succeed(diet, "--write", "end.sol", "--write", "end.sol.gz", "--report", "end.txt")
        self.assertNotIn("Start", run)
        self.assertIn('solutionStatusString="optimal"', self.read("end.sol"))
        self.assertIn(" SECTION 2 - COLUMNS\n", self.read("end.txt"))
        self.succeed(diet, "--quiet", "--report", "end.bin")
        with open(self.path("end.bin"), "rb") as file:
            self.assertEqual(file.read()[:12], b"\x40\0\0\0HSECTION")
        for name in ("end.sol", "end", "end.sol.gz"):
            run = self.succeed(diet, "--start", name, "--set", "PREIND=0")
            self.assertRegex(run, r"\nIterations: +0\nStart: +%s loaded\n" % name)
        self.file("none.mst", "<KELVOSolutions/>")
        self.assertIn("Start: none.mst has no values", self.succeed(diet, "--start", "none.mst"))
        self.fail_with(["bad.sol", "line 2", "1425"], diet, "--start", self.file("bad.sol", "<a>\n</b>"))
        self.fail_with(["--basis", "--start"], diet, "--start", "end.sol", "--basis", "end.bas")
        self.fail_with("nowhere/end.sol", diet, "--write", "nowhere/end.sol")
        self.fail_with("nowhere/end.txt", diet, "--report", "nowhere/end.txt")
        depots = os.path.join(MODELS, "depots.lp")
        start = self.file("a.mst", "<KELVOSolutions><KELVOSolution><variable name='open_w' value='1'/>"
                                   "</KELVOSolution></KELVOSolutions>")
        self.assertIn("a.mst loaded, not used", self.succeed(depots, "--start", start))
        self.assertIn("a.mst loaded\n", self.succeed(depots, "--relax", "--start", start))

    def test_parameter_files(self):
        diet = os.path.join(MODELS, "diet.lp")
        self.succeed(diet, "--set", "itlim=77", "--set", "EPOPT=1e-7", "--write-params", "a.prm")
        self.assertEqual(len(self.read("a.prm").splitlines()), 3)
        self.succeed(diet, "--params", "a", "--set", "ITLIM=1000", "--write-params", "b.prm")
        self.assertEqual(self.read("b.prm"), self.read("a.prm").replace("  77", "  1000").replace(" 77\n", " 1000\n"))
        self.fail_with(["c.prm", "Line 1"], diet, "--params", self.file("c.prm", "nonsense\n"))
        self.fail_with("nowhere", diet, "--write-params", "nowhere/a.prm")

    def test_priority_orders_are_written(self):
        depots = os.path.join(MODELS, "depots.lp")
        self.kelvo(depots, "--set", "MIPORDTYPE=1", "--write", "a.ord")
        self.assertTrue(self.read("a.ord").startswith("NAME "))
        self.assertTrue(self.read("a.ord").endswith("ENDATA\n"))
        self.fail_with("a.ord", depots, "--write", "a.ord")

    def test_files_that_cannot_be_read(self):
        self.fail_with(["missing.mps", "No such file"], "missing.mps")
        self.fail_with(["missing.mps.gz", "No such file"], "missing.mps.gz")
        self.fail_with("directory", self.scratch)
        self.fail_with("Line 5", self.file("broken.lp", "Minimize\n x\nSubject To\n c1: x >= 1\n c2: 2 + + x >= 1\nEnd\n"))
        self.fail_with(["broken.mps", "Line 4"], self.file("broken.mps", "NAME\nROWS\n N  COST\n Q  R1\nENDATA\n"))
        self.fail_with("noise", self.file("noise", b"\x80\x81\xfe\xff" * 50))
        self.fail_with("truncated.mps.gz", self.file("truncated.mps.gz", gzip.compress(os.urandom(2000))[:500]))
        whole = "".join("c%d: x%d >= %d\n" % (i, i, i * i) for i in range(2000))
        half = gzip.compress(("Minimize\nx1\nSubject To\n" + whole + "End\n").encode())
        self.fail_with("half.lp.gz", self.file("half.lp.gz", half[: len(half) // 2]))

    def test_files_that_cannot_be_written(self):
        diet = os.path.join(MODELS, "diet.lp")
        for option in ("--json", "--values", "--log", "--write"):
            with self.subTest(option):
                run = self.fail_with("nowhere/out.lp", diet, option, self.path("nowhere/out.lp"))
                self.assertNotIn("Status", run.stdout)  # found out before the solve
        self.fail_with("out.xyz", diet, "--write", self.path("out.xyz"))
        if os.path.exists("/dev/full"):
            self.fail_with("/dev/full", diet, "--values", "/dev/full")

    def test_a_failure_leaves_valid_json(self):
        broken = self.file("broken.lp", "Minimize\n x\nSubject To\n c\"\x01\t: x >= >= 1\nEnd\n")
        self.fail_with("broken.lp", broken, "--json", self.path("outcome.json"))
        outcome = json.loads(self.read("outcome.json"))
        self.assertTrue(KEYS < set(outcome))
        self.assertIsNone(outcome["status"])
        self.assertIn("broken.lp", outcome["error"])


class Options(Command):
    def test_wrong_ones_are_told_in_a_line(self):
        diet = os.path.join(MODELS, "diet.lp")
        self.fail_with("no model", "--quiet")
        self.fail_with(["'--no-such-option'", "--help"], diet, "--no-such-option")
        self.fail_with("fastest", diet, "--method", "fastest")
        self.fail_with(["barrier", "auto, primal, dual"], diet, "--method", "barrier")
        self.fail_with("'NOSUCH'", diet, "--set", "NOSUCH=1")
        self.fail_with("NAME=VALUE", diet, "--set", "ITLIM")
        self.fail_with(["ITLIM", "'many'"], diet, "--set", "ITLIM=many")
        self.fail_with("ITLIM", diet, "--set", "ITLIM=99999999999")
        self.fail_with(["EPOPT", "1e-09 .. 0.1"], diet, "--set", "EPOPT=3")
        self.fail_with("'second'", diet, "second")
        self.fail_with("--time-limit", diet, "--time-limit", "-1")
        self.fail_with("--threads", diet, "--threads", "two")

    def test_help_and_version(self):
        # The version that the project has, and that its list of changes begins with.
        with open(os.path.join(SOURCE, "CMakeLists.txt"), encoding="utf-8") as file:
            version = re.search(r"^project\(kelvo VERSION ([\d.]+)", file.read(), re.MULTILINE).group(1)
        self.assertEqual(self.succeed("--version"), "Kelvo %s\n" % version)
        with open(os.path.join(SOURCE, "CHANGELOG.md"), encoding="utf-8") as file:
            self.assertEqual(re.search(r"^## ([\d.]+)", file.read(), re.MULTILINE).group(1), version)
        text = self.succeed("--help")
        for option in ("--method", "--set", "--time-limit", "--relax", "--quiet", "--log", "--write", "--values",
                       "--json", "--basis", "--params", "--write-params", "info", "convert", "params"):
            self.assertIn(option, text)
        self.assertEqual(self.succeed(), text)
        for command, line in {"info": "kelvo info MODEL\n", "convert": "kelvo convert IN OUT\n",
                              "params": "kelvo params [TEXT] [OPTIONS]\n"}.items():
            self.assertIn("Usage:\n  " + line, self.succeed(command, "--help"))

    def test_params(self):
        def names(*arguments):
            return [line.split()[0] for line in self.succeed("params", *arguments).splitlines()[1:]]

        lines = self.succeed("params", "--all").splitlines()
        self.assertEqual(len(lines), 152)
        starts = {line.index(text) for line, text in zip(lines, ["meaning", "start basis", "nonzeros"])}
        self.assertEqual(len(starts), 1)  # aligned
        for line in lines[1:]:
            self.assertRegex(line, r"^[A-Z_]+ +\S+ +\S.*  [A-Za-z0-9]\S* \S")  # each has its meaning
        used = names()
        self.assertIn("EPOPT", used)
        self.assertNotIn("BARITLIM", used)
        self.assertEqual(names("tilim", "--all"), ["TILIM", "TUNINGTILIM"])
        self.assertEqual(names("TILIM*"), ["TILIM"])
        self.assertEqual(names("Optimality"), ["EPOPT", "MIPEMPHASIS", "NETEPOPT"])
        self.assertIn('"."', self.succeed("params", "KLV_PARAM_WORKDIR", "--all"))
        self.assertEqual(self.succeed("params", "tilim").splitlines()[1].split(),
                         ["TILIM", "1e+75", ">=", "0", "time", "limit", "in", "seconds"])
        self.assertNotIn("EPOPT", self.succeed("params", "--changed"))
        self.file("a.prm", "KELVO Parameter File Version 12.1.0\nKLV_PARAM_ITLIM 7\n")
        changed = ("--changed", "--params", "a.prm", "--set", "EPOPT=1e-8")
        self.assertEqual(names(*changed), ["EPOPT", "ITLIM"])
        self.assertIn("[default 2100000000]", self.succeed("params", *changed))
        self.fail_with("nonsense", "params", "nonsense")

    def test_info(self):
        text = self.succeed("info", os.path.join(MODELS, "plan.mps"))
        self.assertRegex(text, r"Rows: +16 \(4 <=, 8 =, 4 ranged\)")
        self.assertRegex(text, r"Columns: +20 ")
        self.assertRegex(text, r"matrix +1 \.\. 3\.25")
        self.assertRegex(text, r"bounds +5 \.\. 60")
        self.assertIn("mixed-integer", self.succeed("info", os.path.join(MODELS, "depots.lp")))
        self.fail_with("missing.lp", "info", "missing.lp")


class Interrupt(Command):
    """The model comes through a named pipe, so that the signal surely arrives before the solve."""

    def start(self):
        self.pipe = self.path("model.mps")
        os.mkfifo(self.pipe)
        with open(os.path.join(MODELS, "plan.mps"), encoding="utf-8") as file:
            self.text = file.read()
        process = subprocess.Popen([KELVO, self.pipe, "--set", "PREIND=0", "--json", self.path("outcome.json")],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.kill)
        self.stream = os.open(self.pipe, os.O_WRONLY)  # waits until the command reads
        return process

    def test_the_first_one_stops_and_tells(self):
        process = self.start()
        process.send_signal(signal.SIGINT)
        self.assertIn("stopping", process.stderr.readline() + process.stderr.readline())
        os.write(self.stream, self.text.encode())
        os.close(self.stream)
        output, _ = process.communicate(timeout=100)
        self.assertEqual(process.returncode, 0, output)
        self.assertIn("user aborted", output)
        self.assertEqual(json.loads(self.read("outcome.json"))["status"], 13)

    def test_the_second_one_ends(self):
        process = self.start()
        process.send_signal(signal.SIGINT)
        process.stderr.readline(), process.stderr.readline()
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=100)
        self.assertEqual(process.returncode, -signal.SIGINT)
        os.close(self.stream)


if __name__ == "__main__":
    KELVO, SOURCE = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    MODELS = os.path.join(SOURCE, "examples", "models")
    unittest.main(argv=sys.argv[:1])
