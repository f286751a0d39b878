#!/usr/bin/env python3
"""scripts/coverage reads what gcovr reports: shares of lines and branches, goals, the lines nobody reaches."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts" / "coverage"
SOURCE = """int Twice(int n) {
    if (n > 1) return n + n;
    return 0;
}
int Never(int n) {
    n += 1;
    return n;
}
int main() { return Twice(0); }
"""


def line(number, count, *branches):
    return {"line_number": number, "count": count, "gcovr/noncode": False,
            "branches": [{"count": taken, "fallthrough": False, "throw": False} for taken in branches]}


class CoverageCommand(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def report(self, files, *words):
        path = self.folder / "report.json"
        path.write_text(json.dumps({"files": [{"file": name, "lines": lines} for name, lines in files.items()]}))
        return self.run_script(path, *words)

    def run_script(self, path, *words):
        run = subprocess.run([sys.executable, SCRIPT, "--report", path, *words], capture_output=True, text=True,
                             check=False)
        return run.returncode, run.stdout

    def test_goals(self):
        def lines(reached, total):
            return [line(i, i <= reached) for i in range(1, total + 1)]

        rows = (
            ("reached", lines(95, 100), lines(85, 100), 0, "reached"),
            ("lines missed", lines(94, 100), lines(85, 100), 1, "MISSED"),
            ("windows missed", lines(95, 100), lines(84, 100), 1, "MISSED"),
            ("branches reached", [line(1, 9, *[1] * 9, 0)], lines(85, 100), 0, "reached"),
            ("branches missed", [line(1, 9, *[1] * 8, 0)], lines(85, 100), 1, "MISSED"),
            ("branches of windows have no goal", lines(95, 100), [line(1, 1, 1, 0)], 0, "reached"),
        )
        for label, library, windows, code, verdict in rows:
            with self.subTest(label):
                got, output = self.report({"brindle/xml/a.cpp": library, "brindle/widgets/b.cpp": windows})
                self.assertEqual(got, code, output)
                self.assertRegex(output.splitlines()[-1], rf"^coverage: outside the windows .*: {verdict}$")

    def test_folders_and_missing_lines(self):
        lines = [line(1, 1, 1, 0), line(2, 0), line(3, 0), line(5, 0), line(6, 2), {**line(7, 0), "gcovr/noncode": True}]
        _, output = self.report({"host/a.cpp": lines, "host/b.cpp": [line(1, 1)], "brindle/x/c.cpp": [line(4, 0)]},
                                "--missing", "host")
        self.assertRegex(output, r"\nhost +6 +50.0% +2 +50.0%\n")
        self.assertIn("\nhost/a.cpp: 2-3, 5\n", output)
        self.assertNotIn("host/b.cpp:", output)
        self.assertNotIn("brindle/x/c.cpp:", output)

    def test_nothing_measured_is_no_success(self):
        self.assertEqual(self.report({})[0], 1)

    def test_reads_a_report_of_gcovr(self):
        (self.folder / "host").mkdir()
        (self.folder / "host/a.cpp").write_text(SOURCE)
        subprocess.run(["g++", "--coverage", "-O0", "-o", "a", "host/a.cpp"], cwd=self.folder, check=True)
        subprocess.run(["./a"], cwd=self.folder, check=True)
        path = self.folder / "gcovr.json"
        subprocess.run(["gcovr", "--root", ".", "--json", str(path), "."], cwd=self.folder, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        code, output = self.run_script(path, "--missing")
        self.assertEqual(code, 1)
        self.assertIn("\nhost/a.cpp: 5-7\n", output)
        self.assertRegex(output, r"\nhost +7 +57.1% +2 +50.0%\n")


if __name__ == "__main__":
    unittest.main()
