"""Writes the reference bounds of the paired intervals."""

import sys

from paired_methods import INTERVALS
from paired_tables import tables
from reference_math import TOLERANCE_NOTE, Level, cell, emit, header

LEVELS = ["0", "1e-6", "50", "80", "95", "99.9999"]

NOTES = [
    "# input:  level in percent, held as a double; level/200 + 0.5 is rounded to a double step by step,",
    "#         the normal quantile there and all after it is exact. The quotients are exact too.",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    levels = [Level(text) for text in LEVELS]
    for method, function in INTERVALS.items():
        for t in tables():
            for level in levels:
                lower, upper = function(t, level)
                rows.append(",".join([method, *map(str, t), level.text, cell(lower), cell(upper)]))
    emit(header("bounds of the paired intervals of p1 - p2", "generate/paired_intervals.py", NOTES,
                "method,n11,n10,n01,n00,level,lower,upper") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
