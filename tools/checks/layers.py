"""Arrows between folders, from the #includes, against cmake/layers.txt."""
import os
import re

from .tree import Problem, is_test

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.MULTILINE)
STANDARD = set("""
algorithm any array atomic bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits clocale
cmath compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib
cstring ctime cuchar cwchar cwctype deque exception execution filesystem forward_list fstream functional future
initializer_list iomanip ios iosfwd iostream istream iterator latch barrier limits list locale map memory
memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view
syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
variant vector version
""".split())


class Layers:
    def __init__(self, tree):
        self.folders = {}
        self.prefixes = {}
        self.problems = []
        for number, line in enumerate((tree.root / "cmake/layers.txt").read_text().splitlines(), 1):
            if not line.strip() or line.startswith("#"):
                continue
            left, arrow, right = line.partition("->")
            if not arrow:
                self.problems.append(Problem("cmake/layers.txt", number, f'no "->" in "{line}"'))
                continue
            left = left.strip()
            if left.startswith("<"):
                self.prefixes[left.strip("<>")] = set(right.split())
            else:
                self.folders[left] = set(right.split())
        self._refuse_cycles()

    def _refuse_cycles(self):
        done, path = set(), []

        def visit(folder):
            if folder in path:
                circle = " -> ".join(path[path.index(folder):] + [folder])
                self.problems.append(Problem("cmake/layers.txt", 0, f"a cycle: {circle}"))
                return
            if folder in done:
                return
            path.append(folder)
            for target in sorted(self.folders.get(folder, ())):
                visit(target)
            path.pop()
            done.add(folder)

        for folder in sorted(self.folders):
            visit(folder)

    def folder_of(self, path):
        """The deepest folder of the list that holds the file, or nothing."""
        folder = os.path.dirname(path)
        while folder and folder not in self.folders:
            folder = os.path.dirname(folder)
        return folder

    def is_backend(self, folder):
        return folder.startswith("brindle/platform/") and folder != "brindle/platform/fake"


def check(tree):
    layers = Layers(tree)
    problems = list(layers.problems)
    for path in tree.sources:
        if is_test(path):
            continue
        folder = layers.folder_of(path)
        if not folder:
            problems.append(Problem(path, 0, "its folder is not in cmake/layers.txt"))
            continue
        for line, match in tree.matches(INCLUDE, path):
            text = check_include(tree, layers, path, folder, match.group(1), match.group(2))
            if text:
                problems.append(Problem(path, line, text))
    return problems


def check_include(tree, layers, path, folder, bracket, name):
    allowed = layers.folders[folder]
    in_library = folder == "brindle" or folder.startswith("brindle/")
    if not (tree.root / name).is_file():
        return check_foreign(layers, folder, bracket, name)
    if name.startswith("brindle/") and not in_library:
        if bracket == '"':
            return f"{name}: written with <> outside the library"
        if name in tree.desktop_headers and "desktop" in allowed:
            return None
        return None if name in tree.public_headers else f"{name} is a private header"
    if bracket == "<":
        return f'{name}: written with "" inside the tree'
    if is_test(name):
        return f"{name} is for tests only"
    if path in tree.public_headers and name not in tree.public_headers:
        return f"{name} is private, this header is public"
    target = layers.folder_of(name)
    if target == folder or target in allowed:
        return None
    return f"{folder} must not include {target or os.path.dirname(name)} ({name})"


def check_foreign(layers, folder, bracket, name):
    if name in STANDARD or layers.is_backend(folder):
        return None
    if bracket == '"':
        return f"{name}: no such file from the top of the tree"
    for prefix, folders in layers.prefixes.items():
        if name.startswith(prefix) and folder in folders:
            return None
    return f"{folder} must not include <{name}>"
