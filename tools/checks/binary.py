"""What the built library exports, needs and does when it is loaded."""
import collections
import os
import pathlib
import re
import subprocess

from .tree import Problem

LIST = "tools/exports.txt"
DESKTOP_LIST = "tools/exports-qt.txt"  # of the desktop library, where it is built
NEEDED = {"libxml2.so.2", "libnetsnmp.so.40", "libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6",
          "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}
DESKTOP = re.compile(r"lib(?:Qt\d|X11|xcb|wayland|GL|EGL|gtk|gdk)", re.IGNORECASE)
# Templates of the standard library that happen to be made here belong to it, not to the interface.
TABLE_OF = re.compile(r"^(?:typeinfo (?:for|name for) |vtable for |guard variable for )")
SIGN_OPERATOR = re.compile(r"\boperator\s*(?:<=>|<<=?|>>=?|<=|>=|->\*?|<|>|\(\))")
LIBRARY = ("std::", "__gnu_cxx::", "__cxxabiv1::")
OF_THE_LINKER = {"__bss_start", "_edata", "_end"}


def is_foreign(name):
    """Whether a demangled name is the standard library's: by the name itself, not by its parameters or result."""
    name = TABLE_OF.sub("", name)
    if re.match(r"operator (?:new|delete)\b", name):
        return True
    depth, begin = 0, 0
    name = SIGN_OPERATOR.sub("operator@", name)
    for at, letter in enumerate(name):
        depth += (letter == "<") - (letter == ">")
        if depth == 0 and letter == "(":
            name = name[:at]
            break
        if depth == 0 and letter == " " and name[at + 1:at + 2] != "<":
            begin = at + 1  # behind the result type of a template function
    return name[begin:].startswith(LIBRARY)


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def library(build, name="libbrindle.so"):
    return str(pathlib.Path(build) / "lib" / name)


def lists(build):
    """(list, library) of what is built."""
    both = ((LIST, library(build)), (DESKTOP_LIST, library(build, "libbrindle-qt.so")))
    return [(path, binary) for path, binary in both if path == LIST or pathlib.Path(binary).exists()]


def symbols(binary):
    """(kind, name) of everything a library exports. Kinds are nm's: upper case strong, V and W weak."""
    found = []
    for line in output("nm", "-D", "-C", "--defined-only", binary).splitlines():
        _, kind, name = line.split(" ", 2)
        found.append((kind, name))
    return found


def interface(binary):
    """What a program may bind to: strong symbols, and the tables of classes. Other weak symbols are inline
    functions, which come and go with the optimiser."""
    return sorted({name for kind, name in symbols(binary) if not is_foreign(name) and name not in OF_THE_LINKER
                   and (kind in "TDRB" or kind == "V" and name.startswith("vtable for "))})


def tables_made_twice(build):
    """Classes without a key function: each object that needs their table makes its own."""
    makers = collections.Counter(re.findall(r" [VD] (vtable for .*)", output("nm", "-AC", archive(build))))
    return sorted(name for name, count in makers.items() if count > 1)


def archive(build):
    return str(pathlib.Path(build) / "libbrindle_objects.a")


def check_exports(tree, build):
    problems = []
    for path, binary in lists(build):
        problems += compare_exports(tree, path, interface(binary))
    exported = set(interface(library(build)))
    problems += [Problem(LIST, 0, f"{name} is made in several objects: the class has no key function")
                 for name in tables_made_twice(build) if name in exported]
    return problems


def compare_exports(tree, path, now):
    expected = (tree.root / path).read_text().splitlines() if (tree.root / path).exists() else []
    problems = [Problem(path, 0, f"no longer exported: {name}") for name in expected if name not in set(now)]
    problems += [Problem(path, 0, f"newly exported: {name}") for name in now if name not in set(expected)]
    if problems:
        problems.append(Problem(path, 0, "if these changes are meant: tools/accept-exports"))
    return problems


def check_startup(tree, build):
    """Nothing runs when the library is loaded, and nothing when the process ends."""
    problems = []
    for line in output("nm", "-A", archive(build)).splitlines():
        member = line.split(":")[1]
        if re.search(r"\b[tT] _GLOBAL__(?:sub_)?[ID]_?", line):
            problems.append(Problem(member, 0, "constructs something global when the library is loaded"))
        if re.search(r" U __cxa_atexit$| U atexit$", line):
            problems.append(Problem(member, 0, "destroys something when the process ends"))
    size = re.search(r"\.init_array\s+INIT_ARRAY\s+\S+\s+\S+\s+(\S+)",
                     output("readelf", "-SW", library(build)))
    # One pointer is the compiler's own start-up routine.
    if size and int(size.group(1), 16) > 8:
        problems.append(Problem("libbrindle.so", 0, "runs functions when it is loaded (.init_array)"))
    return sorted(set(problems), key=lambda p: (p.file, p.text))


def check_desktop(tree, build):
    """The library needs the C++ run-time, libxml2 and net-snmp; nothing it loads is a desktop's."""
    problems = []
    for name in re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-dW", library(build))):
        if name not in NEEDED:
            problems.append(Problem("libbrindle.so", 0, f"needs {name}"))
    tool = pathlib.Path(build) / "bin" / "brindle"
    for binary in [library(build)] + ([str(tool)] if tool.exists() else []):
        for line in output("ldd", binary).splitlines():
            loaded = line.split()[0]
            if DESKTOP.match(os.path.basename(loaded)):
                problems.append(Problem(os.path.basename(binary), 0, f"loads {loaded}"))
            if "not found" in line:
                problems.append(Problem(os.path.basename(binary), 0, line.strip()))
    return problems
