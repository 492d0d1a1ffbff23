"""Pooled tables of multiply imputed data against Rubin's rules written anew, and against reference
values."""

import csv
import math
import unittest
from pathlib import Path

from program import ProgramTest, keys, table

REFERENCE = Path(__file__).parents[1] / "reference" / "resampling" / "pooling.csv"


def incomplete_beta(a, b, x):
    """Regularised, by its continued fraction (Lentz's method)."""
    if x > (a + 1) / (a + b + 2):
        return 1 - incomplete_beta(b, a, 1 - x)
    front = math.exp(math.lgamma(a + b) - math.lgamma(a) - math.lgamma(b)
                     + a * math.log(x) + b * math.log1p(-x)) / a
    c, d = 1.0, 1 / (1 - (a + b) * x / (a + 1))
    result = d
    for m in range(1, 500):
        for step in (m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m)),
                     -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1))):
            d = 1 / (1 + step * d)
            c = 1 + step / c
            result *= c * d
    return front * result


def t_quantile(df, level):
    low, high = 0.0, 1e6
    for _ in range(200):
        middle = (low + high) / 2
        above = incomplete_beta(df / 2, 0.5, df / (df + middle**2))
        low, high = (middle, high) if above > 1 - level / 100 else (low, middle)
    return low


def pooled(estimates, variances, complete_df, level=95):
    m = len(estimates)
    q, w = sum(estimates) / m, sum(variances) / m
    b = sum((e - q) ** 2 for e in estimates) / (m - 1)
    total = w + (1 + 1 / m) * b
    r, share = (1 + 1 / m) * b / w, (1 + 1 / m) * b / total
    df = 1 / (share**2 / (m - 1)
              + 1 / ((complete_df + 1) / (complete_df + 3) * complete_df * (1 - share)))
    half = t_quantile(df, level) * math.sqrt(total)
    fmi = (r + 2 / (df + 3)) / (r + 1)
    return {
        ("Statistic",): q, ("Within Variance",): w, ("Between Variance",): b,
        ("Total Variance",): total, ("Std. Error",): math.sqrt(total),
        ("Degrees of Freedom",): df, ("Rubin", "Lower"): q - half, ("Rubin", "Upper"): q + half,
        ("Relative Increase in Variance",): r, ("Fraction of Missing Information",): fmi,
        ("Relative Efficiency",): 1 / (1 + fmi / m),
    }


class Imputations(ProgramTest):
    def data(self, header, rows):
        lines = [header] + [",".join(map(str, row)) for row in rows]
        return self.write("d.csv", "\n".join(lines) + "\n")

    def check(self, a_table, want, **rows):
        got = {}
        for cell in a_table["cells"]:
            at = dict(cell["at"])
            column = tuple(at.pop("Statistics"))
            if all(value in at[name] for name, value in rows.items()):
                got[column] = cell["value"]
        for column, number in want.items():
            self.assertAlmostEqual(got[column], number, delta=1e-11 * max(abs(number), 1e-4),
                                   msg=str(column))

    def test_proportions_agree_with_the_reference_values(self):
        columns = [("Statistic",), ("Within Variance",), ("Between Variance",),
                   ("Total Variance",), ("Std. Error",), ("Degrees of Freedom",),
                   ("Rubin", "Lower"), ("Rubin", "Upper"), ("Relative Increase in Variance",),
                   ("Fraction of Missing Information",), ("Relative Efficiency",),
                   ("Wilson", "Lower"), ("Wilson", "Upper")]
        with open(REFERENCE) as file:
            lines = [line for line in csv.reader(file) if not line[0].startswith("#")]
        checked = 0
        for n, successes, level, *numbers in lines:
            successes = [int(x) for x in successes.split()]
            if float(level) != 95 or 0 in successes:
                continue
            rows = [(i, y) for i, x in enumerate([successes[0]] + successes)
                    for y in [1] * x + [0] * (int(n) - x)]
            procedure = self.procedure("PROPORTIONS /ONESAMPLE y TESTTYPES=NONE.",
                                       self.data("Imputation_,y", rows), "--split", "Imputation_")
            self.check(table(procedure, "Pooled: One-Sample"),
                       dict(zip(columns, map(float, numbers))))
            checked += 1
        self.assertGreaterEqual(checked, 5)

    def imputed_pairs(self):
        counts = {0: (9, 4, 11, 20), 1: (9, 4, 11, 20), 2: (10, 3, 13, 18), 3: (8, 6, 10, 20)}
        rows = [(group, i, *pair) for group in "ab" for i, cells in counts.items()
                for pair, n in zip([(1, 1), (1, 0), (0, 1), (0, 0)], cells)
                for _ in range(n + (group == "b"))]
        return counts, rows

    def test_differences_of_pairs_inside_split_groups(self):
        counts, rows = self.imputed_pairs()
        name = self.data("g,imputation_,x,y", rows)
        command = "PROPORTIONS /PAIREDSAMPLES x y."
        shared = self.procedure(command, name, "--split", "g,imputation_")
        apart = self.procedure(command, name, "--split", "g,imputation_", "--split-layout",
                               "tables")
        for number, group in enumerate("ab"):
            estimates, variances = [], []
            for i in (1, 2, 3):
                a, b, c, d = (n + number for n in counts[i])
                n = a + b + c + d
                estimates.append((b - c) / n)
                variances.append((b + c - (b - c) ** 2 / n) / n**2)
            want = pooled(estimates, variances, n - 1)
            self.check(table(shared, "Pooled: Paired-Samples Proportions Confidence"), want, g=group)
            own = [t for t in apart["tables"] if t["title"].startswith("Pooled: Paired-Samples "
                                                                      "Proportions Confidence")]
            self.check(own[number], want)
            self.assertEqual(own[number]["split"], {"g": group})

    def test_differences_and_proportions_of_groups(self):
        counts = {0: (9, 20, 15, 31), 1: (9, 20, 15, 31), 2: (11, 20, 14, 31), 3: (8, 20, 18, 31)}
        rows = [(i, y, g) for i, (x1, n1, x2, n2) in counts.items()
                for g, x, n in ((1, x1, n1), (2, x2, n2)) for y in [1] * x + [0] * (n - x)]
        procedure = self.procedure("PROPORTIONS /INDEPENDENTSAMPLES y BY g.",
                                   self.data("Imputation_,y,g", rows), "--split", "Imputation_")
        sets = [counts[i] for i in (1, 2, 3)]
        single = [[x1 / n1 for x1, n1, _, _ in sets], [x2 / n2 for _, _, x2, n2 in sets]]
        variances = [[p * (1 - p) / n for p in group] for group, n in zip(single, (20, 31))]
        statistics = table(procedure, "Pooled: Independent-Samples Proportions Group")
        for group in (0, 1):
            self.check(statistics, pooled(single[group], variances[group], (20, 31)[group] - 1),
                       Quantity=f"= {group + 1}")
        self.check(table(procedure, "Pooled: Independent-Samples Proportions Confidence"),
                   pooled([a - b for a, b in zip(*single)],
                          [a + b for a, b in zip(*variances)], 49))

    def test_one_imputation_is_refused(self):
        name = self.data("Imputation_,y", [(0, 1), (0, 0), (1, 1), (1, 0)])
        procedure = self.procedure("PROPORTIONS /ONESAMPLE y.", name, "--split", "Imputation_",
                                   status=1)
        self.assertEqual(procedure["tables"], [])
        self.assertIn("imputation", procedure["messages"][0]["text"])

    def test_what_looks_wrong_is_said(self):
        name = self.data("Imputation_,y", [(1, 1), (1, 0), (2, 1), (2, 0), (2, 0)])
        procedure = self.procedure("PROPORTIONS /ONESAMPLE y.", name, "--split", "Imputation_")
        self.assertIn("Imputation without original data ...", keys(procedure, "warning"))
        self.assertIn("Imputations of different sizes ...", keys(procedure, "warning"))
        self.assertTrue(table(procedure, "Pooled: "))

    def test_without_imputations_there_is_no_pooled_table(self):
        name = self.data("imputation,y", [(0, 1), (0, 0), (1, 1), (1, 0), (2, 1), (2, 0)])
        procedure = self.procedure("PROPORTIONS /ONESAMPLE y.", name, "--split", "imputation")
        self.assertFalse([t for t in procedure["tables"] if t["title"].startswith("Pooled")])

    def test_only_plain_numbers_number_imputations(self):
        for values in (("a", "b", "c"), ("01", "02", "03"), ("NA", "x", "y"),
                       ("2024-01-01", "2024-01-02", "2024-01-03"), ("08:00", "09:00", "10:00"),
                       ("false", "true", "true")):
            name = self.data("Imputation_,y", [(i, y) for i in values for y in (1, 0)])
            for bootstrap in ((), ("--bootstrap", "9", "--seed", "1")):
                with self.subTest(values=values, bootstrap=bootstrap):
                    procedure = self.procedure("PROPORTIONS /ONESAMPLE y.", name, "--split",
                                               "Imputation_", *bootstrap)
                    titles = [t["title"] for t in procedure["tables"]]
                    self.assertFalse([t for t in titles if t.startswith("Pooled")])
                    self.assertEqual("Bootstrap" in titles, bool(bootstrap))
                    self.assertEqual(keys(procedure), [])
                    intervals = table(procedure, "One-Sample Proportions Confidence")
                    groups = {cell["at"]["Imputation_"][0] for cell in intervals["cells"]}
                    self.assertEqual(len(groups), len(set(values)))


if __name__ == "__main__":
    unittest.main()
