"""Writes the reference values of the one-sample tests."""

import sys
from math import isqrt

from onesample_methods import TESTS
from reference_math import SCALE_NOTE, cell, emit, header, in_grey_zone, scale_of

TEST_VALUES = ["0.001", "0.1", "0.2", "0.3", "0.5", "0.75", "0.9", "0.999"]

COUNTS = [
    (0, 1), (1, 1), (1, 2), (0, 5), (2, 5), (5, 5), (0, 10), (1, 10), (3, 10), (7, 10), (9, 10),
    (10, 10), (13, 16), (19, 20), (0, 29), (1, 29), (15, 148), (50, 100), (100, 100), (1, 1000),
    (750, 1000), (1000, 1000), (4321, 12345),
]
LARGE = [10**4, 10**6, 10**9]
HUGE = [10**12]
DEVIATIONS = [-37, -20, -5, -1, 0, 1, 5, 20, 37]
BINOMIAL = ("EXACT", "MIDP")

NOTES = [
    "# input:  p0 is the double nearest to the decimal written; x/n is the exact quotient.",
    "# values: 1 - Phi(Z) is Phi(-Z) and 1 - P(X <= x-1) is P(X >= x), so that small tails keep their",
    "#         digits. A probability below 2^-1075 is written 0; those from there to 1e-304 are left",
    "#         out. missing = not computed; z is none for the binomial tests.",
    "#         Equality of 1/(2n) and |x/n - p0| gives Z = 0 on both sides of the comparison.",
    "# check:  the exact, mid-p and score rows agree with pbinom, binom.test and prop.test of R 4.2.2",
    "#         to 1e-12 where n <= 1e6 (generate/check_against_r.R).",
    SCALE_NOTE,
    "# z_scale belongs to z and p_scale to one_sided; two_sided has twice p_scale. The binomial tails",
    "# with n = 1e9 are as good here as the others; what a distribution function promises for such n",
    "# (1e-11) is its own matter.",
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
        for p0 in TEST_VALUES:
            counts = list(COUNTS)
            for n in LARGE + ([] if name in BINOMIAL else HUGE):
                counts += counts_near(n, p0)
            if name not in BINOMIAL:
                counts += [(0, 10**12), (1, 10**12), (10**12 - 1, 10**12), (10**12, 10**12)]
            for x, n in dict.fromkeys(counts):
                z, one, two = test(x, n, float(p0))
                if in_grey_zone(one):
                    continue
                rows.append(",".join([name, str(x), str(n), p0, cell(z), cell(one), cell(two),
                                      scale_of(z), scale_of(one)]))
    emit(header("statistics and p values of the one-sample tests", "generate/onesample_tests.py",
                NOTES, "test,x,n,p0,z,one_sided,two_sided,z_scale,p_scale") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
