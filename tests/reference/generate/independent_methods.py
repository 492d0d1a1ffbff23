"""Statistics, intervals and tests of two proportions from independent groups.

x1 of n1 and x2 of n2; interval bounds of p1 - p2 are clipped to [-1, 1].
"""

from collections import namedtuple
from fractions import Fraction

from mpmath import mpf

from onesample_methods import normal_result, wilson_corrected_unclipped, wilson_unclipped
from reference_math import MISSING, Tracked, clip, sign_is_certain, sqrt


class Groups(namedtuple("Groups", "x1 n1 x2 n2")):
    @property
    def p1(self):
        return Tracked(self.x1) / self.n1

    @property
    def p2(self):
        return Tracked(self.x2) / self.n2

    @property
    def difference(self):
        return self.p1 - self.p2


def statistics(g):
    """p1, p2, p1 - p2, the standard errors of p1 and p2, and of the difference with the pooled
    proportion and at the estimates."""
    p1, p2 = g.p1, g.p2
    pooled = pooled_proportion(g)
    common = pooled * (1 - pooled)
    return {
        "p1": p1,
        "p2": p2,
        "diff": p1 - p2,
        "ase1": sqrt((1 - p1) * p1 / g.n1),
        "ase2": sqrt((1 - p2) * p2 / g.n2),
        "asediff0": sqrt(common / g.n2 + common / g.n1),
        "asediff1": sqrt(variance(p1, p2, g.n1, g.n2)),
    }


def pooled_proportion(g):
    return Tracked(g.x1 + g.x2) / (g.n1 + g.n2)


def variance(p1, p2, divisor1, divisor2):
    return (1 - p2) * p2 / divisor2 + (1 - p1) * p1 / divisor1


# --- intervals -----------------------------------------------------------------------------------


def around(centre, half):
    return clip(centre - half, centre + half, -1, 1)


def agresti_caffo(g, level):
    """Agresti & Caffo (2000), The American Statistician 54, 280-288: Wald's interval after adding
    one success and one failure to each group."""
    m1, m2 = g.n1 + 2, g.n2 + 2
    p1, p2 = Tracked(g.x1 + 1) / m1, Tracked(g.x2 + 1) / m2
    return around(p1 - p2, level.z * sqrt(variance(p1, p2, m1, m2)))


def brown_li_jeffreys(g, level):
    """Brown & Li (2005), Journal of Statistical Planning and Inference 130, 359-375: Wald's
    interval about (x + 1/2) / (n + 1); the variances divide by n, not n + 1, on purpose."""
    p1 = Tracked(2 * g.x1 + 1) / (2 * (g.n1 + 1))
    p2 = Tracked(2 * g.x2 + 1) / (2 * (g.n2 + 1))
    return around(p1 - p2, level.z * sqrt(variance(p1, p2, g.n1, g.n2)))


def hauck_anderson(g, level):
    """Hauck & Anderson (1986), The American Statistician 40, 318-322; undefined with fewer than
    two trials in a group."""
    if g.n1 < 2 or g.n2 < 2:
        return MISSING, MISSING
    s = sqrt(variance(g.p1, g.p2, g.n1 - 1, g.n2 - 1))
    return around(g.difference, level.z * s + Tracked(1) / (2 * min(g.n1, g.n2)))


def newcombe(g, level):
    """Newcombe (1998), Statistics in Medicine 17, 873-890, method 10."""
    return hybrid(g, wilson_unclipped(g.x1, g.n1, level.z), wilson_unclipped(g.x2, g.n2, level.z))


def newcombe_corrected(g, level):
    """Newcombe (1998), method 11: the same from the corrected Wilson bounds, here neither clipped
    nor replaced at p = 0 and p = 1, so that a bound may be NaN."""
    return hybrid(g, wilson_corrected_unclipped(g.x1, g.n1, level.z)[:2],
                  wilson_corrected_unclipped(g.x2, g.n2, level.z)[:2])


def hybrid(g, bounds1, bounds2):
    (l1, u1), (l2, u2) = bounds1, bounds2
    below1, above1 = g.p1 - l1, u1 - g.p1
    below2, above2 = g.p2 - l2, u2 - g.p2
    return clip(g.difference - sqrt(below1 * below1 + above2 * above2),
                g.difference + sqrt(above1 * above1 + below2 * below2), -1, 1)


def corrected_roots_are_certain(g, level):
    roots = (wilson_corrected_unclipped(g.x1, g.n1, level.z)[2]
             + wilson_corrected_unclipped(g.x2, g.n2, level.z)[2])
    return all(sign_is_certain(root) for root in roots)


def wald(g, level):
    """Wald's interval: Newcombe (1998), method 1."""
    return around(g.difference, level.z * sqrt(variance(g.p1, g.p2, g.n1, g.n2)))


def wald_corrected(g, level):
    """Wald's interval widened by (1/n1 + 1/n2) / 2 on either side: Newcombe (1998), method 2."""
    s = sqrt(variance(g.p1, g.p2, g.n1, g.n2))
    return around(g.difference, level.z * s + correction(g))


def correction(g):
    return mpf("0.5") * (Tracked(1) / g.n2 + Tracked(1) / g.n1)


INTERVALS = {
    "AGRESTI_CAFFO": agresti_caffo,
    "BROWN_LI_JEFFREYS": brown_li_jeffreys,
    "HAUCK_ANDERSON": hauck_anderson,
    "NEWCOMBE": newcombe,
    "NEWCOMBECC": newcombe_corrected,
    "WALD": wald,
    "WALDCC": wald_corrected,
}

# --- tests ---------------------------------------------------------------------------------------


def hauck_anderson_test(g):
    """Hauck & Anderson (1986): correction 1 / (2 min(n1, n2)), variances with n - 1."""
    smaller = min(g.n1, g.n2)
    if smaller < 2:
        return corrected_result(g, Fraction(1, 2 * smaller), None, None)
    return corrected_result(g, Fraction(1, 2 * smaller), Tracked(1) / (2 * smaller),
                            lambda: variance(g.p1, g.p2, g.n1 - 1, g.n2 - 1))


def wald_test(g):
    """The difference over its standard error at the estimates."""
    return ratio(g.difference, variance(g.p1, g.p2, g.n1, g.n2))


def wald_test_corrected(g):
    """Wald test with the difference moved (1/n1 + 1/n2) / 2 towards 0: Fleiss, Levin & Paik
    (2003), Statistical Methods for Rates and Proportions, section 3.1."""
    return corrected_result(g, Fraction(1, 2 * g.n1) + Fraction(1, 2 * g.n2), correction(g),
                            lambda: variance(g.p1, g.p2, g.n1, g.n2))


def pooled_test(g):
    """The difference over its standard error with the pooled proportion; Z^2 is Pearson's
    chi-squared: Pearson (1900), Philosophical Magazine 50, 157-175."""
    return ratio(g.difference, pooled_variance(g))


def pooled_test_corrected(g):
    """Yates (1934), Supplement to the Journal of the Royal Statistical Society 1, 217-235; Z = 0
    where the correction passes the difference."""
    return corrected_result(g, Fraction(1, 2 * g.n1) + Fraction(1, 2 * g.n2), correction(g),
                            lambda: pooled_variance(g))


def pooled_variance(g):
    p = pooled_proportion(g)
    return (Tracked(1) / g.n2 + Tracked(1) / g.n1) * ((1 - p) * p)


def corrected_result(g, exact_correction, c, variance_of):
    """Z = 0 where the correction exceeds the difference, compared without rounding; missing where
    there is no variance to divide by."""
    d = Fraction(g.x1, g.n1) - Fraction(g.x2, g.n2)
    if exact_correction > abs(d):
        return normal_result(Tracked(0))
    if variance_of is None:
        return MISSING, MISSING, MISSING
    return ratio(g.difference - c if d > 0 else g.difference + c, variance_of())


def ratio(numerator, v):
    if v.v == 0:
        return MISSING, MISSING, MISSING
    return normal_result(numerator / sqrt(v))


TESTS = {
    "HAUCK_ANDERSON": hauck_anderson_test,
    "WALD": wald_test,
    "WALDCC": wald_test_corrected,
    "WALDH0": pooled_test,
    "WALDH0CC": pooled_test_corrected,
}
