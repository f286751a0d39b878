#!/usr/bin/env python3
"""The documents tell the truth where a machine can see it: links lead somewhere, named files exist,
and the README's ten lines are the example that is compiled."""
import json
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = sorted([*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md")])


class DocumentsTest(unittest.TestCase):
    def test_links_lead_somewhere(self):
        for document in DOCUMENTS:
            text = re.sub(r"```.*?```", "", document.read_text(), flags=re.DOTALL)
            for target in re.findall(r"\]\(([^)#:]+)[^)]*\)", text):
                with self.subTest(document=document.name, target=target):
                    self.assertTrue((document.parent / target).exists())

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
