"""Cases that come one by one take bounded memory, whatever the driver would hold."""

import json
import os
import pathlib
import sqlite3
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

from program import PROGRAM, ProgramTest, cells, table
from servers import MariaDb, Postgres

WIDTH = 8_000  # bytes of a text
# Few different texts, so that what the program itself keeps of them is little.
COLUMNS = f"repeat(CAST(i % 7 AS CHAR(1)), {WIDTH}) AS x, i % 70 AS y"
MIB = 1 << 20


class Memory(ProgramTest):
    def read_case_by_case(self, data, cases, most, password=""):
        """Reads a table, with a bound on the memory of the run, and finds how often the last x and the last y occur."""
        command = "PROPORTIONS /ONESAMPLE x y CITYPES=WALD TESTTYPES=NONE."
        with open(self.folder / "out.json", "wb") as out, open(self.folder / "err.txt", "w+b") as err:
            running = subprocess.Popen([PROGRAM, data, "--table", "d", "-c", command, "--format", "json", "--collapse", "never"], cwd=self.folder,
                                       stdout=out, stderr=err, env={**os.environ, "PROPORTIONS_ODBC_PASSWORD": password})
            _, status, used = os.wait4(running.pid, 0)
            running.returncode = os.waitstatus_to_exitcode(status)
            err.seek(0)
            self.assertEqual(running.returncode, 0, err.read())
        self.assertLess(used.ru_maxrss * 1024, most)
        procedure = json.loads((self.folder / "out.json").read_bytes())["procedures"][0]
        self.assertEqual(procedure["cases"]["read"], cases)
        return sorted(value for path, value in cells(table(procedure, "Intervals")).items() if path[-1][-1] == "Successes")

    def test_rows_of_sqlite_come_one_by_one(self):
        with sqlite3.connect(self.folder / "d.db") as database:
            database.create_function("repeat", 2, lambda text, times: text * times)
            database.execute(f"CREATE TABLE d AS SELECT {COLUMNS} FROM (WITH RECURSIVE s(i) AS "
                             "(SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < 21000) SELECT i FROM s)")
        self.assertEqual(self.read_case_by_case(f"odbc:DRIVER=SQLite3;Database={self.folder}/d.db", 21_000, 80 * MIB), [300, 3000])

    def test_rows_of_postgresql_come_by_a_cursor(self):
        server = Postgres()
        self.addCleanup(server.stop)
        server.sql(f"CREATE TABLE d AS SELECT {COLUMNS} FROM generate_series(1, 21000) AS s(i)")
        self.assertEqual(self.read_case_by_case(server.data(), 21_000, 80 * MIB, server.password), [300, 3000])

    def test_rows_of_mariadb_come_in_parts(self):
        server = MariaDb()
        self.addCleanup(server.stop)
        server.sql(f"CREATE TABLE d AS SELECT {COLUMNS} FROM (SELECT seq AS i FROM seq_1_to_28000) AS s")
        self.assertEqual(self.read_case_by_case(server.data(), 28_000, 210 * MIB, server.password), [400, 4000])
        # Equal cases are in one part, which is too large to come as it is.
        server.sql("DROP TABLE d; CREATE TABLE d AS SELECT 1 AS x, 2 AS y FROM seq_1_to_1500000")
        self.assertEqual(self.read_case_by_case(server.data(), 1_500_000, 60 * MIB, server.password), [1_500_000, 1_500_000])
