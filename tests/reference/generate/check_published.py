"""Checks published.csv against the reference methods: every row that agrees rounds to its printed
digits, every departure departs, gives the value written beside it, and disappears when the method
is computed the publication's way. Ends with status 1 when anything fails."""

import csv
import sys
from pathlib import Path

from mpmath import mp, mpf

import onesample_methods
import paired_methods
from published_values import arguments_of, definition_values
from reference_math import Level, Tracked, cell, clip, sqrt

COLUMNS = ("design kind method data given quantity printed decimals agrees defined reason "
           "citation").split()


def read(path):
    with open(path, encoding="utf-8", newline="") as lines:
        yield from csv.DictReader((line for line in lines if not line.startswith("#")),
                                  fieldnames=COLUMNS)


def rounds_to(value, row):
    if row["decimals"] == "exact":
        return value.v == mpf(row["printed"])
    half_unit = mpf(10) ** -int(row["decimals"]) / 2
    return abs(value.v - mpf(row["printed"])) <= half_unit


# --- the methods as the publications have them ---------------------------------------------------


def wilson_corrected_published(x, n, level):
    lower, upper = onesample_methods.wilson_score_corrected(x, n, level)
    return Tracked(0) if x == 0 else lower, Tracked(1) if x == n else upper


def agresti_coull_published(x, n, level):
    p = Tracked(x + 2) / (n + 4)
    half = level.z * sqrt(p * (1 - p) / (n + 4))
    return clip(p - half, p + half, 0, 1)


def paired_wald_corrected_published(t, level):
    n, difference = t.total, abs(t.n10 - t.n01) - 1
    half = level.z * sqrt(Tracked(t.n10 + t.n01) - Tracked(difference * difference) / n) / n
    d = Tracked(t.n10 - t.n01) / n
    return clip(d - half, d + half, -1, 1)


def paired_newcombe_published(t, level):
    plain = paired_methods.correlation
    excess = 2 * (t.n00 * t.n11 - t.n01 * t.n10) - t.total
    if -t.total < excess < 0:
        paired_methods.correlation = lambda table: Tracked(0)
    try:
        return paired_methods.newcombe(t, level)
    finally:
        paired_methods.correlation = plain


PUBLISHED_WAY = {
    ("one_sample", "WILSON_SCORECC"): wilson_corrected_published,
    ("one_sample", "AGRESTI_COULL"): agresti_coull_published,
    ("paired", "WALDCC"): paired_wald_corrected_published,
    ("paired", "NEWCOMBE"): paired_newcombe_published,
}


def published_way(row):
    bounds = PUBLISHED_WAY[row["design"], row["method"]](
        *arguments_of(row["design"], row["data"]), Level(row["given"]))
    return bounds[0 if row["quantity"] == "lower" else 1]


# --- the checks ----------------------------------------------------------------------------------


def problems_of(row, departures):
    value = definition_values(*(row[k] for k in ("design", "kind", "method", "data", "given")))[
        row["quantity"]]
    if row["agrees"] == "yes":
        if not rounds_to(value, row):
            yield f"gives {mp.nstr(value.v, 10)}, printed {row['printed']}"
        return
    if cell(value) != row["defined"]:
        yield f"gives {cell(value)}, written {row['defined']}"
    if not rounds_to(published_way(row), row):
        yield f"the publication's way gives {mp.nstr(published_way(row).v, 10)}"
    key = (row["design"], row["method"], row["data"])
    departures[key] = departures.get(key, False) or not rounds_to(value, row)


def main():
    path = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent.parent / "published.csv"
    rows, failures, departures = list(read(path)), [], {}
    for row in rows:
        name = " ".join(row[k] for k in ("design", "method", "data", "given", "quantity"))
        failures += [f"{name}: {problem}" for problem in problems_of(row, departures)]
    failures += [f"{' '.join(key)}: marked as a departure, but agrees"
                 for key, departs in departures.items() if not departs]
    agreeing = sum(row["agrees"] == "yes" for row in rows)
    print(f"{len(rows)} printed values: {agreeing} marked as agreeing, "
          f"{len(departures)} intervals as departures; {len(failures)} failures")
    for failure in failures:
        print(failure)
    return 1 if failures or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
