"""Writes the reference bounds of the one-sample intervals."""

import sys

from onesample_methods import INTERVALS, wilson_corrected_unclipped
from reference_math import TOLERANCE_NOTE, Level, cell, emit, header, sign_is_certain

LEVELS = ["0", "1e-6", "50", "80", "95", "99.9999"]
# Beside 100, where 1 - alpha/2 is 1 in a double, and the normal quantile infinite.
BETA_LEVELS = ["99.9999999", "99.99999999999999"]
BETA = ("CLOPPER_PEARSON", "JEFFREYS")

COUNTS = [
    (0, 1), (1, 1), (0, 2), (1, 2), (2, 2), (1, 3), (2, 3), (0, 5), (2, 5), (5, 5), (3, 7),
    (0, 10), (1, 10), (3, 10), (5, 10), (9, 10), (10, 10), (13, 16), (0, 20), (19, 20),
    (1, 29), (28, 29), (0, 30), (7, 30), (30, 30),
    (15, 148), (0, 100), (1, 100), (37, 100), (50, 100), (99, 100), (100, 100),
    (1, 1000), (333, 1000), (999, 1000), (1000, 1000), (4321, 12345),
    (0, 10**6), (1, 10**6), (10**6 // 3, 10**6), (10**6 - 1, 10**6), (10**6, 10**6),
    (0, 10**9), (1, 10**9), (10**9 // 3, 10**9), (10**9 - 1, 10**9), (10**9, 10**9),
    (0, 10**12), (1, 10**12), (12345, 10**12), (10**12 // 3, 10**12), (10**12 // 2, 10**12),
    (10**12 - 1, 10**12), (10**12, 10**12),
]

NOTES = [
    "# input:  level in percent, held as a double; alpha = 1 - level/100, alpha/2 and level/200 + 0.5",
    "#         are rounded to doubles step by step, all after that is exact: the normal quantile is",
    "#         the one at the rounded probability, the beta quantiles are those that leave the rounded",
    "#         alpha/2 below and above. x/n is the exact quotient.",
    "# values: missing = no bound exists; nan = the square root of a negative number (rows where its",
    "#         sign is in doubt in double arithmetic are left out).",
    "# check:  Clopper-Pearson, Jeffreys, Wilson and corrected Wilson rows agree with binom.test, qbeta",
    "#         and prop.test of R 4.2.2 to 1e-14 where n <= 1e6 (generate/check_against_r.R).",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    levels = [Level(text) for text in LEVELS]
    beta_levels = [Level(text) for text in BETA_LEVELS]
    for method, function in INTERVALS.items():
        for x, n in COUNTS:
            for level in levels + (beta_levels if method in BETA else []):
                if method == "WILSON_SCORECC":
                    roots = wilson_corrected_unclipped(x, n, level.z)[2]
                    if not all(sign_is_certain(root) for root in roots):
                        continue
                lower, upper = function(x, n, level)
                rows.append(",".join([method, str(x), str(n), level.text, cell(lower), cell(upper)]))
    emit(header("bounds of the one-sample intervals", "generate/onesample_intervals.py", NOTES,
                "method,x,n,level,lower,upper") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
