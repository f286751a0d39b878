#!/usr/bin/python3
"""The mutation check's tools: which places they find, and that a planted program behaves as before until a mutant is
woken. (Debian's own Python: it has the compiler's bindings.)"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))
from mutation import find, plant  # noqa: E402

SOURCE = """extern "C" int puts(const char*);
consteval int Two() { return 1 + 1; } constexpr int kTwo = Two();
struct Text {
    char bytes[8] = {};
    int size = 0;
};
static int Sum(int a, int b) {
    int sum = a + b;  // a comment
    if (!(sum < 4)) return 9;
    for (int i = 0; i < kTwo; ++i) {
        if (sum == 2) continue;
        sum += 10;
    }
    return sum;
}
int main() {
    Text text;
    int sum = Sum(1,
                  1);
    text.bytes[0] = static_cast<char>('a' + sum);
    puts(text.bytes);
}
"""
# No constant right behind a "<": it may be a template's argument, which the compiler evaluates.
# Line, change and what the program prints with it; None: whatever, but something else than "c".
MUTANTS = (
    (5, "0 => 0 + 1", "c"),  # nobody reads it
    (8, "a + b => a - b", None),
    (9, "!(sum < 4) => (sum < 4)", "j"),
    (9, "return 9; => (dropped)", "c"),
    (9, "sum < 4 => sum <= 4", "c"),
    (9, "sum < 4 => sum >= 4", "j"),
    (9, "9 => 9 + 1", "c"),
    (10, "0 => 0 + 1", "c"),
    (10, "i < kTwo => i <= kTwo", "c"),
    (10, "i < kTwo => i >= kTwo", "c"),
    (10, "++i => --i", None),
    (11, "sum == 2 => sum != 2", None),
    (11, "2 => 2 + 1", None),
    (11, "continue; => (dropped)", None),
    (12, "sum += 10 => sum -= 10", "c"),
    (12, "sum += 10; => (dropped)", "c"),
    (12, "10 => 10 + 1", "c"),
    (18, "1 => 1 + 1", None),
    (19, "1 => 1 + 1", None),
    (20, "text.bytes[0] = static_cast<char>('a' + sum); => (dropped)", ""),
    (20, "'a' + sum => 'a' - sum", "_"),
    (20, "'a' => 'a' + 1", "d"),
    (20, "0 => 0 + 1", ""),
    (21, "puts(text.bytes); => (dropped)", "(nothing)"),
)


class Mutation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.root = pathlib.Path(cls.folder.name)
        (cls.root / "a.cpp").write_text(SOURCE)
        cls.places = find.places(cls.root, "a.cpp")
        for number, place in enumerate(cls.places, 1):
            place["number"] = number
        cls.planted = plant.plant(SOURCE, cls.places)
        (cls.root / "planted.cpp").write_text(cls.planted)
        subprocess.run(["g++", "-std=c++20", "-w", "-include", ROOT / "tools/mutation/mutant.h", "-o", "planted",
                        "planted.cpp"], cwd=cls.root, check=True)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def output(self, number):
        environment = {**os.environ, "BRINDLE_MUTANT": str(number)}
        try:
            run = subprocess.run([self.root / "planted"], env=environment, capture_output=True, text=True, check=False,
                                 timeout=20)
        except subprocess.TimeoutExpired:
            return "(endless)"
        return run.stdout.removesuffix("\n") if run.stdout else "(nothing)"

    def test_finds_every_place_but_what_the_compiler_evaluates(self):
        self.assertEqual(sorted((place["line"], place["label"]) for place in self.places),
                         sorted((line, label) for line, label, _ in MUTANTS))

    def test_lines_keep_their_numbers(self):
        self.assertEqual(self.planted.count("\n"), SOURCE.count("\n"))
        self.assertIn("puts(text.bytes)", self.planted.split("\n")[20])

    def test_asleep_the_program_is_as_it_was(self):
        self.assertEqual(self.output(0), "c")
        self.assertEqual(self.output(len(MUTANTS) + 1), "c")

    def test_each_mutant_does_what_it_says(self):
        expected = {(line, label): output for line, label, output in MUTANTS}
        for place in self.places:
            with self.subTest(line=place["line"], change=place["label"]):
                output, wanted = self.output(place["number"]), expected[place["line"], place["label"]]
                if wanted is None:
                    self.assertNotEqual(output, "c")
                else:
                    self.assertEqual(output, wanted)


if __name__ == "__main__":
    unittest.main()
