"""Writes the reference values of the beta quantile."""

from mpmath import exp, mp, mpf

from distributions_beta import check, logit_of_lower_tail
from distributions_output import digits, exact, write

LEVELS = [0, 1e-6, 50, 80, 95, 99.9999, 99.99999999999999]
TRIALS = [
    (0, 1), (1, 1), (0, 10), (3, 10), (10, 10), (7, 1000), (500, 1000), (2100, 4000), (10**6 - 3, 10**6),
    (123456, 10**6), (10**9 // 3, 10**9), (0, 10**12), (10**12 // 2, 10**12), (5, 10**15), (10**6, 10**15),
    (10**15 // 2, 10**15), (10**15 - 1, 10**15), (10**15, 10**15),
]
OTHERS = [
    (0.001, 0.001), (0.001, 5), (0.5, 0.5), (0.25, 1000), (1, 1), (0.01, 2.5), (999.5, 1000.5), (1000, 3),
    (2.7, 1e7), (1e5, 1e-2),
]
PROBABILITIES = [1e-300, 1e-12, 0.01, 0.3, 0.5, 0.9, 1 - 2.0**-40, 1 - 2.0**-53]


def logit(q, a, b):
    return logit_of_lower_tail(q, a, b) if q <= 0.5 else -logit_of_lower_tail(1 - q, b, a)


def quantile(q, a, b):
    q = mpf(q)
    if q == 1:  # 1 - alpha / 2 in doubles, for the level next to 100
        return mpf(1)
    return 1 / (1 + exp(-logit(q, a, b)))


def upper_quantile(q, a, b):
    q = mpf(q)
    if q == 1:
        return mpf(0)
    return 1 / (1 + exp(logit(q, b, a)))


def cases():
    for x, n in TRIALS:
        for a, b in ((x, n - x + 1), (x + 1, n - x), (x + 0.5, n - x + 0.5)):
            if a <= 0 or b <= 0:
                continue
            for level in LEVELS if n < 10**9 else LEVELS[::2]:
                half = (1 - level / 100) / 2
                yield half, a, b
                if 1 - half != half:
                    yield 1 - half, a, b
    for a, b in OTHERS:
        for q in PROBABILITIES:
            yield q, a, b


def main():
    check()
    mp.dps = 50
    rows = [[exact(q), exact(a), exact(b), digits(quantile(q, a, b)),
             digits(upper_quantile(q, a, b))] for q, a, b in cases()]
    write(
        "beta_quantile.csv",
        "quantiles of the beta distribution with shapes a, b: the places that it does not exceed, and "
        "that it exceeds, with probability q",
        [
            "input:   the doubles that the texts stand for, taken exactly; the shapes of exact and",
            "         Jeffreys intervals at levels 0 to 99.99999999999999 percent, and some others",
        ],
        ["q", "a", "b", "quantile", "upper"],
        rows,
    )


if __name__ == "__main__":
    main()
