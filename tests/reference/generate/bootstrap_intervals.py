"""Writes what bootstrap samples tell about a statistic, from the publications' formulas.

Efron (1987), J. Amer. Statist. Assoc. 82:171-185; Hyndman and Fan (1996), The American Statistician
50:361-365, type 6; 50 digits.
"""

import random

from mpmath import erfc, erfinv, floor, mp, mpf, nstr, sqrt

mp.dps = 50


def phi(z):
    return erfc(-z / sqrt(2)) / 2


def phi_inverse(p):
    return sqrt(2) * erfinv(2 * p - 1)


def quantile(ascending, p):
    h = p * (len(ascending) + 1)
    if h <= 1:
        return ascending[0]
    if h >= len(ascending):
        return ascending[-1]
    k = int(floor(h))
    return ascending[k - 1] + (h - k) * (ascending[k] - ascending[k - 1])


def summary(x, n, samples, level):
    statistic = mpf(x / n)
    ascending = sorted(map(mpf, samples))
    count = len(ascending)
    mean = sum(ascending) / count
    error = sqrt(sum((s - mean) ** 2 for s in ascending) / (count - 1))
    # Leaving out a success, and leaving out a failure, one case at a time.
    left_out = [mpf((x - 1) / (n - 1))] * x + [mpf(x / (n - 1))] * (n - x)
    center = sum(left_out) / n
    d = [center - value for value in left_out]
    a = sum(v**3 for v in d) / (6 * sum(v**2 for v in d) ** mpf("1.5"))
    below = sum(1 for s in ascending if s < statistic)
    equal = sum(1 for s in ascending if s == statistic)
    z0 = phi_inverse((below + mpf(equal) / 2) / count)
    tail = mpf((1 - level / 100) / 2)
    ends = []
    for z in (phi_inverse(tail), -phi_inverse(tail)):
        ends.append(quantile(ascending, phi(z0 + (z0 + z) / (1 - a * (z0 + z)))))
    return [mean - statistic, error, quantile(ascending, tail), quantile(ascending, 1 - tail), *ends]


def main():
    generator = random.Random(5)
    print("# what:   bootstrap bias, standard error, percentile and BCa bounds of a proportion x/n")
    print("# from:   generate/bootstrap_intervals.py, mpmath 1.3.0, 50 digits")
    print("# input:  samples are successes of n, divided as doubles; level in percent")
    print("# x,n,level,samples,bias,standard_error,lower,upper,bca_lower,bca_upper")
    for x, n in ((7, 25), (1, 12), (48, 50), (250, 1000)):
        for count in (19, 200):
            successes = [sum(generator.random() < x / n for _ in range(n)) for _ in range(count)]
            for level in (50.0, 90.0, 95.0, 99.0):
                numbers = summary(x, n, [s / n for s in successes], level)
                print(f"{x},{n},{level:g},{' '.join(map(str, successes))},"
                      + ",".join(nstr(value, 20) for value in numbers))


if __name__ == "__main__":
    main()
