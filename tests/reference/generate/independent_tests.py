"""Writes the reference values of the tests of independent samples."""

import sys

from independent_methods import TESTS
from independent_tables import groups
from reference_math import TOLERANCE_NOTE, cell, emit, header, in_grey_zone

NOTES = [
    "# values: 1 - Phi(Z) is Phi(-Z), so that small tails keep their digits. A probability below",
    "#         2^-1075 is written 0; those from there to 1e-304 are left out. missing = not computed.",
    "#         The correction and the difference are compared without rounding; where they are equal",
    "#         Z is 0 on both sides of the comparison, unless there is no variance (then missing).",
    "# check:  the WALDH0 and WALDH0CC rows agree with prop.test of R 4.2.2 to 1e-10 where n <= 1e6",
    "#         (generate/check_against_r.R).",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    for name, test in TESTS.items():
        for g in groups():
            z, one, two = test(g)
            if in_grey_zone(one):
                continue
            rows.append(",".join([name, *map(str, g), cell(z), cell(one), cell(two)]))
    emit(header("statistics and p values of the tests of independent samples",
                "generate/independent_tests.py", NOTES,
                "test,x1,n1,x2,n2,z,one_sided,two_sided") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
