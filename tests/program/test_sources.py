"""The same data from every kind of source give the same tables."""

import json
import random

from engine import execute
from program import ProgramTest, cells, table, value
from stat_writer import write_stat

FIELDS = [
    {"name": "outcome", "title": "Outcome", "missingValues": ["9"],
     "categories": [{"value": 1, "label": "Better"}, {"value": 0, "label": "Same"}]},
    {"name": "arm", "title": "Arm", "missingValues": ["8"],
     "categories": [{"value": 1, "label": "Placebo"}, {"value": 2, "label": "Drug"}]},
    {"name": "site", "missingValues": ["unknown"]},
]
COMMANDS = {
    "labelled numbers": "PROPORTIONS /INDEPENDENTSAMPLES outcome BY arm SELECT=LEVEL(1 2) TESTTYPES=ALL CITYPES=ALL.",
    "user-missing included": "PROPORTIONS /INDEPENDENTSAMPLES outcome BY arm SELECT=LEVEL(1 8) /MISSING USERMISSING=INCLUDE.",
    "strings": "PROPORTIONS /INDEPENDENTSAMPLES outcome BY site SELECT=LEVEL('north' 'south') TESTTYPES=ALL CITYPES=ALL.",
    "a cut point": "PROPORTIONS /INDEPENDENTSAMPLES outcome BY age SELECT=CUTPOINT(40.5) TESTTYPES=ALL CITYPES=ALL.",
    "a midpoint": "PROPORTIONS /INDEPENDENTSAMPLES outcome BY age SELECT=MIDPOINT /SUCCESS VALUE=LEVEL(1).",
    "pairs": "PROPORTIONS /PAIREDSAMPLES outcome WITH arm (PAIRED) TESTTYPES=ALL CITYPES=ALL.",
    "one sample": "PROPORTIONS /ONESAMPLE outcome site age TESTTYPES=ALL CITYPES=ALL.",
}


class SameData(ProgramTest):
    """One table of 300 rows as CSV, TSV, JSON, Parquet, in files of statistics packages and in a database."""

    def setUp(self):
        super().setUp()
        generator = random.Random(20)
        rows = [(generator.choice((0, 1, 1, 9, None)), generator.choice((1, 2, 8, None)), generator.choice(("north", "south", "unknown", None)),
                 generator.choice((18.5, 40.5, 62.25, None)), generator.choice((0.4, 1, 2.5, 3))) for _ in range(300)]
        self.rows = rows
        names = ("outcome", "arm", "site", "age", "w")
        for name, between in (("d.csv", ","), ("d.tsv", "\t")):
            lines = [between.join("" if v is None else str(v) for v in row) for row in rows]
            self.write(name, "\n".join([between.join(names), *lines]) + "\n")
        self.write("d.jsonl", "".join(json.dumps(dict(zip(names, row))) + "\n" for row in rows))
        columns = [{"name": name, "type": "double"} for name in names]
        columns[2] = {"name": "site", "type": "string", "width": 8}
        for form in ("dta", "sas7bdat", "xpt"):
            write_stat(self.folder / f"d.{form}", columns, [[*row[:2], row[2] or "", *row[3:]] for row in rows])
        made = ("CREATE TABLE patients AS SELECT * FROM read_csv('{0}/d.csv', types={{'outcome':'BIGINT','arm':'UTINYINT','site':'VARCHAR',"
                "'age':'DECIMAL(6,2)','w':'DOUBLE'}})").format(self.folder)
        execute([made, "CREATE TABLE other AS SELECT 1 AS outcome"], self.folder / "d.db")
        execute([made, f"COPY patients TO '{self.folder}/d.parquet'"])
        self.schema("schema.json", *FIELDS)
        self.sources = (("d.csv",), ("d.tsv",), ("d.jsonl",), ("d.parquet",), ("d.dta",), ("d.sas7bdat",), ("d.xpt",),
                        ("duckdb:d.db", "--table", "patients"),
                        ("duckdb:d.db", "--query", "SELECT * FROM patients"), ("d.parquet", "--query", "SELECT * FROM data"),
                        ("d.dta", "--query", "SELECT * FROM data"))

    def test_all_sources_agree(self):
        for what, command in COMMANDS.items():
            for extra in ((), ("--weight", "w")):
                outputs = [self.procedure(command, *source, "--schema", "schema.json", *extra) for source in self.sources]
                self.assertGreater(len(outputs[0]["tables"]), 0, what)
                for source, output in zip(self.sources, outputs):
                    self.assertEqual(output, outputs[0], (what, source))

    def test_groups_agree(self):
        command = "PROPORTIONS /ONESAMPLE outcome TESTTYPES=ALL CITYPES=ALL."
        outputs = [self.procedure(command, *source, "--schema", "schema.json", "--split", "site,arm") for source in self.sources]
        self.assertEqual(len(table(outputs[0], "Tests")["dimensions"][0]["categories"]), 4)
        for source, output in zip(self.sources, outputs):
            self.assertEqual(output, outputs[0], source)

    def test_counts_of_each_grouping(self):
        """Successes and trials of both groups, counted in Python from the same rows."""
        expectations = {
            "labelled numbers": (lambda arm, site, age: {1: 0, 2: 1}.get(arm), ("= Placebo", "= Drug"), (9,)),
            "user-missing included": (lambda arm, site, age: {1: 0, 8: 1}.get(arm), ("= Placebo", "= 8"), ()),
            "strings": (lambda arm, site, age: {"north": 0, "south": 1}.get(site), ("= north", "= south"), (9,)),
            "a cut point": (lambda arm, site, age: None if age is None else int(age >= 40.5), ("< 40.5", ">= 40.5"), (9,)),
            "a midpoint": (lambda arm, site, age: None if age is None else int(age >= 40.375), ("< 40.375", ">= 40.375"), (9,)),
        }
        for what, (side_of, labels, missing) in expectations.items():
            valid = [(x, side_of(arm, site, age), int(w + 0.5)) for x, arm, site, age, w in self.rows
                     if x is not None and x not in missing and side_of(arm, site, age) is not None]
            success = 9 if what == "user-missing included" else 1
            for source in (("d.csv",), ("d.parquet",)):
                p = self.procedure(COMMANDS[what], *source, "--schema", "schema.json", "--weight", "w")
                for side, label in enumerate(labels):
                    found = tuple(value(p, "Group Statistics", label, statistic) for statistic in ("Successes", "Trials"))
                    self.assertEqual(found, (sum(w for x, at, w in valid if at == side and x == success),
                                             sum(w for x, at, w in valid if at == side)), (what, source, label))


class Databases(ProgramTest):
    COMMAND = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD."

    def setUp(self):
        super().setUp()
        execute(["CREATE TABLE one AS SELECT * FROM (VALUES (1), (0), (1)) t(x)",
                 "CREATE TABLE \"a b\" AS SELECT 1 AS x", "CREATE VIEW seen AS SELECT x FROM one WHERE x = 1"], self.folder / "d.db")

    def trials(self, *arguments):
        return value(self.procedure(self.COMMAND, "duckdb:d.db", *arguments), "Intervals", "Trials")

    def test_tables_and_views(self):
        self.assertEqual(self.trials("--table", "one"), 3)
        self.assertEqual(self.trials("--table", "a b"), 1)
        self.assertEqual(self.trials("--table", "seen"), 2)
        self.assertEqual(self.trials("--query", "SELECT * FROM one UNION ALL SELECT * FROM \"a b\""), 4)

    def test_what_a_database_cannot_give(self):
        for arguments, said in ((("--table", "nobody"), "nobody"), ((), "--table"), (("--table", "one", "--query", "SELECT 1 AS x"), "--query"),
                                (("--query", "SELECT nobody FROM one"), "nobody"), (("--query", "CREATE TABLE stolen AS SELECT 1 AS x"), ""),
                                (("--query", "DELETE FROM one"), ""), (("--query", "COPY one TO 'stolen.csv'"), "")):
            with self.subTest(arguments):
                self.assertIn(said, self.unusable("duckdb:d.db", *arguments, "-c", self.COMMAND))
        self.assertEqual(self.trials("--table", "one"), 3, "nothing was changed")
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["d.db"])

    def test_a_file_is_left_as_it_was(self):
        before = (self.folder / "d.db").read_bytes()
        self.trials("--table", "one")
        self.assertEqual((self.folder / "d.db").read_bytes(), before)
        self.assertEqual(cells(table(self.procedure(self.COMMAND, "duckdb:d.db", "--table", "one"), "Intervals")),
                         cells(table(self.procedure(self.COMMAND, "duckdb:d.db", "--query", "SELECT x FROM one"), "Intervals")))

    def test_no_database(self):
        self.write("not.db", "x\n1\n" * 5000)
        self.write("empty.db", "")
        for name in ("not.db", "nothing.db", "."):
            self.assertIn(name, self.unusable(f"duckdb:{name}", "--table", "one", "-c", self.COMMAND))
        self.assertEqual((self.folder / "empty.db").read_bytes(), b"")
        self.assertFalse((self.folder / "nothing.db").exists())


class Parquet(ProgramTest):
    def test_types(self):
        """Every kind of column is a number, a string or a date with the value it had."""
        columns = {"b": "true", "i8": "CAST(-3 AS TINYINT)", "u64": "CAST(18446744073709549568 AS UBIGINT)", "huge": "CAST(7 AS HUGEINT)",
                   "f": "CAST(0.5 AS FLOAT)", "d": "CAST(1.25 AS DECIMAL(10,4))", "s": "'Ärger'", "day": "DATE '2024-02-29'",
                   "at": "TIMESTAMP '2024-02-29 12:30:00'", "e": "CAST('mild' AS ENUM('mild', 'severe'))"}
        execute([f"COPY (SELECT {', '.join(f'{v} AS {k}' for k, v in columns.items())}) TO '{self.folder}/d.parquet'"])
        p = self.procedure("PROPORTIONS /ONESAMPLE ALL TESTTYPES=NONE CITYPES=WALD.", "d.parquet")
        labels = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
        self.assertEqual(labels, ["b = true", "i8 = -3", "u64 = 1.844674407370955e+19", "huge = 7", "f = 0.5", "d = 1.25", "s = Ärger",
                                  "day = 2024-02-29", "at = 2024-02-29 12:30:00", "e = mild"])

    def write_numbers(self, rows):
        """Numbers that fit bytes, and some that do not, as Parquet and as CSV."""
        execute([f"CREATE TABLE t AS SELECT i % 2 AS outcome, CASE WHEN i % 7 > 0 THEN CAST(i % 256 - 128 AS BIGINT) END AS least, "
                 f"CASE WHEN i = {rows - 5} THEN 1000 ELSE CAST(i % 3 AS BIGINT) END AS rare, i % 129 AS more FROM range({rows}) AS r(i)",
                 *[f"COPY (SELECT CAST(outcome AS USMALLINT) AS outcome, least, rare, more FROM t) TO '{self.folder}/d.{ending}'"
                   for ending in ("parquet", "csv")]])

    def assert_same_as_csv(self):
        for command in ("PROPORTIONS /ONESAMPLE ALL.", "PROPORTIONS /PAIREDSAMPLES ALL.", "PROPORTIONS /ONESAMPLE rare /SUCCESS VALUE=LEVEL(1000)."):
            for collapse in ("auto", "never"):
                with self.subTest(command=command, collapse=collapse):
                    tables = [self.procedure(command, name, "--split", "outcome", "--collapse", collapse)["tables"] for name in ("d.parquet", "d.csv")]
                    self.assertEqual(*tables)

    def test_bytes(self):
        """Whole numbers that fit bytes are read as such, and are the same."""
        self.write_numbers(10_000)
        told = self.run_program("d.parquet", "--explain", "-c", "PROPORTIONS /ONESAMPLE ALL.").stdout.decode()
        self.assertEqual([f'CAST("{name}" AS TINYINT)' in told for name in ("outcome", "least", "rare", "more")], [True, True, False, False])
        self.assert_same_as_csv()

    def test_wrong_statistics(self):
        """A file whose statistics leave out its largest number gives it all the same, and every case once."""
        self.write_numbers(100_000)
        data = (self.folder / "d.parquet").read_bytes()
        footer = len(data) - 8 - int.from_bytes(data[-8:-4], "little")
        wrong = data[footer:].replace((1000).to_bytes(8, "little"), (2).to_bytes(8, "little"))
        self.assertNotEqual(wrong, data[footer:])
        self.write("d.parquet", data[:footer] + wrong)
        self.assertIn('CAST("rare" AS TINYINT)', self.run_program("d.parquet", "--explain", "-c", "PROPORTIONS /ONESAMPLE ALL.").stdout.decode())
        self.assert_same_as_csv()
