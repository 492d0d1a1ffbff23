"""Writes the reference noncentralities of the t distribution."""

from mpmath import erfc, erfinv, exp, findroot, gamma, log, mp, mpf, quad, sqrt

from distributions_output import digits, exact, write

CASES = [(t, 5.0, p) for t in (2, 1, 0, -1, -2, -3, -4) for p in (0.975, 0.025)]
CASES += [
    (1.5, 1.0, 0.5), (-0.3, 2.0, 0.9), (3.0, 30.0, 0.05), (12.0, 4.0, 0.3), (-25.0, 10.0, 0.99), (0.7, 0.8, 0.2),
    (2.5, 200.0, 0.001), (0.0, 7.0, 1e-9), (5.0, 15.0, 1 - 1e-9), (-1.0, 3.0, 0.0001),
]


def lower_tail(t, df, d):
    """E Phi(t sqrt(V / df) - d), V chi-squared, by quadrature over the square root of V / df."""
    half = df / 2
    constant = 2 * half**half / gamma(half)

    def integrand(s):
        return erfc((d - t * s) / sqrt(2)) / 2 * constant * s ** (df - 1) * exp(-half * s * s)

    width = 1 / sqrt(df)
    marks = sorted({mpf(0), mpf(1), *(1 + k * width for k in (-4, -2, -1, 1, 2, 4, 7, 12, 20) if 1 + k * width > 0)})
    return quad(integrand, marks)


def noncentrality(t, df, p):
    t, df, p = mpf(t), mpf(df), mpf(p)
    z = sqrt(2) * erfinv(2 * p - 1)
    start = t * (1 - 1 / (4 * df)) - z * sqrt(1 + t * t / (2 * df))
    if p < 0.5:
        miss = lambda d: log(lower_tail(t, df, d)) - log(p)
    else:
        miss = lambda d: log(lower_tail(-t, df, -d)) - log(1 - p)
    d = findroot(miss, (start, start + mpf("0.01")), solver="secant", tol=mpf(10) ** -44)
    assert abs(miss(d)) < mpf(10) ** -16
    return d


def main():
    mp.dps = 50
    rows = [[exact(t), exact(df), exact(p), digits(noncentrality(t, df, p))] for t, df, p in CASES]
    write(
        "noncentrality.csv",
        "noncentrality d with P(T <= t) = p for T noncentral t with df degrees of freedom",
        ["input:   the doubles that the texts stand for, taken exactly; d is good to 15 digits or more"],
        ["t", "df", "p", "noncentrality"],
        rows,
    )


if __name__ == "__main__":
    main()
