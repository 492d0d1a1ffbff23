"""Writes the reference bounds of the intervals of independent samples."""

import sys

from independent_methods import INTERVALS, corrected_roots_are_certain
from independent_tables import LEVELS, groups
from reference_math import TOLERANCE_NOTE, Level, cell, emit, header

NOTES = [
    "# input:  level in percent, held as a double; level/200 + 0.5 is rounded to a double step by step,",
    "#         the normal quantile there and all after it is exact. The quotients are exact too.",
    "# values: missing = not computed; nan = the square root of a negative number (rows where its sign",
    "#         is in doubt in double arithmetic are left out).",
    "# check:  the WALD and WALDCC rows agree with prop.test of R 4.2.2 to 1e-15 (absolute, groups up to",
    "#         1e6, generate/check_against_r.R).",
    TOLERANCE_NOTE,
]


def main():
    rows = []
    levels = [Level(text) for text in LEVELS]
    for method, function in INTERVALS.items():
        for g in groups():
            for level in levels:
                if method == "NEWCOMBECC" and not corrected_roots_are_certain(g, level):
                    continue
                lower, upper = function(g, level)
                rows.append(",".join([method, *map(str, g), level.text, cell(lower), cell(upper)]))
    emit(header("bounds of the intervals of p1 - p2 of independent samples",
                "generate/independent_intervals.py", NOTES,
                "method,x1,n1,x2,n2,level,lower,upper") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
