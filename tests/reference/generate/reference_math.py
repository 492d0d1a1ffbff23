"""High-precision arithmetic shared by the generators of reference values.

Everything is computed with 60 decimal digits. A `Tracked` number carries, beside its value, the
first-order bound of the error that an implementation in IEEE double arithmetic makes up to that
point (a running error analysis, Higham 2002, "Accuracy and Stability of Numerical Algorithms",
section 3.3), in units of 2^-53. From it the generators tell the rows where a relative tolerance
would ask more of a double than it can hold.
"""

import sys
from functools import cached_property, lru_cache
from math import lgamma, log

import mpmath
from mpmath import mp, mpf
from mpmath.calculus.quadrature import GaussLegendre

mp.dps = 60
UNIT = mpf(2) ** -53
SMALLEST_DOUBLE = mpf(2) ** -1075  # anything below is 0 in a double
CANCELLED = mpf(10) ** -40          # what is left of a difference that cancels exactly, over its terms
EXPONENT_TO_DROP = 145             # exp(-145) lies below the 60 digits


def version_line():
    return f"mpmath {mpmath.__version__}, {mp.dps} digits"


# --- numbers that know how well a double can hold them -------------------------------------------


def rounding(v):
    """One rounding unit of v; none when v is itself a double."""
    if mpmath.isnan(v) or mpmath.isinf(v):
        return mpf(0)
    return mpf(0) if mpf(float(v)) == v else abs(v)


class Tracked:
    __slots__ = ("v", "e")

    def __init__(self, v, e=0):
        self.v = mpf(v)
        self.e = mpf(e)
        if self.v != 0 and abs(self.v) < CANCELLED * self.e:
            self.v = mpf(0)

    @staticmethod
    def of(other):
        return other if isinstance(other, Tracked) else Tracked(other)

    @staticmethod
    def rounded(v, propagated):
        return Tracked(v, propagated + rounding(v))

    def __add__(self, other):
        o = Tracked.of(other)
        return Tracked.rounded(self.v + o.v, self.e + o.e)

    def __sub__(self, other):
        o = Tracked.of(other)
        return Tracked.rounded(self.v - o.v, self.e + o.e)

    def __mul__(self, other):
        o = Tracked.of(other)
        return Tracked.rounded(self.v * o.v, abs(self.v) * o.e + abs(o.v) * self.e)

    def __truediv__(self, other):
        o = Tracked.of(other)
        r = self.v / o.v
        return Tracked.rounded(r, (self.e + abs(r) * o.e) / abs(o.v))

    def __neg__(self):
        return Tracked(-self.v, self.e)

    def __abs__(self):
        return Tracked(abs(self.v), self.e)

    def __radd__(self, other):
        return Tracked.of(other) + self

    def __rsub__(self, other):
        return Tracked.of(other) - self

    def __rmul__(self, other):
        return Tracked.of(other) * self

    def __rtruediv__(self, other):
        return Tracked.of(other) / self

    def is_nan(self):
        return mpmath.isnan(self.v)


def sqrt(x):
    """The square root; NaN for a negative argument."""
    x = Tracked.of(x)
    if x.is_nan() or x.v < 0:
        return Tracked(mp.nan)
    root = mp.sqrt(x.v)
    if x.e == 0:
        return Tracked.rounded(root, 0)
    bound = mp.sqrt(x.e / UNIT)
    return Tracked.rounded(root, min(bound, x.e / (2 * root)) if root else bound)


def exp(x):
    r = mp.exp(x.v)
    return Tracked(r, r * x.e + 2 * r)


def sign_is_certain(x):
    """Whether double arithmetic finds the same sign (or the same zero) of x."""
    return x.e == 0 or abs(x.v) > 64 * UNIT * x.e


# --- the confidence level as a double carries it -------------------------------------------------


class Level:
    """A level in percent, held as a double. alpha, alpha/2 and level/200 + 0.5 are rounded to doubles
    step by step; what follows from them is exact."""

    def __init__(self, text):
        percent = float(text)
        alpha = 1.0 - percent / 100.0
        self.text = text
        self.percent = percent
        self.half_alpha = mpf(alpha * 0.5)

    @cached_property
    def z(self):
        quantile = standard_normal_quantile(mpf(self.percent / 200.0 + 0.5))
        return Tracked(quantile, 9 * abs(quantile))  # a double quantile is good to 1e-15


# --- the normal distribution ---------------------------------------------------------------------


def standard_normal_quantile(p):
    return mp.sqrt(2) * mp.erfinv(2 * p - 1)


def standard_normal_cdf(z):
    return mp.erfc(-z / mp.sqrt(2)) / 2


def standard_normal_density(z):
    return mp.exp(-z * z / 2) / mp.sqrt(2 * mp.pi)


def normal_p_values(z):
    """One- and two-sided p of a normal statistic: the tail beyond |Z|, and twice that."""
    tail = standard_normal_cdf(-abs(z.v))
    error = standard_normal_density(z.v) * z.e + 2 * tail
    return Tracked(tail, error), Tracked(2 * tail, 2 * error)


# --- the beta and the binomial distribution ------------------------------------------------------


def log_beta(a, b):
    return mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)


def series_length(a, b, x):
    """Terms after which the series of `beta_series` has converged, from double log-gammas."""
    a, b, logx = float(a), float(b), float(mp.log(x))
    base = lgamma(a + b) - lgamma(a + 1)
    k = 16
    while k < 40000:
        if lgamma(a + b + k) - lgamma(a + 1 + k) - base + k * logx < -EXPONENT_TO_DROP - 10:
            return k
        k *= 2
    return k


def beta_series(a, b, x, y):
    """I_x(a, b), y = 1 - x, by the series of positive terms (DLMF 8.17.8 after 8.17.4)."""
    term = total = mpf(1)
    k = 0
    while True:
        ratio = (a + b + k) * x / (a + 1 + k)
        term *= ratio
        total += term
        k += 1
        if ratio < 1 and term < total * (1 - ratio) * mpf(10) ** (-mp.dps):
            break
    return total * mp.exp(a * mp.log(x) + b * mp.log(y) - log_beta(a, b)) / a


@lru_cache(maxsize=None)
def gauss_legendre(precision):
    return [(+node, +weight) for node, weight in GaussLegendre(mp).calc_nodes(5, precision)]


def beta_quadrature(a, b, x, y):
    """The smaller of I_x(a, b) and 1 - I_x(a, b), and whether it is the lower one.

    In w = log(t / (1 - t)) the integrand t^a (1 - t)^b is log-concave with its top at t = a/(a+b);
    it is integrated from x away from the top by Gauss-Legendre panels, each short against both the
    width of the top and the slope at the panel's near end.
    """
    lower = x * (a + b) <= a
    if not lower:
        a, b, x, y = b, a, y, x
    width = mp.sqrt((a + b) / (a * b))
    w = mp.log(x) - mp.log(y)
    top = a * mp.log(x) + b * mp.log(y)

    def log_density(at):
        grown = mp.exp(at)
        return a * (at - mp.log1p(grown)) - b * mp.log1p(grown) - top

    total = mpf(0)
    while True:
        grown = mp.exp(w)
        slope = a - (a + b) * grown / (1 + grown)
        half = 2 * width
        if slope > 0:
            half = min(half, 6 / slope)
        middle = w - half
        total += half * mp.fsum(
            weight * mp.exp(log_density(middle + half * node))
            for node, weight in gauss_legendre(mp.prec))
        w -= 2 * half
        if log_density(w) < -EXPONENT_TO_DROP:
            break
    return total * mp.exp(top - log_beta(a, b)), lower


def beta_tails(a, b, x, y):
    """I_x(a, b) and its complement, each with full relative accuracy (y = 1 - x, given apart so
    that it is exact too)."""
    a, b, x, y = mpf(a), mpf(b), mpf(x), mpf(y)
    affordable = 20000
    below_mean = x * (a + b) <= a
    near, far = (a, b, x, y), (b, a, y, x)  # `near`: the tail that does not hold the mean
    if not below_mean:
        near, far = far, near
    if series_length(*near[:3]) <= affordable:
        small = beta_series(*near)
    else:
        large = beta_series(*far) if series_length(*far[:3]) <= affordable else None
        if large is not None and large < 1 - mpf(10) ** -20:
            small = 1 - large
        else:
            small, _ = beta_quadrature(*near)
    return (small, 1 - small) if below_mean else (1 - small, small)


def beta_quantile(q, a, b):
    """The x with I_x(a, b) = q: Newton's method on the logarithm of the nearer tail against
    w = log(x / (1 - x)), in which the distribution function is log-concave."""
    q, a, b = mpf(q), mpf(a), mpf(b)
    if q > mpf(1) / 2:
        return 1 - lower_quantile(1 - q, b, a)
    return lower_quantile(q, a, b)


def lower_quantile(q, a, b):
    target = mp.log(q)
    w = mp.log(a) - mp.log(b)
    constant = log_beta(a, b)
    for digits, tolerance in ((40, mpf("1e-12")), (mp.dps, mpf("1e-36"))):
        with mp.workdps(digits):
            w = +w
            for _ in range(100):
                y = 1 / (1 + mp.exp(w))
                x = mp.exp(w) * y
                tail, _ = beta_tails(a, b, x, y)
                density = mp.exp(a * mp.log(x) + b * mp.log(y) - constant)
                step = (mp.log(tail) - target) * tail / density
                w -= step
                if abs(step) < tolerance * (1 + abs(w)):
                    break
            else:
                raise ArithmeticError("the beta quantile does not converge")
    return mp.exp(w) / (1 + mp.exp(w))


def binomial_point(k, n, p):
    """P(X = k)."""
    if k < 0 or k > n:
        return mpf(0)
    p = mpf(p)
    log_choose = mp.loggamma(n + 1) - mp.loggamma(k + 1) - mp.loggamma(n - k + 1)
    return mp.exp(log_choose + k * mp.log(p) + (n - k) * mp.log(1 - p))


def binomial_at_most(k, n, p):
    """P(X <= k) = I_{1-p}(n - k, k + 1)."""
    if k < 0:
        return mpf(0)
    if k >= n:
        return mpf(1)
    p = mpf(p)
    return beta_tails(n - k, k + 1, 1 - p, p)[0]


def binomial_at_least(k, n, p):
    """P(X >= k) = I_p(k, n - k + 1)."""
    if k <= 0:
        return mpf(1)
    if k > n:
        return mpf(0)
    p = mpf(p)
    return beta_tails(k, n - k + 1, p, 1 - p)[0]


# --- writing -------------------------------------------------------------------------------------

MISSING = "missing"
DIGITS = 25


def number(v):
    """25 significant digits, `nan`, or 0 for what no double can hold."""
    v = v.v if isinstance(v, Tracked) else mpf(v)
    if mpmath.isnan(v):
        return "nan"
    if abs(v) < SMALLEST_DOUBLE:
        return "0"
    whole = mpmath.nint(v)
    if abs(v - whole) < mpf(10) ** -40 * abs(v) and abs(v) < 10 ** 16:
        return str(int(whole))
    return mp.nstr(v, DIGITS, min_fixed=-5, max_fixed=17)


def cell(value):
    return value if isinstance(value, str) else number(value)


def in_grey_zone(value):
    """Whether a probability lies where doubles lose digits before they reach 0."""
    return not isinstance(value, str) and 0 < abs(value.v) < mpf(10) ** -304 \
        and abs(value.v) > SMALLEST_DOUBLE / 4


def clip(lower, upper, least, most):
    """Replaces a bound beyond its limit by the limit; a NaN or missing bound stays."""
    if isinstance(lower, Tracked) and not lower.is_nan() and lower.v < least:
        lower = Tracked(least, lower.e if sign_uncertain_at(lower, least) else 0)
    if isinstance(upper, Tracked) and not upper.is_nan() and upper.v > most:
        upper = Tracked(most, upper.e if sign_uncertain_at(upper, most) else 0)
    return lower, upper


def sign_uncertain_at(bound, limit):
    return abs(bound.v - limit) <= 64 * UNIT * bound.e


TOLERANCE_NOTE = "# use:    to be met within 1e-12 of each value, 0 exactly."


def header(what, origin, notes, columns):
    lines = [f"# what:   {what}", f"# from:   {origin}, {version_line()}"]
    lines += notes
    return "\n".join(lines) + f"\n# {columns}\n"


def emit(text):
    """Writes to the file named on the command line, else to standard output."""
    if len(sys.argv) > 1:
        with open(sys.argv[1], "w", encoding="utf-8") as out:
            out.write(text)
    else:
        sys.stdout.write(text)
