"""How the reference tables of the distribution functions are written."""

import os
import sys

import mpmath

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "distributions")


def exact(value):
    """A double so that it is read back bit for bit."""
    return repr(float(value))


def digits(value):
    """25 digits of a result."""
    return mpmath.nstr(value, 25, min_fixed=0, max_fixed=0)


def write(name, what, notes, columns, rows):
    generator = os.path.basename(sys.argv[0])
    with open(os.path.join(FOLDER, name), "w", encoding="utf-8") as file:
        file.write(f"# what:    {what}\n")
        file.write(f"# from:    generate/{generator}, mpmath {mpmath.__version__}, {mpmath.mp.dps} digits\n")
        for note in notes:
            file.write(f"# {note}\n")
        file.write(f"# columns: {','.join(columns)}\n")
        for row in rows:
            file.write(",".join(row) + "\n")
