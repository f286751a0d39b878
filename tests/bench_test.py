#!/usr/bin/env python3
"""The table that scripts/bench writes, from a run that was recorded."""
import importlib.machinery
import importlib.util
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
LOADER = importlib.machinery.SourceFileLoader("bench", str(ROOT / "scripts/bench"))
bench = importlib.util.module_from_spec(importlib.util.spec_from_loader("bench", LOADER))
LOADER.exec_module(bench)


def entry(name, time, unit="ns", real=None, kind="iteration"):
    return {"run_name": name, "run_type": kind, "time_unit": unit, "cpu_time": time, "real_time": real or time}


RECORDED = {
    "brindle": "1.0.0", "machine": "a machine, 2 cores, a system", "versions": "g++ 12", "rounds": 3,
    "programs": {
        "brindle_behaviour_event_bench": [
            entry("ListExecute/behaviours:100000/churned:0", 200, "us"),
            entry("BareLoop/behaviours:100000/churned:0", 200, "us"),
            *(entry("ListExecute/behaviours:1000/churned:1", time, "us") for time in (1.5, 9, 1.4)),
            *(entry("BareLoop/behaviours:1000/churned:1", time) for time in (1000, 1000, 4000)),
            *(entry("BoostSignals2/behaviours:1000/churned:1", time, "ms") for time in (0.001, 0.002, 0.003)),
            entry("ListExecute/behaviours:1000/churned:0", 1, "us"),
            entry("BareLoop/behaviours:1000/churned:0", 1, "us"),
            entry("ListExecute/behaviours:1000/churned:1", 77, kind="aggregate"),
        ],
        "brindle_file_monitor_bench": [entry("WriteToHandler/manual_time", 5, "us", real=15),
                                       entry("WriteToRawInotify/manual_time", 5, "us", real=10)],
        "brindle_other_bench": [entry("Alone", 1)],
        "brindle_rule_bench": [entry("Match/Cam%/10000", 6), entry("MatchByHand/Cam%/10000", 3),
                               entry("Match/Cam%/20", 5), entry("MatchByHand/Cam%/20", 2),
                               entry("PreparedRule/sum", 5), entry("MuParserConvertAndEvaluate/sum", 10)],
    },
}
TABLE = """Brindle 1.0.0 on a machine, 2 cores, a system; g++ 12. Medians of 3 rounds; the ratio is Brindle's time as a \
multiple of its limit's or peer's. Where there are several, ratios and goals stand in their order.

| work | bare limit | peers | Brindle | ratio | goal |
|---|---|---|---|---|---|
| one event through a list of behaviours, 1,000 behaviours, fresh | bare loop of virtual calls: 1.00 us |  | 1.00 us | 1 | 2 |
| one event through a list of behaviours, 1,000 behaviours, scattered by a long life | bare loop of virtual calls: 1.00 us \
| Boost.Signals2: 2.00 us | 1.50 us | 1.5; 0.75 | 2; 0.25 missed |
| one event through a list of behaviours, 100,000 behaviours, fresh | bare loop of virtual calls: 200.00 us |  \
| 200.00 us | 1 | 2 |
| from a write to the file monitor's handler | blocking read of inotify: 10.00 us |  | 15.00 us | 1.5 | 1.3 missed |
| prepared rule, a sum |  | muParser, values converted, evaluate: 10.0 ns | 5.0 ns | 0.5 | 1 |
| match of a pattern, Cam%, 20 characters | matcher by hand: 2.0 ns |  | 5.0 ns | 2.5 | 3 |
| match of a pattern, Cam%, 10,000 characters | matcher by hand: 3.0 ns |  | 6.0 ns | 2 | 3 |
"""


class BenchTest(unittest.TestCase):
    def test_table(self):
        self.assertEqual(bench.table(RECORDED), TABLE)

    def test_the_page_keeps_everything_else(self):
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder, "page.md")
            page.write_text("before\n" + bench.BEGIN + "old\n" + bench.END + "after\n")
            for _ in range(2):
                bench.write(page, RECORDED)
                self.assertEqual(page.read_text(), "before\n" + bench.BEGIN + TABLE + bench.END + "after\n")
            page.write_text("no place\n")
            with self.assertRaises(SystemExit):
                bench.write(page, RECORDED)
            self.assertEqual(page.read_text(), "no place\n")

    def test_the_documents_have_a_place(self):
        text = bench.PAGE.read_text()
        self.assertEqual((text.count(bench.BEGIN), text.count(bench.END)), (1, 1))

    def test_a_recorded_run_is_reported(self):
        with tempfile.NamedTemporaryFile("w", suffix=".json") as recorded:
            json.dump(RECORDED, recorded)
            recorded.flush()
            run = subprocess.run([ROOT / "scripts/bench", "--from", recorded.name], capture_output=True, text=True,
                                 check=False)
        self.assertEqual((run.stderr, run.returncode), ("", 1))
        self.assertTrue(run.stdout.endswith("Goals missed: 2\n"), run.stdout)
        self.assertRegex(run.stdout, r"ListExecute : BareLoop/behaviours:1000/churned:1 +1\.500 +2\n")

    def test_words_are_of_goals(self):
        named = {name for work, _, peer in bench.goals() for name in (work, peer)}
        self.assertEqual({word for word in bench.words() if not word.startswith("/")} - named, set())

    def test_limits_stand_before_peers(self):
        words = bench.words()
        kinds = {}
        for work, _, peer in bench.goals():
            kinds.setdefault(work, []).append(not words.get(peer, "").startswith("limit: "))
        self.assertEqual([work for work, peers in kinds.items() if peers != sorted(peers)], [])

    def test_every_goal_is_of_a_benchmark(self):
        sources = "".join(path.read_text() for path in (ROOT / "bench").glob("*_bench.cpp"))
        named = {name for work, _, peer in bench.goals() for name in (work, peer)}
        self.assertEqual([name for name in sorted(named) if not re.search(rf"\b{name}\b", sources)], [])

    def test_the_machine_is_told(self):
        told = bench.machine()
        self.assertRegex(told["machine"], r"\d+ cores, \w+")
        self.assertRegex(told["versions"], r"g\+\+ \d+.*libxml2 \d")
        self.assertFalse(re.search(r"[\n|]", told["machine"] + told["versions"]))


if __name__ == "__main__":
    unittest.main()
