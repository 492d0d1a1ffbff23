"""Counts typed in place of data."""

import json
import unittest

from program import ProgramTest, cells, table, value


class Counts(ProgramTest):
    def counted(self, *counts, command=None, status=0):
        arguments = ["--counts", *counts, "--format", "json"]
        if command:
            arguments += ["-c", command]
        return json.loads(self.run_program(*arguments, status=status).stdout)["procedures"][0]

    def methods(self, procedure, title, dimension):
        found = table(procedure, title)
        return [c["label"] for d in found["dimensions"] if d["name"] == dimension for c in d["categories"]]

    def test_one_sample(self):
        procedure = self.counted("81/263")
        self.assertEqual((procedure["status"], procedure["messages"]), ("ok", []))
        self.assertEqual(value(procedure, "Confidence", "outcome = 1", "Wilson Score", "Successes"), 81)
        self.assertEqual(value(procedure, "Confidence", "outcome = 1", "Wilson Score", "Trials"), 263)
        self.assertEqual(len(self.methods(procedure, "Confidence", "Interval Type")), 9)
        self.assertEqual(len(self.methods(procedure, "Tests", "Test Type")), 6)

    def test_the_same_as_the_data(self):
        """As many cases as the counts say."""
        command = ("PROPORTIONS /INDEPENDENTSAMPLES outcome BY group SELECT=LEVEL(1 2) TESTTYPES=ALL CITYPES=ALL "
                   "/SUCCESS VALUE=LEVEL(1).")
        self.write("two.csv", "outcome,group\n" + "1,1\n" * 7 + "0,1\n" * 5 + "1,2\n" * 3 + "0,2\n" * 11)
        self.assertEqual(self.counted("7/12", "3/14")["tables"], self.procedure(command, "two.csv")["tables"])
        command = "PROPORTIONS /PAIREDSAMPLES first second TESTTYPES=ALL CITYPES=ALL /SUCCESS VALUE=LEVEL(1)."
        self.write("pairs.csv", "first,second\n" + "1,1\n" * 5 + "1,0\n" * 6 + "0,1\n" * 2 + "0,0\n" * 8)
        self.assertEqual(self.counted("5,6,2,8")["tables"], self.procedure(command, "pairs.csv")["tables"])
        command = "PROPORTIONS /ONESAMPLE outcome TESTTYPES=ALL CITYPES=ALL /SUCCESS VALUE=LEVEL(1)."
        self.write("one.csv", "outcome\n" + "1\n" * 5 + "0\n" * 6)
        self.assertEqual(self.counted("5/11")["tables"], self.procedure(command, "one.csv")["tables"])

    def test_two_groups(self):
        procedure = self.counted("189/11034", "104/11037")
        found = cells(table(procedure, "Group Statistics"))
        self.assertEqual({group: (found[(("outcome = 1",), (group,), ("Successes",))], found[(("outcome = 1",), (group,), ("Trials",))])
                          for group in ("= 1", "= 2")}, {"= 1": (189, 11034), "= 2": (104, 11037)})
        self.assertEqual(len(self.methods(procedure, "Confidence", "Interval Type")), 7)
        self.assertEqual(len(self.methods(procedure, "Tests", "Test Type")), 5)

    def test_with_a_command(self):
        procedure = self.counted("81/263", command="PROPORTIONS /ONESAMPLE outcome TESTVAL=0.25 TESTTYPES=SCORE CITYPES=NONE")
        self.assertEqual([t["title"] for t in procedure["tables"]], ["One-Sample Proportions Tests"])
        self.assertEqual(self.counted("81/263", command="PROPORTIONS /ONESAMPLE group.", status=1)["status"], "failed")

    def test_nothing_but_failures_or_successes(self):
        for text, successes in (("0/10", 0), ("10/10", 10)):
            procedure = self.counted(text)
            self.assertEqual(value(procedure, "Confidence", "outcome = 1", "Wilson Score", "Successes"), successes)

    def test_as_many_cases_as_are_exact(self):
        for text in (f"{2 ** 52}/{2 ** 53}", f"1/{2 ** 53}"):
            procedure = self.counted(text)
            self.assertEqual(value(procedure, "Confidence", "outcome = 1", "Wilson Score", "Trials"), 2 ** 53)

    def test_refusals(self):
        beyond = str(2 ** 53 + 1)
        for counts, reason in (
                (["5/3"], "5 successes are more than 3"), (["-1/4"], "'-1' is not a whole number"),
                (["1.5/4"], "'1.5' is not a whole number"), (["x/y"], "'x' is not a whole number"),
                (["5"], "81/263"), (["5/"], "not a whole number"), (["/5"], "not a whole number"), (["1/2/3"], "81/263"),
                ([""], "not a whole number"), (["0/0"], "no cases"), (["0/0", "1/2"], "no cases"), (["1/2", "0/0"], "no cases"),
                (["0,0,0,0"], "no cases"), (["1,2,3"], "3 counts"), (["1,2,3,4,5"], "5 counts"), (["1,2,3,-4"], "'-4'"),
                (["1,2,3,4", "1/2"], "not a whole number"), (["1/2", "1/2", "1/2"], "too many"), (["1/ 2"], "not a whole number"),
                (["+1/2"], "not a whole number"), (["1/" + beyond], "2^53"), (["1/" + "9" * 30], "2^53"),
                ([f"1/{2 ** 53}", "1/2"], "2^53"), ([f"{2 ** 53},1,0,0"], "2^53")):
            with self.subTest(counts):
                said = self.unusable("--counts", *counts)
                self.assertIn("--counts", said)
                self.assertIn(reason, said)

    def test_no_other_data(self):
        self.write("d.csv", "x\n1\n0\n")
        for arguments in (["d.csv", "--counts", "1/2"], ["--counts", "1/2", "--weight", "w"], ["--counts", "1/2", "--split", "s"],
                          ["--query", "FROM data", "--counts", "1/2"], ["--counts", "1/2", "--table", "t"],
                          ["--counts", "1/2", "--schema", "s.json"], ["--counts", "1/2", "--split-layout", "tables"]):
            self.assertIn("--counts", self.unusable(*arguments))
        self.unusable("--counts")


if __name__ == "__main__":
    unittest.main()
