"""Writes pooled estimates of multiply imputed data, from the publications' formulas, 50 digits.

Rubin (1987); Barnard and Rubin (1999), Biometrika 86:948-955; Lott and Reiter (2020), The American
Statistician 74:109-115.
"""

from mpmath import betainc, mp, mpf, nstr, sqrt

mp.dps = 50


def t_quantile(df, level):
    """The t that |T| exceeds with probability 1 - level/100."""
    tail = 1 - mpf(level) / 100

    def excess(t):
        return betainc(df / 2, mpf(1) / 2, 0, df / (df + t * t), regularized=True) - tail

    low, high = mpf(0), mpf(1)
    while excess(high) > 0:
        high *= 2
    for _ in range(120):
        middle = (low + high) / 2
        low, high = (middle, high) if excess(middle) > 0 else (low, middle)
    return low


def pool(estimates, variances, complete_df, level):
    m = len(estimates)
    q, w = sum(estimates) / m, sum(variances) / m
    b = sum((e - q) ** 2 for e in estimates) / (m - 1)
    t = w + (1 + mpf(1) / m) * b
    r = (1 + mpf(1) / m) * b / w
    share = (1 + mpf(1) / m) * b / t
    observed = (complete_df + 1) / (complete_df + 3) * complete_df * (1 - share)
    df = 1 / (1 / observed + share**2 / (m - 1))
    fmi = (r + 2 / (df + 3)) / (r + 1)
    critical = t_quantile(df, level)
    half = critical * sqrt(t)
    return [q, w, b, t, sqrt(t), df, q - half, q + half, r, fmi, 1 / (1 + fmi / m)], critical


def wilson(q, r, n, t):
    """The roots of (q - p)^2 = t^2 (1 + r) p (1 - p) / n."""
    c = t**2 * (1 + r) / n
    root = sqrt((2 * q + c) ** 2 - 4 * (1 + c) * q**2)
    return [(2 * q + c - root) / (2 * (1 + c)), (2 * q + c + root) / (2 * (1 + c))]


SETS = [
    (25, [10, 11, 9, 10, 12]),
    (200, [62, 62]),
    (1000, [301, 288, 310, 295, 300, 305, 299, 290, 307, 296]),
    (40, [1, 2, 1]),
    (8, [4, 5, 3, 6]),
    (5000, [4990, 4993, 4991, 4988]),
]


def main():
    print("# what:   pooled proportions of imputations with x of n successes, variance p (1 - p) / n")
    print("# from:   generate/pooling.py, mpmath 1.3.0, 50 digits")
    print("# input:  x/n and its variance are rounded to doubles, all after that is exact; n - 1")
    print("#         complete-data degrees of freedom; level in percent")
    print("# n,successes,level,estimate,within,between,total,standard_error,df,lower,upper,"
          "relative_increase,missing_information,efficiency,wilson_lower,wilson_upper")
    for n, successes in SETS:
        for level in (80, 95, 99.9):
            level = mpf(float(level))
            estimates = [mpf(x / n) for x in successes]
            variances = [mpf((x / n) * (1 - x / n) / n) for x in successes]
            numbers, t = pool(estimates, variances, mpf(n - 1), level)
            numbers += wilson(numbers[0], numbers[8], n, t)
            print(f"{n},{' '.join(map(str, successes))},{nstr(level, 17)},"
                  + ",".join(nstr(value, 20) for value in numbers))


if __name__ == "__main__":
    main()
