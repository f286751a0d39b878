#!/usr/bin/env python3
"""scripts/threads over stand-ins for the tests it runs: what it runs how often, what it counts, when it fails."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = """#!/bin/sh
echo "$@" >>"{calls}"
echo "[==========] 3 tests from 1 test suite ran. (2 ms total)"
{more}
"""
RACE = 'echo "WARNING: ThreadSanitizer: data race (pid=7)"'
HELGRIND_RACE = 'echo "==7== Possible data race during read of size 4 at 0x1 by thread #1"'


class ThreadsCommand(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.root / "scripts").mkdir()
        script = self.root / "scripts" / "threads"
        shutil.copy(ROOT / "scripts" / "threads", script)
        self.write(self.root / "scripts" / "setup", "#!/bin/sh\n")
        self.write(self.root / "bin" / "cmake", "#!/bin/sh\n")
        self.write(self.root / "bin" / "valgrind",
                   '#!/bin/sh\nwhile [ "${1#-}" != "$1" ]; do shift; done\nexec "$@"\n')
        lists = script.read_text().split("snmp=(")[1]
        self.snmp = lists.split(")")[0].split()
        self.threads = self.snmp + lists.split('threads=("${snmp[@]}"')[1].split(")")[0].split()
        for preset, names in {"dev": self.snmp, "tsan": self.threads}.items():
            for name in names:
                self.program(preset, name)

    @staticmethod
    def write(path, text):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        path.chmod(0o755)

    def program(self, preset, name, more=""):
        path = self.root / "build" / preset / "somewhere" / name
        self.write(path, PROGRAM.format(calls=self.root / f"{preset}.calls", more=more))

    def run_threads(self, *words):
        path = f"{self.root / 'bin'}:{os.environ['PATH']}"
        run = subprocess.run([self.root / "scripts" / "threads", *words], env={**os.environ, "PATH": path},
                             capture_output=True, text=True, check=False)
        return run.returncode, run.stdout.splitlines()[-1], run.stderr

    def summary(self, helgrind, sanitizer):
        return (f"threads: helgrind {len(self.snmp)} programs, {3 * len(self.snmp)} tests, {helgrind} reports; "
                f"thread sanitizer {len(self.threads)} programs, {3 * len(self.threads)} tests, "
                f"{sanitizer} reports")

    def test_says_what_was_run(self):
        self.assertEqual(self.run_threads("7"), (0, self.summary(0, 0), ""))
        self.assertEqual((self.root / "dev.calls").read_text(),
                         "--gtest_brief=1 --gtest_repeat=1\n" * len(self.snmp))
        self.assertEqual((self.root / "tsan.calls").read_text(),
                         "--gtest_brief=1 --gtest_repeat=7\n" * len(self.threads))

    def test_counts_reports(self):
        self.program("tsan", "brindle_threads_test", RACE + "\n" + RACE)
        self.program("dev", "brindle_snmp_test", HELGRIND_RACE)
        self.assertEqual(self.run_threads(), (1, self.summary(1, 2), ""))

    def test_names_what_failed(self):
        self.program("tsan", "brindle_threads_test", "exit 1")
        code, summary, errors = self.run_threads()
        self.assertEqual((code, summary), (1, self.summary(0, 0)))
        self.assertEqual(errors, "threads: brindle_threads_test failed under thread sanitizer: "
                                 "build/tsan/tmp/brindle_threads_test.log\n")

    def test_the_tests_it_names_are_there(self):
        lists = "".join(path.read_text() for path in ROOT.glob("*/**/CMakeLists.txt")
                        if "build" not in path.relative_to(ROOT).parts)
        for name in self.threads:
            self.assertIn(f"brindle_test({name} ", lists.replace("\n", " "))


if __name__ == "__main__":
    unittest.main()
