"""The gallery's commands print what its pages say, and its sentences agree with what was published."""

import os
import pathlib
import re
import subprocess

from program import PROGRAM, ProgramTest

ROOT = pathlib.Path(__file__).resolve().parents[2]
GALLERY = ROOT / "docs" / "gallery"
PAGES = sorted(page for page in GALLERY.glob("*.md") if page.name != "README.md")


def commands(page):
    """(command, lines that it prints) of a page: "$ " begins a command, its output follows."""
    found = []
    for line in page.read_text().splitlines():
        if line.startswith("    $ "):
            found.append((line[6:], []))
        elif line.startswith("    ") and found:
            found[-1][1].append(line[4:])
    return found


class Gallery(ProgramTest):
    def setUp(self):
        super().setUp()
        (self.folder / "examples").symlink_to(ROOT / "examples")
        (self.folder / "bin").mkdir()
        (self.folder / "bin" / "proportions").symlink_to(PROGRAM)

    def run_line(self, line):
        environment = dict(os.environ, PATH=f"{self.folder / 'bin'}:{os.environ['PATH']}")
        done = subprocess.run(["bash", "-c", line], cwd=self.folder, env=environment, capture_output=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode().splitlines()

    def test_commands_print_what_the_pages_say(self):
        self.assertEqual(len(PAGES), 5)
        for page in PAGES:
            found = commands(page)
            self.assertGreaterEqual(len(found), 2, page.name)
            self.assertTrue(any(wanted for _, wanted in found), page.name)
            for line, wanted in found:
                with self.subTest(line):
                    printed = self.run_line(line)
                    for text in wanted:
                        self.assertIn(text, printed)

    def test_reports_are_written(self):
        for page in PAGES:
            line = commands(page)[-1][0]
            name = line.split(" -o ")[1]
            self.run_line(line)
            self.assertTrue((self.folder / name).read_text().startswith("<!DOCTYPE html>"), name)

    def test_pictures_are_there_and_small(self):
        for page in PAGES:
            for picture in re.findall(r"!\[[^\]]+\]\(([^)]+)\)", page.read_text()):
                self.assertLess((GALLERY / picture).stat().st_size, 300_000, picture)
