"""JSON output is what docs/output.schema.json says."""

import copy
import json
import pathlib
import re

import jsonschema

from program import ProgramTest
from test_examples import OPTIONS, ROOT

SCHEMA = json.loads((ROOT / "docs" / "output.schema.json").read_text())
VALIDATOR = jsonschema.Draft202012Validator(SCHEMA)
RUNS = pathlib.Path(__file__).parent / "sample_runs"
GOLDEN = ROOT / "tests" / "workbench" / "render" / "golden"


class OutputSchema(ProgramTest):
    def check(self, document):
        errors = [f"{'/'.join(map(str, e.absolute_path))}: {e.message[:300]}" for e in VALIDATOR.iter_errors(document)]
        self.assertEqual(errors, [])

    def output(self, *arguments, status=0):
        return json.loads(self.run_program(*arguments, "--format", "json", status=status).stdout)

    def test_the_schema_is_one(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_every_example(self):
        for command in sorted((ROOT / "examples").glob("*.txt")):
            with self.subTest(command.stem):
                self.check(self.output(str(command.with_suffix(".csv")), "-f", str(command), *OPTIONS.get(command.stem, [])))

    def test_every_sample_run(self):
        for run in sorted(RUNS.iterdir()):
            with self.subTest(run.name):
                arguments = json.loads((run / "args.json").read_text())
                wanted = json.loads((run / "output.json").read_text())["procedures"]
                status = 1 if any(p["status"] == "failed" for p in wanted) else 0
                self.check(self.output(str(run / "data.csv"), "-c", (run / "command.txt").read_text(), *arguments,
                                       status=status))

    def test_every_sample_document(self):
        files = sorted(GOLDEN.glob("*.json"))
        self.assertGreater(len(files), 5)
        for file in files:
            with self.subTest(file.stem):
                self.check(json.loads(file.read_text()))

    def test_every_member_is_described(self):
        described = set(re.findall(r"`(\w+)`", (ROOT / "docs" / "output.md").read_text()))

        def members(part):
            if isinstance(part, dict):
                for name, value in part.items():
                    if name == "properties":
                        yield from value
                    yield from members(value)
            elif isinstance(part, list):
                for value in part:
                    yield from members(value)

        self.assertEqual(set(members(SCHEMA)) - described, set())
        self.write("d.csv", "Imputation_,a,s\n0,1,1\n0,0,1\n1,1,1\n1,0,2\n2,1,1\n2,0,2\n")
        for extra in (("--bootstrap", "10", "--seed", "1"), ("--split", "Imputation_"), ("--split", "s")):
            text = self.run_program("d.csv", "-c", "ONESAMPLE a", "--format", "csv", *extra).stdout.decode()
            self.assertEqual(set(text.splitlines()[0].split(",")) - described, {extra[1]} & {"Imputation_", "s"}, extra)

    def test_what_it_does_not_say_is_refused(self):
        good = self.output(str(ROOT / "examples" / "peas.csv"), "-f", str(ROOT / "examples" / "peas.txt"))
        self.check(good)
        for path, value in (((), {"more": 1}), (("procedures", 0), {"status": "done"}),
                            (("procedures", 0, "tables", 0), {"cells": []}),
                            (("procedures", 0, "tables", 0, "cells", 0), {"value": "1"}),
                            (("procedures", 0, "tables", 0, "dimensions", 0), {"axis": "page"}),
                            (("procedures", 0, "tables", 0, "dimensions", 0, "categories", 0), {"values": [{}]})):
            bad = copy.deepcopy(good)
            target = bad
            for step in path:
                target = target[step]
            target.update(value)
            with self.subTest(value):
                self.assertFalse(VALIDATOR.is_valid(bad))
