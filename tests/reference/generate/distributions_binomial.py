"""Writes the reference values of the binomial mass, distribution function and upper tail."""

from math import sqrt

from mpmath import exp, log, log1p, loggamma, mpf

from distributions_beta import check, tails
from distributions_output import digits, exact, write

COUNTS = [1, 2, 5, 10, 37, 100, 999, 12345, 10**6, 2 * 10**7 + 1, 10**9, 10**12, 10**15]
PROPORTIONS = [2.2250738585072014e-308, 1e-300, 1e-20, 3e-7, 0.03, 0.3, 0.5, 0.7, 0.999, 1 - 1e-10, 1 - 2.0**-53]
DISTANCES = [-37, -12, -3, -0.5, 0, 1.3, 6, 20, 37]


def mass(k, n, p):
    n, k, p = mpf(n), mpf(k), mpf(p)
    return exp(loggamma(n + 1) - loggamma(k + 1) - loggamma(n - k + 1) + k * log(p) + (n - k) * log1p(-p))


def places(n, p):
    spread = sqrt(n * p * (1 - p))
    near = {round(n * p + z * spread) for z in DISTANCES}
    wanted = {0, 1, 2, n - 2, n - 1, n} | near
    return sorted(k for k in wanted if 0 <= k <= n)


def row(k, n, p):
    if k == n:
        cumulative, upper = mpf(1), mpf(0)
    else:
        p_exact = mpf(p)
        upper, cumulative = tails(k + 1, n - k, p_exact, 1 - p_exact)
    return [exact(k), exact(n), exact(p), digits(mass(k, n, p)), digits(cumulative), digits(upper)]


def main():
    check()
    rows = [row(k, n, p) for n in COUNTS for p in PROPORTIONS for k in places(n, p)]
    write(
        "binomial.csv",
        "P(X = k), P(X <= k) and P(X > k) for X binomial(n, p)",
        ["input:   the doubles that the texts stand for, taken exactly"],
        ["k", "n", "p", "mass", "cumulative", "upper"],
        rows,
    )


if __name__ == "__main__":
    main()
