"""Writes the reference values of the group statistics of independent samples."""

import sys

from independent_methods import statistics
from independent_tables import groups
from reference_math import SCALE_NOTE, cell, emit, header, scale_of

NOTES = [
    SCALE_NOTE,
    "#         diff_scale belongs to diff, ase_scale to the four standard errors.",
]


def main():
    rows = []
    for g in groups():
        s = statistics(g)
        rows.append(",".join([*map(str, g), *(cell(v) for v in s.values()), scale_of(s["diff"]),
                              scale_of(s["ase1"], s["ase2"], s["asediff0"], s["asediff1"])]))
    emit(header("proportions, difference and standard errors of independent samples",
                "generate/independent_statistics.py", NOTES,
                "x1,n1,x2,n2,p1,p2,diff,ase1,ase2,asediff0,asediff1,diff_scale,ase_scale")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
