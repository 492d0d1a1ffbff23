"""Split groups and resamples against counts that Python makes of the same rows, by the rules written anew."""

import csv
import io
import math
import random

from program import ProgramTest, keys, table

ALL = "TESTTYPES=ALL CITYPES=ALL"


def number(text):
    return float(text) if text else None


def weight_of(row):
    """Rounded half up; what is missing or rounds to nothing drops the case."""
    w = 1.0 if "w" not in row else number(row["w"])
    return None if w is None or w < 0.5 else math.floor(w + 0.5)


class Column:
    """One variable in the rows of one group: its valid values, and what of them is a success."""

    def __init__(self, rows, name, rule, reference=None):
        self.name, self.rule = name, rule
        self.is_string = name.startswith("s")
        values = [v for v in map(self.value, rows) if v is not None]
        self.low, self.high = (min(values), max(values)) if values else (None, None)
        self.reference = reference if reference else self

    def value(self, row):
        text = row[self.name].rstrip(" ")
        if text == "" or (self.name == "x" and text == "9"):  # 9 is user-missing in x
            return None
        return text if self.is_string else float(text)

    def code(self, row):
        v, base = self.value(row), self.reference
        if v is None:
            return None
        if self.rule == "FIRST":
            return v == base.low
        if self.rule == "LAST":
            return v == base.high
        if self.rule == "MIDPOINT":
            return base.low is not None and v >= (base.low + base.high) / 2
        return v == ("yes" if self.is_string else 1)  # the levels of these tests

    def label(self):
        base = self.reference
        shown = {"FIRST": base.low, "LAST": base.high}.get(self.rule, "yes" if self.is_string else 1)
        if self.rule == "MIDPOINT":
            return f"{self.name} >= {plain(None if base.low is None else (base.low + base.high) / 2)}"
        return f"{self.name} = {plain(shown)}"


def plain(v):
    return "." if v is None else v if isinstance(v, str) else f"{v:g}"


def used(rows):
    return [(row, weight_of(row)) for row in rows if weight_of(row) is not None]


def one_sample(rows, names, rule, base=None):
    """Label to successes and trials, of the variables that have trials."""
    result = {}
    for name in names:
        column = column_of(rows, name, rule, base)
        codes = [(column.code(row), w) for row, w in used(rows) if column.code(row) is not None]
        if codes:
            result[column.label()] = (sum(w for hit, w in codes if hit), sum(w for _, w in codes))
    return result


def column_of(rows, name, rule, base):
    of = [row for row, _ in used(rows)]
    reference = None if base is None else Column([row for row, _ in used(base)], name, rule)
    return Column(of, name, rule, reference)


def paired(rows, pairs, rule, base=None):
    """Pair and label to successes and trials, of the pairs that have cases."""
    result = {}
    for index, pair in enumerate(pairs):
        columns = [column_of(rows, name, rule, base) for name in pair]
        codes = [([column.code(row) for column in columns], w) for row, w in used(rows)]
        codes = [(both, w) for both, w in codes if None not in both]
        for i, column in enumerate(columns):
            if codes:
                result[(f"Pair {index + 1}", column.label())] = (sum(w for both, w in codes if both[i]), sum(w for _, w in codes))
    return result


def independent(rows, names, rule, side_of, labels, base=None):
    """Side and label to successes and trials, of the variables that have cases on both sides."""
    result = {}
    for name in names:
        column = column_of(rows, name, rule, base)
        counts = {0: [0, 0], 1: [0, 0]}
        for row, w in used(rows):
            side, hit = side_of(row), column.code(row)
            if side is not None and hit is not None:
                counts[side][0] += w if hit else 0
                counts[side][1] += w
        if counts[0][1] > 0 and counts[1][1] > 0:
            for side in (0, 1):
                result[(labels[side], column.label())] = tuple(counts[side])
    return result


def counts_of(procedure, title, splits, dimensions):
    """Group to place to (successes, trials), read from tables of either layout."""
    result = {}
    for one in procedure["tables"]:
        if title not in one["title"]:
            continue
        for cell in one["cells"]:
            statistic = cell["at"]["Statistics"][-1]
            if statistic not in ("Successes", "Trials"):
                continue
            group = tuple(one["split"][s] if one["split"] else cell["at"][s][-1] for s in splits)
            place = tuple(part for d in dimensions for part in cell["at"][d])
            place = place[0] if len(place) == 1 else place
            pair = result.setdefault(group, {}).setdefault(place, [None, None])
            pair[statistic == "Trials"] = cell["value"]
    return {group: {place: tuple(pair) for place, pair in places.items()} for group, places in result.items()}


def grouped(rows, splits):
    result = {}
    for row in rows:
        result.setdefault(tuple(row[s].rstrip(" ") for s in splits), []).append(row)
    return result


def shown(text, is_number):
    return ("." if text == "" else f"{float(text):g}") if is_number else text


class Counts(ProgramTest):
    def save(self, name, rows):
        out = io.StringIO()
        writer = csv.DictWriter(out, rows[0].keys(), lineterminator="\n")
        writer.writeheader()
        writer.writerows(rows)
        return self.write(name, out.getvalue())

    def random_rows(self, generator, count):
        def one():
            return {"x": generator.choice(["0", "1", "1", "2", "9", ""]), "y": generator.choice(["0", "1", ""]),
                    "s": generator.choice(["yes", "no", "maybe", ""]), "k": generator.choice(["1", "2", "2.5", "7", ""]),
                    "region": generator.choice(["north-north-east", "north-north-west", "east", "", "a"]),
                    "year": generator.choice(["2001", "-3", "0.5", ""]), "w": generator.choice(["1", "0.4", "2.5", "", "-1", "3"])}
        return [one() for _ in range(count)]


class Groups(Counts):
    SPLITS = ("region", "year")

    def setUp(self):
        super().setUp()
        generator = random.Random(11)
        self.rows = self.random_rows(generator, 400)
        for row in self.rows:  # one group has no weight, another no valid values, a third none of one variable
            if (row["region"], row["year"]) == ("a", "2001"):
                row["w"] = "0"
            if (row["region"], row["year"]) == ("east", "-3"):
                row.update(x="9", y="", s="")
            if (row["region"], row["year"]) == ("", "0.5"):
                row.update(s="")
        self.save("d.csv", self.rows)
        generator.shuffle(self.rows)
        self.save("shuffled.csv", self.rows)
        for name in ("d", "shuffled"):
            self.schema(f"{name}.schema.json", {"name": "x", "missingValues": ["", "9"]})

    def expected(self, count):
        result = {}
        for (region, year), rows in grouped(self.rows, self.SPLITS).items():
            places = count(rows)
            if places:
                result[(region, shown(year, True))] = places
        return result

    def check(self, command, title, dimensions, count):
        expected = self.expected(count)
        self.assertGreater(len(expected), 10)
        outputs = {}
        for layout in ("rows", "tables"):
            for data in ("d.csv", "shuffled.csv"):
                p = self.procedure(command, data, "--weight", "w", "--split", "region,year", "--split-layout", layout)
                self.assertEqual(counts_of(p, title, self.SPLITS, dimensions), expected, (command, layout))
                outputs.setdefault(layout, []).append(p)
        for first, second in outputs.values():
            self.assertEqual(first, second, "the order of the file changes nothing")

    def test_one_sample(self):
        for rule, names in (("FIRST", "xys"), ("LAST", "xys"), ("MIDPOINT", "xy"), ("LEVEL(1)", "xy"), ("LEVEL('yes')", "s")):
            command = f"PROPORTIONS /ONESAMPLE {' '.join(names)} TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE={rule}."
            self.check(command, "Intervals", ["Variables"], lambda rows: one_sample(rows, names, rule.split("(")[0]))

    def test_paired_samples(self):
        for form, pairs in (("x y s", ["xy", "xs", "ys"]), ("x s WITH y", ["xy", "sy"]), ("x y WITH y s (PAIRED)", ["xy", "ys"])):
            for rule in ("FIRST", "LAST"):
                command = f"PROPORTIONS /PAIREDSAMPLES {form} TESTTYPES=NONE CITYPES=NONE /SUCCESS VALUE={rule}."
                self.check(command, "Statistics", ["Variables"], lambda rows: paired(rows, pairs, rule))

    def test_independent_samples(self):
        def levels(row):
            return {"1": 0, "7": 1}.get(row["k"])

        def cut(row):
            return None if row["k"] == "" else int(float(row["k"]) >= 2.5)
        for select, side_of, labels in (("LEVEL(1 7)", levels, ("= 1", "= 7")), ("CUTPOINT(2.5)", cut, ("< 2.5", ">= 2.5"))):
            for rule in ("FIRST", "LAST"):
                command = f"PROPORTIONS /INDEPENDENTSAMPLES x y s BY k SELECT={select} {ALL} /SUCCESS VALUE={rule}."
                self.check(command, "Group Statistics", ["k", "Variables"],
                           lambda rows: independent(rows, "xys", rule, side_of, labels))

    def test_independent_samples_at_their_own_midpoints(self):
        def count(rows):
            k = column_of(rows, "k", "MIDPOINT", None)
            if k.low is None:
                return {}
            middle = plain((k.low + k.high) / 2)
            return independent(rows, "xy", "LEVEL", lambda row: None if k.code(row) is None else int(k.code(row)),
                               (f"< {middle}", f">= {middle}"))
        command = f"PROPORTIONS /INDEPENDENTSAMPLES x y BY k SELECT=MIDPOINT {ALL} /SUCCESS VALUE=LEVEL(1)."
        self.check(command, "Group Statistics", ["k", "Variables"], count)

    def test_gathered_values_are_those_of_all_groups(self):
        p = self.procedure("PROPORTIONS /ONESAMPLE x s TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--weight", "w", "--split", "region,year")
        groups = grouped(self.rows, self.SPLITS).values()
        for name in "xs":
            columns = [column_of(rows, name, "LAST", None) for rows in groups if used(rows)]
            # A group without valid values gathers the missing value, or the empty text.
            values = {("" if name == "s" else None) if c.high is None else c.high for c in columns}
            ordered = sorted(values, key=lambda v: (v is not None, v))
            labels = [c["label"] for c in next(d for d in table(p, "Intervals")["dimensions"] if d["name"] == "Variables")["categories"]]
            self.assertEqual([each for each in labels if each.startswith(name)], [f"{name} = {plain(v)}" for v in ordered])

    def test_messages_name_their_group(self):
        p = self.procedure("PROPORTIONS /ONESAMPLE x y s.", "d.csv", "--weight", "w", "--split", "region,year")
        expected = []
        for (region, year), rows in grouped(self.rows, self.SPLITS).items():
            group = {"region": region, "year": shown(year, True)}
            found = one_sample(rows, "xys", "LAST")
            if not used(rows):
                expected.append(("No valid cases for split [%1 = %2:,^1 = ^2:]1", [], group))
            elif not found:
                expected.append(("Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...", [], group))
            else:
                expected += [("Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...", [name], group)
                             for name in "xys" if not any(label.startswith(name) for label in found)]
        self.assertEqual(len({key for key, _, _ in expected}), 3, "each message has its occasion")
        self.assertCountEqual([(m["key"], m["arguments"], m["split"]) for m in p["messages"]], expected)
        for message in p["messages"]:
            self.assertEqual((message["severity"], message["level"]), ("warning", 2))
            self.assertIn(", ".join(f"{name} = {text}" for name, text in message["split"].items()), message["text"])


class ManyGroups(Counts):
    """Thousands of groups, split by a number and a text, in no order."""

    def setUp(self):
        super().setUp()
        generator = random.Random(4)
        self.rows = [dict(row, region=f"site {generator.randrange(60)}", year=str(generator.randrange(50)))
                     for row in self.random_rows(generator, 15000)]
        self.save("d.csv", self.rows)
        self.schema("d.schema.json", {"name": "x", "missingValues": ["", "9"]})

    def check(self, command, title, dimensions, count):
        expected = {group: places for group, places in
                    ((group, count(rows)) for group, rows in grouped(self.rows, ("region", "year")).items()) if places}
        self.assertGreater(len(expected), 200)
        p = self.procedure(command, "d.csv", "--weight", "w", "--split", "region,year")
        self.assertEqual(counts_of(p, title, ("region", "year"), dimensions), expected)
        written = [(cell["at"]["region"][-1], float(cell["at"]["year"][-1])) for cell in table(p, title)["cells"]]
        self.assertEqual(written, sorted(written), "groups come in ascending order")

    def test_one_sample(self):
        self.check("PROPORTIONS /ONESAMPLE x s TESTTYPES=NONE CITYPES=WALD.", "Intervals", ["Variables"],
                   lambda rows: one_sample(rows, "xs", "LAST"))

    def test_paired_samples(self):
        self.check("PROPORTIONS /PAIREDSAMPLES x y TESTTYPES=NONE CITYPES=NONE /SUCCESS VALUE=FIRST.", "Statistics", ["Variables"],
                   lambda rows: paired(rows, ["xy"], "FIRST"))

    def test_independent_samples(self):
        self.check("PROPORTIONS /INDEPENDENTSAMPLES x BY k SELECT=LEVEL(1 2) TESTTYPES=NONE CITYPES=NONE /SUCCESS VALUE=LEVEL(1).",
                   "Group Statistics", ["k", "Variables"],
                   lambda rows: independent(rows, "x", "LEVEL", lambda row: {"1": 0, "2": 1}.get(row["k"]), ("= 1", "= 2")))


class Resamples(Counts):
    """Each sample is analysed with the extremes of the base data of its own user group."""

    def make(self, pooling, user_groups, seed=9, samples=12):
        generator = random.Random(seed)
        self.base, self.all = {}, []
        for index, user in enumerate(user_groups):
            base = self.random_rows(generator, 12)
            base[0].update(x="2", y="1", s="yes", k=str(3 + index), w="1")  # extremes that samples may miss
            base[1].update(x="0", y="0", s="maybe", k="0", w="1")
            for row in base:
                row.update(user)
            self.base[frozenset(user.items())] = base
            for sample in range(samples + 1):
                drawn = base if sample == 0 else generator.choices(base, k=6) + [dict(base[2], w="1")]
                self.all += [dict(row, **{pooling: str(sample)}) for row in drawn]
        generator.shuffle(self.all)
        self.save("d.csv", self.all)
        self.schema("d.schema.json", {"name": "x", "missingValues": ["", "9"]})

    def check(self, pooling, splits, command, title, dimensions, count):
        p = self.procedure(command, "d.csv", "--weight", "w", "--split", ",".join(splits))
        self.assertEqual((p["status"], keys(p, "error")), ("ok", []))
        users = [name for name in splits if name != pooling]
        expected = {}
        for group, rows in grouped(self.all, splits).items():
            base = self.base[frozenset((name, rows[0][name]) for name in users)]
            places = count(rows, base)
            if places:
                expected[tuple(shown(text, name in (pooling, "year")) for name, text in zip(splits, group))] = places
        self.assertGreater(len(expected), 10)
        self.assertEqual(counts_of(p, title, splits, dimensions), expected, (pooling, splits, command))

    def check_designs(self, pooling, splits):
        self.check(pooling, splits, "PROPORTIONS /ONESAMPLE x y s TESTTYPES=NONE CITYPES=WALD.", "Intervals", ["Variables"],
                   lambda rows, base: one_sample(rows, "xys", "LAST", base))
        self.check(pooling, splits, "PROPORTIONS /ONESAMPLE x y TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=MIDPOINT.", "Intervals",
                   ["Variables"], lambda rows, base: one_sample(rows, "xy", "MIDPOINT", base))
        self.check(pooling, splits, "PROPORTIONS /PAIREDSAMPLES x s WITH y k (PAIRED) TESTTYPES=NONE CITYPES=NONE /SUCCESS VALUE=FIRST.",
                   "Statistics", ["Variables"], lambda rows, base: paired(rows, ["xy", "sk"], "FIRST", base))

        def at_midpoints(rows, base):
            k = column_of(rows, "k", "MIDPOINT", base)
            middle = plain((k.reference.low + k.reference.high) / 2)
            return independent(rows, "xs", "LAST", lambda row: None if k.code(row) is None else int(k.code(row)),
                               (f"< {middle}", f">= {middle}"), base)
        self.check(pooling, splits, "PROPORTIONS /INDEPENDENTSAMPLES x s BY k SELECT=MIDPOINT TESTTYPES=NONE CITYPES=NONE.",
                   "Group Statistics", ["k", "Variables"], at_midpoints)

    def test_without_user_splits(self):
        for pooling in ("$bootstrap_split", "Imputation_"):
            self.make(pooling, [{}])
            self.check_designs(pooling, (pooling,))

    def test_user_strings_that_differ_in_their_last_byte(self):
        for width in (8, 9, 16, 17):
            self.make("$bootstrap_split", [{"region": "r" * (width - 1) + end} for end in "abc"], seed=width)
            self.check_designs("$bootstrap_split", ("$bootstrap_split", "region"))
        self.check_designs("$bootstrap_split", ("region", "$bootstrap_split"))

    def test_user_numbers_and_strings(self):
        self.make("IMPUTATION_", [{"region": region, "year": year} for region in ("", "a longer name", "b") for year in ("", "-1", "2.5")])
        self.check_designs("IMPUTATION_", ("year", "IMPUTATION_", "region"))

    def test_both_zeros_are_one_user_group(self):
        self.write("d.csv", "x,$bootstrap_split,year\n0,0,0.0\n3,0,0.0\n1,1,-0.0\n3,1,-0.0\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--split", "$bootstrap_split,year")
        self.assertEqual(counts_of(p, "Intervals", ("$bootstrap_split", "year"), ["Variables"]),
                         {("0", "0"): {"x = 3": (1, 2)}, ("1", "0"): {"x = 3": (1, 2)}})

    def test_samples_that_fit_no_base(self):
        for pooling, key in (("$bootstrap_split", "Boot split values not consistent ..."),
                             ("imputation_", "Impute split values not consistent ...")):
            for user, other in (("1", "2"), ("abcdefghijklmnop1", "abcdefghijklmnop2"), ("abcdefgh", "abcdefgi")):
                self.write("d.csv", f"x,{pooling},u\n0,0,{user}\n3,0,{user}\n1,1,{user}\n3,1,{other}\n")
                p = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--split", f"{pooling},u", status=1)
                self.assertEqual((p["status"], p["tables"], keys(p)), ("failed", [], [key]))

    def test_numbers_that_are_none(self):
        for pooling, key in (("$bootstrap_split", "Invalid bootstrap index ..."), ("imputation_", "Invalid imputation index ...")):
            for invalid in ("", "-0.2", "-1"):
                self.write("d.csv", f"x,{pooling}\n0,{invalid}\n3,0\n1,0\n")
                p = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--split", pooling, status=1)
                self.assertEqual((p["status"], p["tables"], keys(p)), ("failed", [], [key]))
            # Groups that stand before the invalid one are analysed; a run with an error has failed all the same.
            self.write("d.csv", f"x,u,{pooling}\n0,1,0\n3,1,0\n3,2,-1\n")
            p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--split", f"u,{pooling}", status=1)
            self.assertEqual((p["status"], keys(p)), ("failed", [key]))
            self.assertEqual(counts_of(p, "Intervals", ("u", pooling), ["Variables"]), {("1", "0"): {"x = 3": (1, 2)}})

    def test_numbers_are_rounded_half_up(self):
        # 0.4 is base data, and the first of its user group; 0.5 and 2.4 are samples of it.
        self.write("d.csv", "x,Imputation_,u\n0,0.4,1\n3,0.4,1\n5,0.5,1\n3,0.5,1\n0,2.4,1\n1,2.4,1\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--split", "Imputation_,u")
        self.assertEqual(counts_of(p, "Intervals", ("Imputation_",), ["Variables"]),
                         {("0.4",): {"x = 3": (1, 2)}, ("0.5",): {"x = 3": (1, 2)}, ("2.4",): {"x = 3": (0, 2)}})


class SplitVariables(Counts):
    """Split variables of every kind, and what heads their groups."""

    def labels(self, data, split, *arguments):
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL(1).", data, "--split", split, *arguments)
        return [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]

    def test_kinds(self):
        for values, wanted in ((("true", "false"), ["false", "true"]),
                               (("2024-03-01", "1999-12-31", ""), [".", "1999-12-31", "2024-03-01"]),
                               (("12:30:00", "08:15:00"), ["08:15:00", "12:30:00"]),
                               (("10", "-2.5", "9", "0.1"), ["-2.5", "0.1", "9", "10"]),
                               (("b", "a ", "a", "b  "), ["a", "b"])):
            self.write("d.csv", "x,g\n" + "".join(f"{i % 2},{v}\n" for v in values for i in range(3)))
            self.assertEqual(self.labels("d.csv", "g"), wanted)

    def test_labels_and_user_missing_values(self):
        self.write("d.csv", "x,g\n1,9\n0,1\n1,2\n1,9\n")
        self.schema("d.schema.json", {"name": "g", "title": "Region", "missingValues": ["9"],
                                      "categories": [{"value": 1, "label": "North"}, {"value": 9, "label": "Refused"}]})
        self.assertEqual(self.labels("d.csv", "g"), ["North", "2", "Refused"])

    def test_position_on_the_command_line(self):
        self.write("d.csv", "x,g,h\n1,a,1\n0,b,2\n")
        command = ("-c", "PROPORTIONS /ONESAMPLE x.")
        outputs = {self.run_program(*arguments).stdout for arguments in
                   (("d.csv", "--split", "g,h", *command), ("--split", "g,h", "d.csv", *command),
                    (*command, "--split", "g", "--split", "h", "d.csv"), ("--split=g,h", *command, "d.csv"))}
        self.assertEqual(len(outputs), 1)

    def test_wrong_names(self):
        self.write("d.csv", "x,g,w\n1,a,1\n")
        for split, others, said in (("nobody", (), "nobody"), ("g,g", (), "twice"), ("w", ("--weight", "w"), "weight"), ("g,", (), "")):
            if said:
                self.assertIn(said, self.unusable("d.csv", "--split", split, *others, "-c", "PROPORTIONS /ONESAMPLE x."))
        self.assertIn("region", self.unusable("d.csv", "--split", "region", "-c", "PROPORTIONS /ONESAMPLE x."))
