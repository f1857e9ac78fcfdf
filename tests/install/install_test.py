#!/usr/bin/env python3
"""Installs the library and uses it as a stranger would: with CMake, with pkg-config, and moved.

    install_test.py SOURCE_DIR BUILD_DIR
"""
import os
import subprocess
import sys
import tempfile
import unittest

SOURCE = BUILD = ""
EXAMPLES = ("build_and_solve", "read_and_solve")


def run(*command, env=None):
    done = subprocess.run(command, capture_output=True, text=True, check=False, env=env)
    if done.returncode != 0:
        raise AssertionError("%s\nends with %d\n%s%s" % (" ".join(command), done.returncode, done.stdout, done.stderr))
    return done.stdout


class Install(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.addCleanup(self.scratch.cleanup)
        first = os.path.join(self.scratch.name, "first")
        run("cmake", "--install", BUILD, "--prefix", first)
        # Nothing may depend on where it was installed first.
        self.prefix = os.path.join(self.scratch.name, "prefix")
        os.rename(first, self.prefix)

    def path(self, *parts):
        return os.path.join(self.scratch.name, *parts)

    def run_examples(self, folder, env=None):
        model = os.path.join(SOURCE, "examples", "models", "diet.lp")
        self.assertIn("profit 620", run(os.path.join(folder, "build_and_solve"), env=env))
        self.assertIn("objective 8.2299", run(os.path.join(folder, "read_and_solve"), model, env=env))

    def test_with_cmake(self):
        build = self.path("build")
        run("cmake", "-S", os.path.join(SOURCE, "examples", "c"), "-B", build,
            "-DCMAKE_PREFIX_PATH=" + self.prefix, "-DCMAKE_BUILD_TYPE=Release")
        with open(os.path.join(build, "CMakeCache.txt"), encoding="utf-8") as cache:
            self.assertIn("kelvo_DIR:PATH=" + self.prefix, cache.read())
        run("cmake", "--build", build)
        self.run_examples(build)

    def test_with_pkg_config(self):
        pc = [where for where, _, files in os.walk(self.prefix) if "kelvo.pc" in files]
        self.assertEqual(len(pc), 1)
        flags = run("pkg-config", "--cflags", "--libs", "kelvo",
                    env={**os.environ, "PKG_CONFIG_PATH": pc[0]}).split()
        self.assertIn("-lkelvo", flags)
        for example in EXAMPLES:
            source = os.path.join(SOURCE, "examples", "c", example + ".c")
            run(os.environ.get("CC", "gcc"), source, "-o", self.path(example), *flags)
        libraries = os.path.dirname(pc[0])
        with open(os.path.join(SOURCE, "README.md"), encoding="utf-8") as readme:
            program = readme.read().split("```c\n")[1].split("```")[0]
        with open(self.path("readme.c"), "w", encoding="utf-8") as file:
            file.write(program)
        run(os.environ.get("CC", "gcc"), "-Wall", "-Werror", self.path("readme.c"), "-o", self.path("readme"), *flags)
        self.assertEqual(run(self.path("readme"), env={**os.environ, "LD_LIBRARY_PATH": libraries}), "620 at (40, 60)\n")
        self.run_examples(self.scratch.name, env={**os.environ, "LD_LIBRARY_PATH": libraries})
        dynamic = run("readelf", "--dynamic", os.path.join(libraries, "libkelvo.so"))
        self.assertIn("Library soname: [libkelvo.so.12]", dynamic)

    def test_the_command(self):
        self.assertIn("Kelvo 12.", run(os.path.join(self.prefix, "bin", "kelvo"), "--version"))


if __name__ == "__main__":
    SOURCE, BUILD = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1])
