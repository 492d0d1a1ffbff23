"""What can go wrong with a server ends in a message that helps, exit status 2 and no table."""

import json
import os
import pathlib
import pty
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

from program import PROGRAM, ProgramTest, value
from servers import MariaDb, Postgres, Wire, free_port

COMMAND = "PROPORTIONS /ONESAMPLE x."
MANY = 150_000


class Servers(ProgramTest):
    @classmethod
    def setUpClass(cls):
        cls.postgres = Postgres()
        cls.addClassCleanup(cls.postgres.stop)
        cls.mariadb = MariaDb()
        cls.addClassCleanup(cls.mariadb.stop)
        cls.postgres.sql(f"CREATE TABLE many AS SELECT i % 2 AS x, repeat('a', 30) || i AS word FROM generate_series(1, {MANY}) AS i;"
                         "CREATE TABLE patients (x int, y int); INSERT INTO patients VALUES (0, 1), (1, 1);")
        cls.mariadb.sql(f"CREATE TABLE many AS SELECT seq % 2 AS x, concat(repeat('a', 30), seq) AS word FROM seq_1_to_{MANY};"
                        "CREATE TABLE patients (x int, y int); INSERT INTO patients VALUES (0, 1), (1, 1);")
        cls.servers = {"PostgreSQL": cls.postgres, "MariaDB": cls.mariadb}

    def setUp(self):
        super().setUp()
        for name, server in self.servers.items():
            self.write(name, server.password + "\n")

    def source(self, name, *arguments, port=None):
        return (self.servers[name].data(port), "--password-file", name, *arguments)

    def say(self, name, *arguments, **options):
        """What the program says of a source that it cannot read."""
        return self.unusable(*self.source(name, *arguments, **options), "-c", COMMAND)

    def query(self, name, sql, *arguments, command=COMMAND, status=0):
        return self.procedure(command, *self.source(name, "--query", sql), *arguments, status=status)

    def active(self, server):
        """Whether a statement runs that sleeps."""
        if server is self.postgres:
            return server.sql("SELECT count(*) FROM pg_stat_activity WHERE state = 'active' AND query LIKE '%pg_sleep(%' AND pid <> pg_backend_pid()").strip() != "0"
        return server.sql("SELECT count(*) FROM information_schema.PROCESSLIST WHERE COMMAND <> 'Sleep' AND INFO LIKE '%SLEEP(%' AND ID <> CONNECTION_ID()").strip() != "0"


class Connecting(Servers):
    def test_a_wrong_password_is_not_shown(self):
        for name, server in self.servers.items():
            self.write("wrong", "falsches-geheimnis\n")
            told = self.unusable(server.data(), "--password-file", "wrong", "--table", "patients", "-c", COMMAND)
            self.assertIn("--password-file", told)
            self.assertNotIn("falsches-geheimnis", told)

    def test_the_environment_has_the_password(self):
        for server in self.servers.values():
            done = subprocess.run([PROGRAM, server.data(), "--table", "patients", "-c", COMMAND], capture_output=True,
                                  env={**os.environ, "PROPORTIONS_ODBC_PASSWORD": server.password})
            self.assertEqual(done.returncode, 0, done.stderr)

    def test_a_terminal_is_asked_without_echo(self):
        for server in self.servers.values():
            child, terminal = pty.fork()
            if child == 0:
                os.execv(PROGRAM, [PROGRAM, server.data(), "--table", "patients", "-c", COMMAND])
            told = b""
            while b"Password of the server: " not in told:
                told += os.read(terminal, 1000)
            time.sleep(0.2)
            os.write(terminal, server.password.encode() + b"\n")
            try:
                while more := os.read(terminal, 10000):
                    told += more
            except OSError:
                pass  # the terminal is closed at the other end
            self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), 0, told)
            self.assertIn(b"Wilson Score", told)
            self.assertNotIn(server.password.encode(), told)

    def test_a_server_that_is_not_there(self):
        for name in self.servers:
            self.assertIn("cannot be reached", self.say(name, "--table", "patients", port=free_port()))

    def test_a_file_that_is_not_there_is_not_made(self):
        self.assertIn("cannot be reached", self.unusable("odbc:DRIVER=SQLite3;Database=none.db", "-c", COMMAND))
        self.assertFalse((self.folder / "none.db").exists())

    def test_a_connection_lost_half_way_shows_no_table(self):
        for name, server in self.servers.items():
            for options in (("--collapse", "never"), ("--split", "word")):
                wire = Wire(server.port, break_after=1_000_000)
                self.addCleanup(wire.close)
                done = self.run_program(*self.source(name, "--table", "many", port=wire.port), *options, "-c", COMMAND, "--format", "json", status=2)
                self.assertEqual(json.loads(done.stdout)["procedures"][0]["tables"], [], (name, options))
                self.assertIn(b"the server says", done.stdout + done.stderr)
                self.assertGreater(wire.received, 1_000_000)


class Finding(Servers):
    def test_tables_near_the_name(self):
        for name in self.servers:
            self.assertIn("Did you mean patients?", self.say(name, "--table", "patient"))
            self.assertIn("name one with --table", self.say(name))
            self.procedure(COMMAND, *self.source(name, "--table", "PATIENTS"))

    def test_columns_near_the_name(self):
        for name in self.servers:
            done = self.procedure("PROPORTIONS /ONESAMPLE xx.", *self.source(name, "--table", "patients"), status=1)
            self.assertIn("xx", done["messages"][0]["text"])
            self.assertIn("did you mean", self.say(name, "--table", "patients", "--weight", "yy"))

    def test_a_query_is_one_that_selects(self):
        for name in self.servers:
            for sql in ("DELETE FROM patients", "SELECT 1 AS x; DROP TABLE patients", "SELECT 1 AS x) AS a; DROP TABLE patients; --"):
                self.assertIn("one SELECT", self.say(name, "--query", sql))
            self.assertRegex(self.say(name, "--query", "SELECT 1 AS x, 2 AS x"), "both named|Duplicate")
            self.assertIn("the server says", self.say(name, "--query", "SELECT nothing FROM patients"))

    def test_a_query_changes_nothing(self):
        self.postgres.sql("CREATE SEQUENCE IF NOT EXISTS numbers")
        done = self.query("PostgreSQL", "SELECT nextval('numbers') AS x", status=2)
        self.assertIn("read-only", json.dumps(done))


class Waiting(Servers):
    def test_an_interruption_cancels_the_statement_at_the_server(self):
        sleeping = {"PostgreSQL": "SELECT CASE WHEN pg_sleep(50) IS NULL THEN 0 ELSE 1 END AS x", "MariaDB": "SELECT SLEEP(50) AS x FROM patients"}
        for name, server in self.servers.items():
            running = subprocess.Popen([PROGRAM, *self.source(name, "--query", sleeping[name]), "-c", COMMAND, "--progress", "always"],
                                       cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            end = time.monotonic() + 30
            while not self.active(server) and time.monotonic() < end:
                time.sleep(0.1)
            self.assertTrue(self.active(server), name)
            time.sleep(1)  # for a line of progress
            begun = time.monotonic()
            running.send_signal(signal.SIGINT)
            out, err = running.communicate(timeout=30)
            self.assertLess(time.monotonic() - begun, 10)
            self.assertEqual((running.returncode, out), (2, b""), err)
            self.assertIn(b"waiting for the server: ", err)
            while self.active(server) and time.monotonic() - begun < 20:
                time.sleep(0.1)
            self.assertFalse(self.active(server), name)

    def test_statements_are_explained_without_reading(self):
        for name, sql in (("PostgreSQL", "SELECT CASE WHEN pg_sleep(50) IS NULL THEN 0 ELSE 1 END AS x"), ("MariaDB", "SELECT SLEEP(50) AS x FROM patients")):
            told = self.run_program(*self.source(name, "--query", sql), "--explain", "-c", COMMAND).stdout.decode()
            self.assertIn("GROUP BY", told)
            self.assertIn("READ ONLY", told)
            self.assertTrue(told.endswith(";\n"))
            self.assertNotIn(self.servers[name].password, told)


class Values(Servers):
    def test_numbers_that_no_double_holds_are_refused(self):
        for name, sql in (("PostgreSQL", "SELECT 9007199254740993 AS x"), ("MariaDB", "SELECT 9007199254740993 AS x"),
                          ("PostgreSQL", "SELECT CAST(0.1 AS NUMERIC(30, 25)) AS x"), ("MariaDB", "SELECT CAST(0.1 AS DECIMAL(30, 25)) AS x"),
                          ("PostgreSQL", "SELECT DATE 'infinity' AS x"), ("PostgreSQL", "SELECT TIME '24:00' AS x"),
                          ("MariaDB", "SELECT CAST('0000-00-00' AS DATE) AS x")):
            told = json.dumps(self.query(name, sql, status=2))
            self.assertIn("query", told, (name, sql))

    def test_types_without_a_meaning_are_refused_when_named(self):
        for name, sql in (("PostgreSQL", "SELECT '\\x00'::bytea AS x, 1 AS y"), ("PostgreSQL", "SELECT ARRAY[1, 2] AS x, 1 AS y"),
                          ("PostgreSQL", "SELECT INTERVAL '1 day' AS x, 1 AS y"), ("MariaDB", "SELECT CAST('a' AS BINARY) AS x, 1 AS y")):
            self.query(name, sql, status=1)
            self.query(name, sql, command="PROPORTIONS /ONESAMPLE y.")

    def test_enumerations_are_ordered_categories(self):
        self.postgres.sql("CREATE TYPE mood AS ENUM ('low', 'high'); CREATE TABLE moods (x mood); INSERT INTO moods VALUES ('high'), ('low'), ('low'), (NULL)")
        self.mariadb.sql("CREATE TABLE moods (x ENUM('low', 'high')); INSERT INTO moods VALUES ('high'), ('low'), ('low'), (NULL)")
        for name in self.servers:
            done = self.procedure("PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LEVEL('low').", *self.source(name, "--table", "moods"))
            self.assertEqual(value(done, "Intervals", "Wilson Score", "Successes"), 2)
            self.assertIn('"values": [1]', json.dumps(done))

    def test_moments_with_zones_are_utc(self):
        done = self.query("PostgreSQL", "SELECT TIMESTAMPTZ '2024-01-07 10:00+02' AS x UNION ALL SELECT TIMESTAMPTZ '1880-01-01 00:00 Europe/Amsterdam'",
                          command="PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LAST.")
        self.assertIn("2024-01-07 08:00:00", json.dumps(done))

    def test_domains_uuids_and_padded_texts(self):
        self.postgres.sql("CREATE DOMAIN share AS numeric(4, 2); CREATE TABLE odd (x share, id uuid, c char(5), j json);"
                          "INSERT INTO odd VALUES (0.5, '00000000-0000-0000-0000-000000000001', 'a', '{}'), (0.5, NULL, 'a', '{}')")
        done = self.procedure("PROPORTIONS /ONESAMPLE x id c j /SUCCESS VALUE=FIRST.", *self.source("PostgreSQL", "--table", "odd"))
        shown = json.dumps(done)
        for text in ("0.5", "00000000-0000-0000-0000-000000000001", "c = a\"", "{}"):
            self.assertIn(text, shown)

    def test_equal_texts_of_an_odd_collation_stay_apart(self):
        self.postgres.sql("CREATE COLLATION folded (provider = icu, locale = 'und-u-ks-level2', deterministic = false);"
                          "CREATE TABLE words (x text COLLATE folded); INSERT INTO words VALUES ('Yes'), ('yes'), ('yes')")
        done = self.procedure("PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LEVEL('yes').", *self.source("PostgreSQL", "--table", "words"))
        self.postgres.sql("DROP TABLE words; DROP COLLATION folded")
        self.assertEqual(value(done, "Intervals", "Wilson Score", "Successes"), 2)

    def test_columns_of_sqlite_hold_what_they_like(self):
        import sqlite3
        with sqlite3.connect(self.folder / "d.db") as database:
            database.execute("CREATE TABLE d (x INTEGER, y BLOB, z, d DATE, t TEXT COLLATE NOCASE)")
            database.executemany("INSERT INTO d VALUES (?, ?, ?, ?, ?)", [(1, 1, 1.5, "2024-01-07", "A"), ("many", b"a", "x", None, "a"), (0, None, None, "2024-01-08", "a")])
            database.execute("CREATE TABLE n (x TEXT)")
            database.execute("INSERT INTO n VALUES ('a' || char(0) || 'b')")
        source = ("odbc:DRIVER=SQLite3;Database=d.db", "--table", "d")
        done = self.procedure("PROPORTIONS /ONESAMPLE x z d t /SUCCESS VALUE=LAST.", *source)
        shown = json.dumps(done)
        for label in ("x = many", "z = x", "d = 2024-01-08", "t = A"):
            self.assertIn(label, shown)
        self.procedure("PROPORTIONS /ONESAMPLE y.", *source, status=1)
        self.assertIn("NUL", json.dumps(self.procedure(COMMAND, "odbc:DRIVER=SQLite3;Database=d.db", "--table", "n", status=2)))
        done = self.procedure("PROPORTIONS /ONESAMPLE a b.", "odbc:DRIVER=SQLite3;Database=d.db", "--query", "SELECT count(*) AS a, 0.1 + 0.2 AS b FROM d GROUP BY t")
        self.assertIn("b = 0.30000000000000004", json.dumps(done))


class Cost(Servers):
    def test_combinations_come_and_not_cases(self):
        for name, server in self.servers.items():
            wire = Wire(server.port)
            self.addCleanup(wire.close)
            done = self.run_program(*self.source(name, "--table", "many", port=wire.port), "-c", COMMAND, "--progress", "always")
            self.assertIn(b"from the server: 2 rows", done.stderr)
            self.assertLess(wire.received, 100_000, name)

    def test_too_many_combinations_come_as_cases(self):
        self.postgres.sql("CREATE TABLE wide AS SELECT i % 3 = 0 AS x, i AS n FROM generate_series(1, 210000) AS i")
        self.write("d.csv", "x,n\n" + "".join(f"{'true' if i % 3 == 0 else 'false'},{i}\n" for i in range(1, 210001)))
        command = "PROPORTIONS /INDEPENDENTSAMPLES x BY n SELECT=CUTPOINT(1000)."
        done = self.run_program(*self.source("PostgreSQL", "--table", "wide"), "-c", command, "--format", "json", "--progress", "always")
        self.assertEqual(done.stdout, self.run_program("d.csv", "-c", command, "--format", "json").stdout)
        self.assertIn(b"from the server: 410001 rows", done.stderr)
