"""Writes draws of the bootstrap as its documentation describes them, for seeds, groups and samples.

Made without the program: Philox4x64-10 in whole numbers, checked against the known answers that
come with the paper's code; logarithms and exponentials from the standard library.
"""

import math

MASK = 2**64 - 1


def philox(counter, key):
    c, k = list(counter), list(key)
    for _ in range(10):
        p0, p1 = 0xD2E7470EE14C6C93 * c[0], 0xCA5A826395121157 * c[2]
        c = [(p1 >> 64) ^ c[1] ^ k[0], p1 & MASK, (p0 >> 64) ^ c[3] ^ k[1], p0 & MASK]
        k = [(k[0] + 0x9E3779B97F4A7C15) & MASK, (k[1] + 0xBB67AE8584CAA73B) & MASK]
    return c


assert philox([0] * 4, [0] * 2) == [
    0x16554D9ECA36314C, 0xDB20FE9D672D0FDC, 0xD7E772CEE186176B, 0x7E68B68AEC7BA23B]
assert philox([MASK] * 4, [MASK] * 2) == [
    0x87B092C3013FE90B, 0x438C3C67BE8D0224, 0x9CC7D7C69CD777B6, 0xA09CAEBF594F0BA0]


class Stream:
    def __init__(self, seed, group, sample):
        self.seed, self.group, self.sample = seed, group, sample
        self.block, self.numbers = 0, []

    def uniform(self):
        if not self.numbers:
            self.numbers = philox([self.block, self.sample, self.group, 0], [self.seed, 0])
            self.block += 1
        return ((self.numbers.pop(0) >> 12) + 0.5) / 2**52


def stirling_tail(k):
    """ln k! - (ln sqrt(2 pi) + (k + 1/2) ln(k + 1) - (k + 1))."""
    if k < 10:
        return (math.lgamma(k + 1) - 0.5 * math.log(2 * math.pi)
                - (k + 0.5) * math.log(k + 1) + k + 1)
    s = (k + 1) ** 2
    return (1 / 12 - (1 / 360 - 1 / 1260 / s) / s) / (k + 1)


def binomial(n, p, stream):
    if n <= 0 or p <= 0:
        return 0
    if p >= 1:
        return n
    if p > 0.5:
        return n - binomial(n, 1 - p, stream)
    if n * p < 10:
        u, mass, k = stream.uniform(), math.exp(n * math.log1p(-p)), 0
        while u > mass and k < n:
            u -= mass
            k += 1
            mass *= p / (1 - p) * ((n - k + 1) / k)
        return k
    spq = math.sqrt(n * p * (1 - p))
    b = 1.15 + 2.53 * spq
    a = -0.0873 + 0.0248 * b + 0.01 * p
    c, vr, alpha, r = n * p + 0.5, 0.92 - 4.2 / b, (2.83 + 5.1 / b) * spq, p / (1 - p)
    m = math.floor((n + 1) * p)
    while True:
        u, v = stream.uniform() - 0.5, stream.uniform()
        us = 0.5 - abs(u)
        k = math.floor((2 * a / us + b) * u + c)
        if us >= 0.07 and v <= vr:
            return k
        if k < 0 or k > n:
            continue
        left = math.log(v * alpha / (a / (us * us) + b))
        right = ((m + 0.5) * math.log((m + 1) / (r * (n - m + 1)))
                 + (n + 1) * math.log((n - m + 1) / (n - k + 1))
                 + (k + 0.5) * math.log(r * (n - k + 1) / (k + 1))
                 + stirling_tail(m) + stirling_tail(n - m) - stirling_tail(k) - stirling_tail(n - k))
        if left <= right:
            return k


def multinomial(counts, stream):
    cases = left = sum(counts)
    drawn = []
    for count in counts:
        k = 0
        if left > 0:
            k = left if count == cases else binomial(left, count / cases, stream)
        drawn.append(k)
        left -= k
        cases -= count
    return drawn


COUNTS = [
    [1, 1, 1, 1, 1, 1, 1],
    [5, 0, 3, 12],
    [104, 10933, 189, 10845],
    [3_000_000, 1, 6_999_998, 1],
    [10**12, 2 * 10**12, 7, 10**9],
]


def main():
    print("# what:   cases drawn with replacement, as the guide describes the draw")
    print("# from:   generate/resampling_draws.py, Python 3, whole numbers and its math library")
    print("# seed,group,sample,counts,drawn")
    for seed in (1, 20261121, MASK):
        for group in (0, 3):
            for sample in range(1, 31):
                for counts in COUNTS:
                    drawn = multinomial(counts, Stream(seed, group, sample))
                    assert sum(drawn) == sum(counts)
                    print(f"{seed},{group},{sample},{' '.join(map(str, counts))},"
                          f"{' '.join(map(str, drawn))}")


if __name__ == "__main__":
    main()
