"""The tables as comma-separated values: one row for each row of a table, the same columns in every run."""

import csv
import io
import pathlib
import re

from program import ProgramTest

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs" / "methods"
COLUMNS = ("command design table variable success variable2 success2 measurement group_variable group method "
           "successes trials proportion test_value difference std_error z p_one_sided p_two_sided level lower upper "
           "note").split()


def keywords(page, section):
    """The methods that a page of the documentation describes in a section, in its order."""
    text = (DOCS / page).read_text()
    part = re.search(rf"^## {section}\n(.*?)(?=^## |\Z)", text, re.M | re.S).group(1)
    return re.findall(r"^### (\w+)", part, re.M)


class TidyCsv(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "a,b,g,s\n1,1,1,n\n1,0,1,n\n0,1,2,n\n1,1,2,s\n0,0,1,s\n1,0,2,s\n")

    def rows(self, command, *arguments, data="d.csv"):
        text = self.run_program(data, "-c", command, "--format", "csv", *arguments).stdout.decode()
        reader = csv.DictReader(io.StringIO(text, newline=""))
        rows = list(reader)
        self.header = reader.fieldnames
        for row in rows:
            self.assertNotIn(None, row)
        return rows

    def test_one_sample_rows_hold_what_the_tables_show(self):
        rows = self.rows("PROPORTIONS /ONESAMPLE a TESTVAL=0.25 CITYPES=ALL TESTTYPES=ALL /CRITERIA CILEVEL=90.")
        self.assertEqual(self.header, COLUMNS)
        intervals = [r for r in rows if r["table"] == "intervals"]
        tests = [r for r in rows if r["table"] == "tests"]
        self.assertEqual(len(rows), len(intervals) + len(tests))
        self.assertEqual([r["method"] for r in intervals], keywords("onesample.md", "Intervals"))
        self.assertEqual([r["method"] for r in tests], keywords("onesample.md", "Tests"))
        for row in rows:
            self.assertEqual([row[c] for c in ("command", "design", "variable", "success", "successes", "trials")],
                             ["1", "one-sample", "a", "1", "4", "6"])
            self.assertEqual(float(row["proportion"]), 4 / 6)
        for row in intervals:
            self.assertEqual((row["level"], row["test_value"], row["p_two_sided"]), ("90", "", ""))
            self.assertLess(float(row["lower"]), float(row["upper"]))
        for row in tests:
            self.assertEqual((row["level"], row["test_value"], row["lower"]), ("", "0.25", ""))
            self.assertAlmostEqual(float(row["difference"]), 4 / 6 - .25, delta=1e-15)
            self.assertEqual(row["z"] == "", row["method"] in ("EXACT", "MIDP"))

    def test_columns_that_a_run_adds_keep_their_names(self):
        self.write("st.csv", "statistic,df,x\n7,1,1\n7,1,0\n")
        self.rows("ONESAMPLE x", "--split", "statistic,df", "--bootstrap", "5", "--seed", "1",
                  data="st.csv")
        self.assertEqual(self.header[3:5], ["split_statistic", "df"])
        self.assertEqual(len(set(self.header)), len(self.header))
        self.write("mi.csv", "df,riv,Imputation_,x\n" + "7,8,0,1\n7,8,1,1\n7,8,1,0\n7,8,2,1\n")
        rows = self.rows("ONESAMPLE x", "--split", "df,riv,Imputation_", data="mi.csv")
        self.assertEqual(self.header[3:6], ["split_df", "split_riv", "Imputation_"])
        self.assertEqual({(r["split_df"], r["split_riv"]) for r in rows}, {("7", "8")})
        self.assertEqual(len(set(self.header)), len(self.header))

    def test_a_bar_in_a_value_is_doubled_under_every_rule(self):
        self.write("bar.csv", "s,t,g\nz|b,z|b,g|1\na,a,h\nz|b,a,h\na,z|b,g|1\n")
        for rule in ("LAST", "LEVEL('z|b')"):
            rows = self.rows(f"ONESAMPLE s /SUCCESS VALUE={rule}", data="bar.csv")
            self.assertEqual({r["success"] for r in rows}, {"z||b"}, rule)
            rows = self.rows(f"PAIREDSAMPLES s t /SUCCESS VALUE={rule}", data="bar.csv")
            statistics = [r for r in rows if r["table"] == "statistics"]
            self.assertEqual({(r["success"], r["success2"]) for r in statistics},
                             {("z||b", "z||b")}, rule)
        rows = self.rows("INDEPENDENTSAMPLES s BY g SELECT=LEVEL('g|1' 'h')", data="bar.csv")
        self.assertEqual({r["group"] for r in rows if r["table"] == "statistics"}, {"g||1", "h"})

    def test_many_rows_stand_in_order(self):
        """Rows that are made side by side are written one after the other."""
        self.write("many.csv", "g,x\n" + "".join(f"{group},{group % 2}\n{group},1\n" for group in range(9000)))
        rows = self.rows("PROPORTIONS /ONESAMPLE x CITYPES=WALD TESTTYPES=NONE /SUCCESS VALUE=LEVEL(1).", "--split", "g", data="many.csv")
        self.assertEqual([(row["g"], row["successes"]) for row in rows], [(str(group), str(1 + group % 2)) for group in range(9000)])

    def test_paired_statistics_carry_both_variables(self):
        rows = self.rows("PROPORTIONS /PAIREDSAMPLES a WITH b CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1).")
        statistics = [r for r in rows if r["table"] == "statistics"]
        self.assertEqual([[r[c] for c in ("variable", "success", "variable2", "success2", "measurement", "successes")]
                          for r in statistics], [["a", "1", "b", "1", "1", "4"], ["a", "1", "b", "1", "2", "3"]])
        others = [r for r in rows if r["table"] != "statistics"]
        for row in others:
            self.assertEqual([row[c] for c in ("variable", "success", "variable2", "success2", "measurement", "trials")],
                             ["a", "", "b", "", "", ""])
        self.assertEqual([r["method"] for r in others],
                         keywords("paired.md", "Intervals") + keywords("paired.md", "Tests"))

    def test_successes_of_a_pair_are_those_of_the_split_group(self):
        self.write("p.csv", "a,b,s\n1,3,x\n2,4,x\n5,7,y\n6,8,y\n")
        rows = self.rows("PROPORTIONS /PAIREDSAMPLES a WITH b TESTTYPES=NONE.", "--split", "s", data="p.csv")
        shown = {(r["s"], r["measurement"]): (r["success"], r["success2"])
                 for r in rows if r["table"] == "statistics" and r["trials"]}
        self.assertEqual(shown, {("x", "1"): ("2", "4"), ("x", "2"): ("2", "4"),
                                 ("y", "1"): ("6", "8"), ("y", "2"): ("6", "8")})

    def test_independent_rows_name_the_grouping_variable(self):
        rows = self.rows("PROPORTIONS /INDEPENDENTSAMPLES a BY g CITYPES=ALL TESTTYPES=ALL.")
        self.assertEqual({r["group_variable"] for r in rows}, {"g"})
        statistics = [r for r in rows if r["table"] == "statistics"]
        self.assertEqual([(r["group"], r["successes"], r["trials"]) for r in statistics], [("1", "2", "3"), ("2", "2", "3")])
        others = [r for r in rows if r["table"] != "statistics"]
        self.assertEqual({r["group"] for r in others}, {""})
        self.assertEqual([r["method"] for r in others],
                         keywords("independent.md", "Intervals") + keywords("independent.md", "Tests"))
        cut = self.rows("PROPORTIONS /INDEPENDENTSAMPLES a BY g SELECT=CUTPOINT(1.5) TESTTYPES=NONE.")
        self.assertEqual([r["group"] for r in cut if r["group"]], ["< 1.5", ">= 1.5"])

    def test_split_groups_in_both_layouts(self):
        command = "PROPORTIONS /ONESAMPLE a."
        as_rows = self.rows(command, "--split", "s")
        as_tables = self.rows(command, "--split", "s", "--split-layout", "tables")
        self.assertEqual(self.header, COLUMNS[:3] + ["s"] + COLUMNS[3:])
        order = lambda row: (row["s"], row["table"], row["method"])
        self.assertEqual(sorted(as_rows, key=order), sorted(as_tables, key=order))
        self.assertEqual({r["s"] for r in as_rows}, {"n", "s"})

    def test_commands_are_numbered_and_share_the_columns(self):
        rows = self.rows("PROPORTIONS /ONESAMPLE a CITYPES=WALD TESTTYPES=NONE.\n"
                         "PROPORTIONS /PAIREDSAMPLES a b CITYPES=NONE TESTTYPES=WALD.")
        self.assertEqual([(r["command"], r["design"], r["table"]) for r in rows],
                         [("1", "one-sample", "intervals")] + [("2", "paired", "statistics")] * 2 + [("2", "paired", "tests")])

    def test_dates_and_missing_values_are_shown_as_labels_show_them(self):
        self.write("t.csv", "x,day\n1,2024-03-01\n0,2024-03-01\n1,\n0,\n")
        rows = self.rows("PROPORTIONS /ONESAMPLE x CITYPES=WALD TESTTYPES=NONE.", "--split", "day", data="t.csv")
        self.assertEqual([r["day"] for r in rows], [".", "2024-03-01"])
