"""Options, help, the order of strings, where the command comes from."""

import fcntl
import json
import os
import pathlib
import pty
import re
import struct
import subprocess
import termios
import unittest

from engine import execute
from program import PROGRAM, ProgramTest

COMMAND = "PROPORTIONS /ONESAMPLE x."
ROOT = pathlib.Path(__file__).resolve().parents[2]


class CommandLine(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "x,s,t\n1,a,c\n0,a,d\n1,b,c\n0,b,c\n")


class Options(CommandLine):
    def test_a_wrong_option_gets_a_suggestion(self):
        for wrong, meant in (("--wieght", "--weight"), ("--formt=json", "--format"), ("--split-layuot", "--split-layout"), ("--hlep", "--help")):
            self.assertIn(f"did you mean {meant}?", self.unusable("d.csv", "-c", COMMAND, wrong, "x"))
        self.assertIn("there is no option --zzzzzz\n", self.unusable("d.csv", "-c", COMMAND, "--zzzzzz"))

    def test_wrong_values(self):
        for arguments, reasons in (
                (["--format", "xml"], ["--format", "'xml'", "text, markdown", "json, csv"]),
                (["--split-layout", "x"], ["--split-layout", "rows, tables"]),
                (["--progress", "x"], ["auto, always, never"]), (["--collapse", "x"], ["auto, always, never"]),
                (["--width", "39"], ["--width", "from 40 to"]), (["--width", "x"], ["whole number"]), (["--width", "80x"], ["whole number"]),
                (["--digits", "16"], ["from 0 to 15"]), (["--digits", "-1"], ["from 0 to 15"]),
                (["--weight"], ["--weight needs a value"]), (["-c", COMMAND], ["--command is given more than once"])):
            said = self.unusable("d.csv", "-c", COMMAND, *arguments)
            for reason in reasons:
                self.assertIn(reason, said)

    def test_data_anywhere(self):
        expected = self.run_program("d.csv", "--split", "s", "-c", COMMAND).stdout
        for arguments in (["--split", "s", "d.csv", "-c", COMMAND], ["-c", COMMAND, "d.csv", "--split", "s"], ["-c", COMMAND, "--split", "s", "d.csv"]):
            self.assertEqual(self.run_program(*arguments).stdout, expected)
        self.assertIn("one argument too many", self.unusable("d.csv", "e.csv", "-c", COMMAND))
        self.assertIn("there are no data", self.unusable("-c", COMMAND))

    def test_several_split_variables(self):
        expected = self.run_program("d.csv", "--split", "s,t", "-c", COMMAND).stdout
        self.assertEqual(self.run_program("d.csv", "--split", "s", "--split", "t", "-c", COMMAND).stdout, expected)
        self.assertEqual(self.run_program("--split", "s", "--split", "t", "d.csv", "-c", COMMAND).stdout, expected)


class TextOptions(ProgramTest):
    """Options that tell how CSV is written, given for other data."""

    OPTIONS = (("--delimiter", ";"), ("--decimal", ","), ("--decimal", "."), ("--encoding", "latin1"))

    def refuse(self, data, what, options=OPTIONS):
        for name, value in options:
            said = self.unusable(data, name, value, "-c", COMMAND)
            self.assertIn(f"{name} tells how CSV is written, and this is {what}", said)

    def test_they_are_refused_where_they_say_nothing(self):
        self.write("d.json", '[{"x": 1}]')
        self.refuse("d.json", "JSON")
        (self.folder / "many").mkdir()
        self.write("many/a.jsonl", '{"x": 1}\n')
        self.refuse("many", "JSON")
        execute([f"COPY (SELECT 1 AS x) TO '{self.folder}/d.parquet' (FORMAT parquet)"])
        self.refuse("d.parquet", "Parquet")
        execute(["CREATE TABLE t AS SELECT 1 AS x"], self.folder / "d.duckdb")
        self.refuse("duckdb:d.duckdb", "a database")
        self.refuse("odbc:DRIVER=None", "a server")
        for ending in (".dta", ".sas7bdat", ".xpt"):
            self.write("d" + ending, "")
            self.refuse("d" + ending, ending, self.OPTIONS[:3])
            self.assertNotIn("tells how CSV", self.unusable("d" + ending, "--encoding", "latin1", "-c", COMMAND))

    def test_they_are_taken_where_they_do(self):
        self.write("d.csv", "x\n1\n0\n")
        self.write("d.tsv", "x\n1\n0\n")
        (self.folder / "many").mkdir()
        self.write("many/a.csv", "x\n1\n0\n")
        for data in ("d.csv", "d.tsv", "many", "many/*.csv"):
            for option in self.OPTIONS:
                self.run_program(data, *option, "-c", COMMAND)
        for option in self.OPTIONS:
            self.run_program("-", *option, "-c", COMMAND, stdin=b"x\n1\n0\n")


class Width(CommandLine):
    EVERY = "PROPORTIONS /ONESAMPLE x TESTTYPES=ALL CITYPES=ALL."

    def widest(self, text):
        """Of the lines of tables; notes have lines of their own."""
        return max(len(line) for line in text.splitlines())

    def on_a_terminal(self, columns, **environment):
        terminal, program_side = pty.openpty()
        fcntl.ioctl(program_side, termios.TIOCSWINSZ, struct.pack("HHHH", 40, columns, 0, 0))
        program = subprocess.Popen([PROGRAM, "d.csv", "-c", self.EVERY], cwd=self.folder, stdout=program_side,
                                   env={**os.environ, **environment})
        os.close(program_side)
        shown = b""
        while True:
            try:
                block = os.read(terminal, 1 << 16)
            except OSError:  # how Linux ends the reading of a terminal that nobody holds
                break
            if not block:
                break
            shown += block
        os.close(terminal)
        self.assertEqual(program.wait(), 0)
        return shown.decode().replace("\r\n", "\n")

    def written(self, *arguments, **environment):
        done = subprocess.run([PROGRAM, "d.csv", "-c", self.EVERY, *arguments], cwd=self.folder, check=True, capture_output=True,
                              env={**os.environ, **environment}, text=True)
        return done.stdout

    def test_the_terminals_width(self):
        narrow, wide = self.on_a_terminal(60), self.on_a_terminal(160)
        self.assertLessEqual(self.widest(narrow), 60)
        self.assertGreater(self.widest(wide), 60)
        self.assertEqual(narrow, self.written("--width", "60"))
        self.assertEqual(self.on_a_terminal(160, COLUMNS="60"), wide)

    def test_elsewhere(self):
        usual = self.written()
        self.assertEqual(usual, self.written("--width", "100"))
        self.assertEqual(self.written(COLUMNS="60"), usual)
        self.written("-o", "o.txt")
        self.assertEqual((self.folder / "o.txt").read_text(), usual)


class Commands(CommandLine):
    def test_a_command_comes_from_one_place(self):
        self.write("c.txt", COMMAND)
        expected = self.run_program("d.csv", "-c", COMMAND).stdout
        self.assertEqual(self.run_program("d.csv", "-f", "c.txt").stdout, expected)
        self.assertEqual(self.run_program("d.csv", "-f", "-", stdin=COMMAND.encode()).stdout, expected)
        self.assertIn("not with both", self.unusable("d.csv", "-c", COMMAND, "-f", "c.txt"))
        self.assertIn("there is no command", self.unusable("d.csv"))
        self.assertIn("cannot be both", self.unusable("-", "-f", "-"))
        for name, reason in (("none.txt", "No such file"), (".", "directory"), ("", "names no file")):
            self.assertIn(reason, self.unusable("d.csv", "-f", name))

    def test_a_long_command_file(self):
        comment = b"# " + b"x" * 98 + b"\n"
        self.write("long.txt", comment * (64 * (1 << 20) // 101 - 1) + COMMAND.encode())
        self.run_program("d.csv", "-f", "long.txt")
        self.write("longer.txt", comment * (65 * (1 << 20) // 101))
        self.assertIn("64 MiB", self.unusable("d.csv", "-f", "longer.txt"))

    def test_exit_status_of_several_commands(self):
        good, bad = COMMAND + "\n", "PROPORTIONS /ONESAMPLE nobody.\n"
        for text, status, written in ((good + good, 0, True), (good + bad, 1, True), (bad + good, 1, True), (bad + bad, 1, False)):
            self.run_program("d.csv", "-f", "-", "-o", "o.json", stdin=text.encode(), status=status)
            self.assertEqual((self.folder / "o.json").exists(), written)
            if written:
                self.assertEqual(len(json.loads((self.folder / "o.json").read_text())["procedures"]), 2)
                os.unlink(self.folder / "o.json")


class OrderOfStrings(CommandLine):
    COMMAND = "PROPORTIONS /ONESAMPLE v /SUCCESS VALUE=LAST."

    def success(self, *arguments, **environment):
        done = subprocess.run([PROGRAM, "o.csv", "-c", self.COMMAND, "--format", "json", *arguments], cwd=self.folder,
                              env={"PATH": os.environ["PATH"], **environment}, capture_output=True, check=True)
        found = json.loads(done.stdout)["procedures"][0]["tables"][0]
        return found["dimensions"][0]["categories"][0]["label"]

    def test_the_environment_never_matters(self):
        self.write("o.csv", "v\nzebra\n\u00f6l\nApfel\n")
        for locale in ("C", "sv_SE.UTF-8", "de_DE", ""):
            for name in ("LC_ALL", "LC_COLLATE", "LANG", "LANGUAGE"):
                self.assertEqual(self.success(**{name: locale}), "v = zebra")

    def test_a_language(self):
        self.write("o.csv", "v\nzebra\n\u00f6l\nApfel\n")
        self.assertEqual(self.success("--locale", "sv"), "v = \u00f6l")
        self.assertEqual(self.success("--locale", "de-DE"), "v = zebra")
        self.assertEqual(self.success("--locale", "und"), "v = zebra")

    def test_capitals_are_no_realm_of_their_own(self):
        self.write("o.csv", "v\na\nB\n")
        self.assertEqual(self.success(), "v = B")

    def test_split_groups(self):
        self.write("g.csv", "x,g\n" + "".join(f"{i},{g}\n" for g in ("zebra", "\u00f6l", "Apfel") for i in (0, 1)))

        def groups(*arguments):
            found = self.procedure(COMMAND, "g.csv", "--split", "g", *arguments)["tables"][0]
            return [c["label"] for c in found["dimensions"][0]["categories"]]
        self.assertEqual(groups(), ["Apfel", "\u00f6l", "zebra"])
        self.assertEqual(groups("--locale", "sv"), ["Apfel", "zebra", "\u00f6l"])

    def test_wrong_tags(self):
        self.write("o.csv", "v\na\nb\n")
        for tag in ("", "de_DE", "C", "sv_SE.UTF-8", "tlh", "xx", "de-", "x-own", "de-u-co-nosuch"):
            said = self.unusable("o.csv", "-c", self.COMMAND, "--locale", tag)
            self.assertIn("--locale", said)
            self.assertIn(f"'{tag}'", said)


class Help(CommandLine):
    def help(self, *topic):
        return self.run_program("--help", *topic).stdout.decode()

    def test_fits_a_terminal(self):
        for topic in ([], ["methods"], ["success"], ["ONESAMPLE"], ["WILSON_SCORE"], ["CILEVEL"], ["PROPORTIONS"]):
            for line in self.help(*topic).splitlines():
                if not line.startswith("      "):  # examples keep their lines
                    self.assertLessEqual(len(line), 80, line)

    def test_every_option_is_told(self):
        text = self.help()
        for option in re.findall(r'"(--[a-z-]+|-[a-z],--[a-z]+)"', (ROOT / "workbench/cli/options.cpp").read_text()):
            for name in option.split(","):
                self.assertRegex(text, rf"(^|[ ,]){name}[ ,]", option)

    def test_wherever_it_stands(self):
        for arguments in (["--help"], ["-h"], ["d.csv", "--help"], ["--weight", "w", "--help"], ["--help", "-c", COMMAND]):
            self.assertEqual(self.run_program(*arguments).stdout.decode(), self.help())
        self.assertRegex(self.run_program("--version").stdout.decode(), r"^proportions \d+\.\d+\.\d+\n$")

    def test_methods(self):
        text = self.help("methods")
        for keyword in ("AGRESTI_COULL", "WILSON_SCORECC", "MCNEMAR", "BONETT_PRICE", "BROWN_LI_JEFFREYS", "WALDH0CC"):
            self.assertIn(keyword, text)

    def test_topics(self):
        for topic, expected in (("success", "LAST"), ("onesample", "TESTVAL"), ("PairedSamples", "WITH"), ("citypes", "CITYPES"), ("cilevel", "percent"),
                                ("listwise", "LISTWISE"), ("missing", "USERMISSING"), ("wilson_score", "Wilson (1927)"), ("mcnemar", "McNemar (1947)"),
                                ("cutpoint", "CUTPOINT"), ("with", "WITH")):
            self.assertIn(expected, self.help(topic), topic)

    def test_a_method_of_several_designs(self):
        text = self.help("WALD")
        for design in ("ONESAMPLE", "PAIREDSAMPLES", "INDEPENDENTSAMPLES"):
            self.assertIn(f"WALD, interval of {design}", text)

    def test_unknown_topics(self):
        self.assertIn("did you mean WILSON_SCORE?", self.unusable("--help", "wilson_scroe"))
        self.assertIn("topics are methods", self.unusable("--help", "qqqqqqqq"))

    def test_a_full_disk(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(subprocess.run([PROGRAM, "--help"], stdout=full, stderr=subprocess.DEVNULL).returncode, 2)

    def test_a_delimiter_is_one_character_or_tab(self):
        self.write("d.csv", "x;y\n1;0\n")
        for sign in ("", ";;", "tabs"):
            self.assertIn("--delimiter is one character, or tab",
                          self.unusable("d.csv", "--delimiter", sign, "-c", "PROPORTIONS /ONESAMPLE x."))


if __name__ == "__main__":
    unittest.main()
