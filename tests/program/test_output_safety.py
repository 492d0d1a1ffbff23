"""Results never endanger what is the user's: whatever -o names, whatever ends the program."""

import gzip
import os
import pathlib
import signal
import stat
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest

COMMAND = "PROPORTIONS /ONESAMPLE x."
AS_ROOT = os.geteuid() == 0


class OutputSafety(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "x\n1\n0\n1\n")
        self.path = lambda name: self.folder / name

    def everything(self):
        """Names and contents of all files of the folder."""
        return {p.name: p.read_bytes() for p in sorted(self.folder.iterdir()) if p.is_file()}

    def refused_output(self, output, *arguments, stdin=b""):
        """What the program says when it refuses an output; nothing has changed then."""
        before = self.everything()
        done = subprocess.run([PROGRAM, *arguments, "-o", output], cwd=self.folder, input=stdin, capture_output=True)
        self.assertEqual((done.returncode, done.stdout), (2, b""), done.stderr)
        self.assertEqual(self.everything(), before)
        return done.stderr.decode()


class Inputs(OutputSafety):
    def test_the_data_by_any_name(self):
        os.symlink("d.csv", self.path("symbolic.csv"))
        os.link(self.path("d.csv"), self.path("hard.csv"))
        os.mkdir(self.path("sub"))
        for name in ("d.csv", "./d.csv", "sub/../d.csv", str(self.path("d.csv")), "symbolic.csv", "hard.csv"):
            with self.subTest(name):
                said = self.refused_output(name, "d.csv", "-c", COMMAND)
                self.assertIn("the data file d.csv", said)
                self.assertIn("another file", said)

    def test_the_data_named_by_a_link(self):
        os.symlink("d.csv", self.path("symbolic.csv"))
        self.assertIn("symbolic.csv", self.refused_output("d.csv", "symbolic.csv", "-c", COMMAND))

    def test_a_file_of_a_folder_or_a_pattern(self):
        os.mkdir(self.path("all"))
        for name in ("a.csv", "b.csv"):
            self.write(f"all/{name}", "x\n1\n0\n")
        for data in ("all", "all/*.csv"):
            said = self.refused_output("all/b.csv", data, "-c", COMMAND)
            self.assertIn("all/b.csv", said)
            self.assertEqual(self.path("all/b.csv").read_text(), "x\n1\n0\n")

    def test_the_dictionary(self):
        self.schema("d.schema.json", {"name": "x", "type": "integer"})
        self.assertIn("the dictionary", self.refused_output("d.schema.json", "d.csv", "-c", COMMAND))
        os.rename(self.path("d.schema.json"), self.path("other.json"))
        self.assertIn("the dictionary", self.refused_output("other.json", "d.csv", "-c", COMMAND, "--schema", "other.json"))

    def test_the_command_file(self):
        self.write("c.txt", COMMAND)
        self.assertIn("the command file", self.refused_output("c.txt", "d.csv", "-f", "c.txt"))

    def test_standard_input(self):
        before = self.everything()
        for arguments in (["-", "-c", COMMAND], ["-", "-c", COMMAND, "--format", "json"]):
            with open(self.path("d.csv"), "rb") as data:
                done = subprocess.run([PROGRAM, *arguments, "-o", "d.csv"], cwd=self.folder, stdin=data, capture_output=True)
            self.assertEqual(done.returncode, 2)
            self.assertIn(b"standard input", done.stderr)
            self.assertEqual(self.everything(), before)

    def test_standard_output_appended_to_the_data(self):
        before = self.everything()
        for output in ([], ["-o", "-"], ["-o", "/dev/stdout"], ["-o", "/dev/fd/1"]):
            with open(self.path("d.csv"), "ab") as data:
                done = subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, *output], cwd=self.folder, stdout=data, stderr=subprocess.PIPE)
            self.assertEqual(done.returncode, 2, output)
            self.assertEqual(self.everything(), before)


class Names(OutputSafety):
    def test_no_name(self):
        self.assertIn("-o names no file", self.refused_output("", "d.csv", "-c", COMMAND))

    def test_a_dash_is_standard_output(self):
        done = self.run_program("d.csv", "-c", COMMAND, "-o", "-")
        self.assertEqual(done.stdout, self.run_program("d.csv", "-c", COMMAND).stdout)
        self.assertEqual(os.listdir(self.folder), ["d.csv"])

    def test_an_unknown_ending(self):
        for name in ("result.xlsx", "result.", "result.htm", "result.json.gz", "result.markdown"):
            said = self.refused_output(name, "d.csv", "-c", COMMAND)
            for ending in (".txt", ".md", ".json", ".csv", "--format"):
                self.assertIn(ending, said)
        self.run_program("d.csv", "-c", COMMAND, "-o", "result.xlsx", "--format", "text")
        self.assertTrue(self.path("result.xlsx").read_text().startswith("Proportions"))

    def test_no_ending_is_text(self):
        os.mkdir(self.path("v1.2"))
        for name in ("result", "v1.2/result", ".result"):
            self.run_program("d.csv", "-c", COMMAND, "-o", name)
            self.assertTrue(self.path(name).read_text().startswith("Proportions"), name)


class Descriptors(OutputSafety):
    def setUp(self):
        super().setUp()
        self.expected = self.run_program("d.csv", "-c", COMMAND).stdout

    def test_standard_output_by_name(self):
        link = os.readlink("/dev/stdout")
        os.symlink("/dev/stdout", self.path("out.txt"))
        for name in ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1", "out.txt"):
            with self.subTest(name):
                with open(self.path("o"), "wb") as out:
                    subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", name], cwd=self.folder, stdout=out, check=True)
                self.assertEqual(self.path("o").read_bytes(), self.expected)
                self.assertEqual(os.readlink("/dev/stdout"), link)
        self.assertTrue(self.path("out.txt").is_symlink())

    def test_what_is_appended_to_stays(self):
        self.write("o", "before\n")
        with open(self.path("o"), "ab") as out:
            subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", "/dev/stdout"], cwd=self.folder, stdout=out, check=True)
        self.assertEqual(self.path("o").read_bytes(), b"before\n" + self.expected)

    def test_any_open_descriptor(self):
        with open(self.path("o"), "wb") as out:
            subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", f"/dev/fd/{out.fileno()}"], cwd=self.folder,
                           pass_fds=[out.fileno()], check=True)
        self.assertEqual(self.path("o").read_bytes(), self.expected)
        self.assertIn("cannot be written", self.unusable("d.csv", "-c", COMMAND, "-o", "/dev/fd/77"))
        with open(self.path("o"), "rb") as unwritable:
            done = subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", f"/dev/fd/{unwritable.fileno()}"], cwd=self.folder,
                                  pass_fds=[unwritable.fileno()], capture_output=True)
        self.assertEqual(done.returncode, 2)

    def test_a_named_pipe(self):
        os.mkfifo(self.path("pipe.txt"))
        reader = subprocess.Popen(["cat", "pipe.txt"], cwd=self.folder, stdout=subprocess.PIPE)
        self.run_program("d.csv", "-c", COMMAND, "-o", "pipe.txt")
        self.assertEqual(reader.communicate(timeout=30)[0], self.expected)
        self.assertTrue(stat.S_ISFIFO(os.stat(self.path("pipe.txt")).st_mode))

    def test_devices(self):
        self.run_program("d.csv", "-c", COMMAND, "-o", "/dev/null")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode))
        self.assertIn("No space left", self.unusable("d.csv", "-c", COMMAND, "-o", "/dev/full"))

    def test_a_closed_standard_output_gets_nothing_else(self):
        """What is opened later must not stand where standard output was."""
        for arguments in (["d.csv"], ["d.csv", "--query", "FROM data"]):
            done = subprocess.run([PROGRAM, *arguments, "-c", COMMAND], cwd=self.folder, stderr=subprocess.PIPE,
                                  preexec_fn=lambda: os.close(1))
            self.assertEqual(done.returncode, 2)
            self.assertIn(b"cannot be written", done.stderr)


class Replacement(OutputSafety):
    def setUp(self):
        super().setUp()
        self.expected = self.run_program("d.csv", "-c", COMMAND).stdout

    def run_into(self, name, **popen):
        subprocess.run([PROGRAM, "d.csv", "-c", COMMAND, "-o", name], cwd=self.folder, check=True, **popen)
        self.assertEqual(self.path(name).read_bytes(), self.expected)
        self.assertFalse([n for n in os.listdir(self.folder) if n.startswith(".")])

    def test_a_new_file_has_the_rights_of_new_files(self):
        self.run_into("o.txt", preexec_fn=lambda: os.umask(0o027))
        self.assertEqual(stat.S_IMODE(os.stat(self.path("o.txt")).st_mode), 0o640)

    def test_the_mode_stays(self):
        for mode in (0o600, 0o640, 0o755, 0o222 | 0o444):
            self.write("o.txt", "a much longer old text than the new one " * 1000)
            os.chmod(self.path("o.txt"), mode)
            self.run_into("o.txt")
            self.assertEqual(stat.S_IMODE(os.stat(self.path("o.txt")).st_mode), mode)

    @unittest.skipUnless(AS_ROOT, "only the superuser gives files away")
    def test_the_owner_stays(self):
        self.write("o.txt", "old")
        os.chown(self.path("o.txt"), 12345, 23456)
        self.run_into("o.txt")
        status = os.stat(self.path("o.txt"))
        self.assertEqual((status.st_uid, status.st_gid), (12345, 23456))

    @unittest.skipUnless(AS_ROOT, "needs two users")
    def test_the_file_of_another_user_stays_his(self):
        """Who may write a file, though not give one away, writes into it."""
        os.chmod(self.folder, 0o777)
        self.write("o.txt", "a longer old text " * 1000)
        os.chmod(self.path("o.txt"), 0o666)
        self.run_into("o.txt", user=65534, group=65534)
        self.assertEqual(os.stat(self.path("o.txt")).st_uid, 0)

    @unittest.skipUnless(AS_ROOT, "needs two users")
    def test_a_file_in_a_folder_that_may_not_be_written(self):
        os.chmod(self.folder, 0o755)
        self.write("o.txt", "old")
        os.chmod(self.path("o.txt"), 0o666)
        self.run_into("o.txt", user=65534, group=65534)

    def test_links_are_written_through(self):
        os.mkdir(self.path("there"))
        self.write("there/target.txt", "old")
        os.symlink("there/target.txt", self.path("link.txt"))
        os.symlink("link.txt", self.path("link2.txt"))
        os.symlink("there/new.txt", self.path("dangling.txt"))
        for name in ("link.txt", "link2.txt", "dangling.txt"):
            self.run_into(name)
            self.assertTrue(self.path(name).is_symlink())
        self.assertEqual(sorted(os.listdir(self.path("there"))), ["new.txt", "target.txt"])

    def test_a_circle_of_links(self):
        os.symlink("b.txt", self.path("a.txt"))
        os.symlink("a.txt", self.path("b.txt"))
        self.refused_output("a.txt", "d.csv", "-c", COMMAND)

    def test_hard_links_stay_one_file(self):
        for old in ("old", "a longer old text " * 10000):
            self.write("o.txt", old)
            os.link(self.path("o.txt"), self.path("other.txt"))
            self.run_into("o.txt")
            self.assertEqual(self.path("other.txt").read_bytes(), self.expected)
            self.assertTrue(os.path.samefile(self.path("o.txt"), self.path("other.txt")))
            os.unlink(self.path("other.txt"))

    def test_a_read_only_file_stays(self):
        self.write("o.txt", "keep me")
        os.chmod(self.path("o.txt"), 0o444)
        self.assertIn("read-only", self.refused_output("o.txt", "d.csv", "-c", COMMAND))
        self.assertEqual(stat.S_IMODE(os.stat(self.path("o.txt")).st_mode), 0o444)


class StandardError(OutputSafety):
    HOSTILE = "a\x1b[31m\u202eb\x07"

    def assert_safe(self, done):
        said = done.stderr.decode()
        self.assertIn("\\u001B[31m\\u202Eb\\u0007", said)
        for character in "\x1b\x07\u202e":
            self.assertNotIn(character, said)

    def test_names_of_files_and_options(self):
        self.assert_safe(self.run_program(self.HOSTILE + ".csv", "-c", COMMAND, status=2))
        self.assert_safe(self.run_program("d.csv", "-f", self.HOSTILE, status=2))
        self.assert_safe(self.run_program("d.csv", "-c", COMMAND, "--" + self.HOSTILE, status=2))
        self.assert_safe(self.run_program("d.csv", "-c", COMMAND, "-o", f"none/{self.HOSTILE}", status=2))
        self.assert_safe(self.run_program("d.csv", "-c", COMMAND, "--weight", self.HOSTILE, status=2))

    def test_data(self):
        self.write("h.csv", f"x,\"{self.HOSTILE}\"\n1,1\n0,0\n")
        self.assert_safe(self.run_program("h.csv", "-c", f"PROPORTIONS /ONESAMPLE \"{self.HOSTILE}\" TESTVAL=2.", "-o", "o.txt", status=1))

    def test_the_command(self):
        self.assert_safe(self.run_program("d.csv", "-c", f"PROPORTIONS /ONESAMPLE '{self.HOSTILE}'.", status=1))

    def test_bytes_that_are_not_text(self):
        done = subprocess.run([PROGRAM, b"\xff\x9b1m.csv", "-c", COMMAND], cwd=self.folder, capture_output=True)
        self.assertEqual(done.returncode, 2)
        done.stderr.decode()


class Signals(OutputSafety):
    """At once, whatever the program waits for or does, without a trace."""

    def setUp(self):
        super().setUp()
        os.mkdir(self.path("tmp"))

    def end(self, arguments, sent=signal.SIGTERM, after=0.7, feed=b"", stdout=subprocess.DEVNULL):
        before = sorted(os.listdir(self.folder))
        program = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdin=subprocess.PIPE, stdout=stdout,
                                   stderr=subprocess.PIPE, env={**os.environ, "TMPDIR": str(self.path("tmp"))})
        program.stdin.write(feed)
        program.stdin.flush()
        time.sleep(after)
        self.assertIsNone(program.poll(), "the program ended before the signal came")
        program.send_signal(sent)
        begun = time.monotonic()
        program.wait(timeout=30)
        took = time.monotonic() - begun
        said = program.stderr.read().decode()
        program.stdin.close()
        program.stderr.close()
        self.assertEqual((program.returncode, said), (2, "proportions: interrupted\n"))
        self.assertLess(took, 2)
        self.assertEqual(sorted(os.listdir(self.folder)), before)
        self.assertEqual(os.listdir(self.path("tmp")), [])

    def test_waiting_for_standard_input(self):
        for sent in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGXCPU):
            with self.subTest(sent):
                self.end(["-", "-c", COMMAND, "-o", "o.txt"], sent)
        self.end(["-", "-c", COMMAND], feed=b"x\n1\n" + b"0\n" * 200000)

    def test_waiting_for_the_command(self):
        self.end(["d.csv", "-f", "-"])

    def test_waiting_for_a_reader(self):
        os.mkfifo(self.path("pipe.txt"))
        self.end(["d.csv", "-c", COMMAND, "-o", "pipe.txt"])

    def test_checking_a_compressed_file(self):
        block = gzip.compress(b"1\n0\n" * (1 << 22), 9)  # 16 MiB in a few kB
        self.path("big.csv.gz").write_bytes(gzip.compress(b"x\n") + block * 150)
        self.end(["big.csv.gz", "-c", COMMAND])

    def test_reading_json(self):
        with open(self.path("big.json"), "wb") as out:
            out.write(b"[")
            for _ in range(60):
                out.write(b'{"x":1,"y":"abcdefgh"},{"x":0,"y":"hgfedcba"},' * 20000)
            out.write(b'{"x":1,"y":""}]')
        self.end(["big.json", "-c", COMMAND], after=0.4)

    def test_computing(self):
        names = [f"v{i}" for i in range(400)]
        self.write("wide.csv", ",".join(names) + "\n" + "".join(
            ",".join(str((i * j + i) % 7 % 2) for j in range(400)) + "\n" for i in range(60)))
        self.end(["wide.csv", "-c", "PROPORTIONS /PAIREDSAMPLES ALL TESTTYPES=ALL CITYPES=ALL.", "-o", "o.json"], after=1.5)


if __name__ == "__main__":
    unittest.main()
