"""Writes reference bounds for sums of weights so large that their products exceed every double."""

import sys

import independent_methods
import onesample_methods
import paired_methods
import reference_math
from mpmath import mp, mpf
from reference_math import Level, cell, emit, header

mp.dps = 700  # half widths are a fraction 2^-500 of the proportions that they are added to
reference_math.CANCELLED = mpf(10) ** -650

LEVELS = ["50", "95"]
SCALES = [2**360, 2**520, 2**660, 2**1000]

# In units of a scale; all sums of them are doubles.
SAMPLES = [(0, 1), (1, 1), (1, 2**20 - 1), (3, 5), (1, 0)]
TABLES = [(1, 1, 1, 1), (3, 1, 1, 3), (2**20, 1, 1, 2**20), (2**20, 1, 3, 2**20), (1, 0, 0, 1), (5, 0, 0, 1),
          (1, 2, 0, 1), (0, 3, 1, 0), (0, 1, 0, 0), (1, 0, 0, 0), (1, 3, 3, 1), (0, 0, 2, 5)]
GROUPS = [((1, 1), (1, 3)), ((0, 1), (1, 1)), ((0, 1), (0, 1)), ((1, 1), (1, 1)), ((1, 2**20 - 1), (3, 5))]

NOTES = [
    "# input:  counts as hexadecimal doubles: one sample x and f; pairs n11, n10, n01 and n00; groups x1,",
    "#         f1, x2 and f2. level in percent, held as a double, as in the other files.",
    "# left:   the beta intervals, whose quantiles are compared in distributions/.",
    "# use:    to be met within 1e-12 of each value, or within 1e-150 where that is more.",
]


def written(count):
    """Every count here is a double."""
    assert int(float(count)) == count
    shift = (count & -count).bit_length() - 1 if count else 0
    return f"0x{count >> shift:x}p{shift}"


def cases():
    """Design, counts, and the intervals of the design with what they take."""
    for scale in SCALES:
        for x, f in SAMPLES:
            yield "onesample", (x * scale, f * scale), onesample_methods.INTERVALS, (x * scale, (x + f) * scale)
        for table in TABLES:
            t = paired_methods.Table(*(count * scale for count in table))
            yield "paired", tuple(t), paired_methods.INTERVALS, (t,)
        for (x1, f1), (x2, f2) in GROUPS:
            for second in (scale, 1):
                counts = (x1 * scale, f1 * scale, x2 * second, f2 * second)
                groups = independent_methods.Groups(counts[0], counts[0] + counts[1], counts[2],
                                                    counts[2] + counts[3])
                yield "independent", counts, independent_methods.INTERVALS, (groups,)


def main():
    levels = [Level(text) for text in LEVELS]
    rows = []
    for design, counts, intervals, arguments in cases():
        places = [*map(written, counts), "", ""][:4]
        for method, function in intervals.items():
            if method in ("CLOPPER_PEARSON", "JEFFREYS"):
                continue
            for level in levels:
                lower, upper = function(*arguments, level)
                rows.append(",".join([design, method, *places, level.text, cell(lower), cell(upper)]))
    emit(header("bounds of the intervals for enormous counts", "generate/enormous_counts.py", NOTES,
                "design,method,a,b,c,d,level,lower,upper") + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
