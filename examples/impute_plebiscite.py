"""Writes plebiscite.csv: the counts of Rubin, Stern & Vehovar (1995) and five imputations of them.

Answers "don't know" are taken for missing at random. Each imputation is the end of a chain of data
augmentation of its own (Schafer 1997, Analysis of Incomplete Multivariate Data, section 7.2.2):
cells are drawn given their probabilities, probabilities given the cells, with the prior of Jeffreys.
"""

import random

# secession, attendance, independence: 1 yes, 0 no, None don't know
COUNTS = {
    (1, 1): (1191, 8, 21), (1, 0): (8, 0, 4), (1, None): (107, 3, 9),
    (0, 1): (158, 68, 29), (0, 0): (7, 14, 3), (0, None): (18, 43, 31),
    (None, 1): (90, 2, 109), (None, 0): (1, 2, 25), (None, None): (19, 8, 96),
}
CELLS = [(s, a, i) for s in (1, 0) for a in (1, 0) for i in (1, 0)]
OBSERVED = {(s, a, i): n for (s, a), row in COUNTS.items() for i, n in zip((1, 0, None), row) if n}


def fits(cell, answers):
    return all(answer is None or answer == value for answer, value in zip(answers, cell))


def impute(generator, steps=300):
    weights = {cell: 1.0 for cell in CELLS}
    for _ in range(steps):
        drawn = dict.fromkeys(CELLS, 0)
        for answers, n in OBSERVED.items():
            cells = [cell for cell in CELLS if fits(cell, answers)]
            for cell in generator.choices(cells, [weights[cell] for cell in cells], k=n):
                drawn[cell] += 1
        weights = {cell: generator.gammavariate(n + 0.5, 1) for cell, n in drawn.items()}
    return drawn


def main():
    generator = random.Random(1990)
    assert sum(OBSERVED.values()) == 2074
    with open("plebiscite.csv", "w", encoding="ascii", newline="") as file:
        file.write("Imputation_,secession,attendance,independence,freq\n")
        for number in range(6):
            cells = OBSERVED if number == 0 else impute(generator)
            for cell, n in cells.items():
                if n:
                    values = ["" if value is None else str(value) for value in cell]
                    file.write(",".join([str(number), *values, str(n)]) + "\n")


if __name__ == "__main__":
    main()
