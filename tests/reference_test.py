#!/usr/bin/env python3
"""The reference: every class and function of a public header has its words, and those arrive where a reader looks."""
import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tools"))
from checks import abi  # noqa: E402
from checks.tree import Tree  # noqa: E402

LOADER = importlib.machinery.SourceFileLoader("reference", str(ROOT / "tools/reference"))
SPEC = importlib.util.spec_from_loader("reference", LOADER)
reference = importlib.util.module_from_spec(SPEC)
LOADER.exec_module(reference)

# Where windows still grow: until their release what has no words is told, and does not fail.
GROWING = ("brindle/dialogs/", "brindle/framework/", "brindle/platform/", "brindle/widgets/")

HEADER = """// Thing: a small class. It counts <b> & "c".
#pragma once

#include <string>

class Thing {
  public:
    Thing();
    ~Thing();
    // Both need words.
    int First(int number);
    int Second();

    int Third();  // 0 or more
    int Fourth() const { return m_number; }

  private:
    int m_number = 0;
};
"""


class ReferenceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def make(self, header):
        """The warnings, and the text of the page of the class."""
        for name, text in (("cmake/public-headers.txt", "brindle/thing.h\n"), ("brindle/thing.h", header)):
            (self.root / name).parent.mkdir(exist_ok=True)
            (self.root / name).write_text(text)
        warnings = reference.make(self.root, self.root / "html")
        page = self.root / "html/classThing.html"
        return warnings, page.read_text() if page.exists() else ""

    def test_the_tree_has_no_warning(self):
        warnings = reference.make(ROOT, self.root / "html")
        print("\n".join(warnings))
        if not abi.is_fixed(Tree(ROOT)):
            warnings = [line for line in warnings if not line.startswith(GROWING)]
        self.assertEqual(warnings, [])
        pages = {page.name for page in (self.root / "html").glob("*.html")}
        for page in ("index.html", "classCCommandBehaviourList.html", "classOV_1_1Text.html", "string__a_8h.html"):
            self.assertIn(page, pages)

    def test_words_arrive(self):
        warnings, page = self.make(HEADER)
        self.assertEqual(warnings, [])
        for text, times in (("a small class. It counts &lt;b&gt; &amp; &quot;c&quot;.", 1), ("Both need words.", 2),
                            ("0 or more", 1), ("return m_number;", 1)):
            self.assertGreaterEqual(page.count(text), times, text)

    def test_words_go_no_further_than_they_are_meant(self):
        header = HEADER.replace("    int Second();", "    int Second();  // its own\n    int After();")
        warnings, page = self.make(header)
        self.assertEqual(len(warnings), 1, warnings)
        self.assertIn("brindle/thing.h:13: ", warnings[0])
        self.assertIn("its own", page)
        header = HEADER.replace("    Thing();\n", "    // --- a heading ---\n    int After();\n    Thing();\n")
        warnings, _ = self.make(header)
        self.assertEqual(len(warnings), 1, warnings)
        header = HEADER.replace("    int Second();", "    int Second(int one,\n               int two);  // its own")
        warnings, page = self.make(header)
        self.assertEqual((warnings, page.count("Both need words.")), ([], self.make(HEADER)[1].count("Both need words.") // 2))

    def test_what_has_no_words(self):
        rows = [
            ("a function", ("    int Third();  // 0 or more", "    int Third();"), "brindle/thing.h:14: ", "Third()"),
            ("one behind a blank line", ("    int Second();", "\n    int Second();"), "brindle/thing.h:13: ", "Second()"),
            ("a class", ("// Thing: a small", "// A small"), "brindle/thing.h:6: ", "Thing"),
            ("a longer body", ("{ return m_number; }", "{\n        int x = m_number;\n        return x;\n    }"), "brindle/thing.h:15: ",
             "Fourth()"),
        ]
        for label, change, place, name in rows:
            with self.subTest(label):
                self.assertIn(change[0], HEADER)
                warnings, _ = self.make(HEADER.replace(*change))
                self.assertTrue(any(line.startswith(place) and name in line for line in warnings), warnings)


if __name__ == "__main__":
    unittest.main()
