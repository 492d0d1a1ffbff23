"""Statistics, intervals and tests of two proportions measured on the same cases.

A table is (n11, n10, n01, n00): first and second success, first only, second only, neither;
b = n10, c = n01, N their total. Interval bounds of p1 - p2 are clipped to [-1, 1].
"""

from collections import namedtuple

from mpmath import mpf

from onesample_methods import binomial_result, normal_result, wilson_unclipped
from reference_math import (MISSING, Tracked, binomial_at_most, binomial_point, clip, sqrt)


class Table(namedtuple("Table", "n11 n10 n01 n00")):
    @property
    def total(self):
        return sum(self)

    @property
    def first(self):
        return self.n11 + self.n10

    @property
    def second(self):
        return self.n11 + self.n01


def statistics(t):
    """p1, p2, p1 - p2, the standard errors of p1 and p2, and of the difference under equal
    proportions and at the estimates. Those of p1 and p2 divide by the success count of the same
    measurement, not by N, on purpose; without successes they are missing."""
    n = t.total
    p1, p2 = Tracked(t.first) / n, Tracked(t.second) / n
    p10, p01 = Tracked(t.n10) / n, Tracked(t.n01) / n
    step = p10 - p01
    return {
        "p1": p1,
        "p2": p2,
        "diff": p1 - p2,
        "ase1": sqrt((1 - p1) * p1 / t.first) if t.first else MISSING,
        "ase2": sqrt((1 - p2) * p2 / t.second) if t.second else MISSING,
        "asediff0": sqrt((p10 + p01) / n),
        "asediff1": sqrt((p10 + p01 - step * step) / n),
    }


# --- intervals -----------------------------------------------------------------------------------


def agresti_min(t, level):
    """Agresti & Min (2005), Statistics in Medicine 24, 729-740: Wald's interval after adding 1/2
    to each of the four cells."""
    return adjusted_wald(t, level, mpf("0.5"))


def bonett_price(t, level):
    """Bonett & Price (2012), Journal of Educational and Behavioral Statistics 37, 479-488: Wald's
    interval with 1 added to each discordant count and 2 to the number of pairs."""
    return adjusted_wald(t, level, 1)


def adjusted_wald(t, level, added):
    m = t.total + 2
    d = Tracked(t.n10 - t.n01) / m
    s = sqrt(((t.n10 + Tracked(added)) / m + (t.n01 + Tracked(added)) / m - d * d) / m)
    half = level.z * s
    return clip(d - half, d + half, -1, 1)


def newcombe(t, level):
    """Newcombe (1998), Statistics in Medicine 17, 2635-2650, method 10: Wilson bounds of the two
    proportions, combined with the phi coefficient. The numerator of phi is reduced by N/2 when
    that leaves it positive and is otherwise taken as it is; the paper takes 0 when the reduced
    one would be negative and the plain one is positive."""
    n = t.total
    p1, p2 = Tracked(t.first) / n, Tracked(t.second) / n
    l1, u1 = wilson_unclipped(t.first, n, level.z)
    l2, u2 = wilson_unclipped(t.second, n, level.z)
    phi = correlation(t)
    e1, f1, e2, f2 = p1 - l1, u1 - p1, p2 - l2, u2 - p2
    d = p1 - p2
    return clip(d - sqrt(f2 * f2 + e1 * e1 - 2 * phi * e1 * f2),
                d + sqrt(e2 * e2 + f1 * f1 - 2 * phi * f1 * e2), -1, 1)


def correlation(t):
    n = t.total
    margins = (n - t.first, t.first, t.second, n - t.second)
    if 0 in margins:
        return Tracked(0)
    excess = 2 * (t.n00 * t.n11 - t.n01 * t.n10) - n
    if excess == 0:
        return Tracked(0)
    product = Tracked(1)
    for margin in margins:
        product = product * margin
    a = Tracked(t.n00) * t.n11 - Tracked(t.n01) * t.n10
    return (a - mpf(n) / 2 if excess > 0 else a) / sqrt(product)


def wald(t, level):
    """Wald's interval of a paired difference: Agresti (2013), Categorical Data Analysis, 3rd ed.,
    section 11.1."""
    d, half = wald_parts(t, level)
    return clip(d - half, d + half, -1, 1)


def wald_corrected(t, level):
    """Wald's interval widened by 1/N on either side."""
    d, half = wald_parts(t, level)
    w = Tracked(1) / t.total + half
    return clip(d - w, d + w, -1, 1)


def wald_parts(t, level):
    n = t.total
    d = Tracked(t.n10 - t.n01) / n
    return d, level.z * sqrt((Tracked(t.n01) / n + Tracked(t.n10) / n - d * d) / n)


INTERVALS = {
    "AGRESTI_MIN": agresti_min,
    "BONETT_PRICE": bonett_price,
    "NEWCOMBE": newcombe,
    "WALD": wald,
    "WALDCC": wald_corrected,
}

# --- tests ---------------------------------------------------------------------------------------


def exact(t):
    """McNemar's test from the binomial distribution of the discordant pairs: Liddell (1983),
    Journal of Epidemiology and Community Health 37, 82-84. One-sided p = P(X <= min(b, c)), which
    exceeds 1/2 when b = c."""
    return binomial_result(binomial_at_most(min(t.n10, t.n01), t.n10 + t.n01, mpf("0.5")))


def mid_p(t):
    """Fagerland, Lydersen & Laake (2013), BMC Medical Research Methodology 13, 91: the exact test
    with half the probability of the observed count."""
    m, n = min(t.n10, t.n01), t.n10 + t.n01
    half = mpf("0.5")
    return binomial_result(binomial_at_most(m, n, half) - binomial_point(m, n, half) / 2)


def mcnemar(t):
    """McNemar (1947), Psychometrika 12, 153-157."""
    discordant = t.n10 + t.n01
    if discordant == 0:
        return MISSING, MISSING, MISSING
    return normal_result((t.n10 - t.n01) / sqrt(Tracked(discordant)))


def mcnemar_corrected(t):
    """Edwards (1948), Psychometrika 13, 185-187: the difference moved 1 towards 0. Equal counts
    give Z = 0, no discordant pairs included."""
    difference = t.n10 - t.n01
    if difference == 0:
        return normal_result(Tracked(0))
    return normal_result(towards_zero(difference) / sqrt(Tracked(t.n10 + t.n01)))


def wald_test(t):
    """The difference over its standard error at the estimates, on the scale of counts."""
    if not wald_variance_is_positive(t):
        return MISSING, MISSING, MISSING
    return normal_result((t.n10 - t.n01) / wald_deviation(t))


def wald_test_corrected(t):
    """Wald test with the correction of the corrected McNemar test."""
    difference = t.n10 - t.n01
    if difference == 0:
        return normal_result(Tracked(0))
    if not wald_variance_is_positive(t):
        return MISSING, MISSING, MISSING
    return normal_result(towards_zero(difference) / wald_deviation(t))


def towards_zero(difference):
    return difference - 1 if difference > 0 else difference + 1


def wald_variance_is_positive(t):
    return (t.n10 + t.n01) * t.total > (t.n10 - t.n01) ** 2


def wald_deviation(t):
    difference = Tracked(t.n10 - t.n01)
    return sqrt(t.n10 + t.n01 - difference * difference / t.total)


TESTS = {
    "EXACT": exact,
    "MIDP": mid_p,
    "MCNEMAR": mcnemar,
    "MCNEMARCC": mcnemar_corrected,
    "WALD": wald_test,
    "WALDCC": wald_test_corrected,
}
