"""Writes the reference values of the standard normal distribution function and its quantile."""

from mpmath import erfc, erfinv, findroot, log, mp, mpf, sqrt

from distributions_output import digits, exact, write

mp.dps = 60

PLACES = [0.0, 1e-300, 1e-17, 1e-9, 1e-3, 0.1, 0.5, 0.7071067811865476, 1.0, 1.2345678, 1.959963984540054, 2.5,
          3.3, 4.75, 6.1, 8.0, 8.25, 9.9, 12.3, 15.7, 19.999, 23.4567, 27.1, 30.3, 33.33, 35.9, 37.5, 38.0]
TAILS = [2.2250738585072014e-308, 1e-300, 3.7e-201, 1e-100, 1e-40, 5.551115123125783e-17, 1e-16, 1e-12, 1e-7, 5e-7,
         1e-4, 0.001, 0.005, 0.02425, 0.025, 0.05, 0.1, 0.2, 0.2499999, 0.25, 0.2500001, 0.3, 0.4, 0.45, 0.499,
         0.4999999, 0.5 - 2.0**-40, 0.5 - 2.0**-54]


def cumulative(z):
    return erfc(-mpf(z) / sqrt(2)) / 2


def quantile(p):
    """Newton on ln Phi from the left tail, or the inverse error function near the middle."""
    p = mpf(p)
    if p > 0.5:
        return -quantile(1 - p)
    if p > 0.1:
        return sqrt(2) * erfinv(2 * p - 1)
    return findroot(lambda z: log(erfc(-z / sqrt(2)) / 2) - log(p), -sqrt(-2 * log(p)), tol=mpf(10) ** -80)


def main():
    mp.dps = 60
    places = sorted({s * z for z in PLACES for s in (1, -1)})
    rows = [["cumulative", exact(z), digits(cumulative(z))] for z in places]
    probabilities = sorted(set(TAILS) | {1 - p for p in TAILS if 0.5 < 1 - p < 1})
    for p in probabilities:
        z = quantile(p)
        assert abs(cumulative(z) / mpf(p) - 1) < mpf(10) ** -40
        rows.append(["quantile", exact(p), digits(z)])
    write(
        "normal.csv",
        "standard normal distribution function and quantile",
        ["input:   the doubles that the texts stand for, taken exactly"],
        ["function", "argument", "value"],
        rows,
    )


if __name__ == "__main__":
    main()
