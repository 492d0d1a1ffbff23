"""Intervals and tests of one proportion, written from the publications.

x successes in n trials, f = n - x failures, p = x/n. An interval function takes x, n and a
`Level` and returns the two bounds, clipped to [0, 1]; a test function takes x, n, p0 and returns
Z (or "none"), the one-sided and the two-sided p value. What cannot be computed is "missing".
"""

from fractions import Fraction

from mpmath import mpf

from reference_math import (MISSING, Tracked, beta_quantile, binomial_at_least, binomial_at_most,
                            binomial_point, clip, exp, normal_p_values, sqrt)

# --- intervals -----------------------------------------------------------------------------------


def agresti_coull(x, n, level):
    """Agresti & Coull (1998), The American Statistician 52, 119-126: Wald's interval about the
    midpoint of Wilson's. Here z^2/2 successes and z^2 trials are added whatever the level (not the
    rounded 2 and 4)."""
    z = level.z
    trials = n + z * z
    centre = (x + z * z * mpf("0.5")) / trials
    half = z * sqrt(centre * (1 - centre) / trials)
    return clip(centre - half, centre + half, 0, 1)


def anscombe(x, n, level):
    """Logit interval of counts shifted by one half, with Anscombe's variance: Anscombe (1956),
    Biometrika 43, 461-464; Gart & Zweifel (1967), Biometrika 54, 181-187.

    logit = ln((x + 1/2) / (f + 1/2)), variance = (n + 1)(n + 2) / (n (x + 1)(f + 1))."""
    f = n - x
    odds_against = Tracked(2 * f + 1) / (2 * x + 1)
    se = sqrt(Tracked((n + 1) * (n + 2)) / (n * (x + 1) * (f + 1)))
    return logistic_bounds(odds_against, level.z * se)


def clopper_pearson(x, n, level):
    """Clopper & Pearson (1934), Biometrika 26, 404-413, by beta quantiles."""
    f = n - x
    lower = 0 if x == 0 else beta_quantile(level.half_alpha, x, f + 1)
    upper = 1 if f == 0 else 1 - beta_quantile(level.half_alpha, f, x + 1)
    return clip(Tracked(lower), Tracked(upper), 0, 1)


def jeffreys(x, n, level):
    """Equal-tailed posterior interval under Jeffreys' prior: Brown, Cai & DasGupta (2001),
    Statistical Science 16, 101-133. No end is replaced at x = 0 or x = n, unlike there."""
    half = mpf("0.5")
    a, b = x + half, n - x + half
    return clip(Tracked(beta_quantile(level.half_alpha, a, b)),
                Tracked(1 - beta_quantile(level.half_alpha, b, a)), 0, 1)


def logit(x, n, level):
    """Wald's interval on the log odds: Brown, Cai & DasGupta (2001), section 4.1.3; undefined
    without both outcomes."""
    f = n - x
    if x == 0 or f == 0:
        return MISSING, MISSING
    return logistic_bounds(Tracked(f) / x, level.z * sqrt(Tracked(n) / (Tracked(f) * x)))


def logistic_bounds(odds_against, half):
    return clip(1 / (1 + exp(half) * odds_against), 1 / (1 + exp(-half) * odds_against), 0, 1)


def wald(x, n, level):
    """Laplace (1812), Theorie analytique des probabilites: p +- z sqrt(p (1 - p) / n)."""
    p, half = wald_parts(x, n, level)
    return clip(p - half, p + half, 0, 1)


def wald_corrected(x, n, level):
    """Wald's interval widened by 1/(2n) on either side: Newcombe (1998), Statistics in Medicine
    17, 857-872, method 2."""
    p, half = wald_parts(x, n, level)
    c = Tracked(1) / (2 * n)
    return clip(p - half - c, p + half + c, 0, 1)


def wald_parts(x, n, level):
    p = Tracked(x) / n
    return p, level.z * sqrt((1 - p) * p / n)


def wilson_score(x, n, level):
    """Wilson (1927), Journal of the American Statistical Association 22, 209-212. The product of
    the two roots is p^2 / (1 + z^2 / n), which gives the lower one without a difference."""
    _, upper = wilson_unclipped(x, n, level.z)
    p = Tracked(x) / n
    lower = p * p / (1 + level.z * level.z / n) / upper if x > 0 else Tracked(0)
    return clip(lower, upper, 0, 1)


def wilson_unclipped(x, n, z):
    """The roots of (p - theta)^2 = z^2 theta (1 - theta) / n."""
    z2 = z * z
    p = Tracked(x) / n
    centre = p + z2 / (2 * n)
    half = z * sqrt(z2 / (4 * n * n) + p * (1 - p) / n)
    denominator = 1 + z2 / n
    return (centre - half) / denominator, (centre + half) / denominator


def wilson_score_corrected(x, n, level):
    """Newcombe (1998), Statistics in Medicine 17, 857-872, method 4 (Fleiss 1981). The bounds at
    p = 0 and p = 1 are not replaced, unlike there; a negative root argument gives NaN."""
    lower, upper, _ = wilson_corrected_unclipped(x, n, level.z)
    return clip(lower, upper, 0, 1)


def wilson_corrected_unclipped(x, n, z):
    """The bounds and the two arguments of their square roots."""
    z2 = z * z
    p = Tracked(x) / n
    k = z2 - Tracked(1) / n + 4 * n * p * (1 - p)
    below, above = k + 4 * p - 2, k - 4 * p + 2
    denominator = 2 * (n + z2)
    lower = (2 * x + z2 - (1 + z * sqrt(below))) / denominator
    upper = (2 * x + z2 + (1 + z * sqrt(above))) / denominator
    return lower, upper, (below, above)


INTERVALS = {
    "AGRESTI_COULL": agresti_coull,
    "ANSCOMBE": anscombe,
    "CLOPPER_PEARSON": clopper_pearson,
    "JEFFREYS": jeffreys,
    "LOGIT": logit,
    "WALD": wald,
    "WALDCC": wald_corrected,
    "WILSON_SCORE": wilson_score,
    "WILSON_SCORECC": wilson_score_corrected,
}

# --- tests ---------------------------------------------------------------------------------------


def exact(x, n, p0):
    """Clopper & Pearson (1934): the smaller binomial tail that holds x; two-sided twice that, at
    most 1."""
    one = min(binomial_at_most(x, n, p0), binomial_at_least(x, n, p0))
    return binomial_result(one)


def mid_p(x, n, p0):
    """Lancaster (1961), Journal of the American Statistical Association 56, 223-234: the exact
    test with half the probability of the observed count."""
    one = min(binomial_at_most(x, n, p0), binomial_at_least(x, n, p0))
    return binomial_result(max(mpf(0), one - binomial_point(x, n, p0) / 2))


def binomial_result(one):
    return "none", Tracked(one), Tracked(min(mpf(1), 2 * one))


def score(x, n, p0):
    """Z with the standard error under the hypothesis: Agresti (2013), Categorical Data Analysis,
    3rd ed., section 1.4."""
    return normal_result(deviation(x, n, p0) / null_deviation(n, p0))


def score_corrected(x, n, p0):
    """Score test with the count moved 1/2 towards its expectation, and Z = 0 when that passes it:
    Fleiss, Levin & Paik (2003), Statistical Methods for Rates and Proportions, section 2.4."""
    return normal_result(corrected(x, n, p0, null_deviation(n, p0)))


def wald_test(x, n, p0):
    """Z with the standard error at the estimate; undefined without both outcomes."""
    if x == 0 or x == n:
        return MISSING, MISSING, MISSING
    return normal_result(deviation(x, n, p0) / observed_deviation(x, n))


def wald_test_corrected(x, n, p0):
    """Wald test with the same correction as the corrected score test."""
    if x == 0 or x == n:
        return MISSING, MISSING, MISSING
    return normal_result(corrected(x, n, p0, observed_deviation(x, n)))


def null_deviation(n, p0):
    p0 = Tracked(p0)
    return sqrt((1 - p0) * (n * p0))


def observed_deviation(x, n):
    p = Tracked(x) / n
    return sqrt((1 - p) * x)


def deviation(x, n, p0):
    """x - n p0 for the double p0, but 0 where it is 0 for the decimal that p0 stands for."""
    if x == n * Fraction(repr(p0)):
        return Tracked(0)
    return x - n * Tracked(p0)


def corrected(x, n, p0, error):
    """The comparison with 1/2 is that of the decimal, too."""
    difference = x - n * Fraction(repr(p0))
    if abs(difference) <= Fraction(1, 2):
        return Tracked(0)
    half = mpf("0.5") if difference > 0 else mpf("-0.5")
    return (x - half - n * Tracked(p0)) / error


def normal_result(z):
    return (z, *normal_p_values(z))


TESTS = {
    "EXACT": exact,
    "MIDP": mid_p,
    "SCORE": score,
    "SCORECC": score_corrected,
    "WALD": wald_test,
    "WALDCC": wald_test_corrected,
}
