"""The values of any interval or test, addressed as the published examples are."""

import independent_methods
import onesample_methods
import paired_methods
from reference_math import Level

MODULES = {"one_sample": onesample_methods, "paired": paired_methods,
           "independent": independent_methods}


def arguments_of(design, data):
    counts = [int(count) for count in data.split("/")]
    if design == "one_sample":
        return counts
    return [(paired_methods.Table if design == "paired" else independent_methods.Groups)(*counts)]


def definition_values(design, kind, method, data, given):
    """By quantity: lower and upper, or z, abs_z, z_squared, one_sided and two_sided."""
    arguments = arguments_of(design, data)
    if kind == "interval":
        return dict(zip(("lower", "upper"),
                        MODULES[design].INTERVALS[method](*arguments, Level(given))))
    if given:
        arguments.append(float(given))
    z, one, two = MODULES[design].TESTS[method](*arguments)
    values = {"one_sided": one, "two_sided": two}
    if not isinstance(z, str):
        values.update(z=z, abs_z=abs(z), z_squared=z * z)
    return values
