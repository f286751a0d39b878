#!/usr/bin/env python3
"""scripts/fuzz over stand-ins for fuzz targets: what it runs, what it keeps between runs, what it reports. And the real
targets: there is one for every parser, each with a corpus, and all corpora together stay small."""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCRIPT = ROOT / "scripts" / "fuzz"
CORPORA_LIMIT = 2 << 20

# A stand-in: notes its arguments and prints what libFuzzer prints.
PROGRAM = """#!/bin/sh
echo "$@" >>"$(dirname "$0")/{name}.calls"
echo "#2 INITED cov: 7 ft: 9"
echo "stat::number_of_executed_units: 50"
{last}
"""
FAILS = 'echo "artifact_prefix=x; Test unit written to $PWD/crash-1"; exit 77'


class FuzzCommand(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.fuzz = self.root / "build" / "fuzz" / "fuzz"
        self.fuzz.mkdir(parents=True)
        (self.root / "scripts").mkdir()
        shutil.copy(SCRIPT, self.root / "scripts" / "fuzz")
        self.add("one")
        self.add("two", dictionary="two.dict")

    def add(self, name, last="", dictionary="", size=3):
        program, corpus = self.fuzz / f"brindle_{name}_fuzz", self.root / "corpus" / name
        program.write_text(PROGRAM.format(name=name, last=last))
        program.chmod(0o755)
        corpus.mkdir(parents=True, exist_ok=True)
        (corpus / "seed").write_bytes(b"x" * size)
        (self.fuzz / f"brindle_{name}_fuzz.target").write_text(f"{program}\n{dictionary}\n{corpus}\n")

    def run_fuzz(self, *words):
        run = subprocess.run([sys.executable, self.root / "scripts" / "fuzz", "--no-build", *words],
                             cwd=self.root, capture_output=True, text=True, check=False)
        return run.returncode, run.stdout

    def calls(self, name):
        path = self.fuzz / f"{name}.calls"
        return path.read_text().splitlines() if path.exists() else []

    def test_runs_each_target_in_slices(self):
        code, output = self.run_fuzz("70")
        self.assertEqual(code, 0, output)
        times = [re.search(r"-max_total_time=(\d+)", call).group(1) for call in self.calls("one")]
        self.assertEqual(times, ["30", "30", "10"])
        self.assertNotIn("-dict", self.calls("one")[0])
        self.assertIn("-dict=two.dict", self.calls("two")[0])
        self.assertRegex(self.calls("two")[0], r"/found/brindle_two_fuzz \S+/corpus/two$")
        self.assertRegex(output, r"\none +70 +150 +7 +1 +0.0\n")
        self.assertRegex(output.splitlines()[-1],
                         r"^fuzz: 2 targets, 70 s each, 300 runs, corpora of 0 KiB, \d+ s: all clean$")

    def test_goes_on_where_it_was(self):
        self.run_fuzz("30")
        self.run_fuzz("40")
        self.assertEqual(len(self.calls("one")), 2)
        self.assertIn("-max_total_time=10 ", self.calls("one")[1])
        self.assertEqual(self.run_fuzz("40")[0], 0)
        self.assertEqual(len(self.calls("one")), 2, "all was done")
        self.run_fuzz("30", "--fresh")
        self.assertEqual(len(self.calls("one")), 3)

    def test_another_build_begins_anew(self):
        self.run_fuzz("30")
        self.add("one", last="# built again")
        self.run_fuzz("30")
        self.assertEqual((len(self.calls("one")), len(self.calls("two"))), (2, 1))

    def test_a_failure_is_named_and_does_not_stop_the_others(self):
        self.add("bad", last=FAILS)
        code, output = self.run_fuzz("30")
        self.assertEqual(code, 1)
        self.assertRegex(output, r"bad .*FAILED: \S*crash-1")
        self.assertTrue(output.splitlines()[-1].endswith(": failed: bad"), output)
        self.assertEqual(len(self.calls("one")), 1)
        self.assertTrue((self.fuzz / "failures" / "bad.log").exists())
        self.add("bad")
        self.assertEqual(self.run_fuzz("30")[0], 0, "mended")

    def test_some_targets_only(self):
        code, output = self.run_fuzz("30", "two")
        self.assertEqual(code, 0, output)
        self.assertEqual((len(self.calls("one")), len(self.calls("two"))), (0, 1))
        self.assertEqual(self.run_fuzz("30", "none")[0], 2)

    def test_large_corpora_fail(self):
        self.add("big", size=CORPORA_LIMIT)
        code, output = self.run_fuzz("30")
        self.assertEqual(code, 1)
        self.assertTrue(output.splitlines()[-1].endswith("the corpora are too large"), output)

    def test_keep_passes_over_what_failed(self):
        self.add("bad", last=FAILS)
        code, output = self.run_fuzz("30", "--keep")
        self.assertEqual(code, 1)
        self.assertEqual(len(self.calls("bad")), 1)
        self.assertTrue(output.splitlines()[-1].endswith(": failed: bad"), output)

    def test_keep_merges_what_was_found(self):
        self.run_fuzz("30", "one", "--keep")
        self.assertRegex(self.calls("one")[-1], r"^-merge=1 .* \S+/corpus/one \S+/found/brindle_one_fuzz$")


class RealTargets(unittest.TestCase):
    def test_each_has_a_corpus_and_all_stay_small(self):
        corpora = {}
        for listing in [ROOT / "fuzz/CMakeLists.txt", *(ROOT / "brindle").rglob("CMakeLists.txt")]:
            for name, corpus in re.findall(r"(?m)^brindle_fuzz\((\w+)[^)]*?CORPUS\s+([\w/]+)", listing.read_text()):
                corpora[name] = listing.parent / corpus
        self.assertGreaterEqual(len(corpora), 16)
        for name, corpus in corpora.items():
            with self.subTest(name):
                self.assertTrue(any(corpus.iterdir()))
        size = sum(path.stat().st_size for corpus in set(corpora.values()) for path in corpus.rglob("*"))
        self.assertLess(size, CORPORA_LIMIT)


if __name__ == "__main__":
    unittest.main()
