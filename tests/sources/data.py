"""One data set with all kinds of columns, as every source takes it."""

import random
import sqlite3

CASES = 2000
WORDS = ("Yes", "yes", "YES", "no", "é", "ß", "zäh", "a b", "x'y", 'q"r', "", "ab  ", " ab", "2024-01-07", "12", None)
# Name, values, and the types of PostgreSQL, MariaDB and SQLite.
COLUMNS = (
    ("yes", (0, 1, 1, None), "SMALLINT", "SMALLINT", "INTEGER"),
    ("flag", (True, False, None), "BOOLEAN", "BOOLEAN", "BOOLEAN"),
    ("word", WORDS, "TEXT", "TEXT", "TEXT"),
    ("region", ("north", "south", "east"), "VARCHAR(10)", "VARCHAR(10)", "VARCHAR(10)"),
    ("score", (0.1, 0.30000000000000004, 1e300, -2.5, 1 / 3, -0.0, 0.0, None), "DOUBLE PRECISION", "DOUBLE", "DOUBLE"),
    ("amount", ("0.10", "12.30", "-4.50", None), "NUMERIC(8, 2)", "DECIMAL(8, 2)", "DECIMAL(8, 2)"),
    ("big", (9007199254740992, -7, 0, 1 << 60, None), "BIGINT", "BIGINT", "BIGINT"),
    ("day", ("2024-01-07", "1969-12-31", "0001-01-01", None), "DATE", "DATE", "DATE"),
    ("clock", ("00:00:00", "23:59:59.999999", "10:30:00", None), "TIME", "TIME(6)", "TIME"),
    ("moment", ("2024-01-07 10:00:00", "1969-12-31 23:59:59.5", None), "TIMESTAMP", "DATETIME(6)", "DATETIME"),
    ("w", (0.4, 1, 2.5, 3, 0.5, 0.123456, 0.333333, -1, None), "DOUBLE PRECISION", "DOUBLE", "DOUBLE"),
    ("dw", ("0.45", "1.50", "7.00", None), "NUMERIC", "DECIMAL(20, 2)", "NUMERIC"),
)
NAMES = [column[0] for column in COLUMNS]
TEXTS = ("word", "region")
POSTGRES, MARIADB, SQLITE = 2, 3, 4

COMMANDS = (
    ("PROPORTIONS /ONESAMPLE yes TESTTYPES=ALL CITYPES=ALL.", ()),
    ("PROPORTIONS /ONESAMPLE word score amount big day clock moment flag /SUCCESS VALUE=LAST.", ()),
    ("PROPORTIONS /ONESAMPLE word score amount day flag /SUCCESS VALUE=FIRST.", ("--weight", "w", "--split", "word")),
    ("PROPORTIONS /INDEPENDENTSAMPLES yes BY region SELECT=LEVEL('north' 'south') TESTTYPES=ALL CITYPES=ALL.",
     ("--split", "word,flag", "--weight", "w")),
    ("PROPORTIONS /INDEPENDENTSAMPLES flag BY score SELECT=CUTPOINT(0.2).", ("--weight", "dw", "--split", "region")),
    ("PROPORTIONS /PAIREDSAMPLES yes WITH flag (PAIRED).", ("--split", "day,moment", "--weight", "w", "--collapse", "never")),
    ("PROPORTIONS /ONESAMPLE word /SUCCESS VALUE=LEVEL('yes' 'é').", ("--weight", "amount")),
    ("PROPORTIONS /ONESAMPLE yes.", ("--weight", "score")),
    ("PROPORTIONS /ONESAMPLE yes.", ("--weight", "big", "--collapse", "always")),
    ("PROPORTIONS /ONESAMPLE yes flag /SUCCESS VALUE=LEVEL(1).", ("--bootstrap", "20", "--seed", "7")),
)


def rows(cases=CASES):
    generator = random.Random(16)
    return [[generator.choice(column[1]) for column in COLUMNS] for _ in range(cases)]


def csv_field(name, value):
    if value is None:
        return ""
    if name in TEXTS:
        return '"' + value.replace('"', '""') + '"'
    return str(value).lower() if isinstance(value, bool) else repr(value) if isinstance(value, float) else str(value)


def csv_text(made):
    lines = [",".join(csv_field(name, value) for name, value in zip(NAMES, row)) for row in made]
    return "\n".join([",".join(NAMES), *lines]) + "\n"


def literal(value):
    if value is None:
        return "NULL"
    if isinstance(value, bool):
        return str(value).upper()
    if isinstance(value, str):
        return "'" + value.replace("'", "''") + "'"
    return repr(value)


def declared(kind, names=NAMES):
    return ", ".join(f"{column[0]} {column[kind]}" for column in COLUMNS if column[0] in names)


def inserts(made, table="d"):
    values = ",\n".join("(" + ", ".join(map(literal, row)) + ")" for row in made)
    return f"INSERT INTO {table} VALUES {values};\n"


def write_sqlite(path, made):
    with sqlite3.connect(path) as database:
        database.execute(f"CREATE TABLE d ({declared(SQLITE)})")
        database.executemany(f"INSERT INTO d VALUES ({', '.join('?' for _ in COLUMNS)})", made)
