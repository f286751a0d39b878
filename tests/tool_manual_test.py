#!/usr/bin/env python3
"""The manual page and the completions of a tool know what its help tells, and the shells take them.

usage: tool_manual_test.py PROGRAM FOLDER      the folder they were made into
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = FOLDER = pathlib.Path()  # set by main


def output(*command, **options):
    run = subprocess.run(command, capture_output=True, text=True, timeout=60, check=False, **options)
    if run.returncode or run.stderr:
        raise AssertionError(f"{command[0]} exits with {run.returncode}: {run.stderr}")
    return run.stdout


def helps():
    """(words of the command, its help) of every command, found by asking each for its own."""
    waiting = [[]]
    while waiting:
        words = waiting.pop(0)
        text = output(PROGRAM, *words, "--help")
        yield words, text
        if f"{' '.join([PROGRAM.name, *words])} COMMAND ..." in text:
            tables = text[:re.search(r"^(?:Arguments and o|O)ptions$", text, re.MULTILINE).start()]
            tables = tables[tables.index("COMMAND ..."):]
            waiting += [[*words, name] for name in re.findall(r"^  (\w[\w-]*) ", tables, re.MULTILINE)]


def options_of(text):
    return re.findall(r"^  (--[\w-]+)", text, re.MULTILINE)


def words_of_bash(words):
    """What bash offers for the last word."""
    script = (f"source {FOLDER}/{PROGRAM.name}.bash\nCOMP_WORDS=({PROGRAM.name} \"$@\")\nCOMP_CWORD=$#\n"
              f"_{PROGRAM.name.replace('-', '_')}\nprintf '%s\\n' \"${{COMPREPLY[@]}}\"\n")
    return output("bash", "-c", script, "bash", *words).split()


def words_of_zsh(words):
    """What zsh would describe; its own functions are stood in for."""
    script = ("_describe() { local all=(\"${(@P)2}\"); print -l -- ${all%%:*} }\n_files() { print FILES }\n"
              f"_message() {{ print VALUE }}\nwords=({PROGRAM.name} \"$@\")\nCURRENT=$(( $# + 1 ))\n"
              f"complete_it() {{\n{(FOLDER / ('_' + PROGRAM.name)).read_text()}\n}}\ncomplete_it\n")
    return output("zsh", "-f", "-c", script, "zsh", *words).split()


class ToolManualTest(unittest.TestCase):
    def test_every_command_is_there(self):
        commands = list(helps())
        page = output("groff", "-man", "-ww", "-Tutf8", "-P-cbou", "-rLL=200n", FOLDER / f"{PROGRAM.name}.1")
        page = page.replace("\u2010", "-")
        for words, text in commands:
            with self.subTest(" ".join(words)):
                options = options_of(text)
                self.assertIn("--help", options)
                self.assertEqual(words_of_bash([*words, "--"]), options)
                self.assertEqual(words_of_zsh([*words, "--"]), options)
                subcommands = [other[-1] for other, _ in commands if other[:-1] == words and other]
                if subcommands:
                    self.assertEqual(words_of_bash([*words, ""]), subcommands)
                    self.assertEqual(words_of_zsh([*words, ""]), subcommands)
                else:
                    self.assertEqual(words_of_zsh([*words, ""]), ["FILES"])
                    self.assertRegex(page, rf"(?m)^ +{re.escape(' '.join(words))}$" if words else "SYNOPSIS")
                for option in options:
                    if option != "--help":
                        self.assertIn(option, page)

    def test_values_of_options(self):
        takes_file = takes_number = None
        for words, text in helps():
            for option, value in re.findall(r"^  (--[\w-]+) (\S+)", text, re.MULTILINE):
                takes_file = [*words, option] if value == "FILE" else takes_file
                takes_number = [*words, option] if value in ("MS", "SECONDS") else takes_number
        self.assertEqual(words_of_zsh([*takes_file, ""]), ["FILES"])
        self.assertEqual(words_of_zsh([*takes_number, "--"]), ["VALUE"])
        self.assertEqual(words_of_bash([*takes_number, ""]), [])
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "some.xml").touch()
            self.assertEqual(words_of_bash([*takes_file, f"{folder}/so"]), [f"{folder}/some.xml"])

    def test_a_beginning_is_enough(self):
        subcommands = [words[0] for words, _ in helps() if len(words) == 1]
        for word in subcommands:
            self.assertEqual(words_of_bash([word[:3]]), [other for other in subcommands if other.startswith(word[:3])])

    def test_words_behind_an_argument_are_no_commands(self):
        for words in [words for words, text in helps() if words and "COMMAND ..." not in text][:1]:
            self.assertEqual(words_of_bash([*words, words[0], "--h"]), ["--help"])
        self.assertEqual(words_of_bash(["nonsense", "run", "--help"]), ["--help"])


def main():
    global PROGRAM, FOLDER
    if len(sys.argv) < 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    FOLDER = pathlib.Path(sys.argv.pop(2)).resolve()
    PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
    return 0


if __name__ == "__main__":
    sys.exit(main())
