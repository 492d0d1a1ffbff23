"""Data as nasty as they come, from a generator of random numbers."""

import json

NUMBERS = ["0", "1", "-1", "+1", "1.0", "1.", ".5", "-.5e-3", "1e+05", "1E5", "007e1", "0.1", "9007199254740992", "-0", "0e0",
           "1e308", "4e-324", "1e-400", "123456789.123456789", "1e22", "1e23", "9007199254740993.0", "2", "3", "12"]
ODD_NUMBERS = ["9007199254740993", "99999999999999999999", "1e999", "-1e999", "1.5e400", "01", "-01", "00", "1_000", "1,000", "0x10", "1e",
               "1e+", ".", "+", "-", "+-1", "--1", "1..2", "1.2.3", "e5", "1f", "1d0", "\u0661", "1\u00a0", "\u22121", "1,5", "0,5", "1e5.0"]
SPECIAL = ["nan", "NaN", "NAN", "-nan", "+nan", "inf", "-inf", "+Inf", "INFINITY", "-Infinity", "infinit", "in"]
BOOLEANS = ["true", "TRUE", "True", "false", "FALSE", "tRuE", "t", "yes", "0", "1"]
DATES = ["2024-01-31", "2024-02-29", "0001-01-01", "9999-12-31", "2000-02-29", "1969-12-31"]
ODD_DATES = ["2023-02-29", "1900-02-29", "2024-13-01", "2024-1-01", "0000-01-01", "10000-01-01", "24-01-31", "2024/01/31", "2024-01-31Z",
             "2024-00-10", "2024-01-00", "-2024-01-01", "+2024-01-01", "20240131", "2024-01-31 "]
TIMES = ["00:00", "23:59", "23:59:59", "12:30:00.5", "12:30:00.000001", "12:30:00.0000010", "23:59:59.999999", "08:15:30.100"]
ODD_TIMES = ["24:00", "23:60", "23:59:60", "1:00", "12:30:00.", "12:30:00.0000001", "12:30:00,5", "10:00 PM", "12:3", "12:30:5", "T12:30"]
ZONES = ["Z", "+00", "+01:00", "-0530", "+15:59", "-15:59", "+1559", "+16:00", "+01:60", "z", "+1", "+010", "+01:0", " Z", "+01:00:00", "-00:00"]
WORDS = ["a", "b", "A", "x y", "x  ", "  x", "\u00e4", "a\u0308", "\u00c4", "5\" pipe", "\"", "\"\"", "it's", "a,b", "a;b", "a|b", "a\tb", "a\nb", "a\r\nb",
         "a\rb", "\ufeff", "\u2028", "\U0001f600", "unknown", "NULL", "null", "None", "n/a", "x" * 300, "=1+1", "\x07", "\x7f", "\x1a"]
BLANKS = ["", " ", "\t", "  \t "]
MISSING = ["NA", "NA ", "na", "N/A", "-", " NA"]
NAMES = ["a", "b", "c", "d", "\u00e4", "x y", "n,1", "2", "\"q\"", "e\nf", "id", "w|w", "g;h"]


def moments(random):
    text = random.choice(DATES * 3 + ODD_DATES[:2]) + random.choice("T  T_") + random.choice(TIMES + ODD_TIMES[:2])
    return text + (random.choice(ZONES) if random.random() < .5 else "")


def pools(random):
    """What the fields of one column are drawn from, most of the time."""
    return random.choice([NUMBERS, NUMBERS[:6], ["0", "1"], NUMBERS + SPECIAL[:3], NUMBERS + SPECIAL, BOOLEANS[:6], BOOLEANS, DATES, DATES + ODD_DATES[:3],
                          TIMES, TIMES + ODD_TIMES[:2], [moments(random) for _ in range(4)], WORDS, ["no", "yes"], NUMBERS + ODD_NUMBERS, BLANKS,
                          ["NA"], ["2024-05-01T10:00", "2024-05-01 10:00:00", "2024-05-01T11:00:00.25"],
                          ["2024-05-01T10:00Z", "2024-05-01 12:00:00+02", "2024-05-01T11:00:00.25-0100", "0001-01-01T00:00+01", "9999-12-31T23:00-05:00"],
                          [str(random.randrange(-50, 50)) for _ in range(40)], [f"{random.uniform(-9, 9):.{random.randrange(18)}g}" for _ in range(30)],
                          [str(random.getrandbits(random.randrange(1, 80))) for _ in range(5)]])


EVERYTHING = [*NUMBERS, *ODD_NUMBERS, *SPECIAL, *BOOLEANS, *DATES, *ODD_DATES, *TIMES, *ODD_TIMES, *WORDS, *BLANKS, *MISSING]


def field(random, pool):
    chance = random.random()
    if chance < .05:
        return random.choice(MISSING[:1] * 5 + MISSING)
    if chance < .1:
        return random.choice(BLANKS)
    if chance < .105:
        return random.choice(EVERYTHING)
    if chance < .11:
        return moments(random)
    return random.choice(pool)


def texts(random):
    """(names, rows of texts)."""
    columns = random.choice((1, 1, 2, 2, 3, 4, 7))
    names = random.sample(NAMES, columns)
    if random.random() < .05:
        names[random.randrange(columns)] = random.choice(("", "A", " a ", names[0]))
    made = [pools(random) for _ in names]
    rows = random.choice((0, 1, 2, 3, 10, 30, 99, 100, 101, 150))
    return names, [[field(random, pool) for pool in made] for _ in range(rows)]


def spelt(random, text, delimiter):
    """A field with its quotes, where it needs them, or just because."""
    needed = any(c in text for c in (delimiter, "\n", "\r")) or text.lstrip(" \t").startswith('"') or text != text.strip(" \t")
    if needed and random.random() < .99 or random.random() < .1:
        return random.choice(("", "", " ")) + '"' + text.replace('"', '""') + '"' + random.choice(("", "", " "))
    return random.choice(("", "", "", "", " ")) + text + random.choice(("", "", "", "", " "))


def corrupted(random, data):
    """The bytes with something wrong in them, often."""
    at = random.randrange(len(data) + 1)
    what = random.choice((b'"', b"\n", b"\r", b",", b";", b"\t", b"\0", b"\xff", b"\xc3", b"\xed\xa0\x80", b'""', b' "', b'" ', b"\n\n", b"\n \t\n", b"1"))
    if random.random() < .3:
        return data[:at]
    if random.random() < .3:
        return data[:at] + data[at + random.randrange(1, 4):]
    return data[:at] + what + data[at:]


def delimited(random):
    """(records as bytes, each with its end, the header first; delimiter)."""
    names, rows = texts(random)
    delimiter = random.choice(",,,;\t|")
    ends = random.choice((["\n"], ["\n"], ["\r\n"], ["\r"], ["\n", "\r\n", "\r"]))
    records = []
    for row in (names, *rows):
        line = delimiter.join(spelt(random, text, delimiter) for text in row)
        if len(row) == 1 and not line.strip(" \t"):
            line = '""'
        records.append((line + random.choice(ends)).encode())
        if random.random() < .02:
            records[-1] += random.choice((b"\n", b" \t\n" if delimiter != "\t" else b"  \n", b"\r"))
    return records, delimiter


def json_scalar(random, text):
    chance = random.random()
    if chance < .02:
        return "null"
    if chance < .03:
        return random.choice(("[]", "{}", '[1,{"a":[null]}]', '{"b":{"a":1}}'))
    return json.dumps(text, ensure_ascii=random.random() < .5)


JSON_NUMBERS = ["0", "-0", "1", "1.0", "1e5", "1E+05", "-1.5e-3", "9007199254740992", "1e308", "0.1", "2", "3"]


def json_records(random):
    """Objects as texts."""
    names, rows = texts(random)
    styles = [random.choice(("text", "number", "number", "boolean", "mixed")) for _ in names]
    records = []
    for row in rows:
        members = []
        for name, text, style in zip(names, row, styles):
            if random.random() < .05:
                continue
            if style == "mixed":
                style = random.choice(("text", "text", "text", "number", "boolean"))
            if style == "number" and random.random() < .98:
                value = random.choice(JSON_NUMBERS + (["9007199254740993", "-99999999999999999999999", "1e999", "-1e400"] if random.random() < .02 else []))
            elif style == "boolean" and random.random() < .98:
                value = random.choice(("true", "false"))
            else:
                value = json_scalar(random, text)
            members.append(f"{json.dumps(name)}{random.choice(('', ' '))}:{random.choice(('', ' '))}{value}")
        random.shuffle(members)
        if random.random() < .002 and members:
            members.append(members[0])
        records.append("{" + ", ".join(members) + "}")
    return records
