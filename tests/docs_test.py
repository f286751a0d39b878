#!/usr/bin/env python3
"""The documents tell the truth where a machine can see it: links lead somewhere, named files exist,
and the README's ten lines are the example that is compiled."""
import json
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = sorted([*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md")])
LINK = re.compile(r"\]\(([^)#:\s]*)(?:#([^)\s]*))?\)")  # into the tree: the file, empty for this one, and the heading


def without_code(document):
    return re.sub(r"^```.*?^```", "", document.read_text(), flags=re.DOTALL | re.MULTILINE)


def links(document):
    """Each link of the document into the tree: the file it leads to, and the heading there or None."""
    for target, heading in LINK.findall(without_code(document)):
        yield (document.parent / target).resolve() if target else document, heading or None


def headings(document):
    """What links may name: the headings as the usual viewers turn them into anchors."""
    for text in re.findall(r"^#+ (.*)$", without_code(document), re.MULTILINE):
        yield re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")


class DocumentsTest(unittest.TestCase):
    def test_links_lead_somewhere(self):
        count = 0
        for document in DOCUMENTS:
            for target, heading in links(document):
                with self.subTest(document=document.name, target=target.name, heading=heading):
                    self.assertTrue(target.exists())
                    self.assertTrue(heading is None or heading in headings(target))
                count += 1
        self.assertGreaterEqual(count, 100)

    def test_the_index_names_every_page(self):
        index = ROOT / "docs/README.md"
        named = {target for target, _ in links(index)}
        self.assertEqual([page.name for page in DOCUMENTS if page not in {index, *named}], [])

    def test_every_picture_is_shown(self):
        shown = {target for document in DOCUMENTS for target, _ in links(document)}
        pictures = [path for path in (ROOT / "docs/images").rglob("*") if path.is_file()]
        self.assertGreaterEqual(len(pictures), 2)
        self.assertEqual([path.name for path in pictures if path not in shown], [])

    def test_the_readme_names_every_example(self):
        readme = (ROOT / "README.md").read_text()
        for example in (ROOT / "examples").glob("*/main.cpp"):
            with self.subTest(example.parent.name):
                self.assertRegex(readme, rf"`(?:examples/)?{example.parent.name}`")

    def test_named_files_exist(self):
        path = re.compile(r"`((?:brindle|host|apps|examples|docs|scripts|tools|cmake|testing|tests|bench|fuzz|\.ci)/"
                          r"[\w./-]+)`")
        for document in DOCUMENTS:
            for name in path.findall(document.read_text()):
                with self.subTest(document=document.name, name=name):
                    self.assertTrue((ROOT / name).exists())

    def test_included_headers_are_public(self):
        public = ((ROOT / "cmake/public-headers.txt").read_text() +
                  (ROOT / "cmake/desktop-headers.txt").read_text()).split()
        for document in DOCUMENTS:
            for header in re.findall(r"<(brindle/[\w/]+\.h)>", document.read_text()):
                with self.subTest(document=document.name, header=header):
                    self.assertIn(header, public)

    def test_readme_shows_the_example(self):
        example = (ROOT / "examples/hello/main.cpp").read_text()
        shown = re.search(r"```cpp\n(.*?)```", (ROOT / "README.md").read_text(), re.DOTALL).group(1)
        self.assertEqual(shown, example[example.index("#include"):])

    def test_presets_are_listed(self):
        configured = json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]
        presets = [preset["name"] for preset in configured if not preset.get("hidden")]
        self.assertGreaterEqual(len(presets), 7)
        contributing = (ROOT / "CONTRIBUTING.md").read_text()
        for preset in presets:
            self.assertIn(f"| `{preset}` |", contributing)


if __name__ == "__main__":
    unittest.main()
