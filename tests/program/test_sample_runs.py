"""Small runs whose whole output is known. "…" stands for a text that the catalogue or the formats decide."""

import json
import pathlib
import shutil

from program import ProgramTest

RUNS = pathlib.Path(__file__).parent / "sample_runs"


class SampleRuns(ProgramTest):
    def check_run(self, name):
        run = RUNS / name
        for file in ("data.csv", "data.schema.json"):
            shutil.copy(run / file, self.folder / file)
        wanted = json.loads((run / "output.json").read_text())["procedures"]
        status = 1 if any(p["status"] == "failed" for p in wanted) else 0
        arguments = json.loads((run / "args.json").read_text())
        got = self.run_json((run / "command.txt").read_text().strip(), "data.csv", *arguments, status=status)
        self.assertEqual(len(got), len(wanted))
        for got_one, wanted_one in zip(got, wanted):
            self.check_procedure(got_one, wanted_one)

    def check_procedure(self, got, wanted):
        for field in ("title", "status"):
            self.assertEqual(got[field], wanted[field])
        self.assertEqual(got["command"].split(), wanted["command"].split())
        self.assertEqual([(n["section"], n["label"], n["key"]) for n in got["notes"]],
                         [(n["section"], n["label"], n["key"]) for n in wanted["notes"]])
        self.assertEqual([self.without_text(m) for m in got["messages"]],
                         [self.without_text(m) for m in wanted["messages"]])
        self.assertEqual([t["title"] for t in got["tables"]], [t["title"] for t in wanted["tables"]])
        for got_table, wanted_table in zip(got["tables"], wanted["tables"]):
            self.check_table(got_table, wanted_table)

    @staticmethod
    def without_text(message):
        return {key: part for key, part in message.items() if key != "text"}

    def check_table(self, got, wanted):
        self.assertEqual(got["split"], wanted["split"])
        self.assertEqual([(d["name"], d["axis"]) for d in got["dimensions"]],
                         [(d["name"], d["axis"]) for d in wanted["dimensions"]])
        # Labels are the catalogue's; categories correspond by their place and key.
        names = {}
        for got_dimension, wanted_dimension in zip(got["dimensions"], wanted["dimensions"]):
            paths = {}
            self.check_categories(got_dimension["categories"], wanted_dimension["categories"], (), (), paths)
            names[got_dimension["name"]] = paths
        self.assertEqual(len(got["cells"]), len(wanted["cells"]))
        cells = {self.place(cell["at"], names): cell for cell in got["cells"]}
        for cell in wanted["cells"]:
            self.check_cell(cells[self.place(cell["at"], None)], cell)

    def check_categories(self, got, wanted, got_path, wanted_path, paths):
        self.assertEqual([c["key"] for c in got], [c["key"] for c in wanted])
        for got_one, wanted_one in zip(got, wanted):
            if "..." not in wanted_one["label"]:
                self.assertEqual(got_one["label"], wanted_one["label"])
            self.assertEqual(got_one.get("notes"), wanted_one.get("notes"))
            here, there = got_path + (got_one["label"],), wanted_path + (wanted_one["label"],)
            paths[here] = there
            self.assertEqual("categories" in got_one, "categories" in wanted_one)
            self.check_categories(got_one.get("categories", []), wanted_one.get("categories", []), here, there, paths)

    @staticmethod
    def place(at, names):
        return frozenset((dimension, names[dimension][tuple(path)] if names else tuple(path))
                         for dimension, path in at.items())

    def check_cell(self, got, wanted):
        self.assertEqual(got.get("notes"), wanted.get("notes"))
        if isinstance(wanted["value"], (int, float)):
            self.assertAlmostEqual(got["value"], wanted["value"], delta=1e-12 * max(1, abs(wanted["value"])))
        else:
            self.assertEqual(got["value"], wanted["value"])
        self.assertIn("text", got)


def add_run(name):
    setattr(SampleRuns, "test_" + name.replace("-", "_"), lambda self: self.check_run(name))


for folder in sorted(RUNS.iterdir()):
    add_run(folder.name)
