"""Writes the reference values of the paired statistics."""

import sys

from paired_methods import statistics
from paired_tables import tables
from reference_math import SCALE_NOTE, cell, emit, header, scale_of

NOTES = [
    "# values: ase1 = sqrt(p1 (1 - p1) / (n11 + n10)) and ase2 = sqrt(p2 (1 - p2) / (n11 + n01)) divide",
    "#         by the success count, not by the total; missing = no successes.",
    SCALE_NOTE,
    "#         diff_scale belongs to diff, ase_scale to the four standard errors.",
]


def main():
    rows = []
    for t in tables():
        s = statistics(t)
        rows.append(",".join([*map(str, t), *(cell(v) for v in s.values()), scale_of(s["diff"]),
                              scale_of(s["ase1"], s["ase2"], s["asediff0"], s["asediff1"])]))
    emit(header("proportions, difference and standard errors of paired samples",
                "generate/paired_statistics.py", NOTES,
                "n11,n10,n01,n00,p1,p2,diff,ase1,ase2,asediff0,asediff1,diff_scale,ase_scale")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
