"""Formatting, and headers that compile alone."""
import concurrent.futures
import functools
import os
import re
import shutil
import subprocess

from .tree import Problem

GATHERING = "brindle/brindle.h"
FORMATTER = "clang-format-14"
QT_FOLDERS = ("brindle/platform/qt/", "apps/brindle-map/")
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror"]


def jobs():
    return concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 2)


def check_format(tree):
    if not shutil.which(FORMATTER):
        return [Problem(FORMATTER, 0, "is not installed; scripts/setup installs it")]
    if not tree.sources:
        return []
    run = subprocess.run([FORMATTER, "--dry-run", "--style=file", *tree.sources], cwd=tree.root,
                         capture_output=True, text=True, check=False)
    first = {}
    for match in re.finditer(r"^(\S+?):(\d+):\d+: warning: .*clang-format-violations", run.stderr, re.MULTILINE):
        first.setdefault(match.group(1), int(match.group(2)))
    if run.returncode and not first:
        return [Problem(FORMATTER, 0, run.stderr.strip())]
    return [Problem(path, line, f"is not formatted; run {FORMATTER} -i {path}") for path, line in first.items()]


def check_headers(tree):
    """Public headers see the other public headers and the standard library, nothing else."""
    work = tree.root / "build" / "check"
    shutil.rmtree(work, ignore_errors=True)
    for header in sorted(tree.public_headers):
        link = work / "public" / header
        link.parent.mkdir(parents=True, exist_ok=True)
        link.symlink_to(tree.root / header)
    headers = [p for p in tree.sources if p.endswith(".h") and p.startswith(("brindle/", "host/", "apps/", "testing/"))]
    (work / "alone").mkdir(parents=True, exist_ok=True)
    with jobs() as pool:
        results = pool.map(lambda header: _compile_alone(tree, work, header), headers)
        return _check_gathering(tree) + [problem for problem in results if problem]


def _check_gathering(tree):
    """The gathering header reaches every public header."""
    if GATHERING not in tree.public_headers:
        return []
    reached, waiting = set(), [GATHERING]
    while waiting:
        path = waiting.pop()
        if path not in reached:
            reached.add(path)
            waiting += [name for name in re.findall(r'#include [<"]([^">]+)', tree.text(path))
                        if name in tree.public_headers]
    return [Problem(GATHERING, 0, f"does not include {path}") for path in sorted(tree.public_headers - reached)]


@functools.cache
def _qt_flags():
    """Where Qt's headers are, as the system's; nothing without Qt."""
    run = subprocess.run(["pkg-config", "--cflags", "Qt6Widgets"], capture_output=True, text=True, check=False)
    return ["-isystem" + flag[2:] if flag.startswith("-I") else flag for flag in run.stdout.split()]


def _compile_alone(tree, work, header):
    source = work / "alone" / (header.replace("/", "__")[:-2] + ".cpp")
    source.write_text(f"#include <{header}>\n#include <{header}>\n")
    public = header in tree.public_headers
    include = work / "public" if public else tree.root
    cache = ["ccache"] if shutil.which("ccache") else []
    command = [*cache, "g++", "-std=c++20", *WARNINGS, "-I", str(include), "-c", str(source), "-o",
               str(source.with_suffix(".o"))]
    if header.startswith("brindle/platform/linux/"):
        command += ["-isystem", "/usr/include/libxml2"]
    if header.startswith(QT_FOLDERS):
        if not _qt_flags():
            return None  # without Qt the desktop library is not built either
        command += _qt_flags()
    run = subprocess.run(command, capture_output=True, text=True, check=False)
    if run.returncode == 0:
        return None
    error = re.search(r"(?:fatal )?error: .*", run.stderr)
    return Problem(header, 0, "does not compile alone: " + (error.group() if error else run.stderr.strip()))
