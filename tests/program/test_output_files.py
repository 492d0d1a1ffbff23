"""Formats, files and streams that results go to."""

import csv
import io
import json
import os
import pathlib
import resource
import signal
import subprocess

from program import PROGRAM, ProgramTest

COMMAND = "PROPORTIONS /ONESAMPLE x TESTVAL=0.3 CITYPES=ALL TESTTYPES=ALL."


class OutputFiles(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "x\n1\n0\n1\n")

    def test_format_from_the_ending(self):
        for name, start in (("o.txt", "Proportions"), ("o.md", "## Proportions"), ("o.json", '{"schema":"proportions-output/1"'), ("o.csv", "command,design,table,"),
                            ("o.html", "<!DOCTYPE html>")):
            self.run_program("d.csv", "-c", COMMAND, "-o", name)
            self.assertTrue((self.folder / name).read_text().startswith(start), name)

    def test_no_file_for_a_refused_command(self):
        done = self.run_program("d.csv", "-c", "PROPORTIONS /ONESAMPLE nobody.", "-o", "o.json", status=1)
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.csv"])
        self.assertIn(b"nobody", done.stderr)

    def test_unwritable(self):
        for path in (".", "no/such/folder.txt", "/proc/none.txt"):
            self.unusable("d.csv", "-c", COMMAND, "-o", path)

    def test_full_disk(self):
        if not pathlib.Path("/dev/full").exists():
            self.skipTest("no /dev/full on this system")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "d.csv", "-c", COMMAND], cwd=self.folder, stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"cannot be written", done.stderr)

    def test_file_that_may_not_grow(self):
        """As on a full disk: the reason is told, and neither a half-written file nor the old one's loss remains."""
        self.write("g.csv", "g,x\n" + "".join(f"{i % 500},{i % 2}\n" for i in range(5000)))
        self.write("old.txt", "as it was")

        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))
        for target in ("new.txt", "old.txt"):
            done = subprocess.run([PROGRAM, "g.csv", "--split", "g", "-c", COMMAND, "-o", target], cwd=self.folder,
                                  stderr=subprocess.PIPE, preexec_fn=limit)
            self.assertEqual(done.returncode, 2)
            self.assertIn(f"{target} cannot be written", done.stderr.decode())
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.csv", "g.csv", "old.txt"])
        self.assertEqual((self.folder / "old.txt").read_text(), "as it was")

    def test_closed_pipe_is_a_quiet_end(self):
        done = subprocess.run(f"'{PROGRAM}' d.csv -c '{COMMAND}' | head -c 1", shell=True, cwd=self.folder, capture_output=True)
        self.assertEqual((len(done.stdout), done.stderr), (1, b""))

    def test_a_pipe_that_was_named_must_take_it_all(self):
        reader, pipe = os.pipe()
        os.close(reader)
        done = subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", f"/dev/fd/{pipe}"], cwd=self.folder,
                              capture_output=True, pass_fds=(pipe,))
        os.close(pipe)
        self.assertEqual(done.returncode, 2)
        self.assertIn("cannot be written: Broken pipe", done.stderr.decode())

    def test_formulas_are_defused_in_csv(self):
        self.write("f.csv", "\"=HYPERLINK(1)\",x\n1,1\n0,1\n")
        done = self.run_program("f.csv", "-c", "PROPORTIONS /ONESAMPLE ALL.", "--format", "csv")
        rows = list(csv.DictReader(io.StringIO(done.stdout.decode())))
        self.assertIn("'=HYPERLINK(1)", {row["variable"] for row in rows})
        for row in rows:
            self.assertFalse([field for field in row.values() if field.startswith("=")], row)

    def test_hostile_names(self):
        name = "a\x1b[31m|<b>&*_`\u202e\U0001f600"
        self.write("n.csv", f"\"{name}\",x\n1,1\n0,1\n")
        for fmt in ("text", "markdown", "json", "csv"):
            out = self.run_program("n.csv", "-c", "PROPORTIONS /ONESAMPLE ALL.", "--format", fmt).stdout.decode()
            if fmt in ("text", "markdown"):
                self.assertNotIn("\x1b", out)
                self.assertNotIn("\u202e", out)
            if fmt == "markdown":
                self.assertNotIn("<b>", out)
            if fmt == "json":
                json.loads(out)

    def test_values_read_back(self):
        out = self.run_program("d.csv", "-c", COMMAND, "--format", "json").stdout.decode()
        for cell in json.loads(out)["procedures"][0]["tables"][0]["cells"]:
            if isinstance(cell["value"], float):
                self.assertIn(repr(cell["value"]), out.replace("e+", "e"))

    def interrupted(self, sent, **popen):
        """The exit status of a program that a signal reaches while it waits for its data."""
        feeder = subprocess.Popen([PROGRAM, "-", "-c", COMMAND, "-o", "o.txt"], cwd=self.folder,
                                  stdin=subprocess.PIPE, stderr=subprocess.PIPE, **popen)
        feeder.stdin.write(b"x\n" + b"1\n" * 1000)
        feeder.stdin.flush()
        try:
            feeder.wait(timeout=1)
        except subprocess.TimeoutExpired:
            pass
        feeder.send_signal(sent)
        feeder.stdin.close()
        feeder.wait(timeout=30)
        feeder.stderr.close()
        return feeder.returncode

    def test_interruption_leaves_nothing(self):
        for sent in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGXCPU):
            with self.subTest(sent):
                self.assertNotEqual(self.interrupted(sent), 0)
                self.assertEqual(sorted(os.listdir(self.folder)), ["d.csv"])

    def test_ignored_signals_stay_ignored(self):
        done = self.interrupted(signal.SIGHUP, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.assertEqual(done, 0)
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.csv", "o.txt"])
