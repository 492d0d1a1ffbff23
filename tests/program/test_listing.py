"""The variables of a data file: --list."""

import json
import unittest

from engine import execute
from program import ProgramTest


class Listing(ProgramTest):
    def listed(self, *arguments, stdin=b""):
        done = self.run_program(*arguments, "--list", "--format", "json", stdin=stdin)
        result = json.loads(done.stdout)
        self.assertEqual(sorted(result), ["schema", "variables"])
        self.assertEqual(result["schema"], "proportions-variables/1")
        for variable in result["variables"]:
            self.assertEqual(list(variable), ["name", "kind", "label", "values", "missing"])
        return {variable["name"]: variable for variable in result["variables"]}

    def counts(self, variable):
        return [(v["value"], v["count"]) for v in variable["values"]]

    def test_kinds_values_and_missing(self):
        self.write("d.csv", "n,b,d,t,dt,s,e\n"
                   "1,true,2024-01-31,12:30:00,2024-01-31 12:30:00,x,\n"
                   "2.5,false,2024-01-31,12:30:00,2024-01-31 12:30:00,y,\n"
                   ",true,2024-02-01,12:31:00,,,\n"
                   "1,true,2024-01-31,12:30:00,2024-01-31 12:30:00,x,\n")
        found = self.listed("d.csv")
        self.assertEqual({name: v["kind"] for name, v in found.items()},
                         {"n": "number", "b": "boolean", "d": "date", "t": "time", "dt": "datetime", "s": "string", "e": "number"})
        self.assertEqual((self.counts(found["n"]), found["n"]["missing"]), ([(1, 2), (2.5, 1)], 1))
        self.assertEqual(self.counts(found["b"]), [(0, 1), (1, 3)])
        self.assertEqual(self.counts(found["d"]), [("2024-01-31", 3), ("2024-02-01", 1)])
        self.assertEqual(self.counts(found["t"]), [("12:30:00", 3), ("12:31:00", 1)])
        self.assertEqual((self.counts(found["dt"]), found["dt"]["missing"]), ([("2024-01-31 12:30:00", 3)], 1))
        self.assertEqual((self.counts(found["s"]), found["s"]["missing"]), ([("x", 2), ("y", 1)], 1))
        self.assertEqual((self.counts(found["e"]), found["e"]["missing"]), ([], 4))

    def test_labels_and_user_missing_values(self):
        self.write("d.csv", "smoker\n1\n0\n9\n1\n")
        self.schema("d.schema.json", {"name": "smoker", "type": "integer", "title": "Current smoker",
                                      "categories": [{"value": 1, "label": "Yes"}], "missingValues": ["", "9"]})
        found = self.listed("d.csv")["smoker"]
        self.assertEqual((found["label"], found["missing"]), ("Current smoker", 1))
        self.assertEqual(found["values"], [{"value": 0, "label": None, "count": 1}, {"value": 1, "label": "Yes", "count": 2}])

    def test_twenty_values_at_most(self):
        rows = "".join(f"{(i * 7919) % 20011},k{(i * 31) % 9000}\n" for i in range(40000))
        self.write("d.csv", "n,s\n" + rows)
        found = self.listed("d.csv")
        numbers = [(i * 7919) % 20011 for i in range(40000)]
        self.assertEqual(self.counts(found["n"]), [(v, numbers.count(v)) for v in range(20)])
        texts = [f"k{(i * 31) % 9000}" for i in range(40000)]
        self.assertEqual(self.counts(found["s"]), [(v, texts.count(v)) for v in sorted(set(texts))[:20]])

    def test_collapsing_changes_nothing(self):
        self.write("d.csv", "x,y\n" + "".join(f"{i % 3},{i % 5}\n" for i in range(5000)))
        self.assertEqual(self.listed("d.csv", "--collapse", "always"), self.listed("d.csv", "--collapse", "never"))

    def test_counts_are_of_cases(self):
        self.write("d.csv", "x,w\n1,10\n0,0.1\n0,3\n")
        self.assertEqual(self.counts(self.listed("d.csv", "--weight", "w")["x"]), [(0, 2), (1, 1)])
        self.assertEqual(self.counts(self.listed("--counts", "81/263")["outcome"]), [(0, 182), (1, 81)])

    def test_as_text(self):
        self.write("d.csv", "smoker,\"a\x1bb\"\n1,x\n0,y\n,y\n")
        self.schema("d.schema.json", {"name": "smoker", "type": "integer", "title": "Current smoker",
                                      "categories": [{"value": 1, "label": "Yes"}]})
        self.assertEqual(self.run_program("d.csv", "--list").stdout.decode(),
                         "smoker: number, Current smoker; two values\n    0 (1), 1 Yes (1); missing (1)\n"
                         "a\\u001Bb: string; two values\n    'x' (1), 'y' (2)\n")

    def test_variables_that_cannot_be_used_say_why(self):
        self.write("d.jsonl", '{"a":1,"l":[1],"B":2}\n{"a":1,"b":3}\n')
        text = self.run_program("d.jsonl", "--list", "--width", "100").stdout.decode()
        self.assertEqual(text, "a: number\n    1 (2)\n"
                         "l: cannot be used\n    l holds lists or objects (line 1); take the part that is wanted with --query\n"
                         "B: cannot be used\n    the keys B and b (line 2) differ in the case of their letters alone; rename one\n"
                         "b: cannot be used\n    the keys B and b (line 2) differ in the case of their letters alone; rename one\n")
        execute([f"COPY (SELECT 5 AS n, 'x'::BLOB AS b, INTERVAL 3 DAY AS i) TO '{self.folder}/d.parquet'"])
        text = self.run_program("d.parquet", "--list").stdout.decode()
        self.assertIn("b: cannot be used\n    b holds lists, structures, bytes or intervals", text)
        self.assertIn("i: cannot be used\n", text)

    def test_into_a_file(self):
        self.write("d.csv", "x\n1\n")
        self.run_program("d.csv", "--list", "-o", "o.json")
        self.assertEqual(json.loads((self.folder / "o.json").read_text())["variables"][0]["name"], "x")

    def test_refusals(self):
        self.write("d.csv", "x\n1\n")
        self.assertIn("--list runs no command", self.unusable("d.csv", "--list", "-c", "PROPORTIONS /ONESAMPLE x."))
        self.assertIn("text or json", self.unusable("d.csv", "--list", "--format", "csv"))
        for option in (["--bootstrap", "10"], ["--seed", "1"], ["--plot"], ["--sentences"], ["--percent"], ["--digits", "3"]):
            self.assertIn(f"--list runs no command, and has no results for {option[0]}; leave that out",
                          self.unusable("d.csv", "--list", *option))
        self.assertIn("none.csv", self.unusable("none.csv", "--list"))
        self.write("bad.csv", "x,y\n1,2\n" + "3\n")
        self.assertIn("bad.csv", self.unusable("bad.csv", "--list"))


if __name__ == "__main__":
    unittest.main()
