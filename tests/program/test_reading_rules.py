"""Random data, read by the program in every way it has and by the plain reader beside this file.

READING_CASES and READING_SEED make a long run: `READING_CASES=100000 python3 -m unittest test_reading_rules`.
"""

import collections
import datetime
import gzip
import json
import math
import os
import random
import re
import subprocess
import unittest

import generated_data
import plain_reading
from engine import execute
from plain_reading import DAY, MISSING, Refused, Rules
from program import PROGRAM, ProgramTest

CASES = int(os.environ.get("READING_CASES", "50"))
SEED = int(os.environ.get("READING_SEED", "1"))
MOST_LISTED = 20
SHOWN_KINDS = {"text": "string", "zoned": "datetime", "unusable": "number"}


def instant_text(kind, microseconds):
    if kind == "time":
        day, clock = 0, microseconds
    else:
        day, clock = divmod(microseconds, DAY)
    seconds, fraction = divmod(clock, 1_000_000)
    text = f"{seconds // 3600:02}:{seconds // 60 % 60:02}:{seconds % 60:02}" + (f".{fraction:06}".rstrip("0") if fraction else "")
    if kind == "time":
        return text
    # Zones lead beyond the years that the library has; any 400 years are alike.
    date = datetime.date.fromordinal((day + plain_reading.EPOCH - 1) % 146_097 + 1)
    year = date.year + (day + plain_reading.EPOCH - 1) // 146_097 * 400
    shown = f"{year:04}-{date.month:02}-{date.day:02}"
    return shown if kind == "date" else f"{shown} {text}"


def shown(kind, value):
    """As `--list` gives it in JSON."""
    if kind in ("text", "boolean"):
        return value
    if kind == "number":
        return value if math.isfinite(value) else "Infinity" if value > 0 else "-Infinity"
    return instant_text(*value)


def is_user_missing(kind, value, texts):
    for text in texts:
        if kind == "text":
            if value == text.rstrip(" "):
                return True
        elif kind == "boolean":
            if text.lower() == ("true" if value else "false") or text == str(int(value)):
                return True
        elif kind == "number" and (number := plain_reading.number_of(text, ".")) is not None and number[:2] == (value, True):
            return True
    return False


def expected_listing(columns, rules):
    listing = {}
    for name, kind, values in columns:
        missing_texts = rules.user_missing.get(name, ())
        valid = [v for v in values if v is not MISSING and not is_user_missing(kind, v, missing_texts)]
        counts = collections.Counter(valid)
        smallest = sorted(counts) if kind != "text" else list(counts)
        listing[name] = (SHOWN_KINDS.get(kind, kind), {shown(kind, v): counts[v] for v in smallest}, len(values) - len(valid))
    return listing


def differences(listing, expected):
    """Where a listing is not what it should be."""
    found = []
    if [v["name"] for v in listing] != list(expected):
        return [f"names {[v['name'] for v in listing]} for {list(expected)}"]
    for variable in listing:
        kind, counts, missing = expected[variable["name"]]
        values = {v["value"]: v["count"] for v in variable["values"]}
        smallest = dict(list(counts.items())[:MOST_LISTED])
        same = values == smallest if kind != "string" else len(values) == len(smallest) and values.items() <= counts.items()
        unusable = kind == "number" and not counts and not missing and not values
        if variable["kind"] != kind or not same or (variable["missing"] != missing and not unusable):
            found.append(f"{variable['name']}: {variable['kind']} {values} {variable['missing']} for {kind} {smallest} {missing}")
    return found


ENGINE_TYPES = {"number": "DOUBLE", "boolean": "BOOLEAN", "date": "DATE", "time": "TIME", "datetime": "TIMESTAMP",
                "zoned": "TIMESTAMPTZ", "text": "VARCHAR"}


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def engine_value(kind, value):
    """A value in SQL."""
    if value is MISSING:
        return "NULL"
    if kind == "text":
        return "'" + value.replace("'", "''") + "'"
    if kind == "number":
        return f"'{value!r}'::DOUBLE"
    if kind == "boolean":
        return str(bool(value))
    if kind == "time":
        return f"TIME '{instant_text(*value)}'"
    return f"make_timestamp({value[1]})::{ENGINE_TYPES[kind]}"


class ReadingRules(ProgramTest):

    def listing(self, *arguments, stdin=b""):
        """(variables, nothing) or (nothing, message)."""
        done = subprocess.run([PROGRAM, *arguments, "--list", "--format", "json"], cwd=self.folder, input=stdin, capture_output=True, timeout=600)
        if done.returncode == 0:
            self.assertEqual(done.stderr, b"", arguments)
            return json.loads(done.stdout)["variables"], None
        self.assertEqual((done.returncode, done.stdout), (2, b""), (arguments, done.stderr))
        return None, done.stderr.decode()

    def check(self, seed, expected, refusal, ways, with_lines=("plain",)):
        for way, (arguments, stdin) in ways.items():
            variables, message = self.listing(*arguments, stdin=stdin)
            where = f"seed {seed}, {way}: {arguments}"
            if refusal is not None:
                self.assertIsNotNone(message, f"{where}: should be refused in lines {refusal.lines}")
                if way in with_lines and refusal.lines:
                    lines = [int(n) for n in re.findall(r"line (\d+)", message)]
                    self.assertIn(lines[0] if lines else None, refusal.lines, f"{where}: {message}")
                continue
            self.assertIsNone(message, f"{where}: {message}")
            self.assertEqual(differences(variables, expected), [], where)

    def dictionary(self, rules, names, generator):
        """Gives some columns a type or missing values; the options that say so."""
        fields = []
        for name in names:
            if not name or generator.random() < .6:
                continue
            entry = {"name": name}
            if generator.random() < .5:
                rules.types[name] = entry["type"] = generator.choice(list(plain_reading.TYPE_KINDS))
            if generator.random() < .5:
                rules.user_missing[name] = generator.sample(["9", "x", "-", "NA", "1", "12", "no"], 2)
                entry["missingValues"] = rules.user_missing[name]
            fields.append(entry)
        self.write("fields.json", json.dumps({"fields": fields}))
        return ["--schema", "fields.json"]

    def options(self, rules, names, generator):
        options = []
        if generator.random() < .15:
            rules.missing, rules.missing_given = tuple(generator.sample(["NA", "-", "9", "a", "n/a", "null", "1.0"], 2)), True
            options += ["--na", ",".join(rules.missing)]
        if generator.random() < .2:
            options += self.dictionary(rules, names, generator)
        return options

    def test_delimited_texts(self):
        for seed in range(SEED, SEED + CASES):
            with self.subTest(seed=seed):
                self.delimited(seed)

    def delimited(self, seed):
        generator = random.Random(seed)
        records, delimiter = generated_data.delimited(generator)
        data = b"".join(records)
        if generator.random() < .3:
            data = data.rstrip(b"\r\n")
        if generator.random() < .1:
            data = b"\xEF\xBB\xBF" + data
        whole = generator.random() < .7
        if not whole:
            data = generated_data.corrupted(generator, data)
        rules, options = Rules(), []
        given = None
        if generator.random() < .3:
            given = generator.choice((delimiter, delimiter, ","))
            options += ["--delimiter", "tab" if given == "\t" else given]
        if generator.random() < .15 and given != ",":
            rules.decimal = ","
            options += ["--decimal", ","]
        expected = refusal = columns = None
        options += self.options(rules, self.names(data, rules.decimal, given), generator)
        try:
            columns = plain_reading.read_delimited(data, rules, given)
            expected = expected_listing(columns, rules)
        except Refused as refused:
            refusal = refused
        self.write("d.csv", data)
        self.write("d.csv.gz", gzip.compress(data, 1))
        ways = {"plain": (["d.csv", *options], b""), "compressed": (["d.csv.gz", *options], b""), "standard input": (["-", *options], data),
                "counted": (["d.csv", "--collapse", "always", *options], b""), "not counted": (["d.csv", "--collapse", "never", *options], b"")}
        if encoded := self.encoded(data, generator):
            ways["encoded"] = (["encoded.csv", "--encoding", encoded, *options], b"")
        if whole and given == delimiter and len(records) > 2:
            ways["parts"] = (self.parts(records, generator, delimiter) + options, b"")
        if columns and not rules.user_missing and generator.random() < .1:
            ways["parquet"] = (self.parquet(columns, generator), b"")
        self.check(seed, expected, refusal, ways, ("plain", "compressed", "standard input", "encoded"))

    def encoded(self, data, generator):
        """Writes the same text in another encoding; its name, or nothing where there is none."""
        encoding = generator.choice(("UTF-16", "UTF-16LE", "UTF-32BE", "ISO-8859-1", "windows-1252", "GB18030"))
        try:
            self.write("encoded.csv", data.decode("utf-8-sig").encode(encoding))
        except UnicodeError:
            return None
        return encoding

    def parquet(self, columns, generator):
        """The same values from a typed source, in one file or in two."""
        rows = len(columns[0][2])
        made = ", ".join(f"{quoted(name)} {ENGINE_TYPES[kind]}" for name, kind, _ in columns)
        values = ["(" + ", ".join(engine_value(kind, column[row]) for _, kind, column in columns) + ")" for row in range(rows)]
        folder = self.folder / "parquet"
        folder.mkdir(exist_ok=True)
        cut = generator.choice((0, rows // 2))
        copies = [f"COPY (SELECT * EXCLUDE (number) FROM t WHERE number {side} {cut} ORDER BY number) TO '{folder}/{part}.parquet' (FORMAT parquet)"
                  for part, side in enumerate((">=", "<"))]
        execute([f"CREATE TABLE t ({made}, number INTEGER)",
                 *[f"INSERT INTO t VALUES {value[:-1]}, {number})" for number, value in enumerate(values)], *copies])
        return ["parquet"]

    def names(self, data, decimal, given):
        """The names that a dictionary may speak of: none where the data are refused."""
        try:
            return [name for name, _, _ in plain_reading.read_delimited(data, Rules(decimal=decimal), given)]
        except Refused:
            return []

    def parts(self, records, generator, delimiter):
        """The records in several files of a folder."""
        folder = self.folder / "parts"
        for old in folder.glob("*") if folder.exists() else ():
            old.unlink()
        folder.mkdir(exist_ok=True)
        begin, number = 1, 0
        while begin < len(records):
            end = begin + generator.choice((0, 1, 5, 50))
            (folder / f"{number:04}.csv").write_bytes(b"".join((records[0], *records[begin:end])))
            begin, number = end, number + 1
        return ["parts"]

    def test_json(self):
        for seed in range(SEED, SEED + CASES):
            with self.subTest(seed=seed):
                self.json(seed)

    def json(self, seed):
        generator = random.Random(seed)
        records = generated_data.json_records(generator)
        array = ("[" + ",\n".join(records) + "]").encode()
        lines = "".join(record + "\n" for record in records).encode()
        if generator.random() < .2:
            lines = generated_data.corrupted(generator, lines)
            array = lines if generator.random() < .5 else generated_data.corrupted(generator, array)
        rules = Rules()
        options = self.options(rules, [], generator)
        for form, data in (("d.json", array), ("d.jsonl", lines)):
            expected = refusal = None
            try:
                expected = expected_listing(plain_reading.read_json(data, rules), rules)
            except Refused as refused:
                refusal = refused
            self.write(form, data)
            self.write(form + ".gz", gzip.compress(data, 1))
            self.check(seed, expected, refusal, {"plain": ([form, *options], b""), "compressed": ([form + ".gz", *options], b""),
                                                 "not counted": ([form, "--collapse", "never", *options], b"")}, ())


if __name__ == "__main__":
    unittest.main()
