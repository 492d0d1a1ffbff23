"""Writes the reference values of the paired statistics."""

import sys

from paired_methods import statistics
from paired_tables import tables
from reference_math import TOLERANCE_NOTE, cell, emit, header

NOTES = [
    "# values: ase1 = sqrt(p1 (1 - p1) / (n11 + n10)) and ase2 = sqrt(p2 (1 - p2) / (n11 + n01)) divide",
    "#         by the success count, not by the total; missing = no successes.",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    for t in tables():
        s = statistics(t)
        rows.append(",".join([*map(str, t), *(cell(v) for v in s.values())]))
    emit(header("proportions, difference and standard errors of paired samples",
                "generate/paired_statistics.py", NOTES,
                "n11,n10,n01,n00,p1,p2,diff,ase1,ase2,asediff0,asediff1")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
