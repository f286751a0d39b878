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

LOADER = importlib.machinery.SourceFileLoader("reference", str(ROOT / "tools/reference"))
SPEC = importlib.util.spec_from_loader("reference", LOADER)
reference = importlib.util.module_from_spec(SPEC)
LOADER.exec_module(reference)

HEADER = """// Thing: a small class. It counts <b> & "c". Thread: any.
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
        self.assertEqual(warnings, [])
        pages = {page.name for page in (self.root / "html").glob("*.html")}
        for page in ("index.html", "classCCommandBehaviourList.html", "classOV_1_1Text.html", "string__a_8h.html"):
            self.assertIn(page, pages)

    def test_what_private_headers_export_has_words(self):
        names = reference.exporting(ROOT)
        self.assertIn("brindle/platform/files.h", names)
        self.assertNotIn("brindle/platform/clock.h", names)  # is public
        self.assertEqual(reference.make(ROOT, self.root / "html", names), [])

    def test_words_arrive(self):
        warnings, page = self.make(HEADER)
        self.assertEqual(warnings, [])
        for text, times in (("a small class. It counts &lt;b&gt; &amp; &quot;c&quot;. Thread: any.", 1), ("Both need words.", 2),
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

    def test_what_the_words_must_tell(self):
        # What stands in place of "Both need words." and its two functions, and what is missed.
        rows = [
            ("nothing", "// Adds one.\n    int Add(int number);", None),
            ("a truth", "// Adds one.\n    bool Add(int number);", "what true or false means"),
            ("a truth that is told", "// Adds one; false: it was there.\n    bool Add(int number);", None),
            ("a question", "// There are some.\n    bool HasAny(int number);", None),
            ("a pointer", "// The first; it stays the thing's.\n    Thing* Add(int number);", "when it returns null"),
            ("a pointer that is told", "// The first, or null; it stays the thing's.\n    Thing* Add(int number);", None),
            ("what is returned", "// The first, or null.\n    Thing* Add(int number);", "who owns what"),
            ("what is taken", "// Adds another.\n    void Add(Thing* other);", "who owns what"),
            ("what is taken, told", "// Adds another, which the thing owns.\n    void Add(Thing* other);", None),
            ("a text that is read", "// Adds a text.\n    void Add(const char* text);", None),
            ("a text that is written", "// Adds a text.\n    void Add(char* text);", "who owns what"),
            ("a failure", "// Adds one.\n    brindle::Result Add(int number);", "what a failure leaves behind"),
            ("a failure that is told", "// Adds one. A failure adds nothing.\n    brindle::Result Add(int number);", None),
            ("a duration", "// Waits.\n    void Add(int timeout);", "the unit of timeout"),
            ("a duration that is told", "// Waits, in milliseconds.\n    void Add(int timeout);", None),
            ("a result's size", "// How large it is.\n    int GetSize();", "the unit of GetSize"),
            ("a result's size, told", "// How large it is, in bytes.\n    int GetSize();", None),
            ("the same again", "// The same for others.\n    bool Add(Thing* other);", None),
            ("no more than a question", "// Sets it.\n    bool IsSet(Thing* other);", "who owns what"),
        ]
        shown = "// Both need words.\n    int First(int number);\n    int Second();"
        self.assertIn(shown, HEADER)
        for label, declared, missing in rows:
            with self.subTest(label):
                warnings, _ = self.make(HEADER.replace(shown, declared))
                told = [line.partition(" does not tell ")[2] for line in warnings]
                self.assertEqual(told, [missing] if missing else [], warnings)

    def test_the_thread_is_told(self):
        warnings, _ = self.make(HEADER.replace(" Thread: any.", ""))
        self.assertTrue(warnings)
        for line in warnings:
            self.assertIn("does not tell the thread", line)
        by_class = HEADER.replace(" Thread: any.", "").replace("class Thing", "// Of any thread.\nclass Thing")
        self.assertEqual(self.make(by_class)[0], [])


if __name__ == "__main__":
    unittest.main()
