"""The binary interface: what abidw reads of the built libraries, beside the descriptions written down in tools/abi/.

A description holds what a host binds to: exported functions and data, and the layout of the classes of public headers.
Left out are types of other libraries, private types, and inline functions, which come and go with the optimiser. Paths,
lines and parameter names are left out, too, so that a description is the same wherever the library is built.
"""
import pathlib
import re
import shutil
import subprocess
import tempfile
import xml.etree.ElementTree

from .tree import Problem

FOLDER = "tools/abi"
LIBRARIES = ("libbrindle", "libbrindle-qt")
# abidiff's exit code is a sum.
FAILED, CHANGED = 1 | 2, 4 | 8
OTHERS = """[suppress_type]
  name_regexp = ^std::|^__gnu_cxx::|^Q[A-Z]
  drop = yes
[suppress_function]
  symbol_name_regexp = ^_ZN?K?S[tabsiod]|^_ZNKS?t|^_ZNK?9__gnu_cxx
  drop = yes
[suppress_variable]
  symbol_name_regexp = ^_Z(T[VISC])?N?K?(S[tabsiod]|9__gnu_cxx|10__cxxabiv1)|^_ZGV
  drop = yes
"""


def built(build):
    """The libraries of the build that are there."""
    return [name for name in LIBRARIES if (pathlib.Path(build) / "lib" / f"{name}.so").exists()]


def has_debug_information(library):
    sections = subprocess.run(["readelf", "-SW", library], capture_output=True, text=True, check=True).stdout
    return ".debug_info" in sections


def describe(library, headers):
    """The description of a library whose public headers have these names; a text in XML."""
    with tempfile.TemporaryDirectory() as work:
        names, others, raw = pathlib.Path(work, "headers"), pathlib.Path(work, "others"), pathlib.Path(work, "raw.abi")
        names.mkdir()
        for header in headers:  # abidw goes by the names of files
            (names / pathlib.Path(header).name).touch()
        others.write_text(OTHERS)
        subprocess.run(["abidw", "--no-show-locs", "--no-corpus-path", "--no-comp-dir-path", "--no-parameter-names",
                        "--no-elf-needed", "--drop-private-types", "--exported-interfaces-only", "--type-id-style", "hash",
                        "--headers-dir", names, "--suppressions", others, "--out-file", raw, library],
                       check=True, capture_output=True)
        return _normalised(raw)


def _normalised(raw):
    root = xml.etree.ElementTree.parse(raw).getroot()
    inline = {symbol.get("name") for symbol in root.iter("elf-symbol")
              if symbol.get("type") == "func-type" and symbol.get("binding") == "weak-binding"}
    for symbols in root.iter("elf-function-symbols"):
        for symbol in [symbol for symbol in symbols if symbol.get("name") in inline]:
            symbols.remove(symbol)
    for declaration in root.iter("function-decl"):
        if declaration.get("elf-symbol-id") in inline:
            del declaration.attrib["elf-symbol-id"]
    for unit in root.iter("abi-instr"):
        unit.set("path", pathlib.PurePosixPath(unit.get("path", "")).name)
    for parent in list(root.iter()):
        for member in parent.findall("member-function"):  # an inline one is no one's to bind to
            if member.get("vtable-offset") is None and member.find("function-decl").get("elf-symbol-id") is None:
                parent.remove(member)
        parent.text = "\n" if len(parent) else None
        parent.tail = "\n"
    return xml.etree.ElementTree.tostring(root, encoding="unicode").strip() + "\n"


def differences(old, new):
    """What a host compiled against the old description would miss or misread in the new one; additions are none."""
    run = subprocess.run(["abidiff", "--no-added-syms", "--no-show-locs", old, new], capture_output=True, text=True,
                         check=False)
    if run.returncode & FAILED:
        raise RuntimeError(f"abidiff: {run.stderr.strip()}")
    return run.stdout.rstrip() if run.returncode & CHANGED else ""


def is_fixed(tree):
    """Whether the interface is promised: everything but a new major version that is not released yet."""
    path = tree.root / "CHANGELOG.md"
    newest = re.search(r"^## (\d+)\.(\d+)\.(\d+)(.*)$", path.read_text() if path.exists() else "", re.MULTILINE)
    return not (newest and newest.group(2, 3) == ("0", "0") and "not released" in newest.group(4))


def check_abi(tree, build):
    if not shutil.which("abidw"):
        return [Problem("abidw", 0, "is not installed; scripts/setup installs it")]
    problems = []
    for name in built(build):
        library, baseline = f"{build}/lib/{name}.so", f"{FOLDER}/{name}.abi"
        if not has_debug_information(library):
            problems.append(Problem(f"{name}.so", 0, "has no debug information to read its interface from", fatal=False))
            continue
        if not (tree.root / baseline).exists():
            problems.append(Problem(baseline, 0, "is missing; tools/accept-abi writes it"))
            continue
        with tempfile.NamedTemporaryFile("w", suffix=".abi") as now:
            now.write(describe(library, tree.public_headers | tree.desktop_headers))
            now.flush()
            found = differences(str(tree.root / baseline), now.name)
        if found:
            problems.append(Problem(baseline, 0, "hosts compiled before would break; if that is meant: tools/accept-abi\n" +
                                    found, fatal=is_fixed(tree)))
    return problems
