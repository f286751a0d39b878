#!/usr/bin/env python3
"""What scripts/try-packages says before it does anything. The trial itself needs a network, and minutes."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts/try-packages"


class TryPackagesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in ("used", "empty", "bin"):
            (self.folder / name).mkdir()
        (self.folder / "used/file").write_text("")
        for name in ("debootstrap", "unshare"):  # that they are there is all that is asked
            (self.folder / "bin" / name).symlink_to("/bin/false")

    def run_script(self, *arguments, path=None):
        return subprocess.run([sys.executable, SCRIPT, *arguments], cwd=self.folder, capture_output=True, text=True, check=False,
                              env={**os.environ, "PATH": path or f"{self.folder}/bin:{os.environ['PATH']}"})

    def expect_refusal(self, text, *arguments, **options):
        run = self.run_script(*arguments, **options)
        self.assertEqual((run.stdout, run.returncode), ("", 2), run.stderr)
        self.assertIn(text, run.stderr)

    def test_help(self):
        run = self.run_script("--help")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("usage: scripts/try-packages FOLDER", run.stdout)

    def test_wrong_usage(self):
        self.expect_refusal("needs a folder")
        self.expect_refusal("--nonsense", "folder", "--nonsense")

    def test_without_root(self):
        if os.geteuid() == 0:
            self.skipTest("this is root")
        self.expect_refusal("needs root", "folder")

    def test_what_is_in_the_way(self):
        if os.geteuid() != 0:
            self.skipTest("this is not root")
        self.expect_refusal("used: is not an empty folder", "used")
        self.expect_refusal("used/file: is not an empty folder", "used/file")
        self.expect_refusal("empty: has no packages", "folder", "--packages", "empty")
        self.expect_refusal("needs debootstrap: apt-get install debootstrap", "folder", path="/nowhere")
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["bin", "empty", "used"])


if __name__ == "__main__":
    unittest.main()
