"""What only the ODBC driver of SQLite does: the file that is read is never the output, and texts of all alphabets
come and go as they are, though the driver takes bytes."""

import json
import os
import pathlib
import sqlite3
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

from program import PROGRAM, ProgramTest, value

COMMAND = "PROPORTIONS /ONESAMPLE a."
WORDS = ("ł", "日本", "😀", "é")


def listing(done):
    return {variable["name"]: variable for variable in json.loads(done.stdout)["variables"]}


class SqliteTest(ProgramTest):
    def database(self, name, *statements, mode="delete"):
        with sqlite3.connect(self.folder / name) as connection:
            connection.execute(f"PRAGMA journal_mode = {mode}")
            for statement in statements:
                connection.execute(statement)
        connection.close()
        return f"odbc:DRIVER=SQLite3;Database={name}"


class Output(SqliteTest):
    def setUp(self):
        super().setUp()
        self.data = self.database("d.db", "CREATE TABLE t (a INT)", "INSERT INTO t VALUES (1), (0)")

    def refused(self, output, data, **environment):
        before = {path.name: path.read_bytes() for path in self.folder.iterdir() if path.is_file()}
        for arguments in (("-c", COMMAND), ("--list",), ("--explain", "-c", COMMAND)):
            done = subprocess.run([PROGRAM, data, *arguments, "-o", output, "--format", "text"], cwd=self.folder,
                                  capture_output=True, env={**os.environ, **environment})
            self.assertEqual((done.returncode, done.stdout), (2, b""), done.stderr)
            self.assertIn(b"which this run reads; name another file", done.stderr)
            self.assertEqual({path.name: path.read_bytes() for path in self.folder.iterdir() if path.is_file()}, before)

    def test_the_database_by_any_name(self):
        os.symlink("d.db", self.folder / "symbolic")
        os.link(self.folder / "d.db", self.folder / "hard")
        whole = self.folder / "d.db"
        for output in ("d.db", "./d.db", str(whole), "symbolic", "hard"):
            for data in (self.data, f"odbc:DRIVER=SQLite3;Database={whole}", "odbc:DRIVER=SQLite3;database={symbolic}",
                         "odbc:DRIVER=SQLite3;Database=file:d.db?mode=ro"):
                with self.subTest(output=output, data=data):
                    self.refused(output, data)

    def test_files_beside_the_database(self):
        for output in ("d.db-wal", "d.db-shm", "d.db-journal"):
            self.refused(output, self.data)
            self.assertFalse((self.folder / output).exists())
        writer = sqlite3.connect(self.folder / "d.db")
        self.addCleanup(writer.close)
        writer.execute("PRAGMA journal_mode = wal")
        writer.execute("INSERT INTO t VALUES (1)")
        writer.commit()
        self.refused("d.db-wal", self.data)

    def test_the_database_of_a_data_source(self):
        self.write("odbc.ini", f"[warehouse]\nDriver=SQLite3\nDatabase={self.folder}/d.db\n")
        for output in ("d.db", "d.db-journal", "odbc.ini"):
            self.refused(output, "odbc:warehouse", ODBCINI=str(self.folder / "odbc.ini"))

    def test_the_driver_itself(self):
        self.write("driver.so", "none")
        self.refused("driver.so", "odbc:DRIVER=./driver.so;Database=d.db")

    def test_another_file_is_written(self):
        self.run_program(self.data, "-c", COMMAND, "-o", "d.json")
        self.assertEqual(json.loads((self.folder / "d.json").read_text())["procedures"][0]["status"], "ok")


class Texts(SqliteTest):
    def setUp(self):
        super().setUp()
        rows = ", ".join(f"('{word}', {i % 2})" for i, word in enumerate(("B", *WORDS, *WORDS)))
        self.data = self.database("ü日😀.db", "CREATE TABLE tä (né TEXT, 日😀 INT)", f"INSERT INTO tä VALUES {rows}",
                                  "CREATE TABLE B (né TEXT)", "CREATE TABLE ł (né INT)", "INSERT INTO ł VALUES (1), (0), (1)")

    def test_queries_hold_any_character(self):
        for word in WORDS:
            found = listing(self.run_program(self.data, "--query", f"SELECT né, 日😀 AS \"{word}\" FROM tä WHERE né = '{word}'",
                                             "--list", "--format", "json"))
            self.assertEqual([(v["value"], v["count"]) for v in found["né"]["values"]], [(word, 2)])
            self.assertIn(word, found)

    def test_names_hold_any_character(self):
        self.assertEqual(list(listing(self.run_program(self.data, "--table", "tä", "--list", "--format", "json"))), ["né", "日😀"])
        done = self.procedure("PROPORTIONS /ONESAMPLE né /SUCCESS VALUE=LEVEL('ł').", self.data, "--table", "tä")
        self.assertEqual(value(done, "One-Sample Proportions Conf", "Wilson Score", "Successes"), 2)
        self.assertEqual(value(self.procedure("PROPORTIONS /ONESAMPLE né /SUCCESS VALUE=LEVEL(1).", self.data, "--table", "ł"),
                               "One-Sample Proportions Conf", "Wilson Score", "Successes"), 2)

    def test_splits_weights_and_dictionaries_name_them(self):
        self.schema("labels.json", {"name": "né", "title": "Wörter", "categories": [{"value": "日本", "label": "Japan"}]},
                    {"name": "日😀", "title": "Zahl"})
        done = self.procedure("PROPORTIONS /ONESAMPLE \"日😀\" /SUCCESS VALUE=LEVEL(1).", self.data, "--table", "tä", "--split", "né",
                              "--schema", "labels.json")
        self.assertEqual([g["split"]["Wörter"] if "Wörter" in g["split"] else g["split"]["né"] for g in done["cases"]["groups"]], ["😀", "B", "é", "ł", "Japan"])
        self.assertIn("Wörter", json.dumps(done, ensure_ascii=False))
        done = self.procedure("PROPORTIONS /ONESAMPLE né /SUCCESS VALUE=LEVEL('ł').", self.data, "--table", "tä", "--weight", "日😀")
        self.assertEqual(done["cases"]["weight"], 4)

    def test_a_csv_file_gives_the_same(self):
        self.write("d.csv", "né,日😀\n" + "".join(f"{word},{i % 2}\n" for i, word in enumerate(("B", *WORDS, *WORDS))))
        command = "PROPORTIONS /ONESAMPLE né /SUCCESS VALUE=LEVEL('ł' '😀')."
        for options in ((), ("--split", "日😀"), ("--collapse", "never")):
            self.assertEqual(self.run_program(self.data, "--table", "tä", "-c", command, *options, "--format", "json").stdout,
                             self.run_program("d.csv", "-c", command, *options, "--format", "json").stdout)

    def test_messages_show_them(self):
        self.assertIn("no table tö日", self.unusable(self.data, "--table", "tö日", "-c", COMMAND))
        self.assertIn("no such column: nö日", self.unusable(self.data, "--query", "SELECT nö日 FROM tä", "-c", COMMAND))
        self.assertIn("né", self.procedure("PROPORTIONS /ONESAMPLE ne.", self.data, "--table", "tä", status=1)["messages"][0]["text"])

    def test_no_other_file_is_opened_or_made(self):
        self.database("B.db", "CREATE TABLE t (a INT)")
        before = sorted(os.listdir(self.folder))
        for name in ("ł.db", "ö.db"):
            self.assertIn("cannot be reached", self.unusable(f"odbc:DRIVER=SQLite3;Database={name}", "-c", COMMAND))
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def test_the_driver_by_another_name(self):
        library = next(pathlib.Path("/usr/lib").glob("*/odbc/libsqlite3odbc.so"))
        self.write("odbcinst.ini", f"[Other]\nDriver={library}\n")
        self.write("odbc.ini", f"[Größe]\nDriver=Other\nDatabase={self.folder}/ü日😀.db\n")
        os.symlink(library, self.folder / "renamed.so")
        for data in ("odbc:DRIVER=Other;Database=ü日😀.db", "odbc:Größe", f"odbc:DRIVER={library};Database=ü日😀.db"):
            done = subprocess.run([PROGRAM, data, "--table", "tä", "--list"], cwd=self.folder, capture_output=True,
                                  env={**os.environ, "ODBCSYSINI": str(self.folder), "ODBCINI": str(self.folder / "odbc.ini")})
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertIn("né", done.stdout.decode())
        self.database("d.db", "CREATE TABLE t (a INT)", "INSERT INTO t VALUES (1), (0)")
        found = listing(self.run_program(f"odbc:DRIVER={self.folder}/renamed.so;Database=d.db", "--query",
                                         "SELECT 'ł' AS né, a FROM t", "--list", "--format", "json"))
        self.assertEqual([v["value"] for v in found["né"]["values"]], ["ł"])
