"""The line that tells what a run is at, and how far."""

import os
import pty
import re
import subprocess
import time

from program import PROGRAM, ProgramTest

COMMAND = "PROPORTIONS /ONESAMPLE a."
CASES = 150_000


class Progress(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "a,g,w\n" + "".join(f"{i % 2},{i % 3},{i % 97}\n" for i in range(CASES)))

    def lines(self, *arguments):
        """What the line showed, one after the other, as (phase, number, unit)."""
        told = self.run_program(*arguments, "--progress", "always", "-o", "out.txt").stderr.decode()
        # It is taken away before anything else is told.
        shown, _, _ = told.partition("\r\x1b[K")
        shown = [text.removesuffix("\x1b[K") for text in shown.split("\r") if text]
        return [re.fullmatch(r"([a-z, ]+): +([0-9]+) (%|rows|samples|s)", text).groups() for text in shown]

    def phases(self, *arguments):
        names = [phase for phase, _, _ in self.lines(*arguments)]
        return [name for at, name in enumerate(names) if at == 0 or names[at - 1] != name]

    def test_reading_and_the_passes_are_named_in_their_order(self):
        for options in ((), ("--split", "g"), ("--collapse", "never"), ("--weight", "w")):
            self.assertEqual(self.phases("d.csv", "-c", COMMAND, *options), ["reading", "first pass", "second pass"], options)

    def test_each_phase_has_percentages_of_its_own(self):
        before = {}
        for phase, number, unit in self.lines("d.csv", "-c", COMMAND, "--collapse", "never"):
            self.assertEqual(unit, "%")
            self.assertLessEqual(before.get(phase, 0), int(number))
            self.assertLessEqual(int(number), 100)
            before[phase] = int(number)

    def test_passes_begin_anew_with_each_command(self):
        self.assertEqual(self.phases("d.csv", "-c", COMMAND + "\n" + COMMAND),
                         ["reading", "first pass", "second pass", "first pass", "second pass"])

    def test_samples_are_counted(self):
        lines = self.lines("d.csv", "-c", COMMAND, "--bootstrap", "150", "--seed", "1")
        names = list(dict.fromkeys(phase for phase, _, _ in lines))
        self.assertEqual(names, ["reading", "first pass", "second pass", "further pass", "bootstrap, leaving cases out",
                                 "bootstrap samples"])
        self.assertEqual([line[2] for line in lines if line[0] == "bootstrap samples"][0], "%")

    def test_imputations_take_a_pass_of_their_own(self):
        self.write("i.csv", "a,Imputation_\n" + "".join(f"{i % 2},{i % 4}\n" for i in range(400)))
        self.assertEqual(self.phases("i.csv", "-c", COMMAND, "--split", "Imputation_"),
                         ["reading", "first pass", "second pass", "further pass"])

    def test_records_of_json_are_looked_through_for_names(self):
        self.write("d.jsonl", "".join(f'{{"a": {i % 2}}}\n' for i in range(5000)))
        lines = self.lines("d.jsonl", "-c", COMMAND)
        self.assertEqual(lines[0][0], "looking for names")
        self.assertEqual(lines[0][2], "rows")
        self.assertIn("reading", [line[0] for line in lines])

    def test_the_list_of_variables_takes_one_pass(self):
        self.assertEqual(self.phases("d.csv", "--list"), ["reading", "first pass"])

    def test_nothing_is_shown_unasked(self):
        for arguments in ((), ("--progress", "auto"), ("--progress", "never")):
            self.assertEqual(self.run_program("d.csv", "-c", COMMAND, *arguments).stderr, b"")

    def on_a_terminal(self, seconds, *arguments):
        """What standard error shows when it is a terminal, and the data come in two halves."""
        terminal, program_side = pty.openpty()
        running = subprocess.Popen([PROGRAM, "-", "-c", COMMAND, *arguments], stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=program_side)
        os.close(program_side)
        running.stdin.write(b"a\n" + b"1\n" * 1000)
        running.stdin.flush()
        time.sleep(seconds)
        running.stdin.write(b"0\n" * 1000)
        running.stdin.close()
        told = b""
        try:
            while more := os.read(terminal, 10000):
                told += more
        except OSError:
            pass  # the terminal is closed at the other end
        os.close(terminal)
        self.assertEqual(running.wait(timeout=60), 0)
        return told

    def test_a_terminal_is_told_after_a_second(self):
        told = self.on_a_terminal(1.5)
        self.assertIn(b"first pass:", told)
        self.assertTrue(told.endswith(b"\r\x1b[K"), told)
        self.assertEqual(self.on_a_terminal(1.5, "--progress", "never"), b"")
        self.assertEqual(self.on_a_terminal(0), b"")
