"""Writes the reference values of the paired tests."""

import sys

from paired_methods import TESTS
from paired_tables import tables
from reference_math import TOLERANCE_NOTE, cell, emit, header, in_grey_zone

NOTES = [
    "# values: 1 - Phi(Z) is Phi(-Z), so that small tails keep their digits. A probability below",
    "#         2^-1075 is written 0; those from there to 1e-304 are left out. missing = not computed;",
    "#         z is none for the binomial tests.",
    "# check:  the McNemar rows agree with mcnemar.test of R 4.2.2, the exact rows with its pbinom, to",
    "#         1e-12 (generate/check_against_r.R).",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    for name, test in TESTS.items():
        for t in tables():
            z, one, two = test(t)
            if in_grey_zone(one):
                continue
            rows.append(",".join([name, *map(str, t), cell(z), cell(one), cell(two)]))
    emit(header("statistics and p values of the paired tests", "generate/paired_tests.py", NOTES,
                "test,n11,n10,n01,n00,z,one_sided,two_sided")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
