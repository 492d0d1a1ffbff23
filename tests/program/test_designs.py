"""The three designs through the program, with counts that are easy to check by hand."""

from program import ProgramTest, cells, keys, table, value


class OneSample(ProgramTest):
    def test_all_methods_have_a_row(self):
        self.write("d.csv", "x\n" + "1\n" * 7 + "0\n" * 3)
        p = self.procedure("PROPORTIONS /ONESAMPLE x CITYPES=ALL TESTTYPES=ALL.", "d.csv")
        rows = table(p, "Intervals")["dimensions"][1]["categories"]
        self.assertEqual([r["key"] for r in rows],
                         ["Agresti-Coull", "Anscombe", "Clopper-Pearson Exact ...", "Jeffreys", "Logit", "Wald",
                          "Wald (Continuity Corrected)", "Wilson Score", "Wilson Score (Continuity Corrected)"])
        self.assertAlmostEqual(value(p, "Tests", "Exact Binomial", "One-Sided p"), 0.171875, delta=1e-15)
        self.assertAlmostEqual(value(p, "Tests", "Exact Binomial", "Two-Sided p"), 0.34375, delta=1e-15)
        self.assertAlmostEqual(value(p, "Tests", "Mid-p Adjusted Binomial", "One-Sided p"), 0.11328125, delta=1e-15)

    def test_no_successes(self):
        self.write("d.csv", "x\n" + "0\n" * 10)
        p = self.procedure("PROPORTIONS /ONESAMPLE x CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1).", "d.csv")
        self.assertEqual(value(p, "Intervals", "Clopper-Pearson (Exact)", "Lower"), 0)
        self.assertEqual(value(p, "Intervals", "Wald", "Upper"), 0)
        self.assertIsNone(value(p, "Intervals", "Logit", "Lower"))
        self.assertGreater(value(p, "Intervals", "Jeffreys", "Lower"), 0)
        noted = [c for c in table(p, "Intervals")["cells"] if c.get("notes")]
        self.assertEqual([c["notes"] for c in noted], [["Stat miss not enough cases ..."]] * 2)
        self.assertAlmostEqual(value(p, "Tests", "Exact Binomial", "One-Sided p"), 0.5 ** 10, delta=1e-18)
        self.assertIsNone(value(p, "Tests", "Wald", "Z"))

    def test_nan_bound_is_shown_as_such(self):
        self.write("d.csv", "x\n" + "0\n" * 10)
        p = self.procedure("PROPORTIONS /ONESAMPLE x CITYPES=WILSON_SCORECC /SUCCESS VALUE=LEVEL(1) /CRITERIA CILEVEL=80.",
                           "d.csv")
        self.assertEqual(value(p, "Intervals", "Lower"), "NaN")

    def test_weights_are_rounded_half_up(self):
        self.write("d.csv", "x,w\n1,0.49\n1,0.5\n1,2.5\n0,1.49\n0,-3\n0,\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x CITYPES=WALD TESTTYPES=NONE.", "d.csv", "--weight", "w")
        self.assertEqual(value(p, "Intervals", "Successes"), 4)
        self.assertEqual(value(p, "Intervals", "Trials"), 5)

    def test_variable_without_cases(self):
        self.write("d.csv", "x,y\n1,\n0,\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x y.", "d.csv")
        self.assertEqual(keys(p), ["Not enough valid cases var ^1 ..."])
        self.assertEqual(p["messages"][0]["arguments"], ["y"])
        self.assertEqual(p["status"], "ok")
        labels = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
        self.assertEqual(labels, ["x = 1", "y = ."])

    def test_no_variable_has_cases(self):
        self.write("d.csv", "x,y\n,\n,\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE x y.", "d.csv")
        self.assertEqual([(m["key"], m["level"], m["severity"]) for m in p["messages"]],
                         [("Not enough valid cases ...", 3, "warning")])
        self.assertEqual(p["tables"], [])

    def test_success_rules(self):
        self.write("d.csv", "x\n1\n2\n3\n4\n5\n")
        for rule, count, label in (("FIRST", 1, "x = 1"), ("LAST", 1, "x = 5"), ("MIDPOINT", 3, "x >= 3"),
                                   ("CUTPOINT(4)", 2, "x >= 4"), ("LEVEL(1 5 9)", 2, "x = 1, 5, 9")):
            p = self.procedure(f"PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE={rule}.", "d.csv")
            self.assertEqual(value(p, "Intervals", "Successes", label), count, rule)

    def test_listwise_and_analysiswise(self):
        self.write("d.csv", "x,y\n1,1\n1,\n0,1\n")
        for scope, trials in (("ANALYSIS", 3), ("LISTWISE", 2)):
            p = self.procedure(f"PROPORTIONS /ONESAMPLE x y TESTTYPES=NONE CITYPES=WALD /MISSING SCOPE={scope}.", "d.csv")
            self.assertEqual(value(p, "Intervals", "x = 1", "Trials"), trials)

    def test_user_missing(self):
        self.write("d.csv", "x\n1\n0\n9\n")
        self.schema("d.schema.json", {"name": "x", "type": "integer", "missingValues": ["9"]})
        for setting, trials in (("EXCLUDE", 2), ("INCLUDE", 3)):
            p = self.procedure(f"PROPORTIONS /ONESAMPLE x TESTTYPES=NONE CITYPES=WALD /MISSING USERMISSING={setting}.", "d.csv")
            self.assertEqual(value(p, "Intervals", "Trials"), trials)

    def test_strings(self):
        self.write("d.csv", "s\nyes\nno\nyes  \n\"  yes\"\n\"\"\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE s TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('yes').", "d.csv")
        self.assertEqual(value(p, "Intervals", "Successes"), 2)
        self.assertEqual(value(p, "Intervals", "Trials"), 4)


class Paired(ProgramTest):
    DATA = "a,b\n" + "1,1\n" * 3 + "1,0\n" * 2 + "0,1\n" + "0,0\n" * 4

    def test_worked_example(self):
        self.write("d.csv", self.DATA)
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES a b CITYPES=ALL TESTTYPES=ALL.", "d.csv")
        self.assertEqual(value(p, "Statistics", "a = 1", "Successes"), 5)
        self.assertAlmostEqual(value(p, "Statistics", "a = 1", "Asymptotic Standard Error"), 0.05 ** 0.5, delta=1e-15)
        self.assertAlmostEqual(value(p, "Statistics", "b = 1", "Asymptotic Standard Error"), 0.06 ** 0.5, delta=1e-15)
        self.assertAlmostEqual(value(p, "Intervals", "Wald", "Lower"), 0.1 - 1.959963984540054 * 0.029 ** 0.5, delta=1e-14)
        self.assertAlmostEqual(value(p, "Tests", "Exact Binomial", "One-Sided p"), 0.5, delta=1e-15)
        self.assertEqual(value(p, "Tests", "McNemar (Continuity Corrected)", "Z"), 0)

    def test_many_pairs_agree_with_few(self):
        names = [f"v{i}" for i in range(8)]
        rows = [",".join(str((i * 7 + j * (i + 3)) % (2 + j % 2) if (i + j) % 11 else "") for j in range(8)) for i in range(500)]
        self.write("d.csv", ",".join(names) + "\n" + "\n".join(rows) + "\n")
        command = "PROPORTIONS /PAIREDSAMPLES {} CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1)."
        many = cells(table(self.procedure(command.format("v0 TO v7"), "d.csv"), "Statistics"))
        few = cells(table(self.procedure(command.format("v2 v5"), "d.csv"), "Statistics"))
        pair = next(key[0][0] for key in many if key[0][1] == "v2 = 1" and (((key[0][0], "v5 = 1"), key[1]) in many))
        for (place, statistic), number in few.items():
            self.assertEqual(many[((pair, place[1]), statistic)], number)

    def test_list_forms(self):
        self.write("d.csv", "a,b,c,d\n1,0,1,0\n0,1,1,1\n1,1,0,0\n")
        for lists, pairs in (("a b c", ["a - b", "a - c", "b - c"]), ("a b WITH c d", ["a - c", "a - d", "b - c", "b - d"]),
                             ("a b WITH c d (PAIRED)", ["a - c", "b - d"]), ("a b WITH a c (PAIRED)", ["b - c"])):
            p = self.procedure(f"PROPORTIONS /PAIREDSAMPLES {lists} TESTTYPES=NONE.", "d.csv")
            labels = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
            self.assertEqual(labels, [f"Pair {i + 1}: {pair}" for i, pair in enumerate(pairs)])

    def test_list_messages(self):
        self.write("d.csv", "a,b,c,d\n1,0,1,0\n0,1,1,1\n")
        for lists, wanted in (("a b a", ["Subcom ^1, duplicate var names ..."]),
                              ("a a WITH b", ["Before ^1, subcom ^2, dupl var names ..."]),
                              ("a WITH b b", ["After ^1, subcom ^2, dupl var names ..."]),
                              ("a b WITH c (PAIRED)", ["Unmatched pair vars ..."]),
                              ("a b a WITH c d c (PAIRED)", ["Duplicate var pairs ..."]),
                              ("a WITH a b", [])):
            self.assertEqual(keys(self.procedure(f"PROPORTIONS /PAIREDSAMPLES {lists}.", "d.csv")), wanted, lists)

    def test_list_errors(self):
        self.write("d.csv", "a,b,c,d\n1,0,1,0\n")
        for lists, wanted in (("a WITH b WITH c", "Only one WITH ..."), ("WITH a", "No vars before WITH ..."),
                              ("a WITH", "No vars after WITH ..."), ("a WITH b (PAIR)", "Only PAIRED option ..."),
                              ("a WITH b ()", "Only PAIRED option ..."), ("a WITH a", "Need two dist vars ..."),
                              ("a a WITH a a (PAIRED)", "Need two dist vars ..."), ("a", "Need two dist vars ...")):
            self.assertEqual(self.refused(f"PROPORTIONS /PAIREDSAMPLES {lists}.")["key"], wanted, lists)

    def test_rule_refused_by_the_first_list_only(self):
        self.write("d.csv", "s,x\na,1\nb,2\n")
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES s WITH x /SUCCESS VALUE=CUTPOINT(2).", "d.csv")
        self.assertEqual(keys(p, "error"), ["Numeric var SUCCESS option ^1 ..."])
        self.assertEqual(p["status"], "ok")

    def test_pair_without_cases(self):
        self.write("d.csv", "a,b,c\n1,0,\n0,1,\n")
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES a b c.", "d.csv")
        self.assertEqual([(m["key"], m["arguments"]) for m in p["messages"]],
                         [("Not enough valid cases pair ^1 var ^2 ^3 ...", ["2", "a", "c"]),
                          ("Not enough valid cases pair ^1 var ^2 ^3 ...", ["3", "b", "c"])])

    def test_billions_of_discordant_pairs(self):
        self.write("d.csv", "a,b,w\n1,0,5000000000\n0,1,5000100000\n1,1,3\n")
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES a b TESTTYPES=EXACT MIDP MCNEMAR.", "d.csv", "--weight", "w")
        # For such counts the exact and the normal tail agree to about 1 / sqrt(n).
        self.assertAlmostEqual(value(p, "Tests", "Mid-p Adjusted Binomial", "One-Sided p"),
                               value(p, "Tests", "McNemar", "One-Sided p"), delta=1e-6)


class Independent(ProgramTest):
    def test_levels_cuts_and_midpoints(self):
        self.write("d.csv", "x,g\n1,1\n0,1\n1,2\n1,2\n0,3\n")
        for select, labels, trials in (("", ["= 1", "= 2"], [2, 2]), ("SELECT=LEVEL", ["= 1", "= 2"], [2, 2]),
                                       ("SELECT=LEVEL(3 1)", ["= 3", "= 1"], [1, 2]),
                                       ("SELECT=CUTPOINT(2)", ["< 2", ">= 2"], [2, 3]),
                                       ("SELECT=MIDPOINT", ["< 2", ">= 2"], [2, 3])):
            p = self.procedure(f"PROPORTIONS /INDEPENDENTSAMPLES x BY g {select}.", "d.csv")
            groups = table(p, "Group Statistics")["dimensions"][1]
            self.assertEqual((groups["name"], [c["label"] for c in groups["categories"]]), ("g", labels), select)
            self.assertEqual([value(p, "Group Statistics", label, "Trials") for label in labels], trials, select)

    def test_messages(self):
        self.write("d.csv", "x,g,s\n1,1,abc\n0,2,b\n")
        for rest, wanted in (("x", "Missing BY ..."), ("x BY g BY s", "Only one BY ..."), ("BY g", "No vars before BY ..."),
                             ("x BY", "No vars after BY ..."), ("x BY g s", "Only one var after BY ..."),
                             ("x BY s", "Numeric SELECT LEVEL var ^1 ..."),
                             ("x BY s SELECT=LEVEL", "Numeric SELECT LEVEL var ^1 ..."),
                             ("x BY g SELECT=LEVEL(1)", "Param ^1, subcom ^2, two values ..."),
                             ("x BY g SELECT=LEVEL(1 1.0)", "Param ^1, subcom ^2, two distinct values ..."),
                             ("x BY g SELECT=LEVEL(0 -0)", "Param ^1, subcom ^2, two distinct values ..."),
                             ("x BY g SELECT=LEVEL(1 'a')", "Invalid SELECT LEVEL ..."),
                             ("x BY s SELECT=LEVEL('abcd' 'b')", "Invalid SELECT LEVEL ...")):
            self.assertEqual(self.refused(f"PROPORTIONS /INDEPENDENTSAMPLES {rest}.")["key"], wanted, rest)
        for rest in ("x BY s SELECT=MIDPOINT", "x BY s SELECT=CUTPOINT(1)", "x BY x", "x g BY g"):
            self.refused(f"PROPORTIONS /INDEPENDENTSAMPLES {rest}.")

    def test_one_case_group(self):
        self.write("d.csv", "x,g\n1,1\n0,2\n1,2\n")
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY g CITYPES=ALL TESTTYPES=ALL.", "d.csv")
        self.assertIsNone(value(p, "Intervals", "Hauck-Anderson", "Lower"))
        # The correction, 1/2, equals the difference: Z is not 0 outright, and one trial gives no variance.
        self.assertIsNone(value(p, "Tests", "Hauck-Anderson", "Z"))
        notes = {tuple(c["notes"]) for c in table(p, "Intervals")["cells"] if c.get("notes")}
        self.assertEqual(notes, {("Stat miss not enough cases group ...",)})

    def test_missing_side(self):
        self.write("d.csv", "x,y,g\n1,,1\n0,1,2\n1,0,2\n")
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x y BY g.", "d.csv")
        self.assertEqual(keys(p), ["Not enough valid cases var ^1 group ..."])
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=LEVEL(8 2).", "d.csv")
        self.assertEqual([(m["key"], m["level"]) for m in p["messages"]], [("Not enough valid cases group ...", 3)])
        self.assertEqual(p["tables"], [])

    def test_string_levels_wider_than_a_word(self):
        self.write("d.csv", "x,g\n1,a long level\n0,a long level\n1,a long lever\n")
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=LEVEL('a long level' 'a long lever').", "d.csv")
        self.assertEqual(value(p, "Group Statistics", "= a long level", "Trials"), 2)
