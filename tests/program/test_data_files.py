"""Data sources and dictionaries, good and bad."""

import gzip
import os

from program import ProgramTest, keys, table, value

COMMAND = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD."


class GoodData(ProgramTest):
    def counts(self, *arguments, command=COMMAND, stdin=b""):
        p = self.procedure(command, *arguments, stdin=stdin)
        return value(p, "Intervals", "Successes"), value(p, "Intervals", "Trials")

    def test_formats(self):
        self.write("d.csv", "x\n1\n0\n1\n")
        self.write("d.tsv", "x\ty\n1\t5\n0\t5\n1\t5\n")
        self.write("d.json", '[{"x":1},{"x":0},{"x":1}]')
        self.write("d.jsonl", '{"x":1}\n{"x":0}\n{"x":1}\n')
        self.write("d.csv.gz", gzip.compress(b"x\n1\n0\n1\n"))
        self.write("crlf.csv", "x\r\n1\r\n0\r\n1\r\n")
        self.write("bom.csv", b"\xef\xbb\xbfx\n1\n0\n1\n")
        for name in ("d.csv", "d.tsv", "d.json", "d.jsonl", "d.csv.gz", "crlf.csv", "bom.csv"):
            with self.subTest(name):
                self.assertEqual(self.counts(name), (2, 3))

    def test_standard_input(self):
        self.assertEqual(self.counts("-", stdin=b"x\n1\n0\n1\n"), (2, 3))

    def test_query_on_a_file(self):
        self.write("d.csv", "x,k\n1,a\n0,a\n1,b\n")
        self.assertEqual(self.counts("d.csv", "--query", "SELECT x FROM data WHERE k = 'a'"), (1, 2))

    def test_booleans(self):
        self.write("d.csv", "x\ntrue\nfalse\ntrue\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('true').", "d.csv")
        self.assertEqual(value(p, "Intervals", "x = true", "Successes"), 2)

    def test_dates(self):
        self.write("d.csv", "x\n2024-01-01\n2024-01-02\n2024-01-02\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('2024-01-02').", "d.csv")
        self.assertEqual(value(p, "Intervals", "x = 2024-01-02", "Successes"), 2)

    def test_missing_numbers(self):
        self.write("d.csv", "x\n1\n\n0\nNaN\n")
        self.schema("d.schema.json", {"name": "x", "type": "number"})
        self.assertEqual(self.counts("d.csv"), (1, 2))

    def test_labels(self):
        self.write("d.csv", "x\n1\n0\n")
        self.schema("d.schema.json", {"name": "x", "type": "integer", "title": "Smokes",
                                      "categories": [{"value": 1, "label": "Yes"}, {"value": 0, "label": "No"}]})
        p = self.procedure(COMMAND, "d.csv")
        self.assertEqual(table(p, "Intervals")["dimensions"][0]["categories"][0]["label"], "Smokes = Yes")

    def test_equal_labels_are_told_apart(self):
        self.write("d.csv", "x,y\n1,1\n0,1\n")
        self.schema("d.schema.json", {"name": "x", "type": "integer", "title": "Same"}, {"name": "y", "type": "integer", "title": "Same"})
        p = self.procedure("PROPORTIONS /ONESAMPLE x y.", "d.csv")
        labels = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
        self.assertEqual(len(set(labels)), 2)
        self.assertIn("[x]", labels[0])

    def test_no_cases(self):
        self.write("d.csv", "x,y\n")
        p = self.procedure(COMMAND, "d.csv")
        self.assertEqual((keys(p), p["tables"], p["status"], len(p["notes"])), (["No cases"], [], "ok", 3))

    def test_collapse_changes_nothing(self):
        rows = "".join(f"{i % 2},{'' if i % 7 == 0 else i % 3},{0.3 + i % 5},{'ab'[i % 2]}\n" for i in range(700))
        self.write("d.csv", "x,y,w,s\n" + rows)
        for command in ("PROPORTIONS /ONESAMPLE x y s CITYPES=ALL TESTTYPES=ALL.", "PROPORTIONS /PAIREDSAMPLES x y s CITYPES=ALL TESTTYPES=ALL.",
                        "PROPORTIONS /INDEPENDENTSAMPLES x s BY y CITYPES=ALL TESTTYPES=ALL."):
            for extra in ((), ("--weight", "w"), ("--split", "s"), ("--weight", "w", "--split", "s", "--split-layout", "tables")):
                if "--split" in extra:
                    command = command.replace(" s ", " ")
                outputs = {self.run_program("d.csv", *extra, "-c", command, "--format", "json", "--collapse", mode).stdout
                           for mode in ("always", "never", "auto")}
                self.assertEqual(len(outputs), 1, (command, extra))

    def test_order_of_cases_changes_nothing(self):
        rows = [f"{i % 2},{i % 3},{'cab'[i % 3]}" for i in range(60)]
        self.write("a.csv", "x,y,s\n" + "\n".join(rows) + "\n")
        self.write("b.csv", "x,y,s\n" + "\n".join(reversed(rows)) + "\n")
        for extra in ((), ("--split", "s")):
            outputs = [self.run_program(name, *extra, "-c", "PROPORTIONS /ONESAMPLE x y.", "--format", "json").stdout for name in ("a.csv", "b.csv")]
            self.assertEqual(outputs[0], outputs[1])

    def test_late_text_makes_a_string(self):
        self.write("d.csv", "x\n" + "1\n" * 30000 + "n/a\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('1').", "d.csv")
        self.assertEqual(value(p, "Intervals", "Trials"), 30001)


class BadData(ProgramTest):
    def test_files(self):
        self.write("empty.csv", "")
        self.write("ragged.csv", "x,y\n1,2\n3\n4,5,6\n")
        self.write("twice.csv", "x,x\n1,2\n")
        self.write("latin.csv", b"x,n\xe4me\n1,\xe4\n")
        self.write("what.docx", "x\n1\n")
        self.write("bad.json", "[{\"x\":1,")
        self.write("bad.parquet", "no parquet")
        self.write("good.csv", "x\n1\n")
        for arguments in (("nothing.csv",), (".",), ("empty.csv",), ("ragged.csv",), ("twice.csv",), ("latin.csv",), ("what.docx",),
                          ("bad.json",), ("bad.parquet",), ("duckdb:nothing.db",), ("good.csv", "--schema", "nothing.json"),
                          ("good.csv", "--query", "SELEC x FROM data"), ("good.csv", "--query", "SELECT 1; SELECT 2"),
                          ("good.csv", "--query", "COPY data TO 'stolen.csv'"), ("good.csv", "--query", "SELECT * FROM read_csv('twice.csv')"),
                          ("good.csv", "--query", "SELECT * FROM 'empty.csv'")):
            with self.subTest(arguments):
                done = self.run_program(*arguments, "-c", COMMAND, status=2)
                self.assertNotEqual(done.stderr, b"")
                self.assertNotIn(b"Successes", done.stdout)
        self.assertFalse((self.folder / "stolen.csv").exists())

    def test_dictionaries(self):
        self.write("d.csv", "x\n1\n0\nfour\n")
        for content in ("{", "[]", '{"fields": 5}', '{"fields":[{"name":"nobody"}]}', '{"fields":[{"name":"x","type":"complex"}]}',
                        '{"fields":[{"name":"x","type":"integer"}]}', '{"fields":[{"name":"x","type":"string","categories":5}]}'):
            with self.subTest(content):
                self.write("d.schema.json", content)
                self.run_program("d.csv", "-c", COMMAND, status=2)

    def test_directory_named_like_data(self):
        os.mkdir(self.folder / "d.csv")
        self.unusable("d.csv", "-c", COMMAND)
