#!/usr/bin/env python3
"""Prints whole-process times of the program beside what each is compared with, in one run.

    bench/run.py [ROWS]     rows of the large files, 10 million by default

Each figure is the fastest of three runs; memory is the program's highest peak.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

REPEATS = 3
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = os.path.join(ROOT, "build", "bin")


def run(command):
    """Seconds and peak kilobytes of one run; its output is thrown away."""
    start = time.perf_counter()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"failed with status {child.returncode}: {' '.join(command)}")
    return time.perf_counter() - start, usage.ru_maxrss


def best(command):
    runs = [run(command) for _ in range(REPEATS)]
    return min(seconds for seconds, _ in runs), max(peak for _, peak in runs)


def compare(title, command, reference, bar):
    """One line: the program, what it is compared with, and their ratio."""
    seconds, peak = best(command)
    other, _ = best(reference)
    print(f"{title:<64} {seconds:8.3f} s {other:8.3f} s {seconds / other:7.2f}  (at most {bar})"
          f" {peak / 1024:7.0f} MiB", flush=True)


def program(data, command, *options):
    return [f"{BIN}/proportions", data, "-c", command, *options]


def engine(query=None):
    return [f"{BIN}/engine_only"] + ([query] if query else [])


def make_data(path, *arguments):
    with open(path, "wb") as file:
        subprocess.run([f"{BIN}/make_data", *map(str, arguments)], stdout=file, check=True)
    return path


PAIRS = [(a, b) for a in range(1, 9) for b in range(a + 1, 9)]


def large_shapes(source):
    """What is asked of the large files, beside the same counting done by hand with the engine's own queries."""
    ones = ", ".join(f"count(*) FILTER (WHERE v{i} = 1), count(v{i})" for i in range(1, 9))
    weighted = ", ".join(f"sum(w) FILTER (WHERE v{i} = 1), sum(w) FILTER (WHERE v{i} IS NOT NULL)" for i in range(1, 9))
    pairs = ", ".join(f"count(*) FILTER (WHERE v{a} = {x} AND v{b} = {y})" for a, b in PAIRS for x in (0, 1) for y in (0, 1))
    eight = "PROPORTIONS /ONESAMPLE v1 TO v8."
    return [
        ("8 variables", eight, (), f"SELECT {ones} FROM {source}"),
        ("8 variables, whole-number weight", eight, ("--weight", "w"), f"SELECT {weighted} FROM {source}"),
        ("12 split groups", eight, ("--split", "region"), f"SELECT region, {ones} FROM {source} GROUP BY region"),
        ("12 split groups, case by case", eight, ("--split", "region", "--collapse", "never"),
         f"SELECT region, {ones} FROM {source} GROUP BY region"),
        ("two groups", "PROPORTIONS /INDEPENDENTSAMPLES v1 TO v8 BY arm.", (), f"SELECT arm, {ones} FROM {source} GROUP BY arm"),
        ("28 pairs", "PROPORTIONS /PAIREDSAMPLES v1 TO v8.", (), f"SELECT {pairs} FROM {source}"),
        ("a measure at a cut point", "PROPORTIONS /ONESAMPLE measure /SUCCESS VALUE=CUTPOINT(50).", (),
         f"SELECT count(*) FILTER (WHERE measure >= 50), count(measure) FROM {source}"),
    ]


def large_files(folder, rows):
    text = make_data(f"{folder}/large.csv", rows)
    columns = f"{folder}/large.parquet"
    subprocess.run(engine(f"COPY (SELECT * FROM read_csv('{text}')) TO '{columns}'"), check=True)
    for kind, data, source, bar in (("CSV", text, f"read_csv('{text}')", 0.35), ("Parquet", columns, f"read_parquet('{columns}')", 1.3)):
        for what, command, options, query in large_shapes(source):
            at_most = 0.5 if kind == "CSV" and "measure" in what else 2 if "case by case" in what else bar
            compare(f"{rows:,} rows of {kind}, {what}", program(data, command, *options), engine(query), at_most)
    eight = "PROPORTIONS /ONESAMPLE v1 TO v8."
    compare(f"{rows:,} rows of CSV, 8 variables, 1,000 samples, beside none",
            program(text, eight, "--bootstrap", "1000", "--seed", "1"), program(text, eight), 1.5)


def rscript_with(package):
    """The program that runs R scripts, if it is there and has the package."""
    rscript = shutil.which("Rscript")
    check = [rscript or "", "-e", f"if (!requireNamespace('{package}', quietly = TRUE)) quit(status = 1)"]
    return rscript if rscript and subprocess.run(check, capture_output=True).returncode == 0 else None


def stat_files(folder, rows):
    """Eight binary variables of a .dta file, beside R's haven, which reads all of them into memory."""
    rscript = rscript_with("haven")
    if rscript is None:
        print(f"{rows:,} rows of .dta: needs R with haven; left out")
        return
    columns = [{"name": f"v{i}", "type": "int8"} for i in range(1, 9)]
    some = [[case >> i & 1 for i in range(8)] for case in range(1000)]
    description = {"columns": columns, "rows": some, "repeat": rows // len(some)}
    path = f"{folder}/large.dta"
    subprocess.run([f"{BIN}/stat_writer", "dta", path], input=json.dumps(description).encode(), check=True)
    read = [rscript, "-e", f"invisible(haven::read_dta('{path}'))"]
    compare(f"{rows:,} rows of .dta, 8 variables, beside R's haven", program(path, "PROPORTIONS /ONESAMPLE v1 TO v8."), read, 0.5)
    compare(f"{rows:,} rows of .dta, 1 variable of 8, beside R's haven", program(path, "PROPORTIONS /ONESAMPLE v1."), read, 0.3)


def many_pairs(folder):
    """19,900 pairs, CSV in and CSV out, beside R."""
    rscript = rscript_with("data.table")
    if rscript is None:
        print("100,000 rows, 200 variables, all pairs: needs R with data.table; left out")
        return
    data = make_data(f"{folder}/wide.csv", 100000, 200)
    compare("100,000 rows, 200 variables, 19,900 pairs, beside R",
            program(data, "PROPORTIONS /PAIREDSAMPLES ALL.", "-o", f"{folder}/pairs.csv"),
            [rscript, f"{ROOT}/bench/paired_tables.R", data, f"{folder}/r"], 1)


def samples(folder):
    """2,000 bootstrap samples of a difference, beside R."""
    rscript = rscript_with("boot")
    if rscript is None:
        print("10,000 rows, 2,000 bootstrap samples: needs R with boot; left out")
        return
    data = make_data(f"{folder}/boot.csv", 10000)
    compare("10,000 rows, 2,000 samples of a difference, beside R",
            program(data, "PROPORTIONS /INDEPENDENTSAMPLES v1 BY arm.", "--bootstrap", "2000", "--seed", "1"),
            [rscript, f"{ROOT}/bench/bootstrap.R", data, "2000"], 0.05)


def many_groups(folder):
    """Groups of ten cases: ten times the groups beside a tenth of them."""
    def grouped(groups):
        path = f"{folder}/groups{groups}.csv"
        with open(path, "w", encoding="ascii") as file:
            file.write("g,x\n")
            for case in range(10 * groups):
                file.write(f"{case * 7919 % groups},{case * 31 % 7 % 2}\n")
        return program(path, "PROPORTIONS /ONESAMPLE x.", "--split", "g", "-o", f"{folder}/out.csv")
    compare("100,000 split groups of 10 cases, beside 10,000", grouped(100000), grouped(10000), 10)


def heavy_pairs(folder):
    """Ten thousand million discordant cases beside ten: what the long sums of two tests cost."""
    def weighted(name, count):
        path = f"{folder}/{name}.csv"
        with open(path, "w", encoding="ascii") as file:
            file.write(f"a,b,w\n1,1,10\n1,0,{count}\n0,1,{count}\n0,0,10\n")
        return program(path, "PROPORTIONS /PAIREDSAMPLES a b CITYPES=NONE TESTTYPES=EXACT MIDP.",
                       "--weight", "w")
    compare("a pair with 1e10 discordant cases, beside 10", weighted("heavy", 5000000000),
            weighted("light", 5), 3)


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 10_000_000
    print(f"{'':<64} {'program':>10} {'other':>10} {'ratio':>7}")
    with tempfile.TemporaryDirectory() as folder:
        small = make_data(f"{folder}/small.csv", 1000)
        compare("1,000 rows, beside an empty engine",
                program(small, "PROPORTIONS /ONESAMPLE v1 TO v8."), engine(), 0.5)
        heavy_pairs(folder)
        many_groups(folder)
        many_pairs(folder)
        samples(folder)
        large_files(folder, rows)
        stat_files(folder, rows)


if __name__ == "__main__":
    main()
