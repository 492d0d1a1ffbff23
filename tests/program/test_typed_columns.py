"""A dictionary gives the columns of every kind of source the same types with the same results."""

import json
import pathlib
import sqlite3

from engine import execute
from program import ProgramTest, value
from stat_writer import write_stat

FIELDS = {
    "whole": {"type": "integer", "missingValues": ["", "9"]},
    "ratio": {"type": "number", "missingValues": ["", "9"]},
    "flag": {"type": "boolean", "missingValues": ["", "9"]},
    "day": {"type": "date", "missingValues": ["", "1900-01-01"]},
    "grade": {"type": "string", "categories": ["low", "high"], "categoriesOrdered": True, "missingValues": ["", "unknown"]},
}
NAMES = tuple(FIELDS)
ROWS = (
    (1, 0.5, 1, "2024-01-31", "low"),
    (2, 2.25, 0, "2024-02-29", "high"),
    (2, 2.25, 1, "2024-02-29", "high"),
    (9, 9, 9, "1900-01-01", "unknown"),
    (None, None, None, None, None),
    (1, 2.25, 1, "2024-02-29", "high"),
)
# By the name of the column: the valid cases and, among them, the last value's.
COUNTS = {"whole": (4, 2), "ratio": (4, 3), "flag": (4, 3), "day": (4, 3), "grade": (4, 3)}
COMMANDS = (
    f"PROPORTIONS /ONESAMPLE {' '.join(NAMES)} TESTTYPES=ALL CITYPES=ALL.",
    f"PROPORTIONS /ONESAMPLE {' '.join(NAMES)} /SUCCESS VALUE=FIRST.",
    f"PROPORTIONS /ONESAMPLE {' '.join(NAMES)} /SUCCESS VALUE=FIRST /MISSING USERMISSING=INCLUDE.",
    "PROPORTIONS /INDEPENDENTSAMPLES flag whole BY grade SELECT=LEVEL('low' 'high').",
    "PROPORTIONS /INDEPENDENTSAMPLES flag grade BY ratio SELECT=CUTPOINT(1).",
    "PROPORTIONS /PAIREDSAMPLES whole WITH ratio (PAIRED).",
)
SQLITE = next(pathlib.Path("/usr/lib").glob("*/odbc/libsqlite3odbc.so"), None)


def text_of(value):
    return "" if value is None else str(value)


class TypedColumns(ProgramTest):
    """The same six rows in files of all formats, in databases and in the paths of folders."""

    def setUp(self):
        super().setUp()
        self.schema("s.json", *({"name": name, **field} for name, field in FIELDS.items()))

    def write_csv(self):
        self.write("d.csv", "\n".join(",".join(map(text_of, row)) for row in (NAMES, *ROWS)) + "\n")

    def write_folder(self, name, write_file):
        """One file for each row, whose values stand in its path."""
        for number, row in enumerate(ROWS):
            parts = [f"{column}={'__HIVE_DEFAULT_PARTITION__' if v is None else v}" for column, v in zip(NAMES, row)]
            folder = self.folder.joinpath(name, *parts)
            folder.mkdir(parents=True)
            write_file(str(folder / f"{number}"))

    def sources_of_texts(self):
        """Sources that hold all values as texts."""
        self.write_csv()
        columns = ", ".join(f"'{name}': 'VARCHAR'" for name in NAMES)
        execute([f"CREATE TABLE t AS SELECT * FROM read_csv('{self.folder}/d.csv', types={{{columns}}}, nullstr='')",
                 f"COPY t TO '{self.folder}/texts.parquet'"], self.folder / "texts.db")
        texts = [[text_of(v) for v in row] for row in ROWS]
        for form in ("dta", "xpt"):
            write_stat(self.folder / f"texts.{form}", [{"name": name, "type": "string", "width": 10} for name in NAMES], texts)
        self.write_folder("csv", lambda path: pathlib.Path(path + ".csv").write_text("x\n1\n"))
        self.write_folder("parquet", lambda path: execute([f"COPY (SELECT 1 AS x) TO '{path}.parquet'"]))
        cast = "SELECT " + ", ".join(f"CAST({name} AS VARCHAR) AS {name}" for name in NAMES) + " FROM data"
        return (("d.csv", "--query", cast), ("texts.parquet",), ("texts.parquet", "--query", "SELECT * FROM data"),
                ("duckdb:texts.db", "--table", "t"), ("texts.dta",), ("texts.xpt",), ("csv",), ("parquet",),
                *self.sqlite("texts.sqlite", "TEXT", "TEXT"))

    def sqlite(self, name, *types):
        """Nothing where the machine lacks the driver."""
        if SQLITE is None:
            return ()
        kinds = dict.fromkeys(NAMES, types[0]) | {"day": types[1], "grade": types[1]}
        with sqlite3.connect(self.folder / name) as database:
            database.execute(f"CREATE TABLE t ({', '.join(f'{column} {kind}' for column, kind in kinds.items())})")
            database.executemany(f"INSERT INTO t VALUES ({', '.join('?' * len(NAMES))})", ROWS)
        database.close()
        return ((f"odbc:Driver={SQLITE};Database={self.folder / name}", "--table", "t"),)

    def assert_same_as_csv(self, sources):
        for command in COMMANDS:
            expected = self.procedure(command, "d.csv", "--schema", "s.json")
            self.assertGreater(len(expected["tables"]), 0)
            for source in sources:
                for collapse in ("auto", "never"):
                    with self.subTest(command=command, source=source, collapse=collapse):
                        found = self.procedure(command, *source, "--schema", "s.json", "--collapse", collapse)
                        self.assertEqual(found["tables"], expected["tables"])

    def test_counts_of_csv(self):
        self.write_csv()
        for name, (valid, last) in COUNTS.items():
            p = self.procedure(f"PROPORTIONS /ONESAMPLE {name} TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--schema", "s.json")
            self.assertEqual([value(p, "Intervals", statistic) for statistic in ("Successes", "Trials")], [last, valid], name)

    def test_texts(self):
        self.assert_same_as_csv(self.sources_of_texts())

    def test_numbers_made_texts(self):
        """A number becomes the shortest text that tells it, without its source's zeros and exponents."""
        self.schema("s.json", {"name": "x", "type": "string", "missingValues": ["", "9"]})
        numbers = ("1", "2.5", "9", "0.30000000000000004", "-0.001", "1e+16", "123456.75", "")
        self.write("d.csv", "\n".join(("x", *numbers)) + "\n")
        values = ", ".join(f"({number or 'NULL'})" for number in numbers)
        select = f"SELECT CAST(x AS DOUBLE) AS x FROM (VALUES {values.replace('0.30000000000000004', '3.0000000000000004e-1')}) v(x)"
        execute([f"CREATE TABLE t AS {select}", f"COPY t TO '{self.folder}/d.parquet'"], self.folder / "d.db")
        write_stat(self.folder / "d.dta", [{"name": "x", "type": "double"}], [[float(n) if n else None] for n in numbers])
        sources = [("d.parquet",), ("duckdb:d.db", "--table", "t"), ("d.dta",), ("d.parquet", "--query", "SELECT * FROM data")]
        if SQLITE is not None:
            with sqlite3.connect(self.folder / "d.sqlite") as database:
                database.execute("CREATE TABLE t (x REAL)")
                database.executemany("INSERT INTO t VALUES (?)", [[float(n) if n else None] for n in numbers])
            database.close()
            sources.append((f"odbc:Driver={SQLITE};Database={self.folder / 'd.sqlite'}", "--table", "t"))
        levels = [f"PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('{n}')." for n in numbers if n not in ("", "9")]
        for command in (*levels, "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LAST."):
            expected = self.procedure(command, "d.csv", "--schema", "s.json")
            self.assertEqual(value(expected, "Intervals", "Trials"), 6)
            for source in sources:
                with self.subTest(command=command, source=source):
                    self.assertEqual(self.procedure(command, *source, "--schema", "s.json")["tables"], expected["tables"])

    def test_decimals_made_texts(self):
        """Without zeros at their end, and with all digits that a double would lose."""
        self.schema("s.json", {"name": "x", "type": "string", "missingValues": ["", "9"]})
        execute(["COPY (SELECT CAST(x AS DECIMAL(20, 2)) AS x FROM (VALUES ('9.00'), ('10.00'), ('2.50'), ('123456789012345678.01')) v(x)) "
                 f"TO '{self.folder}/d.parquet'"])
        for text in ("10", "2.5", "123456789012345678.01"):
            p = self.procedure(f"PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('{text}').", "d.parquet", "--schema", "s.json")
            self.assertEqual([value(p, "Intervals", statistic) for statistic in ("Successes", "Trials")], [1, 3], text)

    def test_types_of_their_own(self):
        """Sources that have numbers, booleans or dates themselves."""
        self.write_csv()
        self.write("d.jsonl", "".join(json.dumps(dict(zip(NAMES, row))) + "\n" for row in ROWS))
        types = {"whole": "BIGINT", "ratio": "DOUBLE", "flag": "INTEGER", "day": "DATE", "grade": "VARCHAR"}
        execute([f"CREATE TABLE t AS SELECT * FROM read_csv('{self.folder}/d.csv', types={types}, nullstr='')",
                 f"COPY t TO '{self.folder}/d.parquet'"], self.folder / "d.db")
        columns = [{"name": name, "type": "double"} for name in NAMES[:3]] + [{"name": name, "type": "string", "width": 10} for name in NAMES[3:]]
        for form in ("dta", "xpt"):
            write_stat(self.folder / f"d.{form}", columns, [[*row[:3], *map(text_of, row[3:])] for row in ROWS])
        self.assert_same_as_csv((("d.jsonl",), ("d.csv", "--query", "SELECT * FROM data"), ("d.parquet",), ("duckdb:d.db", "--table", "t"),
                                 ("d.dta",), ("d.xpt",), *self.sqlite("d.sqlite", "REAL", "DATE")))

    def test_numbers_for_missing_dates(self):
        """A number that is listed as missing is so among dates; another one is refused."""
        command = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD."
        self.schema("s.json", {"name": "x", "type": "date", "missingValues": ["", "9"]})
        self.write("d.csv", "x\n2024-01-31\n9\n2024-02-29\n")
        self.write("d.jsonl", '{"x":"2024-01-31"}\n{"x":9}\n{"x":"2024-02-29"}\n')
        expected = self.procedure(command, "d.csv", "--schema", "s.json")
        self.assertEqual(value(expected, "Intervals", "Trials"), 2)
        self.assertEqual(self.procedure(command, "d.jsonl", "--schema", "s.json")["tables"], expected["tables"])
        self.write("d.jsonl", '{"x":"2024-01-31"}\n{"x":8}\n')
        self.assertIn("'8' is not a date", self.unusable("d.jsonl", "--schema", "s.json", "-c", command))

    def test_other_numbers_are_no_booleans(self):
        self.schema("s.json", {"name": "x", "type": "boolean", "missingValues": ["", "9"]})
        execute([f"COPY (SELECT unnest([1, 8, 9]) AS x) TO '{self.folder}/d.parquet'"])
        self.assertIn("case 2: x: 8 is neither 0 nor 1", self.unusable("d.parquet", "--schema", "s.json", "-c", COMMANDS[0].replace(" ".join(NAMES), "x")))
