"""Bootstrap tables against samples that are drawn and summed up here, by the documented rules."""

import csv
import math
import os
import random
import re
import subprocess
import sys
import unittest
from collections import Counter
from pathlib import Path
from statistics import NormalDist

from program import PROGRAM, ProgramTest

REFERENCE = Path(__file__).parents[1] / "reference"
sys.path.insert(0, str(REFERENCE / "generate"))
from resampling_draws import Stream, multinomial  # noqa: E402

NORMAL = NormalDist()


def quantile(ascending, p):
    h = p * (len(ascending) + 1)
    if h <= 1:
        return ascending[0]
    if h >= len(ascending):
        return ascending[-1]
    k = int(h)
    return ascending[k - 1] + (h - k) * (ascending[k] - ascending[k - 1])


def summary(statistic, samples, left_out, level):
    """`left_out` holds (value, cases)."""
    samples = sorted(s for s in samples if s is not None)
    mean = math.fsum(samples) / len(samples)
    error = math.sqrt(math.fsum((s - mean) ** 2 for s in samples) / (len(samples) - 1))
    tail = (1 - level / 100) / 2
    below = sum(1 for s in samples if s < statistic)
    equal = sum(1 for s in samples if s == statistic)
    z0 = NORMAL.inv_cdf((below + equal / 2) / len(samples))
    cases = sum(n for _, n in left_out)
    center = math.fsum(v * n for v, n in left_out) / cases
    squares = math.fsum(n * (center - v) ** 2 for v, n in left_out)
    cubes = math.fsum(n * (center - v) ** 3 for v, n in left_out)
    a = cubes / (6 * squares**1.5)
    bca = [quantile(samples, NORMAL.cdf(z0 + (z0 + z) / (1 - a * (z0 + z))))
           for z in (NORMAL.inv_cdf(tail), -NORMAL.inv_cdf(tail))]
    return {
        ("Statistic",): statistic,
        ("Bias",): mean - statistic,
        ("Std. Error",): error,
        ("Percentile", "Lower"): quantile(samples, tail),
        ("Percentile", "Upper"): quantile(samples, 1 - tail),
        ("BCa", "Lower"): bca[0],
        ("BCa", "Upper"): bca[1],
    }


class Kinds:
    """Cases of one group by their kind, in the documented order."""

    def __init__(self, cases):
        counted = Counter(cases)
        self.kinds = sorted(counted)
        self.counts = [counted[kind] for kind in self.kinds]

    def samples(self, seed, group, number):
        for sample in range(1, number + 1):
            yield multinomial(self.counts, Stream(seed, group, sample))

    def results(self, statistic, seed, group, number, level):
        """`statistic` takes kinds and how many cases there are of each."""
        left_out = []
        for i, kind in enumerate(self.kinds):
            weight = kind[-1]
            fewer = [(k, n * k[-1] - (i == j)) for j, (k, n) in
                     enumerate(zip(self.kinds, self.counts))]
            left_out.append((statistic(fewer), weight * self.counts[i]))
        drawn = [statistic([(k, n * k[-1]) for k, n in zip(self.kinds, sample)])
                 for sample in self.samples(seed, group, number)]
        whole = statistic([(k, n * k[-1]) for k, n in zip(self.kinds, self.counts)])
        return summary(whole, drawn, left_out, level)


def share(column):
    def statistic(counts):
        trials = sum(n for _, n in counts)
        successes = sum(n for kind, n in counts if kind[column] == 1)
        return successes / trials if trials else None
    return statistic


def difference(counts):
    """Of two groups: (outcome, group, weight)."""
    groups = []
    for group in (1, 2):
        trials = sum(n for kind, n in counts if kind[1] == group)
        if not trials:
            return None
        groups.append(sum(n for kind, n in counts if kind[1] == group and kind[0] == 1) / trials)
    return groups[0] - groups[1]


def paired_difference(counts):
    trials = sum(n for _, n in counts)
    only_first = sum(n for kind, n in counts if kind[:2] == (1, 0))
    only_second = sum(n for kind, n in counts if kind[:2] == (0, 1))
    return (only_first - only_second) / trials


CASES = [(1, 1, 1)] * 17 + [(0, 1, 2)] * 30 + [(1, 2, 1)] * 31 + [(0, 2, 3)] * 9 + [(1, 2, 2)] * 4


class Bootstrap(ProgramTest):
    def data(self, name, header, rows):
        lines = [",".join(header)] + [",".join(map(str, row)) for row in rows]
        return self.write(name, "\n".join(lines) + "\n")

    def bootstrap(self, command, *arguments):
        tables = self.procedure(command, *arguments)["tables"]
        return [table for table in tables if table["title"] == "Bootstrap"]

    def text(self, command, *arguments):
        return self.run_program(*arguments, "-c", command).stdout.decode()

    def values(self, table, **rows):
        """Cells by column, of the row at these places."""
        cells = {}
        for cell in table["cells"]:
            at = dict(cell["at"])
            column = tuple(at.pop("Statistics"))
            if all(at[name][0] == value for name, value in rows.items()):
                cells.setdefault(column, cell["value"])
        return cells

    def check(self, got, want):
        self.assertEqual(set(got), set(want))
        for column, number in want.items():
            self.assertAlmostEqual(got[column], number, delta=1e-12 * max(1, abs(number)),
                                   msg=str(column))

    def test_one_sample(self):
        name = self.data("d.csv", ["y"], [(kind[0],) for kind in CASES])
        table, = self.bootstrap("PROPORTIONS /ONESAMPLE y TESTTYPES=NONE.", name,
                                "--bootstrap", "199", "--seed", "7")
        kinds = Kinds([(kind[0], 1) for kind in CASES])
        self.check(self.values(table, Quantity="Proportion"),
                   kinds.results(share(0), 7, 0, 199, 95))

    def test_two_weighted_groups_at_another_level(self):
        name = self.data("d.csv", ["w", "y", "g"], [(w, y, g) for y, g, w in CASES])
        table, = self.bootstrap(
            "PROPORTIONS /INDEPENDENTSAMPLES y BY g TESTTYPES=NONE /CRITERIA CILEVEL=80.",
            name, "--weight", "w", "--bootstrap", "99", "--seed", "9223372036854775807")
        self.check(self.values(table, Quantity="Difference"),
                   Kinds(CASES).results(difference, 2**63 - 1, 0, 99, 80))

    def test_thousands_of_different_values(self):
        """Each is left out once, some at a time: memory stays small, and the bounds are those of what is
        made of them."""
        draw = random.Random(5)
        values = [draw.random() for _ in range(6000)]
        self.write("d.csv", "x,b\n" + "".join(f"{x!r},{int(x >= 0.3)}\n" for x in values))
        command = "/ONESAMPLE x b TESTTYPES=NONE CITYPES=WALD /SUCCESS VALUE=CUTPOINT(0.3)"
        # Freed memory that the address sanitizer keeps back is not the program's.
        surroundings = {**os.environ, "ASAN_OPTIONS": "quarantine_size_mb=1"}
        done = subprocess.Popen([PROGRAM, "d.csv", "-c", command, "--bootstrap", "50", "--seed", "2", "--format", "csv",
                                 "-o", "o.csv"], cwd=self.folder, env=surroundings)
        _, status, used = os.wait4(done.pid, 0)
        done.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(done.returncode, 0)
        self.assertLess(used.ru_maxrss, 200 << 10)
        with open(self.folder / "o.csv") as file:
            x, b = [{k: v for k, v in row.items() if k != "variable"} for row in csv.DictReader(file)
                    if row["table"] == "bootstrap"]
        for column in ("statistic", "bias", "std_error", "boot_lower", "boot_upper", "bca_lower", "bca_upper"):
            self.assertAlmostEqual(float(x[column]), float(b[column]), delta=1e-10, msg=column)

    def test_a_difference_from_nothing_is_the_proportion(self):
        """Ties with the statistic count, though the samples' groups are of other sizes."""
        for counts in ("10/15 0/14", "20/30 0/14", "6/9 0/7"):
            tables = self.bootstrap("/INDEPENDENTSAMPLES outcome BY group TESTTYPES=NONE /SUCCESS VALUE=LEVEL(1)",
                                    "--counts", *counts.split(), "--bootstrap", "200", "--seed", "3")
            rows = {}
            for cell in tables[0]["cells"]:
                rows.setdefault(cell["at"]["Quantity"][-1], {})[tuple(cell["at"]["Statistics"])] = cell["value"]
            self.assertEqual(rows["Difference"], rows["= 1"])

    def test_pairs_in_split_groups(self):
        pairs = [(1, 0)] * 9 + [(0, 1)] * 21 + [(1, 1)] * 30 + [(0, 0)] * 25
        others = [(1, 0)] * 19 + [(0, 1)] * 2 + [(1, 1)] * 3 + [(0, 0)] * 5
        rows = [("b", *p) for p in others] + [("a", *p) for p in pairs]
        name = self.data("d.csv", ["s", "before", "after"], rows)
        command = "PROPORTIONS /PAIREDSAMPLES before after TESTTYPES=NONE."
        arguments = [name, "--split", "s", "--bootstrap", "150", "--seed", "3"]
        shared, = self.bootstrap(command, *arguments)
        apart = self.bootstrap(command, *arguments, "--split-layout", "tables")
        self.assertEqual([t["split"] for t in apart], [{"s": "a"}, {"s": "b"}])
        for group, (value, cases) in enumerate([("a", pairs), ("b", others)]):
            want = Kinds([(*p, 1) for p in cases]).results(paired_difference, 3, group, 150, 95)
            self.check(self.values(shared, s=value, Quantity="Difference"), want)
            self.check(self.values(apart[group], Quantity="Difference"), want)

    def test_many_variables_of_which_each_result_has_few(self):
        # Nearly 3^5 kinds of cases; a case that misses a variable counts for those that it has.
        missing, draw = -math.inf, random.Random(4)
        cases = [tuple(draw.choice((missing, 0, 1, 1)) for _ in range(5)) for _ in range(4000)]
        name = self.data("d.csv", list("abcde"), [["" if v == missing else v for v in case] for case in cases])
        arguments = [name, "--bootstrap", "40", "--seed", "5"]

        def check(table, kinds, statistic, columns, **rows):
            def valid(counts):
                return statistic([(tuple(kind[c] for c in columns), n) for kind, n in counts
                                  if all(kind[c] != missing for c in columns)])
            self.check(self.values(table, **rows), kinds.results(valid, 5, 0, 40, 95))

        table, = self.bootstrap("PROPORTIONS /ONESAMPLE a TO e TESTTYPES=NONE.", *arguments)
        kinds = Kinds([(*case, 1) for case in cases])
        self.assertGreater(len(kinds.kinds), 200)
        check(table, kinds, share(0), [0], Variables="a = 1", Quantity="Proportion")
        check(table, kinds, share(0), [4], Variables="e = 1", Quantity="Proportion")
        table, = self.bootstrap("PROPORTIONS /PAIREDSAMPLES a b WITH c d (PAIRED) CITYPES=NONE.", *arguments)
        kinds = Kinds([(*case[:4], 1) for case in cases])
        pairs = next(d for d in table["dimensions"] if d["name"] == "Variables")["categories"]
        labels = [pair["label"] for pair in pairs if "Pair" in pair["label"]]
        check(table, kinds, paired_difference, [0, 2], Variables=labels[0], Quantity="Difference")
        check(table, kinds, paired_difference, [1, 3], Variables=labels[1], Quantity="Difference")

    def test_the_same_however_the_cases_are_held(self):
        rows = [(y, g, w) for y, g, w in CASES] * 40
        names = [self.data("d.csv", ["y", "g", "w"], rows),
                 self.data("t.csv", ["y", "g", "w"], reversed(rows))]
        outputs = {self.run_program(name, "--collapse", collapse, "--weight", "w", "--bootstrap",
                                    "50", "--seed", "1", "--format", "json", "-c",
                                    "PROPORTIONS /INDEPENDENTSAMPLES y BY g.").stdout
                   for name in names for collapse in ("always", "never")}
        self.assertEqual(len(outputs), 1)

    def test_a_seed_is_drawn_and_shown(self):
        name = self.data("d.csv", ["y"], [(kind[0],) for kind in CASES])
        command = "PROPORTIONS /ONESAMPLE y."
        first, = self.bootstrap(command, name, "--bootstrap", "20")
        second, = self.bootstrap(command, name, "--bootstrap", "20")
        self.assertNotEqual(first["cells"], second["cells"])
        shown = self.text(command, name, "--bootstrap", "20")
        seed = re.search(r"20 bootstrap\s+samples,\s+seed\s+(\d+)", shown)
        self.assertIsNotNone(seed, shown)
        self.assertEqual(shown, self.text(command, name, "--bootstrap", "20", "--seed", seed[1]))

    def test_refusals(self):
        name = self.data("d.csv", ["y", "$bootstrap_split"], [(1, 0), (0, 1)])
        imputed = self.data("p.csv", ["y", "Imputation_"], [(1, 0), (0, 1), (1, 2)])
        for arguments, words in [
            ((imputed, "--bootstrap", "1"), "--bootstrap"),
            ((imputed, "--bootstrap", "2.5"), "--bootstrap"),
            ((imputed, "--bootstrap", "2147483649"), "--bootstrap"),
            ((imputed, "--seed", "4"), "--seed"),
            ((name, "--bootstrap", "10"), "$bootstrap_split"),
            ((imputed, "--split", "Imputation_", "--bootstrap", "10"), "Imputation_"),
        ]:
            self.assertIn(words, self.unusable(*arguments, "-c", "PROPORTIONS /ONESAMPLE y."))

    def cases_of(self, design, counts):
        """Data file, command and quantity of a row of the reference values."""
        if design == "one-sample":
            rows = [(1,)] * counts[0] + [(0,)] * (counts[1] - counts[0])
            return ["y"], rows, "PROPORTIONS /ONESAMPLE y TESTTYPES=NONE.", "Proportion"
        if design == "independent":
            rows = [(int(i < x), g) for g, (x, n) in enumerate([counts[:2], counts[2:]], 1)
                    for i in range(n)]
            return (["y", "g"], rows, "PROPORTIONS /INDEPENDENTSAMPLES y BY g TESTTYPES=NONE.",
                    "Difference")
        rows = [pair for pair, n in zip([(1, 1), (1, 0), (0, 1), (0, 0)], counts)
                for _ in range(n)]
        return (["x", "y"], rows, "PROPORTIONS /PAIREDSAMPLES x y TESTTYPES=NONE.", "Difference")

    def test_standard_errors_agree_with_another_program(self):
        samples, others = 20_000, 100_000
        lines = [line.split(",") for line in
                 (REFERENCE / "resampling" / "r_boot.csv").read_text().splitlines()
                 if not line.startswith("#")]
        self.assertEqual(len(lines), 5)
        for design, counts, error in lines:
            header, rows, command, quantity = self.cases_of(design, [int(n) for n in counts.split()])
            table, = self.bootstrap(command, self.data("d.csv", header, rows), "--bootstrap",
                                    str(samples), "--seed", "8")
            got = self.values(table, Quantity=quantity)[("Std. Error",)]
            # Four standard deviations of the quotient of two such errors, of normal samples.
            allowed = 4 * math.sqrt(1 / (2 * samples) + 1 / (2 * others))
            self.assertAlmostEqual(got / float(error), 1, delta=allowed, msg=f"{design} {counts}")

    def test_samples_without_a_value_are_counted(self):
        kinds = [(1, 1), (0, 1), (1, 2), (0, 2)]
        name = self.data("d.csv", ["y", "g"], kinds)
        command = "PROPORTIONS /INDEPENDENTSAMPLES y BY g."
        failed = sum(1 for drawn in Kinds([(*kind, 1) for kind in kinds]).samples(5, 0, 100)
                     if not (drawn[0] + drawn[2] and drawn[1] + drawn[3]))
        self.assertGreater(failed, 0)
        shown = " ".join(self.text(command, name, "--bootstrap", "100", "--seed", "5").split())
        self.assertIn(f"{failed} of them", shown)


if __name__ == "__main__":
    unittest.main()
