"""Tails of the beta distribution at 50 digits or more, for the generators beside this file.

Two independent ways: the hypergeometric series of Abramowitz & Stegun 26.5.4 in fixed point, all of
whose terms are positive, and, where it would take too many terms, tanh-sinh quadrature of the
density. `python3 distributions_beta.py` compares the two with each other and with direct sums.
"""
from mpmath import erfinv, mp, mpf, exp, expm1, log, log1p, loggamma, quad, sqrt

mp.dps = 75
SHIFT = 1 << 260
# The series takes about sqrt(360 a / y) terms.
SERIES_REACH = 10**7


def log_power(a, b, x, y):
    """ln(x^a y^b / B(a, b)); the digits lost to cancellation are covered by the working precision."""
    return a * log(x) + b * log(y) + loggamma(a + b) - loggamma(a) - loggamma(b)


def tail_by_series(a, b, x, y):
    """I_x(a, b) / (x^a y^b / B(a, b)) = (1 / a) (1 + sum of products of (a + b + j) x / (a + 1 + j))."""
    scale = 2  # the shapes are whole, half, or multiplied up below
    while (a * scale) % 1 or (b * scale) % 1:
        scale *= 2
    top, bottom, step = int((a + b) * scale), int((a + 1) * scale), scale
    fixed_x = int(x * SHIFT)
    term = total = SHIFT
    while term:
        term = term * top // bottom * fixed_x // SHIFT
        total += term
        top += step
        bottom += step
    return mpf(total) / SHIFT / a


def tail_by_quadrature(a, b, x, y):
    """The same ratio as the integral of the density over the logit below the place."""
    slope, bend = a * y - b * x, (a + b) * x * y
    # Until nothing is left of the first value to the working precision; the curvature falls towards
    # small places, hence the doubling.
    drop = mpf(mp.dps) * 2.4
    reach = 2 * drop / (slope + sqrt(slope * slope + 4 * drop * bend)) * 2

    def density(t):
        return exp(a * t - (a + b) * log1p(x * expm1(t)))

    return quad(density, [-reach * k / 12 for k in range(12, -1, -1)])


def lower_tail_near(a, b, x, y):
    """I_x(a, b) for a place not above the mean."""
    ratio = tail_by_series if a <= SERIES_REACH * y else tail_by_quadrature
    return exp(log_power(a, b, x, y)) * ratio(a, b, x, y)


def tails(a, b, x, y):
    """I_x(a, b) and its complement, the smaller one computed and the other one subtracted."""
    a, b = mpf(a), mpf(b)
    if a * y >= b * x:
        lower = lower_tail_near(a, b, x, y)
        return lower, 1 - lower
    upper = lower_tail_near(b, a, y, x)
    return 1 - upper, upper


def logit_of_lower_tail(r, a, b):
    """The logit w with I_x(a, b) = r, x = 1 / (1 + exp(-w)), by Newton's method on ln I."""
    a, b = mpf(a), mpf(b)
    # The logarithm is concave in w, so Newton's steps from any start end up closing in from below.
    z = sqrt(2) * erfinv(2 * max(mpf(r), mpf(10) ** -40) - 1)
    w = log(a / b) + z * sqrt(1 / a + 1 / b)
    leading = (log(r) + log(a) + loggamma(a) + loggamma(b) - loggamma(a + b)) / a
    if a < 40:
        w = max(leading, w) if leading < log(a / b) else leading
    for _ in range(200):
        x, y = 1 / (1 + exp(-w)), 1 / (1 + exp(w))
        lower, _ = tails(a, b, x, y)
        slope = exp(log_power(a, b, x, y)) / lower
        change = log(lower / r) / slope
        w -= change
        # Newton's next error is the square of this one, in units of the spread.
        if abs(change) < mpf(10) ** -14 * min(1, sqrt(1 / a + 1 / b)):
            return w
    raise ArithmeticError(f"no convergence at {r} {a} {b}")


def check():
    from mpmath import binomial

    for n, k, p in ((50, 3, "0.25"), (2000, 900, "0.5"), (2000, 10, "0.001")):
        p = mpf(p)
        direct = sum(binomial(n, j) * p**j * (1 - p) ** (n - j) for j in range(k + 1))
        assert abs(tails(k + 1, n - k, p, 1 - p)[1] / direct - 1) < mpf(10) ** -45
    for a, b, x in ((10**5, 10**5, "0.499"), (10**6, 10**13, "0.000000099"), (10**7, 3 * 10**7, "0.25")):
        a, b, x = mpf(a), mpf(b), mpf(x)
        one, two = tail_by_series(a, b, x, 1 - x), tail_by_quadrature(a, b, x, 1 - x)
        assert abs(one / two - 1) < mpf(10) ** -40, (a, b, x, one / two - 1)


if __name__ == "__main__":
    check()
    print("the ways agree")
