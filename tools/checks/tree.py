"""The source tree as the checks see it, and what they report."""
import dataclasses
import functools
import os
import pathlib
import re

FOLDERS = ("brindle", "host", "apps", "testing", "tests", "examples", "bench", "fuzz")
TOKEN = re.compile(
    r'R"(?P<delimiter>[^()\s\\]{0,16})\(.*?\)(?P=delimiter)"'  # a raw string
    r'|"(?:\\.|[^"\\\n])*"'                                   # a string
    r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'"                   # a character (but not a digit separator)
    r"|//[^\n]*|/\*.*?\*/", re.DOTALL)


@dataclasses.dataclass(frozen=True)
class Problem:
    file: str
    line: int  # 0: the file as a whole
    text: str
    fatal: bool = True

    def place(self):
        return f"{self.file}:{self.line}" if self.line else self.file


class Tree:
    def __init__(self, root):
        self.root = pathlib.Path(root).resolve()

    @functools.cached_property
    def sources(self):
        """Every C++ file, as a path from the top, in byte order."""
        found = []
        for folder in FOLDERS:
            for here, _, files in os.walk(self.root / folder):
                found += [os.path.relpath(os.path.join(here, f), self.root) for f in files
                          if f.endswith((".h", ".cpp"))]
        return sorted(found)

    @functools.cache
    def text(self, path):
        return (self.root / path).read_text("utf-8", errors="replace")

    @functools.cache
    def code(self, path):
        """The text with comments and the insides of strings blanked, line numbers kept; includes stay."""
        return "\n".join(
            raw if raw.lstrip().startswith("#include") else blank
            for raw, blank in zip(self.text(path).split("\n"), self._blanked(path).split("\n")))

    def _blanked(self, path):
        def blank(match):
            token = match.group()
            if token.startswith("/"):
                return re.sub(r"[^\n]", " ", token)
            return '"' + re.sub(r"[^\n]", " ", token[1:-1]) + '"'
        return TOKEN.sub(blank, self.text(path))

    def matches(self, pattern, path):
        return [(self.code(path).count("\n", 0, m.start()) + 1, m)
                for m in pattern.finditer(self.code(path))]

    @functools.cached_property
    def public_headers(self):
        return self._names("cmake/public-headers.txt")

    @functools.cached_property
    def desktop_headers(self):
        """Those installed with the desktop library."""
        return self._names("cmake/desktop-headers.txt")

    def _names(self, path):
        lines = (self.root / path).read_text().splitlines() if (self.root / path).exists() else []
        return {line.strip() for line in lines if line.strip() and not line.startswith("#")}


def is_test(path):
    """Tests, fuzz targets, benchmarks and their helpers stand outside the rings."""
    return path.startswith(("testing/", "tests/", "bench/", "fuzz/")) or bool(
        re.search(r"_(test|fuzz|bench)(_[a-z0-9_]+)?\.(h|cpp)$", path))
