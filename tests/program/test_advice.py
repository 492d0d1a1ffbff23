"""What a run read and left out, and the advice on its command."""

import json
import unittest

from program import ProgramTest

DESIGNS = {
    "one": "PROPORTIONS /ONESAMPLE v",
    "paired": "PROPORTIONS /PAIREDSAMPLES v WITH w",
    "two": "PROPORTIONS /INDEPENDENTSAMPLES v BY g",
}

# code: (advice is due, command, data, dictionary fields or None, options, variables it names)
ADVICE = [
    # constant-variable: FIRST, LAST or MIDPOINT, and one valid value in all the data.
    ("constant-variable", "/ONESAMPLE v", "v\n0\n0\n0\n", None, [], ["v"]),
    ("constant-variable", "/ONESAMPLE v /SUCCESS VALUE=FIRST", "v\n0\n\n0\n", None, [], ["v"]),
    ("constant-variable", "/ONESAMPLE v /SUCCESS VALUE=MIDPOINT", "v\n2\n2\n", None, [], ["v"]),
    ("constant-variable", "/ONESAMPLE v", "v\nno\nno\n", None, [], ["v"]),
    ("constant-variable", "/ONESAMPLE v", "v,m\n1,1\n0,0\n1,2\n", None, ["--weight", "m"], ["v"]),
    ("constant-variable", "/ONESAMPLE v", "v\n1\n9\n", [{"name": "v", "missingValues": ["9"]}], [], ["v"]),
    ("constant-variable", "/PAIREDSAMPLES v WITH u", "v,u\n0,1\n0,1\n", None, [], ["v", "u"]),
    ("constant-variable", "/ONESAMPLE v", "v\n0\n1\n0\n", None, [], []),
    ("constant-variable", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(0)", "v\n0\n0\n", None, [], []),
    ("constant-variable", "/ONESAMPLE v /SUCCESS VALUE=CUTPOINT(0)", "v\n0\n0\n", None, [], []),
    ("constant-variable", "/ONESAMPLE v /MISSING USERMISSING=INCLUDE", "v\n1\n9\n",
     [{"name": "v", "missingValues": ["9"]}], [], []),
    ("constant-variable", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 1.5)", "v,g\n0,1\n1,1\n", None, [], []),
    # success-differs: FIRST or LAST with split groups.
    ("success-differs", "/ONESAMPLE v", "s,v\na,0\na,1\nb,0\n", None, ["--split", "s"], ["v"]),
    ("success-differs", "/ONESAMPLE v /SUCCESS VALUE=FIRST", "s,v\na,0\na,1\nb,1\n", None, ["--split", "s"], ["v"]),
    ("success-differs", "/ONESAMPLE v", "s,v\na,no\na,yes\nb,no\n", None, ["--split", "s"], ["v"]),
    ("success-differs", "/ONESAMPLE v u /MISSING SCOPE=LISTWISE", "s,v,u\na,0,1\na,1,1\nb,0,1\nb,1,\n", None,
     ["--split", "s"], ["v"]),
    ("success-differs", "/ONESAMPLE v u", "s,v,u\na,0,1\na,1,1\nb,0,1\nb,1,\n", None, ["--split", "s"], []),
    ("success-differs", "/ONESAMPLE v", "s,v\na,0\na,1\nb,1\nc,\n", None, ["--split", "s"], []),
    ("success-differs", "/ONESAMPLE v", "s,v\na,0\na,1\nb,0\n", None, [], []),
    ("success-differs", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(1)", "s,v\na,0\na,1\nb,0\n", None, ["--split", "s"], []),
    ("success-differs", "/ONESAMPLE v /SUCCESS VALUE=MIDPOINT", "s,v\na,0\na,1\nb,0\n", None, ["--split", "s"], []),
    # absent-level: a level of SUCCESS is not among the valid values.
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(7)", "v\n0\n1\n", None, [], ["v"]),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL('Yes')", "v\nyes\nno\n", None, [], ["v"]),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(1 7)", "v\n0\n1\n", None, [], ["v"]),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(9)", "v\n0\n9\n",
     [{"name": "v", "missingValues": ["9"]}], [], ["v"]),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(9) /MISSING USERMISSING=INCLUDE", "v\n0\n9\n",
     [{"name": "v", "missingValues": ["9"]}], [], []),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(7)", "v,m\n0,1\n7,0.4\n", None, ["--weight", "m"], ["v"]),
    ("absent-level", "/PAIREDSAMPLES v WITH u /SUCCESS VALUE=LEVEL(1)", "v,u\n0,1\n0,1\n", None, [], ["v"]),
    ("absent-level", "/ONESAMPLE v /SUCCESS VALUE=LEVEL(0 1)", "v\n0\n1\n", None, [], []),
    ("absent-level", "/ONESAMPLE v", "v\n0\n1\n", None, [], []),
    # absent-groups: a level of the grouping does not occur, or the default levels leave cases out.
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g", "v,g\n0,0\n1,1\n", None, [], ["g"]),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g", "v,g\n0,0\n1,1\n1,2\n", None, [], ["g"]),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL", "v,g\n0,3\n1,1\n1,2\n", None, [], ["g"]),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 3)", "v,g\n0,1\n1,2\n", None, [], ["g"]),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL('a' 'c')", "v,g\n0,a\n1,b\n", None, [], ["g"]),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g", "v,g\n0,1\n1,2\n1,\n", None, [], []),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 2)", "v,g\n0,1\n1,2\n1,3\n", None, [], []),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=MIDPOINT", "v,g\n0,5\n1,6\n", None, [], []),
    ("absent-groups", "/INDEPENDENTSAMPLES v BY g SELECT=CUTPOINT(5)", "v,g\n0,4\n1,6\n", None, [], []),
    # level-below-one
    ("level-below-one", "/ONESAMPLE v /CRITERIA CILEVEL=0.95", "v\n0\n1\n", None, [], [None]),
    ("level-below-one", "/ONESAMPLE v /CRITERIA CILEVEL=0", "v\n0\n1\n", None, [], []),
    ("level-below-one", "/ONESAMPLE v /CRITERIA CILEVEL=1", "v\n0\n1\n", None, [], []),
    ("level-below-one", "/ONESAMPLE v", "v\n0\n1\n", None, [], []),
    # weights-rounded: more than 1 % of the sum of the positive weights.
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,1.4\n1,2.6\n1,0.3\n", None, ["--weight", "m"], ["m"]),
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,0.4\n1,20\n", None, ["--weight", "m"], ["m"]),
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,1.5\n1,1.5\n0,97\n", None, ["--weight", "m"], []),  # exactly 1 %
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,1.4\n1,1.6\n", None, ["--weight", "m"], []),  # it evens out
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,3\n1,2\n1,-100\n0,\n", None, ["--weight", "m"], []),
    ("weights-rounded", "/ONESAMPLE v", "v,m\n0,1.4\n1,1.4\n", None, [], []),
    # mixed-type: at most one value in twenty, but at least one, is not of the kind of all others.
    ("mixed-type", "/ONESAMPLE v", "v\n" + "1\n0\n" * 10 + "refused\n", None, [], ["v"]),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "1\n" * 19 + "x\n", None, [], ["v"]),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "1\n" * 18 + "x\n", None, [], []),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "2024-03-01\n" * 30 + "2024/03/01\n", None, [], ["v"]),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "yes\n" * 30 + "1\n", None, [], []),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "1\n0\n" * 10, None, [], []),
    ("mixed-type", "/ONESAMPLE v", "v\n" + "1\n0\n" * 20 + "?\nx\n", None, [], []),  # missing-text
    # missing-text
    *[("missing-text", "/ONESAMPLE v", f"v\nyes\n{text}\nno\n", None, ["--na", ""], ["v"])
      for text in ("N/A", "n/a", "#N/A", "NULL", "null", "None", ".", "-", "?")],
    ("missing-text", "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL('a' 'b')", "v,g\n0,a\n1,b\n1,null\n", None, [], ["g"]),
    ("missing-text", "/ONESAMPLE v", "v\nyes\nnull\nno\n",
     [{"name": "v", "missingValues": ["null"]}], [], []),
    ("missing-text", "/ONESAMPLE v", "v\nyes\nnope\nno\n", None, [], []),
    ("missing-text", "/ONESAMPLE v", "v,other\nyes,NULL\nno,x\n", None, [], []),
]


class Advice(ProgramTest):
    def advice(self, command, *arguments):
        return self.procedure(command, "d.csv", *arguments).get("advice", [])

    def test_every_code_when_it_is_due_and_only_then(self):
        for code, command, data, fields, options, variables in ADVICE:
            if options == ["--na", ""] and not self.knows_na():
                options = []
            for collapse in ("never", "always"):
                with self.subTest(code=code, command=command, data=data, collapse=collapse):
                    self.write("d.csv", data)
                    self.schema("fields.json", *(fields or []))
                    given = self.advice(command, "--schema", "fields.json", "--collapse", collapse, *options)
                    named = [a.get("variable") for a in given if a["code"] == code]
                    self.assertEqual(named, variables, given)
                    for entry in given:
                        self.assertTrue(entry["text"])
                        if "variable" in entry:
                            self.assertIn(entry["variable"], entry["text"])

    def knows_na(self):
        return b"--na" in self.run_program("--help").stdout

    def test_levels_among_very_many_values(self):
        numbers = "".join(f"{i / 4}\n" for i in range(3000))
        texts = "".join(f"t{i}\n" for i in range(3000))
        for data, found, absent in ((numbers, "740.25", "740.3"), (texts, "'t2999'", "'t300x'")):
            for collapse in ("never", "always"):
                with self.subTest(found=found, collapse=collapse):
                    self.write("d.csv", "v\n" + data)
                    command = "/ONESAMPLE v /SUCCESS VALUE=LEVEL({})"
                    self.assertEqual(self.advice(command.format(found), "--collapse", collapse), [])
                    given = self.advice(command.format(f"{found} {absent}"), "--collapse", collapse)
                    self.assertEqual([a["code"] for a in given], ["absent-level"])
                    self.assertIn(f"No case has {absent} as", given[0]["text"])
                    self.assertIn("more than 1000 valid values", given[0]["text"])

    def test_texts_say_what_to_write(self):
        self.write("d.csv", "v,g\nyes,0\nno,1\nyes,1\n")
        text = self.advice("/ONESAMPLE v /SUCCESS VALUE=LEVEL('Yes')")[0]["text"]
        self.assertIn("'no', 'yes'", text)
        self.assertIn("VALUE=LEVEL('yes')", text)
        text = self.advice("/INDEPENDENTSAMPLES v BY g")[0]["text"]
        self.assertIn("SELECT=LEVEL(0 1)", text)
        self.assertIn("left out", text)
        text = self.advice("/ONESAMPLE v /CRITERIA CILEVEL=0.57")[0]["text"]
        self.assertIn("CILEVEL=57.", text)

    def test_the_first_odd_value_is_named_with_its_line(self):
        self.write("d.csv", "u,v\n" + "a,1\nb,0\n" * 30 + "a,12O\nb,l\n")
        text = self.advice("/ONESAMPLE v")[0]["text"]
        self.assertIn("'12O' (d.csv, line 62), which is not a number", text)

    def test_groups_that_differ_are_counted_and_named(self):
        rows = "".join(f"g{i},0\ng{i},1\n" for i in range(10)) + "h1,0\nh2,0\n"
        self.write("d.csv", "s,v\n" + rows)
        text = self.advice("/ONESAMPLE v", "--split", "s")[0]["text"]
        self.assertIn("1 in 10 groups; 0 in 2 groups (s = h1; s = h2)", text)
        self.assertIn("VALUE=LEVEL(1)", text)

    def test_advice_is_on_standard_error_but_for_json(self):
        self.write("d.csv", "v\n0\n0\n")
        for output in ("text", "markdown", "csv"):
            done = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--format", output)
            self.assertIn(b"Advice: Every valid value of v is 0", done.stderr)
            self.assertNotIn(b"Every valid value", done.stdout)
            silent = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--format", output, "--advice", "never")
            self.assertEqual(silent.stderr, b"")
            self.assertEqual(silent.stdout, done.stdout)
        done = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--format", "json")
        self.assertEqual(done.stderr, b"")
        self.assertEqual([a["code"] for a in json.loads(done.stdout)["procedures"][0]["advice"]],
                         ["constant-variable"])
        with_advice = json.loads(done.stdout)
        del with_advice["procedures"][0]["advice"]
        done = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--format", "json", "--advice", "never")
        self.assertEqual(json.loads(done.stdout), with_advice)

    def test_a_refused_command_gets_none(self):
        self.write("d.csv", "v\n0\n0\n")
        procedure = self.procedure("/ONESAMPLE v u", "d.csv", status=1)
        self.assertNotIn("advice", procedure)
        self.assertNotIn("cases", procedure)


class Cases(ProgramTest):
    def cases(self, command, data, *arguments, fields=()):
        """The same, however the cases are handed over."""
        self.write("d.csv", data)
        self.schema("fields.json", *fields)
        first, *others = [
            self.procedure(command, "d.csv", "--schema", "fields.json", "--collapse", collapse, *arguments)["cases"]
            for collapse in ("never", "always", "auto")]
        for other in others:
            self.assertEqual(other, first)
        return first

    def test_numbers_and_missing_values(self):
        found = self.cases("/ONESAMPLE v u", "v,u\n0,1\n9,1\n,0\n1,\n9,\n",
                           fields=[{"name": "v", "missingValues": ["9"]}])
        self.assertEqual(found, {
            "read": 5, "droppedByWeight": 0, "complete": 1,
            "variables": [{"name": "v", "valid": 2, "userMissing": 2, "systemMissing": 1},
                          {"name": "u", "valid": 3, "userMissing": 0, "systemMissing": 2}]})

    def test_usermissing_included_changes_complete_alone(self):
        found = self.cases("/ONESAMPLE v u /MISSING USERMISSING=INCLUDE", "v,u\n0,1\n9,1\n,0\n1,\n9,\n",
                           fields=[{"name": "v", "missingValues": ["9"]}])
        self.assertEqual(found["complete"], 2)
        self.assertEqual(found["variables"][0], {"name": "v", "valid": 2, "userMissing": 2, "systemMissing": 1})

    def test_blank_texts_are_user_missing(self):
        command = "/ONESAMPLE v"
        data = 'v\nyes\nno\n"  "\n""\nrefused\n'
        fields = [{"name": "v", "type": "string", "missingValues": ["refused"]}]
        found = self.cases(command, data, fields=fields)
        self.assertEqual(found["variables"], [{"name": "v", "valid": 2, "userMissing": 3, "systemMissing": 0}])
        self.assertEqual(found["complete"], 2)
        self.assertEqual(self.cases(command + " /MISSING USERMISSING=INCLUDE", data, fields=fields)["complete"], 5)

    def test_weights(self):
        found = self.cases("/ONESAMPLE v", "v,m\n0,1.4\n1,2.5\n1,0.49\n0,-3\n1,\n,7\n1,nan\n0,99\n",
                           "--weight", "m", fields=[{"name": "m", "missingValues": ["99"]}])
        self.assertEqual(found, {
            "read": 8, "droppedByWeight": 5, "weight": 8.39, "roundedWeight": 11, "complete": 2,
            "variables": [{"name": "v", "valid": 2, "userMissing": 0, "systemMissing": 1}]})

    def test_ten_digits_of_the_sum_of_weights(self):
        rows = "".join(f"{i % 2},0.1\n" for i in range(1000)) + "1,1234567.87654321\n"
        self.assertEqual(self.cases("/ONESAMPLE v", "v,m\n" + rows, "--weight", "m")["weight"], 1234667.877)

    def test_variables_stand_once_in_the_order_of_the_command(self):
        data = "a,b,c,g\n0,1,0,1\n1,0,1,2\n"
        names = lambda found: [v["name"] for v in found["variables"]]
        self.assertEqual(names(self.cases("/ONESAMPLE c a c b", data)), ["c", "a", "b"])
        self.assertEqual(names(self.cases("/PAIREDSAMPLES b a WITH c b", data)), ["b", "a", "c"])
        self.assertEqual(names(self.cases("/INDEPENDENTSAMPLES c TO c a BY g", data)), ["c", "a", "g"])

    def test_a_success_of_many_values_is_counted_to_the_end(self):
        """The last of them, in one group each, is not taken for the others."""
        self.write("d.csv", "s,v\n" + "".join(f"{i},{i}\n" for i in range(1, 13)))
        advice = self.procedure("/ONESAMPLE v", "d.csv", "--split", "s")["advice"]
        text, = (a["text"] for a in advice if a["code"] == "success-differs")
        self.assertIn("; 10 in 1 group (s = 10); other values in 2 groups.", text)
        self.assertTrue(text.endswith("LEVEL(12)."), text)

    def test_split_groups(self):
        found = self.cases("/ONESAMPLE v", "s,v,m\nnorth,0,1\nsouth,1,2\nnorth,,3\nsouth,0,0\n,1,1\n",
                           "--split", "s", "--weight", "m")
        self.assertEqual(found["read"], 5)
        self.assertEqual([g["split"] for g in found["groups"]], [{"s": ""}, {"s": "north"}, {"s": "south"}])
        self.assertEqual([g["read"] for g in found["groups"]], [1, 2, 2])
        self.assertEqual([g["droppedByWeight"] for g in found["groups"]], [0, 0, 1])
        self.assertEqual([g["weight"] for g in found["groups"]], [1, 4, 2])
        self.assertEqual([g["complete"] for g in found["groups"]], [1, 1, 1])
        self.assertEqual(found["groups"][1]["variables"],
                         [{"name": "v", "valid": 1, "userMissing": 0, "systemMissing": 1}])
        for key in ("read", "droppedByWeight", "complete", "roundedWeight"):
            self.assertEqual(sum(g[key] for g in found["groups"]), found[key])

    def test_resamples_are_no_cases(self):
        rows = "$bootstrap_split,v\n" + "".join(f"{b},{v}\n" for b in range(3) for v in (0, 1, 1))
        found = self.cases("/ONESAMPLE v", rows, "--split", "$bootstrap_split")
        self.assertEqual(found["read"], 3)
        self.assertEqual(len(found["groups"]), 1)

    def test_listwise_and_what_it_leaves(self):
        found = self.cases("/ONESAMPLE v u /MISSING SCOPE=LISTWISE", "v,u\n0,1\n1,\n,0\n1,1\n")
        self.assertEqual((found["read"], found["complete"]), (4, 2))

    def test_data_without_a_case(self):
        found = self.cases("/ONESAMPLE v", "v\n")
        self.assertEqual(found, {"read": 0, "droppedByWeight": 0, "complete": 0, "variables": [
            {"name": "v", "valid": 0, "userMissing": 0, "systemMissing": 0}]})

    def test_the_identity_holds(self):
        found = self.cases("/INDEPENDENTSAMPLES v BY g", "v,g,m\n0,1,1\n1,2,0.2\n,1,3\n1,,2\n", "--weight", "m")
        for variable in found["variables"]:
            self.assertEqual(variable["valid"] + variable["userMissing"] + variable["systemMissing"],
                             found["read"] - found["droppedByWeight"])

    def test_the_table_in_text_and_markdown(self):
        self.write("d.csv", "v,m\n0,1.5\n1,1\n,1\n")
        text = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--weight", "m").stdout.decode()
        self.assertIn("Cases Read", text)
        self.assertLess(text.index("Two-Sided p"), text.index("Cases Read"))
        markdown = self.run_program("d.csv", "-c", "/ONESAMPLE v", "--weight", "m",
                                    "--format", "markdown").stdout.decode()
        self.assertIn("### Cases\n", markdown)
        self.assertIn("| v | 3 | 0 | 3.5 | 4 | 2 | 2 | 0 | 1 |", markdown)


if __name__ == "__main__":
    unittest.main()
