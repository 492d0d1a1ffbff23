"""Writes the reference values of the group statistics of independent samples."""

import sys

from independent_methods import statistics
from independent_tables import groups
from reference_math import TOLERANCE_NOTE, cell, emit, header

NOTES = [
    TOLERANCE_NOTE,
]


def main():
    rows = []
    for g in groups():
        s = statistics(g)
        rows.append(",".join([*map(str, g), *(cell(v) for v in s.values())]))
    emit(header("proportions, difference and standard errors of independent samples",
                "generate/independent_statistics.py", NOTES,
                "x1,n1,x2,n2,p1,p2,diff,ase1,ase2,asediff0,asediff1")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
