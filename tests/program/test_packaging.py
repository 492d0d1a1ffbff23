"""The man page and the completions tell all that the program and its documents tell."""

import os
import pathlib
import re
import shutil
import subprocess
import unittest

from program import PROGRAM, ProgramTest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PACKAGING = ROOT / "packaging"
BASH = PACKAGING / "completions" / "proportions.bash"
ZSH = PACKAGING / "completions" / "_proportions"
MAN = PACKAGING / "proportions.1"


def options():
    """All long options that the help tells."""
    text = subprocess.run([PROGRAM, "--help"], capture_output=True, check=True, text=True).stdout
    return sorted(set(re.findall(r"^  (?:-\w, )?(--[a-z-]+)", text, re.M)))


def keywords():
    """All words of the command: those of the reference, and every method."""
    command = (ROOT / "docs/command.md").read_text()
    found = {word for code in re.findall(r"`([^`]+)`", command) for word in re.findall(r"[A-Z][A-Z0-9_]+", code)}
    for design in ("onesample", "paired", "independent"):
        found |= set(re.findall(r"^### ([A-Z0-9_]+)$", (ROOT / f"docs/methods/{design}.md").read_text(), re.M))
    return sorted(found)


class Told(unittest.TestCase):
    def test_every_option(self):
        found = options()
        self.assertGreater(len(found), 15)
        for file in (MAN, BASH, ZSH):
            text = file.read_text().replace("\\-", "-")
            for option in found:
                self.assertRegex(text, rf"{option}(?![a-z-])", f"{file.name} does not tell {option}")

    def test_every_keyword(self):
        found = keywords()
        self.assertGreater(len(found), 40)
        for file in (BASH, ZSH):
            words = set(re.findall(r"\w+", file.read_text()))
            self.assertEqual([word for word in found if word not in words], [], file.name)

    @unittest.skipUnless(shutil.which("groff"), "needs groff")
    def test_the_man_page_is_well_formed(self):
        done = subprocess.run(["groff", "-man", "-ww", "-Tutf8", MAN], capture_output=True, check=True)
        self.assertEqual(done.stderr.decode(), "")

    @unittest.skipUnless(shutil.which("zsh"), "needs zsh")
    def test_the_zsh_completion_is_well_formed(self):
        subprocess.run(["zsh", "-n", ZSH], check=True)


@unittest.skipUnless(shutil.which("bash"), "needs bash")
class Bash(ProgramTest):
    def complete(self, *words):
        """The candidates for the last word."""
        script = f'. "{BASH}"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _proportions; printf "%s\\n" "${{COMPREPLY[@]}}"'
        done = subprocess.run(["bash", "-c", script, "bash", PROGRAM, *words], cwd=self.folder, capture_output=True, check=True,
                              env={**os.environ, "LC_ALL": "C.UTF-8"}, text=True)
        return done.stdout.split()

    def setUp(self):
        super().setUp()
        self.write("d.csv", "smoker,drinker,sex\n1,0,m\n0,1,f\n")

    def test_options_and_their_values(self):
        self.assertEqual(self.complete("--sp"), ["--split", "--split-layout"])
        self.assertEqual(self.complete("--split-layout", ""), ["rows", "tables"])
        self.assertEqual(self.complete("--format", "=", "m"), ["markdown"])
        self.assertEqual(self.complete("d"), ["d.csv"])

    def test_keywords(self):
        self.assertEqual(self.complete("-c", "\"PROPORTIONS /ONESA"), ["PROPORTIONS", "/ONESAMPLE"])
        self.assertEqual(self.complete("-c", "/ONESAMPLE x CITYPES=WILSON_SCOREC"), ["/ONESAMPLE", "x", "CITYPES=WILSON_SCORECC"])
        self.assertIn("CLOPPER_PEARSON", self.complete("--help", "CL"))

    def test_variables(self):
        self.assertEqual(self.complete("d.csv", "--weight", "s"), ["smoker", "sex"])
        self.assertEqual(self.complete("d.csv", "--split", "sex,dr"), ["sex,drinker"])
        self.assertEqual(self.complete("d.csv", "-c", "/ONESAMPLE smo"), ["/ONESAMPLE", "smoker"])


if __name__ == "__main__":
    unittest.main()
