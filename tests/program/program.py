"""Runs the built program in a folder of its own."""

import json
import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["PROPORTIONS"]

# Shells ignore some signals for what they run in the background; the program would inherit that, and
# leave them ignored. Of a handler it inherits nothing.
for ignored in (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT):
    if signal.getsignal(ignored) is signal.SIG_IGN:
        signal.signal(ignored, lambda *_: None)


class ProgramTest(unittest.TestCase):
    """Each test has an empty folder, which is the program's working folder."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def write(self, name, content):
        data = content if isinstance(content, bytes) else content.encode()
        (self.folder / name).write_bytes(data)
        return name

    def schema(self, name, *fields, **others):
        return self.write(name, json.dumps({"fields": list(fields), **others}))

    def run_program(self, *arguments, stdin=b"", status=0):
        """The finished process; its exit status is checked."""
        done = subprocess.run([PROGRAM, *arguments], cwd=self.folder, input=stdin,
                              capture_output=True, timeout=120)
        self.assertEqual(done.returncode, status,
                         f"{arguments}\n{done.stdout.decode()[:3000]}\n{done.stderr.decode()[:3000]}")
        return done

    def run_json(self, command, *arguments, status=0, stdin=b""):
        """The procedures of one run."""
        done = self.run_program(*arguments, "-c", command, "--format", "json", status=status, stdin=stdin)
        return json.loads(done.stdout)["procedures"]

    def procedure(self, command, *arguments, status=0, stdin=b""):
        return self.run_json(command, *arguments, status=status, stdin=stdin)[0]

    def refused(self, command, data="d.csv", arguments=()):
        """The one error of a command that is refused."""
        procedure = self.procedure(command, data, *arguments, status=1)
        self.assertEqual(procedure["status"], "failed")
        self.assertEqual(procedure["tables"], [])
        errors = [m for m in procedure["messages"] if m["severity"] == "error"]
        self.assertEqual(len(errors), 1, errors)
        self.assertEqual(errors[0]["level"], 3)
        return errors[0]

    def unusable(self, *arguments, stdin=b""):
        """What the program says when it cannot begin; nothing goes to standard output."""
        done = self.run_program(*arguments, stdin=stdin, status=2)
        self.assertEqual(done.stdout, b"")
        return done.stderr.decode()


def table(procedure, title):
    """The first table whose title contains a text."""
    return next(t for t in procedure["tables"] if title in t["title"])


def cells(a_table):
    """(path of labels, dimension by dimension) to value, for all cells of a table."""
    order = [d["name"] for d in a_table["dimensions"]]
    return {tuple(tuple(cell["at"].get(name, ())) for name in order): cell["value"] for cell in a_table["cells"]}


def value(procedure, title, *labels):
    """The one value of a table whose path holds all these labels."""
    found = [v for path, v in cells(table(procedure, title)).items()
             if all(any(label in part for part in path) for label in labels)]
    if len(found) != 1:
        raise AssertionError(f"{labels}: {len(found)} cells in {title}")
    return found[0]


def keys(procedure, severity=None):
    """Keys of the messages, in order."""
    return [m["key"] for m in procedure["messages"] if severity in (None, m["severity"])]
