#!/usr/bin/env python3
"""Prints the table of coverage in bootstrap.md: how often intervals hold the true value.

    docs/methods/bootstrap_coverage.py PROGRAM [SETS]     data sets for each line, 2,000 by default

Each data set is a split group of one file, so that a line is one run of the program. Data and
bootstrap have fixed seeds: the table is the same every time.
"""
import csv
import io
import random
import subprocess
import sys
import tempfile

SAMPLES = 999
SEED = 20261121


class Proportion:
    header, method, textbook = "y", "WILSON_SCORE", "Wilson"
    design, quantity = "/ONESAMPLE y", "Proportion"

    def __init__(self, n, p):
        self.n, self.p, self.truth = n, p, p
        self.title = f"proportion {p}, n = {n}"

    def cases(self, uniform):
        return [(int(uniform() < self.p),) for _ in range(self.n)]


class TwoGroups:
    header, method, textbook = "y,g", "NEWCOMBE", "Newcombe"
    design, quantity = "/INDEPENDENTSAMPLES y BY g", "Difference"

    def __init__(self, n1, p1, n2, p2):
        self.groups, self.truth = [(1, n1, p1), (2, n2, p2)], p1 - p2
        self.title = f"difference {p1} − {p2}, n = {n1} and {n2}"

    def cases(self, uniform):
        return [(int(uniform() < p), group) for group, n, p in self.groups for _ in range(n)]


class Pairs:
    header, method, textbook = "x,y", "NEWCOMBE", "Newcombe"
    design, quantity = "/PAIREDSAMPLES x y", "Difference"

    def __init__(self, n, both, first, second):
        self.n, self.cells, self.truth = n, (both, both + first, both + first + second), first - second
        self.title = f"difference {both + first:g} − {both + second:g}, {n} pairs"

    def cases(self, uniform):
        kinds = ((1, 1), (1, 0), (0, 1), (0, 0))
        return [kinds[sum(u >= cell for cell in self.cells)]
                for u in (uniform() for _ in range(self.n))]


LINES = [Proportion(20, 0.1), Proportion(20, 0.5), Proportion(50, 0.1), Proportion(50, 0.3),
         Proportion(200, 0.1), Proportion(200, 0.5), TwoGroups(20, 0.2, 20, 0.5),
         TwoGroups(50, 0.3, 50, 0.5), TwoGroups(100, 0.1, 200, 0.2), Pairs(30, 0.3, 0.2, 0.1),
         Pairs(100, 0.3, 0.2, 0.1)]


def write_data(path, line, sets):
    uniform = random.Random(f"{SEED} {line.title}").random
    with open(path, "w") as file:
        file.write(f"dataset,{line.header}\n")
        for number in range(sets):
            for case in line.cases(uniform):
                file.write(",".join(map(str, (number, *case))) + "\n")


def results(program, path, line):
    """The rows of the CSV output."""
    command = (f"PROPORTIONS {line.design} CITYPES={line.method} TESTTYPES=NONE "
               "/SUCCESS VALUE=LEVEL(1).")
    output = subprocess.run(
        [program, path, "-c", command, "--split", "dataset", "--bootstrap", str(SAMPLES), "--seed",
         str(SEED), "--format", "csv"], stdout=subprocess.PIPE, check=True, text=True).stdout
    return csv.DictReader(io.StringIO(output))


def coverage(program, folder, line, sets):
    """Shares of all data sets, in percent; a missing bound does not cover."""
    path = f"{folder}/data.csv"
    write_data(path, line, sets)
    covered, seen = [0, 0, 0], [0, 0]

    def holds(row, lower, upper):
        """Bounds are often values that the statistic takes, the truth among them."""
        return (bool(row[lower] and row[upper])
                and float(row[lower]) - 1e-9 <= line.truth <= float(row[upper]) + 1e-9)

    for row in results(program, path, line):
        if row["table"] == "bootstrap" and row["quantity"] == line.quantity and not row["group"]:
            covered[0] += holds(row, "boot_lower", "boot_upper")
            covered[1] += holds(row, "bca_lower", "bca_upper")
            seen[0] += 1
        elif row["table"] == "intervals":
            covered[2] += holds(row, "lower", "upper")
            seen[1] += 1
    if seen != [sets, sets]:
        sys.exit(f"{line.title}: {seen} results of {sets} data sets")
    return [100 * count / sets for count in covered]


def main(program, sets=2000):
    print("| 95% interval of | percentile | BCa | textbook |\n|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        for line in LINES:
            percentile, bca, textbook = coverage(program, folder, line, int(sets))
            print(f"| {line.title} | {percentile:.1f} | {bca:.1f} | {textbook:.1f} ({line.textbook}) |",
                  flush=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
