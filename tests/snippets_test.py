#!/usr/bin/env python3
"""The snippets of the documents hold: C++ compiles, what is shown of a file stands in it, console lines print what they
are said to, and rules have the results of their table.

usage: snippets_test.py PROGRAM      the built command-line tool

A block behind `<!-- from: PATH -->` is a part of that file. Any other C++ block is compiled; `<!-- given: CODE -->` before
it declares what the page does not show.
"""
import dataclasses
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = pathlib.Path()  # set by main
BLOCK = re.compile(r"(?:<!-- (?P<kind>from|given): (?P<text>.*?) -->\n+)?```(?P<language>\w*)\n(?P<code>.*?)```", re.DOTALL)
DECLARES = re.compile(r"(?://[^\n]*\n)*(?:class|struct|void|int|template|static|using) ")
# Code of a desktop host, which is compiled where Qt is there.
OF_QT = re.compile(r"\bQ[A-Z]\w+|brindle/platform/qt/")
# Its examples are tests of the tool itself.
OF_THE_TOOL = {"command-line.md"}


@dataclasses.dataclass
class Snippet:
    page: pathlib.Path
    line: int
    kind: str
    text: str
    language: str
    code: str

    def __str__(self):
        return f"{self.page.name}:{self.line}"


def snippets(*languages):
    found = []
    for page in sorted([*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md")]):
        content = page.read_text()
        for match in BLOCK.finditer(content):
            line = content.count("\n", 0, match.start("code")) + 1
            if not languages or match["language"] in languages:
                found.append(Snippet(page, line, match["kind"] or "", match["text"] or "", match["language"], match["code"]))
    return found


def as_namespace(number, snippet):
    """The snippet as a part of one program: declarations stand as they are, statements in a function."""
    code = "".join(line if not line.startswith("#include") else "\n" for line in snippet.code.splitlines(keepends=True))
    end = 0
    if DECLARES.match(code.lstrip("\n")):
        end = max(match.end() for match in re.finditer(r"^\};?\n", code, re.MULTILINE))
    place = f'#line {snippet.line} "{snippet}"\n'
    statements = f'#line {snippet.line + code.count(chr(10), 0, end)} "{snippet}"\n{code[end:]}'
    return f"namespace page{number} {{\n{snippet.text}\n{place}{code[:end]}\nvoid Snippet() {{\n{statements}}}\n}}\n"


def flags_of_qt():
    """What Qt's headers are compiled with; None where there is no Qt."""
    run = subprocess.run(["pkg-config", "--cflags", "Qt6Widgets"], capture_output=True, text=True, check=False)
    return None if run.returncode else run.stdout.split()


class SnippetsTest(unittest.TestCase):
    def compile(self, shown, flags=()):
        """All snippets as one program."""
        includes = sorted({line for snippet in shown for line in re.findall(r"^#include .*$", snippet.code, re.MULTILINE)})
        program = "\n".join(["#include <brindle/brindle.h>", *includes, *map(as_namespace, range(len(shown)), shown)])
        run = subprocess.run(["g++", "-std=c++20", "-Wall", "-Wextra", "-Werror", "-Wno-unused-variable",
                              "-Wno-unused-but-set-variable", "-fPIC", "-I", ROOT, *flags, "-fsyntax-only", "-x", "c++", "-"],
                             input=program, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stderr)

    @staticmethod
    def code(of_qt):
        return [snippet for snippet in snippets("cpp")
                if snippet.kind != "from" and "int main(" not in snippet.code
                and bool(OF_QT.search(snippet.code + snippet.text)) == of_qt]

    def test_code_compiles(self):
        shown = self.code(of_qt=False)
        self.assertGreaterEqual(len(shown), 10)
        self.compile(shown)

    def test_code_of_desktop_hosts_compiles(self):
        shown = self.code(of_qt=True)
        self.assertGreaterEqual(len(shown), 1)
        flags = flags_of_qt()
        if flags is None:
            self.skipTest("there is no Qt")
        self.compile(shown, flags)

    def test_files_are_shown_as_they_are(self):
        shown = [snippet for snippet in snippets() if snippet.kind == "from"]
        self.assertGreaterEqual(len(shown), 3)
        for snippet in shown:
            with self.subTest(str(snippet)):
                self.assertIn(snippet.code, (ROOT / snippet.text).read_text())

    def test_whole_programs_are_examples(self):
        examples = [path.read_text() for path in (ROOT / "examples").glob("*/main.cpp")]
        for snippet in snippets("cpp"):
            if "int main(" in snippet.code:
                with self.subTest(str(snippet)):
                    self.assertTrue(any(snippet.code in example for example in examples))

    def test_named_programs_exist(self):
        for snippet in snippets(""):
            for name in re.findall(r"^((?:scripts|tools|\.ci)/[\w-]+)", snippet.code, re.MULTILINE):
                with self.subTest(str(snippet), name=name):
                    self.assertTrue((ROOT / name).exists())


class ToolTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.environment = {**os.environ, "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}", "TMPDIR": folder.name}

    def shell(self, command):
        run = subprocess.run(["bash", "-c", command], cwd=ROOT, env=self.environment, capture_output=True, text=True,
                             timeout=120, check=False)
        return run.stdout + run.stderr

    def test_console_lines_print_what_they_are_said_to(self):
        count = 0
        for snippet in snippets("console"):
            if snippet.page.name in OF_THE_TOOL:
                continue
            for example in re.findall(r"^\$ .*\n(?:(?!\$ ).*\n)*", snippet.code, re.MULTILINE):
                command, expected = example[2:].split("\n", 1)
                if "brindle-map" in command and not (PROGRAM.parent / "brindle-map").exists():
                    continue  # built without the desktop library
                with self.subTest(str(snippet), command=command):
                    self.assertEqual(self.shell(command), expected)
                count += 1
        self.assertGreaterEqual(count, 4)

    def test_rules_have_the_results_of_their_table(self):
        table = (ROOT / "docs/rules.md").read_text().partition("## Oddities and why")[2]
        rows = re.findall(r"^\| `(.*?)` \| (?:`(.*?)`)? ?\| .*\|$", table, re.MULTILINE)
        self.assertGreaterEqual(len(rows), 20)
        for rule, result in rows:
            with self.subTest(rule):
                run = subprocess.run([PROGRAM, "rule", "eval", rule.replace("\\|", "|")], capture_output=True, text=True,
                                     check=False)
                self.assertEqual((run.stdout, run.returncode), (result + "\n", 0), run.stderr)


def main():
    global PROGRAM
    if len(sys.argv) < 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
    return 0


if __name__ == "__main__":
    sys.exit(main())
