"""Data sources and dictionaries, good and bad."""

import gzip
import json
import os
import random

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

    def test_ordered_categories_whose_labels_are_other_categories(self):
        self.write("d.csv", "x\na\nb\nc\n")
        self.schema("d.schema.json", {"name": "x", "type": "string", "categoriesOrdered": True, "categories": [
            {"value": "a", "label": "b"}, {"value": "b", "label": "c"}, {"value": "c", "label": "d"}]})
        listed = json.loads(self.run_program("--list", "--format", "json", "d.csv").stdout)["variables"][0]
        self.assertEqual([v["label"] for v in listed["values"]], ["b", "c", "d"])

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
    """Each is refused with its place and the reason, before anything is written."""

    def refuse(self, arguments, *said):
        with self.subTest(arguments):
            message = self.unusable(*arguments, "-c", COMMAND, "-o", "out.txt")
            for text in said:
                self.assertIn(text, message)
            self.assertEqual(message.count("\n"), 1, message)
            self.assertFalse((self.folder / "out.txt").exists())

    def test_names_of_files(self):
        os.mkdir(self.folder / "folder.csv")
        self.write("data.docx", "x\n1\n")
        self.write("d*.csv", "x\n1\n")
        self.refuse(("nothing.csv",), "nothing.csv: there is no such file")
        self.refuse(("",), "DATA is an empty name")
        self.refuse(("folder.csv",), "folder.csv: the folder holds no data file")
        self.refuse(("data.docx",), "this ending is not known", ".parquet")
        self.refuse(("*.csv",), "folder.csv: this is a folder")
        self.refuse(("no*.csv",), "no*.csv: no file matches the pattern")
        self.refuse(("duckdb:nothing.db", "--table", "t"), "nothing.db: there is no such database file")
        self.refuse(("d*.csv", "--schema", "nothing.json"), "nothing.json")

    def test_text_files(self):
        for name, content, *said in (
                ("empty.csv", "", "the file is empty"),
                ("blank.csv", "\n", "the file is empty", "names of the columns"),
                ("blanks.csv", "  \n\n", "the file is empty"),
                ("short.csv", "x,y\n1,2\n3\n", "line 3: 1 field where the header has 2"),
                ("long.csv", "x,y\n1,2\n4,5,6\n", "line 3: 3 fields where the header has 2"),
                ("comma.csv", "x\n1\n1,5\n", "line 3: 2 fields where the header has 1"),
                ("late.csv", "x,y\n" + "1,2\n" * 400000 + "3\n", "line 400002: 1 field where the header has 2"),
                ("twice.csv", "x,y,x\n1,2,3\n", "line 1: columns 1 and 3 are both named x"),
                ("case.csv", "x,X\n1,2\n", "x and X"),
                ("header_quote.csv", "x,\"y\n1,2\n", "line 1: a double quote is opened in this record and never closed"),
                ("quote.csv", "x,y\n1,\"2\n3,4\n", "line 2: a double quote is opened in this record and never closed"),
                ("latin.csv", b"x,n\n1,a\n2,\xe4\n", "line 3: there are bytes that are not UTF-8", "--encoding"),
                ("wide.csv", "x\n1\n".encode("utf-16"), "line 1: there are bytes that are not UTF-8", "--encoding"),
                ("zero.csv", "x\n1\0\n0\n", "line 2: there is a NUL byte"),
                ("cut.json", "[{\"x\":1,", "JSON"),
                ("empty.json", "", "the file is empty"),
                ("text.parquet", "no parquet", "text.parquet"),
                ("empty.parquet", "", "the file is empty"),
                ("text.csv.gz", "x\n1\n", "text.csv.gz")):
            self.write(name, content)
            self.refuse((name,), name, *said)

    def test_compressed_files_that_are_damaged(self):
        generator = random.Random(3)
        text = "x,y\n" + "".join(f"{i % 2},{generator.random()}\n" for i in range(100000))
        whole = gzip.compress(text.encode())
        damaged = bytearray(whole)
        damaged[-6] ^= 1  # in the check sum: the text itself can be read
        rows = "".join(json.dumps({"x": i}) + "\n" for i in range(1000))
        for name, content, *said in (
                ("cut.csv.gz", whole[:len(whole) // 2], "the compressed file is cut off"),
                ("head.csv.gz", whole[:10], "the compressed file is cut off"),
                ("end.csv.gz", whole[:-1], "the compressed file is cut off"),
                ("damaged.csv.gz", bytes(damaged), "cannot be decompressed", "data check"),
                ("more.csv.gz", whole + b"more", "cannot be decompressed"),
                ("cut.jsonl.gz", gzip.compress(rows.encode())[:-9], "the compressed file is cut off")):
            self.write(name, content)
            self.refuse((name,), name, *said)

    def test_queries(self):
        self.write("d.csv", "x\n1\n")
        self.write("other.csv", "x\n1\n")
        for query, said in (("SELEC x FROM data", "SELEC"), ("SELECT 1; SELECT 2", "one"), ("", "query"), ("SELECT nobody FROM data", "nobody"),
                            ("SELECT x FROM nowhere", "nowhere"), ("COPY data TO 'stolen.csv'", ""), ("INSTALL httpfs", ""),
                            ("SELECT * FROM read_csv('other.csv')", ""), ("SELECT * FROM 'other.csv'", ""), ("SELECT x, x FROM data", "x"),
                            ("SET enable_external_access = true", ""), ("ATTACH 'other.db'", ""), ("SELECT getenv('HOME') AS x", ""),
                            ("SELECT * FROM glob('*')", ""), ("SELECT content AS x FROM read_text('other.csv')", "")):
            self.refuse(("d.csv", "--query", query), said)
        self.assertEqual(sorted(os.listdir(self.folder)), ["d.csv", "other.csv"])

    def test_columns_that_no_command_can_name(self):
        self.write("d.json", '[{"x":1,"n":[1],"o":{"k":1}},{"x":0,"n":[0],"o":{"k":0}}]')
        self.write("case.json", '[{"x":1,"a":1},{"x":0,"A":0}]')
        self.write("d.csv", "x,k\n1,1\n0,2\n")
        query = ("--query", "SELECT x, k, 'b'::BLOB AS n, [k] AS o FROM data")
        for list_of_names in ("n", "x n", "x TO o", "ALL"):
            said = self.refused(f"PROPORTIONS /ONESAMPLE {list_of_names}.", "d.json")["text"]
            self.assertIn("n holds lists or objects (line 1)", said)
            said = self.refused(f"PROPORTIONS /ONESAMPLE {list_of_names}.", "d.csv", query)["text"]
            self.assertIn("n holds lists, structures, bytes or intervals", said)
        self.assertIn("o holds", self.refused("PROPORTIONS /INDEPENDENTSAMPLES x BY o.", "d.json")["text"])
        self.assertIn("o holds", self.refused("PROPORTIONS /PAIREDSAMPLES x WITH o.", "d.csv", query)["text"])
        for name in ("a", "A"):
            said = self.refused(f"PROPORTIONS /ONESAMPLE {name}.", "case.json")["text"]
            self.assertIn("the keys a and A (line 1) differ in the case", said)
        for name, arguments in (("d.json", ()), ("case.json", ()), ("d.csv", query)):
            self.assertEqual(self.procedure(COMMAND, name, *arguments)["status"], "ok")

    def test_nul_bytes_behind_json(self):
        for name, content in (("d.json", '[{"x":1}]\0'), ("e.json", '[{"x":1}]\0,{"x":0}]'),
                              ("f.jsonl", '{"x":1}\0\n{"x":0}\n'), ("g.jsonl", '{"x":1}\n{"x":0}\n\0')):
            self.write(name, content)
            self.refuse((name,), name, "there is a NUL byte")

    def test_dictionaries(self):
        self.write("d.csv", "x\n1\n0\nfour\n")
        for content in ("{", "[]", '{"fields": 5}', '{"fields":[{"name":"x","type":"complex"}]}',
                        '{"fields":[{"name":"x","type":"integer"}]}', '{"fields":[{"name":"x","type":"string","categories":5}]}'):
            with self.subTest(content):
                self.write("d.schema.json", content)
                self.run_program("d.csv", "-c", COMMAND, status=2)

    def test_typed_values_that_the_dictionary_s_type_cannot_hold(self):
        self.write("d.csv", "y\n1\n0\n")
        for sql, kind, said in (("CAST(y AS DOUBLE) / 2", "integer", "0.5 is not a whole number"),
                                ("y + 1", "boolean", "2 is neither 0 nor 1"),
                                ("TIMESTAMP '2024-01-31 12:30:00'", "date", "there is a time of day")):
            self.schema("x.json", {"name": "x", "type": kind})
            self.refuse(("d.csv", "--schema", "x.json", "--query", f"SELECT {sql} AS x FROM data"),
                        f"d.csv, case 1: x: {said}, though the dictionary gives the type {kind}.")

    def test_a_dictionary_may_list_values_with_the_data_s_decimal_comma(self):
        self.write("d.csv", "x;y\n1,5;a\n2,0;b\n3,25;b\n")
        self.schema("d.schema.json", {"name": "x", "type": "number", "missingValues": ["2,0", "3.25"]})
        procedure = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--decimal", ",")
        self.assertEqual(procedure["cases"]["variables"],
                         [{"name": "x", "valid": 1, "userMissing": 2, "systemMissing": 0}])
