"""The tables for which the paired family has reference values."""

import random

from paired_methods import Table

PUBLISHED = [(59, 6, 16, 80), (1, 1, 7, 12), (1, 0, 0, 1), (20, 12, 2, 16), (8, 3, 1, 2),
             (7, 25, 2, 68)]

SMALL = [
    (3, 2, 1, 4), (1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1),
    (5, 0, 0, 5), (10, 0, 0, 0), (0, 0, 0, 10), (0, 10, 0, 0), (0, 0, 10, 0),
    (0, 5, 5, 0), (0, 6, 4, 0), (0, 1, 0, 9), (9, 0, 1, 0), (4, 1, 0, 5), (4, 0, 1, 5),
    (0, 3, 2, 5), (5, 3, 2, 0), (6, 4, 0, 0), (6, 0, 4, 0), (0, 4, 0, 6), (0, 0, 4, 6),
    (7, 0, 3, 5), (7, 3, 0, 5), (1, 1, 1, 1), (2, 2, 2, 2),
    (2, 1, 1, 3),  # twice the determinant equals the total plus 3
    (2, 2, 0, 2),  # twice the determinant stays 2 above the total
    (1, 0, 0, 2),  # twice the determinant stays 1 above the total
    (2, 1, 1, 2),  # twice the determinant equals the total: phi is 0
    (2, 1, 2, 2),  # the determinant is positive, but twice it is below the total
    (1, 4, 4, 1),  # negative phi
]

LARGE = [
    (400, 60, 40, 500), (0, 1000, 900, 0), (10**6, 1000, 1200, 10**6), (5, 10**4, 10**4, 5),
    (10**6, 1, 0, 10**6), (10**6, 0, 0, 10**6), (0, 10**6, 1, 0),
    (123456789, 10**6, 10**6 + 2000, 987654321), (10**9, 10**9, 10**9 + 10**5, 10**9),
    (10**8, 10**9, 10**9, 10**9), (10**9, 10**9, 10**9 - 1634000, 10**9), (10**9, 7, 10**9, 3),
    (0, 10**9, 999999000, 0), (10**12, 10**9, 10**9 - 200000, 10**12), (0, 10**8, 0, 0),
    (10**12, 0, 3, 10**11),
    # nearly perfect correlation
    (10**7, 0, 0, 10**7), (4 * 10**13, 1, 10, 9 * 10**13), (10**15, 1, 0, 10**15),
    (10**15, 3, 2, 2 * 10**15), (3 * 10**12, 0, 10**6, 10**15), (10**15, 0, 0, 1),
]

TAILS = [(10, 0, n, 10) for n in (20, 100, 900)] + [
    (10, 1200, 100, 10), (0, 3, 950, 0), (50, 40000, 33000, 50), (1000, 516000, 484000, 1000),
    (0, 6, 4, 100), (0, 4, 6, 100), (3, 50, 51, 2), (3, 51, 50, 2), (3, 50, 50, 2)]


def tables():
    rng = random.Random(19470612)
    drawn = []
    for top in (4, 12, 60, 1000, 10**6):
        for _ in range(12):
            drawn.append(tuple(rng.randint(0, top) for _ in range(4)))
    drawn = [t for t in drawn if sum(t)]
    return [Table(*t) for t in dict.fromkeys(PUBLISHED + SMALL + LARGE + TAILS + drawn)]
