"""The corners of every design, with values worked out by hand."""

import math

from program import ProgramTest, cells, keys, table, value

Z95 = 1.959963984540054


class EdgeCase(ProgramTest):
    def counted(self, name, columns, *rows):
        """Data of some combinations of values, each with its number of cases."""
        return self.write(name, columns + ",n\n" + "".join(",".join(map(str, row)) + "\n" for row in rows))

    def run_counted(self, command, columns, *rows):
        return self.procedure("PROPORTIONS " + command, self.counted("d.csv", columns, *rows), "--weight", "n")

    def rows_of(self, procedure, title, dimension):
        found = next(d for d in table(procedure, title)["dimensions"] if d["name"] == dimension)
        return [category["label"] for category in found["categories"]]

    def near(self, found, expected, digits=1e-12):
        self.assertTrue(math.isclose(found, expected, rel_tol=digits, abs_tol=1e-300), (found, expected))

    def noted(self, procedure, title, *labels):
        """The note of the one missing cell at these labels."""
        found = [cell for cell in table(procedure, title)["cells"]
                 if all(any(label in part for part in cell["at"].values()) for label in labels)]
        self.assertEqual([cell["value"] for cell in found], [None])
        return found[0]["notes"]


class OneSample(EdgeCase):
    def intervals(self, x, f, methods="ALL", level=95):
        rows = [(1, x)] * (x > 0) + [(0, f)] * (f > 0)
        return self.run_counted(f"/ONESAMPLE v TESTTYPES=NONE CITYPES={methods} /SUCCESS VALUE=LEVEL(1) /CRITERIA CILEVEL={level}.",
                                "v", *rows)

    def bounds(self, procedure, method):
        return [value(procedure, "Intervals", method, bound) for bound in ("Lower", "Upper")]

    def test_no_success(self):
        p = self.intervals(0, 10)
        self.assertEqual(self.bounds(p, "Wald"), [0, 0])
        self.assertEqual(self.bounds(p, "Clopper-Pearson (Exact)")[0], 0)
        self.assertEqual(self.bounds(p, "Wilson Score")[0], 0)
        for method in ("Anscombe", "Jeffreys"):
            self.assertGreater(self.bounds(p, method)[0], 0)
        for bound in ("Lower", "Upper"):
            self.assertEqual(self.noted(p, "Intervals", "Logit", bound), ["Stat miss not enough cases ..."])

    def test_no_failure(self):
        p = self.intervals(10, 0)
        self.assertEqual(self.bounds(p, "Clopper-Pearson (Exact)")[1], 1)
        self.assertEqual(self.bounds(p, "Wald"), [1, 1])
        self.assertEqual(self.noted(p, "Intervals", "Logit", "Lower"), ["Stat miss not enough cases ..."])

    def test_half_of_ten(self):
        p = self.intervals(5, 5)
        half = Z95 * math.sqrt(0.025)
        lower, upper = self.bounds(p, "Wald")
        self.near(lower, 0.5 - half)
        self.near(upper, 0.5 + half)
        lower, upper = self.bounds(p, "Wald (Continuity Corrected)")
        self.near(lower, 0.45 - half)
        self.near(upper, 0.55 + half)

    def test_only_what_was_asked_for(self):
        self.assertEqual(self.rows_of(self.intervals(5, 5, "WALD"), "Intervals", "Interval Type"), ["Wald"])

    def test_lower_bound_that_is_no_number(self):
        p = self.intervals(0, 10, "WILSON_SCORECC", 80)
        self.assertEqual(self.bounds(p, "Wilson Score (Continuity Corrected)")[0], "NaN")

    def significance(self, x, f, p0=0.5):
        rows = [(1, x)] * (x > 0) + [(0, f)] * (f > 0)
        return self.run_counted(f"/ONESAMPLE v TESTVAL={p0} TESTTYPES=ALL CITYPES=NONE /SUCCESS VALUE=LEVEL(1).", "v", *rows)

    def p_values(self, procedure, method):
        return [value(procedure, "Tests", method, tail) for tail in ("One-Sided p", "Two-Sided p")]

    def test_tests_without_success(self):
        p = self.significance(0, 10, 0.3)
        for method in ("Wald", "Wald (Continuity Corrected)"):
            for column in ("Z", "One-Sided p", "Two-Sided p"):
                self.assertEqual(self.noted(p, "Tests", method, column), ["Stat miss not enough cases ..."])
        self.near(value(p, "Tests", "Score", "Z"), -3 / math.sqrt(2.1))
        self.near(self.p_values(p, "Exact Binomial")[0], 0.7**10)

    def test_seven_of_ten(self):
        p = self.significance(7, 3)
        self.assertEqual(self.p_values(p, "Exact Binomial"), [0.171875, 0.34375])
        self.assertEqual(self.p_values(p, "Mid-p Adjusted Binomial"), [0.11328125, 0.2265625])

    def test_correction_larger_than_the_deviation(self):
        p = self.significance(5, 5, 0.51)
        for method in ("Score (Continuity Corrected)", "Wald (Continuity Corrected)"):
            self.assertEqual(value(p, "Tests", method, "Z"), 0)
            self.assertEqual(self.p_values(p, method), [0.5, 1])

    def test_ten_of_ten(self):
        self.assertEqual(self.p_values(self.significance(10, 0), "Exact Binomial"), [1 / 1024, 2 / 1024])

    def test_both_tails_above_a_half(self):
        one, two = self.p_values(self.significance(5, 5), "Exact Binomial")
        self.near(one, 638 / 1024)
        self.assertEqual(two, 1)

    def test_standard_error_under_the_test_value_does_not_show(self):
        p = self.significance(12, 4)
        self.near(value(p, "Tests", "Score", "Asymptotic Standard Error"), math.sqrt(0.75 * 0.25 / 16))
        self.assertEqual(value(p, "Tests", "Score", "Z"), 2)  # (12 - 8) / (16 * 0.125)

    def test_all_values_equal(self):
        for rule in ("FIRST", "LAST", "MIDPOINT"):
            self.write("d.csv", "v\n3\n3\n3\n")
            p = self.procedure(f"PROPORTIONS /ONESAMPLE v TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE={rule}.", "d.csv")
            self.assertEqual(value(p, "Intervals", "Successes"), 3)

    def test_order_of_keywords_is_not_the_order_of_rows(self):
        p = self.intervals(5, 5, "WILSON_SCORE WALD ANSCOMBE")
        self.assertEqual(self.rows_of(p, "Intervals", "Interval Type"), ["Anscombe", "Wald", "Wilson Score"])

    def test_bare_subcommands_leave_the_defaults(self):
        self.write("d.csv", "v\n1\n0\n1\n")
        plain = self.procedure("PROPORTIONS /ONESAMPLE v.", "d.csv")
        bare = self.procedure("PROPORTIONS /ONESAMPLE v /SUCCESS /MISSING /CRITERIA.", "d.csv")
        self.assertEqual((plain["notes"], plain["tables"]), (bare["notes"], bare["tables"]))
        self.assertEqual(self.rows_of(plain, "Tests", "Test Type"), ["Mid-p Adjusted Binomial", "Score"])
        self.assertEqual(self.rows_of(plain, "Intervals", "Interval Type"), ["Agresti-Coull", "Jeffreys", "Wilson Score"])

    def test_lists_of_keywords(self):
        self.write("d.csv", "v\n1\n0\n1\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE v TESTTYPES=NONE NONE.", "d.csv")
        self.assertEqual((p["status"], len(keys(p, "warning")), len(p["tables"])), ("ok", 1, 1))
        p = self.procedure("PROPORTIONS /ONESAMPLE v TESTTYPES=ALL WALD.", "d.csv")
        self.assertEqual((keys(p), len(self.rows_of(p, "Tests", "Test Type"))), ([], 6))

    def test_equal_levels_are_kept_once(self):
        self.write("d.csv", "v,s\n1,a\n0,A\n1,b\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE v /SUCCESS VALUE=LEVEL(1 1.0).", "d.csv")
        self.assertEqual(self.rows_of(p, "Intervals", "Variables"), ["v = 1"])
        self.assertEqual(len(keys(p, "warning")), 1)
        p = self.procedure("PROPORTIONS /ONESAMPLE s /SUCCESS VALUE=LEVEL('a' 'A').", "d.csv")
        self.assertEqual((keys(p), self.rows_of(p, "Intervals", "Variables")), ([], ["s = a, A"]))
        self.assertEqual(value(p, "Intervals", "Jeffreys", "Successes"), 2)

    def test_trailing_blanks_never_count_and_case_does(self):
        self.write("d.csv", 's\n"abc "\nABC\nabc\n')
        p = self.procedure("PROPORTIONS /ONESAMPLE s TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('abc').", "d.csv")
        self.assertEqual(value(p, "Intervals", "Successes"), 2)


class PairedSamples(EdgeCase):
    def pair(self, a, b, c, d, methods="TESTTYPES=ALL CITYPES=ALL"):
        rows = [(x, y, n) for (x, y), n in zip(((1, 1), (1, 0), (0, 1), (0, 0)), (a, b, c, d)) if n]
        return self.run_counted(f"/PAIREDSAMPLES x y {methods} /SUCCESS VALUE=LEVEL(1).", "x,y", *rows)

    def test_three_two_one_four(self):
        p = self.pair(3, 2, 1, 4)
        for name, expected in (("x = 1", (5, 10, 0.5, math.sqrt(0.25 / 5))), ("y = 1", (4, 10, 0.4, math.sqrt(0.24 / 4)))):
            for column, number in zip(("Successes", "Trials", "Proportion", "Asymptotic Standard Error"), expected):
                self.near(value(p, "Statistics", name, column), number)
        spread = math.sqrt(0.029)
        self.near(value(p, "Intervals", "Wald", "Asymptotic Standard Error"), spread)
        self.near(value(p, "Intervals", "Wald", "Lower"), 0.1 - Z95 * spread)
        self.near(value(p, "Intervals", "Wald (Continuity Corrected)", "Upper"), 0.2 + Z95 * spread)

    def test_two_against_one(self):
        p = self.pair(3, 2, 1, 4)
        one, two = "One-Sided p", "Two-Sided p"
        self.assertEqual([value(p, "Tests", "Exact Binomial", t) for t in (one, two)], [0.5, 1])
        self.assertEqual([value(p, "Tests", "Mid-p Adjusted Binomial", t) for t in (one, two)], [0.3125, 0.625])
        self.near(value(p, "Tests", "McNemar", "Z"), 1 / math.sqrt(3))
        self.assertEqual(value(p, "Tests", "McNemar (Continuity Corrected)", "Z"), 0)

    def test_nothing_discordant(self):
        p = self.pair(4, 0, 0, 6)
        for method in ("McNemar", "Wald"):
            for column in ("Z", "One-Sided p", "Two-Sided p"):
                self.assertEqual(self.noted(p, "Tests", method, column), ["Stat miss not enough cases ..."])
        for method in ("McNemar (Continuity Corrected)", "Wald (Continuity Corrected)"):
            self.assertEqual([value(p, "Tests", method, c) for c in ("Z", "One-Sided p", "Two-Sided p")], [0, 0.5, 1])
        self.assertEqual([value(p, "Tests", "Exact Binomial", t) for t in ("One-Sided p", "Two-Sided p")], [1, 1])
        for method in ("Agresti-Min", "Bonett-Price"):
            lower, upper = (value(p, "Intervals", method, bound) for bound in ("Lower", "Upper"))
            self.assertLess(lower, 0)
            self.near(upper, -lower)

    def test_all_discordant_one_way(self):
        p = self.pair(0, 10, 0, 0)
        self.assertEqual(self.noted(p, "Tests", "Wald", "Z"), ["Stat miss not enough cases ..."])
        self.near(value(p, "Tests", "McNemar", "Z"), math.sqrt(10))

    def test_constant_measurement(self):
        p = self.pair(0, 0, 3, 7)
        self.assertEqual(value(p, "Statistics", "x = 1", "Successes"), 0)
        self.assertEqual(value(p, "Statistics", "x = 1", "Proportion"), 0)
        self.assertEqual(self.noted(p, "Statistics", "x = 1", "Asymptotic Standard Error"), ["Stat miss not enough cases ..."])
        # Without a correlation Newcombe's bounds are those of independent proportions.
        n, z2 = 10, Z95**2

        def wilson(q):
            middle, half = q + z2 / (2 * n), Z95 * math.sqrt(q * (1 - q) / n + z2 / (4 * n * n))
            return (middle - half) / (1 + z2 / n), (middle + half) / (1 + z2 / n)
        (l1, u1), (l2, u2) = wilson(0.0), wilson(0.3)
        self.near(value(p, "Intervals", "Newcombe", "Lower"), -0.3 - math.hypot(0 - l1, u2 - 0.3), 1e-9)
        self.near(value(p, "Intervals", "Newcombe", "Upper"), -0.3 + math.hypot(u1 - 0, 0.3 - l2), 1e-9)

    def test_pair_without_observations_is_a_label(self):
        self.write("d.csv", "x,y,w\n1,0,\n0,1,\n,,1\n")
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES x y w TESTTYPES=WALD CITYPES=WALD /SUCCESS VALUE=LEVEL(1).", "d.csv")
        labels = next(d for d in table(p, "Statistics")["dimensions"] if d["name"] == "Variables")["categories"]
        self.assertEqual([(c["label"], [inner["label"] for inner in c["categories"]]) for c in labels],
                         [("Pair 1", ["x = 1", "y = 1"]), ("Pair 2", ["x = 1", "w = 1"]), ("Pair 3", ["y = 1", "w = 1"])])
        self.assertEqual({place[0][0] for place in cells(table(p, "Statistics"))}, {"Pair 1"})
        self.assertEqual(len(keys(p, "warning")), 2)

    def test_lists(self):
        self.write("d.csv", "a,b,c,d\n1,0,1,0\n0,1,1,1\n")

        def pairs(text):
            p = self.procedure(f"PROPORTIONS /PAIREDSAMPLES {text} TESTTYPES=NONE CITYPES=WALD.", "d.csv")
            return self.rows_of(p, "Intervals", "Variables"), keys(p)
        self.assertEqual(self.refused("PROPORTIONS /PAIREDSAMPLES a WITH a.")["key"], "Need two dist vars ...")
        self.assertEqual(pairs("a WITH a b")[0], ["Pair 1: a - b"])
        self.assertEqual(pairs("a b WITH a c (PAIRED)"), (["Pair 1: b - c"], []))
        labels, messages = pairs("a b a WITH c d c (PAIRED)")
        self.assertEqual((labels, messages), (["Pair 1: a - c", "Pair 2: b - d"], ["Duplicate var pairs ..."]))
        p = self.procedure("PROPORTIONS /PAIREDSAMPLES a a.", "d.csv", status=1)
        self.assertEqual((p["status"], len(keys(p, "warning")), len(keys(p, "error"))), ("failed", 1, 1))


class IndependentSamples(EdgeCase):
    def groups(self, x1, f1, x2, f2, methods="TESTTYPES=ALL CITYPES=ALL"):
        rows = [(v, g, n) for (v, g), n in zip(((1, 1), (0, 1), (1, 2), (0, 2)), (x1, f1, x2, f2)) if n]
        return self.run_counted(f"/INDEPENDENTSAMPLES v BY g {methods} /SUCCESS VALUE=LEVEL(1).", "v,g", *rows)

    def test_sides_of_one_outcome(self):
        p = self.groups(5, 0, 0, 4)
        for side, number in (("= 1", 1), ("= 2", 0)):
            self.assertEqual(value(p, "Group Statistics", side, "Proportion"), number)
            self.assertEqual(value(p, "Group Statistics", side, "Asymptotic Standard Error"), 0)
        self.assertEqual([value(p, "Intervals", "Wald", b) for b in ("Lower", "Upper")], [1, 1])
        self.assertEqual(value(p, "Intervals", "Agresti-Caffo", "Upper"), 1)
        self.assertLess(value(p, "Intervals", "Agresti-Caffo", "Lower"), 1)

    def test_one_trial(self):
        p = self.groups(1, 0, 3, 3)
        for bound in ("Lower", "Upper"):
            self.assertEqual(self.noted(p, "Intervals", "Hauck-Anderson", bound), ["Stat miss not enough cases group ..."])
        self.assertEqual(value(p, "Intervals", "Hauck-Anderson", "Difference in Proportions"), 0.5)
        # The correction 1 / (2 min(n1, n2)) is 0.5 and does not exceed the difference.
        self.assertEqual(self.noted(p, "Tests", "Hauck-Anderson", "Z"), ["Stat miss not enough cases group ..."])
        p = self.groups(1, 0, 5, 1)
        self.assertEqual([value(p, "Tests", "Hauck-Anderson", c) for c in ("Z", "One-Sided p", "Two-Sided p")], [0, 0.5, 1])

    def test_equal_proportions(self):
        p = self.groups(2, 2, 3, 3)
        for method in ("Hauck-Anderson", "Wald (Continuity Corrected)", "Wald H0 (Continuity Corrected)"):
            self.assertEqual([value(p, "Tests", method, c) for c in ("Z", "One-Sided p", "Two-Sided p")], [0, 0.5, 1])

    def test_nothing_but_successes(self):
        p = self.groups(4, 0, 6, 0)
        for method in ("Wald", "Wald H0"):
            for column in ("Z", "One-Sided p", "Two-Sided p"):
                self.assertEqual(self.noted(p, "Tests", method, column), ["Stat miss not enough cases group ..."])
        for method in ("Wald (Continuity Corrected)", "Wald H0 (Continuity Corrected)"):
            self.assertEqual(value(p, "Tests", method, "Z"), 0)
        self.assertEqual(value(p, "Tests", "Wald", "Asymptotic Standard Error"), 0)

    def test_bound_below_minus_one(self):
        p = self.groups(0, 3, 3, 0)
        self.assertEqual(value(p, "Intervals", "Wald (Continuity Corrected)", "Lower"), -1)

    def test_order_of_rows(self):
        p = self.groups(2, 2, 3, 3, "CITYPES=WALD NEWCOMBE AGRESTI_CAFFO TESTTYPES=WALDH0 WALD")
        self.assertEqual(self.rows_of(p, "Intervals", "Interval Type"), ["Agresti-Caffo", "Newcombe", "Wald"])
        self.assertEqual(self.rows_of(p, "Tests", "Test Type"), ["Wald", "Wald H0"])

    def test_all_cases_on_one_side(self):
        self.write("d.csv", "v,u,g\n1,0,1\n0,,1\n1,1,3\n")
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES v u BY g.", "d.csv")
        self.assertEqual((p["tables"], keys(p)), ([], ["Not enough valid cases group ..."]))
        self.assertEqual([m["level"] for m in p["messages"]], [3])

    def test_one_complete_side_is_enough(self):
        p = self.groups(0, 4, 2, 2)
        self.near(value(p, "Tests", "Wald", "Z"), -0.5 / math.sqrt(0.25 / 4))


class Commands(EdgeCase):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "x,y,g,s,w\n1,0,1,a,1\n0,1,2,b,2\n1,1,1,a,1\n0,0,2,b,1\n")

    def refused_weighted(self, command):
        return self.refused("PROPORTIONS " + command, arguments=("--weight", "w"))["text"]

    def test_the_weight_variable_has_no_place_in_a_list(self):
        for command in ("/ONESAMPLE x w.", "/PAIREDSAMPLES x w.", "/PAIREDSAMPLES x WITH w.", "/PAIREDSAMPLES w WITH x.",
                        "/INDEPENDENTSAMPLES x w BY g.", "/INDEPENDENTSAMPLES x BY w."):
            self.assertIn("w", self.refused_weighted(command), command)

    def test_unknown_variables_on_every_list(self):
        for command in ("/ONESAMPLE x nosuch.", "/PAIREDSAMPLES x nosuch.", "/PAIREDSAMPLES x WITH nosuch.", "/PAIREDSAMPLES nosuch WITH x.",
                        "/INDEPENDENTSAMPLES nosuch BY g.", "/INDEPENDENTSAMPLES x BY nosuch."):
            self.assertIn("nosuch", self.refused("PROPORTIONS " + command)["text"], command)

    def test_grouping_variable_that_is_a_test_variable(self):
        self.assertIn("g", self.refused("PROPORTIONS /INDEPENDENTSAMPLES x g BY g.")["text"])

    def test_duplicates_before_by(self):
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x y x BY g.", "d.csv")
        self.assertEqual([(m["key"], m["arguments"], m["level"]) for m in p["messages"]],
                         [("Before ^1, subcom ^2, dupl var names ...", ["BY", "INDEPENDENTSAMPLES"], 2)])
        self.assertEqual(self.rows_of(p, "Tests", "Variables"), ["x = 1", "y = 1"])

    def test_what_may_stand_in_parentheses(self):
        for inner in ("", "x", "PAIRED PAIRED", "PAIR"):
            key = self.refused(f"PROPORTIONS /PAIREDSAMPLES x WITH y ({inner}).")["key"]
            self.assertEqual(key, "Only PAIRED option ...", inner)

    def test_one_design_exactly(self):
        for command in ("/ONESAMPLE x /PAIREDSAMPLES nosuch WITH.", "/SUCCESS VALUE=FIRST.", "/CRITERIA CILEVEL=90."):
            self.assertEqual(self.refused("PROPORTIONS " + command)["key"], "Exactly one test option ...", command)

    def test_bounds_of_numbers(self):
        for command in ("/ONESAMPLE x TESTVAL=0.", "/ONESAMPLE x TESTVAL=1.", "/ONESAMPLE x /CRITERIA CILEVEL=100.", "/ONESAMPLE x /CRITERIA CILEVEL=-1."):
            self.refused("PROPORTIONS " + command)
        p = self.procedure("PROPORTIONS /ONESAMPLE x TESTVAL=0.5 TESTTYPES=NONE CITYPES=WALD /CRITERIA CILEVEL=0.", "d.csv")
        self.assertEqual([value(p, "Intervals", "Wald", b) for b in ("Lower", "Upper")], [0.5, 0.5])

    def test_select_without_values_stands_for_one_and_two(self):
        plain = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY g.", "d.csv")
        for select in ("LEVEL", "LEVEL(1 2)"):
            p = self.procedure(f"PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT={select}.", "d.csv")
            self.assertEqual(p["tables"], plain["tables"])
        self.assertEqual(self.refused("PROPORTIONS /INDEPENDENTSAMPLES x BY s SELECT=LEVEL.")["key"],
                         self.refused("PROPORTIONS /INDEPENDENTSAMPLES x BY s.")["key"])

    def test_equal_and_unfit_levels_of_the_grouping(self):
        for levels in ("1 1.0", "1", "1 2 3", "1 'zwei'"):
            self.refused(f"PROPORTIONS /INDEPENDENTSAMPLES x BY g SELECT=LEVEL({levels}).")
        self.refused("PROPORTIONS /INDEPENDENTSAMPLES x BY s SELECT=LEVEL('a' 'too long').")
        for rule in ("MIDPOINT", "CUTPOINT(1)"):
            self.refused(f"PROPORTIONS /INDEPENDENTSAMPLES x BY s SELECT={rule}.")

    def test_weights_and_notes(self):
        plain = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv")
        weighted = self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--weight", "w")
        self.assertEqual([len(p["notes"]) for p in (plain, weighted)], [3, 3])
        self.assertNotEqual(plain["notes"][2]["value"], weighted["notes"][2]["value"])
        self.assertEqual(len(self.procedure("PROPORTIONS /ONESAMPLE x.", "d.csv", "--split", "g")["notes"]), 3)

    def test_strings_among_included_user_missing_values(self):
        self.schema("d.schema.json", {"name": "s", "missingValues": ["a"]}, {"name": "g", "missingValues": ["", "2"]})
        p = self.procedure("PROPORTIONS /ONESAMPLE s TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('a').", "d.csv")
        self.assertEqual(value(p, "Intervals", "Trials"), 2)
        p = self.procedure("PROPORTIONS /ONESAMPLE s TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=LEVEL('a') /MISSING USERMISSING=INCLUDE.", "d.csv")
        self.assertEqual((value(p, "Intervals", "Trials"), value(p, "Intervals", "Successes")), (4, 2))
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x BY s SELECT=LEVEL('a' 'b') /MISSING USERMISSING=INCLUDE SCOPE=LISTWISE.", "d.csv")
        self.assertEqual(value(p, "Group Statistics", "= a", "Trials"), 2)
        p = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES x s BY g SELECT=LEVEL(1 2) /MISSING SCOPE=LISTWISE.", "d.csv")
        self.assertEqual(p["tables"], [])

    def test_strings_have_no_midpoint_and_no_cut_point(self):
        for rule in ("MIDPOINT", "CUTPOINT(1)"):
            self.refused(f"PROPORTIONS /ONESAMPLE x s /SUCCESS VALUE={rule}.")
            self.refused(f"PROPORTIONS /INDEPENDENTSAMPLES x s BY g /SUCCESS VALUE={rule}.")
            p = self.procedure(f"PROPORTIONS /PAIREDSAMPLES s WITH x /SUCCESS VALUE={rule}.", "d.csv")
            self.assertEqual((p["status"], len(keys(p, "error"))), ("ok", 1))


class EnormousWeights(EdgeCase):
    """Counts up to the largest numbers are answered, and at once: the program's time limit in these tests is two minutes."""

    def run_weighted(self, command, weight):
        return self.run_counted(command + " TESTTYPES=ALL CITYPES=ALL.", "x,y,g", (1, 0, 1, weight), (0, 1, 1, weight), (1, 1, 2, weight), (0, 0, 2, weight))

    def test_one_sample(self):
        for weight in ("1e12", "1e15", "1e16", "1e100"):
            p = self.run_weighted("/ONESAMPLE x TESTVAL=0.5", weight)
            self.assertAlmostEqual(value(p, "Tests", "Exact Binomial", "Two-Sided p"), 1, 5)
            bounds = [v for path, v in cells(table(p, "Intervals")).items() if path[2][-1] in ("Lower", "Upper")]
            self.assertEqual(len(bounds), 18)
            for bound in bounds:
                self.assertAlmostEqual(bound, 0.5, 5)

    def test_paired_samples(self):
        for weight in ("1e12", "1e15", "1e16", "1e100"):
            p = self.run_weighted("/PAIREDSAMPLES x y", weight)
            for test in ("Exact Binomial", "Mid-p Adjusted Binomial"):
                self.assertAlmostEqual(value(p, "Tests", test, "One-Sided p"), 0.5, 5)

    def test_independent_samples(self):
        for weight in ("1e12", "1e15", "1e16", "1e100"):
            p = self.run_weighted("/INDEPENDENTSAMPLES x BY g", weight)
            self.assertEqual({v for path, v in cells(table(p, "Tests")).items() if path[2][-1] == "Two-Sided p"}, {1.0})

    def test_products_and_totals_that_are_no_numbers(self):
        for weight in ("1e300", "1e308"):
            for design in ("/ONESAMPLE x", "/PAIREDSAMPLES x y", "/INDEPENDENTSAMPLES x BY g"):
                self.assertEqual(self.run_weighted(design, weight)["status"], "ok")
