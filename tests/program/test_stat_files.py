"""Files of statistics packages: what they say, what they hold, and what is wrong with them."""

import csv
import json
import os
import pathlib
import re
import signal
import struct
import subprocess
import time

from program import PROGRAM, ProgramTest, table, value
from test_examples import OPTIONS as EXAMPLE_OPTIONS
from stat_writer import numbers, write_catalogue, write_stat

ROOT = pathlib.Path(__file__).resolve().parents[2]
MADE = ROOT / "tests" / "statfiles" / "files"
FORMATS = ("dta", "sas7bdat", "xpt")
WALD = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD."


class StatFilesTest(ProgramTest):
    def stat(self, name, columns, rows, **others):
        return write_stat(self.folder / name, columns, rows, **others)

    def listed(self, *arguments):
        """The variables by name."""
        done = self.run_program(*arguments, "--list", "--format", "json")
        return {v["name"]: v for v in json.loads(done.stdout)["variables"]}

    def values(self, variable):
        return [(v["value"], v["label"], v["count"]) for v in variable["values"]]


class OtherProgramsFiles(StatFilesTest):
    """Written by R: see tests/statfiles/make_files.R, which holds the data."""

    def test_foreign(self):
        for version in (8, 10):
            with self.subTest(version):
                found = self.listed(str(MADE / f"foreign_{version}.dta"))
                self.assertEqual([v["label"] for v in found.values()], ["Outcome", "Arm", "Site", "First seen"])
                self.assertEqual(self.values(found["outcome"]), [(0, None, 3), (1, None, 4)])
                self.assertEqual(found["outcome"]["missing"], 1)
                self.assertEqual(self.values(found["arm"]), [(1, "Placebo", 4), (2, "Drug", 4)])
                self.assertEqual(self.values(found["site"]),
                                 [("centre", None, 1), ("north", None, 3), ("south", None, 2), ("west", None, 2)])
                # It gives dates no display format, so that they are the numbers that they are.
                self.assertEqual([(v, n) for v, _, n in self.values(found["seen"])], [(-1, 1), (0, 1), (3653, 1), (14669, 1), (23380, 3)])
                self.assertEqual(found["seen"]["missing"], 1)

    def test_value_labels_that_are_not_known(self):
        """Those of version 108 are laid out in another way than the library takes for granted."""
        said = self.unusable(str(MADE / "foreign_6.dta"), "--list")
        self.assertIn("the value labels at its end cannot be read", said)
        self.assertIn("newer version", said)

    def check_people(self, found):
        """What every file of haven holds."""
        self.assertEqual(found["outcome"]["label"], "Outcome")
        self.assertEqual(found["outcome"]["missing"], 3)
        self.assertEqual([(v, n) for v, _, n in self.values(found["site"])], [("north", 3), ("south", 2), ("west", 2)])
        self.assertEqual(found["seen"]["kind"], "date")
        self.assertEqual([(v, n) for v, _, n in self.values(found["seen"])],
                         [("1959-12-31", 1), ("1960-01-01", 1), ("1970-01-01", 1), ("2000-02-29", 1), ("2024-01-05", 3)])
        self.assertEqual(found["met"]["kind"], "datetime")
        self.assertEqual([(v, n) for v, _, n in self.values(found["met"])],
                         [("1959-12-31 23:59:59", 1), ("1960-01-01 00:00:00", 1), ("1970-01-01 00:00:00", 1),
                          ("2000-02-29 06:07:08", 1), ("2016-12-31 23:59:59", 1), ("2024-01-05 12:30:00", 2)])

    def test_haven(self):
        for version in (8, 13, 14):
            with self.subTest(version):
                found = self.listed(str(MADE / f"haven_{version}.dta"))
                self.check_people(found)
                self.assertEqual(self.values(found["outcome"]), [(0, "Same", 2), (1, "Better", 3)])
                self.assertEqual(self.values(found["arm"]), [(1, "Placebo", 4), (2, "Drug", 4)])

    def test_haven_transport_files(self):
        for version in (5, 8):
            with self.subTest(version):
                found = self.listed(str(MADE / f"haven_{version}.xpt"))
                self.check_people(found)
                self.assertEqual(found["clock"]["kind"], "time")
                self.assertEqual([(v, n) for v, _, n in self.values(found["clock"])],
                                 [("00:00:00", 1), ("00:00:01", 1), ("00:01:00", 1), ("00:01:01", 1), ("01:00:00", 1),
                                  ("12:30:00", 1), ("23:59:59", 1)])

    def test_letters_of_missing_values(self):
        command = "PROPORTIONS /INDEPENDENTSAMPLES arm BY outcome SELECT=LEVEL(1 '.a') /MISSING USERMISSING=INCLUDE."
        for name, label in (("haven_14.dta", "Refused"), ("haven_8.dta", "Refused"), ("haven_5.xpt", ".a")):
            with self.subTest(name):
                procedure = self.procedure(command, str(MADE / name))
                groups = [c for d in table(procedure, "Group Statistics")["dimensions"] for c in d["categories"]]
                self.assertIn(label, [c["label"].split("= ")[-1] for c in groups if c.get("values") == [".a"]])
                counted = {v["name"]: v for v in procedure["cases"]["variables"]}["outcome"]
                self.assertEqual((counted["valid"], counted["userMissing"], counted["systemMissing"]), (5, 2, 1))


class Values(StatFilesTest):
    def test_missing_values(self):
        """Letters are user-missing, the point is system-missing, in every format and type of number."""
        rows = [[1], [0], [1], [None], [".a"], [".z"], [".a"]]
        files = [self.stat(f"x.{form}", numbers("x"), rows) for form in FORMATS]
        files += [self.stat(f"{kind}.dta", [{"name": "x", "type": kind}], rows) for kind in ("int8", "int16", "int32", "float")]
        for name in files:
            with self.subTest(name):
                counted = self.procedure(WALD, name)["cases"]["variables"][0]
                self.assertEqual((counted["valid"], counted["userMissing"], counted["systemMissing"]), (3, 3, 1))
                included = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /MISSING USERMISSING=INCLUDE.", name)
                self.assertEqual(value(included, "Intervals", "Trials"), 6)

    def test_underscore(self):
        for form in ("sas7bdat", "xpt"):
            self.stat(f"x.{form}", numbers("x"), [[1], [0], ["._"], [None]])
            counted = self.procedure(WALD, f"x.{form}")["cases"]["variables"][0]
            self.assertEqual((counted["valid"], counted["userMissing"], counted["systemMissing"]), (2, 1, 1), form)

    def test_split_groups_of_missing_values(self):
        for form in FORMATS:
            self.stat(f"g.{form}", numbers("x", "g"), [[1, 1], [0, ".b"], [1, None], [1, ".b"], [0, 1], [1, ".a"]])
            procedure = self.procedure(WALD, f"g.{form}", "--split", "g")
            self.assertEqual([c["values"] for c in table(procedure, "Intervals")["dimensions"][0]["categories"]],
                             [[None], [1], [".a"], [".b"]], form)
            text = self.run_program(f"g.{form}", "-c", WALD, "--split", "g").stdout.decode()
            self.assertIn(".b", text)
            self.assertNotIn("e+307", text)

    def test_weights_that_are_missing(self):
        self.stat("w.dta", numbers("x", "w"), [[1, 2], [0, ".a"], [0, None], [0, 3]])
        procedure = self.procedure(WALD, "w.dta", "--weight", "w")
        self.assertEqual((procedure["cases"]["droppedByWeight"], procedure["cases"]["weight"]), (2, 5))

    def test_a_number_that_would_be_a_missing_value(self):
        for number in (2.0 ** 1023 * (1 + 1 / 4096), 2.0 ** 1023, -1.7976931348623157e308):
            self.stat("x.sas7bdat", numbers("x", "y"), [[0, 1], [number, 0]])
            said = self.unusable("x.sas7bdat", "-c", WALD)
            self.assertIn("x.sas7bdat, case 2: x: the value", said)
            self.run_program("x.sas7bdat", "-c", WALD.replace("x", "y"))

    def test_infinity_is_no_value_of_dta(self):
        self.stat("x.dta", numbers("x"), [[1], [12345.5]])
        data = (self.folder / "x.dta").read_bytes()
        self.write("x.dta", data.replace(struct.pack("<d", 12345.5), struct.pack("<d", float("inf"))))
        self.assertIn("case 2: x: the value is neither a number", self.unusable("x.dta", "-c", WALD))

    def test_texts(self):
        rows = [["north", 1], ["", 0], ["  led", 1], ["NA", 0], ["7", 1]]
        columns = [{"name": "t", "type": "string", "width": 9}, {"name": "x", "type": "double"}]
        for form in FORMATS:
            with self.subTest(form):
                self.stat(f"t.{form}", columns, rows)
                found = self.listed(f"t.{form}")["t"]
                self.assertEqual(found["kind"], "string")
                self.assertEqual({v for v, _, _ in self.values(found)}, {"north", "  led", "NA", "7"})
                self.assertEqual(found["missing"], 1)
                self.assertEqual(self.listed(f"t.{form}", "--na", "NA")["t"]["missing"], 2)

    def test_long_texts(self):
        columns = [{"name": "t", "type": "long"}, {"name": "x", "type": "double"}]
        self.stat("t.dta", columns, [["north" * 1000, 1], ["south", 0], ["", 1]])
        found = self.listed("t.dta")["t"]
        self.assertEqual({v for v, _, _ in self.values(found)}, {"north" * 1000, "south"})
        self.stat("u.dta", columns, [["a", 1], ["x" * 40000, 0]])
        self.assertIn("case 2: t: the text takes 40000 bytes", self.unusable("u.dta", "--list"))
        self.stat("v.dta", columns, [["a", 1], ["x" * 70000, 0]])
        self.assertIn("case 2: t: the text is too long", self.unusable("v.dta", "--list"))
        self.run_program("v.dta", "-c", WALD)  # the column is not named

    def test_no_cases(self):
        for form in FORMATS:
            with self.subTest(form):
                self.stat(f"n.{form}", numbers("x"), [])
                procedure = self.procedure(WALD, f"n.{form}")
                self.assertEqual((procedure["tables"], procedure["status"]), ([], "ok"))

    def test_many_cases(self):
        """More than one block; compressed, too."""
        rows = [[1, "a"], [0, "b"], [".c", "a"], [1, ""]]
        columns = [{"name": "x", "type": "double"}, {"name": "t", "type": "string", "width": 3}]
        for name, others in (("m.dta", {}), ("m.sas7bdat", {}), ("c.sas7bdat", {"compressed": True}), ("m.xpt", {})):
            with self.subTest(name):
                self.stat(name, columns, rows, repeat=20000, **others)
                procedure = self.procedure(WALD, name, "--split", "t")
                self.assertEqual(procedure["cases"]["read"], 80000)
                self.assertEqual(procedure["cases"]["variables"][0]["userMissing"], 20000)
                for collapse in ("always", "never"):
                    self.assertEqual(self.procedure(WALD, name, "--split", "t", "--collapse", collapse), procedure)


class Moments(StatFilesTest):
    def kinds(self, name, *arguments):
        return {n: (v["kind"], [x for x, _, _ in self.values(v)]) for n, v in self.listed(name, *arguments).items()}

    def dta(self, count, form):
        self.stat("d.dta", [{"name": "x", "type": "double", "format": form}], [[count]])
        return self.kinds("d.dta")["x"]

    def test_percent_formats(self):
        # Counts by the definition of each format: days and milliseconds from 1960-01-01 on.
        for count, form, kind, shown in (
                (23380, "%td", "date", "2024-01-05"), (23380, "%-tdD_m_CY", "date", "2024-01-05"), (0, "%d", "date", "1960-01-01"),
                (-1, "%dD_m_Y", "date", "1959-12-31"), (2020032000000, "%tc", "datetime", "2024-01-05 00:00:00"),
                (2020032000001, "%tcHH:MM:SS", "datetime", "2024-01-05 00:00:00.001"), (-1, "%tc", "datetime", "1959-12-31 23:59:59.999"),
                (2020032000000 + 27000, "%tC", "datetime", "2024-01-05 00:00:00"),
                (394415999999, "%tC", "datetime", "1972-06-30 23:59:59.999"), (394416001000, "%tC", "datetime", "1972-07-01 00:00:00"),
                (768, "%tm", "number", 768), (256, "%tq", "number", 256), (3328, "%tw", "number", 3328), (128, "%th", "number", 128),
                (2024, "%ty", "number", 2024), (5, "%tb", "number", 5), (7, "%tg", "number", 7), (1.5, "%9.0g", "number", 1.5),
                (12, "%12.2f", "number", 12), (3, "%10.0gc", "number", 3)):
            with self.subTest(form):
                self.assertEqual(self.dta(count, form), (kind, [shown]))

    def test_moments_that_are_none(self):
        for count, form, said in ((23380.5, "%td", "is not a whole number of days"), (1e9, "%td", "outside the years 0001 to 9999"),
                                  (1e300, "%tc", "outside the years"), (0.0001, "%tc", "finer than a microsecond"),
                                  (394416000500, "%tC", "leap second")):
            with self.subTest(form):
                self.stat("d.dta", [{"name": "x", "type": "double", "format": form}, {"name": "y", "type": "double"}], [[0, 1], [count, 0]])
                said_now = self.unusable("d.dta", "-c", WALD)
                self.assertIn("d.dta, case 2: x:", said_now)
                self.assertIn(said, said_now)
                self.run_program("d.dta", "-c", WALD.replace("x", "y"))
                # The dictionary may take the count as what it is.
                self.schema("d.schema.json", {"name": "x", "type": "number"})
                self.assertEqual([v for v, _, _ in self.values(self.listed("d.dta")["x"])], [0, count])
                (self.folder / "d.schema.json").unlink()

    def test_other_formats(self):
        day, second = 23380, 23380 * 86400
        expected = {}
        columns, row = [], []
        for number, (form, count, kind, shown) in enumerate((
                ("DATE9.", day, "date", "2024-01-05"), ("DATE", day, "date", "2024-01-05"), ("YYMMDD10.", day, "date", "2024-01-05"),
                ("E8601DA10.", day, "date", "2024-01-05"), ("MONYY7.", day, "date", "2024-01-05"), ("YEAR4.", day, "date", "2024-01-05"),
                ("DATETIME20.", second + 1, "datetime", "2024-01-05 00:00:01"), ("E8601DT26.6", second + 0.25, "datetime", "2024-01-05 00:00:00.25"),
                ("DTDATE9.", second, "datetime", "2024-01-05 00:00:00"), ("TIME8.", 45296, "time", "12:34:56"), ("HHMM5.", 60, "time", "00:01:00"),
                ("BEST12.", 5, "number", 5), ("8.2", 5, "number", 5), ("F8.2", 5, "number", 5), ("COMMA10.", 5, "number", 5))):
            columns.append({"name": f"v{number}", "type": "double", "format": form})
            row.append(count)
            expected[f"v{number}"] = (kind, [shown])
        self.stat("f.sas7bdat", columns, [row])
        self.assertEqual(self.kinds("f.sas7bdat"), expected)
        for column in columns:
            column["format"] = column["format"].rstrip(".")
        self.stat("f.xpt", columns, [row])
        self.assertEqual(self.kinds("f.xpt"), expected)

    def test_durations_are_no_times(self):
        self.stat("t.sas7bdat", [{"name": "x", "type": "double", "format": "TIME8."}], [[86400]])
        said = self.unusable("t.sas7bdat", "--list")
        self.assertIn("case 1: x: 86400 is not a time of day", said)
        self.assertIn("type number in the dictionary", said)

    def test_missing_dates_keep_their_letters(self):
        self.stat("d.dta", [{"name": "x", "type": "double"}, {"name": "g", "type": "int32", "format": "%td", "labels": "seen"}],
                  [[1, 0], [0, ".a"], [1, None]], labels={"seen": [{"value": ".a", "label": "Never"}]})
        procedure = self.procedure(WALD, "d.dta", "--split", "g")
        self.assertEqual([(c["label"], c["values"]) for c in table(procedure, "Intervals")["dimensions"][0]["categories"]],
                         [(".", [None]), ("1960-01-01", ["1960-01-01"]), ("Never", [".a"])])

    def test_as_texts(self):
        self.stat("d.dta", [{"name": "x", "type": "double"}, {"name": "g", "type": "int32", "format": "%td"}, {"name": "n", "type": "double"}],
                  [[1, 0, 1.5], [0, ".a", ".b"], [1, None, None]])
        self.schema("d.schema.json", {"name": "g", "type": "string"}, {"name": "n", "type": "string"})
        found = self.listed("d.dta")
        self.assertEqual((self.values(found["g"]), found["g"]["missing"]), ([("1960-01-01", None, 1)], 2))
        self.assertEqual((self.values(found["n"]), found["n"]["missing"]), ([("1.5", None, 1)], 2))


class Labels(StatFilesTest):
    SETS = {"yesno": [{"value": 0, "label": "No"}, {"value": 1, "label": "Yes"}, {"value": ".a", "label": "Refused"}]}
    COLUMNS = [{"name": "x", "type": "int32", "label": "Vaccinated", "labels": "yesno"}, {"name": "y", "type": "double", "labels": "yesno"}]
    ROWS = [[1, 1], [0, ".a"], [".a", 0], [0, 1]]

    def test_value_labels(self):
        for version in (104, 108, 110, 114, 117, 118, 119):
            with self.subTest(version):
                labels = self.SETS if version >= 113 else {"yesno": self.SETS["yesno"][:2]}
                rows = self.ROWS if version >= 113 else [[1, 1], [0, None], [None, 0], [0, 1]]
                self.stat("l.dta", self.COLUMNS, rows, labels=labels, version=version)
                found = self.listed("l.dta")
                self.assertEqual(found["x"]["label"], "Vaccinated")
                self.assertEqual(self.values(found["x"]), [(0, "No", 2), (1, "Yes", 1)])
        output = self.procedure("PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LEVEL('Yes').", "l.dta")
        self.assertIn("Vaccinated = Yes", json.dumps(output["tables"]))

    def test_a_dictionary_completes_and_overrides(self):
        self.stat("l.dta", self.COLUMNS, self.ROWS, labels=self.SETS)
        self.schema("l.schema.json", {"name": "x", "title": "Got a jab", "categories": [{"value": 1, "label": "Ja"}],
                                      "missingValues": [{"value": ".a", "label": "Keine Angabe"}, "0"]})
        command = "PROPORTIONS /ONESAMPLE x y TESTTYPES=NONE CITYPES=WALD /MISSING USERMISSING=INCLUDE."
        procedure = self.procedure(command, "l.dta")
        text = json.dumps(procedure["tables"])
        self.assertIn("Got a jab", text)
        counted = {v["name"]: v["userMissing"] for v in procedure["cases"]["variables"]}
        self.assertEqual(counted, {"x": 3, "y": 1})
        groups = self.procedure(WALD.replace("x", "y"), "l.dta", "--split", "x")
        self.assertEqual([c["label"] for c in table(groups, "Intervals")["dimensions"][0]["categories"]], ["No", "Ja", "Keine Angabe"])
        # Without the dictionary the file still says what it says.
        groups = self.procedure(WALD.replace("x", "y"), "l.dta", "--split", "x", "--schema", "none")
        self.assertEqual([c["label"] for c in table(groups, "Intervals")["dimensions"][0]["categories"]], ["No", "Yes", "Refused"])

    def test_labels_belong_to_the_values_of_the_file(self):
        """A dictionary that makes other numbers of a column takes the labels of the old ones away."""
        sets = {"s": [{"value": 1, "label": "Low"}, {"value": 2, "label": "High"}, {"value": 3653, "label": "Unknown"}, {"value": ".a", "label": "Refused"}]}
        self.stat("l.dta", [{"name": "x", "type": "int32", "labels": "s"}, {"name": "d", "type": "int32", "format": "%td", "labels": "s"}],
                  [[1, 3653], [2, 0], [2, ".a"]], labels=sets)
        self.assertEqual(self.values(self.listed("l.dta")["d"]), [("1960-01-01", None, 1), ("1970-01-01", "Unknown", 1)])
        self.schema("l.schema.json", {"name": "x", "type": "string", "categoriesOrdered": True, "categories": ["2", "1"]},
                    {"name": "d", "type": "integer"})
        found = self.listed("l.dta")
        self.assertEqual(self.values(found["x"]), [(1, "2", 2), (2, "1", 1)])
        self.assertEqual(self.values(found["d"]), [(0, None, 1), (3653, None, 1)])
        groups = self.procedure(WALD, "l.dta", "--split", "d")
        self.assertEqual([c["label"] for c in table(groups, "Intervals")["dimensions"][0]["categories"]], ["0", "3653", "Refused"])

    def test_many_labels(self):
        """As many as a set may have, on many columns."""
        sets = {"s": [{"value": value, "label": f"Label {value}"} for value in range(65536)]}
        columns = [{"name": f"x{i}", "type": "int32", "labels": "s"} for i in range(10)]
        self.stat("l.dta", columns, [[0] * 10, [65535] * 10], labels=sets)
        self.assertEqual(self.values(self.listed("l.dta")["x7"]), [(0, "Label 0", 1), (65535, "Label 65535", 1)])
        columns = [{"name": f"x{i}", "type": "int32", "labels": "s"} for i in range(30)]
        self.stat("l.dta", columns, [[0] * 30], labels=sets)
        self.assertIn("l.dta: the value labels of all columns take more memory", self.unusable("l.dta", "--list"))

    def catalogue(self, name, labels):
        write_catalogue(self.folder / name, labels)

    def test_catalogue(self):
        columns = [{"name": "x", "type": "double", "format": "YESNO."}, {"name": "s", "type": "string", "width": 1, "format": "$SEX1."}]
        self.stat("c.sas7bdat", columns, [[1, "m"], [0, "f"], [1, "f"], [".b", "f"], [".a", "f"]])
        self.assertEqual(self.values(self.listed("c.sas7bdat")["x"]), [(0, None, 1), (1, None, 2)])
        sets = {"YESNO": [{"value": 1, "label": "Yes"}, {"value": 0, "label": "No"}, {"value": ".b", "label": "Refused"}], "$SEX": [{"value": "f", "label": "Female"}]}
        self.catalogue("formats.sas7bcat", {"YESNO": [{"value": 1, "label": "Of the folder"}]})
        self.assertEqual(self.values(self.listed("c.sas7bdat")["x"]), [(0, None, 1), (1, "Of the folder", 2)])
        self.catalogue("c.sas7bcat", sets)
        found = self.listed("c.sas7bdat")
        self.assertEqual(self.values(found["x"]), [(0, "No", 1), (1, "Yes", 2)])
        self.assertEqual(self.values(found["s"]), [("f", "Female", 4), ("m", None, 1)])
        groups = self.procedure("PROPORTIONS /ONESAMPLE s TESTTYPES=NONE CITYPES=WALD.", "c.sas7bdat", "--split", "x")
        self.assertEqual([c["label"] for c in table(groups, "Intervals")["dimensions"][0]["categories"]], ["No", "Yes", ".a", "Refused"])
        self.assertIn("catalogue of value labels", self.unusable("c.sas7bdat", "-c", WALD, "-o", "c.sas7bcat", "--format", "text"))
        self.write("c.sas7bcat", b"nothing")
        self.assertIn("c.sas7bcat: the file is", self.unusable("c.sas7bdat", "-c", WALD))

    def test_encodings(self):
        columns = [{"name": "x", "type": "double", "label": "Größe"}, {"name": "t", "type": "string", "width": 12}]
        rows = [[1, "Köln"], [0, "Münster"]]
        self.stat("new.dta", columns, rows)
        self.stat("old.dta", columns, rows, version=114, textBytes=True)
        self.stat("u.sas7bdat", columns, rows)
        for name, encoding in (("new.dta", ()), ("old.dta", ()), ("old.dta", ("--encoding", "ISO-8859-1")), ("u.sas7bdat", ())):
            with self.subTest(name):
                found = self.listed(name, *encoding)
                self.assertEqual(found["x"]["label"], "Größe")
                self.assertEqual({v for v, _, _ in self.values(found["t"])}, {"Köln", "Münster"})
        self.assertEqual(self.listed("old.dta", "--encoding", "ISO-8859-5")["x"]["label"], "Größe".encode("latin-1").decode("iso-8859-5"))
        self.stat("l.xpt", columns, rows, textBytes=True)
        said = self.unusable("l.xpt", "-c", WALD)
        self.assertIn("l.xpt: a name or a label is not text in UTF-8", said)
        self.assertIn("--encoding", said)
        self.assertEqual(self.listed("l.xpt", "--encoding", "windows-1252")["x"]["label"], "Größe")
        columns[0].pop("label")
        self.stat("t.xpt", columns, rows, textBytes=True)
        self.run_program("t.xpt", "-c", WALD)
        self.assertIn("t.xpt, case 1: t: 'K", self.unusable("t.xpt", "-c", WALD.replace("x", "t")))


class Examples(StatFilesTest):
    """The same output, byte for byte, as from the CSV file."""

    def converted(self, path):
        """Columns and rows of a CSV file: numbers where every value that is not missing is one, else texts."""
        with open(path, encoding="utf-8", newline="") as file:
            names, *rows = csv.reader(file)
        columns = []
        for at, name in enumerate(names):
            values = [row[at] for row in rows]
            if all(re.fullmatch(r"(-?\d+(\.\d+)?)?|NA", v) for v in values):
                columns.append({"name": name, "type": "double"})
                for row in rows:
                    row[at] = None if row[at] in ("", "NA") else float(row[at])
            else:
                columns.append({"name": name, "type": "string", "width": max(len(v.encode()) for v in values)})
        return columns, rows

    def test_examples(self):
        compared = 0
        for command in sorted((ROOT / "examples").glob("*.txt")):
            options = ["-f", str(command), "--format", "json", *EXAMPLE_OPTIONS.get(command.stem, [])]
            columns, rows = self.converted(command.with_suffix(".csv"))
            schema = command.with_suffix(".schema.json")
            if schema.exists():
                options += ["--schema", str(schema)]
            expected = self.run_program(str(command.with_suffix(".csv")), *options).stdout
            for form in FORMATS:
                with self.subTest((command.stem, form)):
                    self.stat(f"e.{form}", columns, rows)
                    self.assertEqual(self.run_program(f"e.{form}", *options).stdout, expected)
                    compared += 1
        self.assertGreaterEqual(compared, 21)


class Sources(StatFilesTest):
    def test_folders_and_patterns(self):
        (self.folder / "d" / "year=2023").mkdir(parents=True)
        (self.folder / "d" / "year=2024").mkdir()
        for form in FORMATS:
            with self.subTest(form):
                for path in self.folder.glob("d/*/*"):
                    path.unlink()
                self.stat(f"d/year=2023/a.{form}", numbers("x", "y"), [[1, 5], [0, 6]])
                self.stat(f"d/year=2024/a.{form}", numbers("y", "x"), [[5, 1], [7, 1], [7, None]])
                for data in ("d", f"d/*/a.{form}"):
                    procedure = self.procedure(WALD, data, "--split", "year")
                    self.assertEqual([g["variables"][0]["valid"] for g in procedure["cases"]["groups"]], [2, 2])
                    self.assertEqual(procedure["cases"]["read"], 5)
                self.stat(f"d/year=2024/b.{form}", numbers("x"), [[1]])
                said = self.unusable("d", "-c", WALD)
                self.assertIn(f"d/year=2024/b.{form}: there is no column", said)
                self.stat(f"d/year=2024/b.{form}", [{"name": "x", "type": "string"}, {"name": "y", "type": "double"}], [["a", 1]])
                self.assertIn("the column x is of another kind", self.unusable("d", "-c", WALD))

    def test_labels_that_disagree(self):
        columns = [{"name": "x", "type": "int32", "labels": "s"}, {"name": "y", "type": "int32"}]
        for name, label in (("a", "Yes"), ("b", "No")):
            (self.folder / "d").mkdir(exist_ok=True)
            self.stat(f"d/{name}.dta", columns, [[1, 1], [0, 0]], labels={"s": [{"value": 1, "label": label}]})
        self.assertIn("a value of x has one label in d/a.dta and another in d/b.dta", self.refused(WALD, "d")["text"])
        self.run_program("d", "-c", WALD.replace("x", "y"))

    def test_query(self):
        self.stat("q.dta", [{"name": "x", "type": "double"}, {"name": "d", "type": "double", "format": "%td"}, {"name": "t", "type": "string"}],
                  [[1, 0, "a"], [0, 366, "b"], [".a", 400, "a"], [None, None, ""]])
        procedure = self.procedure(WALD, "q.dta", "--query", "SELECT x FROM data WHERE d IS NULL OR year(d) = 1961 OR t = 'a'")
        counted = procedure["cases"]["variables"][0]
        self.assertEqual((counted["valid"], counted["userMissing"], counted["systemMissing"]), (2, 0, 2))
        said = self.unusable("q.dta", "--table", "t", "-c", WALD)
        self.assertIn("this is a file", said)

    def test_names_in_case_alone(self):
        self.stat("n.dta", numbers("x", "X", "y"), [[1, 0, 1], [0, 0, 1]])
        self.assertIn("differ in the case", self.refused(WALD, "n.dta")["text"])
        self.run_program("n.dta", "-c", WALD.replace("x", "y"))

    def test_what_is_not_read(self):
        for name in ("d.dta.gz", "d.sas7bcat"):
            self.write(name, "x")
            self.assertIn("this ending is not known", self.unusable(name, "-c", WALD))
        os.mkfifo(self.folder / "pipe.dta")
        self.assertIn("only a regular file", self.unusable("pipe.dta", "-c", WALD))

    def test_output_never_replaces_the_data(self):
        self.stat("x.dta", numbers("x"), [[1], [0]])
        self.assertIn("which this run reads", self.unusable("x.dta", "-c", WALD, "-o", "x.dta", "--format", "text"))


class BrokenFiles(StatFilesTest):
    def made(self, form, **others):
        columns = [{"name": "x", "type": "double", "labels": "s"} if form == "dta" else {"name": "x", "type": "double"},
                   {"name": "t", "type": "string", "width": 12}]
        labels = {"s": [{"value": 1, "label": "Yes"}, {"value": 0, "label": "No"}]} if form == "dta" else {}
        name = self.stat(f"b.{form}", columns, [[1, "abc"], [0, "d"], [".a", "e"]], repeat=40, labels=labels, **others)
        return (self.folder / name).read_bytes()

    def ends_well(self, name):
        """A result or a message, and never half of one."""
        done = subprocess.run([PROGRAM, name, "-c", WALD], cwd=self.folder, capture_output=True, timeout=60)
        self.assertIn(done.returncode, (0, 1, 2), (name, done))
        if done.returncode == 2:
            self.assertEqual(done.stdout, b"")
            self.assertIn(name.encode(), done.stderr)
        return done

    def test_empty_and_strange_files(self):
        for form in FORMATS:
            for content in (b"", b"\0", b"x" * 100, b"outcome,age\n1,2\n", bytes(range(256)) * 40, b"\xff" * 5000, b"\0" * 5000):
                self.write(f"s.{form}", content)
                done = self.ends_well(f"s.{form}")
                self.assertEqual(done.returncode, 2, (form, content[:10]))

    def test_every_cut(self):
        """A file that is cut off anywhere is refused, or was cut where nothing is lost."""
        for form, others in (("dta", {}), ("dta", {"version": 114}), ("xpt", {}), ("sas7bdat", {}), ("sas7bdat", {"compressed": True})):
            data = self.made(form, **others)
            whole = self.procedure(WALD, f"b.{form}")
            generator = range(0, len(data), max(1, len(data) // 60))
            for size in generator:
                with self.subTest((form, others, size)):
                    self.write(f"c.{form}", data[:size])
                    done = self.ends_well(f"c.{form}")
                    if done.returncode == 0:
                        self.assertEqual(self.procedure(WALD, f"c.{form}"), whole)

    def test_cut_inside_of_the_value_labels(self):
        for version, lost in ((118, 40), (118, 60), (114, 3), (114, 10)):
            data = self.made("dta", version=version)
            self.write("c.dta", data[:-lost])
            self.assertIn("the value labels at its end cannot be read", self.unusable("c.dta", "-c", WALD))

    def test_several_data_sets_in_a_transport_file(self):
        data = self.made("xpt")
        self.write("two.xpt", data + data[240:])
        self.assertIn("several data sets", self.unusable("two.xpt", "-c", WALD))

    def test_blank_cases_at_the_end_of_a_transport_file(self):
        columns = [{"name": "t", "type": "string", "width": 90}]
        self.stat("e.xpt", columns, [["a"], [""], ["b"]])
        self.assertEqual(self.listed("e.xpt")["t"]["missing"], 1)
        self.stat("e.xpt", columns, [["a"], [""], [""]])
        self.assertIn("blank in every column", self.unusable("e.xpt", "--list"))

    def test_more_cases_than_counted(self):
        """The count of cases of a .sas7bdat file is made wrong."""
        data = self.made("sas7bdat")
        at = data.index(struct.pack("<QQ", 20, 120)) + 8
        self.write("n.sas7bdat", data[:at] + struct.pack("<Q", 121) + data[at + 8:])
        self.assertIn("another number of cases", self.unusable("n.sas7bdat", "-c", WALD))

    def test_nothing_is_left_behind(self):
        """The process that reads ends with the program, however that ends."""
        self.stat("m.dta", numbers("x"), [[1], [0], [1]], repeat=3_000_000)
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGKILL):
            process = subprocess.Popen([PROGRAM, "m.dta", "-c", WALD], cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            children = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children")
            reader = []
            while not reader and process.poll() is None:
                reader = children.read_text().split()
            time.sleep(0.05)
            process.send_signal(number)
            process.communicate(timeout=30)
            self.assertNotEqual(process.returncode, 0, "it was still reading")
            for each in reader:
                for _ in range(100):
                    if not pathlib.Path(f"/proc/{each}/stat").exists():
                        break
                    time.sleep(0.05)
                self.assertFalse(pathlib.Path(f"/proc/{each}/stat").exists(), number)
