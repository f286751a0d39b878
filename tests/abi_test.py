#!/usr/bin/env python3
"""What tools/check abi sees of a library: each row changes a small one and says whether its hosts would notice."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tools"))
from checks import abi  # noqa: E402
from checks.tree import Tree  # noqa: E402

HEADER = """#pragma once
#include <string>
#define API __attribute__((visibility("default")))
enum Kind { kFirst = 1, kSecond = 2 };
class API Thing {
  public:
    Thing();
    virtual ~Thing();
    virtual int First(int number);
    virtual int Second();
    int Inline() const { return m_number; }
    Kind GetKind() const;
  private:
    struct Hidden;
    Hidden* m_hidden;
    std::string m_text;
    int m_number = 0;
};
API int Count(const Thing& thing, long number);
"""
SOURCE = """#include "thing.h"
struct Thing::Hidden { int one; };
Thing::Thing() : m_hidden(new Hidden{1}) {}
Thing::~Thing() { delete m_hidden; }
int Thing::First(int number) { return number + Inline(); }
int Thing::Second() { return m_hidden->one; }
Kind Thing::GetKind() const { return kFirst; }
int Count(const Thing&, long number) { return static_cast<int>(number); }
"""
# label, (what, by what) in the header, the same in the source, whether hosts notice
ROWS = [
    ("nothing", (), (), False),
    ("a function is added", ("API int Count", "API int More();\nAPI int Count"),
     ("int Count", "int More() { return 1; }\nint Count"), False),
    ("lines move", ("#pragma once", "#pragma once\n\n\n// A comment."), ("#include", "\n\n#include"), False),
    ("a parameter gets another name", ("long number", "long count"), ("long number) { return static_cast<int>(number)",
                                                                   "long count) { return static_cast<int>(count)"), False),
    ("a hidden class grows", (), ("int one;", "int one; double two[9];"), False),
    ("an inline function goes", ("int Inline() const { return m_number; }", "int Other() const { return m_number; }"),
     ("Inline()", "Other()"), False),
    ("a function goes", ("API int Count(const Thing& thing, long number);", ""),
     ("int Count(const Thing&, long number) { return static_cast<int>(number); }", ""), True),
    ("a parameter changes", ("long number", "short number"), ("long number", "short number"), True),
    ("a class grows", ("int m_number = 0;", "int m_number = 0; double m_more = 0;"), (), True),
    ("members change places", ("    Hidden* m_hidden;\n    std::string m_text;", "    std::string m_text;\n    Hidden* m_hidden;"),
     (), True),
    ("a virtual operation is put in", ("virtual int Second();", "virtual int Second();\n    virtual int Third();"),
     ("Kind Thing", "int Thing::Third() { return 3; }\nKind Thing"), True),
    ("virtual operations change places", ("    virtual int First(int number);\n    virtual int Second();",
                                          "    virtual int Second();\n    virtual int First(int number);"), (), True),
    ("an enumerator gets another number", ("kSecond = 2", "kSecond = 3"), (), True),
]


def changed(text, change):
    assert not change or change[0] in text, change
    return text.replace(*change) if change else text


class AbiTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def build(self, name, header=(), source=()):
        """A build folder with the small library, which stands for the big one."""
        root = self.folder / name
        (root / "lib").mkdir(parents=True)
        (root / "thing.h").write_text(changed(HEADER, header))
        (root / "thing.cpp").write_text(changed(SOURCE, source))
        subprocess.run(["g++", "-std=c++20", "-g", "-shared", "-fPIC", "-fvisibility=hidden", root / "thing.cpp", "-o",
                        root / "lib/libbrindle.so"], check=True)
        return root

    def describe(self, root):
        return abi.describe(str(root / "lib/libbrindle.so"), {"brindle/thing.h"})

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return str(path)

    def test_rows(self):
        old = self.write("old.abi", self.describe(self.build("old")))
        for number, (label, header, source, notices) in enumerate(ROWS):
            with self.subTest(label):
                new = self.describe(self.build(f"new{number}", header, source))
                found = abi.differences(old, self.write("new.abi", new))
                self.assertEqual(bool(found), notices, found)

    def test_a_description_does_not_depend_on_the_place(self):
        here, there = self.describe(self.build("here")), self.describe(self.build("somewhere/else/entirely"))
        self.assertEqual(here, there)
        self.assertNotIn(str(self.folder), here)

    def test_the_check(self):
        tree = self.folder / "tree"
        self.write("tree/cmake/public-headers.txt", "brindle/thing.h\n")
        self.write("tree/tools/abi/libbrindle.abi", self.describe(self.build("old")))
        same, other = self.build("same"), self.build("other", ("kSecond = 2", "kSecond = 3"))
        rows = [
            ("released", "## 1.0.0\n", True),
            ("the next minor version", "## 1.1.0 (not released)\n\n## 1.0.0\n", True),
            ("a new major version", "## 2.0.0 (not released)\n\n## 1.0.0\n", False),
            ("nothing known", "", True),
        ]
        for label, changes, fatal in rows:
            self.write("tree/CHANGELOG.md", "# Changelog\n\n" + changes)
            with self.subTest(label):
                self.assertEqual(abi.check_abi(Tree(tree), same), [])
                problem, = abi.check_abi(Tree(tree), other)
                self.assertEqual((problem.file, problem.fatal), ("tools/abi/libbrindle.abi", fatal))
                self.assertIn("kSecond", problem.text)

    def test_a_missing_description(self):
        self.write("tree/cmake/public-headers.txt", "brindle/thing.h\n")
        problem, = abi.check_abi(Tree(self.folder / "tree"), self.build("old"))
        self.assertTrue(problem.fatal)
        self.assertIn("accept-abi", problem.text)


if __name__ == "__main__":
    unittest.main()
