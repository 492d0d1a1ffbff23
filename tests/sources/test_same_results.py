"""One data set from every source gives the same JSON, byte for byte."""

import os
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

import data
from cluster import Cluster
from engine import execute
from program import ProgramTest
from servers import MariaDb, Postgres
from spider import Spider

ODBC_SQLITE = "odbc:DRIVER=SQLite3;Database=d.sqlite"


class SameResults(ProgramTest):
    @classmethod
    def setUpClass(cls):
        cls.made = data.rows()
        cls.postgres = Postgres()
        cls.addClassCleanup(cls.postgres.stop)
        cls.postgres.sql(f"CREATE TABLE d ({data.declared(data.POSTGRES)});\n" + data.inserts(cls.made))
        cls.mariadb = MariaDb()
        cls.addClassCleanup(cls.mariadb.stop)
        cls.mariadb.sql(f"CREATE TABLE d ({data.declared(data.MARIADB)});\n" + data.inserts(cls.made))
        cls.cluster = Cluster()
        cls.addClassCleanup(cls.cluster.stop)
        cls.cluster.fill(cls.made)
        cls.spider = Spider()
        cls.addClassCleanup(cls.spider.stop)
        cls.spider.fill(cls.made)

    def setUp(self):
        super().setUp()
        self.write("d.csv", data.csv_text(self.made))
        data.write_sqlite(self.folder / "d.sqlite", self.made)
        # The engine spells no negative zero and no empty text in CSV as this file does.
        execute([f"CREATE TABLE d ({data.declared(data.POSTGRES).replace(' NUMERIC,', ' NUMERIC(10, 2),').replace('dw NUMERIC', 'dw NUMERIC(10, 2)')})",
                 data.inserts(self.made), f"COPY d TO '{self.folder}/d.parquet'"])
        self.sources = {"Parquet": ("d.parquet",), "SQLite": (ODBC_SQLITE,)}
        for name, server in (("PostgreSQL", self.postgres), ("MariaDB", self.mariadb), ("two servers", self.cluster), ("Spider", self.spider)):
            self.write(name + ".password", server.password + "\n")
            self.sources[name] = (server.data(), "--password-file", name + ".password", "--table", "d")

    def outputs(self, command, options, *others):
        return {name: self.run_program(*source, *others, "-c", command, *options, "--format", "json").stdout
                for name, source in {"CSV": ("d.csv",), **self.sources}.items()}

    def test_all_sources_agree(self):
        for command, options in data.COMMANDS:
            outputs = self.outputs(command, options)
            self.assertIn(b'"tables":[{', outputs["CSV"])
            for name, output in outputs.items():
                self.assertEqual(output, outputs["CSV"], (name, command, options))

    def test_queries_agree_with_tables(self):
        for name in ("SQLite", "PostgreSQL", "two servers"):
            source = list(self.sources[name])
            if "--table" in source:
                del source[-2:]
            for command, options in data.COMMANDS[:4]:
                query = ("--query", "SELECT * FROM d -- all of it;\n;")
                self.assertEqual(self.run_program(*source, *query, "-c", command, *options, "--format", "json").stdout,
                                 self.run_program("d.csv", "-c", command, *options, "--format", "json").stdout, (name, command))

    def test_dictionaries_apply(self):
        self.schema("labels.json", {"name": "yes", "title": "Agrees", "categories": [{"value": 1, "label": "Agreed"}]},
                    {"name": "word", "missingValues": ["no", "YES"]}, {"name": "flag", "type": "boolean"},
                    {"name": "w", "missingValues": ["3"]}, {"name": "region", "type": "string", "categoriesOrdered": True,
                     "categories": [{"value": "south", "label": "South"}, {"value": "north", "label": "North"}, {"value": "east", "label": "East"}]})
        for command, options in (("PROPORTIONS /ONESAMPLE yes word region flag /SUCCESS VALUE=FIRST.", ("--weight", "w")),
                                 ("PROPORTIONS /INDEPENDENTSAMPLES yes BY region SELECT=LEVEL('South' 'East').", ())):
            outputs = self.outputs(command, options, "--schema", "labels.json")
            for name, output in outputs.items():
                self.assertEqual(output, outputs["CSV"], (name, command))


if __name__ == "__main__":
    unittest.main()
