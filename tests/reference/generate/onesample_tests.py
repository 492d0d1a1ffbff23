"""Writes the reference values of the one-sample tests."""

import sys
from math import isqrt

from onesample_methods import TESTS
from reference_math import TOLERANCE_NOTE, cell, emit, header, in_grey_zone

TEST_VALUES = ["0.001", "0.1", "0.2", "0.3", "0.5", "0.75", "0.9", "0.999"]

COUNTS = [
    (0, 1), (1, 1), (1, 2), (0, 5), (2, 5), (5, 5), (0, 10), (1, 10), (3, 10), (7, 10), (9, 10),
    (10, 10), (13, 16), (19, 20), (0, 29), (1, 29), (15, 148), (50, 100), (100, 100), (1, 1000),
    (750, 1000), (1000, 1000), (4321, 12345),
]
# Counts that are what the decimal p0 lets expect, and such as lie half a case beside that.
EXPECTED = {
    "0.28": [(7, 25), (7, 26)], "0.29": [(29, 100), (290000, 10**6)], "0.07": [(7, 100)],
    "0.7": [(63, 90), (4, 5), (7 * 10**11, 10**12)], "0.9": [(4, 5)], "0.55": [(5, 10), (6, 10)],
    "0.1": [(3, 25), (10**11, 10**12), (10**14, 10**15), (10**14 + 1, 10**15)],
    "0.3": [(1, 5), (2, 5), (3 * 10**8, 10**9), (3 * 10**14 - 2, 10**15)],
}
LARGE = [10**4, 10**6, 10**9]
HUGE = [10**12]
DEVIATIONS = [-37, -20, -5, -1, 0, 1, 5, 20, 37]
BINOMIAL = ("EXACT", "MIDP")

NOTES = [
    "# input:  p0 is the double nearest to the decimal written; x/n is the exact quotient.",
    "# values: 1 - Phi(Z) is Phi(-Z) and 1 - P(X <= x-1) is P(X >= x), so that small tails keep their",
    "#         digits. A probability below 2^-1075 is written 0; those from there to 1e-304 are left",
    "#         out. missing = not computed; z is none for the binomial tests.",
    "#         Where x is n times the decimal p0, or half a case beside that, Z and its corrected",
    "#         kind are 0; everywhere else they are those of the double p0.",
    "# check:  the exact, mid-p and score rows agree with pbinom, binom.test and prop.test of R 4.2.2",
    "#         to 1e-12 where n <= 1e6 (generate/check_against_r.R).",
    TOLERANCE_NOTE,
]


def counts_near(n, p0):
    """Counts at round numbers of standard deviations from the expectation."""
    p = float(p0)
    deviation = isqrt(int(n * p * (1 - p)))
    centre = round(n * p)
    return [(x, n) for x in (centre + k * deviation for k in DEVIATIONS) if 0 <= x <= n]


def main():
    rows = []
    for name, test in TESTS.items():
        for p0 in TEST_VALUES + [p0 for p0 in EXPECTED if p0 not in TEST_VALUES]:
            counts = list(COUNTS)
            for n in LARGE + ([] if name in BINOMIAL else HUGE):
                counts += counts_near(n, p0)
            if name not in BINOMIAL:
                counts += [(0, 10**12), (1, 10**12), (10**12 - 1, 10**12), (10**12, 10**12)]
            if name not in BINOMIAL:
                counts += EXPECTED.get(p0, [])
            for x, n in dict.fromkeys(counts):
                z, one, two = test(x, n, float(p0))
                if in_grey_zone(one):
                    continue
                rows.append(",".join([name, str(x), str(n), p0, cell(z), cell(one), cell(two)]))
    emit(header("statistics and p values of the one-sample tests", "generate/onesample_tests.py",
                NOTES, "test,x,n,p0,z,one_sided,two_sided") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
