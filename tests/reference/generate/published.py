"""Writes the published worked examples in machine-readable form, and beside those from which this
system departs on purpose the value that its own definition gives."""

import sys

from published_values import definition_values
from reference_math import cell, emit, header

FLL = ("Fagerland; Lydersen & Laake (2017): Statistical Analysis of Contingency Tables; "
       "Chapman & Hall/CRC; worked examples")
RATESCI = "published examples collected by the ratesci test suite"
WCC = "the bounds at p = 0 and p = 1 are not replaced by 0 and 1"
AC = "adds z^2/2 successes and z^2 trials for every level; the publication adds 2 and 4"
PWCC = "widens Wald's interval by 1/N; the publication moves the difference 1/N towards 0 inside the variance"
PHI = "phi is left uncorrected when reducing its numerator by N/2 would make it negative; the publication takes 0"

# design, method, data, level or test value, printed values, departure, citation
EXAMPLES = [
    ("one_sample", "CLOPPER_PEARSON", "13/16", "95", "0.5435 0.9595", "", FLL),
    ("one_sample", "JEFFREYS", "13/16", "95", "0.5792 0.9442", "", FLL),
    ("one_sample", "WILSON_SCORE", "13/16", "95", "0.5699 0.9341", "", FLL),
    ("one_sample", "WILSON_SCORECC", "13/16", "95", "0.5369 0.9503", "", FLL),
    ("one_sample", "WALDCC", "13/16", "90", "0.6207 1.0000", "", FLL),
    ("one_sample", "CLOPPER_PEARSON", "0/1", "95", "0.0000 0.9750", "", FLL),
    ("one_sample", "CLOPPER_PEARSON", "1/1", "95", "0.0250 1.0000", "", FLL),
    ("one_sample", "CLOPPER_PEARSON", "0/10", "95", "0.0000 0.3085", "", FLL),
    ("one_sample", "CLOPPER_PEARSON", "10/10", "95", "0.6915 1.0000", "", FLL),
    ("one_sample", "WALD", "1/2", "95", "0.0000 1.0000", "", FLL),
    ("one_sample", "CLOPPER_PEARSON", "15/148", "95", "0.0578 0.1617", "", RATESCI),
    ("one_sample", "WILSON_SCORE", "15/148", "95", "0.0624 0.1605", "", RATESCI),
    ("one_sample", "WILSON_SCORECC", "15/148", "95", "0.0598 0.1644", "", RATESCI),
    ("one_sample", "CLOPPER_PEARSON", "0/20", "95", "0 0.1684", "", RATESCI),
    ("one_sample", "WILSON_SCORE", "0/20", "95", "0.0000 0.1611", "", RATESCI),
    ("one_sample", "WILSON_SCORECC", "0/20", "95", "0 0.2005", WCC, RATESCI),
    ("one_sample", "CLOPPER_PEARSON", "1/29", "95", "0.0009 0.1776", "", RATESCI),
    ("one_sample", "WILSON_SCORE", "1/29", "95", "0.0061 0.1718", "", RATESCI),
    ("one_sample", "WILSON_SCORECC", "1/29", "95", "0.0018 0.1963", "", RATESCI),
    ("one_sample", "JEFFREYS", "0/20", "95", "0.00 0.117", "",
     RATESCI + ": cf. Brown; Cai & DasGupta (2001)"),
    ("one_sample", "JEFFREYS", "1/29", "95", "0.004 0.150", "",
     RATESCI + ": cf. Brown; Cai & DasGupta (2001)"),
    ("one_sample", "AGRESTI_COULL", "19/20", "85", "0.7778 0.9722", AC, FLL),
    ("one_sample", "EXACT", "13/16", "0.5", "two_sided=0.02127", "", FLL),
    ("one_sample", "MIDP", "13/16", "0.5", "two_sided=0.01273", "", FLL),
    ("one_sample", "SCORE", "13/16", "0.5", "z=2.500 two_sided=0.01242", "", FLL),
    ("one_sample", "SCORECC", "13/16", "0.5", "z=2.250 two_sided=0.02445", "", FLL),
    ("one_sample", "WALD", "13/16", "0.1", "z=7.302", "", FLL),
    ("one_sample", "WALDCC", "13/16", "0.1", "z=6.982", "", FLL),
    ("paired", "WALD", "59/6/16/80", "95", "-0.1184 -0.0058", "", FLL),
    ("paired", "AGRESTI_MIN", "59/6/16/80", "95", "-0.1182 -0.0045", "", FLL),
    ("paired", "BONETT_PRICE", "59/6/16/80", "95", "-0.1195 -0.0032", "", FLL),
    ("paired", "NEWCOMBE", "59/6/16/80", "95", "-0.1186 -0.0046", "", FLL),
    ("paired", "WALDCC", "59/6/16/80", "95", "-0.1186 -0.0057", PWCC, FLL),
    ("paired", "WALD", "1/1/7/12", "95", "-0.520 -0.052", "",
     RATESCI + ": Fagerland; Lydersen & Laake (2014)"),
    ("paired", "BONETT_PRICE", "1/1/7/12", "95", "-0.508 -0.013", "",
     RATESCI + ": Fagerland; Lydersen & Laake (2014)"),
    ("paired", "NEWCOMBE", "1/1/7/12", "95", "-0.507 -0.026", PHI,
     RATESCI + ": Fagerland; Lydersen & Laake (2014)"),
    ("paired", "WALDCC", "1/1/7/12", "95", "-0.529 -0.042", PWCC,
     RATESCI + ": Fagerland; Lydersen & Laake (2014)"),
    ("paired", "NEWCOMBE", "1/0/0/1", "95", "-0.5734 0.5734", "", FLL),
    ("paired", "NEWCOMBE", "20/12/2/16", "95", "0.0562 0.3292", "",
     RATESCI + ": Newcombe (1998c) method 10"),
    ("paired", "NEWCOMBE", "8/3/1/2", "95", "-0.1574 0.4136", "", RATESCI + ": Tang (2010)"),
    ("paired", "NEWCOMBE", "7/25/2/68", "95", "0.133 0.318", "", RATESCI + ": Chang (2024)"),
    ("paired", "MCNEMAR", "59/6/16/80", "", "z=-2.132 two_sided=0.033006", "", FLL),
    ("paired", "MCNEMARCC", "59/6/16/80", "", "abs_z=1.919 two_sided=0.055009", "", FLL),
    ("paired", "EXACT", "59/6/16/80", "", "two_sided=0.052479", "", FLL),
    ("paired", "MIDP", "59/6/16/80", "", "two_sided=0.034690", "", FLL),
    ("independent", "NEWCOMBE", "5/56/0/29", "95", "-0.0381 0.1926", "",
     RATESCI + ": Newcombe (1998b)"),
    ("independent", "WALDCC", "7/34/1/34", "95", "-0.0002 0.3532", "", FLL),
    ("independent", "WALD", "0/16/15/72", "", "z=-4.353", "", FLL + ": Z-unpooled"),
    ("independent", "WALDH0CC", "0/16/15/72", "", "z_squared=2.680 two_sided=0.1016", "",
     FLL + ": Yates chi-squared"),
    ("independent", "WALDH0", "3/4/1/4", "", "z_squared=2.000 two_sided=0.15730", "",
     FLL + ": Pearson chi-squared"),
    ("independent", "WALDH0CC", "3/4/1/4", "", "z_squared=0.500 two_sided=0.47950", "",
     FLL + ": Yates chi-squared"),
]

NOTES = [
    "# data:   one_sample x/n; paired n11/n10/n01/n00; independent x1/n1/x2/n2.",
    "# given:  the level in percent of an interval; the test value of a one-sample test.",
    "# values: quantity says what was printed: lower, upper, z, abs_z, z_squared or two_sided.",
    "#         decimals counts the printed ones; `exact` is a printed whole number, which stands for",
    "#         itself. agrees: yes = the definition rounds to the printed value; no = it departs on",
    "#         purpose, `defined` is what it gives and `reason` says why (the other bound of such an",
    "#         interval may still agree).",
]


def decimals(printed):
    return str(len(printed.split(".")[1])) if "." in printed else "exact"


def rows_of(example):
    design, method, data, given, printed, departure, citation = example
    if "=" in printed:
        kind, items = "test", [item.split("=") for item in printed.split()]
    else:
        kind, items = "interval", list(zip(("lower", "upper"), printed.split()))
    values = definition_values(design, kind, method, data, given)
    for quantity, text in items:
        yield ",".join([design, kind, method, data, given, quantity, text, decimals(text),
                        "no" if departure else "yes",
                        cell(values[quantity]) if departure else "", departure, citation])


def main():
    rows = [row for example in EXAMPLES for row in rows_of(example)]
    emit(header("published worked examples of intervals and tests",
                "the publications cited; column `defined`: generate/published.py", NOTES,
                "design,kind,method,data,given,quantity,printed,decimals,agrees,defined,reason,citation")
         + "\n".join(rows) + "\n")


if __name__ == "__main__":
    sys.exit(main())
