"""Levels and cut points as people write them, and where a refused word stands."""

import csv
import io
import unittest

from program import ProgramTest, cells, table

TREAT = {"name": "treat", "type": "integer",
         "categories": [{"value": 0, "label": "control"}, {"value": 1, "label": "drug"}]}


class Levels(ProgramTest):
    def successes(self, command, *arguments):
        """Successes and trials of the first row of the first interval table."""
        found = cells(table(self.procedure(command, "d.csv", *arguments), "Intervals"))
        value = lambda name: next(v for at, v in found.items() if at[-1] == ("Observed", name))
        return value("Successes"), value("Trials")

    def test_a_value_label_is_a_level_of_success(self):
        self.write("d.csv", "treat\n0\n1\n1\n")
        self.schema("d.schema.json", TREAT)
        self.assertEqual(self.successes("/ONESAMPLE treat /SUCCESS VALUE=LEVEL('control')"), (1, 3))
        self.assertEqual(self.successes("/ONESAMPLE treat /SUCCESS VALUE=LEVEL('control' 'drug')"), (3, 3))

    def test_value_labels_are_levels_of_the_grouping(self):
        self.write("d.csv", "v,treat\n0,0\n1,1\n1,1\n0,1\n")
        self.schema("d.schema.json", TREAT, {"name": "v"})
        procedure = self.procedure("/INDEPENDENTSAMPLES v BY treat SELECT=LEVEL('drug' 'control')", "d.csv")
        groups = [c["label"] for c in next(
            d for d in table(procedure, "Group Statistics")["dimensions"] if d["name"] == "treat")["categories"]]
        self.assertEqual(groups, ["= drug", "= control"])

    def test_a_label_in_quotes_comes_before_the_number_it_reads_as(self):
        self.write("d.csv", "v\n1\n2\n2\n")
        self.schema("d.schema.json", {"name": "v", "categories": [{"value": 1, "label": "2"},
                                                                  {"value": 2, "label": "1"}]})
        self.assertEqual(self.successes("/ONESAMPLE v /SUCCESS VALUE=LEVEL('1')"), (2, 3))
        self.assertEqual(self.successes("/ONESAMPLE v /SUCCESS VALUE=LEVEL(1)"), (1, 3))
        error = self.refused("/ONESAMPLE v /SUCCESS VALUE=LEVEL(1 '1')")
        self.assertIn("with and without quotes", error["text"])

    def test_two_values_of_one_label_are_refused_with_both(self):
        self.write("d.csv", "v\n1\n2\n")
        self.schema("d.schema.json", {"name": "v", "categories": [
            {"value": 1, "label": "yes"}, {"value": 2, "label": "yes"}, {"value": 3, "label": "no"}]})
        error = self.refused("/ONESAMPLE v /SUCCESS VALUE=LEVEL('yes')")
        self.assertEqual(error["key"], "Invalid SUCCESS LEVEL ...")
        self.assertIn('"yes" is the label of two values of "v": 1 and 2.', error["text"])
        self.assertEqual(self.successes("/ONESAMPLE v /SUCCESS VALUE=LEVEL(1)"), (1, 2))

    def test_a_refused_level_shows_its_place_and_the_nearest(self):
        self.write("d.csv", "v,treat\n0,0\n1,1\n")
        self.schema("d.schema.json", TREAT, {"name": "v"})
        error = self.refused("/INDEPENDENTSAMPLES v BY treat\n  SELECT=LEVEL('control' 'durg')")
        self.assertEqual(error["key"], "Invalid SELECT LEVEL ...")
        self.assertIn("Line 2, column 26:", error["text"])
        self.assertIn("\n" + " " * 4 + "  SELECT=LEVEL('control' 'durg')\n" + " " * 29 + "^\n", error["text"])
        self.assertIn('"durg" is no value of "treat"', error["text"])
        self.assertIn("Did you mean 'drug'?", error["text"])

    def test_a_text_too_long_for_every_value_shows_the_values(self):
        self.write("d.csv", "v\nyes\nno\n")
        error = self.refused("/ONESAMPLE v /SUCCESS VALUE=LEVEL('yess')")
        self.assertIn("Its values are 'no', 'yes'.", error["text"])
        self.assertIn("Did you mean 'yes'?", error["text"])

    def test_a_text_is_no_value_of_a_numeric_variable(self):
        self.write("d.csv", "v\n0\n1\n2.5\n")
        error = self.refused("/ONESAMPLE v /SUCCESS VALUE=LEVEL('yes')")
        self.assertIn('"yes" is no value of "v", which takes a number. Its values are 0, 1, 2.5.', error["text"])

    def test_a_number_is_the_text_of_a_level_of_a_string(self):
        self.write("d.csv", "v\n01\nx\n1\n")
        self.assertEqual(self.successes("/ONESAMPLE v /SUCCESS VALUE=LEVEL(1)"), (1, 3))
        self.assertEqual(self.successes("/ONESAMPLE v /SUCCESS VALUE=LEVEL(01)"), (1, 3))

    def test_dates_and_times_in_quotes_are_levels(self):
        self.write("d.csv", "d,t\n2024-03-01,12:30:00\n2024-03-02,08:00:00\n2024-03-01,08:00:00\n")
        self.assertEqual(self.successes("/ONESAMPLE d /SUCCESS VALUE=LEVEL('2024-03-01')"), (2, 3))
        self.assertEqual(self.successes("/ONESAMPLE t /SUCCESS VALUE=LEVEL('12:30')"), (1, 3))
        self.assertEqual(self.successes("/ONESAMPLE d /SUCCESS VALUE=LEVEL(1709251200)"), (2, 3))
        error = self.refused("/ONESAMPLE d /SUCCESS VALUE=LEVEL('2024-03-32')")
        self.assertIn("a date, as in", error["text"])

    def test_dates_and_times_in_quotes_are_cut_points(self):
        self.write("d.csv", "d,t,v\n2024-02-29,12:30:00,0\n2024-03-01,08:00:00,1\n2024-03-02,08:00:00,1\n")
        self.assertEqual(self.successes("/ONESAMPLE d /SUCCESS VALUE=CUTPOINT('2024-03-01')"), (2, 3))
        self.assertEqual(self.successes("/ONESAMPLE t /SUCCESS VALUE=CUTPOINT('12:00')"), (1, 3))
        self.assertEqual(self.successes("/ONESAMPLE d /SUCCESS VALUE=CUTPOINT(1709251200)"), (2, 3))
        procedure = self.procedure("/INDEPENDENTSAMPLES v BY d SELECT=CUTPOINT('2024-03-01')", "d.csv")
        groups = [c["label"] for c in next(
            d for d in table(procedure, "Group Statistics")["dimensions"] if d["name"] == "d")["categories"]]
        self.assertEqual(groups, ["< 2024-03-01", ">= 2024-03-01"])

    def test_moments_with_a_zone_are_levels_and_cut_points(self):
        self.write("d.csv", "t\n2024-01-01 08:00Z\n2024-01-01T10:00:00+01\n2024-01-01 05:00-04:30\n")
        for rule, successes in (("LEVEL('2024-01-01 08:00Z')", 1),
                                ("LEVEL('2024-01-01T10:00:00+01' '2024-01-01 05:00-04:30')", 2),
                                ("LEVEL('2024-01-01 09:30')", 1),
                                ("CUTPOINT('2024-01-01 08:30Z')", 2),
                                ("CUTPOINT('2024-01-01 10:30+01:00')", 1)):
            self.assertEqual(self.successes(f"/ONESAMPLE t /SUCCESS VALUE={rule}"), (successes, 3), rule)
        self.refused("/ONESAMPLE t /SUCCESS VALUE=LEVEL('2024-01-01 08:00+16')")
        self.refused("/ONESAMPLE t /SUCCESS VALUE=CUTPOINT('2024-01-01 08:60Z')")
        self.write("d.csv", "t\n2024-01-01\n2024-01-02\n")
        self.refused("/ONESAMPLE t /SUCCESS VALUE=LEVEL('2024-01-01 00:00Z')")

    def test_a_date_cuts_no_variable_of_another_kind(self):
        self.write("d.csv", "d,t,v,x\n2024-02-29,12:30:00,0,a\n2024-03-01,08:00:00,1,b\n")
        for command in ("/ONESAMPLE v /SUCCESS VALUE=CUTPOINT('2024-03-01')",
                        "/ONESAMPLE d t /SUCCESS VALUE=CUTPOINT('2024-03-01')",
                        "/ONESAMPLE x /SUCCESS VALUE=CUTPOINT('2024-03-01')",
                        "/INDEPENDENTSAMPLES v BY t SELECT=CUTPOINT('2024-03-01')",
                        "/SUCCESS VALUE=CUTPOINT('2024-03-01') /ONESAMPLE t"):
            with self.subTest(command=command):
                text = self.refused("PROPORTIONS " + command)["text"]
                self.assertIn('"2024-03-01" cannot cut', text)
                self.assertIn("^", text)
        self.assertIn("one number in parentheses",
                      self.refused("/ONESAMPLE d /SUCCESS VALUE=CUTPOINT('soon')")["text"])


class Refusals(ProgramTest):
    """Every refusal that concerns a word shows the line with a caret under it."""

    CASES = [
        ("/ONESAMPLE a /PAIREDSAMPLES a b", "PAIREDSAMPLES"),
        ("/PAIREDSAMPLES a WITH b WITH b", "WITH b"),
        ("/PAIREDSAMPLES WITH b", "WITH"),
        ("/PAIREDSAMPLES a WITH", "WITH"),
        ("/PAIREDSAMPLES a WITH b (PAIR)", "(PAIR)"),
        ("/PAIREDSAMPLES a a", "a a"),
        ("/INDEPENDENTSAMPLES a", "INDEPENDENTSAMPLES"),
        ("/INDEPENDENTSAMPLES a BY b BY b", "BY b"),
        ("/INDEPENDENTSAMPLES BY b", "BY"),
        ("/INDEPENDENTSAMPLES a BY", "BY"),
        ("/INDEPENDENTSAMPLES a BY b s", "s"),
        ("/INDEPENDENTSAMPLES a BY s", "s"),
        ("/INDEPENDENTSAMPLES a BY s SELECT=MIDPOINT", "s SELECT"),
        ("/INDEPENDENTSAMPLES a BY b SELECT=LEVEL(1)", "LEVEL"),
        ("/INDEPENDENTSAMPLES a BY b SELECT=LEVEL(3 3.0)", "3 3.0"),
        ("/INDEPENDENTSAMPLES a BY b SELECT=LEVEL(1 'x')", "'x'"),
        ("/ONESAMPLE a s /SUCCESS VALUE=MIDPOINT", "MIDPOINT"),
        ("/ONESAMPLE a /SUCCESS VALUE=LEVEL(1 'x')", "'x'"),
        ("/ONESAMPLE a TESTTYPES=WALD NONE", "NONE"),
        ("/ONESAMPLE a CITYPES=NONE WALD", "NONE"),
    ]

    def test_every_refusal_shows_line_and_caret(self):
        self.write("d.csv", "a,b,s\n0,1,x\n1,2,y\n")
        for command, word in self.CASES:
            with self.subTest(command=command):
                text = self.refused(command)["text"]
                lines = text.split("\n")
                self.assertEqual(lines[1], "    " + command)
                column = lines[2].index("^") - 4
                self.assertTrue(command[column:].startswith(word), text)
                self.assertTrue(text.startswith(f"Line 1, column {column + 1}: "), text)


class Text(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "a,b\n0,1\n1,0\n1,1\n")

    def test_the_name_may_be_left_out_before_a_design(self):
        whole = self.procedure("PROPORTIONS /ONESAMPLE a /CRITERIA CILEVEL=90", "d.csv")["tables"]
        for command in ("/ONESAMPLE a /CRITERIA CILEVEL=90", "onesample a /criteria cilevel=90",
                        "PROPORTIONS ONESAMPLE a /CRITERIA CILEVEL=90"):
            with self.subTest(command=command):
                self.assertEqual(self.procedure(command, "d.csv")["tables"], whole)

    def test_it_may_not_before_anything_else(self):
        for command in ("/SUCCESS VALUE=LAST /ONESAMPLE a", "SUCCESS VALUE=LAST", "ONESAMPEL a"):
            with self.subTest(command=command):
                self.assertIn("^", self.refused(command)["text"])
        self.assertIn("Did you mean ONESAMPLE?", self.refused("ONESAMPEL a")["text"])

    def test_a_forgotten_full_stop_is_named(self):
        for first in ("PROPORTIONS /ONESAMPLE a", "PROPORTIONS /ONESAMPLE a TESTTYPES=WALD",
                      "PROPORTIONS /ONESAMPLE a TESTVAL=0.2"):
            with self.subTest(first=first):
                text = self.refused(first + "\nPROPORTIONS /ONESAMPLE b.")["text"]
                self.assertIn("Line 2, column 1: A command begins here", text)
                self.assertIn("full stop", text)

    def test_commands_far_down_in_a_long_text_are_numbered_right(self):
        self.write("many.txt", "\n\n# a comment\n" + "/ONESAMPLE a.\n" * 3 + "\n/ONESAMPLE\n  x.\n")
        done = self.run_program("d.csv", "-f", "many.txt", status=1)
        self.assertIn(b"Line 9, column 3:", done.stdout + done.stderr)

    def test_sixty_thousand_levels_and_two_thousand_variables(self):
        levels = " ".join(str(i) for i in range(60_000))
        self.write("c.txt", f"/ONESAMPLE a /SUCCESS VALUE=LEVEL({levels})")
        self.run_program("d.csv", "-f", "c.txt", "--format", "json")
        names = ",".join(f"v{i}" for i in range(2_000))
        self.write("wide.csv", f"{names}\n{','.join('1' * 2_000)}\n{','.join('0' * 2_000)}\n")
        done = self.run_json("/ONESAMPLE ALL CITYPES=WALD TESTTYPES=NONE", "wide.csv")
        self.assertEqual(len(done[0]["cases"]["variables"]), 2_000)

    def test_long_lists_of_levels_find_what_short_ones_find(self):
        csv.field_size_limit(1 << 20)  # "success" names all levels
        rows = [(i * 7919 % 50_000, i % 3) for i in range(50_000)]
        self.write("d.csv", "number,text,g\n" + "".join(f"{value},t{value},{group}\n" for value, group in rows))
        for step in (2, 3):
            levels = range(0, 50_000, step)
            for variable, written in (("number", levels), ("text", (f"'t{value}'" for value in levels))):
                self.write("c.txt", f"/ONESAMPLE {variable} CITYPES=WALD TESTTYPES=NONE "
                                    f"/SUCCESS VALUE=LEVEL({' '.join(map(str, written))})")
                done = self.run_program("d.csv", "-f", "c.txt", "--split", "g", "--format", "csv")
                found = [(int(row["successes"]), int(row["trials"])) for row in csv.DictReader(io.StringIO(done.stdout.decode()))]
                expected = [[value % step == 0 for value, its in rows if its == group] for group in range(3)]
                self.assertEqual(found, [(sum(group), len(group)) for group in expected], (variable, step))


if __name__ == "__main__":
    unittest.main()
