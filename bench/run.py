#!/usr/bin/env python3
"""Prints whole-process times of the program beside what each is compared with, in one run.

    bench/run.py [ROWS]     rows of the large files, 10 million by default

A line names the program's seconds, its processor seconds and the most memory that it took; then
each comparison with its seconds, the ratio of seconds and, in brackets, of processor seconds, and
the ratio that is asked for. The commands of a line run in turn, REPEATS times; the least counts, of
memory the most.
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time
from typing import NamedTuple

REPEATS = 3
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = os.path.join(ROOT, "build", "bin")
ENGINE, R, LIMIT, TENTH, NO_SAMPLES = "engine", "R", "limit", "a tenth", "without"
PIPE, INFLATE = "pipe", "decompression"


class Figure(NamedTuple):
    seconds: float
    cpu: float
    mebibytes: float


def run(command):
    """One run; its output is thrown away."""
    start = time.perf_counter()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"failed with status {child.returncode}: {' '.join(command)}")
    return Figure(time.perf_counter() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024)


def measure(commands):
    runs = [[run(command) for command in commands] for _ in range(REPEATS)]
    return [Figure(min(each.seconds for each in figures), min(each.cpu for each in figures),
                   max(each.mebibytes for each in figures)) for figures in zip(*runs)]


def compare(title, command, others, bars):
    """One line. `others` are commands by name, None where they are not installed."""
    others = {name: other for name, other in others.items() if other is not None}
    own, *figures = measure([command, *others.values()])
    line = f"{title:<52} {own.seconds:8.3f} s {own.cpu:8.3f} s {own.mebibytes:6.0f} MiB"
    for name, other in zip(others, figures):
        line += f" | {name} {other.seconds:.3f} s: {own.seconds / other.seconds:.2f}"
        line += f" ({own.cpu / max(other.cpu, 0.001):.2f})"
        if name in bars:
            line += f", at most {bars[name]}"
    if "memory" in bars:
        line += f" | at most {bars['memory']} MiB"
    print(line, flush=True)


def program(data, command, *options):
    return [f"{BIN}/proportions", data, "-c", command, *options]


def engine(query=None):
    return [f"{BIN}/engine_only"] + ([query] if query else [])


def r_with(package, *arguments):
    """The command that runs R, or None where R or the package is not installed."""
    rscript = shutil.which("Rscript")
    check = [rscript or "", "-e", f"if (!requireNamespace('{package}', quietly = TRUE)) quit(status = 1)"]
    return [rscript, *arguments] if rscript and subprocess.run(check, capture_output=True).returncode == 0 else None


def r_script(name, *arguments):
    return r_with("data.table", f"{ROOT}/bench/{name}", *arguments)


def make_data(path, *arguments):
    with open(path, "wb") as file:
        subprocess.run([f"{BIN}/make_data", *map(str, arguments)], stdout=file, check=True)
    return path


class Shape(NamedTuple):
    """What is asked of the large files; the same counting by hand with the engine's own queries, in R and by a scanner."""
    title: str
    command: str
    options: tuple
    query: str
    by_r: str
    by_scanner: str
    csv_bar: float
    parquet_bar: float


def large_shapes(source):
    names = ", ".join(f"v{i}" for i in range(1, 9))
    ones = ", ".join(f"count(*) FILTER (WHERE v{i} = 1), count(v{i})" for i in range(1, 9))
    weighted = ", ".join(f"sum(w) FILTER (WHERE v{i} = 1), sum(w) FILTER (WHERE v{i} IS NOT NULL)" for i in range(1, 9))
    eight = "PROPORTIONS /ONESAMPLE v1 TO v8."
    by_region = f"SELECT region, {ones} FROM {source} GROUP BY region"
    return [
        Shape("8 variables", eight, (), f"SELECT {ones} FROM {source}", "plain", "plain", 0.35, 1.3),
        Shape("8 variables, whole-number weight", eight, ("--weight", "w"), f"SELECT {weighted} FROM {source}",
              "weight", "weight", 0.35, 1.3),
        Shape("12 split groups", eight, ("--split", "region"), by_region, "region", "region", 0.35, 1.3),
        Shape("12 split groups, case by case", eight, ("--split", "region", "--collapse", "never"), by_region,
              "region", "region", 2, None),
        Shape("two groups", "PROPORTIONS /INDEPENDENTSAMPLES v1 TO v8 BY arm.", (),
              f"SELECT arm, {ones} FROM {source} GROUP BY arm", "arm", "arm", 0.35, 1.3),
        # Pairs are added up from the combinations: no single query is as fast.
        Shape("28 pairs", "PROPORTIONS /PAIREDSAMPLES v1 TO v8.", (),
              f"SELECT {names}, count(*) FROM {source} GROUP BY ALL", "pairs", "plain", 0.35, 1.3),
        Shape("a measure at a cut point", "PROPORTIONS /ONESAMPLE measure /SUCCESS VALUE=CUTPOINT(50).", (),
              f"SELECT count(*) FILTER (WHERE measure >= 50), count(measure) FROM {source}", "measure", "measure", 0.5, None),
    ]


def large_files(folder, rows):
    text = make_data(f"{folder}/large.csv", rows)
    columns = f"{folder}/large.parquet"
    subprocess.run(engine(f"COPY (SELECT * FROM read_csv('{text}')) TO '{columns}'"), check=True)
    for shape in large_shapes(f"read_csv('{text}')"):
        compare(f"{rows:,} rows of CSV, {shape.title}", program(text, shape.command, *shape.options),
                {ENGINE: engine(shape.query), R: r_script("counts.R", text, shape.by_r),
                 LIMIT: [f"{BIN}/scan_limit", text, shape.by_scanner]}, {ENGINE: shape.csv_bar})
    for shape in large_shapes(f"read_parquet('{columns}')"):
        bars = {} if shape.parquet_bar is None else {ENGINE: shape.parquet_bar}
        compare(f"{rows:,} rows of Parquet, {shape.title}", program(columns, shape.command, *shape.options),
                {ENGINE: engine(shape.query)}, bars)
    eight = "PROPORTIONS /ONESAMPLE v1 TO v8."
    for kind, data in (("CSV", text), ("Parquet", columns)):
        compare(f"{rows:,} rows of {kind}, 8 variables, 1,000 samples", program(data, eight, "--bootstrap", "1000", "--seed", "1"),
                {NO_SAMPLES: program(data, eight)}, {NO_SAMPLES: 1.5})


def streams(folder, rows):
    """Through a pipe and compressed, beside the pipe and the decompression alone."""
    text = f"{folder}/large.csv"
    eight = "PROPORTIONS /ONESAMPLE v1 TO v8."
    piped = f"cat {text} | {BIN}/proportions - -c '{eight}'"
    compare(f"{rows:,} rows of CSV on standard input", ["sh", "-c", piped], {PIPE: ["sh", "-c", f"cat {text} | cat"]}, {PIPE: 1.2})
    subprocess.run(["gzip", "-6", "-k", text], check=True)
    compare(f"{rows:,} rows of CSV, gzip", program(f"{text}.gz", eight), {INFLATE: [f"{BIN}/inflate_limit", f"{text}.gz"]},
            {INFLATE: 1.2})


def wide_file(folder):
    """60,000 columns beside a tenth of them: linear where the ratio is ten."""
    def wide(columns):
        data = make_data(f"{folder}/wide{columns}.csv", 100, columns)
        return program(data, "PROPORTIONS /ONESAMPLE v5."), [f"{BIN}/proportions", data, "--list"]
    (one, listed), (tenth, tenth_listed) = wide(60_000), wide(6_000)
    compare("100 rows, 1 variable of 60,000", one, {TENTH: tenth}, {TENTH: 12})
    compare("100 rows, 60,000 variables listed", listed, {TENTH: tenth_listed}, {TENTH: 12, "memory": 512})


def stat_files(folder, rows):
    """Eight binary variables of a .dta file, beside R's haven, which reads all of them into memory."""
    columns = [{"name": f"v{i}", "type": "int8"} for i in range(1, 9)]
    some = [[case >> i & 1 for i in range(8)] for case in range(1000)]
    description = {"columns": columns, "rows": some, "repeat": rows // len(some)}
    path = f"{folder}/large.dta"
    subprocess.run([f"{BIN}/stat_writer", "dta", path], input=json.dumps(description).encode(), check=True)
    haven = r_with("haven", "-e", f"invisible(haven::read_dta('{path}'))")
    compare(f"{rows:,} rows of .dta, 8 variables", program(path, "PROPORTIONS /ONESAMPLE v1 TO v8."), {R: haven}, {R: 0.5})
    compare(f"{rows:,} rows of .dta, 1 variable of 8", program(path, "PROPORTIONS /ONESAMPLE v1."), {R: haven}, {R: 0.3})


def samples(folder):
    """Bootstrap samples of a difference, beside R's package boot."""
    data = make_data(f"{folder}/boot.csv", 10000)
    compare("10,000 rows, 2,000 samples of a difference",
            program(data, "PROPORTIONS /INDEPENDENTSAMPLES v1 BY arm.", "--bootstrap", "2000", "--seed", "1"),
            {R: r_with("boot", f"{ROOT}/bench/bootstrap.R", data, "2000")}, {R: 0.05})


def many_pairs(folder, rows):
    """19,900 pairs, CSV in and CSV out. The engine counts the single variables only: a query of its own for all pairs takes
    ten times as long."""
    data = make_data(f"{folder}/wide.csv", rows, 200)
    sums = ", ".join(f"sum(v{i})" for i in range(1, 201))
    compare(f"{rows:,} rows, 200 variables, 19,900 pairs",
            program(data, "PROPORTIONS /PAIREDSAMPLES ALL.", "-o", f"{folder}/pairs.csv"),
            {ENGINE: engine(f"SELECT {sums} FROM read_csv('{data}')"), R: r_script("paired_tables.R", data, f"{folder}/r")},
            {ENGINE: 1.2, R: 0.5, "memory": 200})


def many_groups(folder, groups):
    """Groups of ten cases, beside a tenth of them: linear where the ratio is ten."""
    def grouped(count):
        path = f"{folder}/groups{count}.csv"
        with open(path, "w", encoding="ascii") as file:
            file.write("g,x\n")
            for case in range(10 * count):
                file.write(f"{case * 7919 % count},{case * 31 % 7 % 2}\n")
        return program(path, "PROPORTIONS /ONESAMPLE x CITYPES=WALD TESTTYPES=NONE.", "--split", "g", "-o", f"{folder}/out.csv")
    compare(f"{groups:,} split groups of 10 cases", grouped(groups), {TENTH: grouped(groups // 10)}, {TENTH: 12, "memory": 2048})


def many_levels(folder):
    """A list of 60,000 levels and as many values, beside a tenth of each: linear where the ratio is ten."""
    def listed(count):
        path = f"{folder}/levels{count}"
        with open(f"{path}.csv", "w", encoding="ascii") as file:
            file.write("x\n" + "".join(f"{case * 7919 % (2 * count)}\n" for case in range(4 * count)))
        with open(f"{path}.txt", "w", encoding="ascii") as file:
            file.write("PROPORTIONS /ONESAMPLE x /SUCCESS VALUE=LEVEL(" + "\n".join(map(str, range(0, 2 * count, 2))) + ").")
        return [f"{BIN}/proportions", f"{path}.csv", "-f", f"{path}.txt"]
    compare("60,000 levels in a list", listed(60_000), {TENTH: listed(6_000)}, {TENTH: 12})


def heavy_pairs(folder):
    """Ten thousand million discordant cases beside ten: what the long sums of two tests cost."""
    def weighted(name, count):
        path = f"{folder}/{name}.csv"
        with open(path, "w", encoding="ascii") as file:
            file.write(f"a,b,w\n1,1,10\n1,0,{count}\n0,1,{count}\n0,0,10\n")
        return program(path, "PROPORTIONS /PAIREDSAMPLES a b CITYPES=NONE TESTTYPES=EXACT MIDP.",
                       "--weight", "w")
    compare("a pair with 1e10 discordant cases, beside 10", weighted("heavy", 5000000000),
            {"10": weighted("light", 5)}, {})


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 10_000_000
    print(f"{'program':>63} {'processor':>10} {'memory':>10}")
    with tempfile.TemporaryDirectory() as folder:
        small = make_data(f"{folder}/small.csv", 1000)
        compare("1,000 rows, beside an empty engine",
                program(small, "PROPORTIONS /ONESAMPLE v1 TO v8."), {ENGINE: engine()}, {ENGINE: 0.5})
        heavy_pairs(folder)
        many_levels(folder)
        many_groups(folder, max(100, rows // 10))
        many_pairs(folder, min(rows, 100_000))
        samples(folder)
        wide_file(folder)
        large_files(folder, rows)
        streams(folder, rows)
        stat_files(folder, rows)


if __name__ == "__main__":
    main()
