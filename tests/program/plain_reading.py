"""What texts mean, written down once more and as plainly as it goes: the measure of the program's readers.

Nothing here is shared with the program. A table is a list of (name, kind, values); a value is a
number, an instant as (kind, microseconds), a text, or MISSING. What must be refused is a `Refused`
with the lines that a message may name.
"""

import dataclasses
import datetime
import fractions
import json
import math
import re

MISSING = None
NUMBER = re.compile(r"[+-]?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)(?:[eE][+-]?[0-9]+)?")
DIGITS = re.compile(r"[+-]?[0-9]+")
DATE = re.compile(r"([0-9]{4})-([0-9]{2})-([0-9]{2})")
TIME = re.compile(r"([0-9]{2}):([0-9]{2})(?::([0-9]{2})(?:\.([0-9]+))?)?")
ZONE = re.compile(r"Z|([+-])([0-9]{2})(?::?([0-9]{2}))?")
EPOCH = datetime.date(1970, 1, 1).toordinal()
DAY = 86_400_000_000
WIDEST_TEXT = 32_767


class Refused(Exception):
    """The data must be refused; `lines` are those that may be named (none: any)."""

    def __init__(self, *lines):
        super().__init__(f"lines {lines}")
        self.lines = lines


@dataclasses.dataclass
class Rules:
    """What the command line and a dictionary say about texts."""
    decimal: str = "."
    missing: tuple = ("NA",)
    missing_given: bool = False
    types: dict = dataclasses.field(default_factory=dict)         # column to type
    user_missing: dict = dataclasses.field(default_factory=dict)  # column to texts


# --- single texts ---------------------------------------------------------------------------------

def number_of(text, decimal):
    """(number, exact, overflows), or nothing."""
    if decimal != ".":
        if "." in text:
            return None
        text = text.replace(decimal, ".")
    body = text.lstrip("+-")
    if len(text) - len(body) > 1:
        return None
    if body.lower() == "nan" and body == text:
        return math.nan, True, False
    if body.lower() in ("inf", "infinity"):
        return (-math.inf if text[0] == "-" else math.inf), True, False
    if not NUMBER.fullmatch(text) or re.match("0[0-9]", body):
        return None
    number = float(text)
    if DIGITS.fullmatch(text):
        return number, not math.isinf(number) and int(number) == int(text), False
    return number, True, math.isinf(number)


def time_of(text):
    """Microseconds since midnight, or nothing."""
    match = TIME.fullmatch(text)
    if not match:
        return None
    hours, minutes, seconds, fraction = match.groups()
    if int(hours) > 23 or int(minutes) > 59 or int(seconds or 0) > 59:
        return None
    fraction = fraction or ""
    if fraction[6:].strip("0"):
        return None
    whole = int(hours) * 3600 + int(minutes) * 60 + int(seconds or 0)
    return whole * 1_000_000 + int(fraction[:6].ljust(6, "0"))


def date_of(text):
    """Days since 1970, or nothing."""
    match = DATE.fullmatch(text)
    if not match:
        return None
    try:
        return datetime.date(*map(int, match.groups())).toordinal() - EPOCH
    except ValueError:
        return None


def moment_of(text):
    """("datetime" or "zoned", microseconds), or nothing."""
    if len(text) < 12 or text[10] not in "T ":
        return None
    day = date_of(text[:10])
    if day is None:
        return None
    rest = text[11:]
    zone = re.search(r"(Z|[+-][0-9:]*)$", rest)
    clock = time_of(rest[:zone.start()] if zone else rest)
    if clock is None:
        return None
    if not zone:
        return "datetime", day * DAY + clock
    match = ZONE.fullmatch(zone.group())
    if not match:
        return None
    sign, hours, minutes = match.groups()
    if int(hours or 0) > 15 or int(minutes or 0) > 59:
        return None
    offset = (int(hours or 0) * 60 + int(minutes or 0)) * 60_000_000
    return "zoned", day * DAY + clock - (offset if sign == "+" else -offset)


def told_by_seconds(microseconds):
    """Whether the nearest double of the seconds leads back to the microsecond."""
    return round(fractions.Fraction(float(fractions.Fraction(microseconds, 1_000_000))) * 1_000_000) == microseconds


@dataclasses.dataclass
class Value:
    """A text by itself."""
    text: str
    kind: str            # missing, number, boolean, date, time, datetime, zoned, text
    number: object = None
    exact: bool = True
    overflows: bool = False
    listed: bool = False  # among the texts that stand for missing values


def trimmed(text):
    return text.rstrip(" \t")


def value_of(text, rules, column, numbers=True):
    if not text.strip(" \t"):
        return Value(text, "missing")
    if rules.missing_given and trimmed(text) in map(trimmed, rules.missing):
        return Value(text, "missing")
    listed = trimmed(text) in map(trimmed, (*rules.missing, *rules.user_missing.get(column, ())))
    number = number_of(text, rules.decimal) if numbers else None
    if number is not None:
        return Value(text, "number", *number, listed)
    if numbers and text.lower() in ("true", "false"):
        return Value(text, "boolean", int(text.lower() == "true"), listed=listed)
    for kind, found in (("date", date_of(text)), ("time", time_of(text))):
        if found is not None:
            return Value(text, kind, found, listed=listed)
    if (moment := moment_of(text)) is not None:
        return Value(text, moment[0], moment[1], told_by_seconds(moment[1]), listed=listed)
    return Value(text, "text", listed=listed)


# --- columns --------------------------------------------------------------------------------------

TYPE_KINDS = {"string": "text", "integer": "number", "number": "number", "boolean": "boolean", "date": "date",
              "time": "time", "datetime": "datetime"}


def kind_of(values, declared):
    kinds = {v.kind for v in values if not v.listed} - {"missing"}
    if declared:
        kind = TYPE_KINDS[declared]
        return "zoned" if kind == "datetime" and "zoned" in kinds and "datetime" not in kinds else kind
    if not kinds:
        return "number"
    if len(kinds) > 1:
        return "text"
    kind = kinds.pop()
    if kind == "number" and any(v.kind == "number" and not v.exact and not v.listed for v in values):
        return "text"
    return kind


def fits(value, kind, declared):
    """A value's number in a column of another kind than texts, or a refusal."""
    if declared == "boolean" and value.kind == "number" and value.number in (0, 1):
        return value.number
    if value.kind != kind:
        return "refused"
    if value.overflows or not value.exact:
        return "refused"
    if declared == "integer" and not math.isnan(value.number) and (math.isinf(value.number) or value.number != int(value.number)):
        return "refused"
    return value.number


def column_of(values, lines, declared):
    """(kind, values) of a column whose fields stand in these lines."""
    kind = kind_of(values, declared)
    read = []
    for value, line in zip(values, lines):
        if value.kind == "missing":
            read.append(MISSING)
        elif kind == "text":
            text = value.text.rstrip(" ")
            if len(text.encode()) > WIDEST_TEXT:
                raise Refused(line)
            read.append(text or MISSING)
        elif value.listed and (value.kind != kind or not value.exact or value.overflows):
            read.append(MISSING)
        else:
            number = fits(value, kind, declared)
            if number == "refused":
                raise Refused(line)
            if isinstance(number, float) and math.isnan(number):
                read.append(MISSING)
            elif kind in ("date", "time", "datetime", "zoned"):
                read.append((kind, number * DAY if kind == "date" else number))
            else:
                read.append(float(number))
    return kind, read


def table_of(names, rows, lines, rules):
    """The columns that have a name. `rows` hold Values."""
    columns, refusals = [], []
    for at, name in enumerate(names):
        if not name:
            continue
        try:
            columns.append((name, *column_of([row[at] for row in rows], lines, rules.types.get(name))))
        except Refused as refusal:
            refusals += refusal.lines
    if refusals:
        raise Refused(*refusals)
    return columns


# --- delimited text -------------------------------------------------------------------------------

LINE_END = re.compile("\r\n|\r|\n")


def records_of(text, delimiter):
    """Yields (line, fields, whether any was quoted); a last (line, None, False) where it is faulty."""
    at, line, size = 0, 1, len(text)
    while at < size:
        begin, fields, any_quoted = line, [], False
        while True:
            start = at
            while at < size and text[at] in " \t" and text[at] != delimiter:
                at += 1
            if at < size and text[at] == '"':
                any_quoted = True
                at += 1
                parts = []
                while True:
                    close = text.find('"', at)
                    if close < 0:
                        yield begin, None, False
                        return
                    parts.append(text[at:close])
                    at = close + 1
                    if text[at:at + 1] != '"':
                        break
                    parts.append('"')
                    at += 1
                field = "".join(parts)
                line += len(LINE_END.findall(field))
                while at < size and text[at] in " \t" and text[at] != delimiter:
                    at += 1
                if at < size and text[at] not in (delimiter, "\r", "\n"):
                    yield begin, None, False
                    return
            else:
                end = start
                while end < size and text[end] not in (delimiter, "\r", "\n"):
                    end += 1
                field = text[start:end].strip(" \t")
                at = end
            fields.append(field)
            if at < size and text[at] == delimiter:
                at += 1
                continue
            break
        if at < size:
            at += 2 if text[at:at + 2] == "\r\n" else 1
            line += 1
        if len(fields) == 1 and not any_quoted and not fields[0]:
            continue
        yield begin, fields, any_quoted


def found_delimiter(text, decimal):
    candidates = [c for c in ",;\t|" if c != decimal]
    counts = {}
    for candidate in candidates:
        found = []
        for _, fields, _ in records_of(text, candidate):
            found.append(None if fields is None else len(fields))
            if len(found) == 101:
                break
        counts[candidate] = found
    same = {c: f[0] for c, f in counts.items() if f and None not in f and len(set(f)) == 1 and f[0] > 1}
    if same:
        return max(same, key=lambda c: (same[c], -candidates.index(c)))
    heads = {c: f[0] for c, f in counts.items() if f and f[0] is not None and f[0] > 1}
    if heads:
        return max(heads, key=lambda c: (heads[c], -candidates.index(c)))
    return "," if decimal != "," else ";"


def refuse_wrong_bytes(data):
    """Without a line: where a record is faulty as well, that may be named instead."""
    try:
        data.decode()
    except UnicodeDecodeError as error:
        raise Refused() from error
    if b"\0" in data:
        raise Refused()


def read_delimited(data, rules, delimiter=None):
    """The columns of one file."""
    if data.startswith(b"\xEF\xBB\xBF"):
        data = data[3:]
    refuse_wrong_bytes(data)
    text = data.decode()
    delimiter = delimiter or found_delimiter(text, rules.decimal)
    names, rows, lines = None, [], []
    for line, fields, quoted in records_of(text, delimiter):
        if fields is None:
            raise Refused(line)
        if names is None:
            names = [name.strip(" \t") for name in fields]
            folded = [name.casefold() for name in names if name]
            if len(set(folded)) != len(folded):
                raise Refused(line)
        elif len(fields) != len(names):
            raise Refused(line)
        else:
            rows.append([value_of(field, rules, name) for field, name in zip(fields, names)])
            lines.append(line)
    if names is None:
        raise Refused()
    return table_of(names, rows, lines, rules)


# --- JSON -----------------------------------------------------------------------------------------

class Spelt(str):
    """A number as it stands there."""


def no_constant(text):
    raise ValueError(text)


DECODER = json.JSONDecoder(parse_float=Spelt, parse_int=Spelt, parse_constant=no_constant,
                           object_pairs_hook=lambda found: ("object", found))


def holds_bad_text(value):
    if isinstance(value, Spelt):
        return False
    if isinstance(value, str):
        return "\0" in value or any(0xD800 <= ord(c) <= 0xDFFF for c in value)
    if isinstance(value, tuple):
        return any(holds_bad_text(k) or holds_bad_text(v) for k, v in value[1])
    if isinstance(value, list):
        return any(map(holds_bad_text, value))
    return False


def json_value(value, rules, name):
    if value is None:
        return Value("", "missing")
    if isinstance(value, bool):
        return Value("true" if value else "false", "boolean", int(value))
    if isinstance(value, Spelt):
        number, exact, overflows = number_of(str(value), ".")
        text = str(int(value)) if DIGITS.fullmatch(value) else str(value)  # -0 is 0
        return Value(text, "number", number, exact, overflows)
    return value_of(value, rules, name, numbers=False)


def read_json(data, rules):
    """The columns of an array of objects, or of one object a line."""
    if data.startswith(b"\xEF\xBB\xBF"):
        data = data[3:]
    if b"\0" in data:
        raise Refused()
    try:
        text = data.decode()
        blanks = " \t\r\n"
        if not text.strip(blanks):
            raise Refused()
        if text.lstrip(blanks).startswith("["):
            found, end = DECODER.raw_decode(text.lstrip(blanks))
            if text.lstrip(blanks)[end:].strip(blanks):
                raise Refused()
        else:
            found = []
            for line in LINE_END.split(text):
                if line.strip(blanks):
                    record, end = DECODER.raw_decode(line.strip(blanks))
                    if line.strip(blanks)[end:].strip(blanks):
                        raise Refused()
                    found.append(record)
    except ValueError as error:
        raise Refused() from error
    names, rows = [], []
    for record in found:
        if not isinstance(record, tuple) or holds_bad_text(record):
            raise Refused()
        names = list(dict.fromkeys([*names, *(key for key, _ in record[1] if key)]))
        rows.append(dict(record[1]))
    folded = [name.casefold() for name in names]
    nested = {name for record in found for name, value in record[1] if isinstance(value, (list, tuple))}
    unusable = nested | {name for name in names if folded.count(name.casefold()) > 1}
    usable = [name for name in names if name not in unusable]
    for record in found:
        keys = [key for key, _ in record[1] if key in usable]
        if len(set(keys)) != len(keys):
            raise Refused()
    values = [[json_value(row.get(name), rules, name) for name in usable] for row in rows]
    table = {name: column for name, *column in table_of(usable, values, [0] * len(rows), rules)}
    return [(name, *table.get(name, ("unusable", []))) for name in names]
