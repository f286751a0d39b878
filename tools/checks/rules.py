"""Calls that only the services may make, locale-dependent calls, sizes and names.

A line that must break a rule says so with its reason: `// tools/check: RULE: reason`.
"""
import collections
import os
import re

from .tree import Problem, is_test

# Not a member and not of some other namespace: "x.time(" and "Other::time(" are somebody else's.
CALL = r"(?<![\w.])(?<!->)(?:(?<!::)|(?<=std::)|(?<=[^\w>]::))(?:{})\s*\("
RULES = {
    "time": re.compile(
        CALL.format("time|localtime(?:_r)?|gmtime(?:_r)?|mktime|timegm|clock|clock_gettime|gettimeofday|strftime")
        + r"|\bchrono::(?:system|steady|high_resolution|utc|file)_clock\b"),
    "environment": re.compile(CALL.format("(?:secure_)?getenv|setenv|unsetenv|putenv") + r"|\benviron\b"),
    "directory": re.compile(CALL.format("getcwd|chdir|fchdir") + r"|\bcurrent_path\s*\("),
    "random": re.compile(CALL.format("s?rand(?:_r)?|s?random|drand48|getrandom") + r"|\brandom_device\b"),
    "program": re.compile(CALL.format("system|popen|v?fork|exec[lv]p?e?|posix_spawnp?")),
    "files": re.compile(CALL.format("fopen|freopen|tmpfile|remove|rename|tmpnam")
                        + r"|\b[io]?fstream\b|\bstd::filesystem\b"),
    "locale": re.compile(
        CALL.format("strto(?:d|f|ld|l|ul|ll|ull|imax|umax)|ato(?:f|i|l|ll)|sto(?:d|f|ld|i|l|ul|ll|ull)"
                    "|to(?:upper|lower)|is(?:alpha|alnum|digit|space|upper|lower|punct|print|xdigit|cntrl|graph|blank)"
                    "|strcoll|strxfrm|setlocale|localeconv|str(?:n)?casecmp|v?f?s?n?scanf|sscanf")
        + r"|\bstd::w?[io]?stringstream\b|\bstd::locale\b(?!::classic\(\))|\b(?:put_time|get_time|setprecision)\b"),
    # A regular expression takes the locale in force when it is made, unless it is given another first.
    "regex": re.compile(r"\bstd::w?regex\b"),
    "printf": re.compile(CALL.format("v?[fs]?n?printf|v?asprintf|v?dprintf")),
    "system": re.compile(r"\b(?:_WIN32|_WIN64|__linux__|__unix__|__APPLE__|_MSC_VER)\b"),
}
WHY = {
    "time": "time comes from the clock service",
    "environment": "the environment is asked through its service",
    "directory": "the current directory is asked through the files service",
    "random": "no randomness outside a service",
    "program": "programs are started through their service",
    "files": "files are reached through the files service",
    "locale": "depends on the process locale",
    "regex": "is never given the classic locale (imbue)",
    "printf": "prints a floating-point number by the process locale",
    "system": "only the backends know which system they run on",
}
LIBRARY_ONLY = {"files"}
WAIVER = re.compile(r"//\s*tools/check:\s*(\w+):\s*(\S.*)")
FLOAT_FORMAT = re.compile(r"%[-+ #0]*(?:\d+|\*)?(?:\.(?:\d+|\*)?)?[lLhjzt]*[aAeEfFgG]")
LONG_FILE, LONGEST_FILE = 600, 700
LONGEST_FUNCTION = 60
LONGEST_LINE = 120  # the formatter keeps code to 110; comments and long texts are the author's


def in_scope(path, rule):
    if is_test(path) or path.startswith("brindle/platform/linux/"):
        return False
    if rule == "system" and path == "brindle/framework/export.h":
        return False
    if rule in LIBRARY_ONLY:
        return path.startswith("brindle/")
    return path.startswith(("brindle/", "host/", "apps/"))


def check(tree):
    problems = []
    for path in tree.sources:
        lines = tree.text(path).split("\n")
        for rule, pattern in RULES.items():
            if not in_scope(path, rule):
                continue
            if rule == "regex" and "imbue(std::locale::classic())" in tree.code(path):
                continue
            for line, match in tree.matches(pattern, path):
                if lines[line - 1].lstrip().startswith("#include"):
                    continue
                if rule == "printf" and not prints_float(lines, line):
                    continue
                if waived(lines, line, rule):
                    continue
                call = match.group().strip(" (")
                problems.append(Problem(path, line, f"{call}: {WHY[rule]} [{rule}]"))
        problems += check_size(tree, path)
    return problems + check_names(tree)


def waived(lines, line, rule):
    return any(m and m.group(1) == rule
               for m in (WAIVER.search(text) for text in lines[max(0, line - 2):line]))


def prints_float(lines, line):
    statement = ""
    for text in lines[line - 1:line + 5]:
        statement += text
        if ";" in text:
            break
    return bool(FLOAT_FORMAT.search(statement.replace("%%", "")))


def check_size(tree, path):
    count = tree.text(path).count("\n")
    problems = []
    if count > LONG_FILE:
        fatal = count > LONGEST_FILE
        limit = LONGEST_FILE if fatal else LONG_FILE
        problems.append(Problem(path, 0, f"{count} lines, more than {limit}", fatal))
    problems += [Problem(path, number, f"a line of {len(line)} characters, more than {LONGEST_LINE}")
                 for number, line in enumerate(tree.text(path).split("\n"), 1) if len(line) > LONGEST_LINE]
    if not is_test(path):
        problems += [Problem(path, start, f"a function of {length} lines, more than {LONGEST_FUNCTION}")
                     for start, length in functions(tree.code(path)) if length > LONGEST_FUNCTION]
    return problems


BODY = re.compile(r"(?:\)|\bconst|\bnoexcept|\boverride|\bfinal|[\w>&*]) \{$")
NOT_A_FUNCTION = re.compile(
    r"\s*(?:(?:namespace|class|struct|union|enum|extern|if|for|while|switch|do|else|return|case)\b|[}#])|[^(]* = ")

STATEMENT_ENDS = re.compile(r"[;{}]\s*$|^\s*$|^\s*#|^\s*\w+:\s*$")


def functions(code):
    """(first line, lines) of each function, by the formatter's layout: the brace that closes a body stands in the
    column where its first line begins."""
    lines = code.split("\n")
    number = 0
    while number < len(lines):
        first, end = number, None
        if BODY.search(lines[number]):
            while first > 0 and not STATEMENT_ENDS.search(lines[first - 1]):
                first -= 1  # a head over several lines
            if "(" in lines[first] and not NOT_A_FUNCTION.match(lines[first]):
                close = re.match(" *", lines[first]).group() + "}"
                end = next((i for i in range(number + 1, len(lines)) if lines[i].startswith(close)), None)
        if end is not None:
            yield first + 1, end - first + 1
            number = end
        number += 1


def check_names(tree):
    places = collections.defaultdict(list)
    for path in tree.sources:
        if os.path.basename(path) != "main.cpp":
            places[os.path.basename(path)].append(path)
    problems = [Problem(paths[1], 0, f"has the same name as {paths[0]}")
                for paths in places.values() if len(paths) > 1]
    for path in tree.sources:
        if not re.fullmatch(r"[a-z0-9_]+\.(h|cpp)", os.path.basename(path)):
            problems.append(Problem(path, 0, "file names are in snake_case"))
        if path.endswith(".h") and "#pragma once" not in tree.text(path):
            problems.append(Problem(path, 0, 'no "#pragma once"'))
        if path.startswith(("brindle/", "host/", "apps/")) and not is_test(path):
            explained = path[:-4] + ".h" in tree.sources  # the header beside it has the paragraph
            if not explained and not tree.text(path).startswith(("//", "/*")):
                problems.append(Problem(path, 0, "does not open with a paragraph on its purpose"))
    return problems
