"""Split groups in both layouts, and resampled data."""

import json
import random
import re

from program import ProgramTest, cells, keys, table

COMMAND = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL(1)."


class SplitGroups(ProgramTest):
    def test_rows_tables_and_filters_agree(self):
        rows = [f"{i % 2},{'north south west'.split()[i % 3]},{i % 4}" for i in range(120)]
        self.write("d.csv", "x,region,sex\n" + "\n".join(rows) + "\n")
        shared = cells(table(self.procedure(COMMAND, "d.csv", "--split", "region,sex"), "Intervals"))
        separate = self.procedure(COMMAND, "d.csv", "--split", "region,sex", "--split-layout", "tables")["tables"]
        self.assertEqual(len(separate), 12)
        for one in separate:
            group = ((one["split"]["region"],), (one["split"]["sex"],))
            for place, number in cells(one).items():
                self.assertEqual(shared[group + place], number)
        for region in ("north", "south", "west"):
            self.write("f.csv", "x,region,sex\n" + "\n".join(r for r in rows if region in r and r.endswith("1")) + "\n")
            for place, number in cells(table(self.procedure(COMMAND, "f.csv"), "Intervals")).items():
                self.assertEqual(shared[((region,), ("1",)) + place], number)

    def test_every_design_gives_a_group_what_its_cases_alone_give(self):
        # With tables of their own, the groups' first and last values and midpoints are their own, too.
        generator = random.Random(3)
        rows = [(generator.choice("0129"), generator.choice("01"), generator.choice(["yes", "no", ""]),
                 generator.choice("1234"), generator.choice("acb"), generator.choice(["0.4", "1", "2.5"]))
                for _ in range(150)]
        header = "x,y,s,k,g,w\n"
        self.schema("all.schema.json", {"name": "x", "missingValues": ["9"]})
        self.schema("one.schema.json", {"name": "x", "missingValues": ["9"]})
        self.write("all.csv", header + "".join(",".join(row) + "\n" for row in rows))
        for design in ("/ONESAMPLE x y s", "/PAIREDSAMPLES x y s", "/PAIREDSAMPLES x WITH y s",
                       "/INDEPENDENTSAMPLES x y BY k SELECT=MIDPOINT",
                       "/INDEPENDENTSAMPLES y s BY k SELECT=LEVEL(1 3)"):
            for rule in ("FIRST", "LAST", "LEVEL(1)"):
                command = f"PROPORTIONS {design} TESTTYPES=ALL CITYPES=ALL /SUCCESS VALUE={rule}."
                together = self.procedure(command, "all.csv", "--weight", "w", "--split", "g", "--split-layout", "tables")
                for group in "abc":
                    self.write("one.csv", header + "".join(",".join(row) + "\n" for row in rows if row[4] == group))
                    alone = self.procedure(command, "one.csv", "--weight", "w")
                    found = [t for t in together["tables"] if t["split"] == {"g": group}]
                    self.assertEqual([t["title"] for t in found], [t["title"] for t in alone["tables"]])
                    for one, other in zip(found, alone["tables"]):
                        self.assertEqual(cells(one), cells(other), (command, group))

    def test_one_group_only(self):
        self.write("d.csv", "x,g\n1,a\n0,a\n1,a\n")
        shared = table(self.procedure(COMMAND, "d.csv", "--split", "g"), "Intervals")
        alone = table(self.procedure(COMMAND, "d.csv"), "Intervals")
        self.assertEqual({place[1:]: number for place, number in cells(shared).items()}, cells(alone))

    def test_group_whose_values_are_all_missing(self):
        self.write("d.csv", "x,g\n1,a\n0,a\n,b\n,b\n1,c\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--split", "g")
        self.assertEqual([(m["key"], m["level"], m["split"]) for m in p["messages"]],
                         [("Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...", 2, {"g": "b"})])
        self.assertEqual([c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]], ["a", "c"])
        listwise = self.procedure("PROPORTIONS /ONESAMPLE x /MISSING SCOPE=LISTWISE.", "d.csv", "--split", "g")
        self.assertEqual([(m["level"], m["split"]) for m in listwise["messages"]], [(2, {"g": "b"})])

    def test_order_of_groups(self):
        self.write("d.csv", "x,g\n1,10\n0,2\n1,\n0,-1\n1,2\n")
        groups = table(self.procedure(COMMAND, "d.csv", "--split", "g"), "Intervals")["dimensions"][0]["categories"]
        self.assertEqual([g["label"] for g in groups], [".", "-1", "2", "10"])

    def test_names_with_commas(self):
        self.write("d.csv", 'x,"a,b",a\n1,1,5\n0,2,6\n')
        for arguments, split in ((["--split", "a,b"], ["a,b"]), (["--split", "a,b", "--split", "a"], ["a,b", "a"]),
                                 (["--split", "a,x"], ["a", "x"])):
            command = "/ONESAMPLE x /SUCCESS VALUE=LEVEL(1)" if "x" not in split else "/ONESAMPLE \"a,b\""
            tables = self.procedure(command, "d.csv", *arguments)["tables"]
            self.assertEqual([d["name"] for d in tables[0]["dimensions"][:len(split)]], split)
        for names, place in (("a,", 2), (",a", 1), ("a,,x", 2), (",", 1)):
            self.assertIn(f"--split: the name of place {place} in '{names}' is empty. Put one comma between two names.",
                          self.unusable("d.csv", "--split", names, "-c", "/ONESAMPLE x"))
        self.assertIn("--split: the name is empty. Name a variable, or leave the option out.",
                      self.unusable("d.csv", "--split", "", "-c", "/ONESAMPLE x"))

    def test_values_of_one_label(self):
        """Told apart alike wherever a group is named."""
        self.write("d.csv", "x,g\n1,1\n0,1\n1,2\n1,2\n0,2\n,3\n")
        self.write("d.schema.json", json.dumps({"fields": [{"name": "g", "type": "integer", "categories": [
            {"value": 1, "label": "X"}, {"value": 2, "label": "X"}]}]}))
        names = ["X [g]", "X [g] (2)", "3"]
        for layout in ("rows", "tables"):
            p = self.procedure(COMMAND, "d.csv", "--split", "g", "--split-layout", layout)
            self.assertEqual([g["split"]["g"] for g in p["cases"]["groups"]], names)
            self.assertEqual([g["read"] for g in p["cases"]["groups"]], [2, 3, 1])
            self.assertEqual([m["split"] for m in p["messages"]], [{"g": "3"}])
            if layout == "tables":
                self.assertEqual([t["split"]["g"] for t in p["tables"] if t["title"].endswith("Intervals")], names[:2])
            else:
                self.assertEqual([c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]], names[:2])
        text = self.run_program("d.csv", "--split", "g", "-c", COMMAND).stdout.decode()
        for name, read in zip(names, (2, 3, 1)):
            self.assertRegex(text.split("Cases Read")[1], re.escape(name) + rf" +x +{read} ")

    def test_labels_that_read_like_values(self):
        """A label that is the text of another value that occurs; one that does not occur changes nothing."""
        self.write("d.csv", "x,g\n1,4\n0,4\n1,3\n1,3\n0,3\n,3\n0,1\n1,1\n,2\n")
        categories = [{"value": 4, "label": "3"}, {"value": 1, "label": "0"}, {"value": 2, "label": "4"}]
        self.schema("d.schema.json", {"name": "g", "type": "integer", "categories": categories})
        names = ["0", "4", "3 [g]", "3 [g] (2)"]
        for layout in ("rows", "tables"):
            p = self.procedure(COMMAND, "d.csv", "--split", "g", "--split-layout", layout)
            self.assertEqual([(g["split"]["g"], g["read"]) for g in p["cases"]["groups"]], list(zip(names, (2, 1, 4, 2))))
            self.assertEqual([m["split"] for m in p["messages"]], [{"g": "4"}])
            if layout == "tables":
                shown = [t["split"]["g"] for t in p["tables"] if t["title"].endswith("Intervals")]
            else:
                shown = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
            self.assertEqual(shown, ["0", "3 [g]", "3 [g] (2)"])

    def test_messages_on_groups_that_read_alike(self):
        """The first group has no valid case: its message is issued before the second one is met."""
        for text, label in (("3", 3), ("k", "k")):
            self.write("d.csv", f"x,g\n,{text}\n1,{'4' if text == '3' else 'm'}\n0,{'4' if text == '3' else 'm'}\n")
            self.schema("d.schema.json", {"name": "g", "type": "integer" if text == "3" else "string",
                                          "categories": [{"value": 4 if text == "3" else "m", "label": text}]})
            for layout in ("rows", "tables"):
                p = self.procedure(COMMAND, "d.csv", "--split", "g", "--split-layout", layout)
                self.assertEqual([g["split"]["g"] for g in p["cases"]["groups"]], [f"{text} [g]", f"{text} [g] (2)"], label)
                self.assertEqual([m["split"] for m in p["messages"]], [{"g": f"{text} [g]"}])

    def test_gathered_values(self):
        self.write("d.csv", "x,g\n1,a\n2,a\n5,b\n4,b\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--split", "g")
        rows = table(p, "Intervals")["dimensions"][1]["categories"]
        self.assertEqual([r["label"] for r in rows], ["x = 2", "x = 5"])
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD.", "d.csv", "--split", "g", "--split-layout", "tables")
        self.assertEqual([[c["label"] for c in t["dimensions"][0]["categories"]] for t in p["tables"]], [["x = 2"], ["x = 5"]])

    def test_gathered_first_of_the_first_list_is_missing(self):
        self.write("d.csv", "x,g\n1,a\n2,a\n5,b\n4,b\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=FIRST.", "d.csv", "--split", "g")
        rows = table(p, "Intervals")["dimensions"][1]["categories"]
        self.assertEqual([r["label"] for r in rows], ["x = .", "x = 1", "x = 4"])
        text = self.run_program("d.csv", "--split", "g", "-c", "PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=FIRST.").stdout.decode()
        self.assertNotIn("x = .", text)

    def test_group_without_cases(self):
        self.write("d.csv", "x,g,w\n1,a,1\n0,a,1\n1,b,0\n1,c,1\n")
        p = self.procedure(COMMAND, "d.csv", "--split", "g", "--weight", "w")
        self.assertEqual([(m["severity"], m["level"], m["split"]) for m in p["messages"]], [("warning", 2, {"g": "b"})])
        self.assertEqual([c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]], ["a", "c"])

    def test_warning_names_its_group(self):
        self.write("d.csv", "x,y,g\n1,,a\n0,,a\n1,1,b\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x y.", "d.csv", "--split", "g")
        self.assertEqual([(m["key"], m["arguments"], m["split"]) for m in p["messages"]],
                         [("Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...", ["y"], {"g": "a"})])

    def test_gathered_midpoints_of_the_grouping(self):
        self.write("d.csv", "x,k,g\n" + "".join(f"{i % 2},{i % 4 + (10 if g == 'b' else 0)},{g}\n" for g in "ab" for i in range(8)))
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY k SELECT=MIDPOINT.", "d.csv", "--split", "g")
        groups = next(d for d in table(p, "Group Statistics")["dimensions"] if d["name"] == "k")
        self.assertEqual([c["label"] for c in groups["categories"]], ["< 1.5", "< 11.5", ">= 1.5", ">= 11.5"])

    def test_hundreds_of_groups(self):
        self.write("d.csv", "x,g\n" + "".join(f"{(i * i) % 2},{i % 500}\n" for i in range(5000)))
        p = self.procedure(COMMAND, "d.csv", "--split", "g")
        self.assertEqual(len(table(p, "Intervals")["dimensions"][0]["categories"]), 500)


class Resamples(ProgramTest):
    COMMAND = "PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD."

    def successes(self, procedure):
        a_table = table(procedure, "Intervals")
        return {place[0][0]: number for place, number in cells(a_table).items() if "Successes" in place[-1]}

    def test_reference_values_of_the_base_group(self):
        self.write("d.csv", "x,$bootstrap_split\n0,0\n1,0\n2,0\n0,1\n1,1\n1,1\n2,2\n2,2\n0,2\n")
        p = self.procedure(self.COMMAND, "d.csv", "--split", "$bootstrap_split")
        # The largest value of the base data, 2, counts in every resample; sample 1 has none.
        self.assertEqual(self.successes(p), {"0": 1, "1": 0, "2": 2})

    def test_reference_values_in_both_lists_of_pairs(self):
        self.write("d.csv", "x,y,$bootstrap_split\n0,0,0\n1,3,0\n0,1,1\n0,1,1\n")
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES x WITH y.", "d.csv", "--split", "$bootstrap_split")
        counts = {(place[0][0], place[1][-1]): number
                  for place, number in cells(table(p, "Statistics")).items() if place[-1][-1] == "Successes"}
        # The base data's largest values, 1 and 3, count in the resample, which has neither.
        self.assertEqual(counts, {("0", "x = 1"): 1, ("0", "y = 3"): 1, ("1", "x = 1"): 0, ("1", "y = 3"): 0})

    def test_reference_midpoint_of_the_grouping(self):
        self.write("d.csv", "x,k,$bootstrap_split\n" + "0,1,0\n1,9,0\n1,2,0\n0,8,0\n" + "1,5.2,1\n0,7,1\n1,4,1\n1,6,1\n")
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY k SELECT=MIDPOINT.", "d.csv", "--split", "$bootstrap_split")
        trials = {(place[0][0], place[2][0]): number
                  for place, number in cells(table(p, "Group Statistics")).items() if place[-1][-1] == "Trials"}
        # The base data's midpoint is 5; by its own, 5.5, the resample would have two cases on each side.
        self.assertEqual(trials, {("0", "< 5"): 2, ("0", ">= 5"): 2, ("1", "< 5"): 1, ("1", ">= 5"): 3})

    def test_a_string_numbers_no_resamples(self):
        self.write("d.csv", "x,$bootstrap_split\n0,base\n1,base\n0,one\n2,one\n")
        p = self.procedure(self.COMMAND, "d.csv", "--split", "$bootstrap_split")
        self.assertEqual(p["status"], "ok")
        self.assertEqual(self.successes(p), {"base": 1, "one": 1})

    def test_first_of_two_base_groups_wins(self):
        # Both base groups carry the user split value a; resamples copy from the one that stands first.
        self.write("d.csv", "x,Imputation_,g\n0,0,a\n3,0,a\n0,0.2,a\n5,0.2,a\n3,1,a\n5,1,a\n3,2,a\n")
        p = self.procedure(self.COMMAND, "d.csv", "--split", "Imputation_,g")
        self.assertEqual(self.successes(p), {"0": 1, "0.2": 1, "1": 1, "2": 1})

    def test_inconsistent_and_invalid(self):
        self.write("d.csv", "x,Imputation_,g\n0,0,1\n1,0,1\n0,1,1\n1,1,2\n")
        p = self.procedure(self.COMMAND, "d.csv", "--split", "Imputation_,g", status=1)
        self.assertEqual((keys(p, "error"), p["tables"], p["status"]), (["Impute split values not consistent ..."], [], "failed"))
        self.write("e.csv", "x,$bootstrap_split\n0,-1\n1,0\n")
        p = self.procedure(self.COMMAND, "e.csv", "--split", "$bootstrap_split", status=1)
        self.assertEqual((keys(p, "error"), p["status"]), (["Invalid bootstrap index ..."], "failed"))

    def test_user_split_strings_of_all_widths(self):
        for width in (1, 8, 9, 16, 17):
            name = "k" * width
            self.write("d.csv", f"x,$bootstrap_split,g\n0,0,{name}\n3,0,{name}\n3,1,{name}\n2,1,{name}\n")
            p = self.procedure(self.COMMAND, "d.csv", "--split", "$bootstrap_split,g")
            self.assertEqual(p["status"], "ok")
            self.assertEqual(self.successes(p), {"0": 1, "1": 1}, width)

    def test_not_looked_for_with_tables_of_their_own(self):
        self.write("d.csv", "x,$bootstrap_split\n0,-1\n1,-1\n2,1\n")
        p = self.procedure(self.COMMAND, "d.csv", "--split", "$bootstrap_split", "--split-layout", "tables")
        self.assertEqual((p["status"], len(p["tables"])), ("ok", 2))
