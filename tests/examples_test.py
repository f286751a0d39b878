#!/usr/bin/env python3
"""Runs the built examples as their readers would and looks at what they print.

usage: examples_test.py FOLDER      the folder the examples were built into, from the tree or outside it
"""
import os
import pathlib
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
EXAMPLES = ROOT / "examples"
PROGRAMS = pathlib.Path()  # set by main
LONGEST = 60
DEADLINE = 60  # seconds; nothing here takes a tenth of it on a quiet machine
STATION = EXAMPLES / "sites/studio"


def run(name, *arguments, **options):
    return subprocess.run([PROGRAMS / name, *map(str, arguments)], capture_output=True, text=True, timeout=DEADLINE,
                          check=False, **options)


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class ExamplesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def expect(self, result, output, errors="", code=0):
        self.assertEqual((result.stdout, result.stderr, result.returncode), (output, errors, code))

    def test_they_are_short(self):
        sources = sorted(EXAMPLES.glob("*/main.cpp"))
        self.assertGreaterEqual(len(sources), 10)
        for source in sources:
            with self.subTest(source.parent.name):
                self.assertLessEqual(len(source.read_text().splitlines()), LONGEST)

    def test_those_that_only_print(self):
        for expected in sorted(EXAMPLES.glob("*/expected.txt")):
            name = expected.parent.name
            behaviours = expected.parent / "behaviours.xml"
            with self.subTest(name):
                self.expect(run(name, *([behaviours] if behaviours.exists() else [])), expected.read_text())

    def test_headless_host_tells_what_is_wrong(self):
        broken = self.folder / "broken.xml"
        broken.write_text("<BehaviourList>")
        result = run("headless_host", broken)
        self.assertEqual((result.stdout, result.returncode), ("", 2))
        self.assertRegex(result.stderr, "^headless_host: .+")

    def test_rule_that_does_not_convert(self):
        result = run("rule_every_second", "(POWER < 500")
        self.assertEqual((result.stdout, result.returncode), ("", 1))
        self.assertRegex(result.stderr, "^rule_every_second: .+")

    def test_snmp_poll_without_an_agent(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as silent:  # takes the requests and says nothing
            silent.bind(("127.0.0.1", 0))
            result = run("snmp_poll", f"127.0.0.1:{silent.getsockname()[1]}", "1.3.6.1.2.1.1.5.0")
        self.expect(result, "no answer within 500 ms, 2 attempts\n" * 3)

    def test_snmp_poll_of_the_station(self):
        deadline = time.monotonic() + DEADLINE
        answer = None
        while time.monotonic() < deadline:
            port = free_port()  # somebody else may take it before the agent does: then again
            # The folder is the agent's own temporary one; timeout ends it also when this test is killed.
            with subprocess.Popen(["timeout", str(2 * DEADLINE), STATION / "agent", str(port)],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as agent:
                try:
                    while agent.poll() is None and time.monotonic() < deadline:
                        answer = run("snmp_poll", f"127.0.0.1:{port}", "1.3.6.1.4.1.8072.9999.1.1")
                        if "no answer" not in answer.stdout:  # the agent may still be starting
                            return self.expect(answer, "1000\n" * 3)
                finally:
                    agent.terminate()
        self.fail(f"the station's agent does not answer: {answer}")

    def test_file_watch(self):
        path = self.folder / "watched.txt"
        path.write_text("first")
        with subprocess.Popen([PROGRAMS / "file_watch", path, "1"], stdout=subprocess.PIPE, text=True) as watcher:
            try:
                self.assertEqual(watcher.stdout.readline(), "watching\n")
                path.write_text("second")
                # Cutting and writing are two changes, so the file may be seen empty between them.
                self.assertIn(watcher.communicate(timeout=DEADLINE)[0], ("now: second\n", "now: \n"))
                self.assertEqual(watcher.returncode, 0)
            finally:
                watcher.kill()

    def test_file_watch_of_a_file_that_is_replaced(self):
        path, fresh = self.folder / "watched.txt", self.folder / "fresh.txt"
        path.write_text("first")
        fresh.write_text("second")
        with subprocess.Popen([PROGRAMS / "file_watch", path, "1"], stdout=subprocess.PIPE, text=True) as watcher:
            try:
                self.assertEqual(watcher.stdout.readline(), "watching\n")
                fresh.rename(path)
                self.assertEqual(watcher.communicate(timeout=DEADLINE)[0], "now: second\n")
            finally:
                watcher.kill()

    def test_file_watch_without_a_folder(self):
        path = self.folder / "nowhere" / "file.txt"
        self.expect(run("file_watch", path), "", f"file_watch: {path}: its folder cannot be watched\n", 1)

    def test_skin_edit(self):
        skin = self.folder / "skin.xml"
        shutil.copy(STATION / "skin.xml", skin)
        for width in (3, 4):  # what the first run wrote, the second reads
            self.expect(run("skin_edit", skin), f"the border of a pressed button is now {width} wide and red\n")
        text = skin.read_text()
        for part in ('bordersize="4"', 'bordercolour="#FF0000"', 'lfFaceName="DejaVu Sans"'):
            self.assertIn(part, text)

    def test_skin_edit_leaves_what_it_cannot_read(self):
        for text in ("<skin>", "<other/>", ""):
            skin = self.folder / "skin.xml"
            skin.write_text(text)
            with self.subTest(text):
                result = run("skin_edit", skin)
                self.assertEqual((result.stdout, result.returncode), ("", 1))
                self.assertRegex(result.stderr, "^skin_edit: .+skin.xml: .+")
                self.assertEqual(skin.read_text(), text)

    def run_on_desktop(self, name, *arguments):
        """On a desktop without a screen; what the font library keeps is its own, in a sanitizer's build."""
        if not (PROGRAMS / name).exists():
            self.skipTest("built without the desktop library")
        suppressions = ROOT / "brindle/platform/qt/leaks.supp"
        return run(name, *arguments,
                   env={**os.environ, "QT_QPA_PLATFORM": "offscreen", "XDG_RUNTIME_DIR": str(self.folder),
                        "LSAN_OPTIONS": f"suppressions={suppressions}:print_suppressions=0"})

    def pixels(self, picture, width, height):
        """What gives the colour at a place of a PPM picture."""
        kind, size, depth, pixels = picture.read_bytes().split(b"\n", 3)
        self.assertEqual((kind, size, depth), (b"P6", f"{width} {height}".encode(), b"255"))
        return lambda x, y: tuple(pixels[3 * (width * y + x):][:3])

    def test_qt_widget(self):
        picture = self.folder / "window.ppm"
        result = self.run_on_desktop("qt_widget", picture)
        self.assertEqual((result.stdout, result.returncode), ("", 0), result.stderr)
        pixel = self.pixels(picture, 320, 120)
        self.assertEqual(pixel(60, 80), (0xC0, 0x20, 0x20))  # the body, beside its caption
        self.assertNotEqual(pixel(11, 51), (0xC0, 0x20, 0x20))  # outside its rounded corner
        bright = sum(pixel(x, y)[1] > 0x80 for x in range(100, 220) for y in range(60, 100))
        self.assertGreater(bright, 20)  # the caption

    def test_dialogs(self):
        picture, colours = self.folder / "dialog.ppm", self.folder / "colours.ini"
        colours.write_text("[CustomColours]\nCustomColour0=1,2,3\n")
        result = self.run_on_desktop("dialogs", colours, picture)
        self.assertEqual((result.stdout, result.returncode), ("colour of alarms: 0xff00\n", 0), result.stderr)
        self.assertEqual(colours.read_text().splitlines()[1:], ["CustomColour0=1,2,3"] +
                         [f"CustomColour{number}=255,255,255" for number in range(1, 16)])
        pixel = self.pixels(picture, 300, 120)

        def darkest(top):
            return min(sum(pixel(x, y)) for x in range(35, 180) for y in range(top + 3, top + 22))
        text, greyed, ground = darkest(10), darkest(45), sum(pixel(150, 40))
        self.assertLess(text, 3 * 0x40)
        self.assertGreater(greyed, text + 3 * 0x28)
        self.assertLess(greyed, ground - 3 * 0x28)


def main():
    global PROGRAMS
    if len(sys.argv) < 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    PROGRAMS = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
    return 0


if __name__ == "__main__":
    sys.exit(main())
