"""Texts of all alphabets come from every server, and go there, as they are; or they are refused."""

import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

from program import ProgramTest
from servers import MariaDb, Postgres

WORDS = ("ł", "日本", "😀", "é")
VALUES = ", ".join(f"('{word}', {i % 2})" for i, word in enumerate(("B", *WORDS, *WORDS)))


class Texts(ProgramTest):
    @classmethod
    def setUpClass(cls):
        cls.postgres = Postgres()
        cls.addClassCleanup(cls.postgres.stop)
        cls.postgres.sql(f'CREATE TABLE tä (né TEXT, "日😀" INT); INSERT INTO tä VALUES {VALUES}; CREATE DATABASE dä')
        cls.mariadb = MariaDb()
        cls.addClassCleanup(cls.mariadb.stop)
        cls.mariadb.sql(f"CREATE TABLE tä (né VARCHAR(9), 日本 INT) CHARACTER SET utf8mb4; INSERT INTO tä VALUES {VALUES}; "
                        "CREATE DATABASE dä; CREATE TABLE dä.t AS SELECT 1 AS a")
        ansi = cls.postgres.data().replace("PostgreSQL Unicode", "PostgreSQL ANSI")
        cls.sources = {"PostgreSQL": cls.postgres.data(), "PostgreSQL ANSI": ansi,
                       "PostgreSQL ANSI in Latin 1": ansi + ";ConnSettings={SET CLIENT_ENCODING TO 'LATIN1'}",
                       "MariaDB": cls.mariadb.data(), "MariaDB in Latin 1": cls.mariadb.data() + ";charset=latin1"}

    def setUp(self):
        super().setUp()
        self.write("PostgreSQL", self.postgres.password + "\n")
        self.write("MariaDB", self.mariadb.password + "\n")

    def listing(self, name, *arguments):
        done = self.run_program(self.sources[name], "--password-file", name.split()[0], *arguments, "--list", "--format", "json")
        return {variable["name"]: variable for variable in json.loads(done.stdout)["variables"]}

    def test_values_and_names(self):
        for name in self.sources:
            with self.subTest(name):
                for arguments in (("--table", "tä"), ("--query", "SELECT * FROM tä")):
                    found = self.listing(name, *arguments)
                    self.assertEqual([(v["value"], v["count"]) for v in found["né"]["values"]],
                                     [("😀", 2), ("B", 1), ("é", 2), ("ł", 2), ("日本", 2)])

    def test_queries(self):
        for name in self.sources:
            for word in WORDS:
                with self.subTest((name, word)):
                    found = self.listing(name, "--query", f"SELECT né FROM tä WHERE né = '{word}'")
                    self.assertEqual([(v["value"], v["count"]) for v in found["né"]["values"]], [(word, 2)])

    def test_commands_and_messages(self):
        command = "PROPORTIONS /ONESAMPLE né /SUCCESS VALUE=LEVEL('ł' '😀')."
        self.write("d.csv", "né\n" + "".join(f"{word}\n" for word in ("B", *WORDS, *WORDS)))
        expected = self.run_program("d.csv", "-c", command, "--split", "né", "--format", "json").stdout
        for name, data in self.sources.items():
            with self.subTest(name):
                source = (data, "--password-file", name.split()[0])
                for collapse in ("auto", "never"):
                    self.assertEqual(self.run_program(*source, "--table", "tä", "-c", command, "--split", "né", "--collapse", collapse,
                                                      "--format", "json").stdout, expected)
                self.assertIn("nö", self.unusable(*source, "--query", "SELECT nö FROM tä", "-c", command))
                self.assertIn("no table tö日", self.unusable(*source, "--table", "tö日", "-c", command))

    def test_a_driver_of_bytes_by_another_name_opens_no_other_database(self):
        library = next(pathlib.Path("/usr/lib").glob("*/odbc/psqlodbca.so"))
        (self.folder / "renamed.so").symlink_to(library)
        data = self.postgres.data().replace("{PostgreSQL Unicode}", f"{self.folder}/renamed.so")
        source = (data.replace("DATABASE=postgres", "DATABASE=ł"), "--password-file", "PostgreSQL", "--table", "pg_catalog.pg_am")
        self.postgres.sql('CREATE DATABASE "B"')  # what the lower byte of the character says
        self.assertIn("takes no Unicode", self.unusable(*source, "--list"))
        self.sources = {"by another name": data}
        self.write("by", self.postgres.password + "\n")
        self.assertEqual(self.listing("by another name", "--query", "SELECT 'ł' AS né")["né"]["values"][0]["value"], "ł")

    def test_databases(self):
        for name, table in (("PostgreSQL", "pg_catalog.pg_am"), ("PostgreSQL ANSI", "pg_catalog.pg_am"), ("MariaDB", "t")):
            with self.subTest(name):
                data = self.sources[name].replace("DATABASE=postgres", "DATABASE=dä").replace("DATABASE=tests", "DATABASE=dä")
                self.assertIn("dä", data)
                self.run_program(data, "--password-file", name.split()[0], "--table", table, "--list")
